#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QVector>

// Polygon metrics. A polygon is closed implicitly: its last point joins the first.

// Signed area; the sign follows the orientation.
GRAPHICSOBJECTS_EXPORT double PolygonArea(double* x, double* y, int n);
// Unsigned area.
GRAPHICSOBJECTS_EXPORT double PolygonArea(QPointF* pts, int n);
// Unsigned area with every coordinate multiplied by scale first.
GRAPHICSOBJECTS_EXPORT double PointListArea(QList<QPointF> pts, double scale);
// Unsigned area rounded down.
GRAPHICSOBJECTS_EXPORT long long Square(const QPolygonF& poly);
// Centroid and signed area: 0 done, 1 fewer than 3 points (nothing written), 2 zero area (area only).
GRAPHICSOBJECTS_EXPORT int polyCentroid(double x[], double y[], int n, double* xc, double* yc, double* area);
GRAPHICSOBJECTS_EXPORT int polyCentroid2(QList<QPointF> pts, double* xc, double* yc, double* area);
// Convex in either direction; straight vertices and spikes sharper than 10 degrees count as not convex.
GRAPHICSOBJECTS_EXPORT bool isConvex(QPolygonF poly);
// Square root of the larger sum of truncated squared nearest-point distances (not the classical maximum).
GRAPHICSOBJECTS_EXPORT double distance_hausdorff(const QList<QPointF>& a, const QList<QPointF>& b);
// Each point kept at its first occurrence only (exact equality).
GRAPHICSOBJECTS_EXPORT QPolygonF MakePointsUnique(const QPolygonF& poly);
GRAPHICSOBJECTS_EXPORT QVector<QPointF> GetReversePoints(const QVector<QPointF>& pts);
// Mean distance, rounded, between two closed contours: every vertex of each to the outline of the other;
// -1 when either is empty.
GRAPHICSOBJECTS_EXPORT int GetLengthContour(const QVector<QPointF>& a, const QVector<QPointF>& b);
