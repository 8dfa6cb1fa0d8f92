#include "AbstractScene.h"
#include "CommonParams.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "TestItem.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

class TestBaseItem : public QObject {
    Q_OBJECT
private slots:
    void newItemDefaults();
    void copyCommonDataCopiesTheCalibrationBlock();
    void selectionAndLockDriveHandgrips();
    void contextMenuChoiceSetsTheMeasure();
    void makeRotationTurnsAboutTheCentre();
    void penAndFontReachTheLabel();
    void destroyingAnItemInAScene();
};

void TestBaseItem::newItemDefaults() {
    TestItem item;
    const Calibration c = item.calibration();
    QVERIFY(c.unitName == "mm" && c.decimals == 2 && c.resolution == 72.0 && c.factor == 1.0);
    QCOMPARE(item.maxMesuresNum(), 12);
    QCOMPARE(item.accessmesure(12) + item.accessmesureP(1000), 0.0);
    QCOMPARE(item.modeEdition(), AbstractBaseItem::EditionCreating);
    QVERIFY(item.textusage() && !item.locked() && !item.previewed() && !item.constrained() &&
            !item.generated());
    QCOMPARE(item.label()->textColor(), QColor(Qt::red));
    QVERIFY(item.penCentroidText().style() == Qt::DotLine && item.penCentroidText().isCosmetic());
    QCOMPARE(item.getSimpleHELP(), QString("no help"));
    QVERIFY(!item.computeMesures(nullptr));
}

void TestBaseItem::copyCommonDataCopiesTheCalibrationBlock() {
    TestItem src, dst;
    Calibration c{"µm", "micrometre", 300, 0.25, 0, 3, 1.5, 2.5, 1, 2};
    src.setCalibration(c);
    AbstractBaseItem::copyCommonData(&dst, &src);
    const Calibration d = dst.calibration();
    QCOMPARE(std::tie(d.unitName, d.unitText, d.resolution, d.factor, d.unitCode),
             std::tie(c.unitName, c.unitText, c.resolution, c.factor, c.unitCode));
    QCOMPARE(std::tie(d.decimals, d.origin, d.extra, d.flag1, d.flag2),
             std::tie(c.decimals, c.origin, c.extra, c.flag1, c.flag2));
    QCOMPARE(dst.calibrateValue(8), 2.0);
    QCOMPARE(dst.uncalibrateValue(2), 8.0);
}

void TestBaseItem::selectionAndLockDriveHandgrips() {
    AbstractScene scene;
    auto* item = new TestItem;
    scene.addItem(item);
    item->addGrip(0, HoverEventItem::Move);
    item->addGrip(1, HoverEventItem::Rotation);
    item->updateHandgrips();
    const auto gripsAre = [item](bool visible, bool locked) {
        for (HoverEventItem* grip : item->handgripItems()) {
            if (grip->isVisible() != visible || grip->lockstate() != locked)
                return false;
        }
        return true;
    };
    const auto movable = [item] { return bool(item->flags() & QGraphicsItem::ItemIsMovable); };
    QVERIFY(gripsAre(false, false));
    item->forceSelection();
    QVERIFY(gripsAre(true, false) && movable());
    scene.clearSelection();
    QVERIFY(gripsAre(false, false));

    item->setLockstate(true);
    item->forceSelection();
    QVERIFY(item->isSelected() && !movable());
    QVERIFY(gripsAre(true, true));
    item->setLockstate(false);
    QVERIFY(gripsAre(true, false));
    item->forceSelectionNoMove();
    QVERIFY(item->isSelected() && !movable());
}

// The menu's checked entry, the chosen measure, its label and the remembered choice.
void TestBaseItem::contextMenuChoiceSetsTheMeasure() {
    TestItem item;
    QSignalSpy changed(&item, &AbstractBaseItem::mesureChanged);
    item.setMesure(1, 4, 4);
    QMenu menu;
    item.fillContextMenu(&menu);
    QCOMPARE(menu.actions().size(), 2);
    QAction* distance = menu.actions().first();
    QVERIFY(distance->isCheckable() && !distance->isChecked());
    QCOMPARE(distance->actionGroup(), nullptr);
    QCOMPARE(menu.actions().last()->data().toInt(), 100);
    item.applyContextMenu(distance->data().toInt());
    QCOMPARE(item.mesureIndex(), 1);
    QCOMPARE(item.label()->text(), QString("dist1:4.00*mm"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(getCommonParams("test_mesureIndex", 0).toInt(), 1);
    QMenu again;
    item.fillContextMenu(&again);
    QVERIFY(again.actions().first()->isChecked());
}

void TestBaseItem::makeRotationTurnsAboutTheCentre() {
    TestItem item;
    const QTransform t = item.makeRotation(90, QPointF(10, 10));
    QCOMPARE(t.map(QPointF(10, 10)), QPointF(10, 10));
    const QPointF turned = t.map(QPointF(20, 10));
    QVERIFY(qAbs(turned.x() - 10) < 1e-9 && qAbs(turned.y() - 20) < 1e-9);
    QCOMPARE(item.makeRotation(90, QRectF(0, 0, 20, 20)).map(QPointF(10, 10)), QPointF(10, 10));
}

void TestBaseItem::penAndFontReachTheLabel() {
    TestItem item;
    item.setPen(QPen(Qt::blue));
    QCOMPARE(item.label()->textColor(), QColor(Qt::blue));
    item.setFont(QFont("DejaVu Sans", 17));
    QCOMPARE(item.label()->font().pointSize(), 17);
    item.addGrip(0, HoverEventItem::Move);
    item.setupCentroidHandgrip();
    item.transmitFont(QFont("DejaVu Sans", 7));
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
