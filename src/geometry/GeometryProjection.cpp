#include "GeometryIntersections.h"

#include <algorithm>
#include <cmath>

bool CalculProjectionPoint(QPointF p, QPointF a, QPointF b, QPointF& out) {
    out = QPointF(0, 0);
    // 1e9 stands for the slope of a vertical line, so such projections are approximate.
    const double m = a.x() == b.x() ? 1e9 : (b.y() - a.y()) / (b.x() - a.x());
    const double k1 = a.y() - m * a.x();
    const double m2 = m == 0 ? -1e9 : -1 / m;
    const double k2 = p.y() - m2 * p.x();
    const double x = m == m2 ? 1e9 : (k2 - k1) / (m - m2);
    const double y = m == 0 ? k1 : -(1 / m) * x + k2;
    out = QPointF(x, y);
    return true;
}

QPointF constraint_angle(const QPointF& origin, const QPointF& p) {
    const double dx = p.x() - origin.x();
    const double dy = p.y() - origin.y();
    const double r = std::hypot(dx, dy);
    const double q = std::atan2(dy, dx) / 0.7853981633974483;
    double n = 0;
    if (q >= 0) {
        n = std::trunc(q + 0.5);
    } else {
        const double t = std::trunc(q - 1);
        n = t + std::trunc(q - t + 0.5);
    }
    const double a = n * 3.141592653589793 / 4;
    return QPointF(origin.x() + r * std::cos(a), origin.y() + r * std::sin(a));
}

QPointF constraint_square(const QPointF& origin, const QPointF& p) {
    const double dx = p.x() - origin.x();
    const double dy = p.y() - origin.y();
    const double side = std::max(std::fabs(dx), std::fabs(dy));
    return QPointF(origin.x() + (dx < 0 ? -side : side), origin.y() + (dy < 0 ? -side : side));
}
