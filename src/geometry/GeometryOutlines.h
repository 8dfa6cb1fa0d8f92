#pragma once

#include "graphicsobjects_export.h"

#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QString>
#include <QVector>

class QPainter;

// Outlines for the items' shapes and small painting helpers. Angles are in degrees in scene orientation:
// the point at angle a is c + r (cos a, sin a), the same as arc_getPointAtAngle with a in radians.

// Arc of the circle (c, r) from startAngle over spanAngle, started with a moveTo.
GRAPHICSOBJECTS_EXPORT void addArc(QPainterPath& path, const QPointF& c, double r, double startAngle,
                                   double spanAngle);
// Closed pie sector: centre, arc, back to the centre.
GRAPHICSOBJECTS_EXPORT void addSector(QPainterPath& path, const QPointF& c, double r, double startAngle,
                                      double spanAngle);
GRAPHICSOBJECTS_EXPORT void addCircle(QPainterPath& path, const QPointF& c, double r);
// Archimedean spiral from radius r0 to r1 over the given turns, pointsPerTurn points a turn.
GRAPHICSOBJECTS_EXPORT QPolygonF spirale(const QPointF& c, double r0, double r1, double turns,
                                         int pointsPerTurn = 36);
// The circle (c, r) as n points from angle 0 onwards; empty when n < 3.
GRAPHICSOBJECTS_EXPORT QPolygonF circle2polygon(const QPointF& c, double r, int n);
// n points of y = sum coeffs[i] x^i for x from x0 to x1 inclusive; empty when n < 2 or without coefficients.
GRAPHICSOBJECTS_EXPORT QPolygonF GetPointsFromEquation(const QVector<double>& coeffs, double x0, double x1,
                                                       int n);

// Square of half side halfSize centred on c, with the painter's pen and brush.
GRAPHICSOBJECTS_EXPORT void drawBox(QPainter* painter, const QPointF& c, double halfSize);
// Upright cross of arms halfSize centred on c.
GRAPHICSOBJECTS_EXPORT void drawCross(QPainter* painter, const QPointF& c, double halfSize);
// text drawn with the largest point size of the painter's font that fits r; returns that size (0 if none
// fits).
GRAPHICSOBJECTS_EXPORT double drawAutoSizedText(QPainter* painter, const QRectF& r, const QString& text,
                                                int flags = Qt::AlignCenter);
// Rotation centre marker: a circle of radius with a cross through it.
GRAPHICSOBJECTS_EXPORT void paintRotationCenter(QPainter* painter, const QPointF& c, double radius);
