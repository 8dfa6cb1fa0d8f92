#pragma once

#include "GeometryArcs.h"
#include "GeometryCircleFits.h"
#include "ItemTypes.h"
#include "ShapeItem.h"

#include <optional>

// A circle, or an arc of one, in item coordinates, with the angles of the arcs (GeometryArcs.h): a
// circle spans a full turn.
struct RoundShape : Arc {
    RoundShape() { spanAngle = 360; }
    RoundShape(const Circle& circle);
    RoundShape(const Arc& arc)
        : Arc(arc) {}
    // For a fit: the points it kept, and their largest and root-mean-square distance from the circle.
    QList<int> kept;
    double maxDeviation = 0;
    double rmsDeviation = 0;
};

// Direction of v in degrees, as the arcs' angles, and an angle brought into (-180, 180].
double degreesOf(const QPointF& v);
double turnDegrees(double a);

// Base of the circles and arcs defined by points (the ends of a diameter, three points on the outline,
// a centre and two ends, points to fit). The points are the item's defining points, each with its
// grip; the shape is what they define. Points that define none (collinear, coincident) leave the last
// shape in place and say so in the item's tooltip. A circle is drawn by an ellipse item and an arc by a
// path of one arc, which a DXF drawing receives as CIRCLE and ARC entities.
class GRAPHICSOBJECTS_EXPORT RoundItem : public ShapeItem {
    Q_OBJECT
public:
    bool isArc() const { return m_arc; }
    bool hasShape() const { return m_hasShape; }
    RoundShape roundShape() const { return m_shape; }
    // The centre in scene coordinates.
    QPointF sceneCentre() const { return mapToScene(m_shape.centre); }
    // Whether the points define no shape now: the item shows the last one they did.
    bool isStale() const { return m_stale; }
    // Whether the host record given to the constructor defined no shape; the factory then gives no item.
    bool refusedRecord() const { return m_refusedRecord; }

    long mesuresFlag() const override { return 0x70; }
    // The centre of a circle, the middle of an arc.
    QPointF centroid() override;
    GRAPHICSOBJECTS_ITEM_DRAWN_BY_CLICKS
    QList<MenuEntry> mesureMenu() const override;

public slots:
    bool computeMesures(void* arg) override;
    // The centre, radius, points and bounding square, in scene coordinates.
    void fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) override;

protected:
    // Whether the first click of a drawing starts a measure edit (mesureChangedSTART).
    enum class Start { Quiet, Announced };
    RoundItem(QGraphicsItem* parent, bool arc, Start start = Start::Quiet);
    // Identity and, with a host record, the shape it defines: run by the most derived constructor.
    void initialise(int id, void* context, const char* mesureKey, int mesureDefault);

    // The shape the points define, or none: by default the arc or the circle through the first three.
    virtual std::optional<RoundShape> shapeFrom(const QList<QPointF>& points) const;
    // The points a record defines, in scene coordinates: its own points when there are enough (the
    // first ones when the class takes a fixed number), else points on the circle of its centre and
    // radius, else on the circle inscribed in its rectangle. Empty when it defines none.
    virtual QList<QPointF> recordPoints(const _AUTOPOINTPARAMS& params) const;
    // Points on the circle (c, r) that define it for the class: minimumPoints() of them, evenly spread.
    virtual QList<QPointF> pointsOnCircle(const QPointF& c, double r) const;
    // The clicks that end a drawing; 0 when a double click or Return ends it.
    virtual int clicksToComplete() const { return 3; }
    virtual int minimumPoints() const { return 3; }
    // Whether a click that adds these points is refused: by default the click that completes the
    // drawing when they define no shape.
    virtual bool refusesClick(const QList<QPointF>& points) const;
    // Takes the drawn points once the drawing ends; false when they define no shape.
    virtual bool finishPoints();
    // The points as the shape they define places them (an arc's end lies on it).
    virtual QList<QPointF> settledPoints(const QList<QPointF>& points, const RoundShape&) const {
        return points;
    }
    // Called whenever the points change.
    virtual void pointsChanged() {}
    // The pixel measures of the shape, calibrated.
    virtual void fillMesures();

    // Sets the points and, when they define one, the shape; otherwise the last shape stays and the item
    // says so. True when they define a shape.
    bool setPoints(const QList<QPointF>& points);
    // Shows the shape (a preview while drawing, or the item's own) and computes its measures.
    void showShape(const RoundShape& shape);
    // Shows the shape, leaving the measures as they are.
    void applyShape(const RoundShape& shape);
    void setStale(bool stale, const QString& why = QString());
    bool drawingDone() const { return m_drawingDone; }

    void writeGeometry(XmlAttributes& e) const override;
    void readGeometry(const XmlAttributes& e) override;

private:
    void placePoints(const QList<QPointF>& points);

    bool m_arc;
    Start m_start;
    RoundShape m_shape;
    bool m_hasShape = false;
    bool m_stale = false;
    bool m_refusedRecord = false;
    bool m_drawingDone = false;
};

// The text of a number that reads back as exactly the same double.
QString exactNumber(double v);
// Points as "x" "y" pairs joined by ';', each number exact; and back, leaving out the points that no
// scene can hold.
QString exactPointsText(const QList<QPointF>& points);
QList<QPointF> readScenePoints(const XmlAttributes& e, const QString& key);
// Whether every measure of the item is a finite number of sensible size.
bool saneMesures(const AbstractBaseItem& item);
