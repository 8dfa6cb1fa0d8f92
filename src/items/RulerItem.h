#pragma once

#include "AbstractBaseItem.h"

class QGraphicsRectItem;

// A graduated ruler along a rectangle: a tick every calibrated unit, longer every fifth and tenth,
// each tenth labelled (divided by the label divisor).
class GRAPHICSOBJECTS_EXPORT RulerItem : public AbstractBaseItem {
    Q_OBJECT
public:
    RulerItem(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0; }
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setFont(const QFont& font) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    QRectF rect() const;
    int labelDivisor() const { return m_ruler.divisor; }
    // Graduation step in pixels: one calibrated unit.
    double graduationStep() const;

public slots:
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override;

private:
    void setRect(const QRectF& r);

    struct Ruler {
        QGraphicsRectItem* rect = nullptr;
        int divisor = 1;
    } m_ruler;
};
