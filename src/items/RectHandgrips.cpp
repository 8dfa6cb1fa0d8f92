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

bool isCorner(int position) {
    return position == HoverEventItem::TopLeft || position == HoverEventItem::TopRight ||
           position == HoverEventItem::BottomLeft || position == HoverEventItem::BottomRight;
}

QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind, const int* positions,
                                             std::size_t count) {
    QList<AbstractBaseItem::Handle> result;
    for (const int* position = positions; position != positions + count; ++position) {
        const bool vertical =
            *position == HoverEventItem::TopMiddle || *position == HoverEventItem::BottomMiddle;
        const int kind = isCorner(*position) ? cornerKind
                         : vertical          ? int(HoverEventItem::ResizeVertical)
                                             : int(HoverEventItem::ResizeHorizontal);
        result.append({*position, kind, HoverEventItem::positionOnRect(r, *position)});
    }
    return result;
}

QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind) {
    static constexpr int positions[] = {HoverEventItem::TopLeft,      HoverEventItem::TopMiddle,
                                        HoverEventItem::TopRight,     HoverEventItem::MiddleLeft,
                                        HoverEventItem::MiddleRight,  HoverEventItem::BottomLeft,
                                        HoverEventItem::BottomMiddle, HoverEventItem::BottomRight};
    return frameHandles(r, cornerKind, positions);
}

QList<AbstractBaseItem::Handle> cornerHandles(const QRectF& r, int kind) {
    static constexpr int corners[] = {HoverEventItem::TopLeft, HoverEventItem::TopRight,
                                      HoverEventItem::BottomLeft, HoverEventItem::BottomRight};
    return frameHandles(r, kind, corners);
}

} // namespace RectHandgrips
