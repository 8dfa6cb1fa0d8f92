#include "CircleItem.h"

#include "AbstractScene.h"
#include "EllipseOutlineItem.h"
#include "HoverEventItem.h"
#include "ItemSnapshots.h"
#include "RectHandgrips.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsEllipseItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;

} // namespace

CircleItem::CircleItem(QGraphicsItem* parent, int id, void* context)
    : ShapeItem(parent, new EllipseOutlineItem, 1, 2) {
    initGenerated(id, context, MesureKey, MesureDefault, [this](const _AUTOPOINTPARAMS& params) {
        copyCommonData(this, params.source);
        m_centroidPoint = mapFromScene(params.center);
        placeCircle(params.radius);
        computeMesures(nullptr);
    });
}

QRectF CircleItem::rect() const {
    return child<QGraphicsEllipseItem>()->rect();
}

// The label keeps its own colour: only the outline takes the pen.
void CircleItem::setPen(const QPen& pen) {
    m_pen = pen;
    setShapePen(pen);
}

QList<AbstractBaseItem::Handle> CircleItem::handles() const {
    return RectHandgrips::cornerHandles(rect(), HoverEventItem::Move);
}

void CircleItem::setSquare(const QRectF& square) {
    setChildRect<QGraphicsEllipseItem>(square);
    refreshHandgrips();
}

void CircleItem::placeCircle(double radius) {
    m_radius1 = m_radius2 = radius;
    const QPointF corner(radius, radius);
    m_mline = {m_centroidPoint - corner, m_centroidPoint + corner};
    setSquare(QRectF(m_mline[0], m_mline[1]).normalized());
}

void CircleItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_centroidPoint = mapFromScene(event->scenePos());
    m_mline[0] = m_centroidPoint;
    m_creationStarted = true;
}

void CircleItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF d = mapFromScene(event->scenePos()) - m_centroidPoint;
    placeCircle(std::sqrt(d.x() * d.x() + d.y() * d.y()));
    computeMesures(nullptr);
}

AbstractBaseItem::typModeEdition CircleItem::mouseRelease(QGraphicsSceneMouseEvent* event) {
    return AbstractBaseItem::mouseRelease(event);
}

bool CircleItem::endEdition() {
    const QPointF span = m_mline[1] - m_mline[0];
    return span.x() > 0 && span.y() > 0 && m_mesureP[Rad1] >= 8.0;
}

bool CircleItem::computeMesures(void*) {
    setupCentroidHandgrip();
    if (m_radius1 == 0)
        return false;
    const double r = m_radius1;
    const double r2 = m_radius2;
    m_mesureP[Dist2] = 2 * r2;
    m_mesureP[Aera] = Pi * r * r;
    m_mesureP[Perim] = TwoPi * r;
    m_mesureP[Rad1] = r;
    m_mesureP[Rad2] = r2;
    m_mesureP[Diam] = 2 * r;
    calibrateMesures({Dist2, Aera, Perim, Rad1, Rad2, Diam});
    m_centroidPoint = centroid();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

void CircleItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const QRectF r =
        HoverEventItem::applyTranslation(handgrip(id), child<QGraphicsEllipseItem>()->rect(), scenePos, this);
    // The drag implies a square anchored at the facing corner; only its side counts, since the
    // centre stays where it is. A square collapsed to nothing leaves a circle of radius 0.
    const int side = int(std::min(r.width(), r.height()));
    placeCircle(std::abs(side) * 0.5);
    computeMesures(nullptr);
    if (HoverEventItem* grip = handgrip(id))
        grip->setTooltip(formatTextMesure(Rad1));
    emit mesureChanged(this);
}

void CircleItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    const QRectF r = child<QGraphicsEllipseItem>()->rect();
    params.center = mapToScene(r.center());
    params.rect = mapRectToScene(r);
}

// "Distance" is the diameter.
QList<AbstractBaseItem::MenuEntry> CircleItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},
            {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Radius"), Rad1},
            {QT_TR_NOOP("Distance"), Diam}};
}

void CircleItem::fillEditMenu(QMenu* menu) {
    createMenuAction(menu, QIcon(), tr("none"), m_transformIndex == NoTransform, nullptr, NoTransform);
    const AbstractScene* host = hostScene();
    createMenuAction(menu, QIcon(), tr("extract"), m_transformIndex == Extract, nullptr, Extract)
        ->setEnabled(host && !host->image().isNull());
}

void CircleItem::applyEditMenu(int data) {
    if (data == Extract)
        extract();
    else
        setTransformIndex(data);
}

void CircleItem::extract() {
    QImage image = sceneImageEllipse(hostScene(), mapRectToScene(child<QGraphicsEllipseItem>()->rect()));
    if (image.isNull())
        return;
    emit itemChanged(this, QStringLiteral("extract"), &image);
    setTransformIndex(Extract);
}

void CircleItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("radius1"), QString::number(m_radius1, 'f', 2));
    e.setAttribute(QStringLiteral("rotation"), QString::number(m_rotation, 'f', 1));
    e.setAttribute(QStringLiteral("rect"), variantToString(child<QGraphicsEllipseItem>()->rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("centroid"), variantToString(m_centroidPoint));
}

// The measures come back from their attributes, not from the geometry; rad2 stays as it was until
// the next edit.
void CircleItem::readGeometry(const XmlAttributes& e) {
    const QRectF r = readRect(e, QStringLiteral("rect"));
    m_mline = {r.topLeft(), r.bottomRight()};
    m_rotation = readNumber(e, QStringLiteral("rotation"));
    m_radius1 = readNumber(e, QStringLiteral("radius1"));
    m_centroidPoint = readPoint(e, QStringLiteral("centroid"));
    setPos(readPoint(e, QStringLiteral("pos")));
    setSquare(r);
    rotate(m_rotation);
    placeCentroidHandgrip();
    commonUpdateText();
}
