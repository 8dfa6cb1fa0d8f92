#include "DataColumns.h"
#include "GeometryTestTables.h"

namespace {

double ellipseValue(const QRectF& e, const QPointF& p) {
    const double u = (p.x() - e.center().x()) / (e.width() / 2);
    const double v = (p.y() - e.center().y()) / (e.height() / 2);
    return u * u + v * v - 1;
}

template <typename Call> QPointF written(Call call) {
    QPointF out;
    return call(out) ? out : none();
}

QPointF segmentCrossing(const QLineF& cd) {
    double x = -1, y = -1;
    return lineSegmentIntersection(0, 0, 10, 0, cd.x1(), cd.y1(), cd.x2(), cd.y2(), &x, &y) ? QPointF(x, y)
                                                                                            : none();
}

QPointF nearestToB(QPointF a, QPointF b) {
    return written([&](QPointF& out) { return circleLineIntersectPoint(5, QPointF(0, 0), a, b, out); });
}

QPointF roundedHit(double radius, QPointF p) {
    return written(
        [&](QPointF& out) { return roundedRectLineIntersectionPoint(radius, QRectF(0, 0, 10, 10), p, out); });
}

struct Parallels {
    QPointF a2, b2;
    bool exact, nearly;
};

// Two lines by both methods; a null byRotation stands for the same point as bySlopes.
struct TwoLines {
    QLineF ab, cd;
    long slopeCode;
    QPointF bySlopes, byRotation;
};

struct TwoCircles {
    QPointF c1;
    double r1;
    QPointF c2;
    double r2;
    long code;
    QPointF o1, o2;
};

// The line ab with the circle of radius 5 around centre, in an area of size x size.
struct LineCircle {
    QLineF ab;
    QPointF centre;
    long size, code;
    QPointF o1, o2;
};

struct EllipseLine {
    QRectF e;
    QLineF ab;
    bool segment, result;
    QList<QPointF> points;
};

struct Projection {
    QPointF p;
    QLineF ab;
    QPointF foot;
    double tolerance;
};

} // namespace

Q_DECLARE_METATYPE(Parallels)
Q_DECLARE_METATYPE(EllipseLine)
Q_DECLARE_METATYPE(Projection)
Q_DECLARE_METATYPE(TwoLines)
Q_DECLARE_METATYPE(TwoCircles)
Q_DECLARE_METATYPE(LineCircle)

class TestGeometryIntersections : public QObject {
    Q_OBJECT
private slots:
    void parallelTests_data() {
        QTest::addColumn<Parallels>("lines");
        // Both lines start at the origin; only their second points vary.
        QTest::newRow("both vertical") << Parallels{{0, 5}, {0, -1}, true, true};
        QTest::newRow("difference of exactly 0.005") << Parallels{{0, 1}, {1, 200}, false, true};
        QTest::newRow("difference of 0.006") << Parallels{{0, 1}, {6, 1000}, false, false};
        QTest::newRow("first line is a point") << Parallels{{0, 0}, {1, 1}, false, false};
        QTest::newRow("same slope") << Parallels{{2, 6}, {-1, -3}, true, true};
    }
    void parallelTests() {
        QFETCH(Parallels, lines);
        QCOMPARE(parallel(QPointF(), lines.a2, QPointF(), lines.b2), lines.exact);
        QCOMPARE(nearlyParallel(QPointF(), lines.a2, QPointF(), lines.b2), lines.nearly);
    }

    // The slope method and the rotation method side by side: their degenerate cases differ.
    void twoLineMethods_data() {
        QTest::addColumn<TwoLines>("lines");
        const QPointF origin(0, 0);
        QTest::newRow("generic") << TwoLines{{1, 2, 3, 9}, {-4, 5, 8, 1}, 1, {31.0 / 23, 74.0 / 23}, {}};
        QTest::newRow("crossing outside the area")
            << TwoLines{{0, 0, 1, 1}, {300, 0, 301, -1}, 2, {150, 150}, {}};
        QTest::newRow("vertical drawn upwards") << TwoLines{{5, 10, 5, 0}, {0, 0, 10, 10}, 1, {5, 5}, {}};
        // A slope of -infinity is not taken for vertical: the general formula gives NaN.
        QTest::newRow("vertical drawn downwards")
            << TwoLines{{5, 0, 5, 10}, {0, 0, 10, 10}, 2, none(), {5, 5}};
        QTest::newRow("parallel") << TwoLines{{0, 0, 4, 0}, {0, 3, 4, 3}, 0, origin, none()};
        QTest::newRow("same line, same points") << TwoLines{{0, 0, 1, 1}, {0, 0, 1, 1}, -1, origin, none()};
        QTest::newRow("both vertical") << TwoLines{{1, 10, 1, 0}, {2, 10, 2, 0}, 0, origin, none()};
        QTest::newRow("first line is a point") << TwoLines{{3, 3, 3, 3}, {0, 0, 1, 2}, -1, origin, none()};
    }
    void twoLineMethods() {
        QFETCH(TwoLines, lines);
        const QLineF ab = lines.ab, cd = lines.cd;
        // The rotation method finds what the slopes find unless told otherwise.
        const QPointF byRotation = lines.byRotation.isNull() ? lines.bySlopes : lines.byRotation;
        QPointF out(7, 7);
        QCOMPARE(CalculIntersectionDroites(ab.p1(), ab.p2(), cd.p1(), cd.p2(), out, 100, 100),
                 lines.slopeCode);
        QVERIFY(matches(out, lines.bySlopes));
        double x = 0, y = 0;
        QCOMPARE(
            lineIntersection(ab.x1(), ab.y1(), ab.x2(), ab.y2(), cd.x1(), cd.y1(), cd.x2(), cd.y2(), &x, &y),
            !std::isnan(byRotation.x()));
        QVERIFY(matches(QPointF(x, y), byRotation) || std::isnan(byRotation.x()));
    }

    // Codes shared by both: 0 none, 1/2 one point inside/outside the area, 3/4 two points both
    // inside/any outside, -1 refused. A point at the origin counts as absent.
    void circles_data() {
        QTest::addColumn<TwoCircles>("c");
        const double h = std::sqrt(75.0);
        QTest::newRow("two points inside")
            << TwoCircles{{50, 50}, 10, {60, 50}, 10, 3, {55, 50 + h}, {55, 50 - h}};
        QTest::newRow("one point outside")
            << TwoCircles{{50, 5}, 10, {60, 5}, 10, 4, {55, 5 + h}, {55, 5 - h}};
        QTest::newRow("touching inside") << TwoCircles{{10, 10}, 5, {20, 10}, 5, 1, {15, 10}, {}};
        QTest::newRow("touching outside") << TwoCircles{{10, 200}, 5, {20, 200}, 5, 2, {15, 200}, {}};
        QTest::newRow("separate") << TwoCircles{{0, 0}, 1, {5, 5}, 1, 0, {}, {}};
        QTest::newRow("touching at the origin is absent") << TwoCircles{{-5, 0}, 5, {5, 0}, 5, 0, {}, {}};
        QTest::newRow("one crossing at the origin") << TwoCircles{{4, 3}, 5, {-4, 3}, 5, 0, {0, 0}, {0, 6}};
    }
    void circles() {
        QFETCH(TwoCircles, c);
        QPointF o1(1, 1), o2(1, 1);
        QCOMPARE(CalculIntersectionCercles(c.c1, c.r1, c.c2, c.r2, o1, o2, 100, 100), c.code);
        QVERIFY(near(o1, c.o1) && near(o2, c.o2));
    }

    void lineAndCircle_data() {
        QTest::addColumn<LineCircle>("c");
        QTest::newRow("secant") << LineCircle{{0, 5, 1, 5}, {10, 5}, 100, 3, {15, 5}, {5, 5}};
        QTest::newRow("secant leaving the area") << LineCircle{{0, 5, 1, 5}, {10, 5}, 10, 4, {15, 5}, {5, 5}};
        QTest::newRow("vertical secant")
            << LineCircle{{10, -50, 10, -49}, {10, 5}, 100, 3, {10, 10}, {10, 0}};
        QTest::newRow("tangent") << LineCircle{{0, 10, 20, 10}, {10, 5}, 100, 1, {10, 10}, {}};
        QTest::newRow("tangent outside the area") << LineCircle{{0, 10, 20, 10}, {10, 5}, 9, 2, {10, 10}, {}};
        QTest::newRow("miss") << LineCircle{{0, 20, 20, 20}, {10, 5}, 100, 0, {}, {}};
        QTest::newRow("a point, outputs untouched") << LineCircle{{3, 3, 3, 3}, {}, 9, -1, {1, 1}, {1, 1}};
        // With the second crossing at the origin the first one looks like a tangent point.
        QTest::newRow("second crossing at the origin")
            << LineCircle{{-5, 0, 15, 0}, {5, 0}, 99, 1, {10, 0}, {}};
    }
    void lineAndCircle() {
        QFETCH(LineCircle, c);
        QPointF o1(1, 1), o2(1, 1);
        QCOMPARE(CalculIntersectionDroiteCercle(c.ab.p1(), c.ab.p2(), c.centre, 5, o1, o2, c.size, c.size),
                 c.code);
        QVERIFY(near(o1, c.o1) && near(o2, c.o2));
    }

    void circlePairs() {
        double xi = 0, yi = 0, xj = 0, yj = 0;
        QVERIFY(circle_circle_intersection(0, 0, 5, 6, 0, 5, &xi, &yi, &xj, &yj));
        QVERIFY(near(QPointF(xi, yi), QPointF(3, 4)) || near(QPointF(xi, yi), QPointF(3, -4)));
        QVERIFY(near(QPointF(xi, yi), QPointF(xj, -yj)));
        QVERIFY(circle_circle_intersection(0, 0, 5, 10, 0, 5, &xi, &yi, &xj, &yj));
        QVERIFY(near(QPointF(xi, yi), QPointF(5, 0)) && near(QPointF(xj, yj), QPointF(5, 0)));
    }

    void tangents_data() {
        addColumns<double, int>("xb", "points");
        // Circle a has centre (0, 0) and radius 2; b has radius 3 and sits on the x axis.
        QTest::newRow("separate: four tangents") << 10.0 << 8;
        QTest::newRow("touching outside: three") << 5.0 << 6;
        QTest::newRow("crossing: two") << 3.0 << 4;
        QTest::newRow("touching inside: one") << 1.0 << 2;
        QTest::newRow("nested: none") << 0.5 << 0;
        QTest::newRow("concentric: none") << 0.0 << 0;
    }
    void tangents() {
        QFETCH(double, xb);
        QFETCH(int, points);
        QList<QPointF> out;
        QCOMPARE(circle_circle_tangents(0, 0, 2, xb, 0, 3, out), points > 0);
        QCOMPARE(out.size(), points);
        for (int i = 0; i + 1 < out.size(); i += 2) {
            const QPointF ta = out[i], tb = out[i + 1];
            QVERIFY(std::fabs(std::hypot(ta.x(), ta.y()) - 2) < 1e-9);
            QVERIFY(std::fabs(std::hypot(tb.x() - xb, tb.y()) - 3) < 1e-9);
            // The tangent is perpendicular to both radii.
            QVERIFY(near(ta, tb) || std::fabs(offLine(QPointF(0, 0), ta, tb) - 2) < 1e-9);
            QVERIFY(near(ta, tb) || std::fabs(offLine(QPointF(xb, 0), ta, tb) - 3) < 1e-9);
        }
    }

    void pointTangents() {
        QPointF t1, t2;
        QVERIFY(point_circle_tangent(QPointF(0, 0), 5, QPointF(13, 0), t1, t2));
        for (const QPointF& t : {t1, t2})
            QVERIFY(std::fabs(std::hypot(t.x(), t.y()) - 5) < 1e-9 &&
                    std::fabs(QPointF::dotProduct(t, t - QPointF(13, 0))) < 1e-9);
        QVERIFY(!near(t1, t2));
        QVERIFY(point_circle_tangent(QPointF(0, 0), 5, QPointF(1, 0), t1, t2));
        QVERIFY(std::isnan(t1.x()) && std::isnan(t2.y()));
    }

    void points_data() {
        resultColumns<QPointF>();
        // Segments from (0, 0) to (10, 0) and cd.
        row("segments crossing", segmentCrossing({4, -3, 4, 5}), QPointF(4, 0));
        row("segments sharing an end point", segmentCrossing({10, 0, 12, 5}), none());
        row("segment beyond the end", segmentCrossing({12, -1, 12, 1}), none());
        row("segment that is a point", segmentCrossing({3, 3, 3, 3}), none());
        const double s = 5 / std::sqrt(2.0);
        row("circle and line, nearest to b", nearestToB({-10, 0}, {10, 0}), QPointF(5, 0));
        row("circle and line from the centre", nearestToB({0, 0}, {-1, -1}), QPointF(-s, -s));
        row("circle and line missing", nearestToB({-10, 6}, {10, 6}), none());
        row("circle and a point", nearestToB({1, 1}, {1, 1}), none());
        row("rounded rectangle, edge", roundedHit(2, {5, -5}), QPointF(5, 0));
        row("rounded rectangle, corner arc", roundedHit(2, {20, -10}),
            QPointF(8 + std::sqrt(2.0), 2 - std::sqrt(2.0)));
        row("rounded rectangle of radius 0", roundedHit(0, {20, -10}), QPointF(10, 0));
        row("rounded rectangle, inside", roundedHit(2, {6, 6}), none());
        row("leaving the rectangle rightwards", LineIntersectRect({0, 0, 10, 10}, {5, 5, 6, 5}),
            QPointF(10, 5));
        row("leaving through a corner", LineIntersectRect({0, 0, 10, 10}, {5, 5, 6, 6}), QPointF(10, 10));
        row("leaving, starting outside", LineIntersectRect({0, 0, 10, 10}, {-20, 2, -19, 2}), QPointF(10, 2));
        row("line missing the rectangle", LineIntersectRect({0, 0, 10, 10}, {20, 0, 20, 1}), QPointF());
        row("line that is a point", LineIntersectRect({0, 0, 10, 10}, {5, 5, 5, 5}), QPointF());
        const QPointF o(1, 1);
        row("constraint_angle to 0", constraint_angle(o, {11, 2}), QPointF(1 + std::hypot(10, 1), 1));
        row("constraint_angle to 45", constraint_angle(o, {11, 10}),
            QPointF(1 + std::hypot(10, 9) / std::sqrt(2.0), 1 + std::hypot(10, 9) / std::sqrt(2.0)));
        row("constraint_square wide", constraint_square(o, {11, 5}), QPointF(11, 11));
        row("constraint_square tall", constraint_square(o, {-2, 9}), QPointF(-7, 9));
        row("constraint_square of the origin", constraint_square(o, o), o);
        row("clamped into the rectangle", pointConstrainedInRect(QPointF(-3, 12), QRectF(0, 0, 10, 10)),
            QPointF(0, 10));
        row("integer clamp keeps the last pixel",
            pointConstrainedInRect(QPoint(20, -20), QRect(0, 0, 10, 10)), QPointF(9, 0));
    }
    void points() { comparePoint(); }

    void values_data() {
        resultColumns<double>();
        // isPointOnLine truncates each length apart: tolerant to about one unit.
        row("on the line", isPointOnLine({0, 0}, {10, 0}, {4, 0}), true);
        row("three units off the line, still on", isPointOnLine({0, 0}, {10, 0}, {5, 3}), true);
        row("four units off the line", isPointOnLine({0, 0}, {10, 0}, {5, 4}), false);
        row("beyond the end of the line", isPointOnLine({0, 0}, {10, 0}, {12, 0}), false);
        double x = 0, y = 0;
        row("distance to a rectangle, inside", distanceBetweenPointandRect({0, 0, 10, 10}, {5, 5}), 0);
        row("distance to a rectangle, corner", distanceBetweenPointandRect({0, 0, 10, 10}, {13, 14}), 5);
        row("distance to a negative rectangle", distanceBetweenPointandRect({10, 10, -10, -10}, {13, 14}), 5);
        row("circles apart", circle_circle_intersection(0, 0, 5, 20, 0, 5, &x, &y, &x, &y), false);
        row("circle inside another", circle_circle_intersection(0, 0, 5, 1, 0, 2, &x, &y, &x, &y), false);
        row("identical circles", circle_circle_intersection(0, 0, 5, 0, 0, 5, &x, &y, &x, &y), false);
    }
    void values() { compareValue(); }

    void rectangleEdges_data() {
        addColumns<QPointF, int, QPointF>("p", "edge", "hit");
        QTest::newRow("top") << QPointF(5, -5) << 1 << QPointF(5, 0);
        QTest::newRow("right") << QPointF(15, 5) << 2 << QPointF(10, 5);
        QTest::newRow("bottom") << QPointF(5, 15) << 3 << QPointF(5, 10);
        QTest::newRow("left") << QPointF(-5, 5) << 4 << QPointF(0, 5);
        QTest::newRow("corner goes to the top first") << QPointF(15, -5) << 1 << QPointF(10, 0);
        QTest::newRow("inside") << QPointF(6, 6) << 0 << QPointF(-1, -1);
    }
    void rectangleEdges() {
        QFETCH(QPointF, p);
        QFETCH(int, edge);
        QFETCH(QPointF, hit);
        QPointF out(-1, -1);
        QCOMPARE(rectangleLineIntersectPoint(QRectF(0, 0, 10, 10), p, out), edge);
        QVERIFY(near(out, hit));
    }

    void ellipseAndLine_data() {
        QTest::addColumn<EllipseLine>("c");
        const QRectF e(0, 0, 20, 10);
        QTest::newRow("through the centre") << EllipseLine{e, {-5, 5, 25, 5}, false, true, {{20, 5}, {0, 5}}};
        QTest::newRow("negative size normalised")
            << EllipseLine{{20, 10, -20, -10}, {-5, 5, 25, 5}, false, true, {{20, 5}, {0, 5}}};
        QTest::newRow("tangent") << EllipseLine{e, {-5, 0, 25, 0}, false, true, {{10, 0}}};
        QTest::newRow("segment keeps one") << EllipseLine{e, {10, 5, 30, 5}, true, true, {{20, 5}}};
        QTest::newRow("line keeps both") << EllipseLine{e, {10, 5, 30, 5}, false, true, {{20, 5}, {0, 5}}};
        QTest::newRow("miss") << EllipseLine{e, {-5, 20, 25, 20}, false, true, {}};
        QTest::newRow("flat ellipse") << EllipseLine{{0, 0, 20, 0}, {-5, 0, 25, 0}, false, false, {}};
        QTest::newRow("a point") << EllipseLine{e, {3, 3, 3, 3}, false, false, {}};
    }
    void ellipseAndLine() {
        QFETCH(EllipseLine, c);
        QList<QPointF> out;
        QCOMPARE(ellipseLineIntersection(c.e, c.ab.p1(), c.ab.p2(), out, c.segment), c.result);
        QCOMPARE(out.size(), c.points.size());
        QVERIFY(std::equal(out.begin(), out.end(), c.points.begin(),
                           [](QPointF a, QPointF b) { return near(a, b, 1e-5); }));
    }

    void twoEllipses_data() {
        addColumns<QRectF, QRectF, int>("e1", "e2", "count");
        QTest::newRow("two circles") << QRectF(-5, -5, 10, 10) << QRectF(1, -5, 10, 10) << 2;
        QTest::newRow("crossed, same centre") << QRectF(-10, -5, 20, 10) << QRectF(-5, -10, 10, 20) << 4;
        QTest::newRow("shifted down only") << QRectF(-10, -5, 20, 10) << QRectF(-5, -3, 10, 20) << 2;
        QTest::newRow("generic, four points") << QRectF(0, 0, 40, 20) << QRectF(12, -6, 16, 32) << 4;
        QTest::newRow("touching") << QRectF(0, 0, 20, 10) << QRectF(20, 0, 20, 10) << 1;
        QTest::newRow("touching inside") << QRectF(0, 0, 20, 10) << QRectF(0, 2.5, 10, 5) << 1;
        QTest::newRow("separate") << QRectF(0, 0, 20, 10) << QRectF(30, 0, 20, 10) << 0;
        QTest::newRow("nested") << QRectF(0, 0, 20, 10) << QRectF(5, 2, 10, 6) << 0;
        QTest::newRow("identical") << QRectF(0, 0, 20, 10) << QRectF(0, 0, 20, 10) << 0;
        QTest::newRow("empty") << QRectF(0, 0, 20, 0) << QRectF(0, 0, 20, 10) << 0;
    }
    void twoEllipses() {
        QFETCH(QRectF, e1);
        QFETCH(QRectF, e2);
        QFETCH(int, count);
        QList<QPointF> out;
        QCOMPARE(ellipseIntersection(e1, e2, out), count > 0);
        QCOMPARE(out.size(), count);
        for (const QPointF& p : out)
            QVERIFY(std::fabs(ellipseValue(e1, p)) < 1e-9 && std::fabs(ellipseValue(e2, p)) < 1e-6);
    }

    void projections_data() {
        QTest::addColumn<Projection>("c");
        QTest::newRow("oblique, exact") << Projection{{0, 0}, {0, 2, 2, 0}, {1, 1}, 0};
        QTest::newRow("generic") << Projection{{7, -3}, {1, 1, 4, 5}, {1.24, 1.32}, 1e-12};
        // A vertical line takes the substitute slope 1e9.
        QTest::newRow("vertical, approximate") << Projection{{0, 3}, {5, 0, 5, 10}, {5, 3}, 1e-6};
    }
    void projections() {
        QFETCH(Projection, c);
        QPointF out;
        QVERIFY(CalculProjectionPoint(c.p, c.ab.p1(), c.ab.p2(), out));
        QVERIFY(near(out, c.foot, c.tolerance));
        QVERIFY(offLine(out, c.ab.p1(), c.ab.p2()) <= std::max(c.tolerance, 1e-12));
    }
};

QTEST_GUILESS_MAIN(TestGeometryIntersections)
#include "tst_geometryintersections.moc"
