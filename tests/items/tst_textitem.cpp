#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "ItemFactory.h"
#include "TestItem.h"
#include "TextEdit.h"
#include "TextItem.h"
#include "TextItemDialog.h"
#include "eTextItem.h"

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QDomDocument>
#include <QGraphicsRectItem>
#include <QGraphicsView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTextCursor>
#include <QToolBar>

#include <cmath>
#include <memory>

namespace {

// A measuring item whose measure the test sets, announcing each change as an edit's end would.
class MeasuringItem : public TestItem {
public:
    MeasuringItem() {
        setGUIDname(QStringLiteral("Ruler1"));
        Calibration c;
        c.factor = 0.5;
        setCalibration(c);
    }
    void measure(int kind, double pixels) {
        setMesureIndex(kind);
        setMesure(kind, calibrateValue(pixels), pixels);
        emit mesureChangedEND(this);
    }
};

QDomElement save(const AbstractBaseItem& item, QDomDocument& doc) {
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item.toXml(e);
    return e;
}

QMap<QString, QString> attributes(const QDomElement& e) {
    QMap<QString, QString> result;
    const QDomNamedNodeMap map = e.attributes();
    for (int i = 0; i < map.count(); ++i)
        result.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return result;
}

bool near(const QPointF& a, const QPointF& b, double tolerance) {
    return QLineF(a, b).length() <= tolerance;
}

} // namespace

class TestTextItem : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void typedTextKeepsItsCentre();
    void focusOutRemovesOnlyEmptyText_data();
    void focusOutRemovesOnlyEmptyText();
    void linkedTextFollowsMeasure_data();
    void linkedTextFollowsMeasure();
    void everyWayOfUnlinkingStopsFollowing_data();
    void everyWayOfUnlinkingStopsFollowing();
    void deletedSourceLeavesTextAlive();
    void cornerGripRotatesAboutTheCentre();
    void dialogActionsFormatTheSelection();
    void dialogEditsTheItem();
    void xmlRoundTrip_data();
    void xmlRoundTrip();

private:
    eTextItem* drawText(double x, double y);
    QPoint at(const QPointF& p) const { return m_view->mapFromScene(p); }
    AbstractScene* m_scene = nullptr;
    QGraphicsView* m_view = nullptr;
};

void TestTextItem::init() {
    m_scene = new AbstractScene(QRectF(0, 0, 400, 300));
    m_view = new QGraphicsView(m_scene);
    m_view->setFixedSize(420, 320);
    m_view->show();
    m_view->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_view));
}

void TestTextItem::cleanup() {
    delete m_view;
    delete m_scene;
}

eTextItem* TestTextItem::drawText(double x, double y) {
    auto* item = qobject_cast<eTextItem*>(m_scene->startTool(QStringLiteral("eTextItem")));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(QPointF(x, y)));
    return item;
}

void TestTextItem::typedTextKeepsItsCentre() {
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    eTextItem* item = drawText(200, 150);
    QVERIFY(item);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(m_scene->focusItem(), item->textItem());
    QVERIFY(item->isEditing());

    QTest::keyClicks(m_view->viewport(), QStringLiteral("Hi"));
    QCOMPARE(item->text(), QStringLiteral("Hi"));
    const double narrow = item->background()->rect().width();
    QTest::keyClicks(m_view->viewport(), QStringLiteral(" there, a longer text"));
    QCOMPARE(item->text(), QStringLiteral("Hi there, a longer text"));
    QVERIFY(item->background()->rect().width() > narrow);
    QCOMPARE(item->background()->rect(), item->textItem()->boundingRect());
    QVERIFY(near(item->centroid(), QPointF(200, 150), 0.5));
    QVERIFY(item->textModified());
}

void TestTextItem::focusOutRemovesOnlyEmptyText_data() {
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("backspaces");
    QTest::addColumn<bool>("removed");
    QTest::newRow("text kept") << "abc" << 0 << false;
    QTest::newRow("text erased") << "abc" << 3 << true;
    QTest::newRow("nothing typed") << "" << 0 << true;
}

void TestTextItem::focusOutRemovesOnlyEmptyText() {
    QFETCH(QString, typed);
    QFETCH(int, backspaces);
    QFETCH(bool, removed);
    eTextItem* item = drawText(200, 150);
    QSignalSpy destroyed(item, &QObject::destroyed);
    QTest::keyClicks(m_view->viewport(), typed);
    for (int i = 0; i < backspaces; ++i)
        QTest::keyClick(m_view->viewport(), Qt::Key_Backspace);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(QPointF(20, 20)));
    if (removed) {
        QTRY_COMPARE(destroyed.count(), 1);
        QVERIFY(m_scene->items().isEmpty());
        return;
    }
    QTest::qWait(20);
    QCOMPARE(destroyed.count(), 0);
    QVERIFY(!item->isEditing());
    QVERIFY(!item->isSelected());
    QCOMPARE(item->textItem()->textInteractionFlags(), Qt::NoTextInteraction);
    QVERIFY(!item->textItem()->textCursor().hasSelection());
    // A double click on the text takes up editing again.
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, at(item->centroid()));
    QVERIFY(item->isEditing());
    QCOMPARE(m_scene->focusItem(), item->textItem());
    QCOMPARE(item->textItem()->textInteractionFlags(), Qt::TextEditorInteraction);
}

void TestTextItem::linkedTextFollowsMeasure_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("expected");
    QTest::newRow("length with unit") << int(AbstractBaseItem::Dist1) << "Ruler1 dist1:12.50 mm";
    QTest::newRow("diameter with unit") << int(AbstractBaseItem::Diam) << "Ruler1 diam:12.50 mm";
    QTest::newRow("angle without unit") << int(AbstractBaseItem::Ang1) << "Ruler1 ang1:12.50";
    QTest::newRow("area without unit") << int(AbstractBaseItem::Aera) << "Ruler1 aera:12.50";
    QTest::newRow("no measure shown") << AbstractBaseItem::NoMesure << "Ruler1";
}

void TestTextItem::linkedTextFollowsMeasure() {
    QFETCH(int, kind);
    QFETCH(QString, expected);
    MeasuringItem source;
    source.measure(kind, 10);
    _AUTOPOINTPARAMS record;
    record.center = QPointF(120, 80);
    record.source = &source;
    eTextItem text(nullptr, 1, &record);
    QVERIFY(text.creationStarted());
    QCOMPARE(text.getLinkName(), QStringLiteral("Ruler1"));
    QVERIFY(text.textItem()->isLinked());
    source.measure(kind, 25);
    QCOMPARE(text.text(), expected);
    QVERIFY(near(text.centroid(), record.center, 1e-9));
}

void TestTextItem::everyWayOfUnlinkingStopsFollowing_data() {
    QTest::addColumn<int>("way");
    QTest::addColumn<QString>("textAfter");
    QTest::newRow("unassociate with the item") << 0 << "Ruler1 dist1:5.00 mm";
    QTest::newRow("unassociate without item") << 1 << "Ruler1 dist1:5.00 mm";
    QTest::newRow("menu") << 2 << "Ruler1 dist1:5.00 mm";
    QTest::newRow("text reset") << 3 << " ";
}

void TestTextItem::everyWayOfUnlinkingStopsFollowing() {
    QFETCH(int, way);
    QFETCH(QString, textAfter);
    MeasuringItem source;
    eTextItem text(nullptr, 1, nullptr);
    text.associate(&source, nullptr);
    source.measure(AbstractBaseItem::Dist1, 10);
    QMenu menu;
    text.fillContextMenu(&menu);
    QCOMPARE(menu.actions().size(), 2);
    if (way == 0)
        text.unassociate(&source, nullptr);
    else if (way == 1)
        text.unassociate(nullptr, nullptr);
    else if (way == 2)
        text.applyContextMenu(menu.actions().at(1)->data().toInt());
    else
        text.setText(nullptr);
    source.measure(AbstractBaseItem::Dist1, 40);
    QCOMPARE(text.text(), textAfter);
    QCOMPARE(text.linkedItem(), nullptr);
    QVERIFY(text.getLinkName().isEmpty());
    QVERIFY(!text.textItem()->isLinked());
}

void TestTextItem::deletedSourceLeavesTextAlive() {
    auto* source = new MeasuringItem;
    auto* text = new eTextItem(nullptr, 1, nullptr);
    m_scene->addItem(source);
    m_scene->addItem(text);
    text->associate(source, nullptr);
    source->measure(AbstractBaseItem::Dist1, 25);
    QSignalSpy textGone(text, &QObject::destroyed);
    delete source;
    QCoreApplication::processEvents();
    QCOMPARE(textGone.count(), 0);
    QCOMPARE(text->text(), QStringLiteral("Ruler1 dist1:12.50 mm"));
    QCOMPARE(text->linkedItem(), nullptr);
    QVERIFY(text->getLinkName().isEmpty());
}

void TestTextItem::cornerGripRotatesAboutTheCentre() {
    eTextItem* item = drawText(200, 150);
    QTest::keyClicks(m_view->viewport(), QStringLiteral("Rotate me"));
    const QPointF c = item->centroid();
    HoverEventItem* grip = item->handgripItems().at(3);
    QCOMPARE(grip->getId(), int(HoverEventItem::BottomRight));
    QVERIFY(grip->isVisible());
    const QPointF start = grip->scenePos();
    // A quarter turn clockwise on screen (y points down).
    const QPointF end = c + QPointF(-(start.y() - c.y()), start.x() - c.x());
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at(start));
    QTest::mouseMove(m_view->viewport(), at(start + end - c));
    QTest::mouseMove(m_view->viewport(), at(end));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at(end));
    QVERIFY2(std::abs(std::remainder(item->rotation() - 90.0, 360.0)) < 2.0,
             qPrintable(QString::number(item->rotation())));
    QVERIFY(near(grip->scenePos(), end, 3));
    QVERIFY(near(item->centroid(), c, 1e-6));
    QCOMPARE(item->background()->transform(), item->textItem()->transform());
}

void TestTextItem::dialogActionsFormatTheSelection() {
    TextItem item;
    item.setPlainText(QStringLiteral("Hello world"));
    QCoreApplication::setApplicationName(QStringLiteral("Viewer"));
    TextItemDialog dialog(&item);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Viewer - Edit Text Item"));
    QCOMPARE(TextItemDialog().windowTitle(), QStringLiteral("Viewer - Add Text Item"));

    QMap<QString, QAction*> actions;
    for (QAction* action : dialog.toolBar()->actions())
        actions.insert(action->text(), action);
    QAction* bold = actions.value(QStringLiteral("Bold"));
    QAction* italic = actions.value(QStringLiteral("Italic"));
    QVERIFY(bold && italic && actions.contains(QStringLiteral("Color")));
    QCOMPARE(bold->shortcut(), QKeySequence(QStringLiteral("Ctrl+B")));
    QCOMPARE(italic->shortcut(), QKeySequence(QStringLiteral("Ctrl+I")));
    QVERIFY(!bold->icon().isNull() && !italic->icon().isNull());

    TextEdit* editor = dialog.editor();
    QTextCursor cursor(editor->document());
    cursor.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor);
    editor->setTextCursor(cursor);
    bold->trigger();
    italic->trigger();
    auto formatAt = [editor](int position) {
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
    editor->setTextCursor(QTextCursor(editor->document()));
    cursor.setPosition(9);
    editor->setTextCursor(cursor);
    QVERIFY(!italic->isChecked());
    QVERIFY(formatAt(2).font().italic());
}

void TestTextItem::dialogEditsTheItem() {
    eTextItem* item = drawText(200, 150);
    QTest::keyClicks(m_view->viewport(), QStringLiteral("draft"));
    QMenu menu;
    item->fillContextMenu(&menu);
    QAction* edit = menu.actions().value(0);
    QVERIFY(edit);
    item->applyContextMenu(edit->data().toInt());
    auto* dialog = m_view->window()->findChild<TextItemDialog*>();
    QVERIFY(dialog);
    QCOMPARE(dialog->editor()->toPlainText(), QStringLiteral("draft"));
    dialog->editor()->setPlainText(QStringLiteral("final wording"));
    dialog->accept();
    QCOMPARE(item->text(), QStringLiteral("final wording"));
    QVERIFY(near(item->centroid(), QPointF(200, 150), 0.5));
}

void TestTextItem::xmlRoundTrip_data() {
    QTest::addColumn<QString>("content");
    QTest::addColumn<QColor>("background");
    QTest::addColumn<double>("angle");
    QTest::addColumn<QPointF>("hostMove");
    QTest::newRow("plain text") << "Scale bar" << QColor() << 0.0 << QPointF();
    QTest::newRow("translucent background, rotated")
        << "Grain 3" << QColor(255, 255, 0, 128) << 30.0 << QPointF();
    QTest::newRow("moved by the host") << "two\nlines" << QColor(Qt::white) << -12.5 << QPointF(37.5, -4);
}

void TestTextItem::xmlRoundTrip() {
    QFETCH(QString, content);
    QFETCH(QColor, background);
    QFETCH(double, angle);
    QFETCH(QPointF, hostMove);
    eTextItem item(nullptr, 4, nullptr);
    item.textItem()->setPlainText(content);
    item.setCenterPoint(QPointF(150, 90));
    item.setFont(QFont(QStringLiteral("Courier"), 17));
    item.setPen(QPen(Qt::blue));
    if (background.isValid())
        item.setBrush(background);
    item.rotate(angle);
    MeasuringItem source;
    item.associate(&source, nullptr);
    item.unassociate(nullptr, nullptr);
    QString name = QStringLiteral("Ruler1");
    item.setLinkName(nullptr, name);
    item.textItem()->setPlainText(content);
    item.setPos(item.pos() + hostMove);

    QDomDocument doc;
    const QDomElement first = save(item, doc);
    QCOMPARE(first.attribute("text"), content);
    QCOMPARE(first.attribute("font-size"), QStringLiteral("17"));
    QCOMPARE(first.attribute("linkname"), name);
    QCOMPARE(first.attribute("alpha").toInt(), background.isValid() ? background.alpha() : 0);

    QString className = QStringLiteral("eTextItem");
    std::unique_ptr<AbstractBaseItem> loaded(XBaseItemToolCreate(className, nullptr, 9, nullptr));
    QVERIFY(qobject_cast<eTextItem*>(loaded.get()));
    loaded->fromXml(first);
    QCOMPARE(attributes(save(*loaded, doc)), attributes(first));
    QVERIFY(near(loaded->centroid(), item.centroid(), 1e-3));
    std::unique_ptr<AbstractBaseItem> copy(item.clone(5));
    QCOMPARE(attributes(save(*copy, doc)), attributes(first));

    // Reading never fails, whatever the element holds.
    eTextItem empty(nullptr, 1, nullptr);
    empty.fromXml(doc.createElement(QStringLiteral("item")));
    QCOMPARE(empty.text(), QString());
    QCOMPARE(empty.brush().style(), Qt::NoBrush);
}

QTEST_MAIN(TestTextItem)
#include "tst_textitem.moc"
