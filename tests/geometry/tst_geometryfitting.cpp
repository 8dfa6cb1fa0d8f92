#include "DataColumns.h"
#include "GeometryTestTables.h"

namespace {

double x4[] = {0, 4, 4, 0}, y4[] = {0, 0, 3, 3};
double rx4[] = {0, 0, 4, 4}, ry4[] = {0, 3, 3, 0};
QPointF rectangle[] = {QPointF(0, 0), QPointF(4, 0), QPointF(4, 3), QPointF(0, 3)};
const QVector<QPointF> inner{QPointF(0, 0), QPointF(10, 0), QPointF(10, 10), QPointF(0, 10)};
const QVector<QPointF> outer{QPointF(-2, -2), QPointF(12, -2), QPointF(12, 12), QPointF(-2, 12)};

} // namespace

class TestGeometryFitting : public QObject {
    Q_OBJECT
private slots:
    void threePointCircles_data() {
        addColumns<QPointF, double, QList<double>>("centre", "radius", "angles");
        QTest::newRow("spread") << QPointF(3, -2) << 5.0 << QList<double>{10, 100, 220};
        QTest::newRow("close together") << QPointF(250, 400) << 80.0 << QList<double>{30, 40, 55};
        QTest::newRow("large circle") << QPointF(-1000, 2000) << 3000.0 << QList<double>{-20, 75, 150};
    }
    // The three methods side by side: each item uses its own.
    void threePointCircles() {
        QFETCH(QPointF, centre);
        QFETCH(double, radius);
        QFETCH(QList<double>, angles);
        QPointF a = onCircle(centre, radius, angles[0]);
        QPointF b = onCircle(centre, radius, angles[1]);
        QPointF c = onCircle(centre, radius, angles[2]);
        const double tolerance = 1e-7 * radius;
        QVERIFY(near(circleCenter(a, b, c), centre, tolerance));
        double cx = 0, cy = 0, r = 0;
        compute_circle(&a, &b, &c, &cx, &cy, &r);
        QVERIFY(near(QPointF(cx, cy), centre, tolerance) && std::fabs(r - radius) < tolerance);
        QPointF found;
        QVERIFY(CalculCercle3Pts(a, b, c, found, r));
        QVERIFY(near(found, centre, tolerance) && std::fabs(r - radius) < tolerance);
    }

    void threePointDegenerateCases() {
        QPointF a(0, 0), b(5, 5), c(10, 10);
        QPointF centre;
        double r = 0;
        QVERIFY(!CalculCercle3Pts(a, b, c, centre, r));
        double cx = 0, cy = 0;
        compute_circle(&a, &b, &c, &cx, &cy, &r);
        QVERIFY(std::isinf(r) || std::isnan(r));
        // A horizontal chord leaves the slope method without a bisector.
        const QPointF h = circleCenter(QPointF(0, 0), QPointF(2, 0), QPointF(1, 1));
        QVERIFY(!std::isfinite(h.x()) || !std::isfinite(h.y()));
        // A right angle on axis-parallel legs leaves no pair of usable chords.
        QPointF p1(0, 0), p2(10, 0), p3(0, 10);
        QVERIFY(!CalculCercle3Pts(p1, p2, p3, centre, r));
        // One vertical chord is fine: the other two are used.
        QPointF q1(0, 0), q2(0, 10), q3(5, 3);
        QVERIFY(CalculCercle3Pts(q1, q2, q3, centre, r));
        QVERIFY(std::fabs(std::hypot(q3.x() - centre.x(), q3.y() - centre.y()) - r) < 1e-9);
        QVERIFY(std::fabs(std::hypot(q2.x() - centre.x(), q2.y() - centre.y()) - r) < 1e-9);
    }

    void inCircle_data() {
        addColumns<QPointF, bool, int, int>("p", "exact", "counterClockwise", "clockwise");
        // The circle through (1, 0), (0, 1), (-1, 0), given in both orders.
        QTest::newRow("exact, centre") << QPointF(0, 0) << true << -1 << 1;
        QTest::newRow("exact, outside") << QPointF(3, 0) << true << 1 << -1;
        QTest::newRow("exact, on it") << QPointF(0, -1) << true << 0 << 0;
        QTest::newRow("tolerant, centre") << QPointF(0, 0) << false << 1 << 1;
        QTest::newRow("tolerant, outside") << QPointF(3, 0) << false << -1 << -1;
        QTest::newRow("tolerant, within 2^-21") << QPointF(1 + std::ldexp(1.0, -21), 0) << false << 0 << 0;
        QTest::newRow("tolerant, beyond 2^-19") << QPointF(1 + std::ldexp(1.0, -19), 0) << false << -1 << -1;
        QTest::newRow("tolerant, inside by 2^-19") << QPointF(1 - std::ldexp(1.0, -19), 0) << false << 1 << 1;
    }
    void inCircle() {
        QFETCH(QPointF, p);
        QFETCH(bool, exact);
        QFETCH(int, counterClockwise);
        QFETCH(int, clockwise);
        QPointF a(1, 0), b(0, 1), c(-1, 0);
        QCOMPARE(in_circle(&a, &b, &c, &p, exact), counterClockwise);
        QCOMPARE(in_circle(&c, &b, &a, &p, exact), clockwise);
    }

    void leastSquares() {
        QPointF centre;
        double r = 0;
        QVERIFY(!CalculerCercleNPts({QPointF(0, 0), QPointF(1, 1)}, centre, r));
        QVERIFY(CalculerCercleNPts({QPointF(15, 7), QPointF(10, 12), QPointF(5, 7)}, centre, r));
        QVERIFY(near(centre, QPointF(10, 7)) && std::fabs(r - 5) < 1e-9);
        QList<QPointF> arc;
        for (int i = 0; i < 40; ++i)
            arc << onCircle(QPointF(123.5, -45.25), 37, 20 + 3.5 * i);
        QVERIFY(CalculerCercleNPts(arc, centre, r));
        QVERIFY(near(centre, QPointF(123.5, -45.25), 1e-8) && std::fabs(r - 37) < 1e-8);

        QPointF p1, p2;
        QVERIFY(!CalculerDroiteNPts({QPointF(1, 1)}, p1, p2, 100));
        QVERIFY(
            CalculerDroiteNPts({QPointF(0, 2), QPointF(10, 7), QPointF(20, 12), QPointF(4, 4)}, p1, p2, 100));
        QVERIFY(near(p1, QPointF(0, 2)) && near(p2, QPointF(100, 52)));
        // Errors in y only: symmetric noise around y = 3 leaves the line flat.
        QVERIFY(CalculerDroiteNPts({QPointF(0, 2), QPointF(0, 4), QPointF(8, 2), QPointF(8, 4)}, p1, p2, 50));
        QVERIFY(near(p1, QPointF(0, 3)) && near(p2, QPointF(50, 3)));
        QVERIFY(CalculerDroiteNPts({QPointF(3, 0), QPointF(3, 9)}, p1, p2, 50));
        QVERIFY(!std::isfinite(p2.y()));
    }

    void values_data() {
        resultColumns<double>();
        row("Vickers1", Vickers1(10, 0.1), 189);
        row("Vickers2 at one standard gravity", Vickers2(9.80665, 1), 2 * 0.9271838545667874);
        row("shoelace area keeps the orientation", PolygonArea(x4, y4, 4), -PolygonArea(rx4, ry4, 4));
        row("shoelace area", std::fabs(PolygonArea(x4, y4, 4)), 12);
        row("point area is positive", PolygonArea(rectangle, 4), 12);
        row("point list area scales", PointListArea(QList<QPointF>(rectangle, rectangle + 4), 2), 48);
        row("Square truncates 2.9", Square(QPolygonF({{0, 0}, {2.9, 0}, {0, 2}})), 2);
        row("Square of nothing", Square(QPolygonF()), 0);
        row("contour to itself", GetLengthContour(inner, inner), 0);
        // Corners lie 2 * sqrt(2) from the other contour's corners, but only 2 from its edges.
        row("contour to a larger one", GetLengthContour(inner, outer), 2);
        row("contour to nothing", GetLengthContour(inner, {}), -1);
    }
    void values() { compareValue(); }

    void centroidCodes() {
        double xc = -7, yc = -7, area = -7;
        double x2[] = {0, 1}, y2[] = {0, 1};
        QCOMPARE(polyCentroid(x2, y2, 2, &xc, &yc, &area), 1);
        QVERIFY(xc == -7 && yc == -7 && area == -7);
        double xl[] = {0, 1, 2}, yl[] = {0, 1, 2};
        QCOMPARE(polyCentroid(xl, yl, 3, &xc, &yc, &area), 2);
        QVERIFY(xc == -7 && yc == -7 && area == 0);
        double xt[] = {0, 6, 0}, yt[] = {0, 0, 3};
        QCOMPARE(polyCentroid(xt, yt, 3, &xc, &yc, &area), 0);
        QCOMPARE(QPointF(xc, yc), QPointF(2, 1));
        QCOMPARE(std::fabs(area), 9.0);
        double area2 = 0, xc2 = 0, yc2 = 0;
        QCOMPARE(polyCentroid2({QPointF(0, 0), QPointF(0, 3), QPointF(6, 0)}, &xc2, &yc2, &area2), 0);
        QCOMPARE(area2, -area);
        QCOMPARE(QPointF(xc2, yc2), QPointF(2, 1));
        QCOMPARE(polyCentroid2({QPointF(0, 0)}, &xc2, &yc2, &area2), 1);
        QCOMPARE(polyCentroid2({QPointF(0, 0), QPointF(1, 1), QPointF(2, 2)}, &xc2, &yc2, &area2), 2);
    }

    void convexity_data() {
        addColumns<QPolygonF, bool>("polygon", "convex");
        QTest::newRow("square") << QPolygonF({{0, 0}, {4, 0}, {4, 4}, {0, 4}}) << true;
        QTest::newRow("dart") << QPolygonF({{0, 0}, {10, 5}, {0, 10}, {3, 5}}) << false;
        QTest::newRow("straight vertex") << QPolygonF({{0, 0}, {2, 0}, {4, 0}, {4, 4}, {0, 4}}) << false;
        QTest::newRow("spike sharper than 10 degrees") << QPolygonF({{0, 0}, {100, 5}, {0, 10}}) << false;
    }
    void convexity() {
        QFETCH(QPolygonF, polygon);
        QFETCH(bool, convex);
        QCOMPARE(isConvex(polygon), convex);
        std::reverse(polygon.begin(), polygon.end());
        QCOMPARE(isConvex(polygon), convex);
    }

    void hausdorff_data() {
        addColumns<QList<QPointF>, QList<QPointF>, double>("a", "b", "distance");
        QTest::newRow("each distance summed")
            << QList<QPointF>{{0, 0}, {3, 0}, {0, 4}} << QList<QPointF>{{0, 0}} << 5.0;
        QTest::newRow("truncated before squaring")
            << QList<QPointF>{{0, 0}} << QList<QPointF>{{1.9, 0}} << 1.0;
        QTest::newRow("second list empty")
            << QList<QPointF>{{0, 0}, {1, 1}} << QList<QPointF>() << std::sqrt(2000000.0);
        QTest::newRow("both empty") << QList<QPointF>() << QList<QPointF>() << 0.0;
    }
    void hausdorff() {
        QFETCH(QList<QPointF>, a);
        QFETCH(QList<QPointF>, b);
        QFETCH(double, distance);
        QCOMPARE(distance_hausdorff(a, b), distance);
        QCOMPARE(distance_hausdorff(b, a), distance);
    }

    void uniqueAndReversed() {
        QCOMPARE(MakePointsUnique(QPolygonF({{0, 0}, {1, 1}, {0, 0}})), QPolygonF({{0, 0}, {1, 1}}));
        QCOMPARE(MakePointsUnique(QPolygonF({{0, 0}, {-0.0, 0}})).size(), 1);
        QCOMPARE(MakePointsUnique(QPolygonF({{0, 0}, {1e-300, 0}})).size(), 2);
        QCOMPARE(GetReversePoints({{1, 2}, {3, 4}, {5, 6}}), QVector<QPointF>({{5, 6}, {3, 4}, {1, 2}}));
    }
};

QTEST_GUILESS_MAIN(TestGeometryFitting)
#include "tst_geometryfitting.moc"
