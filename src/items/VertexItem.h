#pragma once

#include "ItemTypes.h"
#include "ShapeItem.h"

#include <QPolygonF>

#include <optional>

class OutlineShape;

// Base of the items defined by a list of vertices: polygons, polylines, curves, straightening paths and
// segmented regions. They are drawn click by click: a double click, Return or Enter ends the drawing,
// and a closed outline also ends on a click on its first vertex. Every vertex has a grip whose id is its
// index. A click on an edge of the selected item inserts a vertex there (and drags it while the button
// is held); a vertex goes from the menu or with Delete while its grip is hovered, never below
// minimumVertices(). Outlines of more than MaxGrips vertices show only the grips of the vertices
// nearest the cursor, so that selecting and dragging stay quick at 10^5 vertices.
class GRAPHICSOBJECTS_EXPORT VertexItem : public ShapeItem {
    Q_OBJECT
public:
    static constexpr int MaxGrips = 1000;
    // Grips shown around the cursor on a larger outline, and how far around it (view pixels).
    static constexpr int NearGrips = 32;
    static constexpr double NearRadius = 60;
    // Outlines with more vertices are refused, whether drawn, generated or read.
    static constexpr int MaxVertices = 4194304;
    // Beyond this many vertices a drag step updates the area, perimeter and centroid only; the hull
    // measures and the crossing test follow when the grip is released.
    static constexpr int LiveHullLimit = 5000;
    enum MenuCommand { SimplifyCommand = -100, DeleteVertexCommand = -101 };

    bool isClosed() const { return m_closed; }
    int minimumVertices() const { return m_closed ? 3 : 2; }
    // The vertices, in item coordinates.
    QPolygonF vertices() const { return QPolygonF(m_mline); }
    // Replaces the vertices (item coordinates), consecutive repeats dropped, and measures them. Refused
    // (false, nothing changed) for a coordinate no scene holds or more than MaxVertices points.
    bool setVertices(const QPolygonF& points);
    // Inserts a vertex where p (item coordinates) lies on an edge; its index, or -1 when on none.
    int insertVertexAt(const QPointF& p);
    bool removeVertex(int index);
    // Douglas-Peucker within tolerance (pixels), in passes that halve the tolerance until the result
    // keeps minimumVertices() and, for an outline that did not cross itself, still does not. Each pass
    // emits transformIndex(this, pass, last). Returns the number of vertices removed.
    int simplify(double tolerance);
    // Whether the outline crosses or touches itself.
    bool crossesItself() const { return m_crosses; }

    long mesuresFlag() const override { return 0x200; }
    QPointF centroid() override { return m_centroidPoint; }
    // Hit tests by the outline, without stroking it (see OutlineShape).
    bool contains(const QPointF& p) const override;
    // Drawing: a vertex per press, the edge to the cursor between presses.
    GRAPHICSOBJECTS_ITEM_DRAWN_BY_CLICKS
    typModeEdition completeCreation() override;
    void handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) override;
    void fillContextMenu(QMenu* menu) override;
    void applyContextMenu(int data) override;

public slots:
    bool computeMesures(void*) override;

protected:
    VertexItem(QGraphicsItem* parent, bool closed);

    OutlineShape* outline() const;
    // Takes the points (scene coordinates) and the calibration of a host record.
    void takeRecord(const _AUTOPOINTPARAMS* params);
    // The path drawn through the points (item coordinates): straight edges unless overridden.
    virtual QPainterPath pathThrough(const QPolygonF& points) const;
    virtual bool straightEdges() const { return true; }
    // Fills the pixel measures, the centroid point and the crossing flag, and calibrates; live during a
    // drag, when the costly measures of a large outline may wait.
    virtual void measure(bool live) = 0;
    // Whether the user edits the vertices (the lasso's outline comes from the image).
    virtual bool editsVertices() const { return true; }
    // Measures, label and tooltip; false while the outline has too few vertices.
    bool updateMesures(bool live);
    // Draws the outline anew, with the point following the cursor while drawing.
    void rebuild();

    // The measures of a closed outline: area (absolute shoelace), centroid (of the shoelace), perimeter
    // and, unless skipped, the maximum Feret diameter, the minimum caliper width and the crossing test.
    struct OutlineMesures {
        double area = 0;
        QPointF centroid;
        double perimeter = 0;
        std::optional<double> feret, feretAngle, width;
        std::optional<bool> crosses;
    };
    static OutlineMesures measureOutline(const QPolygonF& points, bool withHull);
    // Fills the polygon's measure slots from them (area, perimeter, dist1, dist2, ang1, circularity).
    void takeOutlineMesures(const OutlineMesures& m);
    static QList<MenuEntry> outlineMesureMenu();
    // The measures of an open path of this length: straight distance from the first to the last point
    // (dist2), tortuosity (cust: length over straight distance, 0 when the ends meet) and, with
    // direction, the direction from the first point to the last (ang1). The label stands halfway along.
    void takePathMesures(double length, bool direction);
    // The point halfway along the vertices (the first vertex of a path without length).
    QPointF halfwayPoint() const;
    static QString crossingNote();

    // Points as "x" "y" pairs, each followed by ';'; reading leaves out the parts that are no point.
    static QString coordsText(const QPolygonF& points);
    static QPolygonF readCoords(const QString& text);
    void writeGeometry(XmlAttributes& e) const override;
    // The saved measures stand when they are numbers; otherwise they are measured again.
    void readGeometry(const XmlAttributes& e) override;

    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;

    QPointF m_preview;
    bool m_hasPreview = false;
    bool m_crosses = false;

private:
    // The vertex the menu or the Delete key acts on: the hovered grip's, else the one near p.
    int vertexToDelete(const QPointF& p) const;
    bool insertOnAxisParallelEdge(const QPointF& p);
    void findNearGrips(const QPointF& p, double radius);

    bool m_closed;
    bool m_closing = false;
    int m_dragged = -1;
    QPointF m_menuPos;
    QList<int> m_nearGrips;
};
