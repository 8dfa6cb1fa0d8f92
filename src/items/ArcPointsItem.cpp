#include "ArcPointsItem.h"

#include <algorithm>

ArcPointsItem::ArcPointsItem(QGraphicsItem* parent, int id, void* context)
    : FittedRoundItem(parent, true, "arcpoints_way") {
    initialise(id, context, MesureKey, MesureDefault);
}

std::optional<RoundShape> ArcPointsItem::shapeOfFit(const QList<QPointF>& points,
                                                    const CircleFit& fit) const {
    QList<QPointF> kept;
    for (int i : fit.kept)
        kept.append(points.value(i));
    const std::optional<Arc> arc = fitArc(kept);
    return arc ? std::optional<RoundShape>(*arc) : std::nullopt;
}

std::optional<std::pair<double, double>> ArcPointsItem::sectorOf(const QList<QPointF>& clicks) const {
    if (clicks.size() < 3)
        return std::nullopt;
    const double start = degreesOf(clicks[1] - clicks[0]);
    double span = 0;
    for (int i = 2; i < clicks.size(); ++i)
        span += turnDegrees(degreesOf(clicks[i] - clicks[0]) - degreesOf(clicks[i - 1] - clicks[0]));
    span = std::clamp(span, -360.0, 360.0);
    if (span == 0)
        return std::nullopt;
    return std::make_pair(start, span);
}
