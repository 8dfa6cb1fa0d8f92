#include "Tangent.h"

#include "ConstructionGeometry.h"
#include "GeometryIntersections.h"

using namespace Construction;

ConstructionItem::Kind Tangent::kind() {
    return {{Need::Anything, Need::Circle},
            {{QT_TR_NOOP("First tangent"), Dist1}, {QT_TR_NOOP("Second tangent"), Dist2}}};
}

QString Tangent::build(Drawing& drawing) {
    const std::optional<Circle> a = circleOf(source(0));
    const std::optional<Circle> b = circleOf(source(1));
    if (a && b)
        return betweenCircles(a->centre, a->radius, b->centre, b->radius, drawing);
    if (a)
        return fromPoint(centroidOf(source(1)), a->centre, a->radius, drawing);
    if (b)
        return fromPoint(centroidOf(source(0)), b->centre, b->radius, drawing);
    return tr("Neither item is a circle");
}

QString Tangent::fromPoint(const QPointF& p, const QPointF& c, double r, Drawing& drawing) {
    if (QLineF(p, c).length() < r)
        return tr("The point lies inside the circle");
    QPointF t1, t2;
    point_circle_tangent(c, r, p, t1, t2);
    m_mesureP[Dist1] = QLineF(p, t1).length();
    m_mesureP[Dist2] = QLineF(p, t2).length();
    for (const QPointF& t : {t1, t2}) {
        addSegment(drawing.results, p, t);
        addSegment(drawing.lines, c, t);
    }
    drawing.points = {t1, t2};
    // Not on the point itself, where it would cover the source's grip.
    drawing.anchor = (p + c) / 2;
    return QString();
}

QString Tangent::betweenCircles(const QPointF& c1, double r1, const QPointF& c2, double r2,
                                Drawing& drawing) {
    if (c1 == c2)
        return tr("The circles are concentric");
    QList<QPointF> ends;
    if (!circle_circle_tangents(c1.x(), c1.y(), r1, c2.x(), c2.y(), r2, ends))
        return tr("One circle lies inside the other");
    // Pairs of tangent points, the outer tangents first.
    for (int i = 0; i + 1 < ends.size(); i += 2) {
        addSegment(drawing.results, ends[i], ends[i + 1]);
        drawing.points << ends[i] << ends[i + 1];
    }
    m_mesureP[Dist1] = QLineF(ends[0], ends[1]).length();
    const double d = QLineF(c1, c2).length();
    if (d >= r1 + r2)
        m_mesureP[Dist2] = QLineF(ends[ends.size() - 2], ends[ends.size() - 1]).length();
    addSegment(drawing.lines, c1, c2);
    drawing.anchor = (c1 + c2) / 2;
    return QString();
}
