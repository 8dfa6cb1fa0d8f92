#include "OutlineShape.h"

#include <QPainter>
#include <QPainterPathStroker>

#include <algorithm>

namespace {

// Open outlines are easy to hit: a few units on either side of the line.
constexpr double HitWidth = 6;

} // namespace

OutlineShape::OutlineShape() = default;

void OutlineShape::setPath(const QPainterPath& path) {
    prepareGeometryChange();
    m_path = path;
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

QRectF OutlineShape::boundingRect() const {
    if (!m_boundsValid) {
        m_bounds = m_path.controlPointRect();
        m_boundsValid = true;
    }
    // Cosmetic pens keep their width on screen; a unit of margin covers the hairline.
    const double margin = pen().style() == Qt::NoPen ? 0.0 : std::max(pen().widthF(), 1.0) / 2;
    return m_bounds.adjusted(-margin, -margin, margin, margin);
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
