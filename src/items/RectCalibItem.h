#pragma once

#include "RectangleItem.h"

// The calibration rectangle: sides, area, perimeter and diagonal, for the host to derive a
// calibration from. It is a working tool and is never saved.
class GRAPHICSOBJECTS_EXPORT RectCalibItem : public RectangleItem {
    Q_OBJECT
public:
    RectCalibItem(QGraphicsItem* parent, int id, void* context);

    AbstractBaseItem* clone(int id) override;
    bool toXml(QDomElement& e) const override;
    bool fromXml(const QDomElement& e) override;
    void fillEditMenu(QMenu*) override {}

protected:
    void fillMesures(double w, double h) override;
    QList<MenuEntry> mesureMenu() const override;
    MesureChoice mesureChoice() const override;
};
