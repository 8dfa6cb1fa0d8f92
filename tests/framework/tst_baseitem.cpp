#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "TestItem.h"

#include <QTest>

class TestBaseItem : public QObject {
    Q_OBJECT
private slots:
    void newItemDefaults();
    void copyCommonDataCopiesTheCalibrationBlock();
    void selectionAndLockDriveHandgrips();
    void makeRotationTurnsAboutTheCentre();
    void penAndFontReachTheLabel();
};

// Measures past the table read 0; a new item is being created and has nothing to compute; labels and
// their leader lines are red, the leader dotted.
void TestBaseItem::newItemDefaults() {
    TestItem item;
    QCOMPARE(item.accessmesure(12) + item.accessmesureP(1000), 0.0);
    QCOMPARE(item.label()->textColor(), QColor(Qt::red));
    QVERIFY(item.penCentroidText().style() == Qt::DotLine && item.penCentroidText().isCosmetic());
    QCOMPARE(item.modeEdition(), AbstractBaseItem::EditionCreating);
    QVERIFY(!item.computeMesures(nullptr));
}

void TestBaseItem::copyCommonDataCopiesTheCalibrationBlock() {
    TestItem src, dst;
    Calibration c{"µm", "micrometre", 300, 0.25, 0, 3, 1.5, 2.5, 1, 2};
    src.setCalibration(c);
    AbstractBaseItem::copyCommonData(&dst, &src);
    QVERIFY(dst.calibration() == c);
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

QTEST_MAIN(TestBaseItem)
#include "tst_baseitem.moc"
