#include "GeometryPolygons.h"

#include <QLineF>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <unordered_set>

double PolygonArea(double* x, double* y, int n) {
    double area = 0;
    for (int i = 0; i < n; ++i) {
        const int j = i == 0 ? n - 1 : i - 1;
        area += (x[j] + x[i]) * (y[j] - y[i]);
    }
    return area / 2;
}

double PolygonArea(QPointF* pts, int n) {
    double area = 0;
    for (int i = 0; i < n; ++i) {
        const QPointF& a = pts[i];
        const QPointF& b = pts[(i + 1) % n];
        area += a.x() * b.y() - b.x() * a.y();
    }
    return std::fabs(area / 2);
}

double PointListArea(QList<QPointF> pts, double scale) {
    for (QPointF& p : pts)
        p *= scale;
    return PolygonArea(pts.data(), pts.size());
}

long long Square(const QPolygonF& poly) {
    const int n = poly.size();
    double sum = 0;
    for (int i = 0; i < n; ++i)
        sum += poly[i].x() * (poly[(i + n - 1) % n].y() - poly[(i + 1) % n].y());
    return static_cast<long long>(std::floor(std::fabs(sum / 2)));
}

namespace {

template <typename Point> int centroidOf(int n, Point point, double* xc, double* yc, double* area) {
    if (n < 3)
        return 1;
    double A = 0, Sx = 0, Sy = 0;
    for (int i = 0; i < n; ++i) {
        const int j = i == 0 ? n - 1 : i - 1;
        const QPointF pi = point(i);
        const QPointF pj = point(j);
        const double a = pj.x() * pi.y() - pi.x() * pj.y();
        A += a;
        Sx += (pj.x() + pi.x()) * a;
        Sy += (pj.y() + pi.y()) * a;
    }
    *area = A / 2;
    if (A == 0)
        return 2;
    *xc = Sx / (3 * A);
    *yc = Sy / (3 * A);
    return 0;
}

// 32-bit truncation that saturates instead of overflowing.
std::int32_t truncated(double v) {
    if (!(v > -2147483648.0))
        return std::isnan(v) ? 0 : std::numeric_limits<std::int32_t>::min();
    if (v >= 2147483647.0)
        return std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(v);
}

// Sum over a of the truncated squared distance to the nearest point of b, in wrapping 32-bit arithmetic.
std::int32_t directedHausdorff(const QList<QPointF>& a, const QList<QPointF>& b) {
    std::uint32_t sum = 0;
    for (const QPointF& p : a) {
        std::uint32_t nearest = 1000000;
        for (const QPointF& q : b) {
            const std::uint32_t dx = static_cast<std::uint32_t>(truncated(p.x() - q.x()));
            const std::uint32_t dy = static_cast<std::uint32_t>(truncated(p.y() - q.y()));
            const std::uint32_t d = dx * dx + dy * dy;
            if (static_cast<std::int32_t>(d) < static_cast<std::int32_t>(nearest))
                nearest = d;
            if (nearest == 0)
                break;
        }
        sum += nearest;
    }
    return static_cast<std::int32_t>(sum);
}

double pointToSegment(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF d = b - a;
    const double l2 = QPointF::dotProduct(d, d);
    const double t = l2 == 0 ? 0 : std::clamp(QPointF::dotProduct(p - a, d) / l2, 0.0, 1.0);
    const QPointF foot = a + t * d;
    return std::hypot(p.x() - foot.x(), p.y() - foot.y());
}

double pointToContour(const QPointF& p, const QVector<QPointF>& contour) {
    double best = std::numeric_limits<double>::infinity();
    const int n = contour.size();
    for (int i = 0; i < n; ++i)
        best = std::min(best, pointToSegment(p, contour[i], contour[(i + 1) % n]));
    return best;
}

} // namespace

int polyCentroid(double x[], double y[], int n, double* xc, double* yc, double* area) {
    return centroidOf(
        n, [x, y](int i) { return QPointF(x[i], y[i]); }, xc, yc, area);
}

int polyCentroid2(QList<QPointF> pts, double* xc, double* yc, double* area) {
    return centroidOf(
        pts.size(), [&pts](int i) { return pts[i]; }, xc, yc, area);
}

bool isConvex(QPolygonF poly) {
    const int n = poly.size();
    double twiceArea = 0;
    for (int i = 0; i < n; ++i)
        twiceArea += poly[i].x() * poly[(i + 1) % n].y() - poly[(i + 1) % n].x() * poly[i].y();
    // Measuring from the outgoing edge for one orientation and from the incoming one for the other makes
    // 360 - angle the turn at the vertex, whichever way the polygon runs.
    const bool screenClockwise = twiceArea > 0;
    for (int i = 0; i < n; ++i) {
        const QLineF in(poly[(i + n - 1) % n], poly[i]);
        const QLineF out(poly[i], poly[(i + 1) % n]);
        const double a = screenClockwise ? in.angleTo(out) : out.angleTo(in);
        if (360 - a > 170)
            return false;
    }
    return true;
}

double distance_hausdorff(const QList<QPointF>& a, const QList<QPointF>& b) {
    return std::sqrt(static_cast<double>(std::max(directedHausdorff(a, b), directedHausdorff(b, a))));
}

QPolygonF MakePointsUnique(const QPolygonF& poly) {
    // Hashing +0 and -0 alike keeps the hash consistent with ==; NaN never equals itself and is always kept.
    const auto hash = [](const QPointF& p) {
        return std::hash<double>()(p.x() + 0.0) * 31 + std::hash<double>()(p.y() + 0.0);
    };
    const auto equal = [](const QPointF& p, const QPointF& q) { return p.x() == q.x() && p.y() == q.y(); };
    std::unordered_set<QPointF, decltype(hash), decltype(equal)> seen(poly.size(), hash, equal);
    QPolygonF unique;
    for (const QPointF& p : poly) {
        if (seen.insert(p).second)
            unique << p;
    }
    return unique;
}

QVector<QPointF> GetReversePoints(const QVector<QPointF>& pts) {
    return QVector<QPointF>(pts.crbegin(), pts.crend());
}

int GetLengthContour(const QVector<QPointF>& a, const QVector<QPointF>& b) {
    if (a.isEmpty() || b.isEmpty())
        return -1;
    double sum = 0;
    for (const QPointF& p : a)
        sum += pointToContour(p, b);
    for (const QPointF& p : b)
        sum += pointToContour(p, a);
    return static_cast<int>(std::lround(sum / (a.size() + b.size())));
}
