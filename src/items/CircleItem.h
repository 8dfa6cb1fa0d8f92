#pragma once

#include "AbstractBaseItem.h"

class QGraphicsEllipseItem;

// A circle drawn from its centre: the press sets the centre, the drag the radius. Its four corner
// grips change the radius only; the centre stays where it was drawn.
class GRAPHICSOBJECTS_EXPORT CircleItem : public AbstractBaseItem {
    Q_OBJECT
public:
    // Edit-menu data, also the transform indices it sets.
    enum EditCommand { NoTransform = 0, Extract = 254 };

    CircleItem(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    long mesuresSupport() const override { return 0x3020; }
    long mesuresFlag() const override { return 0x70; }
    QPointF centroid() override;
    void setPen(const QPen& pen) override;
    void setBrush(const QBrush& brush) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override;
    void setTransformIndex(int index) override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;
    void fillEditMenu(QMenu* menu) override;
    void applyEditMenu(int data) override;

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

    // The circle's bounding square in item coordinates.
    QRectF rect() const;

public slots:
    bool computeMesures(void* arg) override;
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;
    void pressPoint(const QPointF&) override;
    void releasePoint(const QPointF&) override;
    void updatePoint(const QPointF& p) override;

protected:
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;

private:
    // Centre and radius (item coordinates) give the points, the child's square and the grips.
    void placeCircle(double radius);
    void extract();

    QGraphicsEllipseItem* m_ellipseChild = nullptr;
};
