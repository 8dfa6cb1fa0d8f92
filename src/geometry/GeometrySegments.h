#pragma once

#include "graphicsobjects_export.h"

#include <QPointF>

// Euclidean distances to segments. A point with a non-finite coordinate is infinitely far from
// everything: the result is +infinity, never NaN.

// Distance from p to the closed segment ab (to a when a == b).
GRAPHICSOBJECTS_EXPORT double distancePointToSegment(const QPointF& p, const QPointF& a, const QPointF& b);
// Smallest distance between the closed segments a1a2 and b1b2; 0 when they touch or cross.
GRAPHICSOBJECTS_EXPORT double distanceBetweenSegments(const QPointF& a1, const QPointF& a2, const QPointF& b1,
                                                      const QPointF& b2);
