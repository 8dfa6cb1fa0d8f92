#include "CrossItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsSceneMouseEvent>
#include <QPainterPath>

#include <cmath>

namespace {

// A drag shorter than this is a click: the cross keeps its default arms.
constexpr double MinArm = 8;
constexpr double MaxArm = 1e6;

// Angles in [0, 360).
double normalised(double degrees) {
    const double a = std::fmod(degrees, 360.0);
    return a < 0 ? a + 360.0 : a;
}

// The arm through c at angle, reaching length on both sides.
QLineF armThrough(const QPointF& c, double angle, double length) {
    const QPointF reach = QLineF::fromPolar(length, angle).p2();
    return QLineF(c - reach, c + reach);
}

} // namespace

CrossItem::CrossItem(QGraphicsItem* parent, int id, void* context)
    : PositionItem(parent, 1) {
    initIdentity(id, MesureKey, MesureDefault);
    if (const _AUTOPOINTPARAMS* params = startGenerated(context)) {
        copyCommonData(this, params->source);
        if (params->radius >= MinArm && params->radius <= MaxArm)
            m_arm = params->radius;
        setPoint(params->center);
    }
    placeArms();
    if (m_creationStarted)
        computeMesures(nullptr);
}

QList<QLineF> CrossItem::lines() const {
    const QPointF c = point();
    return {armThrough(c, m_angle, m_arm), armThrough(c, m_angle + 90, m_arm)};
}

void CrossItem::placeArms() {
    QPainterPath path;
    for (const QLineF& arm :
         {armThrough(QPointF(), m_angle, m_arm), armThrough(QPointF(), m_angle + 90, m_arm)}) {
        path.moveTo(arm.p1());
        path.lineTo(arm.p2());
    }
    setPath(path);
    refreshHandgrips();
}

void CrossItem::setAngle(double degrees) {
    if (!std::isfinite(degrees))
        return;
    m_angle = normalised(degrees);
    placeArms();
    if (m_creationStarted && computeMesures(nullptr))
        emit mesureChanged(this);
}

QList<AbstractBaseItem::Handle> CrossItem::handles() const {
    return {{CentreGrip, HoverEventItem::Move, QPointF()},
            {ArmGrip, HoverEventItem::Rotation, QLineF::fromPolar(m_arm, m_angle).p2()}};
}

void CrossItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (id != ArmGrip) {
        PositionItem::handleMoved(id, scenePos, modifiers);
        return;
    }
    if (scenePos == point())
        return;
    setAngle(QLineF(point(), scenePos).angle());
    if (AbstractScene* host = hostScene())
        host->setOrthoReferenceAngle(m_angle);
}

void CrossItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QLineF drag(point(), event->scenePos());
    if (drag.length() < MinArm)
        return;
    m_arm = std::min(drag.length(), MaxArm);
    setAngle(drag.angle());
}

QList<AbstractBaseItem::MenuEntry> CrossItem::mesureMenu() const {
    return {{QT_TR_NOOP("Angle"), Ang1}, {QT_TR_NOOP("Second arm"), Ang2}, {QT_TR_NOOP("None"), NoMesure}};
}

void CrossItem::fillMesures() {
    m_mesureP[Ang1] = m_angle;
    m_mesureP[Ang2] = normalised(m_angle + 90);
    calibrateMesures({Ang1, Ang2});
}

void CrossItem::writeGeometry(XmlAttributes& e) const {
    PositionItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("angle"), variantToString(m_angle));
    e.setAttribute(QStringLiteral("arm"), variantToString(m_arm));
}

void CrossItem::readGeometry(const XmlAttributes& e) {
    m_angle = normalised(readNumber(e, QStringLiteral("angle")));
    const double arm = readNumber(e, QStringLiteral("arm"), DefaultArm);
    m_arm = arm >= MinArm && arm <= MaxArm ? arm : DefaultArm;
    placeArms();
    PositionItem::readGeometry(e);
}
