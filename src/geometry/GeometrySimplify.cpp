#include "GeometrySimplify.h"

#include "GeometryChord.h"
#include "GeometryFinite.h"

#include <cmath>
#include <utility>
#include <vector>

namespace {

// Marks the points kept between first and last (both kept already; indices wrap around the list); an
// explicit stack, since a million points may nest deeply.
void markKept(const QList<QPointF>& p, qsizetype first, qsizetype last, double tolerance,
              std::vector<bool>& kept) {
    const qsizetype n = p.size();
    std::vector<std::pair<qsizetype, qsizetype>> stack{{first, last}};
    while (!stack.empty()) {
        const auto [a, b] = stack.back();
        stack.pop_back();
        const Chord chord(p[a % n], p[b % n]);
        double farthest = -1;
        qsizetype index = -1;
        for (qsizetype i = a + 1; i < b; ++i) {
            const double d = chord.distance(p[i % n]);
            if (d > farthest) {
                farthest = d;
                index = i;
            }
        }
        if (index < 0 || farthest <= tolerance)
            continue;
        kept[index % n] = true;
        stack.push_back({a, index});
        stack.push_back({index, b});
    }
}

} // namespace

QPolygonF simplifyPolyline(const QPolygonF& points, double tolerance, bool closed) {
    if (!allFinite(points))
        return QPolygonF();
    const QList<QPointF> p = finiteDistinct(points, closed);
    if (!std::isfinite(tolerance) || tolerance < 0)
        tolerance = 0;
    const qsizetype n = p.size();
    if (n < 3)
        return QPolygonF(p);
    std::vector<bool> kept(n, false);
    kept[0] = true;
    if (closed) {
        // The loop is cut at the point farthest from the first; both halves keep their ends.
        qsizetype far = 0;
        double farthest = -1;
        for (qsizetype i = 1; i < n; ++i) {
            const double d = std::hypot(p[i].x() - p[0].x(), p[i].y() - p[0].y());
            if (d > farthest) {
                farthest = d;
                far = i;
            }
        }
        kept[far] = true;
        markKept(p, 0, far, tolerance, kept);
        markKept(p, far, n, tolerance, kept);
    } else {
        kept[n - 1] = true;
        markKept(p, 0, n - 1, tolerance, kept);
    }
    QPolygonF out;
    for (qsizetype i = 0; i < n; ++i)
        if (kept[i])
            out.append(p[i]);
    return out;
}
