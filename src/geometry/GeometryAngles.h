#pragma once

#include "graphicsobjects_export.h"

#include <QLineF>
#include <QPointF>
#include <QRectF>

// Angles, distances, simple constructions and rotations in scene coordinates (y grows downwards).
// Angles are in degrees unless a function says radians.

// Angle in radians brought into [0, 2pi]; 2pi itself is kept.
GRAPHICSOBJECTS_EXPORT double correctAngle(double a);
// The opposite direction in degrees (180 gives 360).
GRAPHICSOBJECTS_EXPORT double oppositeAngle(double a);
// Direction of p1->p2 in degrees in (-180, 180]; equal points give -90.
GRAPHICSOBJECTS_EXPORT double angle(QPointF p1, QPointF p2);
// Direction of p1->p2 in degrees in [0, 360); equal points give 90.
GRAPHICSOBJECTS_EXPORT double AngleVecteur(QPointF& p1, QPointF& p2);
// pi - atan(a / b) in radians; b == 0 is not guarded.
GRAPHICSOBJECTS_EXPORT double GetAngle(double a, double b);
// Angle of the rectangle's diagonal in degrees (negated, screen orientation).
GRAPHICSOBJECTS_EXPORT double medianAngle(const QRectF& r);
// Point of the circle (c, r) at angle a in radians.
GRAPHICSOBJECTS_EXPORT QPointF arc_getPointAtAngle(double a, double r, QPointF c);
// Same as arc_getPointAtAngle; kept for callers that name the arc's end.
GRAPHICSOBJECTS_EXPORT QPointF arc_getEndPoint(double a, double r, QPointF c);

// Signed vertical offset of p from the line p1p2 (not the perpendicular distance).
GRAPHICSOBJECTS_EXPORT double distance(QPointF p1, QPointF p2, QPointF p);
GRAPHICSOBJECTS_EXPORT double SideLength(double x1, double y1, double x2, double y2);
// |a - b| / 2 relative to |a| + |b|; 0.5 when either is 0.
GRAPHICSOBJECTS_EXPORT double vRelativeEuclideanDistance(const double& a, const double& b);
GRAPHICSOBJECTS_EXPORT QPointF GetCenter(QPointF a, QPointF b);
// The point as far beyond m as m lies from the middle of the chord ab.
GRAPHICSOBJECTS_EXPORT QPointF GetBeyond(QPointF a, QPointF m, QPointF b);
// p reflected in the line ab.
GRAPHICSOBJECTS_EXPORT QPointF symmetric(QPointF p, QPointF a, QPointF b);
// New height keeping the aspect ratio w:h for the width newW.
GRAPHICSOBJECTS_EXPORT double getHeightByWidth(double w, double h, double newW);
// Square of side sqrt(d^2 / 2) centred on the line's midpoint.
GRAPHICSOBJECTS_EXPORT QRectF lineToInnerRect(const QLineF& l, const double& d);
// Rectangle from a to b moved one unit against the normal of b->a (negative sizes kept).
GRAPHICSOBJECTS_EXPORT QRectF rectGenerate(QPointF a, QPointF b);

// p rotated about c by angle degrees, in single precision like the stored drawings expect.
GRAPHICSOBJECTS_EXPORT QPointF rotatedPoint(QPointF p, QPointF c, double angle);
// Bounding rectangle of r rotated by angle degrees about its centre.
GRAPHICSOBJECTS_EXPORT QRectF rotatedRect(const QRectF& r, int angle);
// Bounding rectangle of r's corners rotated by angle degrees about its centre.
GRAPHICSOBJECTS_EXPORT QRectF GetBoundingRect(QRectF r, double angle);
// Whether r1 contains inner rotated by angle; otherwise dx, dy are the shifts that bring it back.
GRAPHICSOBJECTS_EXPORT bool IsContained(QRectF r1, QRectF inner, double angle, double& dx, double& dy);
