#include "RulerItem.h"

#include "HoverEventItem.h"
#include "RectHandgrips.h"
#include "VariantText.h"

#include <QDomElement>
#include <QFontMetricsF>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>
#include <QPainter>

#include <cmath>

namespace {

// A click lays a ruler of this size, its left edge centred on the click.
constexpr double ClickLength = 200;
constexpr double ClickHalfHeight = 18;

// Labels start this far below the top edge.
constexpr double LabelOffset = 20;
// More ticks than this cannot be told apart on any screen: the ruler then shows none.
constexpr double MaxTicks = 100000;

constexpr std::array<int, 8> gripKinds = {HoverEventItem::Move,
                                          HoverEventItem::ResizeVertical,
                                          HoverEventItem::Move,
                                          HoverEventItem::ResizeHorizontal,
                                          HoverEventItem::ResizeHorizontal,
                                          HoverEventItem::Move,
                                          HoverEventItem::ResizeVertical,
                                          HoverEventItem::Move};

struct DivisorEntry {
    const char* text;
    int divisor;
};

const DivisorEntry divisorEntries[] = {
    {QT_TRANSLATE_NOOP("RulerItem", "x1"), 10},
    {QT_TRANSLATE_NOOP("RulerItem", "x10"), 1},
};

double tickLength(int i) {
    if (i != 0 && i % 10 == 0)
        return 15;
    return i % 5 == 0 ? 10 : 5;
}

} // namespace

RulerItem::RulerItem(QGraphicsItem* parent, int id, void* context)
    : AbstractBaseItem(parent, id, context) {
    m_subType = 4;
    initIdentity(id);

    m_ruler.rect = new QGraphicsRectItem(this);
    m_mline << QPointF(0, 0) << QPointF(0, 0);
    m_handgripItems = RectHandgrips::create(this, this, gripKinds);
    updateHandgrips();
    setPen(m_pen);
}

AbstractBaseItem* RulerItem::clone(int id) {
    auto* item = new RulerItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

QRectF RulerItem::rect() const {
    return m_ruler.rect->rect();
}

void RulerItem::setRect(const QRectF& r) {
    prepareGeometryChange();
    m_ruler.rect->setRect(r);
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

void RulerItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    m_ruler.rect->setPen(pen);
}

void RulerItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    const QPointF p = event->scenePos();
    m_mline[0] = QPointF(p.x(), p.y() - ClickHalfHeight);
    m_mline[1] = QPointF(p.x() + ClickLength, p.y() + ClickHalfHeight);
    setRect(QRectF(m_mline[0], m_mline[1]).normalized());
    syncHandgripsToRect(rect());
    m_creationStarted = true;
}

void RulerItem::mouseMove(QGraphicsSceneMouseEvent*) {}

AbstractBaseItem::typModeEdition RulerItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
}

bool RulerItem::endEdition() {
    const QRectF r = RectHandgrips::normalise(m_mline);
    return r.width() > 0 && r.height() > 0;
}

void RulerItem::pressPoint(const QPointF&) {
    emit mesureChangedSTART(this);
}

void RulerItem::releasePoint(const QPointF&) {
    syncHandgripsToRect(RectHandgrips::normalise(m_mline));
    emit mesureChangedEND(this);
}

void RulerItem::updatePoint(const QPointF& p) {
    HoverEventItem* grip = senderHandgrip();
    if (!m_handgripItems.contains(grip))
        return;
    const QRectF r = RectHandgrips::drag(grip, m_mline, p, this);
    setRect(r.normalized());
    syncHandgripsToRect(r);
    emit mesureChanged(this);
}

void RulerItem::fillContextMenu(QMenu* menu) {
    for (const DivisorEntry& entry : divisorEntries)
        createMenuAction(menu, QIcon(), tr(entry.text), m_ruler.divisor == entry.divisor, nullptr,
                         entry.divisor);
}

void RulerItem::applyContextMenu(int data) {
    // The divisor divides the labels: only the menu's values make sense.
    for (const DivisorEntry& entry : divisorEntries) {
        if (entry.divisor == data) {
            m_ruler.divisor = data;
            update();
        }
    }
}

void RulerItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) {
    edit();
}

QRectF RulerItem::boundingRect() const {
    const QRectF r = m_ruler.rect->boundingRect();
    // The labels may hang below a thin ruler.
    const double labelBottom = rect().top() + LabelOffset + QFontMetricsF(m_font).height() + 5;
    return r.united(QRectF(r.left(), r.top(), r.width(), labelBottom - r.top()));
}

void RulerItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    const QRectF r = rect();
    const double step = graduationStep();
    if (!(step > 0) || !std::isfinite(step) || step >= r.width() || r.width() / step > MaxTicks)
        return;

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
    for (int i = 0; i * step < r.width(); ++i) {
        const double x = x0 + i * step;
        painter->drawLine(QPointF(x, y0), QPointF(x, y0 + tickLength(i)));
        if (i == 0 || i % 10 != 0)
            continue;
        const QString text = QStringLiteral("%1").arg(i / m_ruler.divisor);
        const double w = metrics.horizontalAdvance(text);
        if (x + w / 2 >= r.right())
            continue;
        painter->drawText(QRectF(x - w / 2, r.top() + LabelOffset, w, metrics.height() + 5), Qt::AlignVCenter,
                          text);
    }
    painter->restore();
}

bool RulerItem::toXml(QDomElement& e) const {
    commonWriteXML(e);
    e.setAttribute(QStringLiteral("rotation"), variantToString(QGraphicsItem::rotation()));
    e.setAttribute(QStringLiteral("rect"), variantToString(rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    return true;
}

bool RulerItem::fromXml(const QDomElement& e) {
    m_creationStarted = true;
    commonReadXML(e);
    const double angle = e.attribute(QStringLiteral("rotation")).toDouble();
    setRotation(std::isfinite(angle) ? angle : 0.0);
    const QRectF r = stringToVariant(e.attribute(QStringLiteral("rect")), QMetaType::QRectF).toRectF();
    setRect(r);
    m_mline[0] = r.topLeft();
    m_mline[1] = r.bottomRight();
    setPos(stringToVariant(e.attribute(QStringLiteral("pos")), QMetaType::QPointF).toPointF());
    setPen(m_pen);
    setFont(m_font);
    syncHandgripsToRect(r);
    return true;
}
