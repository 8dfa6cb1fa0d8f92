#include "GeometryIntersections.h"

#include <algorithm>
#include <cmath>
#include <limits>

int rectangleLineIntersectPoint(QRectF r, QPointF p, QPointF& out) {
    const QLineF ray(r.center(), p);
    const QLineF edges[] = {QLineF(r.topLeft(), r.topRight()), QLineF(r.topRight(), r.bottomRight()),
                            QLineF(r.bottomLeft(), r.bottomRight()), QLineF(r.topLeft(), r.bottomLeft())};
    for (int i = 0; i < 4; ++i) {
        QPointF hit;
        if (ray.intersects(edges[i], &hit) == QLineF::BoundedIntersection) {
            out = hit;
            return i + 1;
        }
    }
    return 0;
}

bool roundedRectLineIntersectionPoint(double radius, QRectF r, QPointF p, QPointF& out) {
    r = r.normalized();
    radius = std::clamp(radius, 0.0, std::min(r.width(), r.height()) / 2);
    QPointF hit;
    if (rectangleLineIntersectPoint(r, p, hit) == 0)
        return false;
    out = hit;
    const auto cornerCentre = [radius](double v, double low, double high, double* centre) {
        if (v < low + radius)
            *centre = low + radius;
        else if (v > high - radius)
            *centre = high - radius;
        else
            return false;
        return true;
    };
    double cx = 0;
    double cy = 0;
    if (!cornerCentre(hit.x(), r.left(), r.right(), &cx) || !cornerCentre(hit.y(), r.top(), r.bottom(), &cy))
        return true;
    const QPointF corner(cx, cy);
    // The ray from the centre leaves the rounded outline where it leaves the corner's circle.
    const QPointF origin = r.center();
    const QPointF d = hit - origin;
    const QPointF f = origin - corner;
    const double a = QPointF::dotProduct(d, d);
    const double b = 2 * QPointF::dotProduct(f, d);
    const double c = QPointF::dotProduct(f, f) - radius * radius;
    const double disc = b * b - 4 * a * c;
    if (a > 0 && disc >= 0)
        out = origin + ((-b + std::sqrt(disc)) / (2 * a)) * d;
    return true;
}

QPointF LineIntersectRect(const QRectF& rect, const QLineF& l) {
    const QRectF r = rect.normalized();
    const QPointF d = l.p2() - l.p1();
    if (d.isNull())
        return QPointF();
    // Liang-Barsky clipping of the infinite line: the exit is the smallest upper bound.
    double enter = -std::numeric_limits<double>::infinity();
    double leave = std::numeric_limits<double>::infinity();
    const auto clip = [&enter, &leave](double start, double delta, double low, double high) {
        if (delta == 0)
            return start >= low && start <= high;
        double t0 = (low - start) / delta;
        double t1 = (high - start) / delta;
        if (t0 > t1)
            std::swap(t0, t1);
        enter = std::max(enter, t0);
        leave = std::min(leave, t1);
        return true;
    };
    if (!clip(l.p1().x(), d.x(), r.left(), r.right()) || !clip(l.p1().y(), d.y(), r.top(), r.bottom()) ||
        enter > leave)
        return QPointF();
    return l.p1() + leave * d;
}

QPointF pointConstrainedInRect(QPointF p, QRectF r) {
    return QPointF(std::max(r.left(), std::min(p.x(), r.right())),
                   std::max(r.top(), std::min(p.y(), r.bottom())));
}

QPoint pointConstrainedInRect(QPoint p, QRect r) {
    return QPoint(std::max(r.left(), std::min(p.x(), r.right())),
                  std::max(r.top(), std::min(p.y(), r.bottom())));
}

double distanceBetweenPointandRect(const QRectF& rect, const QPointF& p) {
    const QRectF r = rect.normalized();
    const double dx = std::max({r.left() - p.x(), 0.0, p.x() - r.right()});
    const double dy = std::max({r.top() - p.y(), 0.0, p.y() - r.bottom()});
    return std::hypot(dx, dy);
}
