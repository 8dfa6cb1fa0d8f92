#include "DataColumns.h"
#include "GeometryTestTables.h"

#include <cfloat>
#include <cstdlib>

namespace {

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();
const double pi = 3.141592653589793;
const double twoPi = 6.283185307179586;

double scaleAfter(const QRectF& a) {
    double s = 1;
    computeScale(s, a, QRectF(0, 0, 100, 100));
    return s;
}

} // namespace

class TestGeometryAngles : public QObject {
    Q_OBJECT
private slots:
    void directions_data() {
        addColumns<QPointF, double, double>("p2", "angle", "vecteur");
        QTest::newRow("equal points") << QPointF(0, 0) << -90.0 << 90.0;
        QTest::newRow("right") << QPointF(3, 0) << 0.0 << 0.0;
        QTest::newRow("left") << QPointF(-3, 0) << 180.0 << 180.0;
        QTest::newRow("down") << QPointF(0, 4) << 90.0 << 90.0;
        QTest::newRow("up") << QPointF(0, -4) << -90.0 << 270.0;
        QTest::newRow("down right") << QPointF(1, 1) << 45.0 << 45.0;
        QTest::newRow("up right") << QPointF(1, -1) << -45.0 << 315.0;
    }
    void directions() {
        QFETCH(QPointF, p2);
        QFETCH(double, angle);
        QFETCH(double, vecteur);
        QPointF p1(0, 0);
        QCOMPARE(::angle(p1, p2), angle);
        QCOMPARE(AngleVecteur(p1, p2), vecteur);
    }

    void values_data() {
        resultColumns<double>();
        row("correctAngle keeps 2 pi", correctAngle(twoPi), twoPi);
        row("correctAngle above 2 pi", correctAngle(7.0), 7.0 - twoPi);
        row("correctAngle below 0", correctAngle(-1.0), -1.0 + twoPi);
        row("oppositeAngle of 180 is 360", oppositeAngle(180), 360);
        row("oppositeAngle above 180", oppositeAngle(190), 10);
        row("oppositeAngle below 180", oppositeAngle(-30), 150);
        row("GetAngle", GetAngle(1, 1), pi - std::atan(1.0));
        row("GetAngle, b = 0", GetAngle(1, 0), pi / 2);
        row("GetAngle, 0 / 0", GetAngle(0, 0), notANumber);
        // distance: a signed vertical offset, not a perpendicular one.
        row("distance, rightwards, point above", distance({0, 0}, {10, 0}, {5, -2}), -2);
        row("distance, leftwards flips the sign", distance({10, 0}, {0, 0}, {5, -2}), 2);
        row("distance is vertical", distance({0, 0}, {10, 10}, {0, 4}), 4);
        row("distance, vertical line downwards", distance({3, 0}, {3, 9}, {1, 5}), 2);
        row("distance, vertical line upwards", distance({3, 9}, {3, 0}, {1, 5}), -2);
        row("SideLength", SideLength(0, 0, 3, -4), 5);
        row("vRelativeEuclideanDistance with 0", vRelativeEuclideanDistance(0, 3), 0.5);
        row("vRelativeEuclideanDistance, opposite signs", vRelativeEuclideanDistance(1, -3), 0.5);
        row("vRelativeEuclideanDistance", vRelativeEuclideanDistance(1, 3), 0.25);
        row("getHeightByWidth", getHeightByWidth(4, 2, 8), 4);
        row("roundDecimals half up", roundDecimals(1.125, 2), 1.13);
        row("roundDecimals half away from zero", roundDecimals(-1.125, 2), -1.13);
        row("roundDecimals below half", roundDecimals(1.124, 2), 1.12);
        row("roundDecimals units, half", roundDecimals(0.5, 0), 1);
        row("computeScale wider", scaleAfter(QRectF(0, 0, 200, 100)), 0);
        row("computeScale taller", scaleAfter(QRectF(0, 0, 100, 400)), -2);
        row("computeScale narrower", scaleAfter(QRectF(0, 0, 50, 100)), 2);
        row("computeScale lower", scaleAfter(QRectF(0, 0, 100, 25)), 4);
        row("computeScale same", scaleAfter(QRectF(0, 0, 100, 100)), 1);
        row("vHash of a point hashes x + y", vHash(QPointF(0.25, 0.75)), vHash(1.0));
        row("vHash of an integer point", vHash(QPoint(3, -2)), vHash(1.0));
        row("vHash of 0", vHash(0.0), 0);
        row("isNaN of NaN", isNaN(notANumber), true);
        row("isInf of -infinity", isInf(-infinity), true);
        row("isInf of NaN: not finite", isInf(notANumber), true);
        row("isInf(1e308)", isInf(1e308), false);
        row("IsNumber of a float NaN", IsNumber(std::numeric_limits<float>::quiet_NaN()), false);
        row("IsNumber of a float infinity", IsNumber(std::numeric_limits<float>::infinity()), false);
        row("IsNumber(-FLT_MAX)", IsNumber(-FLT_MAX), true);
    }
    void values() { compareValue(); }

    void points_data() {
        resultColumns<QPointF>();
        row("arc_getPointAtAngle", arc_getPointAtAngle(0, 2, QPointF(1, 1)), QPointF(3, 1));
        row("GetBeyond", GetBeyond(QPointF(0, 0), QPointF(2, 1), QPointF(4, 0)), QPointF(2, 2));
        // round shifts by n / 2 instead of rounding.
        row("round (3, -3) by 4", round(QPointF(3, -3), 4), QPointF(5, -5));
        row("round (0, 0) by 4", round(QPointF(0, 0), 4), QPointF(-2, -2));
        row("round by 1 gives 0", round(QPointF(7, 7), 1), QPointF(0, 0));
    }
    void points() { comparePoint(); }

    void exactQuirks() {
        QVERIFY(std::signbit(correctAngle(-0.0)));
        // medianAngle uses a truncated pi.
        const double median = medianAngle(QRectF(0, 0, 5, 5));
        QVERIFY(median != -45.0);
        QVERIFY(std::fabs(median + 45) < 1e-11);
        // Single-precision rotation: sin, cos and each product sum are rounded to float.
        QCOMPARE(rotatedPoint(QPointF(1.0 / 3, 0), QPointF(0, 0), 0).x(), double(float(1.0 / 3)));
        QVERIFY(rotatedPoint(QPointF(1.0 / 3, 0), QPointF(0, 0), 0).x() != 1.0 / 3);
        QCOMPARE(rotatedPoint(QPointF(1000.1, 5), QPointF(1000, 5), 0).x(),
                 double(float(1000.1 - 1000)) + 1000);
        const QPointF quarter = rotatedPoint(QPointF(10, 0), QPointF(0, 0), 90);
        QVERIFY(std::fabs(quarter.x()) < 1e-6);
        QCOMPARE(quarter.y(), -10.0);
        // The point overload of round leaves the C library's one alone.
        QCOMPARE(round(2.5), 3.0);
    }

    void rectangles() {
        QCOMPARE(rotatedRect(QRectF(0, 0, 4, 2), 90), QRectF(1, -1, 2, 4));
        const QRectF b = GetBoundingRect(QRectF(0, 0, 4, 2), 90);
        QVERIFY(std::fabs(b.left() - 1) < 1e-12 && std::fabs(b.width() - 2) < 1e-12 &&
                std::fabs(b.height() - 4) < 1e-12);
        const QRectF d = GetBoundingRect(QRectF(-1, -1, 2, 2), 45);
        QVERIFY(std::fabs(d.width() - 2 * std::sqrt(2.0)) < 1e-12);
        QCOMPARE(d.center(), QPointF(0, 0));
        const QRectF inner = lineToInnerRect(QLineF(0, 0, 10, 0), 2);
        QCOMPARE(inner.width(), std::sqrt(2.0));
        QCOMPARE(inner.center(), QPointF(5, 0));
        QCOMPARE(rectGenerate(QPointF(0, 0), QPointF(10, 0)), QRectF(0, 0, 10, -1));
    }

    void reflectionTwiceRestores_data() {
        QTest::addColumn<QLineF>("mirror");
        QTest::newRow("oblique") << QLineF(0, 2, 2, 0);
        QTest::newRow("vertical") << QLineF(4, 0, 4, 9);
        QTest::newRow("horizontal") << QLineF(0, -3, 8, -3);
    }
    void reflectionTwiceRestores() {
        QFETCH(QLineF, mirror);
        for (const QPointF& p : {QPointF(0, 0), QPointF(13.5, -2.25), QPointF(-7, 11)}) {
            const QPointF once = symmetric(p, mirror.p1(), mirror.p2());
            QVERIFY(near(symmetric(once, mirror.p1(), mirror.p2()), p));
            // The mirror line is the perpendicular bisector of p and its image.
            QVERIFY(offLine(GetCenter(p, once), mirror.p1(), mirror.p2()) < 1e-9);
        }
    }

    void containment_data() {
        addColumns<QRectF, double, bool, QPointF>("inner", "angle", "contained", "shift");
        QTest::newRow("inside") << QRectF(2, 2, 3, 3) << 0.0 << true << QPointF(0, 0);
        QTest::newRow("past the left") << QRectF(-2, 2, 3, 3) << 0.0 << false << QPointF(2, 0);
        QTest::newRow("past right and bottom") << QRectF(8, 9, 4, 4) << 0.0 << false << QPointF(-2, -3);
        QTest::newRow("rotated upright, the top wins")
            << QRectF(-1, 4, 12, 2) << 90.0 << false << QPointF(0, 1);
    }
    void containment() {
        QFETCH(QRectF, inner);
        QFETCH(double, angle);
        QFETCH(bool, contained);
        QFETCH(QPointF, shift);
        double dx = 99, dy = 99;
        QCOMPARE(IsContained(QRectF(0, 0, 10, 10), inner, angle, dx, dy), contained);
        QVERIFY(near(QPointF(dx, dy), shift));
    }

    void texts_data() {
        resultColumns<QString>();
        row("Double2Str zero", Double2Str(0), "0");
        row("Double2Str at the limit of fixed notation", Double2Str(0.0001), "0.0001");
        row("Double2Str small negative", Double2Str(-0.00005), "-0.00005");
        row("Double2Str below the printed digits", Double2Str(1e-20), "0");
        row("Double2Str ordinary", Double2Str(1234.5), "1234.5");
        row("Double2Str large", Double2Str(1e20), "1e+20");
    }
    void texts() {
        QFETCH(QString, got);
        QFETCH(QString, want);
        QCOMPARE(got, want);
    }

    void randomStaysInRange() {
        std::srand(7);
        for (int i = 0; i < 2000; ++i) {
            const double d = vRandom(5.0, -3.0);
            QVERIFY(d >= -3 && d <= 5);
            const int n = vRandom(-2, 4);
            QVERIFY(n >= -2 && n <= 4);
        }
        QCOMPARE(vRandom(5, 4), 5);
    }
};

QTEST_GUILESS_MAIN(TestGeometryAngles)
#include "tst_geometryangles.moc"
