#include "TextItem.h"

#include <QFocusEvent>
#include <QFont>
#include <QTransform>

TextItem::TextItem(QGraphicsItem* parent)
    : QGraphicsTextItem(parent) {
    setFont(QFont(QStringLiteral("Courier"), 12, QFont::Normal, false));
    setFlag(ItemIsMovable, true);
    setFlag(ItemIsSelectable, true);
    setFlag(ItemSendsGeometryChanges, true);
}

void TextItem::setAngle(double degrees) {
    if (!isSelected() || qFuzzyCompare(degrees, m_angle))
        return;
    m_angle = degrees;
    updateTransform();
}

void TextItem::setShear(double horizontal, double vertical) {
    if (!isSelected() || (qFuzzyCompare(horizontal, m_shearH) && qFuzzyCompare(vertical, m_shearV)))
        return;
    m_shearH = horizontal;
    m_shearV = vertical;
    updateTransform();
}

void TextItem::updateTransform() {
    const QPointF c = boundingRect().center();
    setTransform(QTransform()
                     .translate(c.x(), c.y())
                     .rotate(m_angle)
                     .shear(m_shearH, m_shearV)
                     .translate(-c.x(), -c.y()));
    emit dirty();
}

QVariant TextItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    if (change == ItemPositionHasChanged)
        emit dirty();
    else if (change == ItemSelectedHasChanged)
        emit selectedChange(this);
    return QGraphicsTextItem::itemChange(change, value);
}

void TextItem::focusOutEvent(QFocusEvent* event) {
    QGraphicsTextItem::focusOutEvent(event);
    // A menu opening over the text or the window going to the background ends no editing.
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason)
        emit lostFocus();
}

void TextItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) {
    // A double click on a text that is not being edited starts editing it; an owner that takes
    // the focus decides how.
    if (textInteractionFlags() == Qt::NoTextInteraction) {
        QGraphicsItem* owner = parentItem();
        if (owner && (owner->flags() & ItemIsFocusable))
            owner->setFocus(Qt::MouseFocusReason);
        else
            setTextInteractionFlags(Qt::TextEditorInteraction);
        setFocus(Qt::MouseFocusReason);
    }
    QGraphicsTextItem::mouseDoubleClickEvent(event);
}
