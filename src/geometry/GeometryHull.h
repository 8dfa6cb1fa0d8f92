#pragma once

#include "graphicsobjects_export.h"

#include <QPointF>
#include <QPolygonF>

#include <optional>

// Convex hull and the rotating-calipers measures of a point set. Points with a non-finite coordinate
// are left out.

// A measured extent: its length, the direction from `from` to `to` as a line angle in degrees in
// [0, 180) (anticlockwise on screen with y pointing down, 0 pointing right), and its two ends.
struct Caliper {
    double length = 0;
    double angle = 0;
    QPointF from;
    QPointF to;
};

// Convex hull without repeated or collinear vertices, clockwise on screen (y down), starting at the
// lowest-x (then lowest-y) point; one or two points when the set has no area.
GRAPHICSOBJECTS_EXPORT QPolygonF convexHull(const QPolygonF& points);

// Largest distance between two of the points (maximum Feret diameter), between two hull vertices;
// empty without points.
GRAPHICSOBJECTS_EXPORT std::optional<Caliper> maxFeretDiameter(const QPolygonF& points);

// Smallest distance between two parallel lines enclosing the points (minimum caliper width). `to` is
// the foot on the supporting hull edge of the opposite vertex `from`, and the angle is that of the
// measuring direction, across the calipers. Empty without points; 0 for collinear points.
GRAPHICSOBJECTS_EXPORT std::optional<Caliper> minCaliperWidth(const QPolygonF& points);
