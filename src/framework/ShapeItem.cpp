#include "ShapeItem.h"

#include "HoverEventItem.h"

#include <QAbstractGraphicsShapeItem>
#include <QGraphicsLineItem>
#include <QGraphicsSceneMouseEvent>
#include <QPainter>

ShapeItem::ShapeItem(QGraphicsItem* parent, QGraphicsItem* shape, unsigned long subType, int pointCount)
    : AbstractBaseItem(parent, 0, nullptr)
    , m_shape(shape) {
    m_shape->setParentItem(this);
    m_subType = subType;
    m_mline = QList<QPointF>(pointCount);
    setShapePen(m_pen);
}

AbstractBaseItem* ShapeItem::clone(int id) {
    QObject* object =
        metaObject()->newInstance(Q_ARG(QGraphicsItem*, nullptr), Q_ARG(int, id), Q_ARG(void*, nullptr));
    auto* item = qobject_cast<AbstractBaseItem*>(object);
    if (item) {
        copyCommonData(item, this);
        copyDataTo(item);
    }
    return item;
}

QPointF ShapeItem::centroid() {
    return childCentre(m_shape);
}

void ShapeItem::setPen(const QPen& pen) {
    AbstractBaseItem::setPen(pen);
    setShapePen(pen);
}

void ShapeItem::setShapePen(const QPen& pen) {
    if (auto* line = qgraphicsitem_cast<QGraphicsLineItem*>(m_shape))
        line->setPen(pen);
    else if (auto* shape = dynamic_cast<QAbstractGraphicsShapeItem*>(m_shape))
        shape->setPen(pen);
}

bool ShapeItem::startDrag(QGraphicsSceneMouseEvent* event) {
    if (m_creationStarted)
        return false;
    const QPointF p = mapFromScene(event->scenePos());
    m_mline = {p, p};
    m_creationStarted = true;
    return true;
}

QList<AbstractBaseItem::Handle> ShapeItem::pointHandles() const {
    QList<Handle> result;
    for (int i = 0; i < m_mline.size(); ++i)
        result.append({i, HoverEventItem::Move, m_mline[i]});
    return result;
}

const _AUTOPOINTPARAMS* ShapeItem::initGenerated(int id, void* context, const char* mesureKey,
                                                 int mesureDefault) {
    initIdentity(id, mesureKey, mesureDefault);
    return startGenerated(context);
}

void ShapeItem::setBrush(const QBrush& brush) {
    AbstractBaseItem::setBrush(brush);
    if (auto* shape = dynamic_cast<QAbstractGraphicsShapeItem*>(m_shape))
        shape->setBrush(brush);
}

bool ShapeItem::toAttributes(XmlAttributes& e) const {
    commonWriteXML(e);
    if (savesMesures())
        commonMesuresWriteXML(e);
    writeGeometry(e);
    return true;
}

bool ShapeItem::fromAttributes(const XmlAttributes& e) {
    m_creationStarted = true;
    commonReadXML(e);
    if (savesMesures())
        commonMesuresReadXML(e);
    setPen(m_pen);
    setBrush(QBrush());
    setFont(m_font);
    readGeometry(e);
    return true;
}

QRectF ShapeItem::boundingRect() const {
    return m_shape->mapRectToParent(m_shape->boundingRect());
}

QPainterPath ShapeItem::shape() const {
    return m_shape->mapToParent(m_shape->shape());
}

void ShapeItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) {
    commonPaintCentroidText(painter);
}
