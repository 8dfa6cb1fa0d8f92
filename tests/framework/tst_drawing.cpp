#include "AbstractScene.h"
#include "CommonParams.h"
#include "SimpleTextItem.h"
#include "TestItem.h"

#include <QAction>
#include <QGraphicsView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

class TestDrawing : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void unknownToolStartsNothing();
    void acceptedItemIsLeftSelected();
    void rejectedItemIsDiscarded();
    void movesBeforeThePressAreNotForwarded();
    void creationByClicksGoesOnUntilComplete();
    void rightButtonAndEscapeCancel();
    void shiftConstrains();
    void sceneWorksNormallyAfterwards();
    void menuChoiceTakesTheClickPath();

private:
    QPoint at(double x, double y) const { return m_view->mapFromScene(x, y); }
    AbstractScene* m_scene = nullptr;
    QGraphicsView* m_view = nullptr;
};

void TestDrawing::init() {
    m_scene = new AbstractScene(QRectF(0, 0, 400, 300));
    m_view = new QGraphicsView(m_scene);
    m_view->setFixedSize(420, 320);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view));
}

void TestDrawing::cleanup() {
    delete m_view;
    delete m_scene;
}

void TestDrawing::unknownToolStartsNothing() {
    QCOMPARE(m_scene->startTool(QStringLiteral("NoSuchItem")), nullptr);
    QCOMPARE(m_scene->itemInCreation(), nullptr);
    QVERIFY(m_scene->items().isEmpty());
}

void TestDrawing::acceptedItemIsLeftSelected() {
    auto* item = new TestItem;
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    m_scene->startTool(item);
    QCOMPARE(m_scene->itemInCreation(), item);
    QCOMPARE(item->LinkScene(), m_scene);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at(50, 60));
    QTest::mouseMove(m_view->viewport(), at(80, 90));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at(80, 90));
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(accepted.first().first().value<AbstractBaseItem*>(), item);
    QVERIFY(item->isSelected());
    QCOMPARE(m_scene->itemInCreation(), nullptr);
    QCOMPARE(item->presses, QList<QPointF>{QPointF(50, 60)});
    QCOMPARE(item->moves.last(), QPointF(80, 90));
}

void TestDrawing::rejectedItemIsDiscarded() {
    auto* item = new TestItem;
    item->accept = false;
    QSignalSpy rejected(m_scene, &AbstractScene::itemRejected);
    QSignalSpy destroyed(item, &QObject::destroyed);
    m_scene->startTool(item);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(50, 60));
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(rejected.first().first().toString(), QString("TestItem"));
    QCOMPARE(destroyed.count(), 1);
    QVERIFY(m_scene->items().isEmpty());
}

void TestDrawing::movesBeforeThePressAreNotForwarded() {
    auto* item = new TestItem;
    m_scene->startTool(item);
    QTest::mouseMove(m_view->viewport(), at(10, 10));
    QTest::mouseMove(m_view->viewport(), at(20, 20));
    QVERIFY(item->moves.isEmpty());
    m_scene->cancelTool();
}

void TestDrawing::creationByClicksGoesOnUntilComplete() {
    auto* item = new TestItem;
    item->pressesToComplete = 4;
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    m_scene->startTool(item);
    const QList<QPointF> corners = {{100, 50}, {150, 100}, {100, 150}, {50, 100}};
    for (int i = 0; i < corners.size(); ++i) {
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(corners[i].x(), corners[i].y()));
        QCOMPARE(accepted.count(), i == 3 ? 1 : 0);
        if (i < 3) {
            // Between clicks the moves reach the item (a rubber band follows the cursor).
            const int before = item->moves.size();
            QTest::mouseMove(m_view->viewport(), at(corners[i + 1].x(), corners[i + 1].y()));
            QVERIFY(item->moves.size() > before);
        }
    }
    QCOMPARE(item->presses, corners);
}

void TestDrawing::rightButtonAndEscapeCancel() {
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    auto* first = new TestItem;
    QSignalSpy firstGone(first, &QObject::destroyed);
    m_scene->startTool(first);
    QTest::mouseClick(m_view->viewport(), Qt::RightButton, {}, at(50, 50));
    QCOMPARE(firstGone.count(), 1);

    auto* second = new TestItem;
    QSignalSpy secondGone(second, &QObject::destroyed);
    m_scene->startTool(second);
    QTest::keyClick(m_view->viewport(), Qt::Key_Escape);
    QCOMPARE(secondGone.count(), 1);
    QCOMPARE(m_scene->itemInCreation(), nullptr);
    QCOMPARE(accepted.count(), 0);
    QVERIFY(m_scene->items().isEmpty());
}

void TestDrawing::shiftConstrains() {
    auto* item = new TestItem;
    m_scene->startTool(item);
    QVERIFY(!item->constrained());
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, Qt::ShiftModifier, at(50, 60));
    QVERIFY(item->constrained());
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, Qt::ShiftModifier, at(50, 60));
}

void TestDrawing::sceneWorksNormallyAfterwards() {
    auto* item = new TestItem;
    m_scene->startTool(item);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(50, 60));
    QVERIFY(item->isSelected());
    // With no tool running, a click on empty ground clears the selection as usual.
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(350, 250));
    QVERIFY(!item->isSelected());
    QCOMPARE(item->presses.size(), 1);
}

void TestDrawing::menuChoiceTakesTheClickPath() {
    TestItem item;
    QSignalSpy changed(&item, &AbstractBaseItem::mesureChanged);
    item.setMesure(1, 4, 4);
    QMenu menu;
    item.fillContextMenu(&menu);
    QAction* distance = menu.actions().first();
    QCOMPARE(distance->text(), QString("Distance1"));
    QVERIFY(!distance->isChecked());
    item.applyContextMenu(distance->data().toInt());
    QCOMPARE(item.mesureIndex(), 1);
    QCOMPARE(item.label()->text(), QString("dist1:4.00*mm"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(getCommonParams("test_mesureIndex", 0).toInt(), 1);
    QMenu again;
    item.fillContextMenu(&again);
    QVERIFY(again.actions().first()->isChecked());
}

QTEST_MAIN(TestDrawing)
#include "tst_drawing.moc"
