#pragma once

#include "ItemTypes.h"
#include "VertexItem.h"

// An open polyline drawn click by click, ended by a double click, Return or Enter. Measures: length
// along the line (dist1), straight distance from the first to the last point (dist2), its direction
// (ang1) and the tortuosity, length over straight distance (cust; 0 when both ends meet).
class GRAPHICSOBJECTS_EXPORT PolylineItem : public VertexItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS whose points (scene) are the vertices; its source gives the
    // calibration.
    GRAPHICSOBJECTS_MEASURED_ITEM(PolylineItem, "polyline_mesureIndex", Dist1)

    QList<MenuEntry> mesureMenu() const override;

protected:
    void measure(bool live) override;
};
