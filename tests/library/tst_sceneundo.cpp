// Undo of a scene: every built class drawn, deleted, undone and redone gives back the same document;
// drags are one step each; moves, menu choices, calibrations and deletions with their
// dependants come back exactly.
#include "DrawingView.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QBuffer>
#include <QContextMenuEvent>
#include <QTimer>
#include <QUndoStack>

namespace {

// The whole scene as a document: what "the same state" means.
QByteArray documentOf(AbstractScene& scene, SceneDocument& document) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    document.write(&buffer, &scene);
    return buffer.data();
}

// A scene with an undo stack fed by a recorder, and a document that names its items.
struct UndoView : DrawingView {
    QUndoStack stack;
    UndoRecorder recorder{&scene, &stack};
    SceneDocument document;
    QByteArray saved() { return documentOf(scene, document); }
    // Undoes the last command and redoes it: the document reads as it did.
    void checkUndoRedo(const QByteArray& withChange, const QByteArray& without) {
        stack.undo();
        QCOMPARE(saved(), without);
        stack.redo();
        QCOMPARE(saved(), withChange);
    }
};

} // namespace

class TestSceneUndo : public QObject {
    Q_OBJECT
private slots:
    // Menu choices are remembered for the next item: each test starts from the defaults.
    void init() { setCommonParams(QMap<QString, QVariant>()); }

    void everyClassUndoesItsCreationAndDeletion_data() { builtClasses(); }
    void everyClassUndoesItsCreationAndDeletion() {
        QFETCH(QString, className);
        UndoView v;
        v.draw("LineItem", {20, 250}, {300, 280});
        const QByteArray empty = v.saved();
        QPointer<AbstractBaseItem> item = v.drawAny(className);
        if (!item)
            QSKIP("the class refuses this drawing");
        if (className == "RectCalibItem")
            QSKIP("a calibration rectangle is never saved: nothing can make it again");
        QCOMPARE(v.stack.count(), 2);
        const QByteArray drawn = v.saved();
        v.checkUndoRedo(drawn, empty);

        v.stack.push(new DeleteItemsCommand(&v.scene, {SceneItems::topLevel(&v.scene).last()}));
        QCOMPARE(v.saved(), empty);
        v.checkUndoRedo(empty, drawn);
    }

    // A drag is one step, even for an item that ends its change at every step.
    // An opened document's tools sit in layers: one deleted comes back in its place.
    void openedToolComesBackInItsPlace() {
        UndoView drawn;
        for (int i = 0; i < 3; ++i)
            drawn.draw("LineItem", {20, 50.0 + 60 * i}, {300, 60.0 + 60 * i});
        QBuffer buffer;
        buffer.setData(drawn.saved());
        buffer.open(QIODevice::ReadOnly);
        UndoView v;
        QVERIFY(v.document.read(&buffer, &v.scene));
        const QList<AbstractBaseItem*> tools = SceneItems::topLevel(&v.scene);
        QCOMPARE(tools.size(), 3);
        QCOMPARE(tools[1]->parentItem()->type(), int(ToolLayer::Type));
        const QByteArray opened = v.saved();
        v.stack.push(new DeleteItemsCommand(&v.scene, {tools[1]}));
        v.checkUndoRedo(v.saved(), opened);
        v.stack.undo();
        const QList<AbstractBaseItem*> back = SceneItems::topLevel(&v.scene);
        QCOMPARE(back.size(), 3);
        QCOMPARE(back[1]->parentItem(), back[0]->parentItem());
    }

    void gripDragIsOneStep_data() {
        QTest::addColumn<QString>("className");
        QTest::newRow("line") << "LineItem";
        QTest::newRow("indentation") << "VickersPItem";
    }
    void gripDragIsOneStep() {
        QFETCH(QString, className);
        UndoView v;
        AbstractBaseItem* item = className == "LineItem"
                                     ? v.draw(className, {50, 50}, {200, 60})
                                     : v.click(className, {{100, 50}, {150, 100}, {100, 150}, {50, 100}});
        QVERIFY(item && item->isSelected());
        const QByteArray before = v.saved();
        const int count = v.stack.count();
        HoverEventItem* grip = item->handgripItems().first();
        v.press(grip->scenePos());
        for (int step = 1; step <= 4; ++step)
            v.move(grip->scenePos() + QPointF(5, 3));
        v.release(grip->scenePos());
        QCOMPARE(v.stack.count(), count + 1);
        const QByteArray after = v.saved();
        QVERIFY(after != before);
        v.checkUndoRedo(after, before);
    }

    void moveWithTheMouse() {
        UndoView v;
        AbstractBaseItem* item = v.draw("RectangleItem", {50, 50}, {150, 120});
        const QByteArray before = v.saved();
        v.drag({70, 50}, {100, 90});
        QCOMPARE(v.stack.command(v.stack.count() - 1)->text(), QStringLiteral("Move"));
        QCOMPARE(item->pos(), QPointF(30, 40));
        v.checkUndoRedo(v.saved(), before);
    }

    // A right click shows the item's menu with the host's entries after its own; a choice in it is
    // a command.
    void contextMenuThroughTheRecorder() {
        UndoView v;
        AbstractBaseItem* line = v.draw("LineItem", {50, 50}, {200, 50});
        QStringList shown;
        connect(&v.recorder, &UndoRecorder::contextMenuAboutToShow, this,
                [&](AbstractBaseItem* item, QMenu* menu) {
                    QCOMPARE(item, line);
                    menu->addAction("host entry");
                });
        QTimer::singleShot(0, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            for (QAction* a : menu->actions())
                shown << a->text();
            const qsizetype entry = shown.indexOf("Ang1");
            menu->setActiveAction(menu->actions().value(entry));
            QTest::keyClick(menu, entry >= 0 ? Qt::Key_Return : Qt::Key_Escape);
        });
        const QPoint at = v.at({120, 50});
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, v.view.viewport()->mapToGlobal(at));
        QApplication::sendEvent(v.view.viewport(), &event);
        QCOMPARE(shown.last(), QStringLiteral("host entry"));
        QCOMPARE(line->mesureIndex(), int(AbstractBaseItem::Ang1));
        const QByteArray after = v.saved();
        v.stack.undo();
        QCOMPARE(line->mesureIndex(), int(AbstractBaseItem::Dist1));
        v.stack.redo();
        QCOMPARE(v.saved(), after);
    }

    // Each item gets back the calibration it had, the scene's or its own.
    void calibration() {
        UndoView v;
        AbstractBaseItem* own = v.draw("LineItem", {50, 50}, {250, 50}, 0.5);
        AbstractBaseItem* other = v.draw("LineItem", {50, 90}, {250, 90}, 2.0);
        v.stack.push(new CalibrationCommand(&v.scene, ::calibration(0.25, "µm")));
        QCOMPARE(own->accessmesure(AbstractBaseItem::Dist1), 50.0);
        v.stack.undo();
        QCOMPARE(own->accessmesure(AbstractBaseItem::Dist1), 100.0);
        QCOMPARE(other->accessmesure(AbstractBaseItem::Dist1), 400.0);
        v.stack.redo();
        QCOMPARE(other->calibration().unitName, QStringLiteral("µm"));
    }

    // A distance goes with the point it measures from, and comes back linked to it; a text that
    // followed the point follows it again.
    void deletionTakesDependants() {
        UndoView v;
        AbstractBaseItem* a = v.click("PointItem", {{50, 50}});
        AbstractBaseItem* b = v.click("PointItem", {{80, 90}});
        QString className = QStringLiteral("Distance");
        AbstractBaseItem* distance = XBaseItemMesureCreate(className, nullptr, 0, nullptr);
        v.scene.addItem(distance);
        distance->computeMesures({a, b}, nullptr);
        auto* text = qobject_cast<eTextItem*>(v.click("eTextItem", {{200, 200}}));
        QVERIFY(text);
        v.document.setLink(text, SceneDocument::textLinkRole(), a);
        QCOMPARE(text->linkedItem(), a);
        const QByteArray before = v.saved();

        const QString uid = a->ensureUid();
        auto* command = new DeleteItemsCommand(&v.scene, {a});
        QCOMPARE(command->count(), 2);
        v.stack.push(command);
        QCOMPARE(SceneItems::topLevel(&v.scene).size(), 2);
        const QByteArray after = v.saved();
        v.checkUndoRedo(after, before);
        QVERIFY(!QTest::currentTestFailed());
        v.stack.undo();
        AbstractBaseItem* back = SceneItems::find(&v.scene, uid);
        QVERIFY(back);
        QCOMPARE(qobject_cast<eTextItem*>(SceneItems::find(&v.scene, text->uid()))->linkedItem(), back);
        back->setPos(back->pos() + QPointF(0, 10));
        const auto* again = qobject_cast<ConstructionItem*>(SceneItems::topLevel(&v.scene).at(2));
        QCOMPARE(again->accessmesure(AbstractBaseItem::Dist1), QLineF(80, 90, 50, 60).length());
    }

    // Steps pushed one by one with the same drag number make one command.
    void stepsMerge() {
        AbstractScene scene;
        QString className = QStringLiteral("LineItem");
        AbstractBaseItem* line = XBaseItemToolCreate(className, nullptr, 0, nullptr);
        scene.addItem(line);
        const ItemSnapshot first = ItemSnapshot::take(line);
        QUndoStack stack;
        for (int step = 1; step <= 3; ++step) {
            line->setPos(step, 0);
            stack.push(new ItemStateCommand(&scene, {first}, {ItemSnapshot::take(line)}, "drag", 7));
        }
        QCOMPARE(stack.count(), 1);
        stack.undo();
        QCOMPARE(ItemSnapshot::take(line), first);
    }
};

QTEST_MAIN(TestSceneUndo)
#include "tst_sceneundo.moc"
