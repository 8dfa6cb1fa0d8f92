#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// The distance between two items. Points stand for any item by its centroid; lines are lines,
// guides and cross arms; circles are circles. Point-point: between the centroids; point-line:
// along the perpendicular; line-line: between the lines when they are (nearly) parallel, else
// the shortest distance between the segments; with a circle the centre counts, and dist2 is the
// gap to the outline (for two circles, between the outlines), negative where they overlap.
class GRAPHICSOBJECTS_EXPORT Distance : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Distance, "distance_mesureIndex", Dist1)
};
