#include "GeometryIntersections.h"

#include <cmath>
#include <limits>

namespace {

struct Direction {
    double dx1, dy1, dx2, dy2;
};

Direction directions(QPointF a1, QPointF a2, QPointF b1, QPointF b2) {
    return {a2.x() - a1.x(), a2.y() - a1.y(), b2.x() - b1.x(), b2.y() - b1.y()};
}

// C and D in the frame where A is the origin and AB lies on the positive x axis.
struct FrameOnAB {
    double length, cos, sin;
    QPointF c, d;
};

FrameOnAB frameOnAB(double Ax, double Ay, double Bx, double By, double Cx, double Cy, double Dx, double Dy) {
    FrameOnAB f;
    Bx -= Ax;
    By -= Ay;
    f.length = std::sqrt(Bx * Bx + By * By);
    f.cos = Bx / f.length;
    f.sin = By / f.length;
    f.c = QPointF((Cx - Ax) * f.cos + (Cy - Ay) * f.sin, (Cy - Ay) * f.cos - (Cx - Ax) * f.sin);
    f.d = QPointF((Dx - Ax) * f.cos + (Dy - Ay) * f.sin, (Dy - Ay) * f.cos - (Dx - Ax) * f.sin);
    return f;
}

// Where the turned CD crosses the x axis.
double crossingOnAB(const FrameOnAB& f) {
    return f.d.x() + (f.c.x() - f.d.x()) * f.d.y() / (f.d.y() - f.c.y());
}

} // namespace

bool parallel(QPointF a1, QPointF a2, QPointF b1, QPointF b2) {
    const Direction d = directions(a1, a2, b1, b2);
    if (d.dy1 != 0 && d.dy2 != 0)
        return d.dx1 / d.dy1 == d.dx2 / d.dy2;
    if (d.dx1 == 0 || d.dx2 == 0)
        return false;
    return d.dy1 / d.dx1 == d.dy2 / d.dx2;
}

bool nearlyParallel(QPointF a1, QPointF a2, QPointF b1, QPointF b2) {
    const Direction d = directions(a1, a2, b1, b2);
    double diff = 0;
    if (d.dy1 != 0 && d.dy2 != 0) {
        diff = d.dx2 / d.dy2 - d.dx1 / d.dy1;
    } else {
        if (d.dx1 == 0 || d.dx2 == 0)
            return false;
        diff = d.dy2 / d.dx2 - d.dy1 / d.dx1;
    }
    return diff >= -0.005 && diff <= 0.005;
}

bool lineIntersection(double Ax, double Ay, double Bx, double By, double Cx, double Cy, double Dx, double Dy,
                      double* X, double* Y) {
    if ((Ax == Bx && Ay == By) || (Cx == Dx && Cy == Dy))
        return false;
    const FrameOnAB f = frameOnAB(Ax, Ay, Bx, By, Cx, Cy, Dx, Dy);
    if (f.c.y() == f.d.y())
        return false;
    const double pos = crossingOnAB(f);
    *X = Ax + pos * f.cos;
    *Y = Ay + pos * f.sin;
    return true;
}

bool lineSegmentIntersection(double Ax, double Ay, double Bx, double By, double Cx, double Cy, double Dx,
                             double Dy, double* X, double* Y) {
    if ((Ax == Bx && Ay == By) || (Cx == Dx && Cy == Dy))
        return false;
    if ((Ax == Cx && Ay == Cy) || (Bx == Cx && By == Cy) || (Ax == Dx && Ay == Dy) || (Bx == Dx && By == Dy))
        return false;
    const FrameOnAB f = frameOnAB(Ax, Ay, Bx, By, Cx, Cy, Dx, Dy);
    if ((f.c.y() < 0 && f.d.y() < 0) || (f.c.y() >= 0 && f.d.y() >= 0))
        return false;
    const double pos = crossingOnAB(f);
    if (pos < 0 || pos > f.length)
        return false;
    *X = Ax + pos * f.cos;
    *Y = Ay + pos * f.sin;
    return true;
}

long CalculIntersectionDroites(QPointF A, QPointF B, QPointF C, QPointF D, QPointF& out, long width,
                               long height) {
    out = QPointF(0, 0);
    if (A == B || C == D || (A == C && B == D))
        return -1;
    const double m1 = (A.y() - B.y()) / (A.x() - B.x());
    const double m2 = (C.y() - D.y()) / (C.x() - D.x());
    const double k1 = A.y() - A.x() * m1;
    const double k2 = C.y() - C.x() * m2;
    if (m1 == m2)
        return 0;
    // Only +infinity marks a vertical line; -infinity goes through the general formula.
    const double vertical = std::numeric_limits<double>::infinity();
    double x = 0;
    double y = 0;
    if (m1 == vertical) {
        x = A.x();
        y = m2 == 0 ? C.y() : m2 * A.x() + k2;
    } else if (m2 == vertical) {
        x = C.x();
        y = m1 == 0 ? A.y() : m1 * C.x() + k1;
    } else if (m1 == 0) {
        x = (k2 - k1) / (m1 - m2);
        y = A.y();
    } else if (m2 == 0) {
        x = (k2 - k1) / (m1 - m2);
        y = C.y();
    } else {
        x = (k2 - k1) / (m1 - m2);
        y = m1 * x + k1;
    }
    out = QPointF(x, y);
    const bool inside = x >= 0 && x <= width && y >= 0 && y <= height;
    return inside ? 1 : 2;
}

bool isPointOnLine(QPointF a, QPointF b, QPointF p) {
    const auto length = [](QPointF u, QPointF v) { return std::trunc(QLineF(u, v).length()); };
    return length(a, b) == length(b, p) + length(a, p);
}
