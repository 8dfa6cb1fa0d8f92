#include "Circle3PointsItem.h"

Circle3PointsItem::Circle3PointsItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, false) {
    initialise(id, context, MesureKey, MesureDefault);
}

std::optional<RoundShape> Circle3PointsItem::shapeFrom(const QList<QPointF>& points) const {
    const std::optional<Circle> circle =
        points.size() >= 3 ? circleThroughPoints(points[0], points[1], points[2]) : std::nullopt;
    return circle ? std::optional<RoundShape>(*circle) : std::nullopt;
}
