#include "GeometryFitting.h"

#include <cmath>

namespace {

QPointF meanPoint(const QList<QPointF>& pts) {
    double x = 0, y = 0;
    for (const QPointF& p : pts) {
        x += p.x();
        y += p.y();
    }
    return QPointF(x / pts.size(), y / pts.size());
}

} // namespace

QPointF circleCenter(QPointF a, QPointF b, QPointF c) {
    const double ma = (b.y() - a.y()) / (b.x() - a.x());
    const double mb = (c.y() - b.y()) / (c.x() - b.x());
    const double x =
        (ma * mb * (a.y() - c.y()) + mb * (a.x() + b.x()) - ma * (b.x() + c.x())) / (2 * (mb - ma));
    const double y = (a.y() + b.y()) / 2 - (x - (a.x() + b.x()) / 2) / ma;
    return QPointF(x, y);
}

void compute_circle(QPointF* p1, QPointF* p2, QPointF* p3, double* cx, double* cy, double* r) {
    const double x1 = p1->x(), y1 = p1->y();
    const double x2 = p2->x(), y2 = p2->y();
    const double x3 = p3->x(), y3 = p3->y();
    const double s1 = x1 * x1 + y1 * y1;
    const double s2 = x2 * x2 + y2 * y2;
    const double s3 = x3 * x3 + y3 * y3;
    const double A = (y2 - y3) * x1 - (x2 - x3) * y1 + (y3 * x2 - x3 * y2);
    const double Bx = (y2 - y3) * s1 - (s2 - s3) * y1 + (y3 * s2 - y2 * s3);
    const double By = -((x2 - x3) * s1 - (s2 - s3) * x1 + (x3 * s2 - x2 * s3));
    const double C = (y3 * x2 - y2 * x3) * s1 - (y3 * s2 - y2 * s3) * x1 + (x3 * s2 - x2 * s3) * y1;
    *cx = Bx / (2 * A);
    *cy = By / (2 * A);
    *r = std::sqrt(By * By + Bx * Bx + 4 * A * C) / (2 * std::fabs(A));
}

namespace {

// Slope of the chord uv, 0 standing for a vertical chord.
double chordSlope(const QPointF& u, const QPointF& v) {
    return u.x() == v.x() ? 0 : (v.y() - u.y()) / (v.x() - u.x());
}

struct Chord {
    double slope;
    QPointF middle;
    // Intercept of the perpendicular bisector y = -x / slope + k.
    double bisector() const { return middle.y() + middle.x() / slope; }
};

} // namespace

bool CalculCercle3Pts(QPointF& p1, QPointF& p2, QPointF& p3, QPointF& centre, double& r) {
    const Chord c13{chordSlope(p1, p3), (p1 + p3) / 2};
    const Chord c12{chordSlope(p1, p2), (p1 + p2) / 2};
    const Chord c23{chordSlope(p2, p3), (p2 + p3) / 2};
    if (c13.slope == c12.slope || c12.slope == c23.slope || c13.slope == c23.slope)
        return false;
    const Chord* pairs[3][2] = {{&c13, &c12}, {&c13, &c23}, {&c12, &c23}};
    for (const auto& pair : pairs) {
        const Chord& first = *pair[0];
        const Chord& second = *pair[1];
        if (first.slope == 0 || second.slope == 0)
            continue;
        const double k1 = first.bisector();
        const double k2 = second.bisector();
        const double x = (k2 - k1) / (-1 / first.slope + 1 / second.slope);
        centre = QPointF(x, -x / first.slope + k1);
        r = std::sqrt((p1.x() - centre.x()) * (p1.x() - centre.x()) +
                      (p1.y() - centre.y()) * (p1.y() - centre.y()));
        return true;
    }
    return false;
}

int in_circle(QPointF* a, QPointF* b, QPointF* c, QPointF* p, bool exact) {
    if (exact) {
        // The lifted 4x4 determinant, reduced to 3x3 by translating p to the origin.
        const double ax = a->x() - p->x(), ay = a->y() - p->y();
        const double bx = b->x() - p->x(), by = b->y() - p->y();
        const double cx = c->x() - p->x(), cy = c->y() - p->y();
        const double al = ax * ax + ay * ay;
        const double bl = bx * bx + by * by;
        const double cl = cx * cx + cy * cy;
        const double det = ax * (by * cl - bl * cy) - ay * (bx * cl - bl * cx) + al * (bx * cy - by * cx);
        return det < 0 ? 1 : (det > 0 ? -1 : 0);
    }
    double cx = 0, cy = 0, r = 0;
    compute_circle(a, b, c, &cx, &cy, &r);
    const double d = std::sqrt((p->x() - cx) * (p->x() - cx) + (p->y() - cy) * (p->y() - cy));
    const double tolerance = 9.5367431640625e-7;
    if (d < r - tolerance)
        return 1;
    if (d > r + tolerance)
        return -1;
    return 0;
}

bool CalculerCercleNPts(QList<QPointF> pts, QPointF& centre, double& r) {
    const int n = pts.size();
    if (n < 3)
        return false;
    const QPointF mean = meanPoint(pts);
    const double xm = mean.x(), ym = mean.y();
    double Suu = 0, Svv = 0, Suv = 0, Su = 0, Sv = 0;
    for (const QPointF& p : pts) {
        const double u = p.x() - xm;
        const double v = p.y() - ym;
        const double l = u * u + v * v;
        Suu += u * u;
        Svv += v * v;
        Suv += u * v;
        Su += l * u;
        Sv += l * v;
    }
    Suu /= n;
    Svv /= n;
    Suv /= n;
    Su /= n;
    Sv /= n;
    const double D = 2 * (Suu * Svv - Suv * Suv);
    const double uc = (Su * Svv - Sv * Suv) / D;
    const double vc = (Sv * Suu - Su * Suv) / D;
    centre = QPointF(xm + uc, ym + vc);
    r = std::sqrt(uc * uc + vc * vc + Suu + Svv);
    return true;
}

bool CalculerDroiteNPts(QList<QPointF> pts, QPointF& p1, QPointF& p2, long width) {
    const int n = pts.size();
    if (n < 2)
        return false;
    const QPointF mean = meanPoint(pts);
    const double xm = mean.x(), ym = mean.y();
    double sxy = 0, sxx = 0;
    for (const QPointF& p : pts) {
        const double dx = xm - p.x();
        const double dy = ym - p.y();
        sxy += dx * dy;
        sxx += dx * dx;
    }
    const double b = sxy / sxx;
    const double a = ym - b * xm;
    p1 = QPointF(0, a);
    p2 = QPointF(width, width * b + a);
    return true;
}

double Vickers1(double F, double d) {
    return 0.189 * F / (d * d);
}

double Vickers2(double F, double d) {
    // 68 degrees is half the 136 degrees between the indenter's faces; g turns newtons into kgf.
    return 2 * F * std::sin(1.1868238913561442) / (9.80665 * d * d);
}
