#pragma once

#include "graphicsobjects_export.h"

#include <QLineF>
#include <QList>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QVector>

// Parallel tests, intersections, projections and constraints. Return codes are part of the interface:
// callers (and stored drawings) rely on each function's own degenerate cases, so the rotation method of
// lineIntersection and the slope method of CalculIntersectionDroites are deliberately kept apart.

// Exact test on the ratios of the two directions.
GRAPHICSOBJECTS_EXPORT bool parallel(QPointF a1, QPointF a2, QPointF b1, QPointF b2);
// As parallel, the ratios allowed to differ by 0.005.
GRAPHICSOBJECTS_EXPORT bool nearlyParallel(QPointF a1, QPointF a2, QPointF b1, QPointF b2);

// Infinite lines AB and CD by rotating the frame onto AB; false for parallel or degenerate lines.
GRAPHICSOBJECTS_EXPORT bool lineIntersection(double Ax, double Ay, double Bx, double By, double Cx, double Cy,
                                             double Dx, double Dy, double* X, double* Y);
// Segments AB and CD; segments sharing an end point do not intersect.
GRAPHICSOBJECTS_EXPORT bool lineSegmentIntersection(double Ax, double Ay, double Bx, double By, double Cx,
                                                    double Cy, double Dx, double Dy, double* X, double* Y);
// Infinite lines by slopes: -1 degenerate, 0 parallel, 1 inside [0, width] x [0, height], 2 outside.
GRAPHICSOBJECTS_EXPORT long CalculIntersectionDroites(QPointF A, QPointF B, QPointF C, QPointF D,
                                                      QPointF& out, long width, long height);
// Two circles: 0 none, 1/2 one point inside/outside, 3/4 two points both inside/any outside.
// A point at the origin counts as absent.
GRAPHICSOBJECTS_EXPORT long CalculIntersectionCercles(QPointF c1, double r1, QPointF c2, double r2,
                                                      QPointF& o1, QPointF& o2, long width, long height);
// Line AB with the circle (c, r): -1 when A == B, otherwise the codes of CalculIntersectionCercles.
GRAPHICSOBJECTS_EXPORT long CalculIntersectionDroiteCercle(QPointF A, QPointF B, QPointF c, double r,
                                                           QPointF& o1, QPointF& o2, long width, long height);
// Two circles (Bourke's radical line); false when separate, nested or concentric.
GRAPHICSOBJECTS_EXPORT bool circle_circle_intersection(double x0, double y0, double r0, double xa, double ya,
                                                       double ra, double* xi, double* yi, double* xj,
                                                       double* yj);
// Tangent points from p to the circle (c, r); NaN when p is inside.
GRAPHICSOBJECTS_EXPORT bool point_circle_tangent(QPointF c, double r, QPointF p, QPointF& t1, QPointF& t2);
// For each common tangent (outer ones first) its point on circle a then on circle b; false when none.
GRAPHICSOBJECTS_EXPORT bool circle_circle_tangents(double xa, double ya, double ra, double xb, double yb,
                                                   double rb, QList<QPointF>& out);
// The crossing of the line ab with the circle (c, r) nearest to b; false when the line misses.
GRAPHICSOBJECTS_EXPORT bool circleLineIntersectPoint(double r, QPointF c, QPointF a, QPointF b, QPointF& out);
// Edge of r crossed by the segment centre->p: 1 top, 2 right, 3 bottom, 4 left, 0 none.
GRAPHICSOBJECTS_EXPORT int rectangleLineIntersectPoint(QRectF r, QPointF p, QPointF& out);
// As rectangleLineIntersectPoint for corners rounded with radius (clamped to half the shorter side).
GRAPHICSOBJECTS_EXPORT bool roundedRectLineIntersectionPoint(double radius, QRectF r, QPointF p,
                                                             QPointF& out);
// Where the line, followed from p1 towards p2, leaves r; (0, 0) when it misses r or is degenerate.
GRAPHICSOBJECTS_EXPORT QPointF LineIntersectRect(const QRectF& r, const QLineF& l);
// Line (or segment) ab with the ellipse inscribed in e, in single precision; false only for refusals.
GRAPHICSOBJECTS_EXPORT bool ellipseLineIntersection(QRectF e, QPointF a, QPointF b, QList<QPointF>& out,
                                                    bool segment);
// Coefficients {A, B, C, D, E, F} of A x^2 + B xy + C y^2 + D x + E y + F = 0 for the ellipse inscribed
// in r, scaled so that the left side is -1 at the centre; empty for a rectangle without area.
GRAPHICSOBJECTS_EXPORT QVector<double> GetEllipseFormula(const QRectF& r);
// Common points of two axis-parallel ellipses given by their coefficients (as from GetEllipseFormula),
// appended to out; returns their count (0 also for coinciding ellipses or other conics).
GRAPHICSOBJECTS_EXPORT int FindPointsOfIntersection(const QVector<double>& f1, const QVector<double>& f2,
                                                    QList<QPointF>& out);
// Common points of two axis-parallel ellipses; false when there are none.
GRAPHICSOBJECTS_EXPORT bool ellipseIntersection(QRectF e1, QRectF e2, QList<QPointF>& out);
// Whether p lies on the segment ab, lengths truncated to integers (tolerance of about one unit).
GRAPHICSOBJECTS_EXPORT bool isPointOnLine(QPointF a, QPointF b, QPointF p);

// Foot of the perpendicular from p on the line ab by slopes (a vertical line uses the slope 1e9).
GRAPHICSOBJECTS_EXPORT bool CalculProjectionPoint(QPointF p, QPointF a, QPointF b, QPointF& out);
// p snapped to the nearest multiple of 45 degrees around origin, at the same distance.
GRAPHICSOBJECTS_EXPORT QPointF constraint_angle(const QPointF& origin, const QPointF& p);
// p moved so that origin-p spans a square whose side is the larger of the two extents.
GRAPHICSOBJECTS_EXPORT QPointF constraint_square(const QPointF& origin, const QPointF& p);
GRAPHICSOBJECTS_EXPORT QPointF pointConstrainedInRect(QPointF p, QRectF r);
GRAPHICSOBJECTS_EXPORT QPoint pointConstrainedInRect(QPoint p, QRect r);
// Distance from p to the nearest point of r (0 inside).
GRAPHICSOBJECTS_EXPORT double distanceBetweenPointandRect(const QRectF& r, const QPointF& p);
