#include "CirclePItem.h"

#include <QGraphicsSceneMouseEvent>

#include <cmath>

CirclePItem::CirclePItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, false) {
    initialise(id, context, MesureKey, MesureDefault);
}

std::optional<RoundShape> CirclePItem::shapeFrom(const QList<QPointF>& points) const {
    if (points.size() < 2)
        return std::nullopt;
    const QPointF d = points[1] - points[0];
    RoundShape shape;
    shape.centre = (points[0] + points[1]) / 2;
    shape.radius = std::hypot(d.x(), d.y()) / 2;
    if (!(shape.radius > 0) || !std::isfinite(shape.radius))
        return std::nullopt;
    return shape;
}

void CirclePItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    const QPointF p = mapFromScene(event->scenePos());
    setPoints({p, p});
}

void CirclePItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    if (m_mline.size() == 2)
        setPoints({m_mline[0], mapFromScene(event->scenePos())});
}
