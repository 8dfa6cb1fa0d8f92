#include "EllipseItem.h"

#include "GeometryEllipseMetrics.h"
#include "GeometryIntersections.h"
#include "EllipseOutlineItem.h"
#include "HoverEventItem.h"
#include "RectHandgrips.h"
#include "RoundItem.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsEllipseItem>
#include <QGraphicsSceneMouseEvent>

#include <algorithm>
#include <cmath>

namespace {

// Shorter axes are refused by the grips: they would flatten the ellipse into a segment.
constexpr double MinSemiAxis = 0.5;

// The ends of the axes resize the ellipse; the top-right corner turns it.
constexpr int ellipseGrips[] = {HoverEventItem::MiddleRight, HoverEventItem::TopMiddle,
                                HoverEventItem::TopRight, HoverEventItem::MiddleLeft,
                                HoverEventItem::BottomMiddle};

bool sceneRect(const QRectF& r) {
    return isSceneNumber(r.x()) && isSceneNumber(r.y()) && isSceneNumber(r.width()) &&
           isSceneNumber(r.height()) && r.width() > 0 && r.height() > 0;
}

// The rectangle a record gives: its own, two corners, or the square round a circle.
QRectF recordRect(const _AUTOPOINTPARAMS& params) {
    if (params.rect.isValid())
        return params.rect;
    if (params.points.size() >= 2)
        return QRectF(params.points[0], params.points[1]).normalized();
    const QPointF corner(params.radius, params.radius);
    return params.radius > 0 ? QRectF(params.center - corner, params.center + corner) : QRectF();
}

} // namespace

EllipseItem::EllipseItem(QGraphicsItem* parent, int id, void* context)
    : ShapeItem(parent, new EllipseOutlineItem, 1, 2) {
    initGenerated(id, context, MesureKey, MesureDefault, [this](const _AUTOPOINTPARAMS& params) {
        const QRectF r = recordRect(params);
        m_refusedRecord = !sceneRect(r);
        if (m_refusedRecord)
            return;
        copyCommonData(this, params.source);
        setRect(mapRectFromScene(r));
        computeMesures(nullptr);
    });
}

QRectF EllipseItem::rect() const {
    return child<QGraphicsEllipseItem>()->rect();
}

// The rotation turns about the centre.
void EllipseItem::setRect(const QRectF& r) {
    setChildRect<QGraphicsEllipseItem>(r, true);
    m_mline = {r.topLeft(), r.bottomRight()};
    refreshHandgrips();
}

void EllipseItem::mousePress(QGraphicsSceneMouseEvent* event) {
    startDrag(event);
}

// The press is the anchor, whichever way the drag goes.
void EllipseItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF anchor = m_mline[0];
    const QPointF p = mapFromScene(event->scenePos());
    const QPointF corner = m_constrained ? constraint_square(anchor, p) : p;
    setRect(QRectF(anchor, corner).normalized());
    m_mline = {anchor, corner};
    computeMesures(nullptr);
}

bool EllipseItem::endEdition() {
    setRect(QRectF(m_mline[0], m_mline[1]).normalized());
    if (!(rect().width() > 0 && rect().height() > 0))
        return false;
    emit mesureChangedEND(this);
    return true;
}

void EllipseItem::rotate(double angle) {
    m_rotation = m_currentRotation = turnDegrees(angle);
    setTransformOriginPoint(rect().center());
    QGraphicsItem::setRotation(-m_rotation);
    computeMesures(nullptr);
}

bool EllipseItem::computeMesures(void*) {
    setupCentroidHandgrip();
    const QRectF r = rect();
    if (!(r.width() > 0 && r.height() > 0))
        return false;
    const double a = std::max(r.width(), r.height()) / 2;
    const double b = std::min(r.width(), r.height()) / 2;
    m_radius1 = a;
    m_radius2 = b;
    m_mesureP[Dist1] = 2 * a;
    m_mesureP[Dist2] = 2 * b;
    const double major = m_rotation + (r.height() > r.width() ? 90 : 0);
    m_mesureP[Ang1] = std::fmod(std::fmod(major, 180.0) + 180.0, 180.0);
    m_mesureP[Aera] = ellipseArea(a, b);
    m_mesureP[Perim] = ellipsePerimeter(a, b);
    m_mesureP[Rad1] = a;
    m_mesureP[Rad2] = b;
    m_mesureP[Cust] = ellipseEccentricity(a, b);
    calibrateMesures({Dist1, Dist2, Ang1, Aera, Perim, Rad1, Rad2, Cust});
    m_centroidPoint = r.center();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

QList<AbstractBaseItem::MenuEntry> EllipseItem::mesureMenu() const {
    return {{QT_TR_NOOP("Area"), Aera},        {QT_TR_NOOP("Perimeter"), Perim},
            {QT_TR_NOOP("Major axis"), Dist1}, {QT_TR_NOOP("Minor axis"), Dist2},
            {QT_TR_NOOP("Orientation"), Ang1}, {QT_TR_NOOP("Eccentricity"), Cust}};
}

QList<AbstractBaseItem::Handle> EllipseItem::handles() const {
    return RectHandgrips::frameHandles(rect(), HoverEventItem::Rotation, ellipseGrips);
}

double EllipseItem::screenAngle(const QPointF& scenePos) const {
    const QPointF v = scenePos - mapToScene(rect().center());
    return -std::atan2(v.y(), v.x()) * 180 / M_PI;
}

void EllipseItem::handlePressed(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    m_turnFrom = screenAngle(scenePos);
    m_rotationAtPress = m_rotation;
    ShapeItem::handlePressed(id, scenePos, modifiers);
}

// The axis ends move along their axis about the fixed centre; the rotation grip turns the ellipse by
// the angle it is turned about the centre.
void EllipseItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    if (id == RotationGrip) {
        const double turned = m_rotationAtPress + screenAngle(scenePos) - m_turnFrom;
        if (std::isfinite(turned))
            rotate(turnDegrees(turned));
    } else {
        const QRectF r = rect();
        const QPointF d = mapFromScene(scenePos) - r.center();
        const bool horizontal = id == HoverEventItem::MiddleRight || id == HoverEventItem::MiddleLeft;
        const double a = horizontal ? std::abs(d.x()) : r.width() / 2;
        const double b = horizontal ? r.height() / 2 : std::abs(d.y());
        if (!(std::min(a, b) >= MinSemiAxis) || !isSceneNumber(a) || !isSceneNumber(b))
            return;
        setRect(QRectF(r.center() - QPointF(a, b), r.center() + QPointF(a, b)));
        computeMesures(nullptr);
    }
    emit mesureChanged(this);
}

void EllipseItem::fixupForTransform(_AUTOPOINTPARAMS& params, int, void*) {
    params.center = mapToScene(rect().center());
    params.rect = mapRectToScene(rect());
    params.points = {mapToScene(m_mline[0]), mapToScene(m_mline[1])};
}

void EllipseItem::writeGeometry(XmlAttributes& e) const {
    const QRectF r = rect();
    e.setAttribute(QStringLiteral("rect"), exactPointsText({r.topLeft()}) + QLatin1Char(' ') +
                                               exactPointsText({QPointF(r.width(), r.height())}));
    e.setAttribute(QStringLiteral("rotation"), exactNumber(m_rotation));
    e.setAttribute(QStringLiteral("pos"), exactPointsText({pos()}));
}

// The measures come back as saved, computed with the calibration of their time, unless they cannot be.
void EllipseItem::readGeometry(const XmlAttributes& e) {
    const QRectF r = readRect(e, QStringLiteral("rect"));
    setRect(sceneRect(r) ? r : QRectF());
    setPos(readScenePoints(e, QStringLiteral("pos")).value(0));
    m_rotation = m_currentRotation = turnDegrees(readNumber(e, QStringLiteral("rotation")));
    setTransformOriginPoint(rect().center());
    QGraphicsItem::setRotation(-m_rotation);
    if (!saneMesures(*this)) {
        std::fill(std::begin(m_mesure), std::end(m_mesure), 0.0);
        std::fill(std::begin(m_mesureP), std::end(m_mesureP), 0.0);
        computeMesures(nullptr);
    }
    placeCentroidHandgrip();
    commonUpdateText();
}
