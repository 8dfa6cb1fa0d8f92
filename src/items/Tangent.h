#pragma once

#include "ConstructionItem.h"
#include "ItemTypes.h"

// Tangents to a circle: from a point (any item's centroid) to the circle, or the common tangents
// of two circles. From a point, dist1 and dist2 are the lengths of the two tangents; between two
// circles dist1 is the length of an outer tangent and dist2 of an inner one (0 when the circles
// overlap and have none). A point inside the circle, concentric circles and a circle inside the
// other give no tangent.
class GRAPHICSOBJECTS_EXPORT Tangent : public ConstructionItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_CONSTRUCTION(Tangent, "tangent_mesureIndex", Dist1)

private:
    QString fromPoint(const QPointF& p, const QPointF& c, double r, Drawing& drawing);
    QString betweenCircles(const QPointF& c1, double r1, const QPointF& c2, double r2, Drawing& drawing);
};
