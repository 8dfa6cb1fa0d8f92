#include "DataColumns.h"
#include "DrawingView.h"
#include "TestItem.h"

#include <cmath>

class TestHandgrips : public QObject {
    Q_OBJECT
private slots:
    void angleForPos_data() {
        addColumns<QPointF, double>("p", "expected");
        QTest::newRow("right") << QPointF(1, 0) << 0.0;
        QTest::newRow("below (y down)") << QPointF(0, 1) << 3 * M_PI / 2;
        QTest::newRow("above") << QPointF(0, -1) << M_PI / 2;
        QTest::newRow("left") << QPointF(-2, 0) << M_PI;
        QTest::newRow("upper right") << QPointF(1, -1) << M_PI / 4;
    }

    void angleForPos() {
        QFETCH(QPointF, p);
        QFETCH(double, expected);
        QVERIFY(qAbs(HoverEventItem::angleForPos(p, QPointF(0, 0)) - expected) < 1e-12);
        QVERIFY(qAbs(HoverEventItem::angleForPos(p + QPointF(5, 7), QPointF(5, 7)) - expected) < 1e-12);
    }

    void applyRotationOnlyForRotationGrips() {
        HoverEventItem rotation(nullptr, nullptr, 0, HoverEventItem::Rotation);
        HoverEventItem corner(nullptr, nullptr, 0, HoverEventItem::Move);
        const QPointF c(0, 0);
        QVERIFY(qAbs(HoverEventItem::applyRotation(&rotation, QPointF(0, -1), c, QPointF(1, 0)) - 90) < 1e-9);
        QCOMPARE(HoverEventItem::applyRotation(&corner, QPointF(0, -1), c, QPointF(1, 0)), 0.0);
        QCOMPARE(HoverEventItem::applyRotation(nullptr, QPointF(0, -1), c, QPointF(1, 0)), 0.0);
    }

    void applyTranslation_data() {
        addColumns<int, int, QPointF, QRectF>("id", "kind", "to", "expected");
        const QRectF r(10, 20, 100, 50);
        QTest::newRow("top-left") << 0 << 0 << QPointF(0, 0) << QRectF(0, 0, 110, 70);
        QTest::newRow("top-middle") << 1 << 2 << QPointF(99, 30) << QRectF(10, 30, 100, 40);
        QTest::newRow("top-right") << 2 << 0 << QPointF(120, 10) << QRectF(10, 10, 110, 60);
        QTest::newRow("middle-left") << 3 << 1 << QPointF(20, 99) << QRectF(20, 20, 90, 50);
        QTest::newRow("middle-right") << 4 << 1 << QPointF(60, 99) << QRectF(10, 20, 50, 50);
        QTest::newRow("middle-right past left edge") << 4 << 1 << QPointF(0, 99) << QRectF(10, 20, -10, 50);
        QTest::newRow("bottom-left") << 5 << 0 << QPointF(0, 100) << QRectF(0, 20, 110, 80);
        QTest::newRow("bottom-middle") << 6 << 2 << QPointF(99, 40) << QRectF(10, 20, 100, 20);
        QTest::newRow("bottom-right") << 7 << 0 << QPointF(50, 50) << QRectF(10, 20, 40, 30);
        QTest::newRow("centre leaves it") << 8 << 0 << QPointF(0, 0) << r;
        QTest::newRow("rotation grip leaves it") << 7 << 3 << QPointF(0, 0) << r;
    }

    void applyTranslation() {
        QFETCH(int, id);
        QFETCH(int, kind);
        QFETCH(QPointF, to);
        QFETCH(QRectF, expected);
        HoverEventItem grip(nullptr, nullptr, id, kind);
        QCOMPARE(HoverEventItem::applyTranslation(&grip, QRectF(10, 20, 100, 50), to, nullptr), expected);
        // The scene position is mapped into the item's coordinates first.
        QGraphicsRectItem moved;
        moved.setPos(5, 5);
        QCOMPARE(HoverEventItem::applyTranslation(&grip, QRectF(10, 20, 100, 50), to + QPointF(5, 5), &moved),
                 expected);
    }

    void syncHandgripsSkipsLockedGrips() {
        QList<HoverEventItem*> grips;
        for (int id = 0; id <= 8; ++id)
            grips << new HoverEventItem(nullptr, nullptr, id, 0);
        grips[7]->setLockstate(true);
        grips[7]->setPos(-1, -1);
        HoverEventItem::syncHandgrips(QRectF(0, 0, 100, 40), grips);
        const QList<QPointF> expected = {{0, 0},  {50, 0},  {100, 0}, {0, 20}, {100, 20},
                                         {0, 40}, {50, 40}, {-1, -1}, {50, 20}};
        for (int id = 0; id <= 8; ++id)
            QCOMPARE(grips[id]->pos(), expected[id]);
        qDeleteAll(grips);
    }

    // Sizes are truncated to whole pixels; sizes no grip can have are refused. The centroid grip has no
    // cursor of its own.
    void setupTruncatesSize() {
        HoverEventItemSetup({7.9}, {Qt::black, Qt::white, Qt::green});
        QCOMPARE(HoverEventItemSize(), 7);
        HoverEventItem grip(nullptr, nullptr, 0, 0);
        QCOMPARE(grip.path().boundingRect().size(), QSizeF(7, 7));
        HoverEventItemSetup({1500.5}, {});
        QCOMPARE(HoverEventItemSize(), 1500);
        for (double refused : {qQNaN(), qInf(), -3.0, 0.0})
            HoverEventItemSetup({refused}, {});
        QCOMPARE(HoverEventItemSize(), 1500);
        HoverEventItemSetup({10}, {});
        QVERIFY(!HoverEventItem(nullptr, nullptr, 0, HoverEventItem::CentroidGrip).hasCursor());
        QVERIFY(HoverEventItem(nullptr, nullptr, 0, HoverEventItem::Move).hasCursor());
    }

    void isPointSelectedTakesTheLowestIndex() {
        TestItem item;
        QList<QPointF> points = {{100, 100}, {3, 4}, {0, 1}};
        int index = -1;
        QVERIFY(item.isPointSelected(QPointF(0, 0), points, index, 5.5));
        QCOMPARE(index, 1);
        QVERIFY(!item.isPointSelected(QPointF(0, 0), points, index, 1.0));
        QVERIFY(item.isPointSelected(QPointF(0, 0), points, index, 1.0001));
        QCOMPARE(index, 2);
    }

    void createPointIfNeeded_data() {
        addColumns<QList<QPointF>, QPointF, bool, int>("points", "p", "closed", "insertedAt");
        const QList<QPointF> points = {{0, 0}, {100, 100}, {200, 50}};
        // Off the segment (0,0)-(100,100) by d along the normal: d / sqrt(2) along both axes.
        const auto off = [](double d) { return QPointF(50 + d / std::sqrt(2.0), 50 - d / std::sqrt(2.0)); };
        QTest::newRow("exactly 10 away") << points << off(10) << false << -1;
        QTest::newRow("9.99 away") << points << off(9.99) << false << 1;
        QTest::newRow("on the second segment") << points << QPointF(150, 75) << false << 2;
        QTest::newRow("closing segment ignored when open") << points << QPointF(100, 26) << false << -1;
        QTest::newRow("closing segment inserts before the first point")
            << points << QPointF(100, 26) << true << 0;
        // An axis-parallel segment has an empty bounding rectangle.
        QTest::newRow("on a horizontal segment")
            << QList<QPointF>{{0, 0}, {100, 0}} << QPointF(50, 0) << false << -1;
        QTest::newRow("single point") << QList<QPointF>{{0, 0}} << QPointF(0, 0) << true << -1;
    }

    void createPointIfNeeded() {
        QFETCH(QList<QPointF>, points);
        QFETCH(QPointF, p);
        QFETCH(bool, closed);
        QFETCH(int, insertedAt);
        TestItem item;
        const QList<QPointF> before = points;
        QCOMPARE(item.createPointIfNeeded(p, points, closed), insertedAt >= 0);
        if (insertedAt >= 0)
            points.removeAt(insertedAt);
        QCOMPARE(points, before);
    }

    void drag_data() {
        QTest::addColumn<bool>("locked");
        QTest::newRow("free grip") << false;
        QTest::newRow("locked grip emits nothing") << true;
    }

    void drag() {
        QFETCH(bool, locked);
        DrawingView v;
        auto* item = new TestItem;
        v.scene.addItem(item);
        item->addGrip(0, HoverEventItem::Move, {100, 100});
        item->forceSelection();
        HoverEventItem* grip = item->handgripItems().first();
        item->setLockstate(locked);

        QSignalSpy init(grip, &HoverEventItem::initPos);
        QSignalSpy moved(grip, &HoverEventItem::moved);
        QSignalSpy release(grip, &HoverEventItem::releasePos);
        const QPointF start = v.view.mapToScene(v.at({100, 100})), end = start + QPointF(10, 5);
        v.drag(start, end);
        if (locked) {
            QCOMPARE(init.count() + moved.count() + release.count(), 0);
            return;
        }
        QCOMPARE(init.count(), 1);
        QCOMPARE(init.first().first().toPointF(), start);
        QVERIFY(moved.count() >= 1);
        QCOMPARE(moved.last().first().toPointF(), end);
        QCOMPARE(release.count(), 1);
        QCOMPARE(item->pressed, 1);
        QCOMPARE(item->updated, moved.count());
        QCOMPARE(item->released, 1);
    }

    // A grip keeps its size on screen at any zoom, and lights up under the cursor.
    void gripOnScreen() {
        DrawingView v;
        auto* grip = new HoverEventItem(nullptr, nullptr, 0, HoverEventItem::Move);
        v.scene.addItem(grip);
        grip->setPos(100, 100);
        for (double zoom : {0.25, 4.0, 1.0}) {
            v.view.setTransform(QTransform::fromScale(zoom, zoom));
            const QRectF onScreen =
                grip->deviceTransform(v.view.viewportTransform()).mapRect(grip->path().boundingRect());
            QCOMPARE(onScreen.width(), double(HoverEventItemSize()));
        }
        QVERIFY(!grip->isHighlighted());
        v.move({100, 100});
        QTRY_VERIFY(grip->isHighlighted());
        v.move({300, 250});
        QTRY_VERIFY(!grip->isHighlighted());
    }
};

QTEST_MAIN(TestHandgrips)
#include "tst_handgrips.moc"
