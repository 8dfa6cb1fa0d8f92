#include "Arrow2Item.h"

#include "HoverEventItem.h"
#include "RectHandgrips.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

#include <cmath>

namespace {

// A click without a drag gives a square of twice this size, centred on the click.
constexpr double ClickHalfSize = 88;

// Double arrow on a 2s x 2s template, in units of s.
const QPointF doubleArrowTemplate[] = {
    {1, 0},       {2, 2.0 / 3},       {4.0 / 3, 2.0 / 3}, {4.0 / 3, 4.0 / 3}, {2, 4.0 / 3}, {1, 2},
    {0, 4.0 / 3}, {2.0 / 3, 4.0 / 3}, {2.0 / 3, 2.0 / 3}, {0, 2.0 / 3},       {1, 0}};

} // namespace

// Corners turn the arrow, sides resize it.
Arrow2Item::Arrow2Item(QGraphicsItem* parent, int id, void*)
    : SpanItem(parent, new QGraphicsPathItem, 4, HoverEventItem::Rotation) {
    initIdentity(id);
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
    return child<QGraphicsPathItem>()->path();
}

void Arrow2Item::rebuild() {
    // The item's bounding rectangle is its child's.
    prepareGeometryChange();
    child<QGraphicsPathItem>()->setPath(arrowOutline(frame(), m_arrowMode));
    refreshHandgrips();
}

QPointF Arrow2Item::centroid() {
    return frame().center();
}

void Arrow2Item::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    const QPointF p = mapFromScene(event->scenePos());
    m_mline[0] = p - QPointF(ClickHalfSize, ClickHalfSize);
    m_mline[1] = p + QPointF(ClickHalfSize, ClickHalfSize);
    rebuild();
}

void Arrow2Item::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_mline[1] = mapFromScene(event->scenePos());
    rebuild();
}

bool Arrow2Item::isRotationGrip(int id) const {
    return RectHandgrips::isCorner(id);
}

void Arrow2Item::handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (isRotationGrip(id)) {
        m_rotation = QGraphicsItem::rotation();
        m_currentRotation = 0;
    }
    SpanItem::handlePressed(id, scenePos, modifiers);
}

// A turn leaves the points as they are.
void Arrow2Item::handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (!isRotationGrip(id)) {
        SpanItem::handleReleased(id, scenePos, modifiers);
        return;
    }
    m_rotation = QGraphicsItem::rotation();
    m_currentRotation = 0;
    ShapeItem::handleReleased(id, scenePos, modifiers);
}

void Arrow2Item::rotateAboutCentre(double degrees) {
    // The centre keeps its place in the scene; the item turns about its own origin.
    const QPointF c = frame().center();
    const QPointF before = mapToScene(c);
    setRotation(degrees);
    setPos(pos() + before - mapToScene(c));
}

void Arrow2Item::handleMoved(int id, const QPointF& p, Qt::KeyboardModifiers modifiers) {
    if (!isRotationGrip(id)) {
        SpanItem::handleMoved(id, p, modifiers);
        return;
    }
    const QPointF centre = mapToScene(frame().center());
    // Screen angles turn counter-clockwise, item rotations clockwise.
    m_currentRotation = HoverEventItem::applyRotation(handgrip(id), p, centre, m_refRotationPoint);
    rotateAboutCentre(m_rotation - m_currentRotation);
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

void Arrow2Item::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("rotation"), QString::number(QGraphicsItem::rotation(), 'f', 4));
    e.setAttribute(QStringLiteral("begin"), variantToString(m_mline[0]));
    e.setAttribute(QStringLiteral("end"), variantToString(m_mline[1]));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("form"), m_arrowMode);
}

void Arrow2Item::readGeometry(const XmlAttributes& e) {
    setRotation(readNumber(e, QStringLiteral("rotation")));
    m_rotation = QGraphicsItem::rotation();
    m_mline[0] = readPoint(e, QStringLiteral("begin"));
    m_mline[1] = readPoint(e, QStringLiteral("end"));
    setPos(readPoint(e, QStringLiteral("pos")));
    m_arrowMode = e.attribute(QStringLiteral("form")).toInt(nullptr, 10);
    rebuild();
}
