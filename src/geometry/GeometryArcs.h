#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QPainterPath>
#include <QPointF>

#include <optional>

// Circular arcs. Angles are in degrees in scene orientation, as for addArc: the point at angle a is
// centre + radius (cos a, sin a), so with y pointing down a positive span turns clockwise on screen.

struct Arc {
    QPointF centre;
    double radius = 0;
    // Angle of the first end in [0, 360).
    double startAngle = 0;
    // Signed sweep to the other end, at most a full turn either way.
    double spanAngle = 0;
};

// The arc from start through middle to end; empty when the three points define no circle.
GRAPHICSOBJECTS_EXPORT std::optional<Arc> arcThroughPoints(const QPointF& start, const QPointF& middle,
                                                           const QPointF& end);

// The arc of the least-squares circle (fitCircle) through at least 3 points, from the first point's
// angle to the last one's, turning the way the points run (their angular steps summed, at most a turn).
GRAPHICSOBJECTS_EXPORT std::optional<Arc> fitArc(const QList<QPointF>& points);

// Measures of an arc of the given radius and span in degrees (signs ignored, at most a full turn); 0 when
// an argument or the result is not finite.
GRAPHICSOBJECTS_EXPORT double arcChord(double radius, double spanAngle);
// Height of the arc above its chord (more than the radius for spans beyond 180 degrees).
GRAPHICSOBJECTS_EXPORT double arcSagitta(double radius, double spanAngle);
GRAPHICSOBJECTS_EXPORT double arcLength(double radius, double spanAngle);

// The arc as a path of cubic curves of at most 22.5 degrees, each starting and ending exactly on the
// circle with its control points on the tangents there: the path keeps within 1e-7 of the radius, so
// that a reader (the DXF export) can tell the arc it draws. Empty when a number is not finite.
GRAPHICSOBJECTS_EXPORT QPainterPath arcPath(const Arc& arc);
