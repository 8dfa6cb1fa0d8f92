#pragma once

#include "RectangleItem.h"

// The rectangle as a Feret box: its two distances are the larger and the smaller side.
class GRAPHICSOBJECTS_EXPORT RectangleItemFeret : public RectangleItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_ITEM(RectangleItemFeret)

protected:
    void fillMesures(double w, double h) override;
};
