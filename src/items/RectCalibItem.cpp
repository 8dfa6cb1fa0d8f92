#include "RectCalibItem.h"

#include <cmath>

RectCalibItem::RectCalibItem(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context);
}

AbstractBaseItem* RectCalibItem::clone(int id) {
    auto* item = new RectCalibItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

bool RectCalibItem::toXml(QDomElement&) const {
    return true;
}

bool RectCalibItem::fromXml(const QDomElement&) {
    return true;
}

void RectCalibItem::fillMesures(double w, double h) {
    const double c = m_calibration.factor;
    const double diagonal = std::sqrt(w * w + h * h);
    m_mesureP[Aera] = w * h;
    m_mesureP[Perim] = 2 * (w + h);
    m_mesureP[Rad1] = w;
    m_mesureP[Rad2] = h;
    m_mesureP[Cust] = diagonal;
    // Scaled by the factor once, not squared: hosts rely on this value as it is.
    m_mesure[Aera] = c * w * h;
    m_mesure[Perim] = c * 2 * (w + h);
    m_mesure[Rad1] = c * w;
    m_mesure[Rad2] = c * h;
    m_mesure[Cust] = c * diagonal;
}

QList<RectangleItem::MenuEntry> RectCalibItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},   {QT_TR_NOOP("Perimeter"), Perim}, {QT_TR_NOOP("Width"), Rad1},
            {QT_TR_NOOP("Height"), Rad2}, {QT_TR_NOOP("Diagonal"), Cust},   {QT_TR_NOOP("None"), -1}};
}

RectangleItem::MesureChoice RectCalibItem::mesureChoice() const {
    return {"rectcalib_mesureIndex", Cust};
}
