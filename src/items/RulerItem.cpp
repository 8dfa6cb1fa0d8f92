#include "RulerItem.h"

#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QFontMetricsF>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>
#include <QStyleOptionGraphicsItem>

#include <algorithm>
#include <cmath>

namespace {

// A click lays a ruler of this size, its left edge centred on the click.
constexpr double ClickLength = 200;
constexpr double ClickHalfHeight = 18;

// Labels start this far below the top edge.
constexpr double LabelOffset = 20;
// More ticks than this cannot be told apart on any screen.
constexpr double MaxTicks = 100000;

// Menu entries whose data is the label divisor.
const QList<AbstractBaseItem::MenuEntry> divisorEntries = {
    {QT_TRANSLATE_NOOP("RulerItem", "x1"), 10},
    {QT_TRANSLATE_NOOP("RulerItem", "x10"), 1},
};

double tickLength(qint64 i) {
    if (i != 0 && i % 10 == 0)
        return 15;
    return i % 5 == 0 ? 10 : 5;
}

} // namespace

RulerItem::RulerItem(QGraphicsItem* parent, int id, void*)
    : SpanItem(parent, new QGraphicsRectItem, 4, HoverEventItem::Move) {
    initIdentity(id);
}

QRectF RulerItem::rect() const {
    return child<QGraphicsRectItem>()->rect();
}

void RulerItem::setRect(const QRectF& r) {
    setChildRect<QGraphicsRectItem>(r);
    refreshHandgrips();
}

QPointF RulerItem::centroid() {
    return rect().center();
}

double RulerItem::graduationStep() const {
    return (10 / m_calibration.factor) / 10;
}

void RulerItem::setFont(const QFont& font) {
    // The labels, part of the bounding rectangle, take the font.
    prepareGeometryChange();
    AbstractBaseItem::setFont(font);
}

void RulerItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    const QPointF p = event->scenePos();
    m_mline[0] = QPointF(p.x(), p.y() - ClickHalfHeight);
    m_mline[1] = QPointF(p.x() + ClickLength, p.y() + ClickHalfHeight);
    m_creationStarted = true;
    setRect(QRectF(m_mline[0], m_mline[1]).normalized());
}

void RulerItem::spanChanged() {
    setRect(QRectF(m_mline[0], m_mline[1]).normalized());
}

void RulerItem::fillContextMenu(QMenu* menu) {
    addMenuEntries(menu, divisorEntries, m_divisor);
}

void RulerItem::applyContextMenu(int data) {
    // The divisor divides the labels: only the menu's values make sense.
    for (const MenuEntry& entry : divisorEntries) {
        if (entry.data == data) {
            m_divisor = data;
            update();
        }
    }
}

QRectF RulerItem::boundingRect() const {
    const QRectF r = child<QGraphicsRectItem>()->boundingRect();
    // The labels may hang below a thin ruler.
    const double labelBottom = rect().top() + LabelOffset + QFontMetricsF(m_font).height() + 5;
    return r.united(QRectF(r.left(), r.top(), r.width(), labelBottom - r.top()));
}

void RulerItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const QRectF r = rect();
    const double step = graduationStep();
    if (!(step > 0) || !std::isfinite(step) || step >= r.width())
        return;
    // Graduations finer than a device pixel are drawn one per device pixel, and never more than
    // MaxTicks: a ruler is never blank, and never slow.
    const double pixel = 1 / QStyleOptionGraphicsItem::levelOfDetailFromTransform(painter->worldTransform());
    const double stride = std::max({1.0, std::ceil(pixel / step), std::ceil(r.width() / step / MaxTicks)});

    painter->save();
    const QPointF c = centroid();
    painter->translate(c);
    painter->rotate(-rotation());
    painter->translate(-c);
    painter->setFont(m_font);
    painter->setPen(m_pen);
    const QFontMetricsF metrics(m_font);
    // Point 0 is the top-left corner, also while a grip drags a side past the opposite one.
    const double x0 = r.left();
    const double y0 = r.top();
    for (double k = 0; k * step < r.width(); k += stride) {
        const qint64 i = qint64(k);
        const double x = x0 + k * step;
        painter->drawLine(QPointF(x, y0), QPointF(x, y0 + tickLength(i)));
        if (i == 0 || i % 10 != 0)
            continue;
        const QString text = QStringLiteral("%1").arg(i / m_divisor);
        const double w = metrics.horizontalAdvance(text);
        if (x + w / 2 >= r.right())
            continue;
        painter->drawText(QRectF(x - w / 2, r.top() + LabelOffset, w, metrics.height() + 5), Qt::AlignVCenter,
                          text);
    }
    painter->restore();
}

void RulerItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("rotation"), variantToString(QGraphicsItem::rotation()));
    e.setAttribute(QStringLiteral("rect"), variantToString(rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
}

void RulerItem::readGeometry(const XmlAttributes& e) {
    setRotation(readNumber(e, QStringLiteral("rotation")));
    const QRectF r = readRect(e, QStringLiteral("rect"));
    m_mline = {r.topLeft(), r.bottomRight()};
    setRect(r);
    setPos(readPoint(e, QStringLiteral("pos")));
}
