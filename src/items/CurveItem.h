#pragma once

#include "ItemTypes.h"
#include "VertexItem.h"

// A smooth curve through points clicked one by one (centripetal Catmull-Rom: no loop or cusp between
// close points), ended by a double click, Return or Enter. Measures: length along the curve (dist1),
// straight distance from the first to the last point (dist2) and tortuosity (cust). A curve left with
// fewer than two points removes itself and says so with objectDeleted. The DXF export writes it as a
// SPLINE.
class GRAPHICSOBJECTS_EXPORT CurveItem : public VertexItem {
    Q_OBJECT
public:
    // A host record (_AUTOPOINTPARAMS, optional) gives the points the curve passes through, in scene
    // coordinates, and through its source the calibration.
    GRAPHICSOBJECTS_MEASURED_ITEM(CurveItem, "curve_mesureIndex", Dist1)

    bool endEdition() override;
    QList<MenuEntry> mesureMenu() const override;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected:
    QPainterPath pathThrough(const QPolygonF& points) const override;
    bool straightEdges() const override { return false; }
    void measure(bool live) override;
};
