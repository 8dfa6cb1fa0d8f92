#include "GeometrySelfIntersection.h"

#include "GeometryFinite.h"
#include "GeometryOrientation.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <vector>

namespace {

bool lexicographic(const QPointF& a, const QPointF& b) {
    return a.x() < b.x() || (a.x() == b.x() && a.y() < b.y());
}

struct Edge {
    QPointF left, right;
};

class Sweep {
public:
    Sweep(const QList<QPointF>& points, bool closed)
        : p(points)
        , closed(closed) {
        const int n = int(p.size());
        const int m = closed ? n : n - 1;
        edges.reserve(m);
        for (int k = 0; k < m; ++k) {
            QPointF a = p[k], b = p[(k + 1) % n];
            if (lexicographic(b, a))
                std::swap(a, b);
            edges.push_back({a, b});
        }
    }

    bool run() {
        const int m = int(edges.size());
        // Event 2k is edge k's left end, 2k + 1 its right end; at one point left ends come first.
        std::vector<int> events(2 * m);
        std::iota(events.begin(), events.end(), 0);
        std::sort(events.begin(), events.end(), [this](int a, int b) {
            const QPointF& pa = a % 2 ? edges[a / 2].right : edges[a / 2].left;
            const QPointF& pb = b % 2 ? edges[b / 2].right : edges[b / 2].left;
            if (!samePoint(pa, pb))
                return lexicographic(pa, pb);
            return a % 2 != b % 2 ? a % 2 < b % 2 : a < b;
        });
        const auto below = [this](int a, int b) { return less(a, b); };
        std::set<int, decltype(below)> active(below);
        std::vector<std::set<int, decltype(below)>::iterator> where(m, active.end());
        for (int event : events) {
            const int e = event / 2;
            if (event % 2 == 0) {
                const auto [it, inserted] = active.insert(e);
                // Never equal under the index tie-break; refusing keeps `where` exact regardless.
                if (!inserted)
                    return true;
                where[e] = it;
                if ((it != active.begin() && meet(*std::prev(it), e)) ||
                    (std::next(it) != active.end() && meet(e, *std::next(it))))
                    return true;
                continue;
            }
            const auto it = where[e];
            const bool hasBelow = it != active.begin(), hasAbove = std::next(it) != active.end();
            if ((hasBelow && meet(*std::prev(it), e)) || (hasAbove && meet(e, *std::next(it))) ||
                (hasBelow && hasAbove && meet(*std::prev(it), *std::next(it))))
                return true;
            active.erase(it);
        }
        return false;
    }

private:
    const QList<QPointF>& p;
    const bool closed;
    std::vector<Edge> edges;

    bool neighbours(int a, int b) const {
        const int m = int(edges.size());
        return std::abs(a - b) == 1 || (closed && m > 2 && std::abs(a - b) == m - 1);
    }

    // Neighbouring edges share one vertex; they meet elsewhere only when they fold back over each other.
    bool folds(int a, int b) const {
        const int n = int(p.size());
        if ((b + 1) % n != a)
            std::swap(a, b);
        // Now edge a runs p[a] -> p[a + 1] and b ends where a starts: b = p[a - 1] -> p[a].
        const QPointF& v = p[a];
        const QPointF& next = p[(a + 1) % n];
        const QPointF& previous = p[b];
        return orientation(previous, v, next) == 0 && QPointF::dotProduct(previous - v, next - v) > 0;
    }

    bool meet(int a, int b) const {
        if (neighbours(a, b))
            return folds(a, b);
        return segmentsTouch(edges[a].left, edges[a].right, edges[b].left, edges[b].right);
    }

    // Where s lies relative to the active edge r that started no later: +1 above, -1 below, 0 along it.
    int side(int r, int s) const {
        const Edge& er = edges[r];
        const Edge& es = edges[s];
        if (er.left.x() == er.right.x()) {
            // A vertical edge points straight up from its left (lower) end.
            if (es.left.y() != er.left.y())
                return es.left.y() > er.left.y() ? 1 : -1;
            return es.left.x() == es.right.x() ? 0 : -1;
        }
        const int first = signOf(orientation(er.left, er.right, es.left));
        return first != 0 ? first : signOf(orientation(er.left, er.right, es.right));
    }

    // The order of the active edges along the sweep line, bottom to top.
    bool less(int a, int b) const {
        if (a == b)
            return false;
        const bool aFirst =
            lexicographic(edges[a].left, edges[b].left) || (samePoint(edges[a].left, edges[b].left) && a < b);
        const int s = aFirst ? side(a, b) : -side(b, a);
        return s != 0 ? s > 0 : a < b;
    }
};

// Whether two points are equal other than as neighbours in the list.
bool repeatsVertex(const QList<QPointF>& p) {
    std::vector<QPointF> sorted(p.begin(), p.end());
    std::sort(sorted.begin(), sorted.end(), lexicographic);
    return std::adjacent_find(sorted.begin(), sorted.end(), samePoint) != sorted.end();
}

} // namespace

bool polygonSelfIntersects(const QPolygonF& polygon, bool closed) {
    if (!allFinite(polygon))
        return true;
    QList<QPointF> p = finiteDistinct(polygon, closed);
    const double s = unitScale(p);
    for (QPointF& q : p)
        q *= s;
    if (p.size() < 2 || (closed && p.size() == 2))
        return p.size() == 2;
    if (repeatsVertex(p))
        return true;
    return Sweep(p, closed).run();
}
