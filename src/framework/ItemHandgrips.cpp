// Handgrips and point editing of AbstractBaseItem.
#include "AbstractBaseItem.h"

#include "HoverEventItem.h"
#include "SimpleTextItem.h"

#include <cmath>

void AbstractBaseItem::setupCentroidHandgrip() {
    if (!m_handgripCentroid)
        m_handgripCentroid = new HoverEventItem(this, this, 0, HoverEventItem::CentroidGrip);
    if (!m_label)
        m_label = new SimpleTextItem(this);
    m_label->setParentItem(m_handgripCentroid);
    m_label->setFont(m_font);
}

void AbstractBaseItem::placeCentroidHandgrip() {
    setupCentroidHandgrip();
    m_handgripCentroid->setPos(centroid());
}

HoverEventItem* AbstractBaseItem::senderHandgrip() const {
    return qobject_cast<HoverEventItem*>(sender());
}

QList<QPointF> AbstractBaseItem::handgripScenePositions() const {
    QList<QPointF> positions;
    positions.reserve(m_handgripItems.size());
    for (const HoverEventItem* grip : m_handgripItems)
        positions.append(grip->scenePos());
    return positions;
}

void AbstractBaseItem::syncHandgripsToRect(const QRectF& r) {
    HoverEventItem::syncHandgrips(r, m_handgripItems);
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
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setVisible(true);
}

void AbstractBaseItem::hideHandgrips() {
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setVisible(false);
}

void AbstractBaseItem::lockunlockHandgrips(bool lock) {
    for (HoverEventItem* grip : std::as_const(m_handgripItems)) {
        grip->setLockstate(lock);
        grip->setFlag(ItemIsMovable, lock);
    }
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
