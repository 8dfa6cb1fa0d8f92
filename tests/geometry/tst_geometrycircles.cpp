#include "DataColumns.h"
#include "GeometryArcs.h"
#include "GeometryCircleFits.h"
#include "GeometryEllipseMetrics.h"
#include "GeometryTestTables.h"

namespace {

constexpr double Pi = 3.141592653589793;
const double NaN = std::numeric_limits<double>::quiet_NaN();

QList<QPointF> onArc(const QPointF& c, double r, double from, double to, int n) {
    QList<QPointF> points;
    for (int i = 0; i < n; ++i)
        points.append(onCircle(c, r, from + (to - from) * i / (n - 1)));
    return points;
}

} // namespace

class TestGeometryCircles : public QObject {
    Q_OBJECT
private slots:
    void throughThreePoints_data() {
        // centre: none() when refused
        addColumns<QList<QPointF>, QPointF, double>("points", "centre", "radius");
        QTest::newRow("right angle on the axes")
            << QList<QPointF>{{0, 0}, {10, 0}, {0, 10}} << QPointF(5, 5) << std::sqrt(50.0);
        QTest::newRow("3-4-5 triangle") << QList<QPointF>{{0, 0}, {4, 0}, {0, 3}} << QPointF(2, 1.5) << 2.5;
        QTest::newRow("far from the origin")
            << onArc({1e6, -2e6}, 3, 10, 250, 3) << QPointF(1e6, -2e6) << 3.0;
        QTest::newRow("nearly collinear")
            << QList<QPointF>{{0, 0}, {5, 5 + 1e-12}, {10, 10}} << none() << 0.0;
        QTest::newRow("coincident") << QList<QPointF>{{1, 1}, {1, 1}, {4, 0}} << none() << 0.0;
        QTest::newRow("NaN") << QList<QPointF>{{0, 0}, {NaN, 0}, {0, 10}} << none() << 0.0;
        QTest::newRow("overflowing chord")
            << QList<QPointF>{{-1.7e308, 0}, {1.7e308, 0}, {0, 1e308}} << none() << 0.0;
    }
    void throughThreePoints() {
        QFETCH(QList<QPointF>, points);
        QFETCH(QPointF, centre);
        QFETCH(double, radius);
        const std::optional<Circle> circle = circleThroughPoints(points[0], points[1], points[2]);
        QCOMPARE(circle.has_value(), !std::isnan(centre.x()));
        QCOMPARE(arcThroughPoints(points[0], points[1], points[2]).has_value(), circle.has_value());
        QVERIFY(!circle ||
                (near(circle->centre, centre, 1e-9 * radius) && std::fabs(circle->radius - radius) < 1e-9));
    }

    // Points scattered by +-0.1 around a circle and three far off: those three are dropped. Then the
    // refusals: too few, collinear, coincident or infinite points.
    void robustFit() {
        const QPointF c(120.5, -40.25);
        QList<QPointF> points = onArc(c, 50, 0, 345, 24);
        for (int i = 0; i < points.size(); ++i)
            points[i] = c + (points[i] - c) * (50 + (i % 2 ? 0.1 : -0.1)) / 50;
        points.insert(5, onCircle(c, 70, 80));
        points.insert(11, onCircle(c, 20, 190));
        points.append(c + QPointF(1, 1));
        const std::optional<CircleFit> fit = fitCircleRobust(points);
        QVERIFY(fit && fit->kept.size() == 24);
        QVERIFY(!fit->kept.contains(5) && !fit->kept.contains(11) && !fit->kept.contains(26));
        QVERIFY(near(fit->centre, c, 1e-3) && std::fabs(fit->radius - 50) < 1e-3);
        QVERIFY(std::fabs(fit->maxDeviation - 0.1) < 1e-3 && std::fabs(fit->rmsDeviation - 0.1) < 1e-3);
        const std::optional<CircleFit> exact = fitCircleRobust(onArc(c, 7, 0, 90, 5));
        QVERIFY(exact && exact->kept == QList<int>({0, 1, 2, 3, 4}) && exact->maxDeviation < 1e-9);
        const std::optional<Circle> huge = fitCircle(onArc(QPointF(1e300, -1e300), 1e299, 0, 300, 7));
        QVERIFY(huge && near(huge->centre / 1e299, QPointF(10, -10)) &&
                std::fabs(huge->radius / 1e299 - 1) < 1e-9);
        const double inf = std::numeric_limits<double>::infinity();
        for (const QList<QPointF>& refused : {QList<QPointF>{{1, 2}, {3, 4}},
                                              {{0, 0}, {1, 1}, {2, 2}, {3, 3}},
                                              {{2, 2}, {2, 2}, {2, 2}},
                                              {{0, 0}, {1, 0}, {0, inf}}})
            QVERIFY(!fitCircle(refused) && !fitCircleRobust(refused) && !fitArc(refused));
    }

    void arcs_data() {
        addColumns<QList<QPointF>, double, double>("points", "start", "span");
        const QPointF c(5, -5);
        QTest::newRow("three points, across 0") << onArc(c, 10, -30, 30, 3) << 330.0 << 60.0;
        QTest::newRow("three points, long way back") << onArc(c, 10, 0, -270, 3) << 0.0 << -270.0;
        QTest::newRow("fitted, backwards across 0") << onArc(c, 10, 20, -10, 7) << 20.0 << -30.0;
        QTest::newRow("fitted, 300 degrees") << onArc(c, 10, 10, 310, 31) << 10.0 << 300.0;
    }
    void arcs() {
        QFETCH(QList<QPointF>, points);
        QFETCH(double, start);
        QFETCH(double, span);
        const std::optional<Arc> arc =
            points.size() == 3 ? arcThroughPoints(points[0], points[1], points[2]) : fitArc(points);
        QVERIFY(arc && std::fabs(arc->radius - 10) < 1e-9 && near(arc->centre, QPointF(5, -5), 1e-9));
        QVERIFY(std::fabs(arc->startAngle - start) < 1e-9 && std::fabs(arc->spanAngle - span) < 1e-9);
    }

    // Arc and ellipse measures; the perimeters are 4 a E(e) to 20 digits, and QCOMPARE holds them to 1e-12.
    void measures_data() {
        resultColumns<double>();
        row("half circle chord", arcChord(10, 180), 20);
        row("half circle length", arcLength(10, 180), 10 * Pi);
        row("negative sixth sagitta", arcSagitta(10, -60), 10 - 5 * std::sqrt(3.0));
        row("sagitta beyond a turn", arcSagitta(1, 720), 2);
        row("length of infinite radius", arcLength(std::numeric_limits<double>::infinity(), 90), 0);
        row("circle perimeter", ellipsePerimeter(3, 3), 6 * Pi);
        row("2 x 1 perimeter", ellipsePerimeter(2, 1), 9.688448220547676198);
        row("needle perimeter", ellipsePerimeter(10, 1e-6), 40.00000000000340087);
        row("NaN perimeter", ellipsePerimeter(NaN, 1), 0);
        row("3 x 5 eccentricity", ellipseEccentricity(5, 3), 0.8);
        row("segment eccentricity", ellipseEccentricity(0, 2), 1);
        row("3 x 5 area", ellipseArea(-3, 5), 15 * Pi);
    }
    void measures() { compareValue(); }
};

QTEST_GUILESS_MAIN(TestGeometryCircles)
#include "tst_geometrycircles.moc"
