#include "GeometryArcs.h"

#include "GeometryCircleFits.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;

double degreesOf(const QPointF& centre, const QPointF& p) {
    return std::atan2(p.y() - centre.y(), p.x() - centre.x()) * 180 / Pi;
}

// a brought into [0, 360).
double wrapped(double a) {
    const double w = std::fmod(a, 360.0);
    return w < 0 ? (w + 360 < 360 ? w + 360 : 0) : w;
}

// a brought into (-180, 180].
double turn(double a) {
    const double w = wrapped(a);
    return w > 180 ? w - 360 : w;
}

// measure(|radius|, |span| in radians at most a full turn), or 0 when an argument or the result is not
// finite.
template <typename Measure> double arcMeasure(double radius, double spanAngle, Measure measure) {
    if (!std::isfinite(radius) || !std::isfinite(spanAngle))
        return 0;
    const double m = measure(std::fabs(radius), std::min(std::fabs(spanAngle), 360.0) * Pi / 180);
    return std::isfinite(m) ? m : 0;
}

} // namespace

std::optional<Arc> arcThroughPoints(const QPointF& start, const QPointF& middle, const QPointF& end) {
    const std::optional<Circle> circle = circleThroughPoints(start, middle, end);
    if (!circle)
        return std::nullopt;
    const double a0 = degreesOf(circle->centre, start);
    const double ccw = wrapped(degreesOf(circle->centre, end) - a0);
    const double toMiddle = wrapped(degreesOf(circle->centre, middle) - a0);
    // Going the positive way from start, the middle comes before the end, or the arc runs the other way.
    const double span = toMiddle < ccw ? ccw : ccw - 360;
    return Arc{circle->centre, circle->radius, wrapped(a0), span};
}

std::optional<Arc> fitArc(const QList<QPointF>& points) {
    const std::optional<Circle> circle = fitCircle(points);
    if (!circle)
        return std::nullopt;
    double span = 0;
    double previous = degreesOf(circle->centre, points.first());
    for (qsizetype i = 1; i < points.size(); ++i) {
        const double a = degreesOf(circle->centre, points[i]);
        span += turn(a - previous);
        previous = a;
    }
    span = std::clamp(span, -360.0, 360.0);
    return Arc{circle->centre, circle->radius, wrapped(degreesOf(circle->centre, points.first())), span};
}

double arcChord(double radius, double spanAngle) {
    return arcMeasure(radius, spanAngle, [](double r, double s) { return 2 * r * std::sin(s / 2); });
}

double arcSagitta(double radius, double spanAngle) {
    return arcMeasure(radius, spanAngle, [](double r, double s) { return r * (1 - std::cos(s / 2)); });
}

double arcLength(double radius, double spanAngle) {
    return arcMeasure(radius, spanAngle, [](double r, double s) { return r * s; });
}

QPainterPath arcPath(const Arc& arc) {
    const double span = std::clamp(arc.spanAngle, -360.0, 360.0);
    if (!std::isfinite(arc.centre.x()) || !std::isfinite(arc.centre.y()) || !std::isfinite(arc.radius) ||
        !std::isfinite(arc.startAngle) || !std::isfinite(span))
        return QPainterPath();
    const int pieces = std::max(1, int(std::ceil(std::fabs(span) / 22.5)));
    const double step = span / pieces * Pi / 180;
    // Control points at 4/3 tan(step / 4) of the radius along the tangents.
    const double reach = 4.0 / 3.0 * std::tan(step / 4) * arc.radius;
    const auto at = [&](double a) { return arc.centre + arc.radius * QPointF(std::cos(a), std::sin(a)); };
    const auto tangent = [](double a) { return QPointF(-std::sin(a), std::cos(a)); };
    const double start = arc.startAngle * Pi / 180;
    QPainterPath path(at(start));
    for (int i = 0; i < pieces; ++i) {
        const double a0 = start + i * step, a1 = start + (i + 1) * step;
        path.cubicTo(at(a0) + reach * tangent(a0), at(a1) - reach * tangent(a1), at(a1));
    }
    return path;
}
