#include "CircleItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "ItemSnapshots.h"
#include "VariantText.h"

#include <QDomElement>
#include <QGraphicsEllipseItem>
#include <QGraphicsSceneMouseEvent>
#include <QMenu>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;

constexpr int cornerGrips[] = {HoverEventItem::TopLeft, HoverEventItem::TopRight, HoverEventItem::BottomLeft,
                               HoverEventItem::BottomRight};

} // namespace

CircleItem::CircleItem(QGraphicsItem* parent, int id, void* context)
    : AbstractBaseItem(parent, id, context)
    , m_ellipseChild(new QGraphicsEllipseItem(this)) {
    m_subType = 1;
    initIdentity(id);
    m_mline << QPointF() << QPointF();
    for (int position : cornerGrips)
        m_handgripItems.append(new HoverEventItem(this, m_ellipseChild, position, HoverEventItem::Move));
    updateHandgrips();
    m_mesureIndex = getCommonParams(QStringLiteral("circle_mesureIndex"), int(Aera)).toInt();
    if (!context)
        return;

    const auto* params = static_cast<const _AUTOPOINTPARAMS*>(context);
    m_creationStarted = true;
    m_generated = true;
    if (params->source)
        copyCommonData(this, params->source);
    m_centroidPoint = mapFromScene(params->center);
    placeCircle(params->radius);
    computeMesures(nullptr);
}

AbstractBaseItem* CircleItem::clone(int id) {
    auto* item = new CircleItem(nullptr, id, nullptr);
    copyDataTo(item);
    return item;
}

QRectF CircleItem::rect() const {
    return m_ellipseChild->rect();
}

QRectF CircleItem::boundingRect() const {
    return m_ellipseChild->rect();
}

void CircleItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    commonPaintCentroidText(painter);
}

QPointF CircleItem::centroid() {
    return childCentre(m_ellipseChild);
}

// The label keeps its own colour: only the outline takes the pen.
void CircleItem::setPen(const QPen& pen) {
    m_pen = pen;
    m_ellipseChild->setPen(pen);
}

void CircleItem::setBrush(const QBrush& brush) {
    AbstractBaseItem::setBrush(brush);
    m_ellipseChild->setBrush(brush);
}

void CircleItem::placeCircle(double radius) {
    m_radius1 = m_radius2 = radius;
    const QPointF corner(radius, radius);
    const QRectF square = QRectF(m_centroidPoint - corner, m_centroidPoint + corner).normalized();
    prepareGeometryChange();
    m_ellipseChild->setRect(square);
    syncHandgripsToRect(square);
    m_mline = {mapToScene(m_centroidPoint - corner), mapToScene(m_centroidPoint + corner)};
}

void CircleItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_centroidPoint = mapFromScene(event->scenePos());
    m_mline[0] = event->scenePos();
    m_creationStarted = true;
}

void CircleItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF d = event->scenePos() - mapToScene(m_centroidPoint);
    placeCircle(std::sqrt(d.x() * d.x() + d.y() * d.y()));
    computeMesures(nullptr);
}

AbstractBaseItem::typModeEdition CircleItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    return EditionComplete;
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
    const double k = m_calibration.factor;
    m_mesureP[Dist2] = 2 * r2;
    m_mesureP[Aera] = Pi * r * r;
    m_mesureP[Perim] = TwoPi * r;
    m_mesureP[Rad1] = r;
    m_mesureP[Rad2] = r2;
    m_mesureP[Diam] = 2 * r;
    // The calibrated area comes from the calibrated radius: it scales with the square of k.
    m_mesure[Dist2] = 2 * r2 * k;
    m_mesure[Aera] = Pi * (r * k) * (r * k);
    m_mesure[Perim] = TwoPi * (r * k);
    m_mesure[Rad1] = r * k;
    m_mesure[Rad2] = r2 * k;
    m_mesure[Diam] = 2 * r * k;
    m_centroidPoint = centroid();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

void CircleItem::updatePoint(const QPointF& p) {
    HoverEventItem* grip = senderHandgrip();
    if (!grip)
        return;
    const QRectF r = HoverEventItem::applyTranslation(grip, m_ellipseChild->rect(), p, m_ellipseChild);
    // The drag implies a square anchored at the facing corner; only its side counts, since the
    // centre stays where it is.
    const int side = int(std::min(r.width(), r.height()));
    if (side == 0)
        return;
    placeCircle(std::abs(side) * 0.5);
    computeMesures(nullptr);
    grip->setTooltip(formatTextMesure(Rad1));
    emit mesureChanged(this);
}

void CircleItem::pressPoint(const QPointF&) {
    emit mesureChangedSTART(this);
}

void CircleItem::releasePoint(const QPointF&) {
    emit mesureChangedEND(this);
}

void CircleItem::setTransformIndex(int index) {
    m_transformIndex = index;
    if (index != 0)
        emit transformIndex(this, index, false);
}

void CircleItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    const QRectF r = m_ellipseChild->rect();
    params.center = mapToScene(r.center());
    params.rect = mapRectToScene(r);
}

void CircleItem::fillContextMenu(QMenu* menu) {
    static const struct {
        const char* text;
        int data;
    } entries[] = {
        {QT_TR_NOOP("Area"), Aera},
        {QT_TR_NOOP("Perimeter"), Perim},
        {QT_TR_NOOP("Radius"), Rad1},
        // The diameter.
        {QT_TR_NOOP("Distance"), Diam},
    };
    for (const auto& entry : entries)
        createMenuAction(menu, QIcon(), tr(entry.text), m_mesureIndex == entry.data, nullptr, entry.data);
}

void CircleItem::applyContextMenu(int data) {
    chooseMesure(data, QStringLiteral("circle_mesureIndex"));
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

void CircleItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent*) {
    edit();
}

void CircleItem::extract() {
    QImage image = sceneImageEllipse(hostScene(), mapRectToScene(m_ellipseChild->rect()));
    if (image.isNull())
        return;
    emit itemChanged(this, QStringLiteral("extract"), &image);
    setTransformIndex(Extract);
}

bool CircleItem::toXml(QDomElement& e) const {
    commonWriteXML(e);
    commonMesuresWriteXML(e);
    e.setAttribute(QStringLiteral("radius1"), QString::number(m_radius1, 'f', 2));
    e.setAttribute(QStringLiteral("rotation"), QString::number(m_rotation, 'f', 1));
    e.setAttribute(QStringLiteral("rect"), variantToString(m_ellipseChild->rect()));
    e.setAttribute(QStringLiteral("pos"), variantToString(pos()));
    e.setAttribute(QStringLiteral("centroid"), variantToString(m_centroidPoint));
    return true;
}

// The measures come back from their attributes, not from the geometry; rad2 stays as it was until
// the next edit.
bool CircleItem::fromXml(const QDomElement& e) {
    m_creationStarted = true;
    commonReadXML(e);
    commonMesuresReadXML(e);
    const QRectF r = stringToVariant(e.attribute(QStringLiteral("rect")), QMetaType::QRectF).toRectF();
    const double angle = e.attribute(QStringLiteral("rotation")).toDouble();
    m_rotation = std::isfinite(angle) ? angle : 0.0;
    const double radius = e.attribute(QStringLiteral("radius1")).toDouble();
    m_radius1 = std::isfinite(radius) ? radius : 0.0;
    m_centroidPoint = stringToVariant(e.attribute(QStringLiteral("centroid")), QMetaType::QPointF).toPointF();
    setPos(stringToVariant(e.attribute(QStringLiteral("pos")), QMetaType::QPointF).toPointF());
    m_mline = {mapToScene(r.topLeft()), mapToScene(r.bottomRight())};
    setPen(m_pen);
    setBrush(QBrush());
    setFont(m_font);
    prepareGeometryChange();
    m_ellipseChild->setRect(r);
    syncHandgripsToRect(r);
    rotate(m_rotation);
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}
