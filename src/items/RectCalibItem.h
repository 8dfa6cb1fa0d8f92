#pragma once

#include "RectangleItem.h"

// The calibration rectangle: sides, area, perimeter and diagonal, for the host to derive a
// calibration from. It is a working tool and is never saved.
class GRAPHICSOBJECTS_EXPORT RectCalibItem : public RectangleItem {
    Q_OBJECT
public:
    GRAPHICSOBJECTS_MEASURED_ITEM(RectCalibItem, "rectcalib_mesureIndex", Cust)

    bool toXml(QDomElement&) const override { return true; }
    bool fromXml(const QDomElement&) override { return true; }
    void fillEditMenu(QMenu*) override {}
    // The area and the diagonal are scaled by the factor once: hosts rely on these values as they are.
    MesureUnit mesureUnit(int i) const override;

protected:
    void fillMesures(double w, double h) override;
    QList<MenuEntry> mesureMenu() const override;
};
