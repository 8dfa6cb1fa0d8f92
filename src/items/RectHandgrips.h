#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>

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

} // namespace RectHandgrips
