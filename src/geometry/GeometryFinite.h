#pragma once

// Input checks shared by the measuring functions: a point with a non-finite coordinate is refused
// where it enters, so no NaN reaches a result.

#include <QList>
#include <QPointF>

#include <algorithm>
#include <cmath>

inline bool isFinitePoint(const QPointF& p) {
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Exact equality: QPointF's operator== is fuzzy and would merge distinct nearby points, or break an
// ordering built on exact comparisons.
inline bool samePoint(const QPointF& a, const QPointF& b) {
    return a.x() == b.x() && a.y() == b.y();
}

template <typename Points> bool allFinite(const Points& points) {
    for (const QPointF& p : points)
        if (!isFinitePoint(p))
            return false;
    return true;
}

// Points with finite coordinates, consecutive repeats dropped (and, for a closed outline, a last point
// equal to the first).
template <typename Points> QList<QPointF> finiteDistinct(const Points& points, bool closed) {
    QList<QPointF> out;
    out.reserve(points.size());
    for (const QPointF& p : points)
        if (isFinitePoint(p) && (out.isEmpty() || !samePoint(out.last(), p)))
            out.append(p);
    if (closed)
        while (out.size() > 1 && samePoint(out.last(), out.first()))
            out.removeLast();
    return out;
}

// A power of two that brings the largest coordinate to at most 1, so products of coordinates neither
// overflow nor lose exactness to the scaling itself.
template <typename Points> double unitScale(const Points& points) {
    double largest = 0;
    for (const QPointF& p : points)
        largest = std::max({largest, std::fabs(p.x()), std::fabs(p.y())});
    if (largest == 0 || !std::isfinite(largest))
        return 1;
    int exponent = 0;
    std::frexp(largest, &exponent);
    // Tiny coordinates are brought up only as far as a finite power of two allows.
    return std::ldexp(1.0, -std::max(exponent, -1022));
}
