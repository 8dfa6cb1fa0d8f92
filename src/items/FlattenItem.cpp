#include "FlattenItem.h"

#include "AbstractScene.h"
#include "GeometryPolygonMetrics.h"
#include "HoverEventItem.h"
#include "ImageProbes.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

FlattenItem::FlattenItem(QGraphicsItem* parent, int id, void* context)
    : VertexItem(parent, false) {
    const _AUTOPOINTPARAMS* params = initGenerated(id, context, MesureKey, MesureDefault);
    if (params && params->radius > 0)
        setBandWidth(2 * params->radius);
    takeRecord(params);
}

void FlattenItem::setBandWidth(double width) {
    if (std::isnan(width))
        return;
    prepareGeometryChange();
    m_band = std::clamp(width, 1.0, MaxBand);
    updateMesures(false);
    update();
}

QPointF FlattenItem::bandGripPos() const {
    const QPointF halfway = halfwayPoint();
    // The normal of the edge holding the halfway point, a quarter turn clockwise on screen.
    double left = polygonPerimeter(vertices(), false) / 2;
    for (qsizetype i = 1; i < m_mline.size(); ++i) {
        const QLineF edge(m_mline[i - 1], m_mline[i]);
        if (edge.length() > 0 && (edge.length() >= left || i + 1 == m_mline.size())) {
            const QPointF unit = (edge.p2() - edge.p1()) / edge.length();
            return halfway + QPointF(-unit.y(), unit.x()) * (m_band / 2);
        }
        left -= edge.length();
    }
    return halfway + QPointF(0, m_band / 2);
}

QList<AbstractBaseItem::Handle> FlattenItem::handles() const {
    QList<Handle> result = VertexItem::handles();
    if (m_mline.size() >= 2)
        result.append({BandGrip, HoverEventItem::ResizeVertical, bandGripPos()});
    return result;
}

void FlattenItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (id == BandGrip) {
        const QPointF d = mapFromScene(scenePos) - halfwayPoint();
        setBandWidth(2 * std::hypot(d.x(), d.y()));
        emit mesureChanged(this);
    } else {
        VertexItem::handleMoved(id, scenePos, modifiers);
    }
    if (HoverEventItem* grip = handgrip(BandGrip))
        grip->setPos(bandGripPos());
}

void FlattenItem::handleReleased(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    VertexItem::handleReleased(id, scenePos, modifiers);
    if (HoverEventItem* grip = handgrip(BandGrip))
        grip->setPos(bandGripPos());
}

void FlattenItem::measure(bool live) {
    if (!live || m_mline.size() <= LiveHullLimit) {
        QPainterPathStroker band;
        band.setWidth(m_band);
        band.setCapStyle(Qt::FlatCap);
        band.setJoinStyle(Qt::RoundJoin);
        m_bandPath = band.createStroke(pathThrough(vertices())).simplified();
    }
    m_mesureP[Dist1] = polygonPerimeter(vertices(), false);
    m_mesureP[Dist2] = m_band;
    m_centroidPoint = halfwayPoint();
    calibrateMesures({Dist1, Dist2});
}

QList<AbstractBaseItem::MenuEntry> FlattenItem::mesureMenu() const {
    return {{QT_TR_NOOP("Length"), Dist1}, {QT_TR_NOOP("Band width"), Dist2}, {QT_TR_NOOP("None"), NoMesure}};
}

void FlattenItem::fillContextMenu(QMenu* menu) {
    VertexItem::fillContextMenu(menu);
    menu->addSeparator();
    const AbstractScene* host = hostScene();
    createMenuAction(menu, QIcon(), tr("Straighten"), false, nullptr, StraightenCommand)
        ->setEnabled(host && !host->image().isNull() && m_mline.size() >= 2);
}

void FlattenItem::applyContextMenu(int data) {
    if (data == StraightenCommand)
        straighten();
    else
        VertexItem::applyContextMenu(data);
}

bool FlattenItem::straighten() {
    const AbstractScene* host = hostScene();
    if (!host || m_mline.size() < 2)
        return false;
    const auto progress = [this](int block, bool last) { emit transformIndex(this, block, last); };
    QImage straight = straightenAlongPath(host->image(), mapToScene(vertices()), m_band, progress);
    if (straight.isNull())
        return false;
    m_straightened = straight;
    emit itemChanged(this, QStringLiteral("flattened"), &m_straightened);
    return true;
}

QRectF FlattenItem::boundingRect() const {
    const double margin = m_band / 2 + 1;
    return VertexItem::boundingRect().adjusted(-margin, -margin, margin, margin);
}

// The band's edges, dashed, around the path the child draws.
void FlattenItem::paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) {
    QPen dashed = m_pen;
    dashed.setStyle(Qt::DashLine);
    painter->setPen(dashed);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(m_bandPath);
    VertexItem::paint(painter, option, widget);
}

void FlattenItem::writeGeometry(XmlAttributes& e) const {
    VertexItem::writeGeometry(e);
    e.setAttribute(QStringLiteral("band"), QString::number(m_band, 'g', 10));
}

void FlattenItem::readGeometry(const XmlAttributes& e) {
    m_band = std::clamp(readNumber(e, QStringLiteral("band"), DefaultBand), 1.0, MaxBand);
    VertexItem::readGeometry(e);
}
