#include "RectangleItem.h"

#include "AbstractScene.h"
#include "GeometryIntersections.h"
#include "HoverEventItem.h"
#include "ItemSnapshots.h"
#include "VariantText.h"

#include <QAction>
#include <QClipboard>
#include <QDomElement>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QGuiApplication>
#include <QMenu>

#include <cmath>

namespace {

// Creation order of the grips: the corners rotate, the sides resize.
struct GripSpec {
    int position;
    int kind;
};
constexpr GripSpec rectangleGrips[] = {
    {HoverEventItem::TopLeft, HoverEventItem::Rotation},
    {HoverEventItem::TopRight, HoverEventItem::Rotation},
    {HoverEventItem::BottomRight, HoverEventItem::Rotation},
    {HoverEventItem::BottomLeft, HoverEventItem::Rotation},
    {HoverEventItem::MiddleLeft, HoverEventItem::ResizeHorizontal},
    {HoverEventItem::MiddleRight, HoverEventItem::ResizeHorizontal},
    {HoverEventItem::TopMiddle, HoverEventItem::ResizeVertical},
    {HoverEventItem::BottomMiddle, HoverEventItem::ResizeVertical},
};

// The rectangle position facing a grip position (0..7), which stays put while that grip is dragged.
int oppositePosition(int position) {
    return HoverEventItem::BottomRight - position;
}

} // namespace

RectangleItem::RectangleItem(QGraphicsItem* parent, int id, void* context)
    : RectangleItem(parent) {
    initialise(id, context);
}

RectangleItem::RectangleItem(QGraphicsItem* parent)
    : AbstractBaseItem(parent, 0, nullptr)
    , m_rectChild(new QGraphicsRectItem(this)) {
    m_subType = 1;
    m_mline << QPointF() << QPointF();
    for (const GripSpec& grip : rectangleGrips)
        m_handgripItems.append(new HoverEventItem(this, m_rectChild, grip.position, grip.kind));
    updateHandgrips();
}

void RectangleItem::initialise(int id, void* context) {
    initIdentity(id);
    const MesureChoice choice = mesureChoice();
    m_mesureIndex = getCommonParams(QString::fromLatin1(choice.commonKey), choice.defaultIndex).toInt();
    if (!context)
        return;

    const auto* params = static_cast<const _AUTOPOINTPARAMS*>(context);
    m_creationStarted = true;
    m_generated = true;
    if (params->source) {
        copyCommonData(this, params->source);
        for (int i = 0; i < MesuresCount; ++i) {
            m_mesure[i] = params->source->accessmesure(unsigned(i));
            m_mesureP[i] = params->source->accessmesureP(unsigned(i));
        }
    }
    const QRectF r = params->points.size() >= 2 ? QRectF(params->points[0], params->points[1]) : params->rect;
    setRect(mapRectFromScene(r.normalized()));
    pointsFromRect();
    // Measures taken over from the source stay as they are.
    computeMesures(params->source ? context : nullptr);
}

AbstractBaseItem* RectangleItem::clone(int id) {
    auto* item = new RectangleItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

QRectF RectangleItem::rect() const {
    return m_rectChild->rect();
}

QRectF RectangleItem::boundingRect() const {
    return m_rectChild->rect();
}

void RectangleItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    commonPaintCentroidText(painter);
}

QPointF RectangleItem::centroid() {
    return childCentre(m_rectChild);
}

void RectangleItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    m_rectChild->setPen(pen);
}

void RectangleItem::setBrush(const QBrush& brush) {
    AbstractBaseItem::setBrush(brush);
    m_rectChild->setBrush(brush);
}

void RectangleItem::setLockstate(const bool& state) {
    m_locked = state;
    for (HoverEventItem* grip : std::as_const(m_handgripItems))
        grip->setLockstate(state);
}

// The child's rectangle, with the rotation centred on it.
void RectangleItem::setRect(const QRectF& r) {
    prepareGeometryChange();
    m_rectChild->setRect(r);
    setTransformOriginPoint(r.center());
    syncHandgripsToRect(r);
}

void RectangleItem::pointsFromRect() {
    const QRectF r = m_rectChild->rect();
    m_mline = {mapToScene(r.topLeft()), mapToScene(r.bottomRight())};
}

void RectangleItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    // Both corners start at the press: a click without a drag spans nothing.
    m_mline = {event->scenePos(), event->scenePos()};
    m_creationStarted = true;
}

void RectangleItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    m_mline[1] = m_constrained ? constraint_square(m_mline[0], event->scenePos()) : event->scenePos();
    setRect(mapRectFromScene(QRectF(m_mline[0], m_mline[1]).normalized()));
    computeMesures(nullptr);
}

AbstractBaseItem::typModeEdition RectangleItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
}

bool RectangleItem::endEdition() {
    const QRectF r = QRectF(m_mline[0], m_mline[1]).normalized();
    m_mline = {r.topLeft(), r.bottomRight()};
    return r.width() > 0 && r.height() > 0;
}

bool RectangleItem::computeMesures(void* arg) {
    const QRectF r = m_rectChild->rect();
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
    const double c = m_calibration.factor;
    m_mesureP[Dist1] = m_mesureP[Rad1] = w;
    m_mesureP[Dist2] = m_mesureP[Rad2] = h;
    m_mesureP[Aera] = w * h;
    m_mesureP[Perim] = 2 * (w + h);
    m_mesure[Dist1] = m_mesure[Rad1] = c * w;
    m_mesure[Dist2] = m_mesure[Rad2] = c * h;
    m_mesure[Aera] = (c * w) * (c * h);
    m_mesure[Perim] = 2 * (c * w + c * h);
}

void RectangleItem::setTransformIndex(int index) {
    m_transformIndex = index;
    if (index != 0)
        emit transformIndex(this, index, false);
}

void RectangleItem::rotate(double angle) {
    m_rotation = angle;
    m_currentRotation = angle;
    setTransformOriginPoint(m_rectChild->rect().center());
    QGraphicsItem::setRotation(angle);
    pointsFromRect();
}

void RectangleItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    const QRectF r = m_rectChild->rect();
    params.texts.clear();
    params.points = {mapToScene(r.topLeft()), mapToScene(r.topRight()), mapToScene(r.bottomRight()),
                     mapToScene(r.bottomLeft())};
    params.rect = m_rectChild->sceneBoundingRect();
    params.center = mapToScene(r.center());
}

void RectangleItem::pressPoint(const QPointF&) {
    emit mesureChangedSTART(this);
}

void RectangleItem::releasePoint(const QPointF&) {
    emit mesureChangedEND(this);
}

void RectangleItem::initRotationReferencePoint(const QPointF& p) {
    AbstractBaseItem::initRotationReferencePoint(p);
    m_stepStartRotation = m_rotation;
    m_relativeRotation = 0;
    emit mesureChangedSTART(this);
}

void RectangleItem::validRotationReferencePoint(const QPointF&) {
    emit mesureChangedEND(this);
}

void RectangleItem::updatePoint(const QPointF& p) {
    HoverEventItem* grip = senderHandgrip();
    if (!grip)
        return;
    if (grip->getType() == HoverEventItem::Rotation)
        rotateByGrip(grip, p);
    else
        resizeByGrip(grip, p);
}

void RectangleItem::rotateByGrip(HoverEventItem* grip, const QPointF& p) {
    const QPointF centre = mapToScene(m_rectChild->rect().center());
    const double delta = HoverEventItem::applyRotation(grip, p, centre, m_refRotationPoint);
    if (!std::isfinite(delta))
        return;
    // Grip angles grow counter-clockwise on screen, item rotations clockwise.
    m_relativeRotation = -delta;
    rotate(m_stepStartRotation + m_relativeRotation);
    placeCentroidHandgrip();
    emit mesureChanged(this);
}

void RectangleItem::resizeByGrip(HoverEventItem* grip, const QPointF& p) {
    const QRectF before = m_rectChild->rect();
    const QRectF after = HoverEventItem::applyTranslation(grip, before, p, m_rectChild);
    // A side is not dragged across the facing one: the rectangle keeps its last valid size.
    if (after == before || !(after.width() > 0 && after.height() > 0))
        return;
    // The rotation follows the new centre; shift the item so that the facing side stays put.
    const int anchor = oppositePosition(grip->getId());
    const QPointF fixed = mapToScene(HoverEventItem::positionOnRect(before, anchor));
    setRect(after);
    setPos(pos() + fixed - mapToScene(HoverEventItem::positionOnRect(after, anchor)));
    pointsFromRect();
    computeMesures(nullptr);
    emit mesureChanged(this);
}

QList<RectangleItem::MenuEntry> RectangleItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},
            {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Distance1"), Dist1},
            {QT_TR_NOOP("Distance2"), Dist2},
            {QT_TR_NOOP("None"), -1}};
}

RectangleItem::MesureChoice RectangleItem::mesureChoice() const {
    return {"rectangle_mesureIndex", Perim};
}

void RectangleItem::fillContextMenu(QMenu* menu) {
    for (const MenuEntry& entry : mesureMenu())
        createMenuAction(menu, QIcon(), tr(entry.text), m_mesureIndex == entry.data, nullptr, entry.data);
}

void RectangleItem::applyContextMenu(int data) {
    chooseMesure(data, QString::fromLatin1(mesureChoice().commonKey));
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
    const QRectF r = m_rectChild->rect();
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

void RectangleItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) {
    edit();
}

void RectangleItem::snapImageSelection() {
    QImage image = sceneImageArea(hostScene(), mapRectToScene(m_rectChild->rect()));
    if (image.isNull())
        return;
    QGuiApplication::clipboard()->setImage(image);
    emit itemChanged(this, QStringLiteral("snapImageSelection"), &image);
}

void RectangleItem::snapPixmapSelection() {
    // The selection's own grips are not part of the picture.
    const bool gripsShown = isSelected();
    hideHandgrips();
    QImage image = renderedSceneArea(hostScene(), mapRectToScene(m_rectChild->rect()));
    if (gripsShown)
        showHandgrips();
    if (image.isNull())
        return;
    QGuiApplication::clipboard()->setPixmap(QPixmap::fromImage(image));
    emit itemChanged(this, QStringLiteral("snapPixMapSelection"), &image);
}

bool RectangleItem::toXml(QDomElement& e) const {
    commonWriteXML(e);
    commonMesuresWriteXML(e);
    e.setAttribute(QStringLiteral("rotation"), QString::number(m_rotation, 'f', 1));
    e.setAttribute(QStringLiteral("rect"), variantToString(m_rectChild->rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    return true;
}

bool RectangleItem::fromXml(const QDomElement& e) {
    m_creationStarted = true;
    commonReadXML(e);
    commonMesuresReadXML(e);
    setPen(m_pen);
    setBrush(QBrush());
    setFont(m_font);
    setRect(stringToVariant(e.attribute(QStringLiteral("rect")), QMetaType::QRectF).toRectF());
    const double angle = e.attribute(QStringLiteral("rotation")).toDouble();
    rotate(std::isfinite(angle) ? angle : 0.0);
    setPos(stringToVariant(e.attribute(QStringLiteral("pos")), QMetaType::QPointF).toPointF());
    pointsFromRect();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}
