#include "DrawingView.h"
#include "TestItem.h"

class TestDrawing : public QObject {
    Q_OBJECT
private slots:
    void unknownToolStartsNothing() {
        DrawingView v;
        QCOMPARE(startTool(&v.scene, QStringLiteral("NoSuchItem")), nullptr);
        QCOMPARE(v.scene.itemInCreation(), nullptr);
        QVERIFY(v.scene.items().isEmpty());
    }

    // Moves before the press are not the item's; Shift constrains; afterwards the scene selects as usual.
    void dragCreatesASelectedItem() {
        DrawingView v;
        auto* item = new TestItem;
        QSignalSpy accepted(&v.scene, &AbstractScene::itemAccepted);
        v.scene.startTool(item);
        QCOMPARE(v.scene.itemInCreation(), item);
        QCOMPARE(item->LinkScene(), &v.scene);
        v.move({10, 10});
        v.move({20, 20});
        QVERIFY(item->moves.isEmpty());
        v.press({50, 60}, Qt::ShiftModifier);
        QVERIFY(item->constrained());
        v.move({80, 90});
        v.release({80, 90});
        QCOMPARE(accepted.count(), 1);
        QCOMPARE(accepted.first().first().value<AbstractBaseItem*>(), item);
        QVERIFY(item->isSelected());
        QCOMPARE(v.scene.itemInCreation(), nullptr);
        QCOMPARE(item->presses, QList<QPointF>{QPointF(50, 60)});
        QCOMPARE(item->moves.last(), QPointF(80, 90));

        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at({350, 250}));
        QVERIFY(!item->isSelected());
        QCOMPARE(item->presses.size(), 1);
    }

    // Every discarded item is announced, so that a host can reset its tool.
    void abandonedItemIsDiscarded_data() {
        QTest::addColumn<int>("how");
        QTest::newRow("the item refuses its edition") << 0;
        QTest::newRow("right button cancels") << 1;
        QTest::newRow("Escape cancels") << 2;
    }

    void abandonedItemIsDiscarded() {
        QFETCH(int, how);
        DrawingView v;
        auto* item = new TestItem;
        item->accept = false;
        QSignalSpy accepted(&v.scene, &AbstractScene::itemAccepted);
        QSignalSpy rejections(&v.scene, &AbstractScene::itemRejected);
        QSignalSpy destroyed(item, &QObject::destroyed);
        v.scene.startTool(item);
        if (how == 2)
            QTest::keyClick(v.view.viewport(), Qt::Key_Escape);
        else
            QTest::mouseClick(v.view.viewport(), how == 0 ? Qt::LeftButton : Qt::RightButton, {},
                              v.at({50, 60}));
        QCOMPARE(destroyed.count(), 1);
        QCOMPARE(rejections.count(), 1);
        QCOMPARE(rejections.first().first().toString(), QString("TestItem"));
        QCOMPARE(accepted.count(), 0);
        QCOMPARE(v.scene.itemInCreation(), nullptr);
        QVERIFY(v.scene.items().isEmpty());
    }
};

QTEST_MAIN(TestDrawing)
#include "tst_drawing.moc"
