// One of each item on one scene: drawn with the mouse, linked, saved, rendered and exported.
#include "DataColumns.h"
#include "DrawingView.h"
#include "DxfReadBack.h"
#include "ItemRegistry.h"
#include "RectangleItem.h"
#include "SceneDocument.h"
#include "Tools2DXF.h"
#include "VickersPItem.h"
#include "eTextItem.h"

#include <QApplication>
#include <QBuffer>
#include <QGraphicsSceneContextMenuEvent>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>

#include <cmath>

namespace {

QByteArray documentOf(SceneDocument& document, AbstractScene* scene) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return document.write(&buffer, scene) ? bytes : QByteArray();
}

} // namespace

class TestItemScene : public QObject {
    Q_OBJECT
private slots:
    void oneOfEachItem() {
        DrawingView v;
        v.view.setFixedSize(820, 620);
        v.scene.setSceneRect(0, 0, 800, 600);
        QImage background(800, 600, QImage::Format_RGB32);
        background.fill(qRgb(180, 180, 170));
        v.scene.setImage(background);
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
        AbstractBaseItem* vickers = v.click("VickersPItem", {{700, 260}, {760, 320}, {700, 380}, {640, 320}});
        QVERIFY(vickers);
        QPointer<AbstractBaseItem> text = v.click("eTextItem", {{170, 520}});
        QVERIFY(text);
        text->associate(line, nullptr);
        QCOMPARE(accepted.count(), 10);

        v.scene.clearSelection();
        circle->forceSelection();
        QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&picture);
        v.scene.render(&painter, QRectF(0, 0, 800, 600), QRectF(0, 0, 800, 600));
        painter.end();
        // Every item left ink of its own over the plain background.
        for (QGraphicsItem* item : v.scene.items()) {
            AbstractBaseItem* tool = AbstractBaseItem::fromGraphicsItem(item);
            if (!tool || !tool->isVisible())
                continue;
            const QRect area = tool->sceneBoundingRect().toAlignedRect().intersected(picture.rect());
            const QImage plain =
                v.scene.image().copy(area).convertToFormat(QImage::Format_ARGB32_Premultiplied);
            QVERIFY2(picture.copy(area) != plain, qPrintable(tool->getType()));
        }
    }

    void linkedTextFollowsALineDraggedByItsHandgrip() {
        DrawingView v;
        QPointer<AbstractBaseItem> line = v.draw("LineItem", {50, 50}, {150, 50}, 0.5);
        QPointer<eTextItem> text = static_cast<eTextItem*>(v.click("eTextItem", {{200, 200}}));
        QVERIFY(line && text);
        text->associate(line, nullptr);
        QCOMPARE(text->text(), QString("LineItem0 dist1:50.00 mm"));
        line->forceSelection();
        v.dragGrip(line, 1, {250, 50});
        QCOMPARE(text->text(), QString("LineItem0 dist1:100.00 mm"));
        // The text outlives its source and keeps its last words.
        delete line;
        QVERIFY(text);
        QCOMPARE(text->linkedItem(), nullptr);
        QVERIFY(text->getLinkName().isEmpty());
        QCOMPARE(text->text(), QString("LineItem0 dist1:100.00 mm"));
    }

    // One calibration on the scene: every measure, label and linked text follows, and so do the items
    // drawn afterwards.
    void sceneCalibrationReachesEveryItem() {
        DrawingView v;
        AbstractBaseItem* line = v.draw("LineItem", {50, 50}, {150, 50});
        AbstractBaseItem* circle = v.draw("CircleItem", {200, 150}, {210, 150});
        auto* vickers = qgraphicsitem_cast<VickersPItem*>(
            v.click("VickersPItem", {{300, 100}, {340, 140}, {300, 180}, {260, 140}}));
        auto* text = qgraphicsitem_cast<eTextItem*>(v.click("eTextItem", {{100, 250}}));
        QVERIFY(line && circle && vickers && text);
        text->associate(line, nullptr);
        QSignalSpy lineEnd(line, &AbstractBaseItem::mesureChangedEND);

        const Calibration micrometres = calibration(0.5, "µm");
        v.scene.setCalibration(micrometres);
        QCOMPARE(line->label()->text(), QString("dist1:50.00*µm"));
        QCOMPARE(lineEnd.count(), 1);
        QCOMPARE(text->text(), QString("LineItem0 dist1:50.00 µm"));
        QCOMPARE(circle->accessmesure(AbstractBaseItem::Aera), M_PI * 25);
        QCOMPARE(vickers->accessmesure(VickersPItem::DiagonalSlot1), 40.0);
        QCOMPARE(vickers->label()->text(), vickers->slotText(VickersPItem::HardnessSlot));

        v.scene.setCalibration(micrometres);
        QCOMPARE(lineEnd.count(), 1);
        AbstractBaseItem* later = v.draw("LineItem", {50, 100}, {90, 100});
        QCOMPARE(later->label()->text(), QString("dist1:20.00*µm"));
    }

    void xmlRoundTrip_data() {
        // points: two are dragged, more are clicked
        // expected: once moved by (13.5, -7)
        addColumns<QString, QList<QPointF>, QString, double, Attributes>("className", "points", "choice",
                                                                         "rotation", "expected");
        const QList<QPointF> drag{{50, 80}, {150, 140}};
        QTest::newRow("line: moved points saved") << "LineItem" << drag << "ArrowTail" << 0.0
                                                  << Attributes{{"start", "63.5x73"}, {"arrowTail", "1"}};
        QTest::newRow("arrow") << "ArrowItem" << drag << "" << 0.0 << Attributes{{"end", "163.5x133"}};
        // The press lays the corner 88 pixels up and left of itself; the drag moves the other one.
        QTest::newRow("block arrow") << "Arrow2Item" << drag << "dblarrow" << 0.0
                                     << Attributes{{"begin", "-38x-8"}, {"end", "150x140"}, {"form", "1"}};
        QTest::newRow("ruler") << "RulerItem" << QList<QPointF>{{50, 60}, {50, 60}} << "" << 0.0
                               << Attributes{{"rect", "50x42 200x36"}};
        QTest::newRow("rectangle, rotation to a tenth")
            << "RectangleItem" << drag << "" << 30.04
            << Attributes{{"rect", "50x80 100x60"}, {"rotation", "30.0"}};
        QTest::newRow("feret") << "RectangleItemFeret" << drag << "" << 0.0
                               << Attributes{{"rect", "50x80 100x60"}};
        QTest::newRow("calibration, not saved") << "RectCalibItem" << drag << "" << 0.0 << Attributes{};
        QTest::newRow("circle") << "CircleItem" << QList<QPointF>{{100, 100}, {110, 100}} << "Distance" << 0.0
                                << Attributes{
                                       {"radius1", "10.00"}, {"rect", "90x90 20x20"}, {"pos", "13.5x-7"}};
        QTest::newRow("vickers") << "VickersPItem"
                                 << QList<QPointF>{{150, 90}, {190, 150}, {150, 210}, {110, 150}}
                                 << "Std Precision" << 0.0
                                 << Attributes{{"coords", "163.5x83;203.5x143;163.5x203;123.5x143;"}};
        QTest::newRow("text") << "eTextItem" << QList<QPointF>{{150, 90}} << "" << -12.5
                              << Attributes{{"text", "Grain 3"}};
    }

    void xmlRoundTrip() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(QString, choice);
        QFETCH(double, rotation);
        QFETCH(Attributes, expected);
        DrawingView v;
        AbstractBaseItem* item =
            points.size() == 2 ? v.draw(className, points[0], points[1], 0.5) : v.click(className, points);
        QVERIFY(item);
        if (className == "eTextItem")
            QTest::keyClicks(v.view.viewport(), QStringLiteral("Grain 3"));
        QVERIFY(choice.isEmpty() || choose(item, choice));
        item->setPen(QPen(QColor(10, 200, 30), 2, Qt::DashLine));
        item->rotate(rotation);
        checkXmlRoundTrip(item);
        item->setPos(item->pos() + QPointF(13.5, -7));
        checkXmlRoundTrip(item);
        const Attributes attributes = saved(item);
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QCOMPARE(it.key() + "=" + attributes.value(it.key()), it.key() + "=" + it.value());
        QCOMPARE(attributes.isEmpty(), expected.isEmpty());
        // The loaded item stands where the saved one stood, but for the rotation kept to a tenth of a degree.
        const std::unique_ptr<AbstractBaseItem> back = loaded(className, attributes);
        QCOMPARE(back->handgripItems().size(), item->handgripItems().size());
        for (int i = 0; !expected.isEmpty() && i < item->handgripItems().size(); ++i)
            QVERIFY(
                QLineF(back->handgripItems()[i]->scenePos(), item->handgripItems()[i]->scenePos()).length() <
                0.1);
    }

    // A preview opens its context menu unless it is a circle or an arrow; of the edit menus, only the
    // circle's opens.
    void menusOfPreviews_data() {
        addColumns<QString, bool, bool>("className", "contextMenu", "editMenu");
        QTest::newRow("line") << "LineItem" << true << false;
        QTest::newRow("ruler") << "RulerItem" << true << false;
        QTest::newRow("rectangle: measures, not transforms") << "RectangleItem" << true << false;
        QTest::newRow("circle: transforms, not measures") << "CircleItem" << false << true;
        QTest::newRow("arrow") << "ArrowItem" << false << false;
        QTest::newRow("block arrow") << "Arrow2Item" << false << false;
    }

    void menusOfPreviews() {
        QFETCH(QString, className);
        QFETCH(bool, contextMenu);
        QFETCH(bool, editMenu);
        DrawingView v;
        AbstractBaseItem* item = v.draw(className, {100, 100}, {160, 140});
        QVERIFY(item);
        item->setPreviewstate(true);
        bool opened = false;
        const auto closeMenu = [&opened] {
            if (QWidget* popup = QApplication::activePopupWidget()) {
                opened = true;
                popup->close();
            }
        };
        QTimer::singleShot(50, closeMenu);
        QGraphicsSceneContextMenuEvent event(QEvent::GraphicsSceneContextMenu);
        event.setScenePos(item->sceneBoundingRect().center());
        v.scene.sendEvent(item, &event);
        QCOMPARE(opened, contextMenu);
        opened = false;
        QTimer::singleShot(50, closeMenu);
        item->edit();
        QCOMPARE(opened, editMenu);
    }

    // Every class the factories build, found through the registry and drawn: its type and its XML round trip.
    void everyBuiltClassDrawsAndRoundTrips_data() {
        QTest::addColumn<QString>("className");
        QTest::addColumn<int>("seed");
        for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
            for (int seed = 0; row.construct && seed < 3; ++seed)
                QTest::addRow("%s, seed %d", row.className, seed) << QString(row.className) << seed;
        }
    }

    void everyBuiltClassDrawsAndRoundTrips() {
        QFETCH(QString, className);
        QFETCH(int, seed);
        DrawingView v;
        QPointer<AbstractBaseItem> item = v.drawAny(className, seed);
        QVERIFY(item);
        QVERIFY(!v.scene.itemInCreation());
        QCOMPARE(item->type(), ItemRegistry::find(className)->type);
        checkXmlRoundTrip(item);
        // A scene document reads it back as it was saved.
        SceneDocument document;
        const QByteArray bytes = documentOf(document, &v.scene);
        AbstractScene reopened(v.scene.sceneRect());
        QBuffer in;
        in.setData(bytes);
        in.open(QIODevice::ReadOnly);
        QVERIFY2(document.read(&in, &reopened), qPrintable(document.errorString()));
        QCOMPARE(documentOf(document, &reopened), bytes);
        // Loaded on the same scene, with the same calibration, an item holds the measures that were
        // saved (a calibration rectangle keeps nothing).
        const Attributes attributes = saved(item);
        if (attributes.isEmpty())
            return;
        const std::unique_ptr<AbstractBaseItem> back = loaded(className, attributes);
        v.scene.addItem(back.get());
        back->setCalibration(item->calibration());
        for (unsigned i = 0; i < unsigned(item->maxMesuresNum()); ++i) {
            const double a = item->accessmesure(i), b = back->accessmesure(i);
            QVERIFY2(a == b || std::abs(a - b) <= 1e-12 * std::abs(a), qPrintable(QString::number(i)));
        }
    }

    void badXmlNeverCrashes_data() { builtClasses(); }

    void badXmlNeverCrashes() {
        QFETCH(QString, className);
        Attributes bad{{"rotation", "nan"},       {"arrowFactor", "2147483647"}, {"arrowHead", "1"},
                       {"radius1", "inf"},        {"font-size", "-3"},           {"alpha", "999"},
                       {"coords", "1x1;nanxinf;"}};
        for (const char* key :
             {"start", "end", "begin", "rect", "pos", "form", "centroid", "color", "textPos"})
            bad.insert(key, "nanxinf 1e999");
        DrawingView v;
        for (const Attributes& attributes : {Attributes{}, bad}) {
            std::unique_ptr<AbstractBaseItem> item = loaded(className, attributes);
            QVERIFY(item);
            v.scene.addItem(item.get());
            QImage image(100, 100, QImage::Format_RGB32);
            QPainter painter(&image);
            v.scene.render(&painter);
            painter.end();
            saved(item.get());
            v.scene.removeItem(item.get());
        }
    }

    // Every class drawn on one scene: a strict reader takes the drawing as it is, and the entities that
    // only some families write (arcs, ellipses, splines, fills, pictures, dashed constructions) are there.
    void everyBuiltClassExportsToDxf() {
        DrawingView v;
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(qRgb(180, 180, 170));
        v.scene.setImage(image);
        for (const ItemRegistry::Row& row : ItemRegistry::rows()) {
            if (row.construct)
                QVERIFY2(v.drawAny(row.className), row.className);
        }
        QTemporaryDir dir;
        const QString dxf = dir.filePath(QStringLiteral("every.dxf"));
        QCOMPARE(tools2DXF(dxf, &v.scene), 0);
        const QJsonObject report = readBackDxf(dxf);
        QVERIFY(dxfTakenAsItIs(report));
        const QMap<QString, int> types = dxfEntityTypes(report);
        for (const char* type :
             {"LINE", "LWPOLYLINE", "TEXT", "CIRCLE", "ARC", "ELLIPSE", "SPLINE", "HATCH", "IMAGE"})
            QVERIFY2(types.contains(type), type);
        QSet<QString> linetypes;
        for (const QJsonValue& e : report["entities"].toArray())
            linetypes.insert(e["linetype"].toString());
        QVERIFY(linetypes.contains("DASHED"));
    }
};

QTEST_MAIN(TestItemScene)
#include "tst_itemscene.moc"
