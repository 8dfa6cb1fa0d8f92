#include "DataColumns.h"
#include "GeometryHull.h"
#include "GeometryPolygonMetrics.h"
#include "GeometrySegments.h"
#include "GeometrySelfIntersection.h"
#include "GeometrySimplify.h"
#include "GeometryTestTables.h"

#include <random>

namespace {

constexpr double Pi = 3.141592653589793;
const double NaN = std::numeric_limits<double>::quiet_NaN();
const double Inf = std::numeric_limits<double>::infinity();

double cross(const QPointF& a, const QPointF& b, const QPointF& c) {
    return (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
}

bool onSegment(const QPointF& a, const QPointF& b, const QPointF& p) {
    return cross(a, b, p) == 0 && QRectF(a, b).normalized().adjusted(0, 0, 1e-9, 1e-9).contains(p);
}

// Self-intersection by its definition, on every pair of edges: edges that are not neighbours share no
// point, neighbours only their common vertex (no folding back).
bool everyPairTest(QPolygonF p, bool closed) {
    p.erase(std::unique(p.begin(), p.end()), p.end());
    while (closed && p.size() > 1 && p.last() == p.first())
        p.removeLast();
    const int n = int(p.size()), m = closed ? n : n - 1;
    if (closed && n == 2)
        return true;
    auto folds = [](const QPointF& a, const QPointF& v, const QPointF& b) {
        return onSegment(v, b, a) || onSegment(v, a, b);
    };
    auto touch = [](const QPointF& a, const QPointF& b, const QPointF& c, const QPointF& d) {
        return (cross(a, b, c) * cross(a, b, d) < 0 && cross(c, d, a) * cross(c, d, b) < 0) ||
               onSegment(a, b, c) || onSegment(a, b, d) || onSegment(c, d, a) || onSegment(c, d, b);
    };
    for (int i = 0; i < m; ++i)
        for (int j = i + 1; j < m; ++j) {
            const QPointF a = p[i], b = p[(i + 1) % n], c = p[j], d = p[(j + 1) % n];
            if (j == i + 1                       ? folds(a, b, d)
                : closed && i == 0 && j == m - 1 ? folds(c, a, b)
                                                 : touch(a, b, c, d))
                return true;
        }
    return false;
}

// A simple star-shaped polygon: angles increase, radii vary.
QPolygonF star(int n, unsigned seed) {
    std::mt19937 random(seed);
    QPolygonF p;
    for (int i = 0; i < n; ++i)
        p.append(onCircle(QPointF(0, 0), 100 + random() % 1000 / 10.0, 360.0 * i / n));
    return p;
}

} // namespace

class TestGeometryPolygonMetrics : public QObject {
    Q_OBJECT
private slots:
    void measures_data() {
        resultColumns<double>();
        const QPolygonF square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
        const QPolygonF hexagon = regularPolygon(QPointF(0, 0), QPointF(1e300, 0), 6)->vertices;
        row("closed perimeter", polygonPerimeter(square), 8);
        row("square circularity", circularity(square), Pi / 4);
        row("huge hexagon circularity", circularity(hexagon), Pi * std::sqrt(3.0) / 6);
        row("3-4-5 circularity", circularity({{0, 0}, {4, 0}, {0, 3}}), 4 * Pi * 6 / 144);
        const std::optional<RegularPolygon> hex = regularPolygon(QPointF(1, 1), QPointF(3, 1), 6);
        row("hexagon inradius", hex->inradius, std::sqrt(3.0));
        row("hexagon side from its vertices", QLineF(hex->vertices[4], hex->vertices[5]).length(), 2);
    }
    void measures() { compareValue(); }

    void regularPolygons() {
        const QPolygonF hex = regularPolygon(QPointF(1, 1), QPointF(3, 1), 6)->vertices;
        QVERIFY(hex.size() == 6 && near(hex[1], QPointF(2, 1 + std::sqrt(3.0))));
        QVERIFY(!regularPolygon({}, {}, 5) && !regularPolygon({}, QPointF(1, 0), 2));
        QVERIFY(!regularPolygon({}, QPointF(1, 0), 1000000) && !regularPolygon({}, QPointF(Inf, 0), 5));
    }

    void calipers_data() {
        // feret: length, angle (NaN: any)
        addColumns<QPolygonF, QList<double>, QList<double>>("points", "feret", "width");
        const double a = std::atan2(3, 4) * 180 / Pi;
        QTest::newRow("3-4-5 triangle")
            << QPolygonF{{0, 0}, {4, 0}, {0, 3}} << QList<double>{5, a} << QList<double>{2.4, 90 + a};
        QTest::newRow("trapezoid with inner points")
            << QPolygonF{{0, 0}, {5, 1}, {10, 0}, {11, 2}, {0, 2}, {NaN, 5}}
            << QList<double>{std::sqrt(125.0), 180 - std::atan2(2, 11) * 180 / Pi} << QList<double>{2, 90};
        QTest::newRow("hexagon") << regularPolygon({}, QPointF(1, 0), 6)->vertices << QList<double>{2, NaN}
                                 << QList<double>{std::sqrt(3.0), NaN};
        QTest::newRow("collinear") << QPolygonF{{0, 0}, {1, 1}, {3, 3}} << QList<double>{std::sqrt(18.0), 135}
                                   << QList<double>{0, 45};
        QTest::newRow("huge") << QPolygonF{{0, 0}, {4e300, 0}, {0, 3e300}} << QList<double>{5e300, a}
                              << QList<double>{2.4e300, 90 + a};
    }
    void calipers() {
        QFETCH(QPolygonF, points);
        QFETCH(QList<double>, feret);
        QFETCH(QList<double>, width);
        const std::optional<Caliper> f = maxFeretDiameter(points), w = minCaliperWidth(points);
        QVERIFY(f && w);
        for (const auto& [c, want] : {std::pair(*f, feret), std::pair(*w, width)}) {
            QVERIFY(std::fabs(c.length - want[0]) <= 1e-12 * feret[0] &&
                    !(std::fabs(c.angle - want[1]) > 1e-9));
            QVERIFY(std::fabs(std::hypot(c.to.x() - c.from.x(), c.to.y() - c.from.y()) - want[0]) <=
                    1e-12 * feret[0]);
        }
    }

    void hulls() {
        const QPolygonF hull =
            convexHull({{0, 0}, {5, 1}, {10, 0}, {10, 2}, {10, 1}, {3, 0}, {0, 2}, {0, 0}});
        QCOMPARE(hull, QPolygonF({{0, 0}, {10, 0}, {10, 2}, {0, 2}})); // clockwise on screen
        QCOMPARE(convexHull({{1, 1}, {NaN, 0}}), QPolygonF({{1, 1}}));
        QVERIFY(convexHull({}).isEmpty() && !maxFeretDiameter({}) && !minCaliperWidth({{NaN, NaN}}));
    }

    void selfIntersections_data() {
        addColumns<QPolygonF, bool, bool>("polygon", "closed", "intersects");
        QTest::newRow("NaN") << QPolygonF{{0, 0}, {4, 0}, {NaN, 4}} << true << true;
        QTest::newRow("huge bow tie")
            << QPolygonF{{0, 0}, {1e300, 1e300}, {1e300, 0}, {0, 1e300}} << true << true;
        QTest::newRow("star, 100000 vertices") << star(100000, 1) << true << false;
        // One vertex moved far out on the other side: its edges cross the star's far side.
        QPolygonF crossed = star(100000, 2);
        crossed[500] = onCircle(QPointF(0, 0), 1000, 360.0 * 500 / 100000 + 180);
        QTest::newRow("star, one vertex across") << crossed << true << true;
    }
    void selfIntersections() {
        QFETCH(QPolygonF, polygon);
        QFETCH(bool, closed);
        QFETCH(bool, intersects);
        QCOMPARE(polygonSelfIntersects(polygon, closed), intersects);
    }

    // Small polygons on a coarse grid: full of shared vertices, collinear edges and touching points.
    void selfIntersectionsMatchEveryPair() {
        std::mt19937 random(7);
        int intersecting = 0;
        for (int k = 0; k < 4000; ++k) {
            QPolygonF p;
            for (int i = 0; i < 3 + k % 9; ++i)
                p.append(QPointF(int(random() % (k % 2 ? 5 : 40)), int(random() % (k % 2 ? 5 : 40))));
            const bool expected = everyPairTest(p, k % 3 != 0);
            QVERIFY2(polygonSelfIntersects(p, k % 3 != 0) == expected, qPrintable(QString("case %1").arg(k)));
            intersecting += expected;
        }
        QVERIFY(intersecting > 500 && intersecting < 3500);
    }

    void distances_data() {
        resultColumns<double>();
        const QPointF a(0, 0), b(4, 0);
        row("across the segment", distancePointToSegment({2, 3}, a, b), 3);
        row("huge", distancePointToSegment({0, 1e300}, {-1e300, 0}, {1e300, 0}), 1e300);
        row("NaN", distancePointToSegment({NaN, 0}, a, b), Inf);
        row("crossing segments", distanceBetweenSegments(a, b, {2, -1}, {2, 1}), 0);
        row("T, apart", distanceBetweenSegments(a, b, {2, 1}, {2, 5}), 1);
    }
    void distances() { compareValue(); }

    void simplification() {
        const QPolygonF zigzag{{0, 0}, {1, 0.4}, {2, -0.4}, {3, 0.4}, {4, 0}};
        QCOMPARE(simplifyPolyline(zigzag, 0.5), QPolygonF({{0, 0}, {4, 0}}));
        QCOMPARE(simplifyPolyline(zigzag, 0.3), zigzag);
        QCOMPARE(simplifyPolyline({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {0, 2}, {0, 1}, {0, 0}}, 0, true),
                 QPolygonF({{0, 0}, {2, 0}, {2, 2}, {0, 2}}));
        QVERIFY(simplifyPolyline({{0, 0}, {NaN, 1}, {2, 0}}, 1).isEmpty());
        // A random walk: every dropped point stays within the tolerance of the simplified outline.
        std::mt19937 random(3);
        std::normal_distribution<double> step(0, 1);
        QPolygonF walk{{0, 0}};
        for (int i = 0; i < 20000; ++i)
            walk.append(walk.last() + QPointF(step(random), step(random)));
        for (bool closed : {false, true}) {
            const QPolygonF simple = simplifyPolyline(walk, 2.5, closed);
            QVERIFY(simple.size() > 10 && simple.size() < walk.size() / 4);
            for (int i = 0, k = 0; i < walk.size(); ++i) {
                k += k + 1 < simple.size() && walk[i] == simple[k + 1];
                QVERIFY(distancePointToSegment(walk[i], simple[k], simple[(k + 1) % simple.size()]) <= 2.5);
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestGeometryPolygonMetrics)
#include "tst_geometrypolygonmetrics.moc"
