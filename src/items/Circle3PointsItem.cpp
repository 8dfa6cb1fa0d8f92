#include "Circle3PointsItem.h"

Circle3PointsItem::Circle3PointsItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, false) {
    initialise(id, context, MesureKey, MesureDefault);
}
