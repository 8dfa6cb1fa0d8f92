#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "TestItem.h"

#include <QAction>
#include <QActionGroup>
#include <QDomDocument>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

class TestBaseItem : public QObject {
    Q_OBJECT
private slots:
    void newItemDefaults();
    void guidDependsOnIndex();
    void copyCommonDataCopiesTheCalibrationBlock();
    void lockingLocksHandgrips();
    void forceSelectionOfLockedItemDoesNotMakeItMovable();
    void selectionShowsAndHidesHandgrips();
    void createMenuActionCarriesData();
    void makeRotationTurnsAboutTheCentre();
    void cloneSavesIdentically();
    void penAndFontReachTheLabel();
    void destroyingAnItemInAScene();
};

void TestBaseItem::newItemDefaults() {
    TestItem item;
    AbstractBaseItem& base = item;
    QCOMPARE(base.getGUIDname(), QString());
    QCOMPARE(base.getSubType(), 0ul);
    QCOMPARE(base.calibrateValue(5), 5.0);
    QCOMPARE(base.uncalibrateValue(5), 5.0);
    QCOMPARE(base.calibration().unitName, QString("mm"));
    QCOMPARE(base.calibration().decimals, 2);
    QCOMPARE(base.calibration().resolution, 72.0);
    QCOMPARE(base.currentSx(), 0.0);
    QCOMPARE(base.currentSy(), 0.0);
    QCOMPARE(base.maxMesuresNum(), 12);
    QCOMPARE(base.accessmesure(12), 0.0);
    QCOMPARE(base.accessmesureP(1000), 0.0);
    QCOMPARE(base.modeEdition(), AbstractBaseItem::EditionCreating);
    QVERIFY(base.textusage());
    QVERIFY(!base.locked() && !base.previewed() && !base.constrained() && !base.generated());
    QCOMPARE(base.label()->textColor(), QColor(Qt::red));
    QCOMPARE(base.penCentroidText().style(), Qt::DotLine);
    QVERIFY(base.penCentroidText().isCosmetic());
    QCOMPARE(base.getSimpleHELP(), QString("no help"));
    QVERIFY(base.qlinef(0).isNull());
    QVERIFY(!base.computeMesures(nullptr));
    QVERIFY(base.endEdition());
    QVERIFY(base.boundingRect().isValid());
}

void TestBaseItem::guidDependsOnIndex() {
    TestItem item;
    item.computeGUID("LineItem", 4);
    const unsigned long first = item.getGUID();
    QVERIFY(first != 0);
    QVERIFY(first <= 0xffffffffu + 100ul);
    item.setGUID(77);
    QCOMPARE(item.getGUID(), 77ul);
}

void TestBaseItem::copyCommonDataCopiesTheCalibrationBlock() {
    TestItem src, dst;
    Calibration c;
    c.unitName = "µm";
    c.unitText = "micrometre";
    c.resolution = 300;
    c.factor = 0.25;
    c.unitCode = 0;
    c.decimals = 3;
    c.origin = 1.5;
    c.extra = 2.5;
    c.flag1 = 1;
    c.flag2 = 2;
    src.setCalibration(c);
    AbstractBaseItem::copyCommonData(&dst, &src);
    const Calibration d = dst.calibration();
    QCOMPARE(d.unitName, c.unitName);
    QCOMPARE(d.unitText, c.unitText);
    QCOMPARE(d.resolution, c.resolution);
    QCOMPARE(d.factor, c.factor);
    QCOMPARE(d.unitCode, c.unitCode);
    QCOMPARE(d.decimals, c.decimals);
    QCOMPARE(d.origin, c.origin);
    QCOMPARE(d.extra, c.extra);
    QCOMPARE(d.flag1, c.flag1);
    QCOMPARE(d.flag2, c.flag2);
    QCOMPARE(dst.calibrateValue(8), 2.0);
    QCOMPARE(dst.uncalibrateValue(2), 8.0);
}

void TestBaseItem::lockingLocksHandgrips() {
    TestItem item;
    item.addGrip(0, HoverEventItem::Move);
    item.addGrip(1, HoverEventItem::Rotation);
    item.setLockstate(true);
    QVERIFY(item.locked());
    for (HoverEventItem* grip : item.handgripItems())
        QVERIFY(grip->lockstate());
    item.setLockstate(false);
    for (HoverEventItem* grip : item.handgripItems())
        QVERIFY(!grip->lockstate());
}

void TestBaseItem::forceSelectionOfLockedItemDoesNotMakeItMovable() {
    AbstractScene scene;
    auto* item = new TestItem;
    scene.addItem(item);
    item->setLockstate(true);
    item->forceSelection();
    QVERIFY(item->isSelected());
    QVERIFY(!(item->flags() & QGraphicsItem::ItemIsMovable));
    item->setLockstate(false);
    item->setSelected(false);
    item->forceSelection();
    QVERIFY(item->flags() & QGraphicsItem::ItemIsMovable);
    item->forceSelectionNoMove();
    QVERIFY(!(item->flags() & QGraphicsItem::ItemIsMovable));
    QVERIFY(item->isSelected());
}

void TestBaseItem::selectionShowsAndHidesHandgrips() {
    AbstractScene scene;
    auto* item = new TestItem;
    scene.addItem(item);
    item->addGrip(0, HoverEventItem::Move);
    item->addGrip(1, HoverEventItem::Move);
    item->updateHandgrips();
    for (HoverEventItem* grip : item->handgripItems())
        QVERIFY(!grip->isVisible());
    item->forceSelection();
    for (HoverEventItem* grip : item->handgripItems())
        QVERIFY(grip->isVisible());
    scene.clearSelection();
    for (HoverEventItem* grip : item->handgripItems())
        QVERIFY(!grip->isVisible());
}

void TestBaseItem::createMenuActionCarriesData() {
    TestItem item;
    QMenu menu;
    QActionGroup group(&menu);
    QAction* a = item.createMenuAction(&menu, QIcon(), "Distance1", true, &group, 1);
    QAction* b = item.createMenuAction(&menu, QIcon(), "None", false, nullptr, 100);
    QCOMPARE(menu.actions().size(), 2);
    QVERIFY(a->isCheckable() && a->isChecked());
    QVERIFY(b->isCheckable() && !b->isChecked());
    QCOMPARE(a->actionGroup(), &group);
    QCOMPARE(b->actionGroup(), nullptr);
    QCOMPARE(a->data().toInt(), 1);
    QCOMPARE(b->data().toInt(), 100);
    QCOMPARE(a->text(), QString("Distance1"));
}

void TestBaseItem::makeRotationTurnsAboutTheCentre() {
    TestItem item;
    const QTransform t = item.makeRotation(90, QPointF(10, 10));
    QCOMPARE(t.map(QPointF(10, 10)), QPointF(10, 10));
    const QPointF turned = t.map(QPointF(20, 10));
    QVERIFY(qAbs(turned.x() - 10) < 1e-9 && qAbs(turned.y() - 20) < 1e-9);
    const QTransform r = item.makeRotation(90, QRectF(0, 0, 20, 20));
    QCOMPARE(r.map(QPointF(10, 10)), QPointF(10, 10));
}

void TestBaseItem::cloneSavesIdentically() {
    TestItem item;
    item.setGUIDname("TestItem7");
    item.setMesure(1, 12.5, 25);
    item.setPen(QPen(QColor("#123456"), 3, Qt::DashLine));
    QScopedPointer<AbstractBaseItem> copy(item.clone(8));
    QDomDocument doc;
    QDomElement a = doc.createElement("a");
    QDomElement b = doc.createElement("b");
    item.toXml(a);
    copy->toXml(b);
    QCOMPARE(b.attributes().count(), a.attributes().count());
    for (int i = 0; i < a.attributes().count(); ++i) {
        const QString key = a.attributes().item(i).nodeName();
        QCOMPARE(b.attribute(key), a.attribute(key));
    }
}

void TestBaseItem::penAndFontReachTheLabel() {
    TestItem item;
    item.setPen(QPen(Qt::blue));
    QCOMPARE(item.label()->textColor(), QColor(Qt::blue));
    QFont font("DejaVu Sans", 17);
    item.setFont(font);
    QCOMPARE(item.label()->font().pointSize(), 17);
    item.addGrip(0, HoverEventItem::Move);
    item.setupCentroidHandgrip();
    QFont small("DejaVu Sans", 7);
    item.transmitFont(small);
    QCOMPARE(item.font2().pointSize(), 7);
    QCOMPARE(item.handgripItems().first()->font().pointSize(), 7);
    QCOMPARE(item.handgripCentroid()->font().pointSize(), 7);
    QCOMPARE(item.label()->parentItem(), item.handgripCentroid());
}

void TestBaseItem::destroyingAnItemInAScene() {
    AbstractScene scene;
    auto* item = new TestItem;
    scene.addItem(item);
    item->addGrip(0, HoverEventItem::Move);
    item->setupCentroidHandgrip();
    QSignalSpy destroyed(item, &QObject::destroyed);
    delete item;
    QCOMPARE(destroyed.count(), 1);
    QVERIFY(scene.items().isEmpty());
}

QTEST_MAIN(TestBaseItem)
#include "tst_baseitem.moc"
