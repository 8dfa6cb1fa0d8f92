#include "CrossHItem.h"

CrossHItem::CrossHItem(QGraphicsItem* parent, int id, void* context)
    : GuideItem(parent, Qt::Horizontal, context) {
    initIdentity(id);
}
