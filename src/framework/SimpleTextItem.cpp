#include "SimpleTextItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"

#include <QBrush>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QHash>
#include <QPainter>
#include <QPen>
#include <QStyleOptionGraphicsItem>

namespace {

// Device pixels below which a line of text is a smudge, not text.
constexpr double MinReadableHeight = 4;

} // namespace

SimpleTextItem::SimpleTextItem(QGraphicsItem* parent)
    : QGraphicsSimpleTextItem(parent) {
    // Qt gives every text item a pen of its own, equal to the shared empty pen but allocated apart;
    // an equal pen is not taken, so a different one goes in first. Every label then shares one.
    static const QPen unequal(Qt::NoBrush, 0);
    setPen(unequal);
    setPen(QPen(Qt::NoPen));
    setFlags(flags() | ItemIsMovable | ItemIsSelectable);
}

// Labels of one colour share one brush.
void SimpleTextItem::setTextColor(const QColor& color) {
    static QHash<QRgb, QBrush> brushes;
    auto it = brushes.find(color.rgba());
    if (it == brushes.end()) {
        if (brushes.size() > 256)
            brushes.clear();
        it = brushes.insert(color.rgba(), QBrush(color));
    }
    setBrush(*it);
}

void SimpleTextItem::setLabelFont(const QFont& font) {
    // A scene's labels use a few fonts: they share the unshaped copy of the last one given.
    static QFont given;
    static QFont unshaped;
    static bool made = false;
    if (!made || font != given) {
        given = font;
        unshaped = font;
        unshaped.setStyleStrategy(QFont::StyleStrategy(font.styleStrategy() | QFont::PreferNoShaping));
        made = true;
    }
    if (this->font() != unshaped)
        setFont(unshaped);
}

QColor SimpleTextItem::textColor() const {
    return brush().color();
}

void SimpleTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) {
    const double scale = QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    if (scale * boundingRect().height() < MinReadableHeight)
        return;
    const auto* host = qobject_cast<const AbstractScene*>(scene());
    if (host && host->labelBackground() && !text().isEmpty()) {
        // The plate contrasts with the text, whatever the image under it.
        const bool darkText = textColor().lightnessF() < 0.5;
        painter->fillRect(boundingRect(), darkText ? QColor(255, 255, 255, 200) : QColor(0, 0, 0, 200));
    }
    QGraphicsSimpleTextItem::paint(painter, option, widget);
}

void SimpleTextItem::mousePressEvent(QGraphicsSceneMouseEvent* event) {
    if (scene()) {
        // Grips keep their size on screen, so they are found through the view's transform.
        const auto* view =
            event->widget() ? qobject_cast<QGraphicsView*>(event->widget()->parentWidget()) : nullptr;
        const QTransform device = view ? view->viewportTransform() : QTransform();
        for (QGraphicsItem* item :
             scene()->items(event->scenePos(), Qt::IntersectsItemShape, Qt::DescendingOrder, device)) {
            auto* grip = dynamic_cast<HoverEventItem*>(item);
            if (grip && grip->isVisible() && grip->getType() != HoverEventItem::CentroidGrip) {
                event->ignore();
                return;
            }
        }
    }
    QGraphicsSimpleTextItem::mousePressEvent(event);
}
