#include "RectHandgrips.h"

#include "HoverEventItem.h"

namespace RectHandgrips {

QRectF drag(const HoverEventItem* grip, QList<QPointF>& points, const QPointF& scenePos,
            const QGraphicsItem* item) {
    const QRectF r = HoverEventItem::applyTranslation(grip, QRectF(points[0], points[1]), scenePos, item);
    points[0] = r.topLeft();
    points[1] = r.bottomRight();
    return r;
}

QRectF normalise(QList<QPointF>& points) {
    const QRectF r = QRectF(points[0], points[1]).normalized();
    points[0] = r.topLeft();
    points[1] = r.bottomRight();
    return r;
}

} // namespace RectHandgrips
