#pragma once

#include "graphicsobjects_export.h"

// While an object of this class lives (in the painting thread), paths painted on a VDxfPaintDevice keep
// their curves: a subpath with curved pieces is written as a SPLINE through the same control points
// instead of a flattened polyline. Items whose outline is a free curve paint under it; ellipses, arcs and
// other curved marks keep their usual entities.
class GRAPHICSOBJECTS_EXPORT VDxfCurvesAsSplines {
public:
    VDxfCurvesAsSplines();
    ~VDxfCurvesAsSplines();
    VDxfCurvesAsSplines(const VDxfCurvesAsSplines&) = delete;
    VDxfCurvesAsSplines& operator=(const VDxfCurvesAsSplines&) = delete;
    static bool active();
};
