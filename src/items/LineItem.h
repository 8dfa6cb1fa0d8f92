#pragma once

#include "AbstractBaseItem.h"

#include <QLineF>

class QGraphicsLineItem;

// A straight segment drawn with one press, a drag and a release: measures its length and two
// angles, shows arrow heads on demand and marks its start point while drawn or selected.
class GRAPHICSOBJECTS_EXPORT LineItem : public AbstractBaseItem {
    Q_OBJECT
public:
    // Menu data of the arrow and orthogonal-mode entries (measure entries carry the measure index).
    enum MenuCommand {
        NoArrow = -1,
        ArrowHeadOnly = -2,
        ArrowTailOnly = -3,
        ArrowBoth = -4,
        ToggleStartMark = -5,
        OrthoOn = -6,
        OrthoOff = -7
    };

    LineItem(QGraphicsItem* parent, int id, void* context);
    ~LineItem() override;

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 5; }
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setLockstate(const bool& state) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    int arrowFactor() const { return m_arrowFactor; }
    bool arrowHead() const { return m_arrowHead; }
    bool arrowTail() const { return m_arrowTail; }
    bool showStartMark() const { return m_showStartMark; }
    // The visible segment, in item coordinates.
    QLineF line() const;

public slots:
    bool computeMesures(void*) override;
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;
    void selectfromPoint(const QPointF&);

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override;

private:
    void placeLine();

    int m_arrowFactor = 2;
    bool m_arrowHead = false;
    bool m_arrowTail = false;
    bool m_showStartMark = true;
    QGraphicsLineItem* m_lineChild = nullptr;
};
