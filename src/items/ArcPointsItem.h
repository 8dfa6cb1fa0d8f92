#pragma once

#include "FittedRoundItem.h"
#include "ItemTypes.h"

// An arc fitted to three or more points, from the first point's angle to the last one's. The points are
// clicked along the arc, or found on the scene's image: the first click goes inside the round feature
// the arc belongs to, the next ones mark the arc's sector around it, which the rays then search.
// Measures as the arc through three points, plus the fit's deviations as for the fitted circle. The
// way of the next item is remembered under "arcpoints_way".
class GRAPHICSOBJECTS_EXPORT ArcPointsItem : public FittedRoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with three or more points along the arc.
    GRAPHICSOBJECTS_MEASURED_ITEM(ArcPointsItem, "arcpoints_mesureIndex", Rad1)

protected:
    // The arc of the kept points.
    std::optional<RoundShape> shapeOfFit(const QList<QPointF>& points, const CircleFit& fit) const override;
    // From the second click's direction to the last one's, turning the way the clicks run.
    std::optional<std::pair<double, double>> sectorOf(const QList<QPointF>& clicks) const override;
    int imageClicks() const override { return 0; }
    QList<QPointF> pointsOnCircle(const QPointF&, double) const override { return {}; }
};
