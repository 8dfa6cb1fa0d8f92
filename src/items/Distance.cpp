#include "Distance.h"

#include "ConstructionGeometry.h"
#include "GeometryIntersections.h"

using namespace Construction;

namespace {

// One side of the distance: a circle, a line or a point.
struct Side {
    std::optional<Circle> circle;
    std::optional<QLineF> line;
    QPointF point; // the centroid, or the circle's centre
};

Side sideOf(AbstractBaseItem* item, const std::optional<QPointF>& hint) {
    Side side;
    side.circle = circleOf(item);
    if (!side.circle && isLine(item))
        side.line = straightOf(item, hint);
    side.point = side.circle ? side.circle->centre : centroidOf(item);
    return side;
}

} // namespace

ConstructionItem::Kind Distance::kind() {
    return {{Need::Anything, Need::Anything}, {{QT_TR_NOOP("Distance"), Dist1}, {QT_TR_NOOP("Gap"), Dist2}}};
}

QString Distance::build(Drawing& drawing) {
    Side a = sideOf(source(0), hint(0)), b = sideOf(source(1), hint(1));
    if (a.line && !b.line)
        std::swap(a, b);
    // A line against a point (or a circle's centre) is measured along the perpendicular.
    QPointF from = a.point;
    QPointF to = b.point;
    if (a.line && b.line) {
        if (nearlyParallel(a.line->p1(), a.line->p2(), b.line->p1(), b.line->p2())) {
            from = b.line->center();
            to = footOn(from, *a.line);
            addExtension(drawing.lines, *a.line, to);
        } else {
            segmentsDistance(*a.line, *b.line, &from, &to);
        }
    } else if (b.line) {
        to = footOn(from, *b.line);
        addExtension(drawing.lines, *b.line, to);
    }
    const double d = QLineF(from, to).length();
    m_mesureP[Dist1] = d;
    if (a.circle || b.circle)
        m_mesureP[Dist2] = d - (a.circle ? a.circle->radius : 0) - (b.circle ? b.circle->radius : 0);
    addSegment(drawing.lines, from, to);
    drawing.points = {from, to};
    drawing.anchor = (from + to) / 2;
    return QString();
}
