// The base item: measure texts, calibration, labels and leader lines, grips under selection and lock,
// rotation, pen and font.
#include "DataColumns.h"
#include "DrawingView.h"
#include "HoverEventItem.h"
#include "SimpleTextItem.h"
#include "TestItem.h"

#include <QImage>
#include <QPainter>
#include <QTest>

class TestMeasures : public QObject {
    Q_OBJECT
private slots:
    // "labelled" is the label text under the given unit and decimals; "plain" the value alone under
    // the default calibration (mm, two decimals).
    void formatTextMesure_data() {
        const auto row = addColumns<int, double, int, QString, QString, QString>("index", "value", "decimals",
                                                                                 "unit", "labelled", "plain");
        row("centroid has no number", 0, 3.0, 2, "mm", "centroid:", "");
        row("distance with unit", 1, 12.5, 2, "mm", "dist1:12.50*mm", "12.50*mm");
        row("second distance, micrometres", 2, 0.5, 3, "µm", "dist2:0.500*µm", "0.50*mm");
        row("angle without unit", 3, 45.0, 1, "mm", "ang1:45.0", "45.00");
        row("area without unit", 5, 100.0, 2, "mm", "aera:100.00", "100.00");
        row("perimeter", 6, 40.0, 2, "cm", "perim:40.00*cm", "40.00*mm");
        row("second radius, no decimals", 8, 2.0, 0, "mm", "rad2:2*mm", "2.00*mm");
        row("diameter rounds", 9, 2.346, 2, "in", "diam:2.35*in", "2.35*mm");
        row("custom", 10, 7.0, 1, "mm", "cust:7.0", "7.00");
        row("reserved is never printed", 11, 7.0, 2, "mm", "", "");
        row("no measure", 100, 7.0, 2, "mm", "", "");
    }

    void formatTextMesure() {
        QFETCH(int, index);
        QFETCH(double, value);
        QFETCH(int, decimals);
        QFETCH(QString, unit);
        QFETCH(QString, labelled);
        QFETCH(QString, plain);
        TestItem item;
        if (index >= 0 && index < 12)
            item.setMesure(index, value, -1);
        QCOMPARE(item.mesure2QString(index), plain);
        QCOMPARE(item.accessmesure(11), index == 11 ? value : 0.0);
        item.setCalibration(calibration(1.0, unit, decimals));
        QCOMPARE(item.formatTextMesure(index), labelled);
        QCOMPARE(item.mesureIndexToName(index, value), labelled);
    }

    // The pixel array feeds the pixel text and the calibrated distances; factor 0 cannot be undone.
    void pixelsAndCalibration() {
        TestItem item;
        item.setCalibration(calibration(0.5, "mm", 1));
        item.setMesure(1, 5, 10);
        QCOMPARE(item.formatTextMesure(1), QString("dist1:5.0*mm"));
        QCOMPARE(item.formatTextMesureP(1), QString("dist1:10.0*mm"));
        item.setCalibration(calibration(0.25));
        item.setMesure(1, 999, 40);
        item.setMesure(2, 999, 8);
        QCOMPARE(item.calibratedDistance1(), 10.0);
        QCOMPARE(item.calibratedDistance2(), 2.0);
        QCOMPARE(item.calibrateValue(4), 1.0);
        QCOMPARE(item.uncalibrateValue(1), 4.0);
        item.setCalibration(calibration(0));
        QVERIFY(qIsInf(item.uncalibrateValue(1)));
    }

    void labelFollowsTextUsage() {
        TestItem item;
        item.setMesure(1, 3, 3);
        item.setMesureIndex(1);
        item.commonUpdateText();
        QCOMPARE(item.label()->text(), QString("dist1:3.00*mm"));
        QVERIFY(item.label()->isVisible());
        item.setTextUsage(false);
        item.setMesure(1, 4, 4);
        item.label()->setVisible(false);
        item.commonUpdateText();
        QCOMPARE(item.label()->text(), QString("dist1:3.00*mm"));
        QVERIFY(!item.label()->isVisible());
    }

    void leaderLine_data() {
        addColumns<double, double, bool, bool>("zoomX", "zoomY", "verticalInForce", "drawn");
        QTest::newRow("0.8 is too small") << 0.8 << 1.0 << false << false;
        QTest::newRow("0.9 inclusive") << 0.9 << 1.0 << false << true;
        QTest::newRow("1.25 inclusive") << 1.25 << 1.0 << false << true;
        QTest::newRow("1.3 is too large") << 1.3 << 1.0 << false << false;
        QTest::newRow("vertical ignored unless in force") << 1.0 << 3.0 << false << true;
        QTest::newRow("vertical 1.3 in force") << 1.0 << 1.3 << true << false;
    }

    void leaderLine() {
        QFETCH(double, zoomX);
        QFETCH(double, zoomY);
        QFETCH(bool, verticalInForce);
        QFETCH(bool, drawn);
        AbstractScene scene(QRectF(0, 0, 400, 300));
        scene.setZoomFactors(zoomX, zoomY);
        scene.setVerticalZoomInForce(verticalInForce);
        auto* item = new TestItem;
        scene.addItem(item);
        item->setupCentroidHandgrip();
        item->setMesure(1, 2, 2);
        item->setMesureIndex(1);
        item->commonUpdateText();
        item->handgripCentroid()->setPos(300, 200); // the label lies far from the centroid (50, 25)

        const auto leadersDrawn = [&scene, item] {
            const int before = item->leaderLinesPainted();
            QImage image(400, 300, QImage::Format_ARGB32_Premultiplied);
            QPainter painter(&image);
            scene.render(&painter);
            return item->leaderLinesPainted() > before;
        };
        QCOMPARE(leadersDrawn(), drawn);
        // A label over the centroid needs no leader.
        item->handgripCentroid()->setPos(item->centroid() - item->label()->boundingRect().center());
        QVERIFY(!leadersDrawn());
    }

    void copyCommonDataCopiesTheCalibrationBlock() {
        TestItem src, dst;
        Calibration c{"µm", "micrometre", 300, 0.25, 0, 3, 1.5, 2.5, 1, 2};
        src.setCalibration(c);
        AbstractBaseItem::copyCommonData(&dst, &src);
        QVERIFY(dst.calibration() == c);
        QCOMPARE(dst.calibrateValue(8), 2.0);
        QCOMPARE(dst.uncalibrateValue(2), 8.0);
    }

    void selectionAndLockDriveHandgrips() {
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

    void makeRotationTurnsAboutTheCentre() {
        TestItem item;
        const QTransform t = item.makeRotation(90, QPointF(10, 10));
        QCOMPARE(t.map(QPointF(10, 10)), QPointF(10, 10));
        const QPointF turned = t.map(QPointF(20, 10));
        QVERIFY(qAbs(turned.x() - 10) < 1e-9 && qAbs(turned.y() - 20) < 1e-9);
        QCOMPARE(item.makeRotation(90, QRectF(0, 0, 20, 20)).map(QPointF(10, 10)), QPointF(10, 10));
    }

    void penAndFontReachTheLabel() {
        TestItem item;
        item.setPen(QPen(Qt::blue));
        QCOMPARE(item.label()->textColor(), QColor(Qt::blue));
        item.setFont(QFont("DejaVu Sans", 17));
        QCOMPARE(item.label()->font().pointSize(), 17);
        QVERIFY(item.label()->font().styleStrategy() & QFont::PreferNoShaping);
        QCOMPARE(item.font().styleStrategy(), QFont::PreferDefault);
        item.addGrip(0, HoverEventItem::Move);
        item.setupCentroidHandgrip();
        item.transmitFont(QFont("DejaVu Sans", 7));
        QCOMPARE(item.font2().pointSize(), 7);
        QCOMPARE(item.handgripItems().first()->font().pointSize(), 7);
        QCOMPARE(item.handgripCentroid()->font().pointSize(), 7);
        QCOMPARE(item.label()->parentItem(), item.handgripCentroid());
    }
};

QTEST_MAIN(TestMeasures)
#include "tst_measures.moc"
