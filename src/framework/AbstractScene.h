#pragma once

#include "graphicsobjects_export.h"

#include <QGraphicsScene>

// The host's scene as the items know it: the zoom at which it is shown and the orthogonal
// drawing mode.
class GRAPHICSOBJECTS_EXPORT AbstractScene : public QGraphicsScene {
    Q_OBJECT
public:
    explicit AbstractScene(QObject* parent = nullptr);
    explicit AbstractScene(const QRectF& sceneRect, QObject* parent = nullptr);

    double horizontalZoom() const { return m_zoomX; }
    double verticalZoom() const { return m_zoomY; }
    // When false the horizontal factor stands for both directions.
    bool verticalZoomInForce() const { return m_verticalZoomInForce; }
    void setZoomFactors(double horizontal, double vertical);
    void setVerticalZoomInForce(bool inForce) { m_verticalZoomInForce = inForce; }

    // Reference direction of the orthogonal mode, in degrees; 0 turns the mode off.
    double orthoReferenceAngle() const { return m_orthoAngle; }
    virtual void setOrthoReferenceAngle(double degrees);

signals:
    void orthoReferenceAngleChanged(double degrees);

private:
    double m_zoomX = 1.0;
    double m_zoomY = 1.0;
    bool m_verticalZoomInForce = false;
    double m_orthoAngle = 0.0;
};
