#include "SimpleTextItem.h"

#include <QBrush>

SimpleTextItem::SimpleTextItem(QGraphicsItem* parent)
    : QGraphicsSimpleTextItem(parent) {
    setFlag(ItemIsMovable, true);
    setFlag(ItemIsSelectable, true);
}

void SimpleTextItem::setTextColor(const QColor& color) {
    setBrush(QBrush(color));
}

QColor SimpleTextItem::textColor() const {
    return brush().color();
}
