#pragma once

#include <QLineF>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QTransform>

#include <optional>

class AbstractBaseItem;

// What the construction measures see of the items they relate, and the marks they draw. All
// points are in scene coordinates.
namespace Construction {

struct Circle {
    QPointF centre;
    double radius = 0;
};

// The ellipse inscribed in rect, placed on the scene by toScene (an item may turn it).
struct Ellipse {
    QRectF rect;
    QTransform toScene;
};

// Where an item is, as one point: its centroid.
QPointF centroidOf(AbstractBaseItem* item);
// Whether the item is a straight line as a whole: a line, a guide, a cross's arm.
bool isLine(AbstractBaseItem* item);
// A straight part of the item: the line itself, a guide, a cross's arm, a side of a rectangle or
// ruler, an end segment of a polyline. The part nearest hint when there is a choice; without a
// hint the first (the top side, the last segment, the first arm).
std::optional<QLineF> straightOf(AbstractBaseItem* item, const std::optional<QPointF>& hint);
// The circle an item draws (a circle, a circle through three items); none for other ellipses.
std::optional<Circle> circleOf(AbstractBaseItem* item);
// An ellipse that is not a circle.
std::optional<Ellipse> ellipseOf(AbstractBaseItem* item);

// The angle between the arms vertex->a and vertex->b, 0 to 180 degrees (0 when an arm is empty).
double armsAngle(const QPointF& vertex, const QPointF& a, const QPointF& b);
// The point of segment s nearest p.
QPointF nearestOnSegment(const QPointF& p, const QLineF& s);
// The foot of the perpendicular from p on the line through l (by the library's projection, which
// takes a vertical line's slope for 1e9 and so is approximate for such lines).
QPointF footOn(const QPointF& p, const QLineF& l);
// The shortest distance between two segments, with the two nearest points.
double segmentsDistance(const QLineF& s, const QLineF& t, QPointF* onS, QPointF* onT);

// A result point: a small upright cross.
void addMark(QPainterPath& path, const QPointF& p);
// The arc of the angle between the arms vertex->a and vertex->b (the one of at most 180 degrees).
void addAngleArc(QPainterPath& path, const QPointF& vertex, const QPointF& a, const QPointF& b,
                 double radius);
void addSegment(QPainterPath& path, const QPointF& a, const QPointF& b);
// When p lies beyond the segment, the segment's extension from its nearer end to p.
void addExtension(QPainterPath& path, const QLineF& segment, const QPointF& p);

// Whether every coordinate of the path and the point is one a scene can hold.
bool drawable(const QPainterPath& path);

} // namespace Construction
