#pragma once

#include "AbstractBaseItem.h"

#include <QList>
#include <QPointF>
#include <QRectF>

#include <cstddef>

class HoverEventItem;
class QGraphicsItem;

// Editing of the items framed by a rectangle through grips on its eight positions.
namespace RectHandgrips {

// Drags grip to scenePos: points 0 and 1 (item coordinates) become the corners of the changed
// rectangle, which is returned. It is not normalised, so that a side dragged past the opposite one
// stays under the cursor until the release.
QRectF drag(const HoverEventItem* grip, QList<QPointF>& points, const QPointF& scenePos,
            const QGraphicsItem* item);

// Rewrites points 0 and 1 as the top-left and bottom-right corners of the normalised rectangle
// between them, and returns it.
QRectF normalise(QList<QPointF>& points);

// A grip on a rectangle: its position (HoverEventItem::RectPosition), which is also its id, and its
// kind (HoverEventItem::Kind).
struct Grip {
    int position;
    int kind;
};

// The grips on r (item coordinates), in the order given.
QList<AbstractBaseItem::Handle> handlesOn(const QRectF& r, const Grip* grips, std::size_t count);
template <std::size_t N> QList<AbstractBaseItem::Handle> handlesOn(const QRectF& r, const Grip (&grips)[N]) {
    return handlesOn(r, grips, N);
}

// The four corner grips of r, all of one kind.
QList<AbstractBaseItem::Handle> cornerHandles(const QRectF& r, int kind);

// The eight grips of a frame in position order: the sides resize it, the corners are of cornerKind.
QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind);
bool isCorner(int position);

} // namespace RectHandgrips
