#include "GeometryPolygonMetrics.h"

#include "GeometryFinite.h"
#include "GeometryPolygons.h"

#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr int MaxSides = 100000;

double finiteOrZero(double v) {
    return std::isfinite(v) ? v : 0;
}

} // namespace

double polygonPerimeter(const QPolygonF& polygon, bool closed) {
    if (polygon.size() < 2 || !allFinite(polygon))
        return 0;
    double sum = 0;
    for (qsizetype i = 1; i < polygon.size(); ++i)
        sum += std::hypot(polygon[i].x() - polygon[i - 1].x(), polygon[i].y() - polygon[i - 1].y());
    if (closed)
        sum += std::hypot(polygon.first().x() - polygon.last().x(), polygon.first().y() - polygon.last().y());
    return finiteOrZero(sum);
}

double circularity(const QPolygonF& polygon) {
    if (polygon.size() < 3 || !allFinite(polygon))
        return 0;
    // The ratio does not depend on the scale; scaling first keeps the squares finite.
    const double s = unitScale(polygon);
    QPolygonF scaled = polygon;
    for (QPointF& p : scaled)
        p *= s;
    const double perimeter = polygonPerimeter(scaled, true);
    if (perimeter == 0)
        return 0;
    const double area = PolygonArea(scaled.data(), int(scaled.size()));
    return finiteOrZero(4 * Pi * area / (perimeter * perimeter));
}

std::optional<RegularPolygon> regularPolygon(const QPointF& centre, const QPointF& firstCorner, int sides) {
    if (sides < 3 || sides > MaxSides || !isFinitePoint(centre) || !isFinitePoint(firstCorner))
        return std::nullopt;
    const QPointF d = firstCorner - centre;
    const double r = std::hypot(d.x(), d.y());
    if (r == 0 || !std::isfinite(r))
        return std::nullopt;
    RegularPolygon polygon;
    polygon.circumradius = r;
    polygon.inradius = r * std::cos(Pi / sides);
    polygon.side = 2 * r * std::sin(Pi / sides);
    polygon.vertices.reserve(sides);
    polygon.vertices.append(firstCorner);
    for (int k = 1; k < sides; ++k) {
        const double a = 2 * Pi * k / sides;
        const double c = std::cos(a), s = std::sin(a);
        polygon.vertices.append(centre + QPointF(c * d.x() - s * d.y(), s * d.x() + c * d.y()));
    }
    if (!allFinite(polygon.vertices))
        return std::nullopt;
    return polygon;
}
