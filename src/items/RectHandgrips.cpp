#include "RectHandgrips.h"

#include "HoverEventItem.h"

namespace RectHandgrips {

QList<HoverEventItem*> create(QObject* owner, QGraphicsItem* parent, const std::array<int, 8>& kinds) {
    QList<HoverEventItem*> grips;
    for (int i = 0; i < int(kinds.size()); ++i)
        grips.append(new HoverEventItem(owner, parent, i, kinds[size_t(i)]));
    return grips;
}

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
