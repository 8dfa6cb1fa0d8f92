#pragma once

#include "graphicsobjects_export.h"

#include <QAbstractGraphicsShapeItem>
#include <QPainterPath>

// The child shape of the items drawn as outlines (polygons, polylines, curves, regions). Unlike
// QGraphicsPathItem it never strokes the path for its bounding rectangle, strokes it for its shape
// only when a hit test asks after a change, and moves one vertex of a polygonal path in constant
// time: outlines of 10^5 vertices stay interactive.
class GRAPHICSOBJECTS_EXPORT OutlineShape : public QAbstractGraphicsShapeItem {
public:
    OutlineShape();

    QPainterPath path() const { return m_path; }
    void setPath(const QPainterPath& path);
    // Moves vertex `index` of a path made of one subpath of straight lines; the closing element of a
    // closed subpath follows vertex 0.
    void moveVertex(int index, const QPointF& p);
    // Closed outlines are hit anywhere inside, open ones only near the line; both within a few units of
    // the line.
    void setFilledShape(bool filled);

    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    // Answered without the shape for paths of straight lines, in time linear in their length.
    bool contains(const QPointF& p) const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void changed();
    double reach() const;

    QPainterPath m_path;
    mutable QPainterPath m_shape;
    mutable bool m_shapeValid = false;
    mutable QRectF m_bounds;
    mutable bool m_boundsValid = false;
    bool m_filled = true;
    bool m_straight = true;
};
