#include "GeometryIntersections.h"
#include "SinglePrecision.h"

#include <algorithm>
#include <cmath>

namespace {

// Axis-parallel conic A x^2 + C y^2 + D x + E y + F = 0.
struct Conic {
    double A, C, D, E, F;
    double value(double x, double y) const { return A * x * x + C * y * y + D * x + E * y + F; }
    Conic swapped() const { return {C, A, E, D, F}; }
};

// Polynomial with coefficients in ascending order.
using Poly = QVector<double>;

double evaluate(const Poly& p, double x) {
    double v = 0;
    for (int i = p.size() - 1; i >= 0; --i)
        v = v * x + p[i];
    return v;
}

// Magnitude of the terms of p at x: the scale against which a value counts as zero.
double magnitude(const Poly& p, double x) {
    double m = 0;
    double power = 1;
    for (double c : p) {
        m += std::fabs(c) * power;
        power *= std::fabs(x);
    }
    return m;
}

Poly trimmed(Poly p) {
    while (!p.isEmpty() && p.last() == 0)
        p.removeLast();
    return p;
}

double bisect(const Poly& p, double lo, double hi) {
    const bool rising = evaluate(p, lo) < 0;
    for (int i = 0; i < 200; ++i) {
        const double mid = (lo + hi) / 2;
        if (mid <= lo || mid >= hi)
            break;
        (evaluate(p, mid) < 0) == rising ? lo = mid : hi = mid;
    }
    return (lo + hi) / 2;
}

// Real roots in [lo, hi]: p is monotonic between the roots of its derivative, so each such piece holds at
// most one sign change; an extremum that touches zero is a double root.
QVector<double> realRoots(const Poly& poly, double lo, double hi) {
    const Poly p = trimmed(poly);
    QVector<double> roots;
    if (p.size() < 2)
        return roots;
    if (p.size() == 2) {
        const double x = -p[0] / p[1];
        if (x >= lo && x <= hi)
            roots << x;
        return roots;
    }
    Poly derivative;
    for (int i = 1; i < p.size(); ++i)
        derivative << i * p[i];
    QVector<double> cuts = realRoots(derivative, lo, hi);
    cuts.prepend(lo);
    cuts.append(hi);
    const auto isZero = [&p](double x) { return std::fabs(evaluate(p, x)) <= 1e-10 * magnitude(p, x); };
    for (int i = 0; i + 1 < cuts.size(); ++i) {
        const double a = cuts[i];
        const double b = cuts[i + 1];
        const double fa = evaluate(p, a);
        const double fb = evaluate(p, b);
        if (isZero(a))
            roots << a;
        else if (!isZero(b) && ((fa < 0) != (fb < 0)))
            roots << bisect(p, a, b);
    }
    if (isZero(hi))
        roots << hi;
    return roots;
}

// x range of an ellipse, false when the conic is not a real ellipse.
bool xExtent(const Conic& c, double* lo, double* hi) {
    if (!(c.A > 0 && c.C > 0))
        return false;
    const double g = c.D * c.D / (4 * c.A) + c.E * c.E / (4 * c.C) - c.F;
    if (g < 0)
        return false;
    const double centre = -c.D / (2 * c.A);
    const double half = std::sqrt(g / c.A);
    const double margin = 1e-9 * (half + std::fabs(centre)) + 1e-300;
    *lo = centre - half - margin;
    *hi = centre + half + margin;
    return true;
}

// Solves the pair through y = q(x), the line-free combination C2 e1 - C1 e2 solved for y.
QList<QPointF> solveEliminatingY(const Conic& e1, const Conic& e2) {
    QList<QPointF> points;
    double lo = 0;
    double hi = 0;
    if (!xExtent(e1, &lo, &hi))
        return points;
    const double alpha = e1.A * e2.C - e2.A * e1.C;
    const double beta = e1.D * e2.C - e2.D * e1.C;
    const double eps = e1.E * e2.C - e2.E * e1.C;
    const double gamma = e1.F * e2.C - e2.F * e1.C;
    const double q2 = -alpha / eps;
    const double q1 = -beta / eps;
    const double q0 = -gamma / eps;
    const Poly quartic = {e1.C * q0 * q0 + e1.E * q0 + e1.F, 2 * e1.C * q1 * q0 + e1.E * q1 + e1.D,
                          e1.C * (q1 * q1 + 2 * q2 * q0) + e1.E * q2 + e1.A, 2 * e1.C * q2 * q1,
                          e1.C * q2 * q2};
    for (double x : realRoots(quartic, lo, hi))
        points << QPointF(x, q2 * x * x + q1 * x + q0);
    return points;
}

// Both linear eliminations vanish: the centres coincide and only x^2 is left.
QList<QPointF> solveConcentric(const Conic& e1, const Conic& e2) {
    QList<QPointF> points;
    double lo = 0;
    double hi = 0;
    if (!xExtent(e1, &lo, &hi))
        return points;
    const Poly inX = {e1.F * e2.C - e2.F * e1.C, e1.D * e2.C - e2.D * e1.C, e1.A * e2.C - e2.A * e1.C};
    for (double x : realRoots(inX, lo, hi)) {
        // e1 as a quadratic in y at this x.
        const double c = e1.A * x * x + e1.D * x + e1.F;
        double disc = e1.E * e1.E - 4 * e1.C * c;
        if (disc < 0 && -disc <= 1e-12 * (e1.E * e1.E + std::fabs(4 * e1.C * c)))
            disc = 0;
        if (disc < 0)
            continue;
        const double root = std::sqrt(disc);
        points << QPointF(x, (-e1.E + root) / (2 * e1.C));
        if (root > 0)
            points << QPointF(x, (-e1.E - root) / (2 * e1.C));
    }
    return points;
}

// A few Newton steps on the pair, which removes the error the elimination amplified.
QPointF polished(const Conic& e1, const Conic& e2, QPointF p) {
    for (int i = 0; i < 8; ++i) {
        const double f1 = e1.value(p.x(), p.y());
        const double f2 = e2.value(p.x(), p.y());
        const double a = 2 * e1.A * p.x() + e1.D;
        const double b = 2 * e1.C * p.y() + e1.E;
        const double c = 2 * e2.A * p.x() + e2.D;
        const double d = 2 * e2.C * p.y() + e2.E;
        const double det = a * d - b * c;
        if (!std::isfinite(det) || std::fabs(det) <= 1e-12 * (std::fabs(a * d) + std::fabs(b * c)))
            break;
        const QPointF step((d * f1 - b * f2) / det, (a * f2 - c * f1) / det);
        if (!std::isfinite(step.x()) || !std::isfinite(step.y()))
            break;
        p -= step;
    }
    return p;
}

Conic conicFrom(const QVector<double>& f) {
    return {f[0], f[2], f[3], f[4], f[5]};
}

// Normalised so that the x^2 coefficient is positive (an ellipse then also has C > 0).
Conic positive(Conic c) {
    if (c.A < 0)
        c = {-c.A, -c.C, -c.D, -c.E, -c.F};
    return c;
}

} // namespace

bool ellipseLineIntersection(QRectF e, QPointF a, QPointF b, QList<QPointF>& out, bool segment) {
    if (e.width() == 0 || e.height() == 0 || a == b)
        return false;
    e = e.normalized();
    // Single precision as the items always computed it.
    const QPointF centre(toSingle(e.center().x()), toSingle(e.center().y()));
    const double rx = toSingle(e.width() / 2);
    const double ry = toSingle(e.height() / 2);
    a -= centre;
    b -= centre;
    const QPointF d = b - a;
    const double rx2 = rx * rx;
    const double ry2 = ry * ry;
    const double A = d.x() * d.x() / rx2 + d.y() * d.y() / ry2;
    const double B = 2 * (a.x() * d.x() / rx2 + a.y() * d.y() / ry2);
    const double C = a.x() * a.x() / rx2 + a.y() * a.y() / ry2 - 1;
    const double disc = toSingle(B * B - 4 * A * C);
    QVector<double> roots;
    if (disc == 0) {
        roots << -B / (2 * A);
    } else if (disc > 0) {
        roots << (std::sqrt(disc) - B) / (2 * A) << (-B - std::sqrt(disc)) / (2 * A);
    }
    for (double t : roots) {
        if (!segment || (t >= 0 && t <= 1))
            out << a + t * d + centre;
    }
    return true;
}

QVector<double> GetEllipseFormula(const QRectF& rect) {
    const QRectF r = rect.normalized();
    if (r.width() == 0 || r.height() == 0)
        return {};
    const double h = r.center().x();
    const double k = r.center().y();
    const double a2 = r.width() * r.width() / 4;
    const double b2 = r.height() * r.height() / 4;
    return {1 / a2, 0, 1 / b2, -2 * h / a2, -2 * k / b2, h * h / a2 + k * k / b2 - 1};
}

int FindPointsOfIntersection(const QVector<double>& f1, const QVector<double>& f2, QList<QPointF>& out) {
    if (f1.size() != 6 || f2.size() != 6 || f1[1] != 0 || f2[1] != 0)
        return 0;
    const Conic e1 = positive(conicFrom(f1));
    const Conic e2 = positive(conicFrom(f2));
    // The linear coefficients left after cancelling y^2 (eps) or x^2 (delta); the larger relative one gives
    // the better conditioned elimination, and both vanish only for concentric ellipses.
    const double eps = e1.E * e2.C - e2.E * e1.C;
    const double delta = e1.D * e2.A - e2.D * e1.A;
    const double epsScale = std::fabs(e1.E * e2.C) + std::fabs(e2.E * e1.C) + std::fabs(e1.C * e2.C);
    const double deltaScale = std::fabs(e1.D * e2.A) + std::fabs(e2.D * e1.A) + std::fabs(e1.A * e2.A);
    const double epsRel = std::fabs(eps) / epsScale;
    const double deltaRel = std::fabs(delta) / deltaScale;
    QList<QPointF> candidates;
    if (std::max(epsRel, deltaRel) <= 1e-12) {
        candidates = solveConcentric(e1, e2);
    } else if (epsRel >= deltaRel) {
        candidates = solveEliminatingY(e1, e2);
    } else {
        for (const QPointF& p : solveEliminatingY(e1.swapped(), e2.swapped()))
            candidates << QPointF(p.y(), p.x());
    }
    double lo = 0;
    double hi = 0;
    const double size = xExtent(e1, &lo, &hi) ? hi - lo : 1;
    QList<QPointF> found;
    for (const QPointF& candidate : candidates) {
        const QPointF p = polished(e1, e2, candidate);
        if (std::fabs(e1.value(p.x(), p.y())) > 1e-6 || std::fabs(e2.value(p.x(), p.y())) > 1e-6)
            continue;
        const bool known = std::any_of(found.cbegin(), found.cend(), [&p, size](const QPointF& q) {
            return std::hypot(p.x() - q.x(), p.y() - q.y()) <= 1e-7 * size;
        });
        if (!known)
            found << p;
    }
    out << found;
    return found.size();
}

bool ellipseIntersection(QRectF e1, QRectF e2, QList<QPointF>& out) {
    e1 = e1.normalized();
    e2 = e2.normalized();
    if (e1.isEmpty() || e2.isEmpty())
        return false;
    // Solved in the frame where e1 is the unit circle, which keeps the coefficients of order one.
    const QPointF c = e1.center();
    const double sx = e1.width() / 2;
    const double sy = e1.height() / 2;
    const QRectF local2((e2.left() - c.x()) / sx, (e2.top() - c.y()) / sy, e2.width() / sx, e2.height() / sy);
    QList<QPointF> local;
    if (FindPointsOfIntersection(GetEllipseFormula(QRectF(-1, -1, 2, 2)), GetEllipseFormula(local2), local) ==
        0)
        return false;
    for (const QPointF& p : local)
        out << QPointF(c.x() + p.x() * sx, c.y() + p.y() * sy);
    return true;
}
