#include "Arrow2Item.h"

#include "HoverEventItem.h"
#include "RectHandgrips.h"
#include "VariantText.h"

#include <QDomElement>
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

#include <cmath>

namespace {

// A click without a drag gives a square of twice this size, centred on the click.
constexpr double ClickHalfSize = 88;

// Corners turn the arrow, sides resize it.
constexpr std::array<int, 8> gripKinds = {HoverEventItem::Rotation,         HoverEventItem::ResizeVertical,
                                          HoverEventItem::Rotation,         HoverEventItem::ResizeHorizontal,
                                          HoverEventItem::ResizeHorizontal, HoverEventItem::Rotation,
                                          HoverEventItem::ResizeVertical,   HoverEventItem::Rotation};

// Double arrow on a 2s x 2s template, in units of s.
const QPointF doubleArrowTemplate[] = {
    {1, 0},       {2, 2.0 / 3},       {4.0 / 3, 2.0 / 3}, {4.0 / 3, 4.0 / 3}, {2, 4.0 / 3}, {1, 2},
    {0, 4.0 / 3}, {2.0 / 3, 4.0 / 3}, {2.0 / 3, 2.0 / 3}, {0, 2.0 / 3},       {1, 0}};

} // namespace

Arrow2Item::Arrow2Item(QGraphicsItem* parent, int id, void* context)
    : AbstractBaseItem(parent, id, context) {
    m_subType = 4;
    initIdentity(id);

    m_pathChild = new QGraphicsPathItem(this);
    m_mline << QPointF(0, 0) << QPointF(0, 0);
    m_handgripItems = RectHandgrips::create(this, this, gripKinds);
    updateHandgrips();
    setPen(m_pen);
}

AbstractBaseItem* Arrow2Item::clone(int id) {
    auto* item = new Arrow2Item(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

QPainterPath Arrow2Item::arrowOutline(const QRectF& r, int mode) {
    const double x = r.x(), y = r.y(), w = r.width(), h = r.height();
    QPainterPath path;
    if (mode == SingleArrow) {
        path.moveTo(x + w / 2, y);
        path.lineTo(x + w, y + h / 3);
        path.lineTo(x + 2 * w / 3, y + h / 3);
        path.lineTo(x + 2 * w / 3, y + h);
        path.lineTo(x + w / 3, y + h);
        path.lineTo(x + w / 3, y + h / 3);
        path.lineTo(x, y + h / 3);
        path.lineTo(x + w / 2, y);
    } else if (mode == DoubleArrow) {
        const double s = std::sqrt(w * w + h * h) / 2;
        const double templateSize = 2 * s;
        const double sx = templateSize > 0 ? w / templateSize : 0;
        const double sy = templateSize > 0 ? h / templateSize : 0;
        bool first = true;
        for (const QPointF& t : doubleArrowTemplate) {
            const QPointF p(x + t.x() * s * sx, y + t.y() * s * sy);
            if (first)
                path.moveTo(p);
            else
                path.lineTo(p);
            first = false;
        }
    }
    return path;
}

QRectF Arrow2Item::frame() const {
    return QRectF(m_mline[0], m_mline[1]).normalized();
}

QPainterPath Arrow2Item::path() const {
    return m_pathChild->path();
}

void Arrow2Item::rebuild() {
    // The item's bounding rectangle is its child's.
    prepareGeometryChange();
    m_pathChild->setPath(arrowOutline(frame(), m_arrowMode));
}

QPointF Arrow2Item::centroid() {
    return frame().center();
}

void Arrow2Item::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    m_pathChild->setPen(pen);
}

void Arrow2Item::setBrush(const QBrush& brush) {
    AbstractBaseItem::setBrush(brush);
    m_pathChild->setBrush(brush);
}

void Arrow2Item::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    const QPointF p = mapFromScene(event->scenePos());
    m_mline[0] = p - QPointF(ClickHalfSize, ClickHalfSize);
    m_mline[1] = p + QPointF(ClickHalfSize, ClickHalfSize);
    rebuild();
    syncHandgripsToRect(m_pathChild->path().boundingRect());
}

void Arrow2Item::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_mline[1] = mapFromScene(event->scenePos());
    rebuild();
    syncHandgripsToRect(m_pathChild->boundingRect());
}

AbstractBaseItem::typModeEdition Arrow2Item::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
}

bool Arrow2Item::endEdition() {
    const QRectF r = RectHandgrips::normalise(m_mline);
    syncHandgripsToRect(r);
    return r.width() > 0 && r.height() > 0;
}

void Arrow2Item::pressPoint(const QPointF&) {
    emit mesureChangedSTART(this);
}

void Arrow2Item::releasePoint(const QPointF&) {
    syncHandgripsToRect(RectHandgrips::normalise(m_mline));
    emit mesureChangedEND(this);
}

void Arrow2Item::initRotationReferencePoint(const QPointF& p) {
    AbstractBaseItem::initRotationReferencePoint(p);
    m_rotation = QGraphicsItem::rotation();
    m_currentRotation = 0;
    emit mesureChangedSTART(this);
}

void Arrow2Item::validRotationReferencePoint(const QPointF&) {
    m_rotation = QGraphicsItem::rotation();
    m_currentRotation = 0;
    emit mesureChangedEND(this);
}

void Arrow2Item::rotateAboutCentre(double degrees) {
    // The centre keeps its place in the scene; the item turns about its own origin.
    const QPointF c = frame().center();
    const QPointF before = mapToScene(c);
    setRotation(degrees);
    setPos(pos() + before - mapToScene(c));
}

void Arrow2Item::updatePoint(const QPointF& p) {
    HoverEventItem* grip = senderHandgrip();
    if (!m_handgripItems.contains(grip))
        return;
    if (grip->getType() == HoverEventItem::Rotation) {
        const QPointF centre = mapToScene(frame().center());
        // Screen angles turn counter-clockwise, item rotations clockwise.
        m_currentRotation = HoverEventItem::applyRotation(grip, p, centre, m_refRotationPoint);
        rotateAboutCentre(m_rotation - m_currentRotation);
    } else {
        const QRectF r = RectHandgrips::drag(grip, m_mline, p, this);
        rebuild();
        syncHandgripsToRect(r);
    }
    emit mesureChanged(this);
}

void Arrow2Item::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("arrow"), m_arrowMode == SingleArrow, nullptr, SingleArrow);
    createMenuAction(menu, QIcon(), tr("dblarrow"), m_arrowMode == DoubleArrow, nullptr, DoubleArrow);
}

void Arrow2Item::applyContextMenu(int data) {
    m_arrowMode = data;
    rebuild();
}

void Arrow2Item::mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) {
    edit();
}

QRectF Arrow2Item::boundingRect() const {
    return m_pathChild->boundingRect();
}

QPainterPath Arrow2Item::shape() const {
    return m_pathChild->shape();
}

bool Arrow2Item::toXml(QDomElement& e) const {
    commonWriteXML(e);
    e.setAttribute(QStringLiteral("rotation"), QString::number(QGraphicsItem::rotation(), 'f', 4));
    e.setAttribute(QStringLiteral("begin"), variantToString(m_mline[0]));
    e.setAttribute(QStringLiteral("end"), variantToString(m_mline[1]));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("form"), m_arrowMode);
    return true;
}

bool Arrow2Item::fromXml(const QDomElement& e) {
    m_creationStarted = true;
    commonReadXML(e);
    const double angle = e.attribute(QStringLiteral("rotation")).toDouble();
    setRotation(std::isfinite(angle) ? angle : 0.0);
    m_rotation = QGraphicsItem::rotation();
    m_mline[0] = stringToVariant(e.attribute(QStringLiteral("begin")), QMetaType::QPointF).toPointF();
    m_mline[1] = stringToVariant(e.attribute(QStringLiteral("end")), QMetaType::QPointF).toPointF();
    setPos(stringToVariant(e.attribute(QStringLiteral("pos")), QMetaType::QPointF).toPointF());
    m_arrowMode = e.attribute(QStringLiteral("form")).toInt(nullptr, 10);
    setPen(m_pen);
    setFont(m_font);
    rebuild();
    syncHandgripsToRect(QRectF(m_mline[0], m_mline[1]));
    return true;
}
