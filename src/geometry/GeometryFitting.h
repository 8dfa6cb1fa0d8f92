#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QPointF>

// Circles through three points (three methods, each used by different items), least-squares fits, the
// in-circle test and the Vickers hardness formulas.

// Centre by the perpendicular bisectors' slopes; vertical or horizontal chords give inf/NaN.
GRAPHICSOBJECTS_EXPORT QPointF circleCenter(QPointF a, QPointF b, QPointF c);
// Centre and radius by determinants; collinear points give infinities.
GRAPHICSOBJECTS_EXPORT void compute_circle(QPointF* p1, QPointF* p2, QPointF* p3, double* cx, double* cy,
                                           double* r);
// Centre and radius by bisectors; false for collinear points or without two chords of non-zero slope.
GRAPHICSOBJECTS_EXPORT bool CalculCercle3Pts(QPointF& p1, QPointF& p2, QPointF& p3, QPointF& centre,
                                             double& r);
// 1 inside, -1 outside, 0 on the circle through a, b, c (the exact path depends on the orientation of a, b,
// c).
GRAPHICSOBJECTS_EXPORT int in_circle(QPointF* a, QPointF* b, QPointF* c, QPointF* p, bool exact);

// Algebraic least-squares circle; false with fewer than 3 points.
GRAPHICSOBJECTS_EXPORT bool CalculerCercleNPts(QList<QPointF> pts, QPointF& centre, double& r);
// Least-squares line y = a + b x returned as (0, a) and (width, width b + a); false with fewer than 2 points.
GRAPHICSOBJECTS_EXPORT bool CalculerDroiteNPts(QList<QPointF> pts, QPointF& p1, QPointF& p2, long width);

// Vickers hardness from the load F and the mean diagonal d, short form 0.189 F / d^2.
GRAPHICSOBJECTS_EXPORT double Vickers1(double F, double d);
// Vickers hardness 2 F sin(68 deg) / (g d^2).
GRAPHICSOBJECTS_EXPORT double Vickers2(double F, double d);
