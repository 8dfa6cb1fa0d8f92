#pragma once

#include "AbstractBaseItem.h"

class QGraphicsPathItem;

// A block arrow drawn inside the rectangle spanned by its two points, with one head pointing up
// or heads at the top and the bottom. Its corner grips turn it, its side grips resize it.
class GRAPHICSOBJECTS_EXPORT Arrow2Item : public AbstractBaseItem {
    Q_OBJECT
public:
    enum ArrowMode { SingleArrow = 0, DoubleArrow = 1 };

    Arrow2Item(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    long mesuresFlag() const override { return 0; }
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void fillEditMenu(QMenu* menu) override { fillContextMenu(menu); }
    void applyEditMenu(int data) override { applyContextMenu(data); }

    QRectF boundingRect() const override;
    QPainterPath shape() const override;

    int arrowMode() const { return m_arrowMode; }
    QPainterPath path() const;
    // The normalised rectangle between the two points, in item coordinates.
    QRectF frame() const;

    // The outline of the given mode inside r; empty for an unknown mode.
    static QPainterPath arrowOutline(const QRectF& r, int mode);

public slots:
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;
    void initRotationReferencePoint(const QPointF& p) override;
    void validRotationReferencePoint(const QPointF&) override;

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) override;

private:
    void rebuild();
    void rotateAboutCentre(double degrees);

    int m_arrowMode = SingleArrow;
    QGraphicsPathItem* m_pathChild = nullptr;
};
