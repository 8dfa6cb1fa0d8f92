#pragma once

// All plane-geometry functions.

#include "GeometryAngles.h"
#include "GeometryFitting.h"
#include "GeometryIntersections.h"
#include "GeometryNumbers.h"
#include "GeometryOutlines.h"
#include "GeometryPolygons.h"
