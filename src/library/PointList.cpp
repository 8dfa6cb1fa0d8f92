#include "PointList.h"

#include <algorithm>
#include <utility>

namespace {

template <class Change> void changeEach(QList<QPointF>& points, Change change) {
    for (QPointF& p : points)
        p = change(p);
}

} // namespace

void pointlist_flip(QList<QPointF>& points, double height) {
    changeEach(points, [height](const QPointF& p) { return QPointF(p.x(), height - p.y()); });
}

void pointlist_resize(QList<QPointF>& points, double factor) {
    changeEach(points, [factor](const QPointF& p) { return QPointF(factor * p.x(), factor * p.y()); });
}

void pointlist_resize_offsetOUT(QList<QPointF>& points, double factor, double dx, double dy) {
    changeEach(points,
               [=](const QPointF& p) { return QPointF((p.x() + dx) * factor, (p.y() + dy) * factor); });
}

void pointlist_resize_offsetIN(QList<QPointF>& points, double factor, double dx, double dy) {
    changeEach(points,
               [=](const QPointF& p) { return QPointF((p.x() - dx) * factor, (p.y() - dy) * factor); });
}

void pointlist_map(QList<QPointF>& points, qtrans transform) {
    changeEach(points, [&transform](const QPointF& p) { return transform.map(p); });
}

void pointlist_resizeXY(QList<QPointF>& points, double sx, double sy) {
    qtrans transform;
    transform.scale(sx, sy);
    pointlist_map(points, transform);
}

void pointlist_rotate(QList<QPointF>& points, double angle, bool mirror) {
    qtrans transform;
    if (mirror)
        transform.toggleMirror_x();
    transform.rotate(angle);
    pointlist_map(points, transform);
}

QRectF pointlist_toRectF(QList<QList<QPointF>> lists) {
    const QPointF* first = nullptr;
    for (const QList<QPointF>& list : std::as_const(lists)) {
        if (!list.isEmpty()) {
            first = &list.first();
            break;
        }
    }
    if (!first)
        return QRectF(0, 0, 0, 0);
    double minX = first->x(), maxX = first->x();
    double minY = first->y(), maxY = first->y();
    for (const QList<QPointF>& list : std::as_const(lists)) {
        for (const QPointF& p : list) {
            minX = std::min(minX, p.x());
            maxX = std::max(maxX, p.x());
            minY = std::min(minY, p.y());
            maxY = std::max(maxY, p.y());
        }
    }
    return QRectF(minX, minY, maxX - minX, maxY - minY);
}
