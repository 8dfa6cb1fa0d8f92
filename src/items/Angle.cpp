#include "Angle.h"

#include "ConstructionGeometry.h"
#include "GeometryIntersections.h"

#include <algorithm>

using namespace Construction;

namespace {

// Arc radius: a quarter of the shorter arm, kept legible.
constexpr double MinArc = 6;
constexpr double MaxArc = 40;

QPointF farEnd(const QLineF& l, const QPointF& from) {
    return QLineF(from, l.p1()).length() >= QLineF(from, l.p2()).length() ? l.p1() : l.p2();
}

QPointF nearEnd(const QLineF& l, const QPointF& from) {
    return farEnd(l, from) == l.p1() ? l.p2() : l.p1();
}

} // namespace

ConstructionItem::Kind Angle::kind() {
    return {{Need::Straight, Need::Straight},
            {{QT_TR_NOOP("Angle"), Ang1}, {QT_TR_NOOP("Supplement"), Ang2}}};
}

QString Angle::build(Drawing& drawing) {
    const std::optional<QLineF> l1 = straightOf(source(0), hint(0));
    const std::optional<QLineF> l2 = straightOf(source(1), hint(1));
    if (!l1 || !l2)
        return tr("A source has no straight part");
    double x = 0, y = 0;
    if (!lineIntersection(l1->x1(), l1->y1(), l1->x2(), l1->y2(), l2->x1(), l2->y1(), l2->x2(), l2->y2(), &x,
                          &y)) {
        QPointF from, to;
        segmentsDistance(*l1, *l2, &from, &to);
        addSegment(drawing.lines, nearEnd(*l1, to), nearEnd(*l2, from));
        m_mesureP[Ang2] = 180;
        drawing.anchor = (nearEnd(*l1, to) + nearEnd(*l2, from)) / 2;
        return QString();
    }
    const QPointF vertex(x, y);
    const QPointF a = farEnd(*l1, vertex);
    const QPointF b = farEnd(*l2, vertex);
    m_mesureP[Ang1] = armsAngle(vertex, a, b);
    m_mesureP[Ang2] = 180 - m_mesureP[Ang1];
    addExtension(drawing.lines, *l1, vertex);
    addExtension(drawing.lines, *l2, vertex);
    const double shorter = std::min(QLineF(vertex, a).length(), QLineF(vertex, b).length());
    const double radius = std::clamp(shorter / 4, MinArc, MaxArc);
    addAngleArc(drawing.results, vertex, a, b, radius);
    drawing.points = {vertex};
    // The label sits beyond the middle of the arc.
    QLineF bisector(vertex, vertex + QLineF(vertex, a).unitVector().p2() - vertex +
                                QLineF(vertex, b).unitVector().p2() - vertex);
    drawing.anchor = bisector.length() > 0 ? bisector.unitVector().pointAt(radius * 1.5) : vertex;
    return QString();
}
