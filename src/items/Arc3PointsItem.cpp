#include "Arc3PointsItem.h"

Arc3PointsItem::Arc3PointsItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, true, Start::Announced) {
    initialise(id, context, MesureKey, MesureDefault);
}
