#include "CommonParams.h"
#include "DrawingView.h"
#include "RectangleItem.h"
#include "SimpleTextItem.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

#include <cmath>

using Mesures = QMap<int, double>;

class TestRectangles : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    void drawnMeasures_data();
    void drawnMeasures();
    void rejectsEmptyRectangles_data();
    void rejectsEmptyRectangles();
    void shiftDrawsASquare();
    void sideGripsResize_data();
    void sideGripsResize();
    void cornerGripRotates();
    void rotatedSideResizeKeepsFacingSide_data();
    void rotatedSideResizeKeepsFacingSide();
    void measureChoiceIsRemembered();
    void transformMenuEntries_data();
    void transformMenuEntries();
    void transformChoicesAreAnnounced();
    void snapshotsCopyTheSelection();
    void generatedFromARecord();
    void xmlRoundTrip_data();
    void xmlRoundTrip();
    void calibrationRectangleIsNotSaved();
};

static RectangleItem* generated(QRectF r, AbstractBaseItem* source = nullptr) {
    _AUTOPOINTPARAMS params;
    params.rect = r;
    params.source = source;
    return new RectangleItem(nullptr, 1, &params);
}

void TestRectangles::drawnMeasures_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<Mesures>("pixels");
    QTest::addColumn<Mesures>("calibrated");
    QTest::addColumn<QString>("label");
    // From (50, 80); calibration factor 0.5.
    QTest::newRow("rectangle 300x120")
        << "RectangleItem" << QPointF(350, 200)
        << Mesures{{1, 300}, {2, 120}, {5, 36000}, {6, 840}, {7, 300}, {8, 120}}
        << Mesures{{1, 150}, {2, 60}, {5, 9000}, {6, 420}, {7, 150}, {8, 60}} << "perim:420.00*mm";
    QTest::newRow("feret sorts the sides")
        << "RectangleItemFeret" << QPointF(150, 280)
        << Mesures{{1, 200}, {2, 100}, {5, 20000}, {6, 600}, {7, 100}, {8, 200}}
        << Mesures{{1, 100}, {2, 50}, {5, 5000}, {6, 300}, {7, 50}, {8, 100}} << "perim:300.00*mm";
    const double diagonal = std::sqrt(300.0 * 300 + 120 * 120);
    QTest::newRow("calibration area scaled once")
        << "RectCalibItem" << QPointF(350, 200)
        << Mesures{{1, 0}, {2, 0}, {5, 36000}, {6, 840}, {7, 300}, {8, 120}, {10, diagonal}}
        << Mesures{{1, 0}, {2, 0}, {5, 18000}, {6, 420}, {7, 150}, {8, 60}, {10, diagonal / 2}}
        << "cust:161.55";
}

void TestRectangles::drawnMeasures() {
    QFETCH(QString, className);
    QFETCH(QPointF, to);
    QFETCH(Mesures, pixels);
    QFETCH(Mesures, calibrated);
    QFETCH(QString, label);
    DrawingView v;
    AbstractBaseItem* item = v.draw(className, QPointF(50, 80), to, 0.5);
    QVERIFY(item);
    QVERIFY(item->isSelected());
    for (auto it = pixels.cbegin(); it != pixels.cend(); ++it) {
        QCOMPARE(item->accessmesureP(unsigned(it.key())), it.value());
        QCOMPARE(item->accessmesure(unsigned(it.key())), calibrated.value(it.key()));
    }
    QCOMPARE(item->label()->text(), label);
    QCOMPARE(item->mline(), (QList<QPointF>{QPointF(50, 80), to}));
}

void TestRectangles::rejectsEmptyRectangles_data() {
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("click without drag") << QPointF(50, 80) << false;
    QTest::newRow("flat") << QPointF(150, 80) << false;
    QTest::newRow("thin") << QPointF(50, 180) << false;
    QTest::newRow("one pixel, drawn backwards") << QPointF(49, 79) << true;
}

void TestRectangles::rejectsEmptyRectangles() {
    QFETCH(QPointF, to);
    QFETCH(bool, accepted);
    DrawingView v;
    QCOMPARE(bool(v.draw("RectangleItem", QPointF(50, 80), to)), accepted);
}

void TestRectangles::shiftDrawsASquare() {
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(
        v.draw("RectangleItem", QPointF(150, 150), QPointF(100, 130), 1.0, Qt::ShiftModifier));
    QVERIFY(item);
    QCOMPARE(item->rect(), QRectF(100, 100, 50, 50));
    QCOMPARE(item->mline(), (QList<QPointF>{QPointF(100, 100), QPointF(150, 150)}));
}

void TestRectangles::sideGripsResize_data() {
    QTest::addColumn<int>("grip");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QRectF>("rect");
    QTest::newRow("right") << 4 << QPointF(380, 10) << QRectF(50, 80, 330, 120);
    QTest::newRow("left") << 3 << QPointF(20, 250) << QRectF(20, 80, 330, 120);
    QTest::newRow("top") << 1 << QPointF(0, 30) << QRectF(50, 30, 300, 170);
    QTest::newRow("bottom") << 6 << QPointF(0, 250) << QRectF(50, 80, 300, 170);
    QTest::newRow("left across the right side") << 3 << QPointF(390, 140) << QRectF(50, 80, 300, 120);
}

void TestRectangles::sideGripsResize() {
    QFETCH(int, grip);
    QFETCH(QPointF, to);
    QFETCH(QRectF, rect);
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(v.draw("RectangleItem", QPointF(50, 80), QPointF(350, 200)));
    QSignalSpy start(item, &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy changed(item, &AbstractBaseItem::mesureChanged);
    QSignalSpy end(item, &AbstractBaseItem::mesureChangedEND);
    v.dragGrip(item, grip, to);
    QCOMPARE(item->rect(), rect);
    QCOMPARE(item->accessmesureP(6), 2 * (rect.width() + rect.height()));
    QCOMPARE(item->mline(), (QList<QPointF>{rect.topLeft(), rect.bottomRight()}));
    QCOMPARE(start.count(), 1);
    QCOMPARE(changed.count(), rect.width() == 300 && rect.height() == 120 ? 0 : 1);
    QCOMPARE(end.count(), 1);
}

void TestRectangles::cornerGripRotates() {
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(v.draw("RectangleItem", QPointF(50, 80), QPointF(350, 200)));
    QSignalSpy start(item, &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy end(item, &AbstractBaseItem::mesureChangedEND);
    // The bottom-right corner, (150, 60) from the centre, taken a quarter turn clockwise.
    v.dragGrip(item, 7, QPointF(140, 290));
    QCOMPARE(item->rotation(), 90.0);
    QCOMPARE(item->currentRotation(), 90.0);
    QCOMPARE(item->rect(), QRectF(50, 80, 300, 120));
    QCOMPARE(item->accessmesureP(6), 840.0);
    QCOMPARE(item->handgripItems()[2]->scenePos(), QPointF(140, 290));
    QCOMPARE(start.count(), 1);
    QCOMPARE(end.count(), 1);
}

void TestRectangles::rotatedSideResizeKeepsFacingSide_data() {
    QTest::addColumn<int>("grip");
    QTest::addColumn<QList<int>>("fixedCorners");
    QTest::newRow("right side") << 4 << QList<int>{0, 5};
    QTest::newRow("left side") << 3 << QList<int>{2, 7};
    QTest::newRow("top side") << 1 << QList<int>{5, 7};
    QTest::newRow("bottom side") << 6 << QList<int>{0, 2};
}

void TestRectangles::rotatedSideResizeKeepsFacingSide() {
    QFETCH(int, grip);
    QFETCH(QList<int>, fixedCorners);
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(v.draw("RectangleItem", QPointF(100, 100), QPointF(300, 200)));
    item->rotate(30);
    const auto cornerAt = [&](int corner) {
        return item->mapToScene(HoverEventItem::positionOnRect(item->rect(), corner));
    };
    const QPointF a = cornerAt(fixedCorners[0]), b = cornerAt(fixedCorners[1]);
    // Outwards, 30 pixels beyond the grip along the side's normal.
    const QPointF gripAt = cornerAt(grip);
    const QPointF outward = gripAt - item->mapToScene(item->rect().center());
    v.dragGrip(item, grip, gripAt + outward * (30.0 / std::hypot(outward.x(), outward.y())));
    QVERIFY(QLineF(cornerAt(fixedCorners[0]), a).length() < 1e-9);
    QVERIFY(QLineF(cornerAt(fixedCorners[1]), b).length() < 1e-9);
    const double grown = grip == 1 || grip == 6 ? item->rect().height() - 100 : item->rect().width() - 200;
    QVERIFY2(std::abs(grown - 30) < 1.0, qPrintable(QString::number(grown)));
    QCOMPARE(item->rotation(), 30.0);
}

void TestRectangles::measureChoiceIsRemembered() {
    std::unique_ptr<RectangleItem> first(generated(QRectF(10, 10, 20, 30)));
    QSignalSpy changed(first.get(), &AbstractBaseItem::mesureChanged);
    QVERIFY(chooseInMenu(
        "Area", [&](QMenu* m) { first->fillContextMenu(m); }, [&](int d) { first->applyContextMenu(d); }));
    QCOMPARE(first->mesureIndex(), 5);
    QCOMPARE(first->label()->text(), QString("aera:600.00"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(getCommonParams("rectangle_mesureIndex", 0).toInt(), 5);
    DrawingView v;
    AbstractBaseItem* feret = v.draw("RectangleItemFeret", QPointF(10, 10), QPointF(30, 40));
    QCOMPARE(feret->mesureIndex(), 5);
    QVERIFY(chooseInMenu(
        "None", [&](QMenu* m) { feret->fillContextMenu(m); }, [&](int d) { feret->applyContextMenu(d); }));
    QCOMPARE(std::unique_ptr<RectangleItem>(generated(QRectF(0, 0, 5, 5)))->mesureIndex(), -1);
}

void TestRectangles::transformMenuEntries_data() {
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<double>("rotation");
    QTest::addColumn<QStringList>("texts");
    const QStringList always{"none", "toInCircle", "toOutCircle"};
    const QStringList snaps{"snapImageSelection...", "snapPixMapSelection...", "transfert2PixMap"};
    const QStringList all = always + QStringList{"imageMatching", "pixmapMatching"} + snaps;
    QTest::newRow("small") << QSizeF(40, 20) << 0.0 << all;
    QTest::newRow("exactly 65536") << QSizeF(256, 256) << 0.0 << all;
    QTest::newRow("larger than 65536") << QSizeF(256, 257) << 0.0 << always + snaps;
    QTest::newRow("rotated") << QSizeF(40, 20) << 0.5 << always;
}

void TestRectangles::transformMenuEntries() {
    QFETCH(QSizeF, size);
    QFETCH(double, rotation);
    QFETCH(QStringList, texts);
    std::unique_ptr<RectangleItem> item(generated(QRectF(QPointF(10, 10), size)));
    item->rotate(rotation);
    QMenu menu;
    item->fillEditMenu(&menu);
    QCOMPARE(menuTexts(menu), texts);
}

void TestRectangles::transformChoicesAreAnnounced() {
    std::unique_ptr<RectangleItem> item(generated(QRectF(10, 10, 40, 20)));
    QSignalSpy spy(item.get(), qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
    const QList<QPair<QString, int>> choices{
        {"toInCircle", 8200}, {"pixmapMatching", 24608}, {"transfert2PixMap", 4608}, {"none", -1}};
    for (const auto& [text, index] : choices) {
        QVERIFY(chooseInMenu(
            text, [&](QMenu* m) { item->fillEditMenu(m); }, [&](int d) { item->applyEditMenu(d); }));
        QCOMPARE(item->transformIndex(), index);
        QCOMPARE(spy.takeFirst(), (QVariantList{QVariant::fromValue<void*>(item.get()), index, false}));
    }
}

void TestRectangles::snapshotsCopyTheSelection() {
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(v.draw("RectangleItem", QPointF(20, 30), QPointF(60, 50)));
    QSignalSpy spy(item, &AbstractBaseItem::itemChanged);
    QMenu bare;
    item->fillEditMenu(&bare);
    QVERIFY(!findAction(bare, "snapImageSelection...")->isEnabled());
    item->applyEditMenu(RectangleItem::SnapImage);
    QCOMPARE(spy.count(), 0);

    QImage image(100, 80, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 2, y * 3, 90));
    v.scene.setImage(image);
    QVERIFY(chooseInMenu(
        "snapImageSelection...", [&](QMenu* m) { item->fillEditMenu(m); },
        [&](int d) { item->applyEditMenu(d); }));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy[0][1].toString(), QString("snapImageSelection"));
    QCOMPARE(QGuiApplication::clipboard()->image(), image.copy(20, 30, 40, 20));

    QObject::connect(item, &AbstractBaseItem::itemChanged, [&](void*, QString what, void* data) {
        QCOMPARE(what, QString("snapPixMapSelection"));
        const QImage rendered = *static_cast<QImage*>(data);
        QCOMPARE(rendered.size(), QSize(40, 20));
        // Inside the outline the scene shows its image.
        QCOMPARE(rendered.pixel(10, 10), image.pixel(30, 40));
    });
    item->applyEditMenu(RectangleItem::SnapPixmap);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(QGuiApplication::clipboard()->pixmap().size(), QSize(40, 20));
}

void TestRectangles::generatedFromARecord() {
    _AUTOPOINTPARAMS params;
    params.points = {QPointF(40, 50), QPointF(10, 20)};
    RectangleItem item(nullptr, 0, &params);
    QVERIFY(item.generated());
    QCOMPARE(item.rect(), QRectF(10, 20, 30, 30));
    QCOMPARE(item.accessmesureP(6), 120.0);
    // Measures supplied by a source item are kept.
    std::unique_ptr<RectangleItem> fromSource(generated(QRectF(0, 0, 4, 4), &item));
    QCOMPARE(fromSource->accessmesureP(6), 120.0);
}

void TestRectangles::xmlRoundTrip_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QPointF>("pos");
    QTest::addColumn<double>("rotation");
    QTest::newRow("rectangle") << "RectangleItem" << QPointF() << 0.0;
    QTest::newRow("rectangle moved and rotated") << "RectangleItem" << QPointF(12.5, -3) << 30.04;
    QTest::newRow("feret moved") << "RectangleItemFeret" << QPointF(7, 9) << 0.0;
}

void TestRectangles::xmlRoundTrip() {
    QFETCH(QString, className);
    QFETCH(QPointF, pos);
    QFETCH(double, rotation);
    DrawingView v;
    auto* item = qobject_cast<RectangleItem*>(v.draw(className, QPointF(50, 80), QPointF(150, 140), 0.5));
    item->rotate(rotation);
    item->setPos(item->pos() + pos);
    checkXmlRoundTrip(item);
    QCOMPARE(saved(item).attribute("rotation"), QString::number(rotation, 'f', 1));
    QCOMPARE(saved(item).attribute("rect"), QString("50x80 100x60"));
}

void TestRectangles::calibrationRectangleIsNotSaved() {
    DrawingView v;
    AbstractBaseItem* item = v.draw("RectCalibItem", QPointF(50, 80), QPointF(150, 140));
    QVERIFY(saved(item).attributes().isEmpty());
    checkXmlRoundTrip(item);
}

QTEST_MAIN(TestRectangles)
#include "tst_rectangles.moc"
