#include "PositionItem.h"

#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "VariantText.h"
#include "XmlRead.h"

#include "XmlAttributes.h"
#include <QGraphicsPathItem>
#include <QGraphicsSceneMouseEvent>

PositionItem::PositionItem(QGraphicsItem* parent, unsigned long subType)
    : ShapeItem(parent, new QGraphicsPathItem, subType, 1) {
    // Position changes reach itemChange: they are the point's moves.
    setFlag(ItemSendsGeometryChanges, true);
}

QGraphicsPathItem* PositionItem::pathItem() const {
    return child<QGraphicsPathItem>();
}

void PositionItem::setPath(const QPainterPath& path) {
    if (path == pathItem()->path())
        return;
    prepareGeometryChange();
    pathItem()->setPath(path);
    update();
}

void PositionItem::setPoint(const QPointF& p) {
    m_settingPoint = true;
    setPos(parentItem() ? parentItem()->mapFromScene(p) : p);
    m_settingPoint = false;
}

QList<AbstractBaseItem::Handle> PositionItem::handles() const {
    return {{0, HoverEventItem::Move, QPointF()}};
}

void PositionItem::handleMoved(int, const QPointF& scenePos, Qt::KeyboardModifiers) {
    setPoint(constrained(scenePos));
}

void PositionItem::mousePress(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return;
    m_creationStarted = true;
    setPoint(event->scenePos());
    computeMesures(nullptr);
}

void PositionItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    setPoint(constrained(event->scenePos()));
}

QPointF PositionItem::fromOrigin() const {
    const AbstractScene* host = qobject_cast<AbstractScene*>(scene());
    return point() - (host ? host->origin() : QPointF());
}

void PositionItem::fillMesures() {
    const QPointF d = fromOrigin();
    m_mesureP[Dist1] = d.x();
    m_mesureP[Dist2] = d.y();
    calibrateMesures({Dist1, Dist2});
}

bool PositionItem::computeMesures(void*) {
    fillMesures();
    placeCentroidHandgrip();
    commonUpdateText();
    return true;
}

void PositionItem::followOrigin() {
    disconnect(m_originConnection);
    if (auto* host = qobject_cast<AbstractScene*>(scene()))
        m_originConnection = connect(host, &AbstractScene::originChanged, this, [this] {
            if (computeMesures(nullptr))
                emit mesureChanged(this);
        });
}

QVariant PositionItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    switch (change) {
    case ItemPositionChange: {
        if (m_settingPoint)
            break;
        const QPointF wanted = parentItem() ? parentItem()->mapToScene(value.toPointF()) : value.toPointF();
        const QPointF allowed = constrained(wanted);
        return parentItem() ? parentItem()->mapFromScene(allowed) : allowed;
    }
    case ItemPositionHasChanged: {
        const QPointF delta = scenePos() - m_lastPos;
        m_lastPos = scenePos();
        if (m_creationStarted && !m_reading && computeMesures(nullptr))
            emit mesureChanged(this);
        if (!delta.isNull())
            emit pointMoved(delta);
        break;
    }
    case ItemSceneHasChanged:
        m_lastPos = scenePos();
        followOrigin();
        if (m_creationStarted)
            computeMesures(nullptr);
        break;
    default:
        break;
    }
    return AbstractBaseItem::itemChange(change, value);
}

void PositionItem::writeGeometry(XmlAttributes& e) const {
    e.setAttribute(QStringLiteral("point"), variantToString(point()));
}

// The measures come back as saved; the scene the item joins recomputes them from its origin.
void PositionItem::readGeometry(const XmlAttributes& e) {
    m_reading = true;
    setPoint(readPoint(e, QStringLiteral("point")));
    m_reading = false;
    placeCentroidHandgrip();
    commonUpdateText();
}
