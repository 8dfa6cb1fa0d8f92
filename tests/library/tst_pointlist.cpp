#include "DataColumns.h"
#include "PointList.h"

#include <QTest>

#include <functional>

using Transform = std::function<void(QList<QPointF>&)>;
Q_DECLARE_METATYPE(Transform)

namespace {

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
    void transforms_data() {
        const auto row = addColumns<Transform, Transform, QList<QPointF>, QList<QPointF>>(
            "forth", "back", "points", "expected");
        using L = QList<QPointF>;
        const auto flip = [](L& l) { pointlist_flip(l, 10); };
        row("flip twice restores", flip, flip, {{1, 2}, {3, 10}}, {{1, 8}, {3, 0}});
        row(
            "resize", [](L& l) { pointlist_resize(l, 4); }, [](L& l) { pointlist_resize(l, 0.25); },
            {{1, 2}, {-3, 0.5}}, {{4, 8}, {-12, 2}});
        row(
            "offset OUT adds, then scales; undone by offset IN",
            [](L& l) { pointlist_resize_offsetOUT(l, 2, 10, -1); },
            [](L& l) { pointlist_resize_offsetIN(l, 0.5, 20, -2); }, {{1, 2}}, {{22, 2}});
        row(
            "offset IN subtracts, then scales", [](L& l) { pointlist_resize_offsetIN(l, 2, 10, -1); },
            [](L& l) { pointlist_resize_offsetOUT(l, 0.5, 20, -2); }, {{1, 2}}, {{-18, 6}});
        row(
            "resizeXY", [](L& l) { pointlist_resizeXY(l, 2, -4); },
            [](L& l) { pointlist_resizeXY(l, 0.5, -0.25); }, {{1, 2}}, {{2, -8}});
        row(
            "rotate 90 turns x towards y", [](L& l) { pointlist_rotate(l, 90, false); },
            [](L& l) { pointlist_rotate(l, -90, false); }, {{1, 0}, {2, 1}}, {{0, 1}, {-1, 2}});
        const auto mirrored = [](L& l) { pointlist_rotate(l, 90, true); };
        row("rotate 90, then mirror x: its own inverse", mirrored, mirrored, {{2, 1}}, {{1, 2}});
        const qtrans map = qtrans(QTransform::fromTranslate(5, -5)).scale(2, 2);
        row(
            "map: scale acts before the translation", [map](L& l) { pointlist_map(l, map); },
            [map](L& l) { pointlist_map(l, qtrans(map.inverted())); }, {{1, 2}}, {{7, -1}});
    }

    // Hand-computed points, the inverse restores any outline, and an empty list stays empty.
    void transforms() {
        QFETCH(Transform, forth);
        QFETCH(Transform, back);
        QFETCH(QList<QPointF>, points);
        QFETCH(QList<QPointF>, expected);
        forth(points);
        QVERIFY2(fuzzyEqual(points, expected), qPrintable(QDebug::toString(points)));
        QList<QPointF> outline = {{0, 0}, {12.5, -3}, {-7.25, 40}, {3, 3}};
        const QList<QPointF> original = outline;
        forth(outline);
        QVERIFY(!fuzzyEqual(outline, original));
        back(outline);
        QVERIFY(fuzzyEqual(outline, original));
        QList<QPointF> empty;
        forth(empty);
        QVERIFY(empty.isEmpty());
    }

    void mirrorToggles() {
        qtrans transform;
        QVERIFY(!transform.mirror_x());
        transform.toggleMirror_x();
        QVERIFY(transform.mirror_x());
        QCOMPARE(transform.map(QPointF(3, 4)), QPointF(-3, 4));
        transform.toggleMirror_x();
        QVERIFY(!transform.mirror_x());
        QVERIFY(transform.isIdentity());
    }

    void boundingRect_data() {
        addColumns<QList<QList<QPointF>>, QRectF>("lists", "expected");
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

    void boundingRect() {
        QFETCH(QList<QList<QPointF>>, lists);
        QFETCH(QRectF, expected);
        const QRectF rect = pointlist_toRectF(lists);
        QCOMPARE(rect, expected);
        QCOMPARE(rect.topLeft(), expected.topLeft());
    }
};

QTEST_APPLESS_MAIN(TestPointList)
#include "tst_pointlist.moc"
