#include "EllipseOutlineItem.h"

#include <QPen>

QRectF EllipseOutlineItem::boundingRect() const {
    if (spanAngle() != 360 * 16)
        return QGraphicsEllipseItem::boundingRect();
    const QPen p = pen();
    const double half = p.style() == Qt::NoPen ? 0 : p.widthF() / 2;
    if (half == 0)
        return rect();
    return rect().normalized().adjusted(-half, -half, half, half);
}
