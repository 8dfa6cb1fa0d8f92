#pragma once

#include "ShapeItem.h"

#include <QLineF>
#include <QMetaObject>

class QGraphicsPathItem;

// Base of the items that stand at one point of the scene (points, the anchor, the crosses and the
// guides). The point is the item's position and the shape is drawn around the item's origin, so a
// drag of the item, of its grip or a move by an anchor all move the point the same way. The
// measures are the point's calibrated coordinates from the scene's origin, which they follow.
class GRAPHICSOBJECTS_EXPORT PositionItem : public ShapeItem {
    Q_OBJECT
public:
    QPointF point() const { return scenePos(); }
    // Moves the item so that its point is at p (scene). Only a drag of the whole item, or of its
    // grip, keeps to the item's constraint.
    void setPoint(const QPointF& p);
    // The straight lines the item stands for in scene coordinates: a guide, the arms of a cross.
    virtual QList<QLineF> lines() const { return {}; }

    QPointF centroid() override { return QPointF(); }
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    bool endEdition() override { return true; }
    QList<Handle> handles() const override;
    void handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) override;

public slots:
    bool computeMesures(void*) override;

signals:
    // The item's point moved by delta (scene), whatever moved it.
    void pointMoved(const QPointF& delta);

protected:
    PositionItem(QGraphicsItem* parent, unsigned long subType);

    QGraphicsPathItem* pathItem() const;
    void setPath(const QPainterPath& path);
    // The point as the measures read it: its offset from the scene's origin, in pixels.
    QPointF fromOrigin() const;
    // Where the item may stand when asked to stand at p (a guide keeps its other coordinate).
    virtual QPointF constrained(const QPointF& p) const { return p; }
    // Fills the pixel measures; by default dist1 and dist2 are the point's x and y from the origin.
    virtual void fillMesures();
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;

private:
    void followOrigin();

    QPointF m_lastPos;
    bool m_settingPoint = false;
    bool m_reading = false;
    QMetaObject::Connection m_originConnection;
};
