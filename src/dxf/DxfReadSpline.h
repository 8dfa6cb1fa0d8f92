#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>

#include <vector>

// SPLINE curves: NURBS from their control points, or a smooth curve through their fit points.
namespace dxf::read {

constexpr int kMostSplineDegree = 11;

struct Nurbs {
    int degree = 3;
    std::vector<double> knots; // points + degree + 1, non-decreasing
    std::vector<QPointF> points;
    std::vector<double> weights; // one per point, all positive
};

// Whether the data describe a curve: degree 1..kMostSplineDegree, enough points, knots and weights
// consistent. Knots that decrease by rounding are evened out first.
bool makeValid(Nurbs& curve);

// The curve as a polyline that stays within tolerance of it, appended to out; stops, returning false,
// when out would grow beyond mostPoints.
bool flatten(const Nurbs& curve, double tolerance, QPolygonF& out, qsizetype mostPoints);

// A curve through the fit points, as cubic segments with tangents from the neighbouring points (or the
// given end directions, when not null).
QPainterPath throughFitPoints(const std::vector<QPointF>& points, QPointF startTangent, QPointF endTangent,
                              bool closed);

} // namespace dxf::read
