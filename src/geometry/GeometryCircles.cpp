#include "GeometryIntersections.h"

#include <algorithm>
#include <cmath>

namespace {

bool insideArea(QPointF p, long width, long height) {
    return p.x() >= 0 && p.x() <= width && p.y() >= 0 && p.y() <= height;
}

// The shared result codes; a point at the origin counts as absent.
long classifySolutions(QPointF& o1, QPointF& o2, long width, long height) {
    if (o1 == o2)
        o2 = QPointF(0, 0);
    if (!o1.isNull() && o2.isNull())
        return insideArea(o1, width, height) ? 1 : 2;
    if (o1.isNull() || o2.isNull())
        return 0;
    return insideArea(o1, width, height) && insideArea(o2, width, height) ? 3 : 4;
}

} // namespace

long CalculIntersectionCercles(QPointF c1, double r1, QPointF c2, double r2, QPointF& o1, QPointF& o2,
                               long width, long height) {
    o1 = QPointF(0, 0);
    o2 = QPointF(0, 0);
    const double dx = c2.x() - c1.x();
    const double dy = c2.y() - c1.y();
    const double d = std::sqrt(dx * dx + dy * dy);
    if (d > r1 + r2 || std::fabs(r1 - r2) > d)
        return 0;
    const double a = (r1 * r1 - r2 * r2 + d * d) / (2 * d);
    const QPointF m(c1.x() + a * dx / d, c1.y() + a * dy / d);
    const double h = std::sqrt(r1 * r1 - a * a) / d;
    o1 = QPointF(m.x() - h * dy, m.y() + h * dx);
    o2 = QPointF(m.x() + h * dy, m.y() - h * dx);
    return classifySolutions(o1, o2, width, height);
}

long CalculIntersectionDroiteCercle(QPointF A, QPointF B, QPointF c, double r, QPointF& o1, QPointF& o2,
                                    long width, long height) {
    if (A == B)
        return -1;
    o1 = QPointF(0, 0);
    o2 = QPointF(0, 0);
    const QPointF d = B - A;
    const double a = d.x() * d.x() + d.y() * d.y();
    const double b = 2 * ((A.x() - c.x()) * d.x() + (A.y() - c.y()) * d.y());
    const double k = c.x() * c.x() + c.y() * c.y() + A.x() * A.x() + A.y() * A.y() -
                     2 * (c.x() * A.x() + c.y() * A.y()) - r * r;
    const double disc = b * b - 4 * a * k;
    if (disc < 0)
        return 0;
    if (disc == 0) {
        o1 = A + (-b / (2 * a)) * d;
    } else {
        const double root = std::sqrt(disc);
        o1 = A + ((root - b) / (2 * a)) * d;
        o2 = A + ((-b - root) / (2 * a)) * d;
    }
    return classifySolutions(o1, o2, width, height);
}

bool circle_circle_intersection(double x0, double y0, double r0, double xa, double ya, double ra, double* xi,
                                double* yi, double* xj, double* yj) {
    const double dx = xa - x0;
    const double dy = ya - y0;
    const double d = std::hypot(dx, dy);
    if (d == 0 || d > r0 + ra || d < std::fabs(r0 - ra))
        return false;
    // Distance from the first centre to the radical line, then half the chord; max() absorbs rounding
    // when the circles touch.
    const double a = (r0 * r0 - ra * ra + d * d) / (2 * d);
    const double h = std::sqrt(std::max(0.0, r0 * r0 - a * a));
    const double mx = x0 + dx * a / d;
    const double my = y0 + dy * a / d;
    const double rx = -dy * h / d;
    const double ry = dx * h / d;
    *xi = mx + rx;
    *yi = my + ry;
    *xj = mx - rx;
    *yj = my - ry;
    return true;
}

bool point_circle_tangent(QPointF c, double r, QPointF p, QPointF& t1, QPointF& t2) {
    const double alpha = std::asin(r / std::hypot(c.x() - p.x(), c.y() - p.y()));
    const double theta = std::atan2(c.y() - p.y(), c.x() - p.x());
    t1 = QPointF(c.x() + r * std::sin(theta - alpha), c.y() - r * std::cos(theta - alpha));
    t2 = QPointF(c.x() - r * std::sin(theta + alpha), c.y() + r * std::cos(theta + alpha));
    return true;
}

bool circle_circle_tangents(double xa, double ya, double ra, double xb, double yb, double rb,
                            QList<QPointF>& out) {
    const double d = std::hypot(xb - xa, yb - ya);
    if (d == 0)
        return false;
    const double vx = (xb - xa) / d;
    const double vy = (yb - ya) / d;
    bool found = false;
    // A tangent with unit normal n satisfies n.A - rA = n.B - s rB: outer tangents use s = 1, inner s = -1.
    for (const double s : {1.0, -1.0}) {
        const double c = (ra - s * rb) / d;
        if (c * c > 1)
            continue;
        const double h = std::sqrt(std::max(0.0, 1 - c * c));
        for (const double k : {1.0, -1.0}) {
            const double nx = vx * c - k * h * vy;
            const double ny = vy * c + k * h * vx;
            out << QPointF(xa + ra * nx, ya + ra * ny) << QPointF(xb + s * rb * nx, yb + s * rb * ny);
            found = true;
            if (h == 0)
                break;
        }
    }
    return found;
}

bool circleLineIntersectPoint(double r, QPointF c, QPointF a, QPointF b, QPointF& out) {
    const QPointF d = b - a;
    const QPointF f = a - c;
    const double qa = QPointF::dotProduct(d, d);
    if (qa == 0)
        return false;
    const double qb = 2 * QPointF::dotProduct(f, d);
    const double qc = QPointF::dotProduct(f, f) - r * r;
    const double disc = qb * qb - 4 * qa * qc;
    if (disc < 0)
        return false;
    // Roots without cancellation: q / qa and qc / q.
    const double q = -0.5 * (qb + (qb < 0 ? -1 : 1) * std::sqrt(disc));
    const double t1 = q / qa;
    const double t2 = q == 0 ? t1 : qc / q;
    // b sits at t = 1: keep the root closer to it.
    out = a + (std::fabs(t1 - 1) <= std::fabs(t2 - 1) ? t1 : t2) * d;
    return true;
}
