#include "DataColumns.h"
#include "GeometrySelfIntersection.h"
#include "GeometrySplines.h"
#include "GeometryTestTables.h"

#include <QTransform>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

double polylineLength(const QPolygonF& p) {
    double sum = 0;
    for (int i = 1; i < p.size(); ++i)
        sum += QLineF(p[i - 1], p[i]).length();
    return sum;
}

} // namespace

class TestGeometrySplines : public QObject {
    Q_OBJECT
private slots:
    void curves_data() {
        addColumns<QPolygonF, bool>("points", "closed");
        QTest::newRow("wave") << QPolygonF{{0, 0}, {40, 30}, {80, -10}, {120, 50}, {160, 0}} << false;
        QTest::newRow("close pair between far points")
            << QPolygonF{{0, 0}, {100, 0}, {100.5, 0.5}, {101, 100}} << false;
        QTest::newRow("repeated points") << QPolygonF{{0, 0}, {0, 0}, {50, 20}, {50, 20}, {90, -20}} << false;
        QTest::newRow("closed, uneven") << QPolygonF{{0, 0}, {100, 0}, {101, 2}, {100, 60}, {-5, 40}} << true;
    }
    // Through every point, without loops, and its length agrees with a finely sampled polyline.
    void curves() {
        QFETCH(QPolygonF, points);
        QFETCH(bool, closed);
        const QPolygonF curve = catmullRomPolyline(points, 0.25, closed);
        for (const QPointF& p : points)
            QVERIFY(std::any_of(curve.begin(), curve.end(), [&p](const QPointF& q) { return near(q, p); }));
        QVERIFY(closed ? near(curve.first(), curve.last()) && !polygonSelfIntersects(curve, true)
                       : !polygonSelfIntersects(curve, false));
        const double length = catmullRomLength(points, closed);
        QVERIFY(std::fabs(length - polylineLength(catmullRomPolyline(points, 1e-9, closed))) <=
                1e-6 * length);
        QVERIFY(polylineLength(curve) <= length && polylineLength(curve) > 0.99 * length);
        // The shape does not depend on the scale.
        for (double k : {1e-5, 1e250})
            QVERIFY(std::fabs(catmullRomLength(QTransform::fromScale(k, k).map(points), closed) / k -
                              length) <= 1e-9 * length);
    }

    // Evenly spaced points on a line give the line at constant speed; bad input gives nothing, and a
    // million points a bounded sampling.
    void degenerateInput() {
        QCOMPARE(catmullRomLength({{0, 0}, {3, 4}, {6, 8}, {9, 12}}), 15.0);
        QCOMPARE(catmullRomLength({{1, 1}, {4, 5}}), 5.0);
        QVERIFY(catmullRomPolyline({}).isEmpty() && catmullRomLength({}) == 0);
        QCOMPARE(catmullRomPolyline({{2, 3}, {2, 3}}), QPolygonF({{2, 3}}));
        QVERIFY(catmullRomPolyline({{0, 0}, {NaN, 1}, {2, 2}}).isEmpty());
        QCOMPARE(catmullRomLength({{0, 0}, {1, 1}, {1e308, -1e308}, {-1e308, 1e308}}), 0.0);
        QPolygonF many;
        for (int i = 0; i < 1000000; ++i)
            many.append(QPointF(i, (i % 2) * 3));
        const QPolygonF curve = catmullRomPolyline(many, 0);
        QVERIFY(curve.size() > 1000000 && curve.size() < 5000000);
        QVERIFY(catmullRomLength(many) > polylineLength(many) * 0.99);
    }
};

QTEST_GUILESS_MAIN(TestGeometrySplines)
#include "tst_geometrysplines.moc"
