// The construction measures: closed-form results on hand-made scenes, picking with the mouse,
// following and losing sources, links through save and load, bad input and the DXF export.
#include "AnchorPointItem.h"
#include "ConstructionItem.h"
#include "DrawingView.h"
#include "ItemLinks.h"
#include "ItemTypes.h"
#include "PlacedItems.h"
#include "Tools2DXF.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>

using K = AbstractBaseItem::MesureKind;

namespace {

ConstructionItem* asConstruction(AbstractBaseItem* item) {
    return qobject_cast<ConstructionItem*>(item);
}

// Linked constructions go once control is back in the event loop.
void runDeferredDeletes() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool near(double a, double b) {
    return std::abs(a - b) < 1e-4;
}

QString allMesures(const AbstractBaseItem* item) {
    QStringList values;
    for (unsigned i = 0; i < 12; ++i)
        values << QString::number(item->accessmesure(i));
    return values.join(' ');
}

} // namespace

class TestConstructions : public QObject {
    Q_OBJECT
private slots:
    void closedForm_data();
    void closedForm();
    void badInput_data();
    void badInput();
    void pickingWithTheMouse_data();
    void pickingWithTheMouse();
    void pickingProtocol();
    void followsItsSources_data();
    void followsItsSources();
    void savedSceneReloadsWithAllLinks();
    void missingSourceIsReportedAndSkipped();
    void dxfOfEachConstruction();
};

void TestConstructions::closedForm_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QStringList>("sources");
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("value");
    QTest::addColumn<QPointF>("firstPoint"); // the first result point, when checked
    const QPointF any(-1, -1);
    QTest::newRow("distance point-line y=10") << "Distance" << QStringList{"point 0 0", "line -50 10 50 10"}
                                              << int(K::Dist1) << 10.0 << QPointF(0, 0);
    QTest::newRow("distance point-point")
        << "Distance" << QStringList{"point 10 10", "point 13 14"} << int(K::Dist1) << 5.0 << any;
    QTest::newRow("distance parallel lines")
        << "Distance" << QStringList{"line 0 0 100 0", "line 20 7 60 7"} << int(K::Dist1) << 7.0 << any;
    QTest::newRow("distance skew segments") << "Distance" << QStringList{"line 0 0 10 0", "line 20 5 20 40"}
                                            << int(K::Dist1) << std::sqrt(125.0) << QPointF(10, 0);
    QTest::newRow("distance circles: centres")
        << "Distance" << QStringList{"circle 50 50 10", "circle 80 50 5"} << int(K::Dist1) << 30.0 << any;
    QTest::newRow("distance circles: gap")
        << "Distance" << QStringList{"circle 50 50 10", "circle 80 50 5"} << int(K::Dist2) << 15.0 << any;
    QTest::newRow("distance circles: overlap is negative")
        << "Distance" << QStringList{"circle 50 50 10", "circle 62 50 5"} << int(K::Dist2) << -3.0 << any;
    QTest::newRow("distance point-circle outline")
        << "Distance" << QStringList{"point 80 50", "circle 50 50 10"} << int(K::Dist2) << 20.0 << any;
    QTest::newRow("angle between the axes") << "Angle" << QStringList{"line 0 0 100 0", "line 0 0 0 100"}
                                            << int(K::Ang1) << 90.0 << QPointF(0, 0);
    QTest::newRow("angle 45, its supplement")
        << "Angle" << QStringList{"line 0 0 100 0", "line 0 0 100 100"} << int(K::Ang2) << 135.0 << any;
    QTest::newRow("angle of parallel lines")
        << "Angle" << QStringList{"line 0 0 100 0", "line 0 20 100 20"} << int(K::Ang1) << 0.0 << any;
    QTest::newRow("angle to a guide and a rectangle side")
        << "Angle" << QStringList{"vguide 30 30", "rect 0 0 100 50"} << int(K::Ang1) << 90.0
        << QPointF(30, 0);
    QTest::newRow("circle through three centroids")
        << "Circle3" << QStringList{"point 0 0", "point 10 0", "point 0 10"} << int(K::Rad1)
        << std::sqrt(50.0) << QPointF(5, 5);
    QTest::newRow("circle through three circles' centres")
        << "Circle3" << QStringList{"circle 100 100 5", "circle 140 100 5", "circle 100 140 5"}
        << int(K::Diam) << std::sqrt(3200.0) << QPointF(120, 120);
    QTest::newRow("projection on y=10") << "Projection" << QStringList{"point 0 0", "line -50 10 50 10"}
                                        << int(K::Dist1) << 10.0 << QPointF(0, 10);
    QTest::newRow("projection beyond a vertical segment")
        << "Projection" << QStringList{"point 0 50", "line 100 0 100 20"} << int(K::Dist1) << 100.0 << any;
    QTest::newRow("intersection of lines")
        << "Intersection" << QStringList{"line 0 50 100 50", "line 50 0 50 100"} << int(K::Ang1) << 90.0
        << QPointF(50, 50);
    QTest::newRow("intersection line-circle")
        << "Intersection" << QStringList{"line 0 50 100 50", "circle 50 50 10"} << int(K::Dist1) << 20.0
        << any;
    QTest::newRow("intersection of circles")
        << "Intersection" << QStringList{"circle 50 50 10", "circle 60 50 10"} << int(K::Dist1)
        << 2 * std::sqrt(75.0) << any;
    // The library's line-circle crossing takes a point at (0, 0) for no point.
    QTest::newRow("intersection at the origin is not reported")
        << "Intersection" << QStringList{"line -20 0 40 0", "circle 10 0 10"} << int(K::Cust) << 1.0
        << QPointF(20, 0);
    QTest::newRow("intersection line-ellipse")
        << "Intersection" << QStringList{"line -10 25 110 25", "ellipse 0 0 100 50"} << int(K::Dist1) << 100.0
        << any;
    QTest::newRow("intersection of ellipses: four points")
        << "Intersection" << QStringList{"ellipse 0 0 100 50", "ellipse 25 -25 50 100"} << int(K::Cust) << 4.0
        << any;
    QTest::newRow("tangents from a point")
        << "Tangent" << QStringList{"point 0 50", "circle 100 50 60"} << int(K::Dist2) << 80.0 << any;
    QTest::newRow("tangents of two circles: outer")
        << "Tangent" << QStringList{"circle 50 50 10", "circle 80 50 10"} << int(K::Dist1) << 30.0 << any;
    QTest::newRow("tangents of two circles: inner")
        << "Tangent" << QStringList{"circle 50 50 10", "circle 80 50 10"} << int(K::Dist2) << std::sqrt(500.0)
        << any;
}

void TestConstructions::closedForm() {
    QFETCH(QString, className);
    QFETCH(QStringList, sources);
    QFETCH(int, kind);
    QFETCH(double, value);
    QFETCH(QPointF, firstPoint);
    AbstractScene scene(QRectF(-100, -100, 400, 300));
    auto* item = asConstruction(construction(scene, className));
    QVERIFY(item);
    QVERIFY2(item->computeMesures(placeAll(scene, sources), nullptr), qPrintable(item->lastRefusal()));
    QVERIFY2(item->hasResult(), qPrintable(item->problem()));
    QVERIFY2(near(item->accessmesure(unsigned(kind)), value), qPrintable(allMesures(item)));
    if (firstPoint != QPointF(-1, -1))
        QVERIFY(QLineF(item->resultPoints().value(0), firstPoint).length() < 1e-3);
    // Loaded alone it keeps what it measured; a copy follows the same sources.
    checkXmlRoundTrip(item);
    const std::unique_ptr<AbstractBaseItem> copy(item->clone(5));
    QCOMPARE(asConstruction(copy.get())->sources(), item->sources());
    // Calibrated like every measure: lengths by the factor, angles and counts as they are.
    Calibration calibration;
    calibration.factor = 0.5;
    item->setCalibration(calibration);
    const bool length = kind == K::Dist1 || kind == K::Dist2 || kind == K::Rad1 || kind == K::Diam;
    QVERIFY(near(item->accessmesure(unsigned(kind)), length ? value / 2 : value));
}

// A list the measure cannot use is refused as a whole; a usable list without a result leaves zero
// measures and the reason in the label, and nothing unreadable in the XML.
void TestConstructions::badInput_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QStringList>("sources"); // "same" repeats the item before
    QTest::addColumn<bool>("refused");
    QTest::newRow("one item for two") << "Distance" << QStringList{"point 0 0"} << true;
    QTest::newRow("the same item twice") << "Distance" << QStringList{"line 0 0 10 0", "same"} << true;
    QTest::newRow("angle with a point") << "Angle" << QStringList{"point 0 0", "line 0 0 10 0"} << true;
    QTest::newRow("projection on a circle")
        << "Projection" << QStringList{"point 0 0", "circle 50 50 10"} << true;
    QTest::newRow("intersection with a point")
        << "Intersection" << QStringList{"point 5 5", "circle 50 50 10"} << true;
    QTest::newRow("tangent without a circle")
        << "Tangent" << QStringList{"point 5 5", "line 0 0 9 9"} << true;
    QTest::newRow("parallel lines") << "Intersection" << QStringList{"line 0 0 100 0", "line 0 10 100 10"}
                                    << false;
    QTest::newRow("coincident lines")
        << "Intersection" << QStringList{"line 0 0 100 0", "line 20 0 70 0"} << false;
    QTest::newRow("line missing the circle")
        << "Intersection" << QStringList{"line 0 0 100 0", "circle 50 50 10"} << false;
    QTest::newRow("concentric circles crossing")
        << "Intersection" << QStringList{"circle 50 50 10", "circle 50 50 20"} << false;
    QTest::newRow("concentric circles' tangents")
        << "Tangent" << QStringList{"circle 50 50 10", "circle 50 50 20"} << false;
    QTest::newRow("a circle inside the other")
        << "Tangent" << QStringList{"circle 50 50 30", "circle 55 50 5"} << false;
    QTest::newRow("point inside the circle")
        << "Tangent" << QStringList{"point 55 50", "circle 50 50 20"} << false;
    QTest::newRow("three centres on a line")
        << "Circle3" << QStringList{"point 0 0", "point 10 10", "point 30 30"} << false;
    QTest::newRow("two centres in one place")
        << "Circle3" << QStringList{"point 0 0", "point 0 0", "point 30 0"} << false;
}

void TestConstructions::badInput() {
    QFETCH(QString, className);
    QFETCH(QStringList, sources);
    QFETCH(bool, refused);
    AbstractScene scene(QRectF(0, 0, 200, 200));
    auto* item = asConstruction(construction(scene, className));
    QList<AbstractBaseItem*> items;
    for (const QString& source : sources)
        items << (source == "same" ? items.last() : place(scene, source));
    QCOMPARE(item->computeMesures(items, nullptr), !refused);
    QCOMPARE(item->lastRefusal().isEmpty(), !refused);
    QCOMPARE(item->sources().size(), refused ? 0 : items.size());
    QVERIFY(!item->hasResult());
    if (!refused)
        QCOMPARE(item->label()->text(), item->problem());
    QCOMPARE(allMesures(item), allMesures(construction(scene, className)));
    const Attributes attributes = saved(item);
    for (const QString& value : attributes)
        QVERIFY2(!value.contains("nan", Qt::CaseInsensitive) && !value.contains("inf"), qPrintable(value));
}

void TestConstructions::pickingWithTheMouse_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QStringList>("sources");
    QTest::addColumn<QList<QPointF>>("clicks");
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("value");
    QTest::newRow("distance") << "Distance" << QStringList{"point 100 100", "line 50 150 250 150"}
                              << QList<QPointF>{{100, 100}, {200, 150}} << int(K::Dist1) << 50.0;
    QTest::newRow("angle") << "Angle" << QStringList{"line 50 50 250 50", "line 50 50 250 250"}
                           << QList<QPointF>{{200, 50}, {200, 200}} << int(K::Ang1) << 45.0;
    // The click chooses the side: the right one is perpendicular to the line, the top one parallel.
    QTest::newRow("angle to the clicked side: right")
        << "Angle" << QStringList{"rect 100 100 100 60", "line 20 250 380 250"}
        << QList<QPointF>{{200, 130}, {300, 250}} << int(K::Ang1) << 90.0;
    QTest::newRow("angle to the clicked side: top")
        << "Angle" << QStringList{"rect 100 100 100 60", "line 20 250 380 250"}
        << QList<QPointF>{{150, 100}, {300, 250}} << int(K::Ang1) << 0.0;
    QTest::newRow("circle3") << "Circle3" << QStringList{"point 100 100", "point 200 100", "point 100 200"}
                             << QList<QPointF>{{100, 100}, {200, 100}, {100, 200}} << int(K::Rad1)
                             << std::sqrt(5000.0);
    QTest::newRow("projection") << "Projection" << QStringList{"circle 100 60 10", "line 50 150 250 150"}
                                << QList<QPointF>{{100, 60}, {220, 150}} << int(K::Dist1) << 90.0;
    QTest::newRow("intersection") << "Intersection" << QStringList{"line 50 100 250 100", "circle 150 100 40"}
                                  << QList<QPointF>{{80, 100}, {150, 120}} << int(K::Dist1) << 80.0;
    QTest::newRow("tangent") << "Tangent" << QStringList{"point 60 100", "circle 260 100 120"}
                             << QList<QPointF>{{60, 100}, {260, 100}} << int(K::Dist1) << 160.0;
}

void TestConstructions::pickingWithTheMouse() {
    QFETCH(QString, className);
    QFETCH(QStringList, sources);
    QFETCH(QList<QPointF>, clicks);
    QFETCH(int, kind);
    QFETCH(double, value);
    DrawingView v;
    QVERIFY(v.exposed);
    const QList<AbstractBaseItem*> items = placeAll(v.scene, sources);
    QSignalSpy accepted(&v.scene, &AbstractScene::itemAccepted);
    QSignalSpy refused(&v.scene, &AbstractScene::pickRefused);
    QPointer<ConstructionItem> item = asConstruction(startTool(&v.scene, className));
    QVERIFY(item);
    for (int i = 0; i < clicks.size(); ++i) {
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(clicks[i]));
        QCOMPARE(accepted.count(), i + 1 == clicks.size() ? 1 : 0);
        // The picks are shown selected until the construction is made.
        QCOMPARE(items[i]->isSelected(), i + 1 < clicks.size());
    }
    QCOMPARE(refused.count(), 0);
    QCOMPARE(item->sources(), items);
    QVERIFY(item->isSelected());
    QVERIFY2(near(item->accessmesure(unsigned(kind)), value), qPrintable(allMesures(item)));
}

// Refusals are announced with a reason; a source deleted mid-pick is a pick to make again; Return
// keeps a construction that lacks picks, marked; Escape discards it.
void TestConstructions::pickingProtocol() {
    DrawingView v;
    QVERIFY(v.exposed);
    QPointer<AbstractBaseItem> point = place(v.scene, "point 100 100");
    AbstractBaseItem* circle = place(v.scene, "circle 250 100 30");
    AbstractBaseItem* other = place(v.scene, "point 100 250");
    QSignalSpy refused(&v.scene, &AbstractScene::pickRefused);
    QSignalSpy rejected(&v.scene, &AbstractScene::itemRejected);
    auto click = [&v](const QPointF& p) {
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(p));
    };

    QPointer<ConstructionItem> tangent = asConstruction(startTool(&v.scene, "Tangent"));
    click({350, 250});
    click({100, 100});
    click({100, 100});
    click({100, 250});
    QCOMPARE(refused.count(), 3);
    QCOMPARE(refused.at(1).at(1).toString(), QString("This item is already picked"));
    QVERIFY(!refused.at(2).at(1).toString().isEmpty());
    QCOMPARE(tangent->sources(), QList<AbstractBaseItem*>{point});
    delete point;
    QCOMPARE(tangent->sources(), QList<AbstractBaseItem*>{});
    click({100, 250});
    click({250, 100});
    QVERIFY(!v.scene.itemInCreation());
    QCOMPARE(tangent->sources(), (QList<AbstractBaseItem*>{other, circle}));
    QVERIFY(tangent->hasResult());

    QPointer<ConstructionItem> early = asConstruction(startTool(&v.scene, "Distance"));
    click({250, 100});
    QTest::keyClick(v.view.viewport(), Qt::Key_Return);
    QVERIFY(early && !v.scene.itemInCreation());
    QCOMPARE(early->label()->text(), QString("1 of 2 items picked"));
    QPointer<AbstractBaseItem> cancelled = startTool(&v.scene, "Angle");
    QTest::keyClick(v.view.viewport(), Qt::Key_Escape);
    QVERIFY(!cancelled);
    QCOMPARE(rejected.count(), 1);
}

// Moving a source, with the mouse or by code, updates the measure; deleting one removes the
// construction, announced by objectDeleted.
void TestConstructions::followsItsSources_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QStringList>("sources");
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("after"); // once the first source is moved by (0, 30)
    QTest::newRow("distance") << "Distance" << QStringList{"point 100 100", "line 50 200 250 200"}
                              << int(K::Dist1) << 100.0 << 70.0;
    QTest::newRow("angle") << "Angle" << QStringList{"line 100 100 200 100", "line 100 100 100 200"}
                           << int(K::Ang1) << 90.0 << 90.0;
    QTest::newRow("circle3") << "Circle3" << QStringList{"point 100 100", "point 140 100", "point 100 140"}
                             << int(K::Rad1) << std::sqrt(800.0) << std::sqrt(1250.0);
    QTest::newRow("projection") << "Projection" << QStringList{"point 100 100", "line 50 200 250 200"}
                                << int(K::Dist1) << 100.0 << 70.0;
    QTest::newRow("intersection") << "Intersection" << QStringList{"line 50 100 250 100", "circle 150 120 40"}
                                  << int(K::Dist1) << 2 * std::sqrt(1200.0) << 2 * std::sqrt(1500.0);
    QTest::newRow("tangent") << "Tangent" << QStringList{"point 100 70", "circle 150 100 30"} << int(K::Dist1)
                             << 50.0 << 40.0;
}

void TestConstructions::followsItsSources() {
    QFETCH(QString, className);
    QFETCH(QStringList, sources);
    QFETCH(int, kind);
    QFETCH(double, before);
    QFETCH(double, after);
    DrawingView v;
    QVERIFY(v.exposed);
    const QList<AbstractBaseItem*> items = placeAll(v.scene, sources);
    QPointer<ConstructionItem> item = asConstruction(construction(v.scene, className));
    QVERIFY(item->computeMesures(items, nullptr));
    QVERIFY2(near(item->accessmesure(unsigned(kind)), before), qPrintable(allMesures(item)));
    QSignalSpy changed(item.data(), &AbstractBaseItem::mesureChanged);
    QSignalSpy deleted(item.data(), &AbstractBaseItem::objectDeleted);

    // A point is dragged by its grip with the mouse, a line moved by the host.
    if (items[0]->type() == ItemTypes::PointItem) {
        items[0]->forceSelection();
        v.dragGrip(items[0], 0, items[0]->scenePos() + QPointF(0, 30));
    } else {
        items[0]->setPos(items[0]->pos() + QPointF(0, 30));
    }
    QVERIFY(changed.count() > 0);
    QVERIFY2(near(item->accessmesure(unsigned(kind)), after), qPrintable(allMesures(item)));
    items[0]->setPos(items[0]->pos() - QPointF(0, 30));
    QVERIFY(near(item->accessmesure(unsigned(kind)), before));

    delete items.last();
    QCOMPARE(deleted.count(), 1);
    QCOMPARE(deleted.first().at(1).toString(), className);
    runDeferredDeletes();
    QVERIFY(!item);
}

// Every construction, an anchor with anchored items and a construction of a construction, saved
// and loaded onto another scene: every link comes back and still follows.
void TestConstructions::savedSceneReloadsWithAllLinks() {
    AbstractScene scene(QRectF(0, 0, 400, 300));
    const QList<AbstractBaseItem*> s =
        placeAll(scene, {"point 20 20", "line 10 100 300 100", "line 200 10 200 290", "circle 100 120 30",
                         "circle 180 200 20", "point 300 250", "point 350 250", "point 300 290"});
    const QList<std::pair<QString, QList<AbstractBaseItem*>>> made = {
        {"Distance", {s[0], s[1]}},   {"Angle", {s[1], s[2]}},        {"Circle3", {s[5], s[6], s[7]}},
        {"Projection", {s[0], s[2]}}, {"Intersection", {s[1], s[3]}}, {"Tangent", {s[0], s[3]}}};
    QList<AbstractBaseItem*> all = s;
    for (const auto& [className, sources] : made) {
        all << construction(scene, className);
        QVERIFY(all.last()->computeMesures(sources, nullptr));
    }
    AbstractBaseItem* chained = construction(scene, "Distance");
    QVERIFY(chained->computeMesures({all[s.size() + 2], s[4]}, nullptr));
    all << chained;
    auto* anchor = qobject_cast<AnchorPointItem*>(place(scene, "anchor 20 280"));
    QVERIFY(anchor->anchorItem(s[3]) && anchor->anchorItem(s[4]));
    all << anchor;

    AbstractScene reloaded(QRectF(0, 0, 400, 300));
    const QList<AbstractBaseItem*> back = loadedScene(reloaded, savedScene(all));
    QCOMPARE(back.size(), all.size());
    const ItemLinkReport report = linkLoadedItems(back);
    QCOMPARE(report.messages, QStringList());
    QVERIFY(report.skipped.isEmpty());
    for (int i = s.size(); i < all.size() - 1; ++i) {
        QList<AbstractBaseItem*> expected;
        for (AbstractBaseItem* source : asConstruction(all[i])->sources())
            expected << back[all.indexOf(source)];
        QCOMPARE(asConstruction(back[i])->sources(), expected);
        QCOMPARE(allMesures(back[i]), allMesures(all[i]));
    }
    auto* anchorBack = qobject_cast<AnchorPointItem*>(back.last());
    QCOMPARE(anchorBack->anchoredItems(), (QList<AbstractBaseItem*>{back[3], back[4]}));
    // Still live: the anchor carries the circle, the circles' distance and tangent follow.
    anchorBack->setPoint(anchorBack->point() + QPointF(10, 0));
    QCOMPARE(back[3]->mapToScene(back[3]->centroid()), QPointF(110, 120));
    QVERIFY(near(back[s.size() + 5]->accessmesure(K::Dist1), std::sqrt(17200.0)));
}

void TestConstructions::missingSourceIsReportedAndSkipped() {
    AbstractScene scene(QRectF(0, 0, 400, 300));
    const QList<AbstractBaseItem*> s = placeAll(scene, {"point 20 20", "line 10 100 300 100"});
    s[1]->setGUIDname("Edge A");
    AbstractBaseItem* distance = construction(scene, "Distance");
    QVERIFY(distance->computeMesures(s, nullptr));
    AbstractScene reloaded;
    QList<AbstractBaseItem*> back = loadedScene(reloaded, savedScene({s[0], distance}));
    const ItemLinkReport report = linkLoadedItems(back);
    QCOMPARE(report.skipped, QList<AbstractBaseItem*>{back[1]});
    QCOMPARE(report.messages, QStringList{"\"Distance0\": the item \"Edge A\" it refers to is missing"});
    QCOMPARE(back[1]->label()->text(), QString("A source is missing"));
    // Two items with one reference: links go to the first.
    back = loadedScene(reloaded, savedScene({s[0], s[0], distance, s[1]}));
    QCOMPARE(linkLoadedItems(back).messages.size(), 1);
    QCOMPARE(asConstruction(back[2])->sources(), (QList<AbstractBaseItem*>{back[0], back[3]}));
}

void TestConstructions::dxfOfEachConstruction() {
    AbstractScene scene(QRectF(0, 0, 400, 300));
    const QList<AbstractBaseItem*> s =
        placeAll(scene, {"point 20 20", "line 10 100 300 100", "line 200 10 200 290", "circle 100 120 30",
                         "point 300 250", "point 350 250", "point 300 290", "anchor 30 250", "hguide 0 150"});
    const QList<std::pair<QString, QList<AbstractBaseItem*>>> made = {
        {"Distance", {s[0], s[1]}},   {"Angle", {s[1], s[2]}},        {"Circle3", {s[4], s[5], s[6]}},
        {"Projection", {s[0], s[2]}}, {"Intersection", {s[1], s[3]}}, {"Tangent", {s[0], s[3]}}};
    for (const auto& [className, sources] : made)
        QVERIFY(construction(scene, className)->computeMesures(sources, nullptr));
    QTemporaryDir dir;
    const QString file = dir.filePath("constructions.dxf");
    QCOMPARE(tools2DXF(file, &scene), 0);
    QProcess python;
    python.start("/usr/bin/python3", {QStringLiteral(DXF_CHECKER), file});
    QVERIFY(python.waitForFinished(60000) && python.exitCode() == 0);
    const QJsonObject report = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    QCOMPARE(report["errors"].toArray(), QJsonArray());
    QCOMPARE(report["fixes"].toArray(), QJsonArray());
    QSet<QString> linetypes;
    for (const QJsonValue& e : report["entities"].toArray())
        linetypes.insert(e["linetype"].toString());
    QVERIFY(linetypes.contains("DASHED"));
}

QTEST_MAIN(TestConstructions)
#include "tst_constructions.moc"
