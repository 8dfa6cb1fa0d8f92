#pragma once

#include "graphicsobjects_export.h"

#include <QPolygonF>

// Douglas-Peucker simplification: a subset of the points (first and last kept) such that every dropped
// point lies within `tolerance` of the simplified outline. With closed the outline is a loop and the
// result does not repeat its first point. Consecutive repeated points are dropped; a negative or
// non-finite tolerance counts as 0. Empty when a coordinate is not finite.
GRAPHICSOBJECTS_EXPORT QPolygonF simplifyPolyline(const QPolygonF& points, double tolerance,
                                                  bool closed = false);
