#pragma once

#include "GuideItem.h"
#include "ItemTypes.h"

// A horizontal guide line across the scene through the clicked point; dist1 is its calibrated y.
class GRAPHICSOBJECTS_EXPORT CrossHItem : public GuideItem {
    Q_OBJECT
public:
    // context: optional _AUTOPOINTPARAMS; its first point, else its centre, places the guide.
    GRAPHICSOBJECTS_ITEM(CrossHItem)
};
