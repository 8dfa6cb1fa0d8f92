#pragma once

#include "ItemTypes.h"
#include "VertexItem.h"

// A closed polygon drawn click by click, ended by a double click, Return or Enter, or a click on its
// first vertex. Measures: area (shoelace), perimeter, centroid, maximum Feret diameter (dist1) and its
// angle (ang1), minimum caliper width (dist2) and circularity 4 pi area / perimeter^2 (cust). An
// outline that crosses itself is allowed; its tooltip says so and which area it reports.
class GRAPHICSOBJECTS_EXPORT PolygonItem : public VertexItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS whose points (scene) are the vertices; its source gives the
    // calibration.
    GRAPHICSOBJECTS_MEASURED_ITEM(PolygonItem, "polygon_mesureIndex", Aera)

    QList<MenuEntry> mesureMenu() const override { return outlineMesureMenu(); }

protected:
    void measure(bool live) override;
};
