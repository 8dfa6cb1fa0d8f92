// One of each item on one scene: drawn with the mouse, linked, rendered and exported.
#include "DrawingView.h"

#include "RectangleItem.h"

#include "Tools2DXF.h"
#include "eTextItem.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cmath>

namespace {

// A grey, grainy stand-in for a micrograph.
QImage micrograph(const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const int v = 170 + int(25 * std::sin(x / 37.0) * std::cos(y / 29.0)) + (x * 7 + y * 13) % 17;
            row[x] = qRgb(v, v, v - 10);
        }
    }
    return image;
}

QJsonObject readBackDxf(const QString& fileName) {
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(DXF_CHECKER), fileName});
    if (!python.waitForFinished(60000) || python.exitCode() != 0) {
        qWarning().noquote() << python.readAllStandardError();
        return {};
    }
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

} // namespace

class TestItemScene : public QObject {
    Q_OBJECT
private slots:
    void oneOfEachItem();
    void linkedTextFollowsALineDraggedByItsHandgrip();

private:
    AbstractBaseItem* click(DrawingView& v, const QString& className, const QList<QPointF>& points);
};

AbstractBaseItem* TestItemScene::click(DrawingView& v, const QString& className,
                                       const QList<QPointF>& points) {
    QPointer<AbstractBaseItem> item = v.scene.startTool(className);
    for (const QPointF& p : points)
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.view.mapFromScene(p));
    return item.data();
}

void TestItemScene::oneOfEachItem() {
    DrawingView v;
    QVERIFY(v.exposed);
    v.view.setFixedSize(820, 620);
    v.scene.setSceneRect(0, 0, 800, 600);
    v.scene.setImage(micrograph(QSize(800, 600)));
    QSignalSpy accepted(&v.scene, &AbstractScene::itemAccepted);

    AbstractBaseItem* line = v.draw("LineItem", {40, 60}, {300, 120}, 0.5);
    QVERIFY(choose(line, "ArrowBoth"));
    v.draw("RulerItem", {40, 200}, {40, 200}, 0.1);
    v.draw("ArrowItem", {360, 60}, {470, 130});
    v.draw("Arrow2Item", {560, 110}, {620, 180});
    auto* rect = static_cast<RectangleItem*>(v.draw("RectangleItem", {60, 300}, {220, 390}, 0.5));
    rect->rotate(20);
    v.draw("RectangleItemFeret", {260, 300}, {380, 350});
    v.draw("RectCalibItem", {260, 380}, {380, 440});
    AbstractBaseItem* circle = v.draw("CircleItem", {520, 380}, {580, 420}, 0.5);
    AbstractBaseItem* vickers = click(v, "VickersPItem", {{700, 260}, {760, 320}, {700, 380}, {640, 320}});
    QVERIFY(vickers);
    QPointer<AbstractBaseItem> text = click(v, "eTextItem", {{170, 520}});
    QVERIFY(text);
    text->associate(line, nullptr);
    QCOMPARE(accepted.count(), 10);
    QCOMPARE(v.scene.items().isEmpty(), false);

    v.scene.clearSelection();
    circle->forceSelection();
    QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    v.scene.render(&painter, QRectF(0, 0, 800, 600), QRectF(0, 0, 800, 600));
    painter.end();
    QVERIFY(picture.save(QStringLiteral("scene_of_each_item.png")));
    // Every item left ink of its own over the plain background.
    for (QGraphicsItem* item : v.scene.items()) {
        auto* tool = dynamic_cast<AbstractBaseItem*>(item);
        if (!tool || !tool->isVisible())
            continue;
        const QRect area = tool->sceneBoundingRect().toAlignedRect().intersected(picture.rect());
        const QImage plain = v.scene.image().copy(area).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QVERIFY2(picture.copy(area) != plain, qPrintable(tool->getType()));
    }

    QTemporaryDir dir;
    const QString dxf = dir.filePath(QStringLiteral("scene.dxf"));
    QCOMPARE(tools2DXF(dxf, &v.scene), 0);
    const QJsonObject report = readBackDxf(dxf);
    QCOMPARE(report["errors"].toArray(), QJsonArray());
    QCOMPARE(report["fixes"].toArray(), QJsonArray());
    QSet<QString> types;
    for (const QJsonValue& e : report["entities"].toArray())
        types.insert(e["type"].toString());
    for (const char* type : {"LINE", "LWPOLYLINE", "TEXT"})
        QVERIFY2(types.contains(type), type);
    QVERIFY(types.contains("CIRCLE") || types.contains("ELLIPSE"));
}

void TestItemScene::linkedTextFollowsALineDraggedByItsHandgrip() {
    DrawingView v;
    QVERIFY(v.exposed);
    QPointer<AbstractBaseItem> line = v.draw("LineItem", {50, 50}, {150, 50}, 0.5);
    QVERIFY(line);
    auto* text = static_cast<eTextItem*>(click(v, "eTextItem", {{200, 200}}));
    QVERIFY(text);
    text->associate(line, nullptr);
    QCOMPARE(text->text(), QString("LineItem0 dist1:50.00 mm"));

    line->forceSelection();
    v.dragGrip(line, 1, {250, 50});
    QCOMPARE(text->text(), QString("LineItem0 dist1:100.00 mm"));

    text->unassociate(line, nullptr);
    line->forceSelection();
    v.dragGrip(line, 1, {110, 50});
    QCOMPARE(line->accessmesure(AbstractBaseItem::Dist1), 30.0);
    QCOMPARE(text->text(), QString("LineItem0 dist1:100.00 mm"));

    text->associate(line, nullptr);
    QCOMPARE(text->text(), QString("LineItem0 dist1:30.00 mm"));
    delete line;
    QCOMPARE(text->linkedItem(), nullptr);
    QCOMPARE(text->text(), QString("LineItem0 dist1:30.00 mm"));
}

QTEST_MAIN(TestItemScene)
#include "tst_itemscene.moc"
