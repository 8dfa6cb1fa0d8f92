#include "Circle3.h"

#include "ConstructionGeometry.h"
#include "GeometryFitting.h"
#include "GeometryOutlines.h"

#include <cmath>

using namespace Construction;

namespace {

constexpr double Pi = 3.141592653589793;

// Whether the three points lie on one line, within the rounding of their coordinates.
bool collinear(const QPointF& a, const QPointF& b, const QPointF& c) {
    const QPointF u = b - a;
    const QPointF v = c - a;
    const double cross = u.x() * v.y() - u.y() * v.x();
    const double scale = std::max(QPointF::dotProduct(u, u), QPointF::dotProduct(v, v));
    return std::abs(cross) <= 1e-9 * scale;
}

} // namespace

// Sub-type and measure kind are those of a circle.
ConstructionItem::Kind Circle3::kind() {
    return {{Need::Anything, Need::Anything, Need::Anything},
            {{QT_TR_NOOP("Diameter"), Diam},
             {QT_TR_NOOP("Radius"), Rad1},
             {QT_TR_NOOP("Area"), Aera},
             {QT_TR_NOOP("Perimeter"), Perim}},
            0x70,
            0x70};
}

QString Circle3::build(Drawing& drawing) {
    QPointF p[3] = {centroidOf(source(0)), centroidOf(source(1)), centroidOf(source(2))};
    m_radius = 0;
    if (collinear(p[0], p[1], p[2]))
        return tr("The three centres lie on one line");
    double x = 0, y = 0, r = 0;
    compute_circle(&p[0], &p[1], &p[2], &x, &y, &r);
    m_centre = QPointF(x, y);
    m_radius = r;
    m_mesureP[Dist2] = m_mesureP[Diam] = 2 * r;
    m_mesureP[Rad1] = m_mesureP[Rad2] = r;
    m_mesureP[Aera] = Pi * r * r;
    m_mesureP[Perim] = 2 * Pi * r;
    for (const QPointF& q : p)
        addSegment(drawing.lines, m_centre, q);
    addCircle(drawing.results, m_centre, r);
    drawing.points = {m_centre};
    drawing.anchor = m_centre;
    return QString();
}
