#include "Intersection.h"

#include "AbstractScene.h"
#include "ConstructionGeometry.h"
#include "GeometryIntersections.h"

#include <cmath>

using namespace Construction;

namespace {

// A source as the intersection sees it.
struct Figure {
    std::optional<QLineF> line;
    std::optional<Circle> circle;
    std::optional<Ellipse> ellipse;
};

Figure figureOf(AbstractBaseItem* item, const std::optional<QPointF>& hint) {
    Figure f;
    f.circle = circleOf(item);
    if (!f.circle)
        f.ellipse = ellipseOf(item);
    if (!f.circle && !f.ellipse)
        f.line = straightOf(item, hint);
    return f;
}

// A circle or an ellipse in the frame of an ellipse: a circle fits in any frame, an ellipse when
// both frames differ by a move and a scale only.
std::optional<QRectF> inFrameOf(const Ellipse& frame, const Figure& f) {
    bool invertible = false;
    const QTransform toFrame = frame.toScene.inverted(&invertible);
    if (!invertible)
        return std::nullopt;
    if (f.circle) {
        const double r = f.circle->radius * std::sqrt(std::abs(toFrame.determinant()));
        const QPointF c = toFrame.map(f.circle->centre);
        return QRectF(c - QPointF(r, r), c + QPointF(r, r));
    }
    const QTransform between = f.ellipse->toScene * toFrame;
    if (std::abs(between.m12()) > 1e-9 || std::abs(between.m21()) > 1e-9)
        return std::nullopt;
    return between.mapRect(f.ellipse->rect);
}

} // namespace

ConstructionItem::Kind Intersection::kind() {
    return {{Need::Figure, Need::Figure},
            {{QT_TR_NOOP("Distance"), Dist1}, {QT_TR_NOOP("Angle"), Ang1}, {QT_TR_NOOP("Points"), Cust}}};
}

QString Intersection::build(Drawing& drawing) {
    Figure a = figureOf(source(0), hint(0));
    Figure b = figureOf(source(1), hint(1));
    // Lines first, then circles, then ellipses.
    if (!a.line && (b.line || (!a.circle && b.circle)))
        std::swap(a, b);
    QList<QPointF> points;
    if (a.line && b.line) {
        double x = 0, y = 0;
        if (!lineIntersection(a.line->x1(), a.line->y1(), a.line->x2(), a.line->y2(), b.line->x1(),
                              b.line->y1(), b.line->x2(), b.line->y2(), &x, &y))
            return tr("The lines are parallel");
        points = {QPointF(x, y)};
        const double crossing =
            armsAngle(QPointF(), a.line->p2() - a.line->p1(), b.line->p2() - b.line->p1());
        m_mesureP[Ang1] = crossing > 90 ? 180 - crossing : crossing;
        m_mesureP[Ang2] = 180 - m_mesureP[Ang1];
    } else if (a.line && b.circle) {
        const QRectF area = hostScene() ? hostScene()->sceneRect() : QRectF();
        QPointF o1, o2;
        const long found =
            CalculIntersectionDroiteCercle(a.line->p1(), a.line->p2(), b.circle->centre, b.circle->radius, o1,
                                           o2, long(area.right()), long(area.bottom()));
        if (found == 1 || found == 2)
            points = {o1};
        else if (found == 3 || found == 4)
            points = {o1, o2};
    } else if (a.circle && b.circle) {
        if (a.circle->centre == b.circle->centre)
            return tr("The circles are concentric");
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        if (circle_circle_intersection(a.circle->centre.x(), a.circle->centre.y(), a.circle->radius,
                                       b.circle->centre.x(), b.circle->centre.y(), b.circle->radius, &x1, &y1,
                                       &x2, &y2))
            points = {QPointF(x1, y1), QPointF(x2, y2)};
    } else if (a.line) {
        // The line goes into the ellipse's own frame and the points come back.
        const QTransform back = b.ellipse->toScene;
        const QTransform into = back.inverted();
        QList<QPointF> local;
        ellipseLineIntersection(b.ellipse->rect, into.map(a.line->p1()), into.map(a.line->p2()), local,
                                false);
        for (const QPointF& p : std::as_const(local))
            points.append(back.map(p));
    } else {
        // At least one is an ellipse: the other is solved in its frame.
        const Ellipse& frame = b.ellipse ? *b.ellipse : *a.ellipse;
        const std::optional<QRectF> other = inFrameOf(frame, b.ellipse ? a : b);
        if (!other)
            return tr("Ellipses turned against each other are not intersected");
        QList<QPointF> local;
        ellipseIntersection(frame.rect, *other, local);
        for (const QPointF& p : std::as_const(local))
            points.append(frame.toScene.map(p));
    }
    if (points.isEmpty())
        return tr("The items do not cross");
    for (const std::optional<QLineF>& line : {a.line, b.line}) {
        for (const QPointF& p : std::as_const(points)) {
            if (line)
                addExtension(drawing.lines, *line, p);
        }
    }
    m_mesureP[Cust] = double(points.size());
    if (points.size() == 2) {
        m_mesureP[Dist1] = QLineF(points[0], points[1]).length();
        addSegment(drawing.lines, points[0], points[1]);
    }
    drawing.points = points;
    drawing.anchor = points.size() == 2 ? (points[0] + points[1]) / 2 : points[0];
    return QString();
}
