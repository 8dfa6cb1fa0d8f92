#include "RectCalibItem.h"

#include <cmath>

RectCalibItem::RectCalibItem(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context, MesureKey, MesureDefault);
}

AbstractBaseItem::MesureUnit RectCalibItem::mesureUnit(int i) const {
    return i == Aera || i == Cust ? MesureUnit::Length : RectangleItem::mesureUnit(i);
}

void RectCalibItem::fillMesures(double w, double h) {
    m_mesureP[Aera] = w * h;
    m_mesureP[Perim] = 2 * (w + h);
    m_mesureP[Rad1] = w;
    m_mesureP[Rad2] = h;
    m_mesureP[Cust] = std::sqrt(w * w + h * h);
    calibrateMesures({Aera, Perim, Rad1, Rad2, Cust});
}

QList<AbstractBaseItem::MenuEntry> RectCalibItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},   {QT_TR_NOOP("Perimeter"), Perim}, {QT_TR_NOOP("Width"), Rad1},
            {QT_TR_NOOP("Height"), Rad2}, {QT_TR_NOOP("Diagonal"), Cust},   {QT_TR_NOOP("None"), -1}};
}
