#include "GuideItem.h"

#include <QGraphicsScene>
#include <QPainterPath>

namespace {

// Half the length of a guide that stands on no scene yet.
constexpr double Reach = 1000;

} // namespace

GuideItem::GuideItem(QGraphicsItem* parent, Qt::Orientation orientation, void* context)
    : PositionItem(parent, orientation == Qt::Horizontal ? 1 : 2)
    , m_orientation(orientation) {
    m_mesureIndex = Dist1;
    if (const _AUTOPOINTPARAMS* params = startGenerated(context)) {
        copyCommonData(this, params->source);
        setPoint(params->points.isEmpty() ? params->center : params->points.first());
        computeMesures(nullptr);
    }
    placeLine();
}

QList<QLineF> GuideItem::lines() const {
    const QPointF p = point();
    // Kept inside by the pen's reach: a scene without a rectangle of its own grows to hold its
    // items, and a guide reaching its edge would push it further at every update.
    const double inset = m_pen.widthF() / 2 + 1;
    const QRectF r = scene() ? scene()->sceneRect().adjusted(inset, inset, -inset, -inset)
                             : QRectF(p - QPointF(Reach, Reach), p + QPointF(Reach, Reach));
    if (m_orientation == Qt::Horizontal)
        return {QLineF(r.left(), p.y(), r.right(), p.y())};
    return {QLineF(p.x(), r.top(), p.x(), r.bottom())};
}

// Off a scene the guide draws nothing, so that it adds nothing to the scene it joins.
void GuideItem::placeLine() {
    if (!scene()) {
        setPath(QPainterPath());
        return;
    }
    const QLineF line = lines().first();
    QPainterPath path;
    path.moveTo(mapFromScene(line.p1()));
    path.lineTo(mapFromScene(line.p2()));
    setPath(path);
}

QPointF GuideItem::constrained(const QPointF& p) const {
    return m_orientation == Qt::Horizontal ? QPointF(point().x(), p.y()) : QPointF(p.x(), point().y());
}

void GuideItem::fillMesures() {
    const QPointF d = fromOrigin();
    m_mesureP[Dist1] = m_orientation == Qt::Horizontal ? d.y() : d.x();
    calibrateMesures({Dist1});
}

QVariant GuideItem::itemChange(GraphicsItemChange change, const QVariant& value) {
    const QVariant result = PositionItem::itemChange(change, value);
    if (change == ItemPositionHasChanged) {
        placeLine();
    } else if (change == ItemSceneHasChanged) {
        if (QGraphicsScene* s = scene())
            connect(s, &QGraphicsScene::sceneRectChanged, this, &GuideItem::placeLine, Qt::UniqueConnection);
        placeLine();
    }
    return result;
}
