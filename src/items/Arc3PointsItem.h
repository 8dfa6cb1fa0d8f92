#pragma once

#include "ItemTypes.h"
#include "RoundItem.h"

// An arc through its start, a point on it and its end, clicked in that order; after two clicks a
// rubber-band arc follows the cursor. Collinear points are refused as for the three-point circle.
// Measures: radius (rad1), opening angle in degrees (ang1), chord (dist1), length (perim) and sagitta
// (dist2).
class GRAPHICSOBJECTS_EXPORT Arc3PointsItem : public RoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with the three points.
    GRAPHICSOBJECTS_MEASURED_ITEM(Arc3PointsItem, "arc3points_mesureIndex", Rad1)

protected:
    // A centre and radius give no ends.
    QList<QPointF> pointsOnCircle(const QPointF&, double) const override { return {}; }
};
