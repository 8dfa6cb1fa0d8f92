#include "DataColumns.h"
#include "DrawingView.h"
#include "NearPoints.h"
#include "TestItem.h"
#include "TextEdit.h"
#include "TextItem.h"
#include "TextItemDialog.h"
#include "eTextItem.h"

#include <QColorDialog>
#include <QGraphicsRectItem>
#include <QTextCursor>
#include <QToolBar>

#include <cmath>

namespace {

// A measuring item whose measure the test sets, announcing each change as an edit's end would.
class MeasuringItem : public TestItem {
public:
    MeasuringItem() {
        setGUIDname(QStringLiteral("Ruler1"));
        setCalibration(::calibration(0.5));
    }
    void measure(int kind, double pixels) {
        setMesureIndex(kind);
        setMesure(kind, calibrateValue(pixels), pixels);
        emit mesureChangedEND(this);
    }
};

eTextItem* drawText(DrawingView& v, const QString& typed) {
    auto* item = qgraphicsitem_cast<eTextItem*>(v.click("eTextItem", {{200, 150}}));
    QTest::keyClicks(v.view.viewport(), typed);
    return item;
}

} // namespace

class TestTextItem : public QObject {
    Q_OBJECT
private slots:
    void typedTextKeepsItsCentre() {
        DrawingView v;
        eTextItem* item = drawText(v, "Hi");
        QVERIFY(item && item->isEditing());
        QCOMPARE(v.scene.focusItem(), item->textItem());
        const double narrow = item->background()->rect().width();
        QTest::keyClicks(v.view.viewport(), QStringLiteral(" there, a longer text"));
        QCOMPARE(item->text(), QStringLiteral("Hi there, a longer text"));
        QVERIFY(item->background()->rect().width() > narrow);
        QCOMPARE(item->background()->rect(), item->textItem()->boundingRect());
        QVERIFY(near(item->centroid(), QPointF(200, 150), 0.5));
        QVERIFY(item->textModified());
    }

    void focusOutRemovesOnlyEmptyText_data() {
        addColumns<QString, int>("typed", "backspaces");
        QTest::newRow("text kept") << "abc" << 0;
        QTest::newRow("text erased") << "abc" << 3;
        // A new text holds a single space, which is not empty.
        QTest::newRow("nothing typed") << "" << 0;
    }

    void focusOutRemovesOnlyEmptyText() {
        QFETCH(QString, typed);
        QFETCH(int, backspaces);
        DrawingView v;
        eTextItem* item = drawText(v, typed);
        QSignalSpy destroyed(item, &QObject::destroyed);
        for (int i = 0; i < backspaces; ++i)
            QTest::keyClick(v.view.viewport(), Qt::Key_Backspace);
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(QPointF(20, 20)));
        if (!typed.isEmpty() && typed.size() == backspaces) {
            QTRY_COMPARE(destroyed.count(), 1);
            QVERIFY(v.scene.items().isEmpty());
            return;
        }
        QTest::qWait(20);
        QCOMPARE(destroyed.count(), 0);
        QVERIFY(!item->isEditing() && !item->isSelected());
        QCOMPARE(item->textItem()->textInteractionFlags(), Qt::NoTextInteraction);
        // A double click on the text takes up editing again.
        QTest::mouseDClick(v.view.viewport(), Qt::LeftButton, {}, v.at(item->centroid()));
        QVERIFY(item->isEditing());
        QCOMPARE(v.scene.focusItem(), item->textItem());
    }

    void linkedTextFollowsMeasure_data() {
        addColumns<int, QString>("kind", "expected");
        QTest::newRow("angle without unit") << int(AbstractBaseItem::Ang1) << "Ruler1 ang1:12.50";
        QTest::newRow("no measure shown") << AbstractBaseItem::NoMesure << "Ruler1";
    }

    void linkedTextFollowsMeasure() {
        QFETCH(int, kind);
        QFETCH(QString, expected);
        MeasuringItem source;
        source.measure(kind, 10);
        auto text = generated<eTextItem>({&source, {}, {}, QPointF(120, 80), 0, 0, {}});
        QVERIFY(text->creationStarted() && text->textItem()->isLinked());
        source.measure(kind, 25);
        QCOMPARE(text->text(), expected);
        QVERIFY(near(text->centroid(), QPointF(120, 80), 1e-9));
        // The link is saved by name, for the host to make again.
        QCOMPARE(saved(text.get()).value("linkname"), QStringLiteral("Ruler1"));
        checkXmlRoundTrip(text.get());
    }

    void unlinking_data() {
        addColumns<int, QString, bool, bool>("way", "textAfter", "follows", "childLinked");
        QTest::newRow("unassociate the item") << 0 << "Ruler1 dist1:5.00 mm" << false << false;
        // Without an item, unassociate clears the name and the mark but lets go of nothing.
        QTest::newRow("unassociate without item") << 1 << "Ruler1 dist1:20.00 mm" << true << false;
        QTest::newRow("menu") << 2 << "Ruler1 dist1:5.00 mm" << false << false;
        // Without a source, setText clears the link name and the text, not the link.
        QTest::newRow("reset text") << 3 << "Ruler1 dist1:20.00 mm" << true << true;
    }

    void unlinking() {
        QFETCH(int, way);
        QFETCH(QString, textAfter);
        QFETCH(bool, follows);
        QFETCH(bool, childLinked);
        MeasuringItem source;
        eTextItem text(nullptr, 1, nullptr);
        text.associate(&source, nullptr);
        source.measure(AbstractBaseItem::Dist1, 10);
        QMenu menu;
        text.fillContextMenu(&menu);
        QCOMPARE(menu.actions().size(), 2);
        if (way < 2)
            text.unassociate(way == 0 ? &source : nullptr, nullptr);
        else if (way == 2)
            text.applyContextMenu(menu.actions().at(1)->data().toInt());
        else
            text.setText(nullptr);
        QCOMPARE(text.text(), way == 3 ? QString(" ") : QString("Ruler1 dist1:5.00 mm"));
        source.measure(AbstractBaseItem::Dist1, 40);
        QCOMPARE(text.text(), textAfter);
        QCOMPARE(text.linkedItem(), follows ? &source : nullptr);
        QVERIFY(text.getLinkName().isEmpty());
        QCOMPARE(text.textItem()->isLinked(), childLinked);
    }

    // The background as saved and read back; older files carry no pattern.
    void backgroundSurvivesSaving_data() {
        addColumns<QBrush, QString, QBrush>("brush", "dropped", "expected");
        const QColor halfYellow(255, 255, 0, 128);
        QTest::newRow("translucent") << QBrush(halfYellow) << "" << QBrush(halfYellow);
        QTest::newRow("hatched") << QBrush(Qt::red, Qt::CrossPattern) << ""
                                 << QBrush(Qt::red, Qt::CrossPattern);
        QTest::newRow("gradient comes back solid")
            << QBrush(QLinearGradient(0, 0, 1, 1)) << "" << QBrush(Qt::black);
        QTest::newRow("older file, no alpha")
            << QBrush(Qt::blue) << "bgStyle alpha" << QBrush(QColor(0, 0, 255, 0), Qt::NoBrush);
    }

    void backgroundSurvivesSaving() {
        QFETCH(QBrush, brush);
        QFETCH(QString, dropped);
        QFETCH(QBrush, expected);
        eTextItem text(nullptr, 1, nullptr);
        text.setBrush(brush);
        Attributes attributes = saved(&text);
        QCOMPARE(attributes.value("alpha"), QString::number(brush.color().alpha()));
        for (const QString& key : dropped.split(' '))
            attributes.remove(key);
        const std::unique_ptr<AbstractBaseItem> back = loaded("eTextItem", attributes);
        QCOMPARE(back->brush(), expected);
        QCOMPARE(static_cast<eTextItem*>(back.get())->background()->brush(), expected);
    }

    // A host clearing its scene may delete the text child first.
    void deletingTheTextFirstRemovesTheItem() {
        DrawingView v;
        QPointer<eTextItem> item = drawText(v, "gone");
        QVERIFY(item);
        delete item->textItem();
        QVERIFY(v.scene.items().isEmpty());
        QTRY_VERIFY(!item);
    }

    void cornerGripRotatesAboutTheCentre() {
        DrawingView v;
        eTextItem* item = drawText(v, "Rotate me");
        const QPointF c = item->centroid();
        HoverEventItem* grip = item->handgripItems().at(3);
        QCOMPARE(grip->getId(), int(HoverEventItem::BottomRight));
        const QPointF start = grip->scenePos();
        // A quarter turn clockwise on screen (y points down): -90, angles growing anticlockwise.
        const QPointF end = c + QPointF(-(start.y() - c.y()), start.x() - c.x());
        v.press(start);
        v.move(start + end - c);
        v.move(end);
        v.release(end);
        QVERIFY2(std::abs(std::remainder(item->rotation() + 90.0, 360.0)) < 2.0,
                 qPrintable(QString::number(item->rotation())));
        QVERIFY(near(grip->scenePos(), end, 3));
        QVERIFY(near(item->centroid(), c, 1e-6));
        QCOMPARE(item->background()->transform(), item->textItem()->transform());
    }

    void dialogFormatsTheSelection() {
        TextItem item;
        item.setPlainText(QStringLiteral("Hello world"));
        QCoreApplication::setApplicationName(QStringLiteral("Viewer"));
        TextItemDialog dialog(&item);
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Viewer - Edit Text Item"));
        QMap<QString, QAction*> actions;
        for (QAction* action : dialog.toolBar()->actions())
            actions.insert(action->text(), action);
        QAction* bold = actions.value(QStringLiteral("Bold"));
        QAction* italic = actions.value(QStringLiteral("Italic"));
        QVERIFY(bold && italic);

        TextEdit* editor = dialog.editor();
        QTextCursor cursor(editor->document());
        cursor.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor);
        editor->setTextCursor(cursor);
        bold->trigger();
        italic->trigger();
        const auto formatAt = [editor](int position) {
            QTextCursor c(editor->document());
            c.setPosition(position);
            return c.charFormat();
        };
        QVERIFY(formatAt(2).font().bold() && formatAt(2).font().italic());
        QVERIFY(!formatAt(9).font().bold() && !formatAt(9).font().italic());
        bold->trigger();
        QVERIFY(!formatAt(2).font().bold() && formatAt(2).font().italic());

        actions.value(QStringLiteral("Color"))->trigger();
        auto* chooser = editor->findChild<QColorDialog*>();
        QVERIFY(chooser);
        chooser->setCurrentColor(Qt::red);
        chooser->accept();
        QCOMPARE(formatAt(2).foreground().color(), QColor(Qt::red));
        QVERIFY(formatAt(9).foreground().color() != QColor(Qt::red));
        // Moving the cursor shows the format there without applying it.
        cursor.setPosition(9);
        editor->setTextCursor(cursor);
        QVERIFY(!italic->isChecked() && formatAt(2).font().italic());
    }

    void dialogEditsTheItem() {
        DrawingView v;
        eTextItem* item = drawText(v, "draft");
        QMenu menu;
        item->fillContextMenu(&menu);
        item->applyContextMenu(menu.actions().value(0)->data().toInt());
        auto* dialog = v.view.window()->findChild<TextItemDialog*>();
        QVERIFY(dialog);
        QCOMPARE(dialog->editor()->toPlainText(), QStringLiteral("draft"));
        dialog->editor()->setPlainText(QStringLiteral("final wording"));
        dialog->accept();
        QCOMPARE(item->text(), QStringLiteral("final wording"));
        QVERIFY(near(item->centroid(), QPointF(200, 150), 0.5));
    }
};

QTEST_MAIN(TestTextItem)
#include "tst_textitem.moc"
