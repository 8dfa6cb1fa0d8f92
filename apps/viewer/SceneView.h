#pragma once

#include <QGraphicsView>

class AbstractBaseItem;
class AbstractScene;

// The view of the scene: zoom with the wheel (about the cursor), the keys and "fit", pan with the
// middle button or Space held, and the zoom passed to the scene so that labels and grips keep
// their size on screen. In picking mode the next left click names an item instead of acting.
class SceneView : public QGraphicsView {
    Q_OBJECT
public:
    static constexpr double MinZoom = 1.0 / 64;
    static constexpr double MaxZoom = 64;

    explicit SceneView(AbstractScene* scene, QWidget* parent = nullptr);

    double zoom() const { return m_zoom; }
    // Within MinZoom and MaxZoom; about the viewport's centre unless an anchor in scene units is given.
    void setZoom(double zoom);
    void zoomBy(double factor, const QPointF* anchor = nullptr);
    // The whole scene in the viewport.
    void fit();

    // The next left click on an item picks it (pickedItem) rather than selecting or moving it.
    void startPicking();
    bool picking() const { return m_picking; }
    void stopPicking();

signals:
    void zoomChanged(double zoom);
    // The cursor over the scene, in scene units; not emitted outside the scene.
    void cursorMoved(const QPointF& scenePos);
    void pickedItem(AbstractBaseItem* item);
    void pickingCancelled();

protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    void applyZoom();

    AbstractScene* m_scene;
    double m_zoom = 1.0;
    bool m_picking = false;
    bool m_panning = false;
    QPoint m_panFrom;
};
