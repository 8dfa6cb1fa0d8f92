#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsEllipseItem>

// An ellipse child that finds its bounding rectangle without stroking its outline. The outline of
// a whole ellipse stays within its rectangle widened by half the pen on every side; Qt strokes the
// outline to find the rectangle, which costs more than reading the whole item from a document.
class GRAPHICSOBJECTS_EXPORT EllipseOutlineItem : public QGraphicsEllipseItem {
public:
    using QGraphicsEllipseItem::QGraphicsEllipseItem;

    // A part of an ellipse keeps Qt's answer.
    QRectF boundingRect() const override;
};
