#pragma once

#include "graphicsobjects_export.h"

// Measures of an ellipse given by its two semi-axes, in either order (signs ignored). Each returns 0 when
// an axis or the result is not finite.

// Perimeter to full double precision, by the arithmetic-geometric mean; 4 a when one axis is 0.
GRAPHICSOBJECTS_EXPORT double ellipsePerimeter(double a, double b);
// sqrt(1 - (minor / major)^2): 0 for a circle, 1 for a segment; 0 when both axes are 0.
GRAPHICSOBJECTS_EXPORT double ellipseEccentricity(double a, double b);
GRAPHICSOBJECTS_EXPORT double ellipseArea(double a, double b);
