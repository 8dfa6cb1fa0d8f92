#include "Custom1.h"

#include "ConstructionGeometry.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>

#include <algorithm>

namespace {

constexpr int PointCount = 3;
constexpr double MinArc = 6;
constexpr double MaxArc = 40;

const QString keys[PointCount] = {QStringLiteral("arm1"), QStringLiteral("vertex"), QStringLiteral("arm2")};

} // namespace

Custom1::Custom1(QGraphicsItem* parent, int id, void* context)
    : ClickedPointsItem(parent, new QGraphicsPathItem, 1, PointCount) {
    initGenerated(id, context, MesureKey, MesureDefault, [this](const _AUTOPOINTPARAMS& params) {
        if (params.points.size() != PointCount)
            return;
        copyCommonData(this, params.source);
        m_mline = fromScene(params.points);
        drawPoints(m_mline);
        computeMesures(nullptr);
        m_modeEdition = EditionComplete;
    });
}

QPointF Custom1::centroid() {
    return m_mline.size() > Vertex ? m_mline[Vertex] : ClickedPointsItem::centroid();
}

void Custom1::drawPoints(const QList<QPointF>& points) {
    QPainterPath path;
    for (int i = 1; i < points.size(); ++i)
        Construction::addSegment(path, points[i - 1], points[i]);
    if (points.size() == PointCount) {
        const double shorter = std::min(QLineF(points[Vertex], points[FirstArm]).length(),
                                        QLineF(points[Vertex], points[SecondArm]).length());
        Construction::addAngleArc(path, points[Vertex], points[FirstArm], points[SecondArm],
                                  std::clamp(shorter / 4, MinArc, MaxArc));
    }
    if (path != child<QGraphicsPathItem>()->path()) {
        prepareGeometryChange();
        child<QGraphicsPathItem>()->setPath(path);
        update();
    }
    refreshHandgrips();
}

bool Custom1::computeMesures(void*) {
    if (m_mline.size() != PointCount)
        return false;
    m_mesureP[Ang1] = Construction::armsAngle(m_mline[Vertex], m_mline[FirstArm], m_mline[SecondArm]);
    m_mesureP[Ang2] = 360 - m_mesureP[Ang1];
    calibrateMesures({Ang1, Ang2});
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

bool Custom1::endEdition() {
    return m_mline.size() == PointCount && m_mline[FirstArm] != m_mline[Vertex] &&
           m_mline[SecondArm] != m_mline[Vertex];
}

QList<AbstractBaseItem::MenuEntry> Custom1::mesureMenu() const {
    return {{QT_TR_NOOP("Angle"), Ang1}, {QT_TR_NOOP("Reflex angle"), Ang2}, {QT_TR_NOOP("None"), NoMesure}};
}

void Custom1::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers) {
    if (id < 0 || id >= m_mline.size())
        return;
    m_mline[id] = mapFromScene(scenePos);
    drawPoints(m_mline);
    computeMesures(nullptr);
    emit mesureChanged(this);
}

void Custom1::writeGeometry(XmlAttributes& e) const {
    for (int i = 0; i < m_mline.size(); ++i)
        e.setAttribute(keys[i], variantToString(mapToScene(m_mline[i])));
}

void Custom1::readGeometry(const XmlAttributes& e) {
    m_mline.clear();
    if (std::all_of(std::begin(keys), std::end(keys),
                    [&e](const QString& key) { return e.hasAttribute(key); })) {
        for (const QString& key : keys)
            m_mline.append(mapFromScene(readPoint(e, key)));
    }
    drawPoints(m_mline);
    if (!computeMesures(nullptr)) {
        placeCentroidHandgrip();
        commonUpdateText();
    }
}
