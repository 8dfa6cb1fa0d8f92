#include "ArrowItem.h"

#include "HoverEventItem.h"
#include "VariantText.h"

#include <QDomElement>
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;

enum ScaleChoice { NaturalScale = 0, PenWidthScale = 1 };

// Rotation (degrees) that turns the +x axis onto the direction from p0 to p1.
double arrowRotation(const QPointF& p0, const QPointF& p1) {
    const double dx = p1.x() - p0.x();
    const double dy = p1.y() - p0.y();
    const double len = std::sqrt(dx * dx + dy * dy);
    if (len == 0)
        return 0;
    const double a = std::acos(dx / len) * 180 / Pi;
    return p1.y() <= p0.y() ? -a : -(360 - a);
}

} // namespace

ArrowItem::ArrowItem(QGraphicsItem* parent, int id, void* context)
    : AbstractBaseItem(parent, id, context) {
    m_subType = 4;
    initIdentity(id);

    m_pathChild = new QGraphicsPathItem(this);
    m_mline << QPointF(0, 0) << QPointF(0, 0);
    for (int i = 0; i < 2; ++i)
        m_handgripItems.append(new HoverEventItem(this, this, i, HoverEventItem::Move));
    updateHandgrips();
    setPen(m_pen);
}

AbstractBaseItem* ArrowItem::clone(int id) {
    auto* item = new ArrowItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

QPainterPath ArrowItem::arrowPath(double length, double scale) {
    double k = scale;
    const double threshold = 20 * k + 12;
    // Short arrows get a smaller head.
    if (length < threshold)
        k = length * (k - 0.15) / threshold + 0.15;

    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addPolygon(QPolygonF() << QPointF(0, 0) << QPointF(-20 * k, 10 * k) << QPointF(-17 * k, 0)
                                << QPointF(-20 * k, -10 * k));
    path.closeSubpath();

    const QPointF m((2 * (-17 * k) + 1.5 * (-20 * k)) / 3.5, (1.5 * 10 * k) / 3.5);
    path.moveTo(m);
    path.quadTo(QPointF(-length / 2, 1.2), QPointF(-(length + 1), 0));
    path.quadTo(QPointF(-length / 2, -1.2), QPointF(m.x(), -m.y()));
    path.lineTo(-17 * k, 0);
    path.lineTo(m);
    path.closeSubpath();
    return path;
}

QPainterPath ArrowItem::path() const {
    return m_pathChild->path();
}

void ArrowItem::rebuild() {
    const QPointF p0 = m_mline[0];
    const QPointF p1 = m_mline[1];
    setPos(p1);
    setRotation(arrowRotation(p0, p1));
    // The item's bounding rectangle is its child's.
    prepareGeometryChange();
    m_pathChild->setPath(arrowPath(QLineF(p0, p1).length(), m_arrowScale));
    m_handgripItems[0]->setPos(mapFromScene(p0));
    m_handgripItems[1]->setPos(mapFromScene(p1));
}

void ArrowItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    m_pathChild->setPen(pen);
    m_pathChild->setBrush(QBrush(pen.color(), Qt::SolidPattern));
}

void ArrowItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_mline[0] = event->scenePos();
    m_handgripItems[0]->setPos(mapFromScene(m_mline[0]));
    m_creationStarted = true;
}

void ArrowItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_mline[1] = event->scenePos();
    rebuild();
}

AbstractBaseItem::typModeEdition ArrowItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
}

bool ArrowItem::endEdition() {
    const QPointF d = m_mline[1] - m_mline[0];
    return d.manhattanLength() >= 6.0 && std::sqrt(d.x() * d.x() + d.y() * d.y()) >= 8.0;
}

void ArrowItem::pressPoint(const QPointF&) {
    emit mesureChangedSTART(this);
}

void ArrowItem::releasePoint(const QPointF&) {
    emit mesureChangedEND(this);
}

void ArrowItem::updatePoint(const QPointF& p) {
    HoverEventItem* grip = senderHandgrip();
    const int index = m_handgripItems.indexOf(grip);
    if (index < 0)
        return;
    const QList<QPointF> positions = handgripScenePositions();
    m_mline[0] = positions[0];
    m_mline[1] = positions[1];
    m_mline[index] = p;
    rebuild();
    emit mesureChanged(this);
}

void ArrowItem::fillContextMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("1:1"), m_arrowScale == 1.0, nullptr, NaturalScale);
    createMenuAction(menu, QIcon(), tr("x:x"), m_arrowScale == m_pen.widthF(), nullptr, PenWidthScale);
}

void ArrowItem::applyContextMenu(int data) {
    if (data == NaturalScale)
        m_arrowScale = 1.0;
    else if (data == PenWidthScale)
        m_arrowScale = m_pen.widthF();
    else
        return;
    if (!m_mline[0].isNull() || !m_mline[1].isNull())
        rebuild();
}

void ArrowItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) {
    edit();
}

QRectF ArrowItem::boundingRect() const {
    return m_pathChild->boundingRect();
}

QPainterPath ArrowItem::shape() const {
    return m_pathChild->shape();
}

bool ArrowItem::toXml(QDomElement& e) const {
    commonWriteXML(e);
    e.setAttribute(QStringLiteral("start"), variantToString(m_handgripItems[0]->scenePos()));
    e.setAttribute(QStringLiteral("end"), variantToString(m_handgripItems[1]->scenePos()));
    return true;
}

bool ArrowItem::fromXml(const QDomElement& e) {
    m_creationStarted = true;
    commonReadXML(e);
    m_mline[0] = stringToVariant(e.attribute(QStringLiteral("start")), QMetaType::QPointF).toPointF();
    m_mline[1] = stringToVariant(e.attribute(QStringLiteral("end")), QMetaType::QPointF).toPointF();
    setPen(m_pen);
    setFont(m_font);
    rebuild();
    return true;
}
