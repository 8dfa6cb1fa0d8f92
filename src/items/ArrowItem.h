#pragma once

#include "AbstractBaseItem.h"

class QGraphicsPathItem;

// A filled arrow from point 0 (tail) to point 1 (tip). The item sits on the tip, turned along the
// arrow, and its path is drawn tip at the origin, shaft along -x.
class GRAPHICSOBJECTS_EXPORT ArrowItem : public AbstractBaseItem {
    Q_OBJECT
public:
    ArrowItem(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0; }
    void setPen(const QPen& pen) override;
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

    double arrowScale() const { return m_arrowScale; }
    QPainterPath path() const;

    // The outline of an arrow of the given length and head scale, tip at the origin.
    static QPainterPath arrowPath(double length, double scale);

public slots:
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override;

private:
    void rebuild();

    double m_arrowScale = 1.0;
    // Head proportions reserved for other arrow styles; the outline above does not read them.
    double m_headRatio = 0.625;
    double m_headWidth = 2.0;
    double m_shaftRatio = 1.0;
    QGraphicsPathItem* m_pathChild = nullptr;
};
