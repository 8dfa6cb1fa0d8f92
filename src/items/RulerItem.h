#pragma once

#include "ItemTypes.h"
#include "SpanItem.h"

class QGraphicsRectItem;

// A graduated ruler along a rectangle: a tick every calibrated unit, longer every fifth and tenth,
// each tenth labelled (divided by the label divisor).
class GRAPHICSOBJECTS_EXPORT RulerItem : public SpanItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(RulerItem)

    GRAPHICSOBJECTS_UNMEASURED
    QPointF centroid() override;
    void setFont(const QFont& font) override;
    // A press lays a ruler of a fixed size; the moves that follow change nothing.
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent*) override {}
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    QRectF rect() const;
    int labelDivisor() const { return m_divisor; }
    // Graduation step in pixels: one calibrated unit.
    double graduationStep() const;

protected:
    void spanChanged() override;
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void setRect(const QRectF& r);

    int m_divisor = 1;
};
