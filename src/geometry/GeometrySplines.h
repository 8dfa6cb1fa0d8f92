#pragma once

#include "graphicsobjects_export.h"

#include <QPolygonF>

// Centripetal Catmull-Rom curves (knot spacing the square root of the chord length): they pass through
// every point and form no loop or cusp inside a span, even between close points. Consecutive repeated
// points are dropped; an open curve gets mirrored end points, a closed one (3 points or more) joins the
// last point to the first. A coordinate that is not finite, or chords beyond the range of doubles, give an
// empty or zero result.

// The curve as a polyline whose pieces stay within `flatness` of it (a non-positive or non-finite value
// asks for the finest sampling). Each span is cut into at most 1024 pieces, and fewer when there are
// many spans, so the result stays below about four million points. Closed curves end on their first
// point again.
GRAPHICSOBJECTS_EXPORT QPolygonF catmullRomPolyline(const QPolygonF& points, double flatness = 0.25,
                                                    bool closed = false);

// Length of the curve, by adaptive Gauss-Legendre quadrature to about 1e-8 relative.
GRAPHICSOBJECTS_EXPORT double catmullRomLength(const QPolygonF& points, bool closed = false);

// The same curve as cubic Bezier pieces: its first point, then per span the two control points and the
// span's end. Empty when the curve has fewer than two points or cannot be represented.
GRAPHICSOBJECTS_EXPORT QPolygonF catmullRomBezier(const QPolygonF& points, bool closed = false);
