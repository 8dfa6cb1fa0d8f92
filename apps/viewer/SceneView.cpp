#include "SceneView.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QGraphicsTextItem>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

SceneView::SceneView(AbstractScene* scene, QWidget* parent)
    : QGraphicsView(scene, parent)
    , m_scene(scene) {
    setObjectName(QStringLiteral("sceneView"));
    setRenderHint(QPainter::Antialiasing);
    setTransformationAnchor(QGraphicsView::AnchorUnderMouse);
    setResizeAnchor(QGraphicsView::AnchorViewCenter);
    setDragMode(QGraphicsView::RubberBandDrag);
    setMouseTracking(true);
}

// Grey around the scene, white under a scene without an image; the scene then draws its image.
void SceneView::drawBackground(QPainter* painter, const QRectF& rect) {
    painter->fillRect(rect, QColor(64, 64, 64));
    painter->fillRect(rect & sceneRect(), Qt::white);
    QGraphicsView::drawBackground(painter, rect);
}

void SceneView::setZoom(double zoom) {
    zoom = std::clamp(zoom, MinZoom, MaxZoom);
    if (!std::isfinite(zoom) || zoom == m_zoom)
        return;
    m_zoom = zoom;
    applyZoom();
}

void SceneView::zoomBy(double factor, const QPointF* anchor) {
    const double zoom = std::clamp(m_zoom * factor, MinZoom, MaxZoom);
    if (zoom == m_zoom)
        return;
    // The point under the anchor stays where it is on screen.
    const QPoint onScreen = anchor ? mapFromScene(*anchor) : viewport()->rect().center();
    const QPointF before = mapToScene(onScreen);
    m_zoom = zoom;
    applyZoom();
    const QPointF after = mapToScene(onScreen);
    const QPointF shift = (after - before) * m_zoom;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - int(std::lround(shift.x())));
    verticalScrollBar()->setValue(verticalScrollBar()->value() - int(std::lround(shift.y())));
}

void SceneView::fit() {
    const QRectF area = sceneRect();
    if (area.isEmpty())
        return;
    const QSize room = viewport()->size() - QSize(4, 4);
    setZoom(std::min(room.width() / area.width(), room.height() / area.height()));
    centerOn(area.center());
}

void SceneView::applyZoom() {
    setTransform(QTransform::fromScale(m_zoom, m_zoom));
    m_scene->setZoomFactors(m_zoom, m_zoom);
    emit zoomChanged(m_zoom);
}

void SceneView::startPicking() {
    m_picking = true;
    viewport()->setCursor(Qt::PointingHandCursor);
}

void SceneView::stopPicking() {
    if (!m_picking)
        return;
    m_picking = false;
    viewport()->unsetCursor();
}

void SceneView::wheelEvent(QWheelEvent* event) {
    const double steps = event->angleDelta().y() / 120.0;
    if (steps == 0) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    const QPointF anchor = mapToScene(event->position().toPoint());
    zoomBy(std::pow(1.25, steps), &anchor);
    event->accept();
}

void SceneView::mousePressEvent(QMouseEvent* event) {
    if (m_picking && event->button() == Qt::LeftButton) {
        AbstractBaseItem* item = m_scene->pickableItemAt(mapToScene(event->pos()), 4 / m_zoom);
        stopPicking();
        item ? emit pickedItem(item) : emit pickingCancelled();
        event->accept();
        return;
    }
    if (m_picking) {
        stopPicking();
        emit pickingCancelled();
    }
    if (event->button() == Qt::MiddleButton) {
        m_panning = true;
        m_panFrom = event->pos();
        viewport()->setCursor(Qt::ClosedHandCursor);
        event->accept();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void SceneView::mouseMoveEvent(QMouseEvent* event) {
    if (m_panning) {
        const QPoint delta = event->pos() - m_panFrom;
        m_panFrom = event->pos();
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - delta.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - delta.y());
        event->accept();
        return;
    }
    const QPointF p = mapToScene(event->pos());
    if (sceneRect().contains(p))
        emit cursorMoved(p);
    QGraphicsView::mouseMoveEvent(event);
}

void SceneView::mouseReleaseEvent(QMouseEvent* event) {
    if (m_panning && event->button() == Qt::MiddleButton) {
        m_panning = false;
        viewport()->unsetCursor();
        event->accept();
        return;
    }
    QGraphicsView::mouseReleaseEvent(event);
}

void SceneView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_picking) {
        stopPicking();
        emit pickingCancelled();
        return;
    }
    // Space held: the left button pans, unless a text is being typed.
    const bool typing = dynamic_cast<QGraphicsTextItem*>(m_scene->focusItem());
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat() && !m_scene->itemInCreation() && !typing) {
        setDragMode(QGraphicsView::ScrollHandDrag);
        return;
    }
    QGraphicsView::keyPressEvent(event);
}

void SceneView::keyReleaseEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat() &&
        dragMode() == QGraphicsView::ScrollHandDrag) {
        setDragMode(QGraphicsView::RubberBandDrag);
        return;
    }
    QGraphicsView::keyReleaseEvent(event);
}
