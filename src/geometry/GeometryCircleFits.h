#pragma once

#include "graphicsobjects_export.h"

#include <QList>
#include <QPointF>

#include <optional>

// Circles through and fitted to points, refusing what does not define a circle (collinear or
// coincident points, non-finite coordinates) rather than returning infinities.

struct Circle {
    QPointF centre;
    double radius = 0;
};

struct CircleFit {
    QPointF centre;
    double radius = 0;
    // Indices of the points the final fit used, ascending.
    QList<int> kept;
    // Largest and root-mean-square distance of the kept points from the circle.
    double maxDeviation = 0;
    double rmsDeviation = 0;
};

// The circle through a, b and c; empty when two coincide or the three are (nearly) collinear.
GRAPHICSOBJECTS_EXPORT std::optional<Circle> circleThroughPoints(const QPointF& a, const QPointF& b,
                                                                 const QPointF& c);

// Geometric least-squares circle (sum of squared distances to the circle) of at least 3 points, started
// from the algebraic fit of CalculerCercleNPts; empty for collinear, coincident or non-finite points.
GRAPHICSOBJECTS_EXPORT std::optional<Circle> fitCircle(const QList<QPointF>& points);

// fitCircle, then the points further from the fitted circle than 3 median absolute deviations are
// dropped and the rest refitted once. Never keeps fewer than 3 points.
GRAPHICSOBJECTS_EXPORT std::optional<CircleFit> fitCircleRobust(const QList<QPointF>& points);
