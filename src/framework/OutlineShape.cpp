#include "OutlineShape.h"

#include <QPainter>
#include <QPainterPathStroker>

#include <algorithm>

namespace {

// Open outlines are easy to hit: a few units on either side of the line.
constexpr double HitWidth = 6;

double squaredDistanceToSegment(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF ab = b - a, ap = p - a;
    const double length = QPointF::dotProduct(ab, ab);
    const double t = length > 0 ? std::clamp(QPointF::dotProduct(ap, ab) / length, 0.0, 1.0) : 0.0;
    const QPointF d = ap - ab * t;
    return QPointF::dotProduct(d, d);
}

// Whether the edge ab crosses the ray from p to the right (the even-odd rule).
bool crossesRay(const QPointF& p, const QPointF& a, const QPointF& b) {
    return (a.y() > p.y()) != (b.y() > p.y()) &&
           p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x();
}

} // namespace

OutlineShape::OutlineShape() = default;

void OutlineShape::setPath(const QPainterPath& path) {
    prepareGeometryChange();
    m_path = path;
    m_straight = true;
    for (int i = 0; i < m_path.elementCount() && m_straight; ++i)
        m_straight = !m_path.elementAt(i).isCurveTo();
    changed();
}

void OutlineShape::moveVertex(int index, const QPointF& p) {
    const int count = m_path.elementCount();
    if (index < 0 || index >= count)
        return;
    // A closed polygonal subpath repeats its first vertex as its last element.
    const QPainterPath::Element first = m_path.elementAt(0);
    const QPainterPath::Element last = m_path.elementAt(count - 1);
    const bool closing = index == 0 && count > 2 && last.isLineTo() && last.x == first.x && last.y == first.y;
    prepareGeometryChange();
    m_path.setElementPositionAt(index, p.x(), p.y());
    if (closing)
        m_path.setElementPositionAt(count - 1, p.x(), p.y());
    changed();
}

void OutlineShape::setFilledShape(bool filled) {
    m_filled = filled;
    changed();
}

void OutlineShape::changed() {
    m_shapeValid = false;
    m_boundsValid = false;
    update();
}

double OutlineShape::reach() const {
    return std::max(pen().style() == Qt::NoPen ? 0.0 : pen().widthF(), HitWidth) / 2;
}

QRectF OutlineShape::boundingRect() const {
    if (!m_boundsValid) {
        m_bounds = m_path.controlPointRect();
        m_boundsValid = true;
    }
    const double margin = reach();
    return m_bounds.adjusted(-margin, -margin, margin, margin);
}

bool OutlineShape::contains(const QPointF& p) const {
    if (!m_straight)
        return QAbstractGraphicsShapeItem::contains(p);
    const double reachSquared = reach() * reach();
    bool inside = false;
    QPointF start, previous;
    for (int i = 0; i < m_path.elementCount(); ++i) {
        const QPainterPath::Element e = m_path.elementAt(i);
        const QPointF q(e.x, e.y);
        if (e.isMoveTo()) {
            // Every subpath of a filled outline is closed, as it is filled.
            if (m_filled && i > 0)
                inside ^= crossesRay(p, previous, start);
            start = q;
        } else {
            if (squaredDistanceToSegment(p, previous, q) <= reachSquared)
                return true;
            if (m_filled)
                inside ^= crossesRay(p, previous, q);
        }
        previous = q;
    }
    if (m_filled && m_path.elementCount() > 0)
        inside ^= crossesRay(p, previous, start);
    return inside;
}

QPainterPath OutlineShape::shape() const {
    if (!m_shapeValid) {
        if (m_filled) {
            m_shape = m_path;
        } else {
            QPainterPathStroker stroker;
            stroker.setWidth(std::max(pen().widthF(), HitWidth));
            m_shape = stroker.createStroke(m_path);
        }
        m_shapeValid = true;
    }
    return m_shape;
}

void OutlineShape::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    painter->setPen(pen());
    painter->setBrush(m_filled ? brush() : Qt::NoBrush);
    painter->drawPath(m_path);
}
