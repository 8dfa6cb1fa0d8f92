#include "ArrowItem.h"

#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
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

ArrowItem::ArrowItem(QGraphicsItem* parent, int id, void*)
    : ShapeItem(parent, new QGraphicsPathItem, 4, 2) {
    initIdentity(id);
    setPen(m_pen);
}

QList<AbstractBaseItem::Handle> ArrowItem::handles() const {
    return {{0, HoverEventItem::Move, m_mline[0]}, {1, HoverEventItem::Move, m_mline[1]}};
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
    return child<QGraphicsPathItem>()->path();
}

void ArrowItem::rebuild(const QPointF& tail, const QPointF& tip) {
    setPos(tip);
    setRotation(arrowRotation(tail, tip));
    m_mline = fromScene({tail, tip});
    // The item's bounding rectangle is its child's.
    prepareGeometryChange();
    child<QGraphicsPathItem>()->setPath(arrowPath(QLineF(tail, tip).length(), m_arrowScale));
    refreshHandgrips();
}

void ArrowItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    child<QGraphicsPathItem>()->setPen(pen);
    child<QGraphicsPathItem>()->setBrush(QBrush(pen.color(), Qt::SolidPattern));
}

void ArrowItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_mline[0] = mapFromScene(event->scenePos());
    m_creationStarted = true;
}

void ArrowItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    rebuild(mapToScene(m_mline[0]), event->scenePos());
}

bool ArrowItem::endEdition() {
    const QPointF d = mapToScene(m_mline[1]) - mapToScene(m_mline[0]);
    return d.manhattanLength() >= 6.0 && std::sqrt(d.x() * d.x() + d.y() * d.y()) >= 8.0;
}

void ArrowItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    if (id < 0 || id > 1)
        return;
    QList<QPointF> points = mline();
    points[id] = scenePos;
    rebuild(points[0], points[1]);
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
    // An arrow not drawn yet keeps its empty outline.
    const QList<QPointF> points = mline();
    if (!points[0].isNull() || !points[1].isNull())
        rebuild(points[0], points[1]);
}

void ArrowItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("start"), variantToString(mapToScene(m_mline[0])));
    e.setAttribute(QStringLiteral("end"), variantToString(mapToScene(m_mline[1])));
}

void ArrowItem::readGeometry(const XmlAttributes& e) {
    rebuild(readPoint(e, QStringLiteral("start")), readPoint(e, QStringLiteral("end")));
}
