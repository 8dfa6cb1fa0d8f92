#pragma once

#include "graphicsobjects_export.h"

#include <QPointF>
#include <QPolygonF>

#include <optional>

// Shape measures of outlines. A polygon with a non-finite coordinate measures 0.

// Sum of the edge lengths; closed adds the edge from the last point back to the first.
GRAPHICSOBJECTS_EXPORT double polygonPerimeter(const QPolygonF& polygon, bool closed = true);
// 4 pi area / perimeter^2 of the closed polygon: 1 for a circle, less for any other shape; 0 without
// area. A self-intersecting outline gives the value of its shoelace area.
GRAPHICSOBJECTS_EXPORT double circularity(const QPolygonF& polygon);

struct RegularPolygon {
    QPolygonF vertices;
    double circumradius = 0;
    double inradius = 0;
    double side = 0;
};

// The regular polygon of `sides` corners (3 to 100000) centred on centre with firstCorner as its first
// vertex; the next corners follow at increasing scene angles (clockwise on screen, y down). Empty when
// the first corner is the centre or an argument is out of range.
GRAPHICSOBJECTS_EXPORT std::optional<RegularPolygon> regularPolygon(const QPointF& centre,
                                                                    const QPointF& firstCorner, int sides);
