#pragma once

#include "ItemTypes.h"
#include "PositionItem.h"

// One point placed with a click (or a drag that ends where it is released): measures its x (dist1)
// and y (dist2) from the scene's origin, which an anchor point may set.
class GRAPHICSOBJECTS_EXPORT PointItem : public PositionItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS; its first point, else its centre, places the point.
    GRAPHICSOBJECTS_MEASURED_ITEM(PointItem, "point_mesureIndex", Dist1)

    long mesuresFlag() const override { return 5; }
    QList<MenuEntry> mesureMenu() const override;
};
