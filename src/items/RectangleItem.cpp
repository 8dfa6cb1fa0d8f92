#include "RectangleItem.h"

#include "AbstractScene.h"
#include "GeometryIntersections.h"
#include "HoverEventItem.h"
#include "ItemSnapshots.h"
#include "RectHandgrips.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QAction>
#include <QClipboard>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QGuiApplication>
#include <QMenu>

#include <cmath>

namespace {

// Creation order of the grips: the corners, which rotate, clockwise, then the sides.
constexpr int rectangleGrips[] = {HoverEventItem::TopLeft,     HoverEventItem::TopRight,
                                  HoverEventItem::BottomRight, HoverEventItem::BottomLeft,
                                  HoverEventItem::MiddleLeft,  HoverEventItem::MiddleRight,
                                  HoverEventItem::TopMiddle,   HoverEventItem::BottomMiddle};

// The rectangle position facing a grip position (0..7), which stays put while that grip is dragged.
int oppositePosition(int position) {
    return HoverEventItem::BottomRight - position;
}

} // namespace

RectangleItem::RectangleItem(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context, MesureKey, MesureDefault);
}

RectangleItem::RectangleItem(QGraphicsItem* parent)
    : ShapeItem(parent, new QGraphicsRectItem, 1, 2) {}

void RectangleItem::initialise(int id, void* context, const char* mesureKey, int mesureDefault) {
    const _AUTOPOINTPARAMS* params = initGenerated(id, context, mesureKey, mesureDefault);
    if (!params)
        return;
    copyCommonData(this, params->source);
    takeMesuresFrom(params->source);
    const QRectF r = params->points.size() >= 2 ? QRectF(params->points[0], params->points[1]) : params->rect;
    setRect(mapRectFromScene(r.normalized()));
    pointsFromRect();
    // Measures taken over from the source stay as they are.
    computeMesures(params->source ? context : nullptr);
}

QRectF RectangleItem::rect() const {
    return child<QGraphicsRectItem>()->rect();
}

QList<AbstractBaseItem::Handle> RectangleItem::handles() const {
    return RectHandgrips::frameHandles(rect(), HoverEventItem::Rotation, rectangleGrips);
}

// The child's rectangle, with the rotation centred on it.
void RectangleItem::setRect(const QRectF& r) {
    setChildRect<QGraphicsRectItem>(r, true);
    refreshHandgrips();
}

void RectangleItem::pointsFromRect() {
    const QRectF r = child<QGraphicsRectItem>()->rect();
    m_mline = {r.topLeft(), r.bottomRight()};
}

void RectangleItem::mousePress(QGraphicsSceneMouseEvent* event) {
    startDrag(event);
}

void RectangleItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    m_mline[1] = m_constrained ? constraint_square(m_mline[0], p) : p;
    setRect(QRectF(m_mline[0], m_mline[1]).normalized());
    computeMesures(nullptr);
}

bool RectangleItem::endEdition() {
    const QRectF r = QRectF(m_mline[0], m_mline[1]).normalized();
    m_mline = {r.topLeft(), r.bottomRight()};
    return r.width() > 0 && r.height() > 0;
}

bool RectangleItem::computeMesures(void* arg) {
    const QRectF r = child<QGraphicsRectItem>()->rect();
    if (r.width() == 0 || r.height() == 0)
        return false;
    setupCentroidHandgrip();
    if (!arg)
        fillMesures(r.width(), r.height());
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

void RectangleItem::fillMesures(double w, double h) {
    m_mesureP[Dist1] = m_mesureP[Rad1] = w;
    m_mesureP[Dist2] = m_mesureP[Rad2] = h;
    m_mesureP[Aera] = w * h;
    m_mesureP[Perim] = 2 * (w + h);
    calibrateMesures({Dist1, Dist2, Aera, Perim, Rad1, Rad2});
}

// Degrees anticlockwise on screen, the sense in which the rotation grips measure.
void RectangleItem::rotate(double angle) {
    m_rotation = angle;
    m_currentRotation = angle;
    setTransformOriginPoint(child<QGraphicsRectItem>()->rect().center());
    QGraphicsItem::setRotation(-angle);
    pointsFromRect();
}

void RectangleItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    const QRectF r = child<QGraphicsRectItem>()->rect();
    params.texts.clear();
    params.points = {mapToScene(r.topLeft()), mapToScene(r.topRight()), mapToScene(r.bottomRight()),
                     mapToScene(r.bottomLeft())};
    params.rect = child<QGraphicsRectItem>()->sceneBoundingRect();
    params.center = mapToScene(r.center());
}

// The grip's angle from the reference point is the rectangle's rotation: the reference is the
// pressed point turned back to where it was before any rotation.
void RectangleItem::initRotationReferencePoint(const QPointF& p) {
    const QPointF centre = mapToScene(child<QGraphicsRectItem>()->rect().center());
    AbstractBaseItem::initRotationReferencePoint(HoverEventItem::turnedAbout(p, centre, -m_rotation));
}

void RectangleItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    const HoverEventItem* grip = handgrip(id);
    if (grip && grip->getType() == HoverEventItem::Rotation)
        rotateByGrip(id, scenePos);
    else
        resizeByGrip(id, scenePos);
}

void RectangleItem::rotateByGrip(int id, const QPointF& p) {
    const QPointF centre = mapToScene(child<QGraphicsRectItem>()->rect().center());
    const double angle = HoverEventItem::applyRotation(handgrip(id), p, centre, m_refRotationPoint);
    if (!std::isfinite(angle))
        return;
    rotate(angle);
    placeCentroidHandgrip();
    emit mesureChanged(this);
}

void RectangleItem::resizeByGrip(int id, const QPointF& p) {
    const QRectF before = child<QGraphicsRectItem>()->rect();
    const QRectF after = HoverEventItem::applyTranslation(handgrip(id), before, p, this);
    // A side dragged across the facing one gives a negative size, kept as it is.
    if (after == before)
        return;
    // The rotation follows the new centre; shift the item so that the facing side stays put.
    const int anchor = oppositePosition(id);
    const QPointF fixed = mapToScene(HoverEventItem::positionOnRect(before, anchor));
    setRect(after);
    setPos(pos() + fixed - mapToScene(HoverEventItem::positionOnRect(after, anchor)));
    pointsFromRect();
    computeMesures(nullptr);
    emit mesureChanged(this);
}

QList<AbstractBaseItem::MenuEntry> RectangleItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},
            {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Distance1"), Dist1},
            {QT_TR_NOOP("Distance2"), Dist2},
            {QT_TR_NOOP("None"), -1}};
}

void RectangleItem::fillEditMenu(QMenu* menu) {
    const auto add = [&](const char* text, int data, bool checked) {
        return createMenuAction(menu, QIcon(), tr(text), checked, nullptr, data);
    };
    add(QT_TR_NOOP("none"), TransformNone, m_transformIndex == TransformNone);
    add(QT_TR_NOOP("toInCircle"), ToInCircle, m_transformIndex == ToInCircle);
    add(QT_TR_NOOP("toOutCircle"), ToOutCircle, m_transformIndex == ToOutCircle);
    menu->addSeparator();
    if (m_currentRotation != 0)
        return;
    const QRectF r = child<QGraphicsRectItem>()->rect();
    if (r.width() * r.height() <= MatchingAreaLimit) {
        add(QT_TR_NOOP("imageMatching"), ImageMatching, m_transformIndex == ImageMatching);
        add(QT_TR_NOOP("pixmapMatching"), PixmapMatching, m_transformIndex == PixmapMatching);
    }
    menu->addSeparator();
    const AbstractScene* host = hostScene();
    add(QT_TR_NOOP("snapImageSelection..."), SnapImage, false)->setEnabled(host && !host->image().isNull());
    add(QT_TR_NOOP("snapPixMapSelection..."), SnapPixmap, false);
    menu->addSeparator();
    add(QT_TR_NOOP("transfert2PixMap"), ToPixmap, false);
}

void RectangleItem::applyEditMenu(int data) {
    switch (data) {
    case SnapImage:
        snapImageSelection();
        break;
    case SnapPixmap:
        snapPixmapSelection();
        break;
    case ToPixmap:
        setTransformIndex(Transfer2Pixmap);
        break;
    default:
        setTransformIndex(data);
        break;
    }
}

void RectangleItem::snapImageSelection() {
    QImage image = sceneImageArea(hostScene(), mapRectToScene(child<QGraphicsRectItem>()->rect()));
    if (image.isNull())
        return;
    QGuiApplication::clipboard()->setImage(image);
    emit itemChanged(this, QStringLiteral("snapImageSelection"), &image);
}

void RectangleItem::snapPixmapSelection() {
    // The selection's own grips are not part of the picture.
    const bool gripsShown = isSelected();
    hideHandgrips();
    QImage image = renderedSceneArea(hostScene(), mapRectToScene(child<QGraphicsRectItem>()->rect()));
    if (gripsShown)
        showHandgrips();
    if (image.isNull())
        return;
    QGuiApplication::clipboard()->setPixmap(QPixmap::fromImage(image));
    emit itemChanged(this, QStringLiteral("snapPixMapSelection"), &image);
}

void RectangleItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("rotation"), QString::number(m_rotation, 'f', 1));
    e.setAttribute(QStringLiteral("rect"), variantToString(child<QGraphicsRectItem>()->rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
}

void RectangleItem::readGeometry(const XmlAttributes& e) {
    setRect(readRect(e, QStringLiteral("rect")));
    rotate(readNumber(e, QStringLiteral("rotation")));
    setPos(readPoint(e, QStringLiteral("pos")));
    pointsFromRect();
    placeCentroidHandgrip();
    commonUpdateText();
}
