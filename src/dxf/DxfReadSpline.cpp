#include "DxfReadSpline.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace dxf::read {

namespace {

// Each knot span is cut at least into this many pieces before the flatness test, so that the test
// never meets a whole S bend, and at most into 2^kDeepest.
constexpr int kShallowest = 2;
constexpr int kDeepest = 12;

double distanceToSegment(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF ab = b - a;
    const double length2 = QPointF::dotProduct(ab, ab);
    double t = length2 > 0 ? QPointF::dotProduct(p - a, ab) / length2 : 0.0;
    t = std::clamp(t, 0.0, 1.0);
    const QPointF d = p - (a + t * ab);
    return std::hypot(d.x(), d.y());
}

struct Homogeneous {
    double x, y, w;
};

// De Boor's algorithm in homogeneous coordinates, for u in the span [knots[span], knots[span + 1]].
QPointF evaluate(const Nurbs& c, int span, double u) {
    const int p = c.degree;
    std::array<Homogeneous, kMostSplineDegree + 1> d;
    for (int j = 0; j <= p; ++j) {
        const size_t i = size_t(span - p + j);
        const double w = c.weights[i];
        d[size_t(j)] = {c.points[i].x() * w, c.points[i].y() * w, w};
    }
    for (int r = 1; r <= p; ++r) {
        for (int j = p; j >= r; --j) {
            const double lo = c.knots[size_t(span - p + j)];
            const double hi = c.knots[size_t(span + 1 + j - r)];
            const double a = (u - lo) / (hi - lo);
            Homogeneous& h = d[size_t(j)];
            const Homogeneous& g = d[size_t(j - 1)];
            h = {(1 - a) * g.x + a * h.x, (1 - a) * g.y + a * h.y, (1 - a) * g.w + a * h.w};
        }
    }
    const Homogeneous& h = d[size_t(p)];
    return QPointF(h.x / h.w, h.y / h.w);
}

class Flattener {
public:
    Flattener(const Nurbs& curve, double tolerance, QPolygonF& out, qsizetype mostPoints)
        : m_curve(curve)
        , m_tolerance(tolerance)
        , m_out(out)
        , m_most(mostPoints) {}

    bool span(int index) {
        const double a = m_curve.knots[size_t(index)];
        const double b = m_curve.knots[size_t(index) + 1];
        const QPointF pa = evaluate(m_curve, index, a);
        if (m_out.isEmpty())
            m_out.append(pa);
        return piece(index, a, pa, b, evaluate(m_curve, index, b), 0);
    }

private:
    bool piece(int index, double a, const QPointF& pa, double b, const QPointF& pb, int depth) {
        const double m = (a + b) / 2;
        const QPointF pm = evaluate(m_curve, index, m);
        const bool flat = depth >= kShallowest && distanceToSegment(pm, pa, pb) <= m_tolerance;
        if (flat || depth >= kDeepest) {
            if (m_out.size() >= m_most)
                return false;
            m_out.append(pb);
            return true;
        }
        return piece(index, a, pa, m, pm, depth + 1) && piece(index, m, pm, b, pb, depth + 1);
    }

    const Nurbs& m_curve;
    double m_tolerance;
    QPolygonF& m_out;
    qsizetype m_most;
};

} // namespace

bool makeValid(Nurbs& c) {
    const size_t n = c.points.size();
    if (c.degree < 1 || c.degree > kMostSplineDegree || n < size_t(c.degree) + 1 ||
        c.knots.size() != n + size_t(c.degree) + 1)
        return false;
    if (c.weights.empty())
        c.weights.assign(n, 1.0);
    if (c.weights.size() != n)
        return false;
    for (double w : c.weights)
        if (!(w > 0))
            return false;
    for (size_t i = 1; i < c.knots.size(); ++i)
        c.knots[i] = std::max(c.knots[i], c.knots[i - 1]);
    return c.knots[size_t(c.degree)] < c.knots[n];
}

bool flatten(const Nurbs& c, double tolerance, QPolygonF& out, qsizetype mostPoints) {
    Flattener flattener(c, tolerance, out, mostPoints);
    const int last = int(c.points.size());
    for (int span = c.degree; span < last; ++span)
        if (c.knots[size_t(span)] < c.knots[size_t(span) + 1] && !flattener.span(span))
            return false;
    return true;
}

QPainterPath throughFitPoints(const std::vector<QPointF>& given, QPointF startTangent, QPointF endTangent,
                              bool closed) {
    std::vector<QPointF> p;
    for (const QPointF& q : given)
        if (p.empty() || q != p.back())
            p.push_back(q);
    if (closed && p.size() > 2 && p.front() == p.back())
        p.pop_back();
    QPainterPath path;
    if (p.size() < 2) {
        return path;
    }
    const size_t n = p.size();
    const size_t segments = closed ? n : n - 1;
    auto at = [&](size_t i) { return p[i % n]; };
    auto chord = [&](size_t i) { // length of the segment from point i
        const QPointF d = at(i + 1) - at(i);
        return std::hypot(d.x(), d.y());
    };
    auto unit = [](const QPointF& v) {
        const double l = std::hypot(v.x(), v.y());
        return l > 0 ? v / l : QPointF();
    };
    // Tangents per unit of length: Catmull-Rom over chord lengths inside, given or parabolic at open ends.
    std::vector<QPointF> t(n);
    for (size_t i = 0; i < n; ++i) {
        if (!closed && (i == 0 || i == n - 1))
            continue;
        const size_t before = (i + n - 1) % n;
        t[i] = (at(i + 1) - at(before)) / (chord(before) + chord(i));
    }
    if (!closed) {
        const double first = chord(0), last = chord(n - 2);
        t[0] = !startTangent.isNull() ? unit(startTangent)
               : n > 2                ? 2 * (p[1] - p[0]) / first - t[1]
                                      : (p[1] - p[0]) / first;
        t[n - 1] = !endTangent.isNull() ? unit(endTangent)
                   : n > 2              ? 2 * (p[n - 1] - p[n - 2]) / last - t[n - 2]
                                        : (p[n - 1] - p[n - 2]) / last;
    }
    path.moveTo(p[0]);
    for (size_t i = 0; i < segments; ++i) {
        const double h = chord(i) / 3;
        path.cubicTo(at(i) + t[i] * h, at(i + 1) - t[(i + 1) % n] * h, at(i + 1));
    }
    if (closed)
        path.closeSubpath();
    return path;
}

} // namespace dxf::read
