#include "ConstructionGeometry.h"

#include "AbstractBaseItem.h"
#include "Circle3.h"
#include "GeometryIntersections.h"
#include "GeometryOutlines.h"
#include "ItemTypes.h"
#include "PositionItem.h"
#include "XmlRead.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>

#include <algorithm>
#include <cmath>

namespace Construction {
namespace {

constexpr double MarkSize = 5;
constexpr double Degrees = 57.29577951308232;

template <class Child> Child* childOf(AbstractBaseItem* item) {
    for (QGraphicsItem* child : item->childItems()) {
        if (auto* found = qgraphicsitem_cast<Child*>(child))
            return found;
    }
    return nullptr;
}

// The items whose rectangle has sides to measure against (a text's background has none).
bool hasSides(const AbstractBaseItem* item) {
    const int t = item->type();
    return t == ItemTypes::RectangleItem || t == ItemTypes::RectangleItemFeret ||
           t == ItemTypes::RectCalibItem || t == ItemTypes::RulerItem;
}

QList<QLineF> straightParts(AbstractBaseItem* item) {
    if (auto* position = qobject_cast<PositionItem*>(item))
        return position->lines();
    if (auto* line = childOf<QGraphicsLineItem>(item))
        return {QLineF(line->mapToScene(line->line().p1()), line->mapToScene(line->line().p2()))};
    if (hasSides(item)) {
        if (auto* rect = childOf<QGraphicsRectItem>(item)) {
            const QPolygonF c = rect->mapToScene(rect->rect());
            return {QLineF(c[0], c[1]), QLineF(c[1], c[2]), QLineF(c[2], c[3]), QLineF(c[3], c[0])};
        }
    }
    if (item->type() == ItemTypes::PolylineItem) {
        const QList<QPointF> p = item->mline();
        const qsizetype n = p.size();
        if (n >= 3)
            return {QLineF(p[n - 2], p[n - 1]), QLineF(p[0], p[1])};
        if (n == 2)
            return {QLineF(p[0], p[1])};
    }
    return {};
}

double scaleOf(const QTransform& t) {
    return std::sqrt(std::abs(t.determinant()));
}

} // namespace

QPointF centroidOf(AbstractBaseItem* item) {
    return item->mapToScene(item->centroid());
}

bool isLine(AbstractBaseItem* item) {
    const auto* position = qobject_cast<PositionItem*>(item);
    return position ? !position->lines().isEmpty() : childOf<QGraphicsLineItem>(item) != nullptr;
}

std::optional<QLineF> straightOf(AbstractBaseItem* item, const std::optional<QPointF>& hint) {
    const QList<QLineF> parts = straightParts(item);
    std::optional<QLineF> best;
    double bestDistance = 0;
    for (const QLineF& part : parts) {
        if (part.p1() == part.p2())
            continue;
        const double d = hint ? QLineF(*hint, nearestOnSegment(*hint, part)).length() : 0;
        if (!best || d < bestDistance) {
            best = part;
            bestDistance = d;
        }
    }
    return best;
}

std::optional<Circle> circleOf(AbstractBaseItem* item) {
    if (auto* circle3 = qgraphicsitem_cast<Circle3*>(item))
        return circle3->hasResult() ? std::optional<Circle>(Circle{circle3->centre(), circle3->radius()})
                                    : std::nullopt;
    auto* ellipse = childOf<QGraphicsEllipseItem>(item);
    if (!ellipse || ellipse->rect().isEmpty() || ellipse->rect().width() != ellipse->rect().height())
        return std::nullopt;
    const QTransform t = ellipse->sceneTransform();
    return Circle{t.map(ellipse->rect().center()), ellipse->rect().width() / 2 * scaleOf(t)};
}

std::optional<Ellipse> ellipseOf(AbstractBaseItem* item) {
    auto* ellipse = childOf<QGraphicsEllipseItem>(item);
    if (!ellipse || ellipse->rect().isEmpty() || ellipse->rect().width() == ellipse->rect().height())
        return std::nullopt;
    return Ellipse{ellipse->rect(), ellipse->sceneTransform()};
}

double armsAngle(const QPointF& vertex, const QPointF& a, const QPointF& b) {
    const QPointF u = a - vertex;
    const QPointF v = b - vertex;
    if (u.isNull() || v.isNull())
        return 0;
    // atan2 of the cross and dot products stays exact near 0 and 180 degrees, where acos does not.
    const double cross = u.x() * v.y() - u.y() * v.x();
    return std::atan2(std::abs(cross), QPointF::dotProduct(u, v)) * Degrees;
}

QPointF nearestOnSegment(const QPointF& p, const QLineF& s) {
    const QPointF d = s.p2() - s.p1();
    const double squared = QPointF::dotProduct(d, d);
    if (squared == 0)
        return s.p1();
    const double t = std::clamp(QPointF::dotProduct(p - s.p1(), d) / squared, 0.0, 1.0);
    return s.p1() + t * d;
}

QPointF footOn(const QPointF& p, const QLineF& l) {
    QPointF foot;
    CalculProjectionPoint(p, l.p1(), l.p2(), foot);
    return foot;
}

double segmentsDistance(const QLineF& s, const QLineF& t, QPointF* onS, QPointF* onT) {
    QPointF crossing;
    if (s.intersects(t, &crossing) == QLineF::BoundedIntersection) {
        *onS = *onT = crossing;
        return 0;
    }
    // Otherwise the nearest pair has an end point of one of the segments.
    struct Pair {
        QPointF a, b;
    };
    const Pair pairs[] = {{s.p1(), nearestOnSegment(s.p1(), t)},
                          {s.p2(), nearestOnSegment(s.p2(), t)},
                          {nearestOnSegment(t.p1(), s), t.p1()},
                          {nearestOnSegment(t.p2(), s), t.p2()}};
    double best = -1;
    for (const Pair& pair : pairs) {
        const double d = QLineF(pair.a, pair.b).length();
        if (best < 0 || d < best) {
            best = d;
            *onS = pair.a;
            *onT = pair.b;
        }
    }
    return best;
}

void addMark(QPainterPath& path, const QPointF& p) {
    addSegment(path, p - QPointF(MarkSize, 0), p + QPointF(MarkSize, 0));
    addSegment(path, p - QPointF(0, MarkSize), p + QPointF(0, MarkSize));
}

void addSegment(QPainterPath& path, const QPointF& a, const QPointF& b) {
    path.moveTo(a);
    path.lineTo(b);
}

void addExtension(QPainterPath& path, const QLineF& segment, const QPointF& p) {
    const QPointF nearest = nearestOnSegment(p, segment);
    if (QLineF(nearest, p).length() > 0.5)
        addSegment(path, nearest, p);
}

void addAngleArc(QPainterPath& path, const QPointF& vertex, const QPointF& a, const QPointF& b,
                 double radius) {
    const QPointF u = a - vertex;
    const QPointF v = b - vertex;
    if (u.isNull() || v.isNull() || !(radius > 0))
        return;
    const double start = std::atan2(u.y(), u.x()) * Degrees;
    double span = std::atan2(v.y(), v.x()) * Degrees - start;
    if (span > 180)
        span -= 360;
    else if (span < -180)
        span += 360;
    addArc(path, vertex, radius, start, span);
}

bool drawable(const QPainterPath& path) {
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (!isSceneNumber(e.x) || !isSceneNumber(e.y))
            return false;
    }
    return true;
}

} // namespace Construction
