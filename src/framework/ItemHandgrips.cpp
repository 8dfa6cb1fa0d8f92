// Handgrips and point editing of AbstractBaseItem.
//
// Grips are a view of handles(): they are created when the item is selected, being drawn or asked
// for its grips, follow the geometry through refreshHandgrips(), and go when the item is
// deselected. A scene of thousands of idle items thus holds no grip at all.
#include "AbstractBaseItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"

#include <cmath>

void AbstractBaseItem::setupCentroidHandgrip() {
    if (!m_handgripCentroid) {
        m_handgripCentroid = new HoverEventItem(this, this, 0, HoverEventItem::CentroidGrip);
        fitCentroidGripToZoom();
    }
    if (!m_label)
        m_label = new SimpleTextItem(this);
    // Called on every measure: a label laid out again for nothing costs more than the measure.
    if (m_label->parentItem() != m_handgripCentroid)
        m_label->setParentItem(m_handgripCentroid);
    m_label->setLabelFont(m_font);
}

void AbstractBaseItem::placeCentroidHandgrip() {
    setupCentroidHandgrip();
    m_centroidPending = m_refreshDeferred;
    if (!m_refreshDeferred)
        m_handgripCentroid->setPos(centroid());
}

void AbstractBaseItem::setRefreshDeferred(bool deferred) {
    m_refreshDeferred = deferred;
    if (deferred)
        return;
    if (m_centroidPending)
        placeCentroidHandgrip();
    if (m_labelPending) {
        m_labelPending = false;
        commonUpdateText();
    }
}

void AbstractBaseItem::fitCentroidGripToZoom() {
    if (!m_handgripCentroid)
        return;
    const AbstractScene* host = hostScene();
    const double zx = host ? host->horizontalZoom() : 1.0;
    const double zy = host ? (host->verticalZoomInForce() ? host->verticalZoom() : zx) : 1.0;
    const QTransform t = sceneTransform();
    const QTransform toDevice =
        QTransform(t.m11(), t.m12(), t.m21(), t.m22(), 0, 0) * QTransform::fromScale(zx, zy);
    if (!toDevice.isInvertible())
        return;
    const QTransform fit = toDevice.inverted();
    if (fit != m_handgripCentroid->transform())
        m_handgripCentroid->setTransform(fit);
}

QList<HoverEventItem*> AbstractBaseItem::handgripItems() const {
    materialiseHandgrips();
    return m_handgripItems;
}

HoverEventItem* AbstractBaseItem::handgrip(int id) const {
    for (HoverEventItem* grip : m_handgripItems) {
        if (grip->getId() == id)
            return grip;
    }
    return nullptr;
}

HoverEventItem* AbstractBaseItem::createHandgrip(const Handle& handle) const {
    auto* self = const_cast<AbstractBaseItem*>(this);
    auto* grip = new HoverEventItem(self, self, handle.id, handle.kind);
    grip->setPos(handle.pos);
    grip->setLockstate(m_gripsLocked);
    grip->setFlag(ItemIsMovable, m_gripsMovable);
    if (m_gripFontSet)
        grip->setFont(m_font2, m_pen.color());
    if (m_gripFontColor.isValid())
        grip->setFontColor(m_gripFontColor);
    grip->setVisible(isSelected());
    return grip;
}

void AbstractBaseItem::materialiseHandgrips() const {
    if (!m_handgripItems.isEmpty())
        return;
    for (const Handle& handle : handles())
        m_handgripItems.append(createHandgrip(handle));
    const_cast<AbstractBaseItem*>(this)->updateHandgrips();
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setVisible(isSelected());
}

void AbstractBaseItem::refreshHandgrips() {
    if (m_handgripItems.isEmpty())
        return;
    const QList<Handle> wanted = handles();
    bool sameSet = wanted.size() == m_handgripItems.size();
    for (int i = 0; sameSet && i < wanted.size(); ++i)
        sameSet = m_handgripItems[i]->getType() == wanted[i].kind;
    if (!sameSet) {
        const bool shown = m_handgripItems.first()->isVisible();
        releaseHandgrips();
        materialiseHandgrips();
        for (HoverEventItem* grip : std::as_const(m_handgripItems))
            grip->setVisible(shown);
        return;
    }
    for (int i = 0; i < wanted.size(); ++i) {
        m_handgripItems[i]->setId(wanted[i].id);
        m_handgripItems[i]->setPos(wanted[i].pos);
    }
}

void AbstractBaseItem::releaseHandgrips() {
    // A grip may be releasing the mouse right now: it goes once its event is over.
    for (HoverEventItem* grip : std::as_const(m_handgripItems)) {
        grip->setVisible(false);
        grip->setEnabled(false);
        grip->deleteLater();
    }
    m_handgripItems.clear();
}

void AbstractBaseItem::gripEvent(HoverEventItem* grip, int phase, const QPointF& scenePos,
                                 Qt::KeyboardModifiers modifiers) {
    if (grip == m_handgripCentroid || !m_handgripItems.contains(grip))
        return;
    const int id = grip->getId();
    switch (phase) {
    case HoverEventItem::Pressed:
        handlePressed(id, scenePos, modifiers);
        break;
    case HoverEventItem::Moved:
        handleMoved(id, scenePos, modifiers);
        break;
    default:
        handleReleased(id, scenePos, modifiers);
        break;
    }
}

void AbstractBaseItem::handlePressed(int, const QPointF&, Qt::KeyboardModifiers) {
    emit mesureChangedSTART(this);
}

void AbstractBaseItem::handleMoved(int, const QPointF&, Qt::KeyboardModifiers) {}

void AbstractBaseItem::handleReleased(int, const QPointF&, Qt::KeyboardModifiers) {
    emit mesureChangedEND(this);
}

void AbstractBaseItem::showHandgripCentroid() {
    if (m_handgripCentroid)
        m_handgripCentroid->setVisible(true);
}

void AbstractBaseItem::hideHandgripCentroid() {
    if (m_handgripCentroid)
        m_handgripCentroid->setVisible(false);
}

void AbstractBaseItem::showHandgrips() {
    materialiseHandgrips();
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setVisible(true);
}

void AbstractBaseItem::hideHandgrips() {
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setVisible(false);
}

void AbstractBaseItem::lockunlockHandgrips(bool lock) {
    m_gripsLocked = lock;
    m_gripsMovable = lock;
    for (HoverEventItem* grip : std::as_const(m_handgripItems)) {
        grip->setLockstate(lock);
        grip->setFlag(ItemIsMovable, lock);
    }
}

void AbstractBaseItem::lockHandgripsOnly(bool lock) {
    m_gripsLocked = lock;
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setLockstate(lock);
}

void AbstractBaseItem::updateHandgrips() {
    for (HoverEventItem* grip : std::as_const(m_handgripItems)) {
        connect(grip, &HoverEventItem::moved, this, &AbstractBaseItem::updatePoint, Qt::UniqueConnection);
        if (grip->getType() == HoverEventItem::Rotation) {
            connect(grip, &HoverEventItem::initPos, this, &AbstractBaseItem::initRotationReferencePoint,
                    Qt::UniqueConnection);
            connect(grip, &HoverEventItem::releasePos, this, &AbstractBaseItem::validRotationReferencePoint,
                    Qt::UniqueConnection);
        } else {
            connect(grip, &HoverEventItem::initPos, this, &AbstractBaseItem::pressPoint,
                    Qt::UniqueConnection);
            connect(grip, &HoverEventItem::releasePos, this, &AbstractBaseItem::releasePoint,
                    Qt::UniqueConnection);
        }
    }
    hideHandgrips();
}

QList<QPointF> AbstractBaseItem::mline() const {
    return toScene(m_mline);
}

QList<QPointF> AbstractBaseItem::toScene(const QList<QPointF>& points) const {
    QList<QPointF> mapped;
    mapped.reserve(points.size());
    for (const QPointF& p : points)
        mapped.append(mapToScene(p));
    return mapped;
}

QList<QPointF> AbstractBaseItem::fromScene(const QList<QPointF>& points) const {
    QList<QPointF> mapped;
    mapped.reserve(points.size());
    for (const QPointF& p : points)
        mapped.append(mapFromScene(p));
    return mapped;
}

void AbstractBaseItem::insertPoint(int index, const QPointF& p, QList<QPointF>& points) {
    points.insert(qBound(0, index, int(points.size())), p);
}

void AbstractBaseItem::deletePoint(int index, QList<QPointF>& points) {
    if (index >= 0 && index < points.size())
        points.removeAt(index);
}

bool AbstractBaseItem::isPointSelected(const QPointF& p, QList<QPointF>& points, int& index,
                                       double tolerance) {
    for (int i = 0; i < points.size(); ++i) {
        const double dx = points[i].x() - p.x();
        const double dy = points[i].y() - p.y();
        const float squared = float(dx * dx + dy * dy);
        if (std::sqrt(squared) < tolerance) {
            index = i;
            return true;
        }
    }
    return false;
}

bool AbstractBaseItem::createPointIfNeeded(const QPointF& p, QList<QPointF>& points, bool closed) {
    const int n = points.size();
    if (n < 2)
        return false;
    const int segments = closed ? n : n - 1;
    for (int i = 0; i < segments; ++i) {
        const QPointF a = points[i];
        const QPointF b = points[(i + 1) % n];
        if (!QRectF(a, b).normalized().contains(p))
            continue;
        const double dx = b.x() - a.x();
        const double dy = b.y() - a.y();
        const float distance = float(std::abs((p.x() - a.x()) * dy - (p.y() - a.y()) * dx)) /
                               std::sqrt(float(dx * dx + dy * dy));
        if (distance < 10.0f) {
            insertPoint((i + 1) % n, p, points);
            return true;
        }
    }
    return false;
}
