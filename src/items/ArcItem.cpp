#include "ArcItem.h"

#include <QGraphicsSceneMouseEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr double Degrees = 57.29577951308232;

} // namespace

ArcItem::ArcItem(QGraphicsItem* parent, int id, void* context)
    : RoundItem(parent, true) {
    initialise(id, context, nullptr, 0);
    m_mesureIndex = MesureDefault;
    if (hasShape())
        computeMesures(nullptr);
}

std::optional<RoundShape> ArcItem::shapeFrom(const QList<QPointF>& points) const {
    if (points.size() < 3)
        return std::nullopt;
    const QPointF c = points[0];
    RoundShape shape;
    shape.centre = c;
    shape.radius = std::hypot(points[1].x() - c.x(), points[1].y() - c.y());
    if (!(shape.radius > 0) || !std::isfinite(shape.radius) || points[2] == c)
        return std::nullopt;
    const double start = degreesOf(points[1] - c);
    const double end = degreesOf(points[2] - c);
    if (!hasShape()) {
        shape.startAngle = start;
        shape.spanAngle = turnDegrees(end - start);
    } else {
        const RoundShape was = roundShape();
        shape.startAngle = was.startAngle + turnDegrees(start - was.startAngle);
        const double wasEnd = was.startAngle + was.spanAngle;
        shape.spanAngle = std::clamp(wasEnd + turnDegrees(end - wasEnd) - shape.startAngle, -360.0, 360.0);
    }
    if (shape.spanAngle == 0)
        return std::nullopt;
    return shape;
}

QList<QPointF> ArcItem::settledPoints(const QList<QPointF>& points, const RoundShape& shape) const {
    QList<QPointF> settled = points;
    const double end = (shape.startAngle + shape.spanAngle) / Degrees;
    settled[2] = shape.centre + shape.radius * QPointF(std::cos(end), std::sin(end));
    return settled;
}

void ArcItem::mousePress(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_stage == End) {
        setPoints({m_mline[0], m_mline[1], p});
    } else if (m_stage == Centre) {
        m_creationStarted = true;
        m_stage = Radius;
        m_mline = {p, p, p};
    }
}

// While the radius is dragged the whole circle shows; then the end follows the cursor.
void ArcItem::mouseMove(QGraphicsSceneMouseEvent* event) {
    const QPointF p = mapFromScene(event->scenePos());
    if (m_stage == End) {
        setPoints({m_mline[0], m_mline[1], p});
    } else if (m_stage == Radius) {
        m_mline[1] = m_mline[2] = p;
        RoundShape guide;
        guide.centre = m_mline[0];
        guide.radius = std::hypot(p.x() - guide.centre.x(), p.y() - guide.centre.y());
        guide.startAngle = degreesOf(p - guide.centre);
        if (guide.radius > 0)
            showShape(guide);
    }
}

AbstractBaseItem::typModeEdition ArcItem::mouseRelease(QGraphicsSceneMouseEvent*) {
    if (m_stage != Radius)
        return EditionComplete;
    m_stage = End;
    // The end starts at the start: the arc grows from nothing as the cursor moves on.
    RoundShape start = roundShape();
    start.spanAngle = 0;
    showShape(start);
    return EditionCreating;
}

// A drag of the centre moves the whole arc.
void ArcItem::handleMoved(int id, const QPointF& scenePos, Qt::KeyboardModifiers modifiers) {
    if (id != 0)
        return RoundItem::handleMoved(id, scenePos, modifiers);
    const QPointF shift = mapFromScene(scenePos) - m_mline[0];
    setPoints({m_mline[0] + shift, m_mline[1] + shift, m_mline[2] + shift});
    emit mesureChanged(this);
}

void ArcItem::applyContextMenu(int data) {
    chooseMesure(data, QString::fromLatin1(MenuKey));
}
