#include "PointList.h"

#include <QTest>

#include <functional>

using Transform = std::function<void(QList<QPointF>&)>;
Q_DECLARE_METATYPE(Transform)

namespace {

const QList<QPointF> outline = {{0, 0}, {12.5, -3}, {-7.25, 40}, {3, 3}};

bool fuzzyEqual(const QList<QPointF>& a, const QList<QPointF>& b) {
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i) {
        if (std::abs(a[i].x() - b[i].x()) > 1e-9 || std::abs(a[i].y() - b[i].y()) > 1e-9)
            return false;
    }
    return true;
}

} // namespace

class TestPointList : public QObject {
    Q_OBJECT
private slots:
    void handComputedPoints_data();
    void handComputedPoints();
    void roundTrips_data();
    void roundTrips();
    void mirrorToggles();
    void boundingRect_data();
    void boundingRect();
};

void TestPointList::handComputedPoints_data() {
    QTest::addColumn<Transform>("transform");
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<QList<QPointF>>("expected");
    using L = QList<QPointF>;
    const auto row = [](const char* name, Transform t, L points, L expected) {
        QTest::newRow(name) << t << points << expected;
    };
    row("flip", [](L& l) { pointlist_flip(l, 10); }, {{1, 2}, {3, 10}}, {{1, 8}, {3, 0}});
    row("resize", [](L& l) { pointlist_resize(l, 4); }, {{1, 2}, {-3, 0.5}}, {{4, 8}, {-12, 2}});
    row("offset OUT adds, then scales", [](L& l) { pointlist_resize_offsetOUT(l, 2, 10, -1); }, {{1, 2}},
        {{22, 2}});
    row("offset IN subtracts, then scales", [](L& l) { pointlist_resize_offsetIN(l, 2, 10, -1); }, {{1, 2}},
        {{-18, 6}});
    row("offset IN with factor 1 shifts", [](L& l) { pointlist_resize_offsetIN(l, 1, 4, -5); },
        {{1, 2}, {0, 0}}, {{-3, 7}, {-4, 5}});
    row("resizeXY", [](L& l) { pointlist_resizeXY(l, 2, -3); }, {{1, 2}}, {{2, -6}});
    row("rotate 90 turns x towards y", [](L& l) { pointlist_rotate(l, 90, false); }, {{1, 0}, {2, 1}},
        {{0, 1}, {-1, 2}});
    row("rotate 90, then mirror x", [](L& l) { pointlist_rotate(l, 90, true); }, {{2, 1}}, {{1, 2}});
    row("map: scale acts before the translation",
        [](L& l) { pointlist_map(l, qtrans(QTransform::fromTranslate(5, -5)).scale(2, 2)); }, {{1, 2}},
        {{7, -1}});
}

// Each transform moves every point as computed by hand, and leaves an empty list empty.
void TestPointList::handComputedPoints() {
    QFETCH(Transform, transform);
    QFETCH(QList<QPointF>, points);
    QFETCH(QList<QPointF>, expected);
    transform(points);
    QVERIFY2(fuzzyEqual(points, expected), qPrintable(QDebug::toString(points)));
    QList<QPointF> empty;
    transform(empty);
    QVERIFY(empty.isEmpty());
}

void TestPointList::roundTrips_data() {
    QTest::addColumn<Transform>("forth");
    QTest::addColumn<Transform>("back");
    using L = QList<QPointF>;
    QTest::newRow("flip twice") << Transform([](L& l) { pointlist_flip(l, 480); })
                                << Transform([](L& l) { pointlist_flip(l, 480); });
    QTest::newRow("offset OUT undone by offset IN")
        << Transform([](L& l) { pointlist_resize_offsetOUT(l, 2.5, 3, -4); })
        << Transform([](L& l) { pointlist_resize_offsetIN(l, 1 / 2.5, 3 * 2.5, -4 * 2.5); });
    QTest::newRow("rotation undone by the opposite angle")
        << Transform([](L& l) { pointlist_rotate(l, 37, false); })
        << Transform([](L& l) { pointlist_rotate(l, -37, false); });
    QTest::newRow("mirrored rotation is its own inverse")
        << Transform([](L& l) { pointlist_rotate(l, 37, true); })
        << Transform([](L& l) { pointlist_rotate(l, 37, true); });
}

void TestPointList::roundTrips() {
    QFETCH(Transform, forth);
    QFETCH(Transform, back);
    QList<QPointF> points = outline;
    forth(points);
    QVERIFY(!fuzzyEqual(points, outline));
    back(points);
    QVERIFY(fuzzyEqual(points, outline));
}

void TestPointList::mirrorToggles() {
    qtrans transform;
    QVERIFY(!transform.mirror_x());
    transform.toggleMirror_x();
    QVERIFY(transform.mirror_x());
    QCOMPARE(transform.map(QPointF(3, 4)), QPointF(-3, 4));
    transform.toggleMirror_x();
    QVERIFY(!transform.mirror_x());
    QVERIFY(transform.isIdentity());
}
void TestPointList::boundingRect_data() {
    QTest::addColumn<QList<QList<QPointF>>>("lists");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("no lists") << QList<QList<QPointF>>() << QRectF(0, 0, 0, 0);
    QTest::newRow("only empty lists") << QList<QList<QPointF>>{{}, {}} << QRectF(0, 0, 0, 0);
    QTest::newRow("one point") << QList<QList<QPointF>>{{{5, -2}}} << QRectF(5, -2, 0, 0);
    QTest::newRow("first list empty")
        << QList<QList<QPointF>>{{}, {{10, 10}, {12, 15}}} << QRectF(10, 10, 2, 5);
    QTest::newRow("negative coordinates")
        << QList<QList<QPointF>>{{{-4, -1}, {-2, -8}}} << QRectF(-4, -8, 2, 7);
    QTest::newRow("spread over lists")
        << QList<QList<QPointF>>{{{1, 1}}, {}, {{-1, 4}, {3, 2}}, {{0, -2}}} << QRectF(-1, -2, 4, 6);
}

void TestPointList::boundingRect() {
    QFETCH(QList<QList<QPointF>>, lists);
    QFETCH(QRectF, expected);
    const QRectF rect = pointlist_toRectF(lists);
    QCOMPARE(rect, expected);
    QCOMPARE(rect.topLeft(), expected.topLeft());
}

QTEST_APPLESS_MAIN(TestPointList)
#include "tst_pointlist.moc"
