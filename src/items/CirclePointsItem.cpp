#include "CirclePointsItem.h"

CirclePointsItem::CirclePointsItem(QGraphicsItem* parent, int id, void* context)
    : FittedRoundItem(parent, false, "circlepoints_way") {
    initialise(id, context, MesureKey, MesureDefault);
}

std::optional<RoundShape> CirclePointsItem::shapeOfFit(const QList<QPointF>&, const CircleFit& fit) const {
    return RoundShape(Circle{fit.centre, fit.radius});
}

std::optional<std::pair<double, double>> CirclePointsItem::sectorOf(const QList<QPointF>& clicks) const {
    if (clicks.isEmpty())
        return std::nullopt;
    return std::make_pair(0.0, 360.0);
}
