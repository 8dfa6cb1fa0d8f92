#pragma once

// Orientation tests on points already scaled so that coordinate products cannot overflow
// (see unitScale).

#include <QPointF>

#include <algorithm>

// Twice the signed area of the triangle abc: positive when c lies to the left of a->b with y pointing up.
inline double orientation(const QPointF& a, const QPointF& b, const QPointF& c) {
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

inline int signOf(double v) {
    return (v > 0) - (v < 0);
}

// Whether p, collinear with a and b, lies on the closed segment ab.
inline bool withinSegmentBox(const QPointF& a, const QPointF& b, const QPointF& p) {
    return p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) &&
           p.y() >= std::min(a.y(), b.y()) && p.y() <= std::max(a.y(), b.y());
}

// Whether the closed segments a1a2 and b1b2 share a point (touching counts).
inline bool segmentsTouch(const QPointF& a1, const QPointF& a2, const QPointF& b1, const QPointF& b2) {
    const int o1 = signOf(orientation(a1, a2, b1)), o2 = signOf(orientation(a1, a2, b2));
    const int o3 = signOf(orientation(b1, b2, a1)), o4 = signOf(orientation(b1, b2, a2));
    if (o1 != o2 && o3 != o4)
        return true;
    return (o1 == 0 && withinSegmentBox(a1, a2, b1)) || (o2 == 0 && withinSegmentBox(a1, a2, b2)) ||
           (o3 == 0 && withinSegmentBox(b1, b2, a1)) || (o4 == 0 && withinSegmentBox(b1, b2, a2));
}
