#include "AbstractScene.h"
#include "TestItem.h"

#include <QPointer>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

// Many items removed at once from a scene filled with no event loop since, as a loaded document is.
class TestSceneDeletion : public QObject {
    Q_OBJECT
private slots:
    void deleteItems_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("first"); // the first item that goes
        QTest::addColumn<int>("step");  // and every step-th after it
        QTest::newRow("all") << 20000 << 0 << 1;
        QTest::newRow("every other") << 20000 << 1 << 2;
        QTest::newRow("the upper half") << 20000 << 10000 << 1;
        QTest::newRow("one in the middle") << 9 << 4 << 100;
    }

    void deleteItems() {
        QFETCH(int, count);
        QFETCH(int, first);
        QFETCH(int, step);
        AbstractScene scene;
        QList<QPointer<TestItem>> items;
        QList<AbstractBaseItem*> going;
        QSet<quintptr> goingAddresses;
        QList<TestItem*> staying;
        for (int i = 0; i < count; ++i) {
            auto* item = new TestItem(nullptr, i);
            item->setPos((i % 200) * 120, (i / 200) * 60);
            item->setupCentroidHandgrip();
            scene.addItem(item);
            items << item;
            if (i >= first && (i - first) % step == 0) {
                going << item;
                goingAddresses.insert(quintptr(item));
            } else {
                staying << item;
            }
        }
        // What is not a top-level item of the scene is left alone.
        TestItem loose;
        going << nullptr << &loose;
        QSignalSpy removed(&scene, &AbstractScene::itemRemoved);

        scene.deleteItems(going);

        QSet<quintptr> announced;
        for (const QList<QVariant>& arguments : std::as_const(removed))
            announced.insert(quintptr(arguments.first().value<AbstractBaseItem*>()));
        QCOMPARE(removed.count(), goingAddresses.size());
        QCOMPARE(announced, goingAddresses);
        for (const QPointer<TestItem>& item : std::as_const(items))
            QCOMPARE(item.isNull(), !staying.contains(item.data()));
        QList<TestItem*> stack;
        for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
            if (!item->parentItem())
                stack << static_cast<TestItem*>(item);
        }
        QCOMPARE(stack, staying);
        QCOMPARE(scene.items().size(), staying.size() * 3);
    }
};

QTEST_MAIN(TestSceneDeletion)
#include "tst_scenedeletion.moc"
