#include "GeometryCircleFits.h"

#include "GeometryFinite.h"
#include "GeometryFitting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

// Below this sine of the angle between the chords, three points count as collinear.
constexpr double CollinearSine = 1e-10;

bool isUsable(const Circle& c) {
    return isFinitePoint(c.centre) && std::isfinite(c.radius) && c.radius > 0;
}

double squaredDeviationSum(const QList<QPointF>& q, double cx, double cy, double r) {
    double sum = 0;
    for (const QPointF& p : q) {
        const double e = std::hypot(p.x() - cx, p.y() - cy) - r;
        sum += e * e;
    }
    return sum;
}

// Solves the 3 x 3 system m x = v by Cramer's rule; false when it is singular.
bool solve3(const std::array<std::array<double, 3>, 3>& m, const std::array<double, 3>& v,
            std::array<double, 3>& x) {
    auto det = [](const std::array<std::array<double, 3>, 3>& a) {
        return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
               a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
               a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
    };
    const double d = det(m);
    if (d == 0 || !std::isfinite(d))
        return false;
    for (int k = 0; k < 3; ++k) {
        auto mk = m;
        for (int i = 0; i < 3; ++i)
            mk[i][k] = v[i];
        x[k] = det(mk) / d;
    }
    return std::isfinite(x[0]) && std::isfinite(x[1]) && std::isfinite(x[2]);
}

// Gauss-Newton on the distances to the circle, in a frame centred on the starting centre; each step is
// halved until it lowers the sum of squares, and the iteration stops when none does.
void refineGeometric(const QList<QPointF>& q, double& cx, double& cy, double& r) {
    double cost = squaredDeviationSum(q, cx, cy, r);
    for (int iteration = 0; iteration < 50; ++iteration) {
        std::array<std::array<double, 3>, 3> jtj{};
        std::array<double, 3> jte{};
        for (const QPointF& p : q) {
            const double dx = p.x() - cx, dy = p.y() - cy;
            const double d = std::hypot(dx, dy);
            const std::array<double, 3> j{d > 0 ? -dx / d : 0, d > 0 ? -dy / d : 0, -1};
            const double e = d - r;
            for (int a = 0; a < 3; ++a) {
                jte[a] += j[a] * e;
                for (int b = 0; b < 3; ++b)
                    jtj[a][b] += j[a] * j[b];
            }
        }
        std::array<double, 3> step{};
        if (!solve3(jtj, {-jte[0], -jte[1], -jte[2]}, step))
            return;
        bool improved = false;
        for (int halving = 0; halving < 20 && !improved; ++halving) {
            const double ncx = cx + step[0], ncy = cy + step[1], nr = r + step[2];
            const double ncost = squaredDeviationSum(q, ncx, ncy, nr);
            if (ncost < cost && nr > 0) {
                cx = ncx;
                cy = ncy;
                r = nr;
                cost = ncost;
                improved = true;
            }
            for (double& s : step)
                s /= 2;
        }
        if (!improved || std::hypot(step[0], step[1]) + std::fabs(step[2]) <= 1e-15 * r)
            return;
    }
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

} // namespace

std::optional<Circle> circleThroughPoints(const QPointF& a, const QPointF& b, const QPointF& c) {
    if (!isFinitePoint(a) || !isFinitePoint(b) || !isFinitePoint(c))
        return std::nullopt;
    const QList<QPointF> chords{b - a, c - a, c - b};
    if (!allFinite(chords))
        return std::nullopt;
    const double s = unitScale(chords);
    const QPointF u = chords[0] * s, v = chords[1] * s, w = chords[2] * s;
    const double uu = QPointF::dotProduct(u, u), vv = QPointF::dotProduct(v, v);
    const double cross = u.x() * v.y() - u.y() * v.x();
    const double longest = std::max({uu, vv, QPointF::dotProduct(w, w)});
    if (longest == 0 || std::fabs(cross) <= CollinearSine * longest)
        return std::nullopt;
    const QPointF offset((v.y() * uu - u.y() * vv) / (2 * cross), (u.x() * vv - v.x() * uu) / (2 * cross));
    const Circle circle{a + offset / s, std::hypot(offset.x(), offset.y()) / s};
    return isUsable(circle) ? std::optional<Circle>(circle) : std::nullopt;
}

std::optional<Circle> fitCircle(const QList<QPointF>& points) {
    if (points.size() < 3 || !allFinite(points))
        return std::nullopt;
    const double s = unitScale(points);
    QList<QPointF> q;
    q.reserve(points.size());
    for (const QPointF& p : points)
        q.append(p * s);
    QPointF start;
    double r = 0;
    if (!CalculerCercleNPts(q, start, r) || !isUsable(Circle{start, r}))
        return std::nullopt;
    for (QPointF& p : q)
        p -= start;
    double cx = 0, cy = 0;
    refineGeometric(q, cx, cy, r);
    const Circle circle{(start + QPointF(cx, cy)) / s, r / s};
    return isUsable(circle) ? std::optional<Circle>(circle) : std::nullopt;
}

std::optional<CircleFit> fitCircleRobust(const QList<QPointF>& points) {
    const std::optional<Circle> first = fitCircle(points);
    if (!first)
        return std::nullopt;
    auto deviations = [&points](const Circle& c) {
        std::vector<double> e;
        e.reserve(points.size());
        for (const QPointF& p : points)
            e.push_back(std::fabs(std::hypot(p.x() - c.centre.x(), p.y() - c.centre.y()) - c.radius));
        return e;
    };
    const std::vector<double> e = deviations(*first);
    // The floor keeps points that deviate by rounding only when most points lie exactly on the circle.
    const double limit = std::max(3 * median(e), 1e-9 * first->radius);
    QList<int> kept;
    QList<QPointF> inliers;
    for (int i = 0; i < points.size(); ++i)
        if (e[i] <= limit) {
            kept.append(i);
            inliers.append(points[i]);
        }
    std::optional<Circle> circle = kept.size() >= 3 ? fitCircle(inliers) : std::nullopt;
    if (!circle || kept.size() == points.size()) {
        circle = first;
        kept.clear();
        for (int i = 0; i < points.size(); ++i)
            kept.append(i);
    }
    CircleFit fit{circle->centre, circle->radius, kept, 0, 0};
    const std::vector<double> final = deviations(*circle);
    for (int i : kept)
        fit.maxDeviation = std::max(fit.maxDeviation, final[i]);
    // Summed relative to the largest deviation, so huge coordinates cannot overflow the squares.
    double sum = 0;
    for (int i : kept)
        if (fit.maxDeviation > 0)
            sum += (final[i] / fit.maxDeviation) * (final[i] / fit.maxDeviation);
    fit.rmsDeviation = fit.maxDeviation * std::sqrt(sum / kept.size());
    return fit;
}
