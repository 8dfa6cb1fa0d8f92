#include "Geometry.h"

#include <QTest>

#include <cmath>

namespace {

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-9) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= tolerance;
}

// Distance from p to the infinite line ab.
double offLine(const QPointF& p, const QPointF& a, const QPointF& b) {
    const QPointF d = b - a;
    return std::fabs(d.x() * (p.y() - a.y()) - d.y() * (p.x() - a.x())) / std::hypot(d.x(), d.y());
}

double ellipseValue(const QRectF& e, const QPointF& p) {
    const double u = (p.x() - e.center().x()) / (e.width() / 2);
    const double v = (p.y() - e.center().y()) / (e.height() / 2);
    return u * u + v * v - 1;
}

} // namespace

class TestGeometryIntersections : public QObject {
    Q_OBJECT
private slots:
    void parallelTests_data();
    void parallelTests();
    void twoLineMethods_data();
    void twoLineMethods();
    void segments_data();
    void segments();
    void circles_data();
    void circles();
    void lineAndCircle_data();
    void lineAndCircle();
    void lineAndCircleSpecialCases();
    void circlePairs();
    void tangents_data();
    void tangents();
    void pointTangents();
    void circleLineNearestToB();
    void rectangleEdges_data();
    void rectangleEdges();
    void roundedCorners();
    void lineLeavingRect_data();
    void lineLeavingRect();
    void ellipseAndLine_data();
    void ellipseAndLine();
    void twoEllipses_data();
    void twoEllipses();
    void pointOnLine_data();
    void pointOnLine();
    void projectionsLieOnTheLine_data();
    void projectionsLieOnTheLine();
    void constraints();
    void rectDistanceAndClamp();
};

void TestGeometryIntersections::parallelTests_data() {
    QTest::addColumn<QPointF>("a2");
    QTest::addColumn<QPointF>("b2");
    QTest::addColumn<bool>("exact");
    QTest::addColumn<bool>("nearly");
    // Both lines start at the origin; only their second points vary.
    QTest::newRow("both horizontal") << QPointF(5, 0) << QPointF(-2, 0) << true << true;
    QTest::newRow("both vertical") << QPointF(0, 5) << QPointF(0, -1) << true << true;
    QTest::newRow("horizontal and vertical") << QPointF(5, 0) << QPointF(0, 3) << false << false;
    QTest::newRow("difference of exactly 0.005") << QPointF(0, 1) << QPointF(1, 200) << false << true;
    QTest::newRow("difference of 0.006") << QPointF(0, 1) << QPointF(6, 1000) << false << false;
    QTest::newRow("first line is a point") << QPointF(0, 0) << QPointF(1, 1) << false << false;
    QTest::newRow("same slope") << QPointF(2, 6) << QPointF(-1, -3) << true << true;
}

void TestGeometryIntersections::parallelTests() {
    QFETCH(QPointF, a2);
    QFETCH(QPointF, b2);
    QFETCH(bool, exact);
    QFETCH(bool, nearly);
    QCOMPARE(parallel(QPointF(), a2, QPointF(), b2), exact);
    QCOMPARE(nearlyParallel(QPointF(), a2, QPointF(), b2), nearly);
}

void TestGeometryIntersections::twoLineMethods_data() {
    QTest::addColumn<QPointF>("A");
    QTest::addColumn<QPointF>("B");
    QTest::addColumn<QPointF>("C");
    QTest::addColumn<QPointF>("D");
    QTest::addColumn<long>("slopeCode");
    QTest::addColumn<bool>("rotationFound");
    QTest::addColumn<QPointF>("crossing");
    QTest::newRow("diagonals") << QPointF(0, 0) << QPointF(10, 10) << QPointF(0, 10) << QPointF(10, 0) << 1L
                               << true << QPointF(5, 5);
    QTest::newRow("generic") << QPointF(1, 2) << QPointF(3, 9) << QPointF(-4, 5) << QPointF(8, 1) << 1L
                             << true << QPointF(31.0 / 23, 74.0 / 23);
    QTest::newRow("crossing outside the area") << QPointF(0, 0) << QPointF(1, 1) << QPointF(300, 0)
                                               << QPointF(301, -1) << 2L << true << QPointF(150, 150);
    QTest::newRow("vertical drawn upwards")
        << QPointF(5, 10) << QPointF(5, 0) << QPointF(0, 0) << QPointF(10, 10) << 1L << true << QPointF(5, 5);
    QTest::newRow("vertical drawn downwards is -infinity")
        << QPointF(5, 0) << QPointF(5, 10) << QPointF(0, 0) << QPointF(10, 10) << 2L << true << QPointF(5, 5);
    QTest::newRow("horizontal and oblique")
        << QPointF(0, 4) << QPointF(10, 4) << QPointF(0, 0) << QPointF(2, 1) << 1L << true << QPointF(8, 4);
    QTest::newRow("parallel") << QPointF(0, 0) << QPointF(4, 0) << QPointF(0, 3) << QPointF(4, 3) << 0L
                              << false << QPointF();
    QTest::newRow("same line, other points")
        << QPointF(0, 0) << QPointF(1, 1) << QPointF(2, 2) << QPointF(3, 3) << 0L << false << QPointF();
    QTest::newRow("same line, same points")
        << QPointF(0, 0) << QPointF(1, 1) << QPointF(0, 0) << QPointF(1, 1) << -1L << false << QPointF();
    QTest::newRow("both vertical") << QPointF(1, 10) << QPointF(1, 0) << QPointF(2, 10) << QPointF(2, 0) << 0L
                                   << false << QPointF();
    QTest::newRow("first line is a point")
        << QPointF(3, 3) << QPointF(3, 3) << QPointF(0, 0) << QPointF(1, 2) << -1L << false << QPointF();
}

void TestGeometryIntersections::twoLineMethods() {
    QFETCH(QPointF, A);
    QFETCH(QPointF, B);
    QFETCH(QPointF, C);
    QFETCH(QPointF, D);
    QFETCH(long, slopeCode);
    QFETCH(bool, rotationFound);
    QFETCH(QPointF, crossing);
    QPointF bySlopes(7, 7);
    QCOMPARE(CalculIntersectionDroites(A, B, C, D, bySlopes, 100, 100), slopeCode);
    double x = 0, y = 0;
    QCOMPARE(lineIntersection(A.x(), A.y(), B.x(), B.y(), C.x(), C.y(), D.x(), D.y(), &x, &y), rotationFound);
    if (rotationFound) {
        // The crossing lies on both lines, whichever way it was found.
        const QPointF byRotation(x, y);
        QVERIFY(offLine(byRotation, A, B) < 1e-9 && offLine(byRotation, C, D) < 1e-9);
        if (!crossing.isNull())
            QVERIFY(near(byRotation, crossing));
        if (slopeCode == 1)
            QVERIFY(near(bySlopes, byRotation));
    }
    if (slopeCode <= 0)
        QCOMPARE(bySlopes, QPointF(0, 0));
    if (QTest::currentDataTag() == QByteArray("vertical drawn downwards is -infinity"))
        QVERIFY(std::isnan(bySlopes.x()));
}

void TestGeometryIntersections::segments_data() {
    QTest::addColumn<QPointF>("C");
    QTest::addColumn<QPointF>("D");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QPointF>("crossing");
    // The first segment runs from (0, 0) to (10, 0).
    QTest::newRow("crossing") << QPointF(4, -3) << QPointF(4, 5) << true << QPointF(4, 0);
    QTest::newRow("shared end point") << QPointF(10, 0) << QPointF(12, 5) << false << QPointF();
    QTest::newRow("end point on the segment") << QPointF(5, 0) << QPointF(5, 5) << false << QPointF();
    QTest::newRow("both on one side") << QPointF(0, 1) << QPointF(10, 5) << false << QPointF();
    QTest::newRow("beyond the end") << QPointF(12, -1) << QPointF(12, 1) << false << QPointF();
    QTest::newRow("before the start") << QPointF(-1, -1) << QPointF(-1, 1) << false << QPointF();
    QTest::newRow("degenerate") << QPointF(3, 3) << QPointF(3, 3) << false << QPointF();
}

void TestGeometryIntersections::segments() {
    QFETCH(QPointF, C);
    QFETCH(QPointF, D);
    QFETCH(bool, found);
    QFETCH(QPointF, crossing);
    double x = -1, y = -1;
    QCOMPARE(lineSegmentIntersection(0, 0, 10, 0, C.x(), C.y(), D.x(), D.y(), &x, &y), found);
    if (found)
        QVERIFY(near(QPointF(x, y), crossing));
}

void TestGeometryIntersections::circles_data() {
    QTest::addColumn<QPointF>("c1");
    QTest::addColumn<double>("r1");
    QTest::addColumn<QPointF>("c2");
    QTest::addColumn<double>("r2");
    QTest::addColumn<long>("code");
    QTest::addColumn<QPointF>("o1");
    QTest::addColumn<QPointF>("o2");
    const double h = std::sqrt(75.0);
    QTest::newRow("two points inside") << QPointF(50, 50) << 10.0 << QPointF(60, 50) << 10.0 << 3L
                                       << QPointF(55, 50 + h) << QPointF(55, 50 - h);
    QTest::newRow("one point outside")
        << QPointF(50, 5) << 10.0 << QPointF(60, 5) << 10.0 << 4L << QPointF(55, 5 + h) << QPointF(55, 5 - h);
    QTest::newRow("touching inside") << QPointF(10, 10) << 5.0 << QPointF(20, 10) << 5.0 << 1L
                                     << QPointF(15, 10) << QPointF();
    QTest::newRow("touching outside")
        << QPointF(10, 200) << 5.0 << QPointF(20, 200) << 5.0 << 2L << QPointF(15, 200) << QPointF();
    QTest::newRow("separate") << QPointF(0, 0) << 1.0 << QPointF(5, 5) << 1.0 << 0L << QPointF() << QPointF();
    QTest::newRow("nested") << QPointF(50, 50) << 10.0 << QPointF(51, 50) << 2.0 << 0L << QPointF()
                            << QPointF();
    QTest::newRow("touching at the origin is absent")
        << QPointF(-5, 0) << 5.0 << QPointF(5, 0) << 5.0 << 0L << QPointF() << QPointF();
    QTest::newRow("one crossing at the origin")
        << QPointF(4, 3) << 5.0 << QPointF(-4, 3) << 5.0 << 0L << QPointF(0, 0) << QPointF(0, 6);
}

void TestGeometryIntersections::circles() {
    QFETCH(QPointF, c1);
    QFETCH(double, r1);
    QFETCH(QPointF, c2);
    QFETCH(double, r2);
    QFETCH(long, code);
    QFETCH(QPointF, o1);
    QFETCH(QPointF, o2);
    QPointF p1(1, 1), p2(1, 1);
    QCOMPARE(CalculIntersectionCercles(c1, r1, c2, r2, p1, p2, 100, 100), code);
    QVERIFY(near(p1, o1));
    QVERIFY(near(p2, o2));
}

void TestGeometryIntersections::lineAndCircle_data() {
    QTest::addColumn<QPointF>("A");
    QTest::addColumn<QPointF>("B");
    QTest::addColumn<long>("size");
    QTest::addColumn<long>("code");
    QTest::addColumn<QPointF>("o1");
    QTest::addColumn<QPointF>("o2");
    // The circle has centre (10, 5) and radius 5; the area is size x size.
    QTest::newRow("secant") << QPointF(0, 5) << QPointF(1, 5) << 100L << 3L << QPointF(15, 5)
                            << QPointF(5, 5);
    QTest::newRow("secant leaving the area")
        << QPointF(0, 5) << QPointF(1, 5) << 10L << 4L << QPointF(15, 5) << QPointF(5, 5);
    QTest::newRow("vertical secant") << QPointF(10, -50) << QPointF(10, -49) << 100L << 3L << QPointF(10, 10)
                                     << QPointF(10, 0);
    QTest::newRow("tangent") << QPointF(0, 10) << QPointF(20, 10) << 100L << 1L << QPointF(10, 10)
                             << QPointF();
    QTest::newRow("tangent outside the area")
        << QPointF(0, 10) << QPointF(20, 10) << 9L << 2L << QPointF(10, 10) << QPointF();
    QTest::newRow("miss") << QPointF(0, 20) << QPointF(20, 20) << 100L << 0L << QPointF() << QPointF();
}

void TestGeometryIntersections::lineAndCircle() {
    QFETCH(QPointF, A);
    QFETCH(QPointF, B);
    QFETCH(long, size);
    QFETCH(long, code);
    QFETCH(QPointF, o1);
    QFETCH(QPointF, o2);
    QPointF p1(1, 1), p2(1, 1);
    QCOMPARE(CalculIntersectionDroiteCercle(A, B, QPointF(10, 5), 5, p1, p2, size, size), code);
    QVERIFY(near(p1, o1, 1e-9));
    QVERIFY(near(p2, o2, 1e-9));
}

void TestGeometryIntersections::lineAndCircleSpecialCases() {
    QPointF p1(1, 1), p2(2, 2);
    QCOMPARE(CalculIntersectionDroiteCercle(QPointF(3, 3), QPointF(3, 3), QPointF(), 5, p1, p2, 9, 9), -1L);
    QCOMPARE(p1, QPointF(1, 1));
    QCOMPARE(p2, QPointF(2, 2));
    // A second crossing at the origin counts as absent: the first one looks like a tangent point.
    QCOMPARE(CalculIntersectionDroiteCercle(QPointF(-5, 0), QPointF(15, 0), QPointF(5, 0), 5, p1, p2, 99, 99),
             1L);
    QCOMPARE(p1, QPointF(10, 0));
    QVERIFY(p2.isNull());
}

void TestGeometryIntersections::circlePairs() {
    double xi = 0, yi = 0, xj = 0, yj = 0;
    QVERIFY(circle_circle_intersection(0, 0, 5, 6, 0, 5, &xi, &yi, &xj, &yj));
    QVERIFY(near(QPointF(xi, yi), QPointF(3, 4)) || near(QPointF(xi, yi), QPointF(3, -4)));
    QVERIFY(near(QPointF(xi, yi), QPointF(xj, -yj)));
    QVERIFY(circle_circle_intersection(0, 0, 5, 10, 0, 5, &xi, &yi, &xj, &yj));
    QVERIFY(near(QPointF(xi, yi), QPointF(5, 0)) && near(QPointF(xj, yj), QPointF(5, 0)));
    QVERIFY(!circle_circle_intersection(0, 0, 5, 20, 0, 5, &xi, &yi, &xj, &yj));
    QVERIFY(!circle_circle_intersection(0, 0, 5, 1, 0, 2, &xi, &yi, &xj, &yj));
    QVERIFY(!circle_circle_intersection(0, 0, 5, 0, 0, 5, &xi, &yi, &xj, &yj));
}

void TestGeometryIntersections::tangents_data() {
    QTest::addColumn<double>("xb");
    QTest::addColumn<double>("rb");
    QTest::addColumn<int>("points");
    // Circle a has centre (0, 0) and radius 2; b sits on the x axis.
    QTest::newRow("separate: four tangents") << 10.0 << 3.0 << 8;
    QTest::newRow("touching outside: three") << 5.0 << 3.0 << 6;
    QTest::newRow("crossing: two") << 3.0 << 3.0 << 4;
    QTest::newRow("touching inside: one") << 1.0 << 3.0 << 2;
    QTest::newRow("nested: none") << 0.5 << 3.0 << 0;
    QTest::newRow("concentric: none") << 0.0 << 3.0 << 0;
}

void TestGeometryIntersections::tangents() {
    QFETCH(double, xb);
    QFETCH(double, rb);
    QFETCH(int, points);
    QList<QPointF> out;
    QCOMPARE(circle_circle_tangents(0, 0, 2, xb, 0, rb, out), points > 0);
    QCOMPARE(out.size(), points);
    for (int i = 0; i + 1 < out.size(); i += 2) {
        const QPointF ta = out[i];
        const QPointF tb = out[i + 1];
        QVERIFY(std::fabs(std::hypot(ta.x(), ta.y()) - 2) < 1e-9);
        QVERIFY(std::fabs(std::hypot(tb.x() - xb, tb.y()) - rb) < 1e-9);
        if (!near(ta, tb)) {
            // The tangent is perpendicular to both radii.
            QVERIFY(std::fabs(offLine(QPointF(0, 0), ta, tb) - 2) < 1e-9);
            QVERIFY(std::fabs(offLine(QPointF(xb, 0), ta, tb) - rb) < 1e-9);
        }
    }
}

void TestGeometryIntersections::pointTangents() {
    QPointF t1, t2;
    QVERIFY(point_circle_tangent(QPointF(0, 0), 5, QPointF(13, 0), t1, t2));
    for (const QPointF& t : {t1, t2}) {
        QVERIFY(std::fabs(std::hypot(t.x(), t.y()) - 5) < 1e-9);
        QVERIFY(std::fabs(QPointF::dotProduct(t, t - QPointF(13, 0))) < 1e-9);
    }
    QVERIFY(!near(t1, t2));
    QVERIFY(point_circle_tangent(QPointF(0, 0), 5, QPointF(1, 0), t1, t2));
    QVERIFY(std::isnan(t1.x()) && std::isnan(t2.y()));
}

void TestGeometryIntersections::circleLineNearestToB() {
    QPointF out;
    QVERIFY(circleLineIntersectPoint(5, QPointF(0, 0), QPointF(-10, 0), QPointF(10, 0), out));
    QVERIFY(near(out, QPointF(5, 0)));
    QVERIFY(circleLineIntersectPoint(5, QPointF(0, 0), QPointF(0, 0), QPointF(-1, -1), out));
    QVERIFY(near(out, QPointF(-5 / std::sqrt(2.0), -5 / std::sqrt(2.0))));
    QVERIFY(!circleLineIntersectPoint(5, QPointF(0, 0), QPointF(-10, 6), QPointF(10, 6), out));
    QVERIFY(!circleLineIntersectPoint(5, QPointF(0, 0), QPointF(1, 1), QPointF(1, 1), out));
}

void TestGeometryIntersections::rectangleEdges_data() {
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<int>("edge");
    QTest::addColumn<QPointF>("hit");
    QTest::newRow("top") << QPointF(5, -5) << 1 << QPointF(5, 0);
    QTest::newRow("right") << QPointF(15, 5) << 2 << QPointF(10, 5);
    QTest::newRow("bottom") << QPointF(5, 15) << 3 << QPointF(5, 10);
    QTest::newRow("left") << QPointF(-5, 5) << 4 << QPointF(0, 5);
    QTest::newRow("corner goes to the top first") << QPointF(15, -5) << 1 << QPointF(10, 0);
    QTest::newRow("inside") << QPointF(6, 6) << 0 << QPointF(-1, -1);
}

void TestGeometryIntersections::rectangleEdges() {
    QFETCH(QPointF, p);
    QFETCH(int, edge);
    QFETCH(QPointF, hit);
    QPointF out(-1, -1);
    QCOMPARE(rectangleLineIntersectPoint(QRectF(0, 0, 10, 10), p, out), edge);
    QVERIFY(near(out, hit));
}

void TestGeometryIntersections::roundedCorners() {
    const QRectF r(0, 0, 10, 10);
    QPointF out;
    QVERIFY(roundedRectLineIntersectionPoint(2, r, QPointF(5, -5), out));
    QVERIFY(near(out, QPointF(5, 0)));
    QVERIFY(roundedRectLineIntersectionPoint(2, r, QPointF(20, -10), out));
    QVERIFY(near(out, QPointF(8 + std::sqrt(2.0), 2 - std::sqrt(2.0))));
    QVERIFY(roundedRectLineIntersectionPoint(0, r, QPointF(20, -10), out));
    QVERIFY(near(out, QPointF(10, 0)));
    QVERIFY(!roundedRectLineIntersectionPoint(2, r, QPointF(6, 6), out));
}

void TestGeometryIntersections::lineLeavingRect_data() {
    QTest::addColumn<QLineF>("line");
    QTest::addColumn<QPointF>("exit");
    QTest::newRow("rightwards") << QLineF(5, 5, 6, 5) << QPointF(10, 5);
    QTest::newRow("leftwards") << QLineF(5, 5, 4, 5) << QPointF(0, 5);
    QTest::newRow("through a corner") << QLineF(5, 5, 6, 6) << QPointF(10, 10);
    QTest::newRow("starting outside") << QLineF(-20, 2, -19, 2) << QPointF(10, 2);
    QTest::newRow("missing") << QLineF(20, 0, 20, 1) << QPointF();
    QTest::newRow("a point") << QLineF(5, 5, 5, 5) << QPointF();
}

void TestGeometryIntersections::lineLeavingRect() {
    QFETCH(QLineF, line);
    QFETCH(QPointF, exit);
    QVERIFY(near(LineIntersectRect(QRectF(0, 0, 10, 10), line), exit));
}

void TestGeometryIntersections::ellipseAndLine_data() {
    QTest::addColumn<QRectF>("e");
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<bool>("segment");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QList<QPointF>>("points");
    const QRectF e(0, 0, 20, 10);
    QTest::newRow("through the centre") << e << QPointF(-5, 5) << QPointF(25, 5) << false << true
                                        << QList<QPointF>{QPointF(20, 5), QPointF(0, 5)};
    QTest::newRow("negative size normalised")
        << QRectF(20, 10, -20, -10) << QPointF(-5, 5) << QPointF(25, 5) << false << true
        << QList<QPointF>{QPointF(20, 5), QPointF(0, 5)};
    QTest::newRow("tangent") << e << QPointF(-5, 0) << QPointF(25, 0) << false << true
                             << QList<QPointF>{QPointF(10, 0)};
    QTest::newRow("segment keeps one")
        << e << QPointF(10, 5) << QPointF(30, 5) << true << true << QList<QPointF>{QPointF(20, 5)};
    QTest::newRow("line keeps both") << e << QPointF(10, 5) << QPointF(30, 5) << false << true
                                     << QList<QPointF>{QPointF(20, 5), QPointF(0, 5)};
    QTest::newRow("miss") << e << QPointF(-5, 20) << QPointF(25, 20) << false << true << QList<QPointF>();
    QTest::newRow("flat ellipse") << QRectF(0, 0, 20, 0) << QPointF(-5, 0) << QPointF(25, 0) << false << false
                                  << QList<QPointF>();
    QTest::newRow("a point") << e << QPointF(3, 3) << QPointF(3, 3) << false << false << QList<QPointF>();
}

void TestGeometryIntersections::ellipseAndLine() {
    QFETCH(QRectF, e);
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(bool, segment);
    QFETCH(bool, result);
    QFETCH(QList<QPointF>, points);
    QList<QPointF> out;
    QCOMPARE(ellipseLineIntersection(e, a, b, out, segment), result);
    QCOMPARE(out.size(), points.size());
    for (int i = 0; i < out.size(); ++i)
        QVERIFY(near(out[i], points[i], 1e-5));
}

void TestGeometryIntersections::twoEllipses_data() {
    QTest::addColumn<QRectF>("e1");
    QTest::addColumn<QRectF>("e2");
    QTest::addColumn<int>("count");
    QTest::newRow("two circles") << QRectF(-5, -5, 10, 10) << QRectF(1, -5, 10, 10) << 2;
    QTest::newRow("crossed, same centre") << QRectF(-10, -5, 20, 10) << QRectF(-5, -10, 10, 20) << 4;
    QTest::newRow("shifted down only") << QRectF(-10, -5, 20, 10) << QRectF(-5, -3, 10, 20) << 2;
    QTest::newRow("shifted sideways only") << QRectF(-10, -5, 20, 10) << QRectF(4, -8, 10, 16) << 2;
    QTest::newRow("generic, four points") << QRectF(0, 0, 40, 20) << QRectF(12, -6, 16, 32) << 4;
    QTest::newRow("generic, two points") << QRectF(100, 200, 40, 20) << QRectF(130, 190, 30, 24) << 2;
    QTest::newRow("touching") << QRectF(0, 0, 20, 10) << QRectF(20, 0, 20, 10) << 1;
    QTest::newRow("touching inside") << QRectF(0, 0, 20, 10) << QRectF(0, 2.5, 10, 5) << 1;
    QTest::newRow("separate") << QRectF(0, 0, 20, 10) << QRectF(30, 0, 20, 10) << 0;
    QTest::newRow("nested") << QRectF(0, 0, 20, 10) << QRectF(5, 2, 10, 6) << 0;
    QTest::newRow("identical") << QRectF(0, 0, 20, 10) << QRectF(0, 0, 20, 10) << 0;
    QTest::newRow("empty") << QRectF(0, 0, 20, 0) << QRectF(0, 0, 20, 10) << 0;
}

void TestGeometryIntersections::twoEllipses() {
    QFETCH(QRectF, e1);
    QFETCH(QRectF, e2);
    QFETCH(int, count);
    QList<QPointF> out;
    QCOMPARE(ellipseIntersection(e1, e2, out), count > 0);
    QCOMPARE(out.size(), count);
    for (const QPointF& p : out) {
        QVERIFY2(std::fabs(ellipseValue(e1, p)) < 1e-9, qPrintable(QString::number(ellipseValue(e1, p))));
        QVERIFY2(std::fabs(ellipseValue(e2, p)) < 1e-6, qPrintable(QString::number(ellipseValue(e2, p))));
    }
}

void TestGeometryIntersections::pointOnLine_data() {
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<bool>("on");
    // The segment runs from (0, 0) to (10, 0); lengths are truncated one by one.
    QTest::newRow("on it") << QPointF(4, 0) << true;
    QTest::newRow("slightly off") << QPointF(5, 0.4) << true;
    QTest::newRow("three units off, still on") << QPointF(5, 3) << true;
    QTest::newRow("four units off") << QPointF(5, 4) << false;
    QTest::newRow("beyond the end") << QPointF(12, 0) << false;
    QTest::newRow("before the start") << QPointF(-1, 0) << false;
}

void TestGeometryIntersections::pointOnLine() {
    QFETCH(QPointF, p);
    QFETCH(bool, on);
    QCOMPARE(isPointOnLine(QPointF(0, 0), QPointF(10, 0), p), on);
}

void TestGeometryIntersections::projectionsLieOnTheLine_data() {
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::addColumn<QPointF>("foot");
    QTest::addColumn<double>("tolerance");
    QTest::newRow("oblique, exact") << QPointF(0, 0) << QPointF(0, 2) << QPointF(2, 0) << QPointF(1, 1)
                                    << 0.0;
    QTest::newRow("generic") << QPointF(7, -3) << QPointF(1, 1) << QPointF(4, 5) << QPointF(1.24, 1.32)
                             << 1e-12;
    QTest::newRow("horizontal") << QPointF(3, 7) << QPointF(0, 2) << QPointF(10, 2) << QPointF(3, 2) << 1e-8;
    QTest::newRow("vertical, approximate")
        << QPointF(0, 3) << QPointF(5, 0) << QPointF(5, 10) << QPointF(5, 3) << 1e-6;
}

void TestGeometryIntersections::projectionsLieOnTheLine() {
    QFETCH(QPointF, p);
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    QFETCH(QPointF, foot);
    QFETCH(double, tolerance);
    QPointF out;
    QVERIFY(CalculProjectionPoint(p, a, b, out));
    QVERIFY(near(out, foot, tolerance));
    QVERIFY(offLine(out, a, b) <= std::max(tolerance, 1e-12));
}

void TestGeometryIntersections::constraints() {
    const QPointF o(1, 1);
    QVERIFY(near(constraint_angle(o, QPointF(11, 2)), QPointF(1 + std::hypot(10, 1), 1)));
    const double r = std::hypot(10, 9);
    QVERIFY(
        near(constraint_angle(o, QPointF(11, 10)), QPointF(1 + r / std::sqrt(2.0), 1 + r / std::sqrt(2.0))));
    QVERIFY(near(constraint_angle(o, QPointF(-9, 0)), QPointF(1 - std::hypot(10, 1), 1)));
    QVERIFY(near(constraint_angle(o, QPointF(2, -9)), QPointF(1, 1 - std::hypot(1, 10))));
    QCOMPARE(constraint_square(o, QPointF(11, 5)), QPointF(11, 11));
    QCOMPARE(constraint_square(o, QPointF(-2, 9)), QPointF(-7, 9));
    QCOMPARE(constraint_square(o, o), o);
}

void TestGeometryIntersections::rectDistanceAndClamp() {
    const QRectF r(0, 0, 10, 10);
    QCOMPARE(distanceBetweenPointandRect(r, QPointF(5, 5)), 0.0);
    QCOMPARE(distanceBetweenPointandRect(r, QPointF(13, 14)), 5.0);
    QCOMPARE(distanceBetweenPointandRect(r, QPointF(5, -2)), 2.0);
    QCOMPARE(distanceBetweenPointandRect(QRectF(10, 10, -10, -10), QPointF(13, 14)), 5.0);
    QCOMPARE(pointConstrainedInRect(QPointF(-3, 12), r), QPointF(0, 10));
    QCOMPARE(pointConstrainedInRect(QPointF(4, 5), r), QPointF(4, 5));
    QCOMPARE(pointConstrainedInRect(QPoint(20, -20), QRect(0, 0, 10, 10)), QPoint(9, 0));
}

QTEST_GUILESS_MAIN(TestGeometryIntersections)
#include "tst_geometryintersections.moc"
