#pragma once

#include <QPointF>

#include <cmath>

// Whether two points lie within the tolerance of each other.
inline bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= tolerance;
}
