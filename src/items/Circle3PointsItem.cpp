#include "Circle3PointsItem.h"

Circle3PointsItem::Circle3PointsItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, false, Start::Announced) {
    initialise(id, context, MesureKey, MesureDefault);
}
