#include "SpanItem.h"

#include "RectHandgrips.h"

SpanItem::SpanItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType, int cornerKind)
    : ShapeItem(parent, shape, subType, 2)
    , m_cornerKind(cornerKind) {}

bool SpanItem::endEdition() {
    const QRectF r = RectHandgrips::normalise(m_mline);
    refreshHandgrips();
    return r.width() > 0 && r.height() > 0;
}

// The grips follow the two points, also while a side is dragged past the opposite one.
QList<AbstractBaseItem::Handle> SpanItem::handles() const {
    return RectHandgrips::frameHandles(QRectF(m_mline[0], m_mline[1]), m_cornerKind);
}

void SpanItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    RectHandgrips::drag(handgrip(id), m_mline, scenePos, this);
    spanChanged();
    emit mesureChanged(this);
}

void SpanItem::handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    RectHandgrips::normalise(m_mline);
    refreshHandgrips();
    ShapeItem::handleReleased(id, scenePos, modifiers);
}
