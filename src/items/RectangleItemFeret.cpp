#include "RectangleItemFeret.h"

RectangleItemFeret::RectangleItemFeret(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context);
}

AbstractBaseItem* RectangleItemFeret::clone(int id) {
    auto* item = new RectangleItemFeret(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

void RectangleItemFeret::fillMesures(double w, double h) {
    RectangleItem::fillMesures(w, h);
    const double c = m_calibration.factor;
    // A square's maximum is its width and its minimum its height.
    const double longest = w >= h ? w : h;
    const double shortest = w >= h ? h : w;
    m_mesureP[Dist1] = longest;
    m_mesureP[Dist2] = shortest;
    m_mesure[Dist1] = c * longest;
    m_mesure[Dist2] = c * shortest;
    m_mesure[Aera] = (c * h) * (c * w);
}
