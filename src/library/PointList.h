#pragma once

#include "graphicsobjects_export.h"
#include "qtrans.h"

#include <QList>
#include <QPointF>
#include <QRectF>

// In-place transforms of an outline when the image under it is flipped, rescaled, shifted or rotated.
// Every point is changed; the list keeps its length.

// (x, height - y)
GRAPHICSOBJECTS_EXPORT void pointlist_flip(QList<QPointF>& points, double height);
// (factor x, factor y)
GRAPHICSOBJECTS_EXPORT void pointlist_resize(QList<QPointF>& points, double factor);
// ((x + dx) factor, (y + dy) factor). Undone by offsetIN with 1/factor and the offset times factor.
GRAPHICSOBJECTS_EXPORT void pointlist_resize_offsetOUT(QList<QPointF>& points, double factor, double dx,
                                                       double dy);
// ((x - dx) factor, (y - dy) factor)
GRAPHICSOBJECTS_EXPORT void pointlist_resize_offsetIN(QList<QPointF>& points, double factor, double dx,
                                                      double dy);
GRAPHICSOBJECTS_EXPORT void pointlist_map(QList<QPointF>& points, qtrans transform);
GRAPHICSOBJECTS_EXPORT void pointlist_resizeXY(QList<QPointF>& points, double sx, double sy);
// Rotation by angle degrees about the origin; with mirror, x is mirrored as well (the rotation acts first).
GRAPHICSOBJECTS_EXPORT void pointlist_rotate(QList<QPointF>& points, double angle, bool mirror);

// Bounding rectangle of all points of all lists; a null rectangle at the origin when there are none.
GRAPHICSOBJECTS_EXPORT QRectF pointlist_toRectF(QList<QList<QPointF>> lists);
