#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsLineItem>
#include <QPen>

// A line child whose bounding rectangle is stroked once per line and pen: QGraphicsLineItem strokes
// the line again on every query, and a scene asks on every paint, lookup and geometry change.
class GRAPHICSOBJECTS_EXPORT CachedLineItem : public QGraphicsLineItem {
public:
    using QGraphicsLineItem::QGraphicsLineItem;

    QRectF boundingRect() const override;

private:
    mutable QLineF m_line;
    mutable QPen m_pen;
    mutable QRectF m_rect;
    mutable bool m_valid = false;
};
