#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

#include <QPolygonF>

class OutlineShape;
class PolygonItem;

// A regular polygon: the press sets its centre, the drag its first corner (size and turn). The number
// of sides (3 to 64, 6 to begin with) comes from the menu. Measures: area, perimeter, circumradius
// (rad1), inradius (rad2) and side length (dist1). Its grips are the centre, which moves the shape, and
// the first corner. "Turn into a free PolygonItem" replaces it on its scene by a PolygonItem with the
// same vertices: itemChanged(this, "polygon", the new item) hands the new item to the host, which may
// record the replacement for its undo, then objectDeleted announces that this shape is gone (it leaves
// the scene and is deleted once the event is over).
class GRAPHICSOBJECTS_EXPORT PolygonShapeItem : public ShapeItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS: centre, and the first corner as its first point (else at
    // radius to the right of the centre); its source gives the calibration.
    GRAPHICSOBJECTS_MEASURED_ITEM(PolygonShapeItem, "polygonshape_mesureIndex", Aera)
    static constexpr int MinSides = 3;
    static constexpr int MaxSides = 64;
    static constexpr int DefaultSides = 6;
    enum Grip { CentreGrip = 0, CornerGrip = 1 };
    // Menu data: a number of sides n is offered as SidesBase - n.
    enum MenuCommand { TurnIntoPolygon = -1, OtherSides = -2, SidesBase = -1000 };

    // Centre and first corner, in item coordinates.
    QPointF centre() const { return m_mline[0]; }
    QPointF corner() const { return m_mline[1]; }
    int sides() const { return m_sides; }
    void setShape(const QPointF& centre, const QPointF& corner);
    // Refused outside MinSides..MaxSides.
    bool setSides(int sides);
    // The corners in item coordinates; empty while the corner is on the centre.
    QPolygonF vertices() const { return m_vertices; }
    // Replaces this shape by a free polygon (see above); the polygon, owned by the scene when there is
    // one, else by the caller.
    PolygonItem* turnIntoPolygon();

    long mesuresFlag() const override { return 0x200; }
    QPointF centroid() override { return centre(); }
    // Press on the centre, drag to the first corner.
    GRAPHICSOBJECTS_ITEM_DRAWING
    // Measures, sides, and the turn into a free polygon.
    QList<MenuEntry> mesureMenu() const override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

public slots:
    bool computeMesures(void*) override;

private:
    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;
    void rebuild();

    int m_sides = DefaultSides;
    QPolygonF m_vertices;
};
