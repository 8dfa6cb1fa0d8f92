#include "AbstractScene.h"

AbstractScene::AbstractScene(QObject* parent)
    : QGraphicsScene(parent) {}

AbstractScene::AbstractScene(const QRectF& sceneRect, QObject* parent)
    : QGraphicsScene(sceneRect, parent) {}

void AbstractScene::setZoomFactors(double horizontal, double vertical) {
    m_zoomX = horizontal;
    m_zoomY = vertical;
}

void AbstractScene::setOrthoReferenceAngle(double degrees) {
    if (m_orthoAngle == degrees)
        return;
    m_orthoAngle = degrees;
    emit orthoReferenceAngleChanged(degrees);
}
