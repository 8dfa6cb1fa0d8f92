#pragma once

#include "ItemTypes.h"
#include "RoundItem.h"

// A circle through three clicked points of its outline; after two clicks a rubber-band circle follows
// the cursor. A third click on the line of the first two is refused; a grip dragged onto that line
// leaves the last circle in place and marks the item. Measures as the circle drawn from its centre.
class GRAPHICSOBJECTS_EXPORT Circle3PointsItem : public RoundItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS with three points, or a centre and radius.
    GRAPHICSOBJECTS_MEASURED_ITEM(Circle3PointsItem, "circle3points_mesureIndex", Aera)
};
