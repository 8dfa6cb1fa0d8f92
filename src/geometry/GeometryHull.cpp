#include "GeometryHull.h"

#include "GeometryFinite.h"
#include "GeometryOrientation.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr double Pi = 3.141592653589793;

bool lexicographic(const QPointF& a, const QPointF& b) {
    return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

// Andrew's monotone chain on points scaled by `scale`; positive orientation (y up).
std::vector<QPointF> scaledHull(const QPolygonF& points, double& scale) {
    std::vector<QPointF> p;
    p.reserve(points.size());
    for (const QPointF& q : points)
        if (isFinitePoint(q))
            p.push_back(q);
    scale = unitScale(p);
    for (QPointF& q : p)
        q *= scale;
    std::sort(p.begin(), p.end(), lexicographic);
    p.erase(std::unique(p.begin(), p.end(), samePoint), p.end());
    if (p.size() < 3)
        return p;
    std::vector<QPointF> hull(2 * p.size());
    size_t k = 0;
    for (size_t i = 0; i < p.size(); ++i) {
        while (k >= 2 && orientation(hull[k - 2], hull[k - 1], p[i]) <= 0)
            --k;
        hull[k++] = p[i];
    }
    for (size_t i = p.size() - 1, lower = k + 1; i-- > 0;) {
        while (k >= lower && orientation(hull[k - 2], hull[k - 1], p[i]) <= 0)
            --k;
        hull[k++] = p[i];
    }
    hull.resize(k - 1);
    return hull;
}

double lineAngle(const QPointF& from, const QPointF& to) {
    double a = std::atan2(-(to.y() - from.y()), to.x() - from.x()) * 180 / Pi;
    if (a < 0)
        a += 180;
    return a >= 180 ? 0 : a;
}

Caliper caliper(const QPointF& from, const QPointF& to, double scale) {
    const QPointF f = from / scale, t = to / scale;
    return Caliper{std::hypot(t.x() - f.x(), t.y() - f.y()), lineAngle(f, t), f, t};
}

// Calls visit(i, j) for each hull edge i -> i + 1 with j the vertex farthest from it.
template <typename Visit> void rotateCalipers(const std::vector<QPointF>& h, Visit visit) {
    const size_t n = h.size();
    size_t j = 1;
    for (size_t i = 0; i < n; ++i) {
        const QPointF& a = h[i];
        const QPointF& b = h[(i + 1) % n];
        // Every vertex is visited at most twice in all, so the walk cannot loop.
        for (size_t step = 0; step < n && orientation(a, b, h[(j + 1) % n]) > orientation(a, b, h[j]); ++step)
            j = (j + 1) % n;
        visit(i, j);
    }
}

} // namespace

QPolygonF convexHull(const QPolygonF& points) {
    double scale = 1;
    QPolygonF out;
    for (const QPointF& p : scaledHull(points, scale))
        out.append(p / scale);
    return out;
}

std::optional<Caliper> maxFeretDiameter(const QPolygonF& points) {
    double scale = 1;
    const std::vector<QPointF> h = scaledHull(points, scale);
    if (h.empty())
        return std::nullopt;
    if (h.size() < 3)
        return caliper(h.front(), h.back(), scale);
    size_t bestA = 0, bestB = 0;
    double best = -1;
    auto consider = [&](size_t a, size_t b) {
        const double d = std::hypot(h[a].x() - h[b].x(), h[a].y() - h[b].y());
        if (d > best) {
            best = d;
            bestA = a;
            bestB = b;
        }
    };
    rotateCalipers(h, [&](size_t i, size_t j) {
        consider(i, j);
        consider((i + 1) % h.size(), j);
    });
    return caliper(h[bestA], h[bestB], scale);
}

std::optional<Caliper> minCaliperWidth(const QPolygonF& points) {
    double scale = 1;
    const std::vector<QPointF> h = scaledHull(points, scale);
    if (h.empty())
        return std::nullopt;
    if (h.size() < 3) {
        // Collinear points: no width, measured across the line they lie on.
        const QPointF d = h.back() - h.front();
        Caliper c = caliper(h.front(), h.front(), scale);
        c.angle = lineAngle(QPointF(0, 0), QPointF(-d.y(), d.x()));
        return c;
    }
    Caliper best;
    best.length = -1;
    rotateCalipers(h, [&](size_t i, size_t j) {
        const QPointF& a = h[i];
        const QPointF& b = h[(i + 1) % h.size()];
        // Along the unit direction: squared lengths of tiny scaled edges could underflow to 0.
        const QPointF d = b - a;
        const QPointF u = d / std::hypot(d.x(), d.y());
        const Caliper c = caliper(h[j], a + QPointF::dotProduct(h[j] - a, u) * u, scale);
        if (best.length < 0 || c.length < best.length)
            best = c;
    });
    return best;
}
