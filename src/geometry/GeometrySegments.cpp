#include "GeometrySegments.h"

#include "GeometryChord.h"
#include "GeometryFinite.h"
#include "GeometryOrientation.h"

#include <cmath>
#include <limits>

double distancePointToSegment(const QPointF& p, const QPointF& a, const QPointF& b) {
    if (!isFinitePoint(p) || !isFinitePoint(a) || !isFinitePoint(b))
        return std::numeric_limits<double>::infinity();
    return Chord(a, b).distance(p);
}

double distanceBetweenSegments(const QPointF& a1, const QPointF& a2, const QPointF& b1, const QPointF& b2) {
    const QList<QPointF> ends{a1, a2, b1, b2};
    if (!allFinite(ends))
        return std::numeric_limits<double>::infinity();
    const double s = unitScale(ends);
    if (segmentsTouch(a1 * s, a2 * s, b1 * s, b2 * s))
        return 0;
    return std::min({distancePointToSegment(a1, b1, b2), distancePointToSegment(a2, b1, b2),
                     distancePointToSegment(b1, a1, a2), distancePointToSegment(b2, a1, a2)});
}
