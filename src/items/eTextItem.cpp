#include "eTextItem.h"

#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "TextItem.h"
#include "TextItemDialog.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QFocusEvent>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsView>
#include <QMenu>
#include <QPainter>
#include <QTextCursor>
#include <QTextDocument>

#include <cmath>
#include <utility>

namespace {

// "LineItem1 dist1:12.50 mm": the source's name, its displayed measure and its unit, written as a
// word rather than with the label's "*".
QString linkedText(const AbstractBaseItem& source) {
    const int kind = source.mesureIndex();
    AbstractBaseItem::MesureText mesure = source.mesureText(kind);
    const QString unit = mesure.unit;
    mesure.unit.clear();
    return QStringLiteral("%1 %2 %3").arg(source.getGUIDname(), mesure.label(), unit).simplified();
}

constexpr double MaxFontSize = 2000;

// The background: the brush colour with its alpha, in the saved pattern ("bgStyle"). A text without
// a background keeps none through a round trip, although its brush's colour is written as opaque
// black. Files without the pattern fill any visible colour solidly.
QBrush readBackground(const XmlAttributes& e) {
    QColor colour(e.attribute(QStringLiteral("bgColor")));
    if (!colour.isValid())
        return QBrush();
    colour.setAlpha(qBound(0, e.attribute(QStringLiteral("alpha"), QStringLiteral("0")).toInt(), 255));
    bool saved = false;
    const int style = e.attribute(QStringLiteral("bgStyle")).toInt(&saved);
    if (!saved)
        return QBrush(colour, colour.alpha() > 0 ? Qt::SolidPattern : Qt::NoBrush);
    // Gradients and textures cannot be made again from a colour: they come back solid.
    const bool pattern = style >= Qt::NoBrush && style <= Qt::DiagCrossPattern;
    return QBrush(colour, pattern ? Qt::BrushStyle(style) : Qt::SolidPattern);
}

constexpr int rotationGripPositions[] = {HoverEventItem::TopLeft, HoverEventItem::TopRight,
                                         HoverEventItem::BottomLeft, HoverEventItem::BottomRight};

} // namespace

eTextItem::eTextItem(QGraphicsItem* parent, int index, void* params)
    : AbstractBaseItem(parent, index, params) {
    initIdentity(index);
    setFlag(ItemSendsScenePositionChanges, true);
    setFlag(ItemIsFocusable, true);
    setFlag(ItemIsSelectable, true);
    setFlag(ItemIsMovable, true);
    // The text is its own label.
    m_label->setVisible(false);

    m_background = new QGraphicsRectItem(this);
    m_background->setFlag(ItemStacksBehindParent, true);
    m_background->setPen(Qt::NoPen);
    m_text = new TextItem(this);
    m_text->setTextInteractionFlags(Qt::TextEditorInteraction);
    m_text->setDefaultTextColor(m_pen.color());
    m_font = m_text->font();

    connect(m_text->document(), &QTextDocument::contentsChanged, this, &eTextItem::textChanged);
    connect(m_text, &TextItem::lostFocus, this, &eTextItem::focusOut);
    connect(m_text, &QObject::destroyed, this, &eTextItem::textDestroyed);
    connect(m_text, &TextItem::dirty, this, &eTextItem::textMoved);
    connect(m_text, &TextItem::selectedChange, this, &eTextItem::textSelected);

    m_text->setPlainText(QStringLiteral(" "));

    if (auto* record = static_cast<_AUTOPOINTPARAMS*>(params)) {
        setPos(record->center);
        m_center = record->center;
        textChanged();
        associate(record->source, nullptr);
    }
}

eTextItem::~eTextItem() {
    // The children die after this object's own part: their last signals must not reach it.
    if (m_text) {
        disconnect(m_text->document(), nullptr, this, nullptr);
        disconnect(m_text, nullptr, this, nullptr);
    }
}

// Without its text the annotation is nothing: it leaves the scene at once and goes.
void eTextItem::textDestroyed() {
    prepareGeometryChange();
    if (scene())
        scene()->removeItem(this);
    deleteLater();
}

QString eTextItem::text() const {
    return m_text ? m_text->toPlainText() : QString();
}

QRectF eTextItem::textRect() const {
    return m_text ? m_text->mapRectToParent(m_text->boundingRect()) : QRectF();
}

void eTextItem::syncBackground() {
    m_background->setPos(m_text->pos());
    m_background->setRect(m_text->boundingRect());
    m_background->setTransform(m_text->transform());
    refreshHandgrips();
}

// On the corners of the text, turned with it.
QList<AbstractBaseItem::Handle> eTextItem::handles() const {
    QList<Handle> result;
    for (int position : rotationGripPositions)
        result.append(
            {position, HoverEventItem::Rotation,
             m_text->mapToParent(HoverEventItem::positionOnRect(m_text->boundingRect(), position))});
    return result;
}

void eTextItem::recenter() {
    m_recentering = true;
    setPos(pos() + mapToParent(mapFromScene(m_center)) - mapToParent(textRect().center()));
    m_recentering = false;
}

void eTextItem::setCenterPoint(const QPointF& center) {
    m_center = center;
    recenter();
}

void eTextItem::textChanged() {
    m_modified = true;
    prepareGeometryChange();
    // The rotation turns about the text's middle, which moves as the text grows.
    rotate(m_rotation);
    recenter();
    update();
    emit itemChanged(this, QStringLiteral("text"), nullptr);
}

void eTextItem::textMoved() {
    if (m_recentering)
        return;
    prepareGeometryChange();
    syncBackground();
    m_center = mapToScene(textRect().center());
}

void eTextItem::textSelected() {
    // Selecting the text selects the annotation, which shows the grips and moves as a whole.
    if (m_text->isSelected() && !isSelected())
        setSelected(true);
}

// Angles turn anticlockwise on screen, as the rotation grips measure them.
void eTextItem::rotate(double angle) {
    prepareGeometryChange();
    m_rotation = angle;
    m_text->setTransform(makeRotation(-angle, m_text->boundingRect()));
    syncBackground();
}

// The grip's angle from the reference point is the text's rotation: the reference is the pressed
// point turned back to where it was before any rotation.
void eTextItem::initRotationReferencePoint(const QPointF& p) {
    AbstractBaseItem::initRotationReferencePoint(
        HoverEventItem::turnedAbout(p, m_text->sceneBoundingRect().center(), -m_rotation));
}

void eTextItem::handleMoved(int id, const QPointF& p, Qt::KeyboardModifiers) {
    const double angle = HoverEventItem::applyRotation(handgrip(id), p, m_text->sceneBoundingRect().center(),
                                                       m_refRotationPoint);
    if (std::isfinite(angle))
        rotate(angle);
}

void eTextItem::activateEditor() {
    if (m_text->textInteractionFlags() == Qt::NoTextInteraction)
        m_text->setTextInteractionFlags(Qt::TextEditorInteraction);
    m_text->setCursor(Qt::IBeamCursor);
}

void eTextItem::focusInEvent(QFocusEvent* event) {
    setData(0, true);
    activateEditor();
    AbstractBaseItem::focusInEvent(event);
    // Typing goes to the text; a fresh text's placeholder is selected so that typing replaces it.
    m_text->setFocus(event->reason());
    if (text().trimmed().isEmpty()) {
        QTextCursor cursor(m_text->document());
        cursor.select(QTextCursor::Document);
        m_text->setTextCursor(cursor);
    }
}

void eTextItem::focusOut() {
    setData(0, false);
    // Focus passing between the annotation and its own text is no end of editing.
    const QGraphicsItem* focus = scene() ? scene()->focusItem() : nullptr;
    if (focus && (focus == this || isAncestorOf(focus)))
        return;
    if (text().isEmpty())
        deleteLater();
}

QVariant eTextItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    // The selection that accepts a new text leaves it open for typing.
    if (change == ItemSelectedHasChanged && std::exchange(m_justCreated, false)) {
        return AbstractBaseItem::itemChange(change, value);
    } else if (change == ItemSelectedHasChanged) {
        m_text->setTextInteractionFlags(Qt::NoTextInteraction);
        QTextCursor cursor = m_text->textCursor();
        cursor.clearSelection();
        m_text->setTextCursor(cursor);
        m_text->setSelected(false);
    } else if (change == ItemScenePositionHasChanged && !m_recentering) {
        m_center = mapToScene(textRect().center());
        QPointF position = value.toPointF();
        emit itemChanged(this, QStringLiteral("pos"), &position);
    }
    return AbstractBaseItem::itemChange(change, value);
}

void eTextItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    m_text->setDefaultTextColor(pen.color());
}

void eTextItem::setBrush(const QBrush& brush) {
    AbstractBaseItem::setBrush(brush);
    m_background->setPen(Qt::NoPen);
    m_background->setBrush(brush);
}

void eTextItem::setFont(const QFont& font) {
    AbstractBaseItem::setFont(font);
    m_text->setFont(font);
    textChanged();
}

void eTextItem::setText(void* source) {
    if (!source) {
        m_linkName.clear();
        m_text->setPlainText(QStringLiteral(" "));
        return;
    }
    m_text->setPlainText(linkedText(*static_cast<AbstractBaseItem*>(source)));
}

void eTextItem::associate(AbstractBaseItem* item, void* arg) {
    if (!item)
        return;
    if (m_source && m_source != item)
        unassociate(m_source, nullptr);
    m_creationStarted = true;
    m_source = item;
    m_text->setLinked(true);
    AbstractBaseItem::associate(item, arg);
    setText(item);
    connect(item, &AbstractBaseItem::mesureChangedEND, this, &eTextItem::setText, Qt::UniqueConnection);
    connect(item, &QObject::destroyed, this, &eTextItem::sourceDestroyed, Qt::UniqueConnection);
}

void eTextItem::disconnectSource(AbstractBaseItem* item) {
    if (!item)
        return;
    disconnect(item, &AbstractBaseItem::mesureChangedEND, this, &eTextItem::setText);
    disconnect(item, &QObject::destroyed, this, &eTextItem::sourceDestroyed);
}

void eTextItem::unassociate(AbstractBaseItem* item, void* arg) {
    // Only the item named is let go: without one, the text keeps following its measure.
    disconnectSource(item);
    if (item && item == m_source)
        m_source = nullptr;
    AbstractBaseItem::unassociate(item, arg);
    m_text->setLinked(false);
}

void eTextItem::sourceDestroyed() {
    m_source = nullptr;
    m_linkName.clear();
    m_text->setLinked(false);
}

void eTextItem::setLinkName(AbstractBaseItem* item, QString& name) {
    AbstractBaseItem::setLinkName(item, name);
    if (item)
        setText(item);
}

void eTextItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    setCenterPoint(event->scenePos());
    textChanged();
}

void eTextItem::mouseMove(QGraphicsSceneMouseEvent*) {}

AbstractBaseItem::typModeEdition eTextItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
}

bool eTextItem::endEdition() {
    m_justCreated = true;
    return true;
}

QPointF eTextItem::centroid() {
    return m_text->sceneBoundingRect().center();
}

QRectF eTextItem::boundingRect() const {
    return textRect() | m_background->mapRectToParent(m_background->rect());
}

QPainterPath eTextItem::shape() const {
    QPainterPath path;
    if (!m_text)
        return path;
    path.addPolygon(m_text->mapToParent(m_text->boundingRect()));
    path.closeSubpath();
    return path;
}

QRectF eTextItem::itemRectF(void* inScene) {
    return inScene ? mapRectToScene(boundingRect()) : boundingRect();
}

void eTextItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    if (!isSelected())
        return;
    QPen outline(Qt::darkGray, 0, Qt::DashLine);
    painter->setPen(outline);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(shape());
}

void eTextItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("Edit text..."), false, nullptr, EditInWindow);
    if (m_source)
        createMenuAction(menu, QIcon(), tr("Unlink"), false, nullptr, Unlink);
}

void eTextItem::applyContextMenu(int data) {
    switch (data) {
    case EditInWindow: {
        QWidget* window = nullptr;
        if (scene() && !scene()->views().isEmpty())
            window = scene()->views().constFirst()->window();
        auto* dialog = new TextItemDialog(m_text, window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->open();
        break;
    }
    case Unlink:
        unassociate(m_source, nullptr);
        break;
    default:
        break;
    }
}

AbstractBaseItem* eTextItem::clone(int id) {
    auto* item = new eTextItem(nullptr, id, nullptr);
    copyCommonData(item, this);
    copyDataTo(item);
    return item;
}

bool eTextItem::toAttributes(XmlAttributes& e) const {
    commonWriteXML(e);
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("rotation"), variantToString(m_rotation));
    e.setAttribute(QStringLiteral("text"), text());
    e.setAttribute(QStringLiteral("font-family"), m_font.family());
    e.setAttribute(QStringLiteral("font-size"), variantToString(m_font.pointSizeF()));
    e.setAttribute(QStringLiteral("bgColor"), m_brush.color().name());
    e.setAttribute(QStringLiteral("alpha"), m_brush.color().alpha());
    e.setAttribute(QStringLiteral("bgStyle"), int(m_brush.style()));
    e.setAttribute(QStringLiteral("linkname"), m_linkName);
    return true;
}

bool eTextItem::fromAttributes(const XmlAttributes& e) {
    m_creationStarted = true;
    commonReadXML(e);
    m_text->setPlainText(e.attribute(QStringLiteral("text")));

    QFont font = m_font;
    const QString family = e.attribute(QStringLiteral("font-family"));
    if (!family.isEmpty())
        font.setFamily(family);
    const double size = readNumber(e, QStringLiteral("font-size"));
    // Sizes no text is written in are refused.
    if (size > 0 && size <= MaxFontSize)
        font.setPointSizeF(size);
    setFont(font);

    setBrush(readBackground(e));
    setPen(m_pen);
    m_linkName = e.attribute(QStringLiteral("linkname"));

    rotate(readNumber(e, QStringLiteral("rotation")));
    m_recentering = true;
    setPos(stringToVariant(e.attribute(QStringLiteral("pos")), QMetaType::QPointF).toPointF());
    m_recentering = false;
    m_center = mapToScene(textRect().center());
    textChanged();
    return true;
}
