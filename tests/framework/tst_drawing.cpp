#include "FrameworkFixtures.h"
#include "StartTool.h"
#include "TestItem.h"

#include <QSignalSpy>

#include <memory>

class TestDrawing : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup() { m_shown.reset(); }
    void unknownToolStartsNothing();
    void dragCreatesASelectedItem();
    void creationByClicksGoesOnUntilComplete();
    void abandonedItemIsDiscarded_data();
    void abandonedItemIsDiscarded();

private:
    std::unique_ptr<ShownScene> m_shown;
};

void TestDrawing::init() {
    m_shown = std::make_unique<ShownScene>();
    QVERIFY(m_shown->exposed());
}

void TestDrawing::unknownToolStartsNothing() {
    QCOMPARE(startTool(&m_shown->scene, QStringLiteral("NoSuchItem")), nullptr);
    QCOMPARE(m_shown->scene.itemInCreation(), nullptr);
    QVERIFY(m_shown->scene.items().isEmpty());
}

// Moves before the press are not the item's; Shift constrains; afterwards the scene selects as usual.
void TestDrawing::dragCreatesASelectedItem() {
    ShownScene& s = *m_shown;
    auto* item = new TestItem;
    QSignalSpy accepted(&s.scene, &AbstractScene::itemAccepted);
    s.scene.startTool(item);
    QCOMPARE(s.scene.itemInCreation(), item);
    QCOMPARE(item->LinkScene(), &s.scene);
    QTest::mouseMove(s.viewport(), s.at(10, 10));
    QTest::mouseMove(s.viewport(), s.at(20, 20));
    QVERIFY(item->moves.isEmpty());
    QTest::mousePress(s.viewport(), Qt::LeftButton, Qt::ShiftModifier, s.at(50, 60));
    QVERIFY(item->constrained());
    QTest::mouseMove(s.viewport(), s.at(80, 90));
    QTest::mouseRelease(s.viewport(), Qt::LeftButton, {}, s.at(80, 90));
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(accepted.first().first().value<AbstractBaseItem*>(), item);
    QVERIFY(item->isSelected());
    QCOMPARE(s.scene.itemInCreation(), nullptr);
    QCOMPARE(item->presses, QList<QPointF>{QPointF(50, 60)});
    QCOMPARE(item->moves.last(), QPointF(80, 90));

    QTest::mouseClick(s.viewport(), Qt::LeftButton, {}, s.at(350, 250));
    QVERIFY(!item->isSelected());
    QCOMPARE(item->presses.size(), 1);
}

void TestDrawing::creationByClicksGoesOnUntilComplete() {
    ShownScene& s = *m_shown;
    auto* item = new TestItem;
    item->pressesToComplete = 4;
    QSignalSpy accepted(&s.scene, &AbstractScene::itemAccepted);
    s.scene.startTool(item);
    const QList<QPointF> corners = {{100, 50}, {150, 100}, {100, 150}, {50, 100}};
    for (int i = 0; i < corners.size(); ++i) {
        QTest::mouseClick(s.viewport(), Qt::LeftButton, {}, s.at(corners[i].x(), corners[i].y()));
        QCOMPARE(accepted.count(), i == 3 ? 1 : 0);
        if (i < 3) {
            // Between clicks the moves reach the item (a rubber band follows the cursor).
            const int before = item->moves.size();
            QTest::mouseMove(s.viewport(), s.at(corners[i + 1].x(), corners[i + 1].y()));
            QVERIFY(item->moves.size() > before);
        }
    }
    QCOMPARE(item->presses, corners);
}

// Every discarded item is announced, so that a host can reset its tool.
void TestDrawing::abandonedItemIsDiscarded_data() {
    QTest::addColumn<int>("how");
    QTest::newRow("the item refuses its edition") << 0;
    QTest::newRow("right button cancels") << 1;
    QTest::newRow("Escape cancels") << 2;
}

void TestDrawing::abandonedItemIsDiscarded() {
    QFETCH(int, how);
    ShownScene& s = *m_shown;
    auto* item = new TestItem;
    item->accept = false;
    QSignalSpy accepted(&s.scene, &AbstractScene::itemAccepted);
    QSignalSpy rejections(&s.scene, &AbstractScene::itemRejected);
    QSignalSpy destroyed(item, &QObject::destroyed);
    s.scene.startTool(item);
    if (how == 2)
        QTest::keyClick(s.viewport(), Qt::Key_Escape);
    else
        QTest::mouseClick(s.viewport(), how == 0 ? Qt::LeftButton : Qt::RightButton, {}, s.at(50, 60));
    QCOMPARE(destroyed.count(), 1);
    QCOMPARE(rejections.count(), 1);
    QCOMPARE(rejections.first().first().toString(), QString("TestItem"));
    QCOMPARE(accepted.count(), 0);
    QCOMPARE(s.scene.itemInCreation(), nullptr);
    QVERIFY(s.scene.items().isEmpty());
}

QTEST_MAIN(TestDrawing)
#include "tst_drawing.moc"
