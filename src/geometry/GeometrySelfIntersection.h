#pragma once

#include "graphicsobjects_export.h"

#include <QPolygonF>

// Whether the outline crosses or touches itself: two edges that are not neighbours share a point, a
// vertex repeats, or neighbouring edges fold back over each other. Consecutive repeated points are
// ignored. closed adds the edge from the last point to the first. A sweep over the edges, O(n log n).
// An outline with a non-finite coordinate counts as self-intersecting (it cannot be drawn).
GRAPHICSOBJECTS_EXPORT bool polygonSelfIntersects(const QPolygonF& polygon, bool closed = true);
