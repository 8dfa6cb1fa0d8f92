#include "CircleItem.h"
#include "DrawingView.h"

#include <cmath>

class TestCircle : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    void drawnCircle_data();
    void drawnCircle();
    void cornerGripsChangeOnlyTheRadius_data();
    void cornerGripsChangeOnlyTheRadius();
    void measureChoiceIsRemembered();
    void extractCutsOutTheCircle();
    void generatedFromARecordAndReloaded();
};

static std::unique_ptr<CircleItem> circle(QPointF centre, double radius, AbstractBaseItem* source = nullptr) {
    return generated<CircleItem>({source, {}, {}, centre, radius, 0, {}});
}

void TestCircle::drawnCircle_data() {
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("radius"); // 0: rejected
    QTest::addColumn<QString>("label");
    QTest::newRow("click without drag") << QPointF(100, 100) << 1.0 << 0.0 << "";
    QTest::newRow("r=5 rejected") << QPointF(103, 104) << 1.0 << 0.0 << "";
    QTest::newRow("r=8 accepted") << QPointF(108, 100) << 1.0 << 8.0 << "aera:201.06";
    // pi * (10 * 0.5)^2, not pi * 100 * 0.5.
    QTest::newRow("r=10 calibrated area") << QPointF(110, 100) << 0.5 << 10.0 << "aera:78.54";
}

void TestCircle::drawnCircle() {
    QFETCH(QPointF, to);
    QFETCH(double, factor);
    QFETCH(double, radius);
    QFETCH(QString, label);
    DrawingView v;
    AbstractBaseItem* item = v.draw("CircleItem", QPointF(100, 100), to, factor);
    QCOMPARE(bool(item), radius > 0);
    if (!item)
        return;
    const double r = radius, k = factor;
    QCOMPARE(item->mline(), (QList<QPointF>{QPointF(100 - r, 100 - r), QPointF(100 + r, 100 + r)}));
    // dist2, area, perimeter, both radii and the diameter: lengths scale by k, the area by k squared.
    const QList<double> pixels{2 * r, M_PI * r * r, 2 * M_PI * r, r, r, 2 * r};
    const QList<unsigned> kinds{2, 5, 6, 7, 8, 9};
    for (int i = 0; i < kinds.size(); ++i) {
        QCOMPARE(item->accessmesureP(kinds[i]), pixels[i]);
        QCOMPARE(item->accessmesure(kinds[i]), pixels[i] * (kinds[i] == 5 ? k * k : k));
    }
    QCOMPARE(item->label()->text(), label);
    // The release answers the edition mode, as the base does.
    QCOMPARE(item->mouseRelease(nullptr), item->modeEdition());
}

void TestCircle::cornerGripsChangeOnlyTheRadius_data() {
    QTest::addColumn<int>("grip");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("radius");
    // The circle: centre (100, 100), radius 10.
    QTest::newRow("bottom-right to 30.7 x 50, side truncated") << 7 << QPointF(120.7, 140) << 15.0;
    QTest::newRow("top-left inwards") << 0 << QPointF(94, 96) << 7.0;
    QTest::newRow("top-right") << 2 << QPointF(113, 85) << 11.5;
    QTest::newRow("bottom-left") << 5 << QPointF(80, 112.5) << 11.0;
    QTest::newRow("collapsed onto the facing corner") << 7 << QPointF(90, 90) << 0.0;
}

void TestCircle::cornerGripsChangeOnlyTheRadius() {
    QFETCH(int, grip);
    QFETCH(QPointF, to);
    QFETCH(double, radius);
    DrawingView v;
    v.zoom(QPointF(100, 100));
    auto* item = v.draw<CircleItem>(QPointF(100, 100), QPointF(110, 100));
    QVERIFY(item);
    v.view.centerOn((HoverEventItem::positionOnRect(item->rect(), grip) + to) / 2);
    EditSpy spy(item);
    v.dragGrip(item, grip, to);
    QCOMPARE(item->radius1(), radius);
    QCOMPARE(item->radius2(), radius);
    QCOMPARE(item->rect(), QRectF(100 - radius, 100 - radius, 2 * radius, 2 * radius));
    QCOMPARE(item->centroidPoint(), QPointF(100, 100));
    // A radius of 0 leaves the measures as they were.
    QCOMPARE(item->accessmesureP(9), radius > 0 ? 2 * radius : 20.0);
    for (HoverEventItem* h : item->handgripItems()) {
        QCOMPARE(h->scenePos(), HoverEventItem::positionOnRect(item->rect(), h->getId()));
        if (h->getId() == grip && radius > 0)
            QCOMPARE(h->tooltip(), " rad1:" + QString::number(radius, 'f', 2) + "*mm");
    }
    QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
}

void TestCircle::measureChoiceIsRemembered() {
    auto first = circle(QPointF(50, 50), 10);
    QSignalSpy changed(first.get(), &AbstractBaseItem::mesureChanged);
    QVERIFY(choose(first.get(), "Distance"));
    QCOMPARE(first->mesureIndex(), 9);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(getCommonParams("circle_mesureIndex", 0).toInt(), 9);
    DrawingView v;
    AbstractBaseItem* next = v.draw("CircleItem", QPointF(100, 100), QPointF(100, 112));
    QCOMPARE(next->label()->text(), QString("diam:24.00*mm"));
}

void TestCircle::extractCutsOutTheCircle() {
    DrawingView v;
    auto* item = v.draw<CircleItem>(QPointF(100, 100), QPointF(110, 100));
    QSignalSpy changed(item, &AbstractBaseItem::itemChanged);
    QSignalSpy transform(item, qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
    QMenu bare;
    QVERIFY(!menuOf(item, bare, true).value("extract")->isEnabled());

    QImage image(200, 150, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    v.scene.setImage(image);
    QImage extracted;
    QObject::connect(item, &AbstractBaseItem::itemChanged,
                     [&](void*, QString, void* data) { extracted = *static_cast<QImage*>(data); });
    QVERIFY(choose(item, "extract", true));
    QCOMPARE(changed.takeFirst()[1].toString(), QString("extract"));
    QCOMPARE(extracted.size(), QSize(20, 20));
    // Corners outside the circle are transparent; the pixels inside are the image's.
    QCOMPARE(qAlpha(extracted.pixel(0, 0)) + qAlpha(extracted.pixel(19, 19)), 0);
    QCOMPARE(extracted.pixel(0, 10), image.pixel(90, 100));
    QCOMPARE(item->transformIndex(), 254);
    QCOMPARE(transform.count(), 1);
    QVERIFY(choose(item, "none", true));
    QCOMPARE(item->transformIndex(), 0);
    QCOMPARE(transform.count(), 1);
}

void TestCircle::generatedFromARecordAndReloaded() {
    auto source = circle(QPointF(), 1);
    Calibration calibration;
    calibration.factor = 0.5;
    calibration.unitName = "um";
    source->setCalibration(calibration);
    auto item = circle(QPointF(50, 60), 12, source.get());
    QVERIFY(item->generated());
    QCOMPARE(item->rect(), QRectF(38, 48, 24, 24));
    QCOMPARE(item->accessmesure(7), 6.0);
    // The calibration block comes from the source, not its measures.
    QCOMPARE(item->calibration().unitName, QString("um"));
    // The second radius is not saved: recomputed before any edit, a loaded circle has none.
    std::unique_ptr<AbstractBaseItem> back = loaded("CircleItem", saved(item.get()));
    QCOMPARE(back->accessmesureP(8), 12.0);
    back->computeMesures(nullptr);
    QCOMPARE(back->accessmesureP(8), 0.0);
    QCOMPARE(back->accessmesureP(2), 0.0);
}

QTEST_MAIN(TestCircle)
#include "tst_circle.moc"
