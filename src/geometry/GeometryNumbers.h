#pragma once

#include "graphicsobjects_export.h"

#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QString>

// Rounding, number tests, random numbers and hashes of doubles.

// Each coordinate shifted by +-(n / 2) (no truncation: stored drawings depend on it); (0, 0) when n < 2.
GRAPHICSOBJECTS_EXPORT QPointF round(QPointF p, int n);
// v rounded to n decimals, half away from zero.
GRAPHICSOBJECTS_EXPORT double roundDecimals(const double& v, int n);
GRAPHICSOBJECTS_EXPORT bool isNaN(double v);
// True for anything not finite, NaN included.
GRAPHICSOBJECTS_EXPORT bool isInf(double v);
// False for NaN and the infinities.
GRAPHICSOBJECTS_EXPORT bool IsNumber(float f);
// Shortest faithful text of v; tiny values in fixed notation without trailing zeros.
GRAPHICSOBJECTS_EXPORT QString Double2Str(double v);
// Uniform in [min(lo, hi), max(lo, hi)], both ends reachable.
GRAPHICSOBJECTS_EXPORT double vRandom(double lo, double hi);
// Uniform in [lo, hi].
GRAPHICSOBJECTS_EXPORT int vRandom(int lo, int hi);
// Cheap hash: the bytes of v and its two 32-bit halves summed.
GRAPHICSOBJECTS_EXPORT unsigned vHash(const double& v);
GRAPHICSOBJECTS_EXPORT unsigned vHash(const QPointF& p);
GRAPHICSOBJECTS_EXPORT unsigned vHash(const QPoint& p);
// Nudges the zoom factor s towards fitting a into b.
GRAPHICSOBJECTS_EXPORT void computeScale(double& s, QRectF a, QRectF b);
