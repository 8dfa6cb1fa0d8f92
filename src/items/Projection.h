#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// The foot of the perpendicular from one item's centroid onto a straight item (a line, a guide, a
// cross arm, a rectangle or ruler side, a polyline end); dist1 is the perpendicular distance. The
// foot is drawn, and the straight item's extension when the foot lies beyond it.
class GRAPHICSOBJECTS_EXPORT Projection : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Projection, "projection_mesureIndex", Dist1)

    // The foot, in scene coordinates; meaningful while hasResult().
    QPointF foot() const;
};
