#include "Arc3PointsItem.h"

Arc3PointsItem::Arc3PointsItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, true) {
    initialise(id, context, MesureKey, MesureDefault);
}

std::optional<RoundShape> Arc3PointsItem::shapeFrom(const QList<QPointF>& points) const {
    const std::optional<Arc> arc =
        points.size() >= 3 ? arcThroughPoints(points[0], points[1], points[2]) : std::nullopt;
    return arc ? std::optional<RoundShape>(*arc) : std::nullopt;
}
