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

QList<AbstractBaseItem::Handle> handlesOn(const QRectF& r, const Grip* grips, std::size_t count) {
    QList<AbstractBaseItem::Handle> result;
    for (const Grip* grip = grips; grip != grips + count; ++grip)
        result.append({grip->position, grip->kind, HoverEventItem::positionOnRect(r, grip->position)});
    return result;
}

QList<AbstractBaseItem::Handle> cornerHandles(const QRectF& r, int kind) {
    const Grip corners[] = {{HoverEventItem::TopLeft, kind},
                            {HoverEventItem::TopRight, kind},
                            {HoverEventItem::BottomLeft, kind},
                            {HoverEventItem::BottomRight, kind}};
    return handlesOn(r, corners);
}

bool isCorner(int position) {
    return position == HoverEventItem::TopLeft || position == HoverEventItem::TopRight ||
           position == HoverEventItem::BottomLeft || position == HoverEventItem::BottomRight;
}

QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind) {
    QList<AbstractBaseItem::Handle> result;
    for (int position = HoverEventItem::TopLeft; position <= HoverEventItem::BottomRight; ++position) {
        const bool vertical =
            position == HoverEventItem::TopMiddle || position == HoverEventItem::BottomMiddle;
        const int kind = isCorner(position) ? cornerKind
                         : vertical         ? int(HoverEventItem::ResizeVertical)
                                            : int(HoverEventItem::ResizeHorizontal);
        result.append({position, kind, HoverEventItem::positionOnRect(r, position)});
    }
    return result;
}

} // namespace RectHandgrips
