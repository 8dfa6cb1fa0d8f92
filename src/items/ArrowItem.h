#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

class QGraphicsPathItem;

// A filled arrow from point 0 (tail) to point 1 (tip). The item sits on the tip, turned along the
// arrow, and its path is drawn tip at the origin, shaft along -x.
class GRAPHICSOBJECTS_EXPORT ArrowItem : public ShapeItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(ArrowItem)

    GRAPHICSOBJECTS_UNMEASURED
    // The pen also fills the arrow; the brush is not drawn.
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override { AbstractBaseItem::setBrush(brush); }
    GRAPHICSOBJECTS_ITEM_DRAWING
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    double arrowScale() const { return m_arrowScale; }
    QPainterPath path() const;
    // The outline of an arrow of the given length and head scale, tip at the origin.
    static QPainterPath arrowPath(double length, double scale);

protected:
    bool menuInPreview() const override { return false; }
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    // Lays the arrow from tail to tip, both in scene coordinates.
    void rebuild(const QPointF& tail, const QPointF& tip);

    double m_arrowScale = 1.0;
    // Head proportions reserved for other arrow styles; the outline above does not read them.
    double m_headRatio = 0.625;
    double m_headWidth = 2.0;
    double m_shaftRatio = 1.0;
};
