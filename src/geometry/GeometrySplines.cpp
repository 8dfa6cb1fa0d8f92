#include "GeometrySplines.h"

#include "GeometryFinite.h"
#include "GeometrySegments.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

using Bezier = std::array<QPointF, 4>;

constexpr int MaxDepth = 10;
constexpr double MaxPoints = 4194304;

double chord(const QPointF& a, const QPointF& b) {
    return std::hypot(b.x() - a.x(), b.y() - a.y());
}

// The span from p1 to p2 as a cubic Bezier: the Barry-Goldman tangents of the centripetal
// parametrisation, rescaled to the span's own parameter.
Bezier span(const QPointF& p0, const QPointF& p1, const QPointF& p2, const QPointF& p3) {
    const double t01 = std::sqrt(chord(p0, p1)), t12 = std::sqrt(chord(p1, p2)),
                 t23 = std::sqrt(chord(p2, p3));
    const QPointF m1 = (p1 - p0) / t01 - (p2 - p0) / (t01 + t12) + (p2 - p1) / t12;
    const QPointF m2 = (p2 - p1) / t12 - (p3 - p1) / (t12 + t23) + (p3 - p2) / t23;
    return {p1, p1 + m1 * (t12 / 3), p2 - m2 * (t12 / 3), p2};
}

// The spans of the curve, or none for fewer than 2 usable points.
std::vector<Bezier> spans(const QPolygonF& points, bool closed) {
    if (!allFinite(points))
        return {};
    const QList<QPointF> p = finiteDistinct(points, closed);
    const qsizetype n = p.size();
    if (n < 2)
        return {};
    closed = closed && n >= 3;
    const auto at = [&](qsizetype i) {
        if (closed)
            return p[(i + n) % n];
        // Mirrored ends make the first and last spans start and end like their neighbours' chords.
        if (i < 0)
            return 2 * p[0] - p[1];
        if (i >= n)
            return 2 * p[n - 1] - p[n - 2];
        return p[i];
    };
    std::vector<Bezier> out;
    const qsizetype count = closed ? n : n - 1;
    out.reserve(count);
    for (qsizetype i = 0; i < count; ++i) {
        out.push_back(span(at(i - 1), at(i), at(i + 1), at(i + 2)));
        // Chords beyond the double range: the curve cannot be represented.
        if (!allFinite(out.back()))
            return {};
    }
    return out;
}

void sample(const Bezier& b, double flatness, int depth, QPolygonF& out) {
    if (depth == 0 || (distancePointToSegment(b[1], b[0], b[3]) <= flatness &&
                       distancePointToSegment(b[2], b[0], b[3]) <= flatness)) {
        out.append(b[3]);
        return;
    }
    // de Casteljau halves.
    const QPointF ab = (b[0] + b[1]) / 2, bc = (b[1] + b[2]) / 2, cd = (b[2] + b[3]) / 2;
    const QPointF abc = (ab + bc) / 2, bcd = (bc + cd) / 2, mid = (abc + bcd) / 2;
    sample({b[0], ab, abc, mid}, flatness, depth - 1, out);
    sample({mid, bcd, cd, b[3]}, flatness, depth - 1, out);
}

// The derivative of a span, a quadratic in the differences of its control points; they are divided by
// their largest coordinate so the speed can be taken with a plain square root.
struct Hodograph {
    QPointF d0, d1, d2;
    double scale = 0;

    explicit Hodograph(const Bezier& b) {
        const QPointF d[] = {b[1] - b[0], b[2] - b[1], b[3] - b[2]};
        for (const QPointF& q : d)
            scale = std::max({scale, std::fabs(q.x()), std::fabs(q.y())});
        if (scale > 0) {
            d0 = d[0] / scale;
            d1 = d[1] / scale;
            d2 = d[2] / scale;
        }
    }

    double speed(double u) const {
        const double v = 1 - u;
        const QPointF d = v * v * d0 + 2 * v * u * d1 + u * u * d2;
        return 3 * std::sqrt(d.x() * d.x() + d.y() * d.y());
    }
};

// Five-point Gauss-Legendre rule over [a, c].
double gauss(const Hodograph& h, double a, double c) {
    static const double x[] = {0, 0.5384693101056831, 0.9061798459386640};
    static const double w[] = {0.5688888888888889, 0.4786286704993665, 0.2369268850561891};
    const double half = (c - a) / 2, mid = (a + c) / 2;
    double sum = w[0] * h.speed(mid);
    for (int i = 1; i < 3; ++i)
        sum += w[i] * (h.speed(mid - half * x[i]) + h.speed(mid + half * x[i]));
    return sum * half;
}

double adaptive(const Hodograph& h, double a, double c, double whole, double tolerance, int depth) {
    const double mid = (a + c) / 2;
    const double left = gauss(h, a, mid), right = gauss(h, mid, c);
    if (depth == 0 || std::fabs(left + right - whole) <= tolerance)
        return left + right;
    return adaptive(h, a, mid, left, tolerance / 2, depth - 1) +
           adaptive(h, mid, c, right, tolerance / 2, depth - 1);
}

} // namespace

QPolygonF catmullRomPolyline(const QPolygonF& points, double flatness, bool closed) {
    const std::vector<Bezier> curve = spans(points, closed);
    if (curve.empty()) {
        const QList<QPointF> single = allFinite(points) ? finiteDistinct(points, closed) : QList<QPointF>();
        return single.size() == 1 ? QPolygonF(single) : QPolygonF();
    }
    if (!std::isfinite(flatness) || flatness < 0)
        flatness = 0;
    const int depth = std::clamp(int(std::log2(MaxPoints / curve.size())), 0, MaxDepth);
    QPolygonF out{curve.front()[0]};
    for (const Bezier& b : curve)
        sample(b, flatness, depth, out);
    return out;
}

double catmullRomLength(const QPolygonF& points, bool closed) {
    double length = 0;
    for (const Bezier& b : spans(points, closed)) {
        const Hodograph h(b);
        const double estimate = gauss(h, 0, 1);
        length += h.scale * adaptive(h, 0, 1, estimate, 1e-8 * estimate, 40);
    }
    return std::isfinite(length) ? length : 0;
}

QPolygonF catmullRomBezier(const QPolygonF& points, bool closed) {
    const std::vector<Bezier> curve = spans(points, closed);
    if (curve.empty())
        return QPolygonF();
    QPolygonF out;
    out.reserve(qsizetype(3 * curve.size() + 1));
    out.append(curve.front()[0]);
    for (const Bezier& b : curve)
        out << b[1] << b[2] << b[3];
    return out;
}
