#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsItem>

// A holder of tools that entered a scene together, such as the items of an opened document.
// Qt visits every top-level item of a scene on each repaint, whatever changed, and every child of
// a layer it paints in, which costs it more: n tools in layers of half the square root of n
// cost a few times that root in visits instead of n. A layer has no contents, stays at the scene's origin
// untransformed and is never selected or focused: a tool in a layer is placed, edited, selected and saved as
// a top-level one (AbstractBaseItem::isSceneTool).
class GRAPHICSOBJECTS_EXPORT ToolLayer : public QGraphicsItem {
public:
    // Just below the item classes' types.
    enum { Type = UserType + 999 };
    // Tools each layer is given when count of them enter a scene together.
    static int capacityFor(qsizetype count);

    ToolLayer();

    int type() const override { return Type; }
    QRectF boundingRect() const override { return QRectF(); }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
};
