#include "Geometry.h"

#include <QTest>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>

class TestGeometryAngles : public QObject {
    Q_OBJECT
private slots:
    void directions_data();
    void directions();
    void angleNormalisation();
    void medianAngleUsesTruncatedPi();
    void verticalOffset_data();
    void verticalOffset();
    void reflectionTwiceRestores_data();
    void reflectionTwiceRestores();
    void constructions();
    void rotationsAreSinglePrecision();
    void rotatedRectangles();
    void containment_data();
    void containment();
    void roundShiftsInsteadOfRounding();
    void roundDecimals_data();
    void roundDecimals();
    void numberTests();
    void double2Str_data();
    void double2Str();
    void randomStaysInRange();
    void hashes();
    void computeScale_data();
    void computeScale();
};

void TestGeometryAngles::directions_data() {
    QTest::addColumn<QPointF>("p2");
    QTest::addColumn<double>("angle");
    QTest::addColumn<double>("vecteur");
    QTest::newRow("equal points") << QPointF(0, 0) << -90.0 << 90.0;
    QTest::newRow("right") << QPointF(3, 0) << 0.0 << 0.0;
    QTest::newRow("left") << QPointF(-3, 0) << 180.0 << 180.0;
    QTest::newRow("down") << QPointF(0, 4) << 90.0 << 90.0;
    QTest::newRow("up") << QPointF(0, -4) << -90.0 << 270.0;
    QTest::newRow("down right") << QPointF(1, 1) << 45.0 << 45.0;
    QTest::newRow("up right") << QPointF(1, -1) << -45.0 << 315.0;
    QTest::newRow("down left") << QPointF(-1, 1) << 135.0 << 135.0;
    QTest::newRow("up left") << QPointF(-1, -1) << -135.0 << 225.0;
}

void TestGeometryAngles::directions() {
    QFETCH(QPointF, p2);
    QFETCH(double, angle);
    QFETCH(double, vecteur);
    QPointF p1(0, 0);
    QCOMPARE(::angle(p1, p2), angle);
    QCOMPARE(AngleVecteur(p1, p2), vecteur);
}

void TestGeometryAngles::angleNormalisation() {
    const double twoPi = 6.283185307179586;
    QCOMPARE(correctAngle(twoPi), twoPi);
    QVERIFY(std::signbit(correctAngle(-0.0)));
    QCOMPARE(correctAngle(7.0), 7.0 - twoPi);
    QCOMPARE(correctAngle(-1.0), -1.0 + twoPi);
    QCOMPARE(oppositeAngle(180), 360.0);
    QCOMPARE(oppositeAngle(190), 10.0);
    QCOMPARE(oppositeAngle(-30), 150.0);
    QCOMPARE(GetAngle(1, 1), 3.141592653589793 - std::atan(1.0));
    QCOMPARE(GetAngle(1, 0), 3.141592653589793 / 2);
    QVERIFY(std::isnan(GetAngle(0, 0)));
    QCOMPARE(arc_getPointAtAngle(0, 2, QPointF(1, 1)), QPointF(3, 1));
    QCOMPARE(arc_getEndPoint(1.2, 3, QPointF(4, -2)), arc_getPointAtAngle(1.2, 3, QPointF(4, -2)));
}

void TestGeometryAngles::medianAngleUsesTruncatedPi() {
    const double a = medianAngle(QRectF(0, 0, 5, 5));
    QVERIFY(a != -45.0);
    QVERIFY(std::fabs(a + 45) < 1e-11);
}

void TestGeometryAngles::verticalOffset_data() {
    QTest::addColumn<QPointF>("p1");
    QTest::addColumn<QPointF>("p2");
    QTest::addColumn<QPointF>("p");
    QTest::addColumn<double>("offset");
    QTest::newRow("rightwards, point above") << QPointF(0, 0) << QPointF(10, 0) << QPointF(5, -2) << -2.0;
    QTest::newRow("leftwards flips the sign") << QPointF(10, 0) << QPointF(0, 0) << QPointF(5, -2) << 2.0;
    QTest::newRow("vertical offset, not perpendicular")
        << QPointF(0, 0) << QPointF(10, 10) << QPointF(0, 4) << 4.0;
    QTest::newRow("vertical line downwards") << QPointF(3, 0) << QPointF(3, 9) << QPointF(1, 5) << 2.0;
    QTest::newRow("vertical line upwards") << QPointF(3, 9) << QPointF(3, 0) << QPointF(1, 5) << -2.0;
}

void TestGeometryAngles::verticalOffset() {
    QFETCH(QPointF, p1);
    QFETCH(QPointF, p2);
    QFETCH(QPointF, p);
    QFETCH(double, offset);
    QCOMPARE(distance(p1, p2, p), offset);
}

void TestGeometryAngles::reflectionTwiceRestores_data() {
    QTest::addColumn<QPointF>("a");
    QTest::addColumn<QPointF>("b");
    QTest::newRow("oblique") << QPointF(0, 2) << QPointF(2, 0);
    QTest::newRow("steep") << QPointF(-1, -7) << QPointF(2, 30);
    QTest::newRow("vertical") << QPointF(4, 0) << QPointF(4, 9);
    QTest::newRow("horizontal") << QPointF(0, -3) << QPointF(8, -3);
}

void TestGeometryAngles::reflectionTwiceRestores() {
    QFETCH(QPointF, a);
    QFETCH(QPointF, b);
    for (const QPointF& p : {QPointF(0, 0), QPointF(13.5, -2.25), QPointF(-7, 11)}) {
        const QPointF once = symmetric(p, a, b);
        const QPointF twice = symmetric(once, a, b);
        QVERIFY(std::hypot(twice.x() - p.x(), twice.y() - p.y()) < 1e-9);
        // The mirror line is the perpendicular bisector of p and its image.
        QCOMPARE(std::fabs(distance(a, b, GetCenter(p, once))) < 1e-9 || a.x() == b.x(), true);
    }
    QCOMPARE(symmetric(QPointF(0, 0), QPointF(0, 2), QPointF(2, 0)), QPointF(2, 2));
}

void TestGeometryAngles::constructions() {
    QCOMPARE(SideLength(0, 0, 3, -4), 5.0);
    QCOMPARE(vRelativeEuclideanDistance(0, 3), 0.5);
    QCOMPARE(vRelativeEuclideanDistance(1, -3), 4 * 0.5 / 4);
    QCOMPARE(vRelativeEuclideanDistance(1, 3), 0.25);
    QCOMPARE(GetBeyond(QPointF(0, 0), QPointF(2, 1), QPointF(4, 0)), QPointF(2, 2));
    QCOMPARE(getHeightByWidth(4, 2, 8), 4.0);
    const QRectF inner = lineToInnerRect(QLineF(0, 0, 10, 0), 2);
    QCOMPARE(inner.width(), std::sqrt(2.0));
    QCOMPARE(inner.center(), QPointF(5, 0));
    QCOMPARE(rectGenerate(QPointF(0, 0), QPointF(10, 0)), QRectF(0, 0, 10, -1));
}

void TestGeometryAngles::rotationsAreSinglePrecision() {
    const QPointF r = rotatedPoint(QPointF(1.0 / 3, 0), QPointF(0, 0), 0);
    QCOMPARE(r.x(), double(float(1.0 / 3)));
    QVERIFY(r.x() != 1.0 / 3);
    const QPointF c(1000, 5);
    QCOMPARE(rotatedPoint(QPointF(1000.1, 5), c, 0).x(), double(float(1000.1 - 1000)) + 1000);
    const QPointF quarter = rotatedPoint(QPointF(10, 0), QPointF(0, 0), 90);
    QVERIFY(std::fabs(quarter.x()) < 1e-6);
    QCOMPARE(quarter.y(), -10.0);
}

void TestGeometryAngles::rotatedRectangles() {
    QCOMPARE(rotatedRect(QRectF(0, 0, 4, 2), 90), QRectF(1, -1, 2, 4));
    const QRectF b = GetBoundingRect(QRectF(0, 0, 4, 2), 90);
    QVERIFY(std::fabs(b.left() - 1) < 1e-12 && std::fabs(b.width() - 2) < 1e-12 &&
            std::fabs(b.height() - 4) < 1e-12);
    const QRectF d = GetBoundingRect(QRectF(-1, -1, 2, 2), 45);
    QVERIFY(std::fabs(d.width() - 2 * std::sqrt(2.0)) < 1e-12);
    QCOMPARE(d.center(), QPointF(0, 0));
}

void TestGeometryAngles::containment_data() {
    QTest::addColumn<QRectF>("inner");
    QTest::addColumn<double>("angle");
    QTest::addColumn<bool>("contained");
    QTest::addColumn<double>("dx");
    QTest::addColumn<double>("dy");
    QTest::newRow("inside") << QRectF(2, 2, 3, 3) << 0.0 << true << 0.0 << 0.0;
    QTest::newRow("past the left") << QRectF(-2, 2, 3, 3) << 0.0 << false << 2.0 << 0.0;
    QTest::newRow("past right and bottom") << QRectF(8, 9, 4, 4) << 0.0 << false << -2.0 << -3.0;
    QTest::newRow("rotated upright, the top wins") << QRectF(-1, 4, 12, 2) << 90.0 << false << 0.0 << 1.0;
}

void TestGeometryAngles::containment() {
    QFETCH(QRectF, inner);
    QFETCH(double, angle);
    QFETCH(bool, contained);
    QFETCH(double, dx);
    QFETCH(double, dy);
    double sx = 99, sy = 99;
    QCOMPARE(IsContained(QRectF(0, 0, 10, 10), inner, angle, sx, sy), contained);
    QVERIFY(std::fabs(sx - dx) < 1e-9);
    QVERIFY(std::fabs(sy - dy) < 1e-9);
}

void TestGeometryAngles::roundShiftsInsteadOfRounding() {
    QCOMPARE(round(QPointF(3, -3), 4), QPointF(5, -5));
    QCOMPARE(round(QPointF(0, 0), 4), QPointF(-2, -2));
    QCOMPARE(round(QPointF(7, 7), 1), QPointF(0, 0));
    // The overload leaves the C library's round alone.
    QCOMPARE(round(2.5), 3.0);
    QCOMPARE(std::round(-2.5), -3.0);
}

void TestGeometryAngles::roundDecimals_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("rounded");
    QTest::newRow("half up") << 1.125 << 2 << 1.13;
    QTest::newRow("half away from zero") << -1.125 << 2 << -1.13;
    QTest::newRow("below half") << 1.124 << 2 << 1.12;
    QTest::newRow("units, half") << 0.5 << 0 << 1.0;
    QTest::newRow("units, negative half") << -0.5 << 0 << -1.0;
    QTest::newRow("units, below half") << 2.4 << 0 << 2.0;
}

void TestGeometryAngles::roundDecimals() {
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(double, rounded);
    QCOMPARE(::roundDecimals(value, decimals), rounded);
}

void TestGeometryAngles::numberTests() {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    QVERIFY(isNaN(nan) && !isNaN(inf) && !isNaN(1));
    QVERIFY(isInf(inf) && isInf(-inf) && isInf(nan) && !isInf(1e308));
    QVERIFY(!IsNumber(std::numeric_limits<float>::quiet_NaN()));
    QVERIFY(!IsNumber(std::numeric_limits<float>::infinity()));
    QVERIFY(IsNumber(FLT_MAX) && IsNumber(-FLT_MAX) && IsNumber(0));
}

void TestGeometryAngles::double2Str_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("limit of fixed notation") << 0.0001 << "0.0001";
    QTest::newRow("small negative") << -0.00005 << "-0.00005";
    QTest::newRow("below the printed digits") << 1e-20 << "0";
    QTest::newRow("ordinary") << 1234.5 << "1234.5";
    QTest::newRow("tenth") << 0.1 << "0.1";
    QTest::newRow("large") << 1e20 << "1e+20";
}

void TestGeometryAngles::double2Str() {
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(Double2Str(value), text);
}

void TestGeometryAngles::randomStaysInRange() {
    std::srand(7);
    for (int i = 0; i < 2000; ++i) {
        const double d = vRandom(5.0, -3.0);
        QVERIFY(d >= -3 && d <= 5);
        const int n = vRandom(-2, 4);
        QVERIFY(n >= -2 && n <= 4);
    }
    QCOMPARE(vRandom(5, 4), 5);
}

void TestGeometryAngles::hashes() {
    // 1.0 is 0x3FF0000000000000: bytes 0xF0 + 0x3F, halves 0 + 0x3FF00000.
    QCOMPARE(vHash(1.0), 0xF0u + 0x3Fu + 0x3FF00000u);
    QCOMPARE(vHash(QPointF(0.25, 0.75)), vHash(1.0));
    QCOMPARE(vHash(QPoint(3, -2)), vHash(1.0));
    QCOMPARE(vHash(0.0), 0u);
}

void TestGeometryAngles::computeScale_data() {
    QTest::addColumn<QRectF>("a");
    QTest::addColumn<double>("scale");
    QTest::newRow("wider") << QRectF(0, 0, 200, 100) << 0.0;
    QTest::newRow("taller") << QRectF(0, 0, 100, 400) << -2.0;
    QTest::newRow("narrower") << QRectF(0, 0, 50, 100) << 2.0;
    QTest::newRow("lower") << QRectF(0, 0, 100, 25) << 4.0;
    QTest::newRow("same") << QRectF(0, 0, 100, 100) << 1.0;
}

void TestGeometryAngles::computeScale() {
    QFETCH(QRectF, a);
    QFETCH(double, scale);
    double s = 1;
    ::computeScale(s, a, QRectF(0, 0, 100, 100));
    QCOMPARE(s, scale);
}

QTEST_GUILESS_MAIN(TestGeometryAngles)
#include "tst_geometryangles.moc"
