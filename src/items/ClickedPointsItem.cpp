#include "ClickedPointsItem.h"

#include <QGraphicsSceneMouseEvent>

ClickedPointsItem::ClickedPointsItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType,
                                     int pointCount)
    : ShapeItem(parent, shape, subType, 0)
    , m_pointCount(pointCount) {}

void ClickedPointsItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_mline.size() >= m_pointCount)
        return;
    m_creationStarted = true;
    m_mline.append(mapFromScene(event->scenePos()));
    pointClicked();
}

void ClickedPointsItem::pointClicked() {
    drawPoints(m_mline);
    computeMesures(nullptr);
}

void ClickedPointsItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    if (m_mline.isEmpty() || m_mline.size() >= m_pointCount)
        return;
    drawPoints(QList<QPointF>(m_mline) << mapFromScene(event->scenePos()));
}

AbstractBaseItem::typModeEdition ClickedPointsItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    m_modeEdition = m_mline.size() < m_pointCount ? EditionCreating : EditionComplete;
    return m_modeEdition;
}

QList<AbstractBaseItem::Handle> ClickedPointsItem::handles() const {
    return pointHandles();
}
