#include "AbstractScene.h"
#include "TestItem.h"
#include "ToolLayer.h"

#include <QPointer>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

// Many items removed at once from a scene filled with no event loop since, as a loaded document is,
// standing alone or in layers.
class TestSceneDeletion : public QObject {
    Q_OBJECT
private slots:
    void deleteItems_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("first"); // the first item that goes
        QTest::addColumn<int>("step");  // and every step-th after it
        QTest::addColumn<bool>("layered");
        for (const bool layered : {false, true}) {
            const QByteArray in = layered ? ", in layers" : "";
            QTest::newRow("all" + in) << 20000 << 0 << 1 << layered;
            QTest::newRow("every other" + in) << 20000 << 1 << 2 << layered;
            QTest::newRow("the upper half" + in) << 20000 << 10000 << 1 << layered;
            QTest::newRow("one in the middle" + in) << 9 << 4 << 100 << layered;
        }
    }

    void deleteItems() {
        QFETCH(int, count);
        QFETCH(int, first);
        QFETCH(int, step);
        QFETCH(bool, layered);
        AbstractScene scene;
        QList<QPointer<TestItem>> items;
        QList<AbstractBaseItem*> all;
        QList<AbstractBaseItem*> going;
        QSet<quintptr> goingAddresses;
        QList<TestItem*> staying;
        for (int i = 0; i < count; ++i) {
            auto* item = new TestItem(nullptr, i);
            item->setPos((i % 200) * 120, (i / 200) * 60);
            item->setupCentroidHandgrip();
            if (!layered)
                scene.addItem(item);
            all << item;
            items << item;
            if (i >= first && (i - first) % step == 0) {
                going << item;
                goingAddresses.insert(quintptr(item));
            } else {
                staying << item;
            }
        }
        if (layered) {
            QSignalSpy added(&scene, &AbstractScene::itemAdded);
            scene.addItems(all);
            QCOMPARE(added.count(), count);
            const auto layers = std::count_if(all.cbegin(), all.cend(), [](const AbstractBaseItem* tool) {
                return tool->parentItem()->childItems().first() == tool;
            });
            const int capacity = ToolLayer::capacityFor(count);
            QCOMPARE(int(layers), (count + capacity - 1) / capacity);
        }
        // What is not a tool of the scene is left alone.
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
        QSet<QGraphicsItem*> layers;
        for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
            if (AbstractBaseItem* tool = AbstractBaseItem::sceneTool(item)) {
                stack << static_cast<TestItem*>(tool);
                if (tool->parentItem())
                    layers.insert(tool->parentItem());
            }
        }
        QCOMPARE(stack, staying);
        // The layers left empty went with their tools.
        QCOMPARE(scene.items().size(), staying.size() * 3 + layers.size());
    }
};

QTEST_MAIN(TestSceneDeletion)
#include "tst_scenedeletion.moc"
