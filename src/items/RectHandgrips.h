#pragma once

#include <QList>
#include <QPointF>
#include <QRectF>

#include <array>

class HoverEventItem;
class QGraphicsItem;
class QObject;

// Editing of the items framed by a rectangle through grips on its eight positions.
namespace RectHandgrips {

// One grip per rectangle position (index = position), of the given kinds.
QList<HoverEventItem*> create(QObject* owner, QGraphicsItem* parent, const std::array<int, 8>& kinds);

// Drags grip to scenePos: points 0 and 1 (item coordinates) become the corners of the changed
// rectangle, which is returned. It is not normalised, so that a side dragged past the opposite one
// stays under the cursor until the release.
QRectF drag(const HoverEventItem* grip, QList<QPointF>& points, const QPointF& scenePos,
            const QGraphicsItem* item);

// Rewrites points 0 and 1 as the top-left and bottom-right corners of the normalised rectangle
// between them, and returns it.
QRectF normalise(QList<QPointF>& points);

} // namespace RectHandgrips
