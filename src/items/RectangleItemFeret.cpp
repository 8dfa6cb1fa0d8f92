#include "RectangleItemFeret.h"

RectangleItemFeret::RectangleItemFeret(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context, MesureKey, MesureDefault);
}

void RectangleItemFeret::fillMesures(double w, double h) {
    RectangleItem::fillMesures(w, h);
    // A square's maximum is its width and its minimum its height.
    m_mesureP[Dist1] = w >= h ? w : h;
    m_mesureP[Dist2] = w >= h ? h : w;
    calibrateMesures({Dist1, Dist2});
}
