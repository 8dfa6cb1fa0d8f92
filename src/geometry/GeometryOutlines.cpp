#include "GeometryOutlines.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const double degree = 3.141592653589793 / 180;

QRectF circleRect(const QPointF& c, double r) {
    return QRectF(c.x() - r, c.y() - r, 2 * r, 2 * r);
}

QPointF pointAt(const QPointF& c, double r, double degrees) {
    return QPointF(c.x() + r * std::cos(degrees * degree), c.y() + r * std::sin(degrees * degree));
}

} // namespace

void addArc(QPainterPath& path, const QPointF& c, double r, double startAngle, double spanAngle) {
    // QPainterPath turns counter-clockwise on screen; scene angles turn the other way.
    path.moveTo(pointAt(c, r, startAngle));
    path.arcTo(circleRect(c, r), -startAngle, -spanAngle);
}

void addSector(QPainterPath& path, const QPointF& c, double r, double startAngle, double spanAngle) {
    path.moveTo(c);
    path.arcTo(circleRect(c, r), -startAngle, -spanAngle);
    path.closeSubpath();
}

void addCircle(QPainterPath& path, const QPointF& c, double r) {
    path.addEllipse(c, r, r);
}

QPolygonF spirale(const QPointF& c, double r0, double r1, double turns, int pointsPerTurn) {
    QPolygonF points;
    const int count = static_cast<int>(std::ceil(std::fabs(turns) * std::max(pointsPerTurn, 3)));
    if (!(count > 0) || count > 1000000)
        return points;
    for (int i = 0; i <= count; ++i) {
        const double f = double(i) / count;
        points << pointAt(c, r0 + (r1 - r0) * f, 360 * turns * f);
    }
    return points;
}

QPolygonF circle2polygon(const QPointF& c, double r, int n) {
    QPolygonF points;
    if (n < 3)
        return points;
    points.reserve(n);
    for (int i = 0; i < n; ++i)
        points << pointAt(c, r, 360.0 * i / n);
    return points;
}

QPolygonF GetPointsFromEquation(const QVector<double>& coeffs, double x0, double x1, int n) {
    QPolygonF points;
    if (n < 2 || coeffs.isEmpty())
        return points;
    points.reserve(n);
    for (int i = 0; i < n; ++i) {
        const double x = i == n - 1 ? x1 : x0 + (x1 - x0) * i / (n - 1);
        double y = 0;
        for (int k = coeffs.size() - 1; k >= 0; --k)
            y = y * x + coeffs[k];
        points << QPointF(x, y);
    }
    return points;
}

void drawBox(QPainter* painter, const QPointF& c, double halfSize) {
    painter->drawRect(QRectF(c.x() - halfSize, c.y() - halfSize, 2 * halfSize, 2 * halfSize));
}

void drawCross(QPainter* painter, const QPointF& c, double halfSize) {
    painter->drawLine(QPointF(c.x() - halfSize, c.y()), QPointF(c.x() + halfSize, c.y()));
    painter->drawLine(QPointF(c.x(), c.y() - halfSize), QPointF(c.x(), c.y() + halfSize));
}

double drawAutoSizedText(QPainter* painter, const QRectF& r, const QString& text, int flags) {
    if (text.isEmpty() || r.width() <= 0 || r.height() <= 0)
        return 0;
    QFont font = painter->font();
    const auto fits = [&font, &r, &text, flags](double size) {
        font.setPointSizeF(size);
        const QRectF needed = QFontMetricsF(font).boundingRect(r, flags, text);
        return needed.width() <= r.width() && needed.height() <= r.height();
    };
    // Bisection on the point size: text extents grow monotonically with it.
    double lo = 0;
    double hi = 1;
    while (fits(hi) && hi < 4096)
        hi *= 2;
    for (int i = 0; i < 30 && hi - lo > 0.05; ++i) {
        const double mid = (lo + hi) / 2;
        (fits(mid) ? lo : hi) = mid;
    }
    if (lo <= 0)
        return 0;
    font.setPointSizeF(lo);
    painter->save();
    painter->setFont(font);
    painter->drawText(r, flags, text);
    painter->restore();
    return lo;
}

void paintRotationCenter(QPainter* painter, const QPointF& c, double radius) {
    painter->drawEllipse(c, radius, radius);
    drawCross(painter, c, radius * 1.5);
}
