#include "CrossVItem.h"

CrossVItem::CrossVItem(QGraphicsItem* parent, int id, void* context)
    : GuideItem(parent, Qt::Vertical, context) {
    initIdentity(id);
}
