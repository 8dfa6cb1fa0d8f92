#include "DataColumns.h"
#include "DrawingView.h"
#include "RectangleItem.h"

#include <QClipboard>
#include <QGuiApplication>

#include <cmath>

using Mesures = QList<double>; // kinds 1, 2, 5, 6, 7, 8, 10

static std::unique_ptr<RectangleItem> rectangle(QRectF r, AbstractBaseItem* source = nullptr) {
    return generated<RectangleItem>({source, {}, r, {}, 0, 0, {}});
}

class TestRectangles : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    void drawnMeasures_data() {
        // label: empty when rejected
        addColumns<QString, QPointF, Qt::KeyboardModifiers, Mesures, QString>("className", "to", "keys",
                                                                              "pixels", "label");
        // From (50, 80), calibration factor 0.5.
        const Qt::KeyboardModifiers none;
        QTest::newRow("rectangle") << "RectangleItem" << QPointF(350, 200) << none
                                   << Mesures{300, 120, 36000, 840, 300, 120, 0} << "perim:420.00*mm";
        QTest::newRow("shift draws a square")
            << "RectangleItem" << QPointF(30, 0) << Qt::KeyboardModifiers(Qt::ShiftModifier)
            << Mesures{80, 80, 6400, 320, 80, 80, 0} << "perim:160.00*mm";
        QTest::newRow("feret sorts the sides")
            << "RectangleItemFeret" << QPointF(150, 280) << none << Mesures{200, 100, 20000, 600, 100, 200, 0}
            << "perim:300.00*mm";
        QTest::newRow("calibration area scaled once")
            << "RectCalibItem" << QPointF(350, 200) << none
            << Mesures{0, 0, 36000, 840, 300, 120, std::sqrt(300.0 * 300 + 120 * 120)} << "cust:161.55";
        QTest::newRow("click") << "RectangleItem" << QPointF(50, 80) << none << Mesures{} << "";
        QTest::newRow("flat") << "RectangleItem" << QPointF(150, 80) << none << Mesures{} << "";
        QTest::newRow("calibration, thin") << "RectCalibItem" << QPointF(50, 180) << none << Mesures{} << "";
        QTest::newRow("feret, one pixel") << "RectangleItemFeret" << QPointF(49, 79) << none
                                          << Mesures{1, 1, 1, 4, 1, 1, 0} << "perim:2.00*mm";
    }

    void drawnMeasures() {
        QFETCH(QString, className);
        QFETCH(QPointF, to);
        QFETCH(Qt::KeyboardModifiers, keys);
        QFETCH(Mesures, pixels);
        QFETCH(QString, label);
        DrawingView v;
        auto* item = static_cast<RectangleItem*>(v.draw(className, QPointF(50, 80), to, 0.5, keys));
        QCOMPARE(bool(item), !label.isEmpty());
        if (!item)
            return;
        QVERIFY(item->isSelected());
        // Lengths scale by the factor, the area by its square; the calibration rectangle's area only once.
        const QList<unsigned> kinds{1, 2, 5, 6, 7, 8, 10};
        for (int i = 0; i < kinds.size(); ++i) {
            const double scale = kinds[i] != 5 ? 0.5 : className == "RectCalibItem" ? 0.5 : 0.25;
            QCOMPARE(item->accessmesureP(kinds[i]), pixels[i]);
            QCOMPARE(item->accessmesure(kinds[i]), pixels[i] * scale);
        }
        QCOMPARE(item->label()->text(), label);
        const QRectF r = item->rect();
        QCOMPARE(item->mline(), (QList<QPointF>{r.topLeft(), r.bottomRight()}));
        // The calibration rectangle is never saved.
        QCOMPARE(saved(item).isEmpty(), className == "RectCalibItem");
    }

    void gripDrags_data() {
        addColumns<int, QPointF, QRectF, double>("grip", "to", "rect", "rotation");
        // The rectangle (50, 80, 300, 120), centred on (200, 140).
        QTest::newRow("right side") << 4 << QPointF(380, 10) << QRectF(50, 80, 330, 120) << 0.0;
        QTest::newRow("left side") << 3 << QPointF(20, 250) << QRectF(20, 80, 330, 120) << 0.0;
        QTest::newRow("top side") << 1 << QPointF(0, 30) << QRectF(50, 30, 300, 170) << 0.0;
        QTest::newRow("bottom side") << 6 << QPointF(0, 250) << QRectF(50, 80, 300, 170) << 0.0;
        // Negative sizes are kept, not corrected.
        QTest::newRow("left side across the right")
            << 3 << QPointF(390, 140) << QRectF(390, 80, -40, 120) << 0.0;
        // The corner (150, 60) from the centre, taken a quarter turn clockwise: -90, angles growing
        // anticlockwise.
        QTest::newRow("corner rotates") << 7 << QPointF(140, 290) << QRectF(50, 80, 300, 120) << -90.0;
    }

    void gripDrags() {
        QFETCH(int, grip);
        QFETCH(QPointF, to);
        QFETCH(QRectF, rect);
        QFETCH(double, rotation);
        DrawingView v;
        auto* item = v.draw<RectangleItem>(QPointF(50, 80), QPointF(350, 200));
        EditSpy spy(item);
        v.dragGrip(item, grip, to);
        QCOMPARE(item->rect(), rect);
        QCOMPARE(item->rotation(), rotation);
        QCOMPARE(item->currentRotation(), rotation);
        QCOMPARE(item->accessmesureP(6), 2 * (rect.width() + rect.height()));
        QCOMPARE(item->mline()[0], item->mapToScene(rect.topLeft()));
        if (rotation != 0)
            QCOMPARE(item->handgripItems()[2]->scenePos(), to);
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
    }

    // A turn starts where the last one ended: the corner stays under the cursor from the press on.
    void secondTurnGoesOnFromTheFirst() {
        DrawingView v;
        auto* item = v.draw<RectangleItem>(QPointF(50, 80), QPointF(350, 200));
        const QPointF c(200, 140);
        for (double expected : {-90.0, -180.0}) {
            item->forceSelection();
            const QPointF from = item->handgripItems()[2]->scenePos();
            const QPointF to = c + QPointF(-(from.y() - c.y()), from.x() - c.x());
            v.press(from);
            v.move(from + QPointF(0.5, 0.5));
            QVERIFY(std::abs(std::remainder(item->rotation() - expected - 90, 360.0)) < 1);
            v.move(to);
            v.release(to);
            QVERIFY2(std::abs(std::remainder(item->rotation() - expected, 360.0)) < 0.5,
                     qPrintable(QString::number(item->rotation())));
        }
    }

    void rotatedSideResizeKeepsFacingSide_data() {
        addColumns<int, QList<int>>("grip", "facingCorners");
        QTest::newRow("right side") << 4 << QList<int>{0, 5};
        QTest::newRow("bottom side") << 6 << QList<int>{0, 2};
    }

    void rotatedSideResizeKeepsFacingSide() {
        QFETCH(int, grip);
        QFETCH(QList<int>, facingCorners);
        DrawingView v;
        auto* item = v.draw<RectangleItem>(QPointF(100, 100), QPointF(300, 200));
        item->rotate(30);
        const auto at = [&](int position) {
            return item->mapToScene(HoverEventItem::positionOnRect(item->rect(), position));
        };
        const QList<QPointF> before{at(facingCorners[0]), at(facingCorners[1])};
        // 30 pixels outwards, across the side.
        const QPointF outward = at(grip) - at(HoverEventItem::Center);
        v.dragGrip(item, grip, at(grip) + outward * (30.0 / std::hypot(outward.x(), outward.y())));
        QVERIFY(QLineF(at(facingCorners[0]), before[0]).length() < 1e-9);
        QVERIFY(QLineF(at(facingCorners[1]), before[1]).length() < 1e-9);
        const double grown =
            grip == 1 || grip == 6 ? item->rect().height() - 100 : item->rect().width() - 200;
        QVERIFY2(std::abs(grown - 30) < 1.0, qPrintable(QString::number(grown)));
    }

    // Measures supplied by a record's source item are kept.
    void recordKeepsItsSourceMeasures() {
        auto source = rectangle(QRectF(10, 10, 20, 30));
        QCOMPARE(rectangle(QRectF(0, 0, 4, 4), source.get())->accessmesureP(5), 600.0);
    }

    void transformMenu_data() {
        addColumns<QSizeF, double, QStringList>("size", "rotation", "texts");
        const QStringList circles{"none", "toInCircle", "toOutCircle"};
        const QStringList snaps{"snapImageSelection...", "snapPixMapSelection...", "transfert2PixMap"};
        const QStringList all = circles + QStringList{"imageMatching", "pixmapMatching"} + snaps;
        QTest::newRow("small") << QSizeF(40, 20) << 0.0 << all;
        QTest::newRow("exactly 65536") << QSizeF(256, 256) << 0.0 << all;
        QTest::newRow("larger than 65536") << QSizeF(256, 257) << 0.0 << circles + snaps;
        QTest::newRow("rotated") << QSizeF(40, 20) << 0.5 << circles;
    }

    void transformMenu() {
        QFETCH(QSizeF, size);
        QFETCH(double, rotation);
        QFETCH(QStringList, texts);
        auto item = rectangle(QRectF(QPointF(10, 10), size));
        item->rotate(rotation);
        QMenu menu;
        QStringList shown = menuOf(item.get(), menu, true).keys();
        shown.removeAll(QString());
        std::sort(texts.begin(), texts.end());
        QCOMPARE(shown, texts);
        QSignalSpy spy(item.get(), qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
        const QList<QPair<QString, int>> choices{
            {"toInCircle", 8200}, {"transfert2PixMap", 4608}, {"none", -1}};
        for (const auto& [text, index] : choices) {
            if (choose(item.get(), text, true))
                QCOMPARE(spy.takeFirst(),
                         (QVariantList{QVariant::fromValue<void*>(item.get()), index, false}));
        }
    }

    void snapshotsCopyTheSelection() {
        DrawingView v;
        AbstractBaseItem* item = v.draw("RectangleItem", QPointF(20, 30), QPointF(60, 50));
        QSignalSpy spy(item, &AbstractBaseItem::itemChanged);
        QMenu bare;
        QVERIFY(!menuOf(item, bare, true).value("snapImageSelection...")->isEnabled());
        item->applyEditMenu(RectangleItem::SnapImage);
        QCOMPARE(spy.count(), 0);

        QImage image(100, 80, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgb(x * 2, y * 3, 90));
        v.scene.setImage(image);
        QList<QImage> copies;
        QObject::connect(item, &AbstractBaseItem::itemChanged,
                         [&](void*, QString, void* data) { copies << *static_cast<QImage*>(data); });
        QVERIFY(choose(item, "snapImageSelection...", true));
        QCOMPARE(QGuiApplication::clipboard()->image(), image.copy(20, 30, 40, 20));
        QVERIFY(choose(item, "snapPixMapSelection...", true));
        QCOMPARE(QGuiApplication::clipboard()->pixmap().size(), QSize(40, 20));
        QCOMPARE(spy[0][1].toString() + spy[1][1].toString(),
                 QString("snapImageSelectionsnapPixMapSelection"));
        QCOMPARE(copies[0], image.copy(20, 30, 40, 20));
        // Inside the outline the rendered scene shows its image.
        QCOMPARE(copies[1].pixel(10, 10), image.pixel(30, 40));
    }
};

QTEST_MAIN(TestRectangles)
#include "tst_rectangles.moc"
