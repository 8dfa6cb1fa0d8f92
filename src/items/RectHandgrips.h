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

// The grips on r (item coordinates) at the given positions (HoverEventItem::RectPosition, also their ids),
// in that order: the sides resize the frame across themselves, the corners are of cornerKind
// (HoverEventItem::Kind).
QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind, const int* positions,
                                             std::size_t count);
template <std::size_t N>
QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind, const int (&positions)[N]) {
    return frameHandles(r, cornerKind, positions, N);
}
// The eight grips of a frame in position order.
QList<AbstractBaseItem::Handle> frameHandles(const QRectF& r, int cornerKind);

// The four corner grips of r, all of one kind.
QList<AbstractBaseItem::Handle> cornerHandles(const QRectF& r, int kind);
bool isCorner(int position);

} // namespace RectHandgrips
