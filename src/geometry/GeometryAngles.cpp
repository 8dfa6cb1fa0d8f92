#include "GeometryAngles.h"
#include "SinglePrecision.h"

#include <QPolygonF>
#include <QTransform>

#include <cmath>

double correctAngle(double a) {
    const double twoPi = 6.283185307179586;
    while (a > twoPi)
        a -= twoPi;
    while (a < 0)
        a += twoPi;
    return a;
}

double oppositeAngle(double a) {
    return a > 180 ? a - 180 : a + 180;
}

double angle(QPointF p1, QPointF p2) {
    const double dx = p2.x() - p1.x();
    const double dy = p2.y() - p1.y();
    if (dx == 0)
        return dy > 0 ? 90 : -90;
    double a = std::atan(dy / dx) * 0.5 / 3.141592653589793 * 360;
    if (dx < 0)
        a -= 180;
    if (a < -180)
        a += 360;
    if (a <= -180)
        a += 360;
    if (a > 180)
        a -= 360;
    return a;
}

double AngleVecteur(QPointF& p1, QPointF& p2) {
    if (p1.x() == p2.x())
        return p1.y() > p2.y() ? 270 : 90;
    if (p1.y() == p2.y())
        return p1.x() > p2.x() ? 180 : 0;
    double a = std::atan((p2.y() - p1.y()) / (p2.x() - p1.x())) * 57.29577951308232;
    if (!(p2.x() > p1.x()))
        a += 180;
    else if (!(p2.y() > p1.y()))
        a += 360;
    return a;
}

double GetAngle(double a, double b) {
    return 3.141592653589793 - std::atan(a / b);
}

double medianAngle(const QRectF& r) {
    // The truncated pi is what stored drawings were measured with.
    return std::atan(r.height() / r.width()) * (-180) / 3.14159265358974;
}

QPointF arc_getPointAtAngle(double a, double r, QPointF c) {
    return QPointF(c.x() + r * std::cos(a), c.y() + r * std::sin(a));
}

QPointF arc_getEndPoint(double a, double r, QPointF c) {
    return arc_getPointAtAngle(a, r, c);
}

double distance(QPointF p1, QPointF p2, QPointF p) {
    const double dx = p2.x() - p1.x();
    const double dy = p2.y() - p1.y();
    if (dx == 0)
        return dy > 0 ? p1.x() - p.x() : p.x() - p1.x();
    const double m = dy / dx;
    const double v = p1.y() - p1.x() * m + m * p.x() - p.y();
    return dx > 0 ? -v : v;
}

double SideLength(double x1, double y1, double x2, double y2) {
    const double dy = std::fabs(y1 - y2);
    const double dx = std::fabs(x1 - x2);
    return std::sqrt(dy * dy + dx * dx);
}

double vRelativeEuclideanDistance(const double& a, const double& b) {
    if (a == 0 || b == 0)
        return 0.5;
    return std::fabs(a - b) * 0.5 / (std::fabs(a) + std::fabs(b));
}

QPointF GetCenter(QPointF a, QPointF b) {
    return QPointF((a.x() + b.x()) / 2, (a.y() + b.y()) / 2);
}

QPointF GetBeyond(QPointF a, QPointF m, QPointF b) {
    const QPointF mid = GetCenter(a, b);
    return mid + 2 * (m - mid);
}

QPointF symmetric(QPointF p, QPointF a, QPointF b) {
    if (b.x() - a.x() == 0)
        return QPointF(2 * a.x() - p.x(), p.y());
    if (b.y() - a.y() == 0)
        return QPointF(p.x(), 2 * a.y() - p.y());
    const double m = (b.y() - a.y()) / (b.x() - a.x());
    const double k = a.y() - m * a.x();
    const double t = (p.x() / m + p.y() - k) / (1 / m + m);
    return QPointF(2 * t - p.x(), 2 * (m * t + k) - p.y());
}

double getHeightByWidth(double w, double h, double newW) {
    return h / (w / newW);
}

QRectF lineToInnerRect(const QLineF& l, const double& d) {
    const double s = std::sqrt(d * d * 0.5);
    QRectF r(0, 0, s, s);
    r.moveCenter(l.center());
    return r;
}

QRectF rectGenerate(QPointF a, QPointF b) {
    QLineF normal = QLineF(b, a).normalVector();
    normal.setLength(-1);
    const QPointF end = normal.p2();
    return QRectF(a.x(), a.y(), end.x() - a.x(), end.y() - a.y());
}

QPointF rotatedPoint(QPointF p, QPointF c, double angle) {
    // Single precision on purpose: positions saved by earlier versions were rotated this way.
    const double a = -angle * 0.0174532925;
    const double s = toSingle(std::sin(a));
    const double co = toSingle(std::cos(a));
    const double dx = p.x() - c.x();
    const double dy = p.y() - c.y();
    return QPointF(toSingle(co * dx - s * dy) + c.x(), toSingle(co * dy + s * dx) + c.y());
}

QRectF rotatedRect(const QRectF& r, int angle) {
    const QPointF c = r.center();
    QTransform t;
    t.translate(c.x(), c.y()).rotate(angle).translate(-c.x(), -c.y());
    return t.mapRect(r);
}

QRectF GetBoundingRect(QRectF r, double angle) {
    const double a = angle * 0.017453292519943295;
    const double s = std::sin(a);
    const double co = std::cos(a);
    const QPointF c = r.center();
    QPolygonF corners;
    for (const QPointF& p : {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()}) {
        const QPointF d = p - c;
        corners << QPointF(c.x() + d.x() * co - d.y() * s, c.y() + d.x() * s + d.y() * co);
    }
    return corners.boundingRect();
}

bool IsContained(QRectF r1, QRectF inner, double angle, double& dx, double& dy) {
    inner = GetBoundingRect(inner, angle);
    dx = 0;
    dy = 0;
    if (r1.contains(inner))
        return true;
    if (r1.left() - inner.left() > std::fabs(dx))
        dx = r1.left() - inner.left();
    else if (inner.right() - r1.right() > std::fabs(dx))
        dx = r1.right() - inner.right();
    if (r1.top() - inner.top() > std::fabs(dy))
        dy = r1.top() - inner.top();
    else if (inner.bottom() - r1.bottom() > std::fabs(dy))
        dy = r1.bottom() - inner.bottom();
    return false;
}
