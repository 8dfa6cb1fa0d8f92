#include "PointList.h"

#include <QTest>

#include <functional>

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
    void emptyListStaysEmpty();
    void handComputedPoints_data();
    void handComputedPoints();
    void flipTwiceRestores();
    void offsetOutUndoneByOffsetIn();
    void rotationRoundTrips();
    void mirrorToggles();
    void boundingRect_data();
    void boundingRect();
};

void TestPointList::emptyListStaysEmpty() {
    const QList<std::function<void(QList<QPointF>&)>> transforms = {
        [](QList<QPointF>& l) { pointlist_flip(l, 100); },
        [](QList<QPointF>& l) { pointlist_resize(l, 2); },
        [](QList<QPointF>& l) { pointlist_resize_offsetOUT(l, 2, 1, 1); },
        [](QList<QPointF>& l) { pointlist_resize_offsetIN(l, 2, 1, 1); },
        [](QList<QPointF>& l) { pointlist_map(l, qtrans(QTransform::fromTranslate(5, 5))); },
        [](QList<QPointF>& l) { pointlist_resizeXY(l, 2, 3); },
        [](QList<QPointF>& l) { pointlist_rotate(l, 30, true); },
    };
    for (const auto& transform : transforms) {
        QList<QPointF> points;
        transform(points);
        QVERIFY(points.isEmpty());
    }
}

void TestPointList::handComputedPoints_data() {
    QTest::addColumn<QList<QPointF>>("points");
    QTest::addColumn<QList<QPointF>>("expected");
    QList<QPointF> l;

    l = {{1, 2}, {3, 10}};
    pointlist_flip(l, 10);
    QTest::newRow("flip") << l << QList<QPointF>{{1, 8}, {3, 0}};
    l = {{1, 2}, {-3, 0.5}};
    pointlist_resize(l, 4);
    QTest::newRow("resize") << l << QList<QPointF>{{4, 8}, {-12, 2}};
    l = {{1, 2}};
    pointlist_resize_offsetOUT(l, 2, 10, -1);
    QTest::newRow("offset OUT adds, then scales") << l << QList<QPointF>{{22, 2}};
    l = {{1, 2}};
    pointlist_resize_offsetIN(l, 2, 10, -1);
    QTest::newRow("offset IN subtracts, then scales") << l << QList<QPointF>{{-18, 6}};
    l = {{1, 2}, {0, 0}};
    pointlist_resize_offsetIN(l, 1, 4, -5);
    QTest::newRow("offset IN with factor 1 shifts") << l << QList<QPointF>{{-3, 7}, {-4, 5}};
    l = {{1, 2}};
    pointlist_resizeXY(l, 2, -3);
    QTest::newRow("resizeXY") << l << QList<QPointF>{{2, -6}};
    l = {{1, 0}, {2, 1}};
    pointlist_rotate(l, 90, false);
    QTest::newRow("rotate 90 turns x towards y") << l << QList<QPointF>{{0, 1}, {-1, 2}};
    l = {{2, 1}};
    pointlist_rotate(l, 90, true);
    QTest::newRow("rotate 90, then mirror x") << l << QList<QPointF>{{1, 2}};
    l = {{1, 2}};
    qtrans shift(QTransform::fromTranslate(5, -5));
    pointlist_map(l, shift.scale(2, 2));
    QTest::newRow("map: scale acts before the translation") << l << QList<QPointF>{{7, -1}};
}

void TestPointList::handComputedPoints() {
    QFETCH(QList<QPointF>, points);
    QFETCH(QList<QPointF>, expected);
    QVERIFY2(fuzzyEqual(points, expected), qPrintable(QDebug::toString(points)));
}

void TestPointList::flipTwiceRestores() {
    QList<QPointF> points = outline;
    pointlist_flip(points, 480);
    QVERIFY(points != outline);
    pointlist_flip(points, 480);
    QCOMPARE(points, outline);
}

void TestPointList::offsetOutUndoneByOffsetIn() {
    const double factor = 2.5, dx = 3, dy = -4;
    QList<QPointF> points = outline;
    pointlist_resize_offsetOUT(points, factor, dx, dy);
    pointlist_resize_offsetIN(points, 1 / factor, dx * factor, dy * factor);
    QVERIFY(fuzzyEqual(points, outline));
}

void TestPointList::rotationRoundTrips() {
    QList<QPointF> points = outline;
    pointlist_rotate(points, 37, false);
    pointlist_rotate(points, -37, false);
    QVERIFY(fuzzyEqual(points, outline));
    // A mirrored rotation is its own inverse.
    pointlist_rotate(points, 37, true);
    QVERIFY(!fuzzyEqual(points, outline));
    pointlist_rotate(points, 37, true);
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
