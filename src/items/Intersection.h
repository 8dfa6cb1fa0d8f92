#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// The intersection points of two items, each a straight item (taken as its whole line), a circle
// or an ellipse. dist1 is the distance between the two points when there are two, ang1 the
// crossing angle of two lines (0 to 90) and ang2 its supplement, cust the number of points. The
// library's intersection functions keep their conventions: a crossing of a line and a circle
// exactly at the scene's (0, 0) is not reported, and ellipses are solved in single precision.
class GRAPHICSOBJECTS_EXPORT Intersection : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Intersection, "intersection_mesureIndex", Dist1)
};
