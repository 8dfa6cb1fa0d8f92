#pragma once

#include <QPointF>

#include <cmath>

// Distance to the segment ab, its direction normalised once for the many points measured against it;
// along and across the unit direction, so no squared coordinate can overflow. A segment of no length
// measures from its point.
class Chord {
public:
    Chord(const QPointF& a, const QPointF& b)
        : a(a)
        , b(b) {
        const QPointF d = b - a;
        length = std::hypot(d.x(), d.y());
        u = length > 0 ? d / length : QPointF();
    }

    double distance(const QPointF& p) const {
        const QPointF ap = p - a;
        const double along = QPointF::dotProduct(ap, u);
        if (along <= 0)
            return std::hypot(ap.x(), ap.y());
        if (along >= length)
            return std::hypot(p.x() - b.x(), p.y() - b.y());
        return std::fabs(u.x() * ap.y() - u.y() * ap.x());
    }

private:
    QPointF a, b, u;
    double length = 0;
};
