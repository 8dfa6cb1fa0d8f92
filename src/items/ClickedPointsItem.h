#pragma once

#include "ShapeItem.h"

// Base of the items drawn with a fixed number of clicks, one point a click (a protractor's arm ends
// and vertex, an indentation's four corners). The press adds a point, the moves preview the next one
// at the cursor, and the releases answer EditionCreating until the last point is in; every point
// has a move grip. The item draws its points (drawPoints) and measures them.
class GRAPHICSOBJECTS_EXPORT ClickedPointsItem : public ShapeItem {
    Q_OBJECT
public:
    int pointCount() const { return m_pointCount; }

    bool drawnByClicks() const override { return true; }
    void mousePress(QGraphicsSceneMouseEvent* event) override;
    void mouseMove(QGraphicsSceneMouseEvent* event) override;
    typModeEdition mouseRelease(QGraphicsSceneMouseEvent* event) override;
    QList<Handle> handles() const override;

protected:
    // The item starts without points; pointCount clicks draw it.
    ClickedPointsItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType, int pointCount);

    // Draws the points (item coordinates): those clicked and, while the item is drawn, the cursor.
    virtual void drawPoints(const QList<QPointF>& points) = 0;
    // Runs once a click has added a point: draws the points and computes the measures.
    virtual void pointClicked();

private:
    int m_pointCount;
};
