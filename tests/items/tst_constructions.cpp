// The construction measures: closed-form results on hand-made scenes, picking with the mouse,
// following and losing sources, links through save and load, and bad input.
#include "AnchorPointItem.h"
#include "ConstructionItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "ItemLinks.h"
#include "ItemTypes.h"
#include "PlacedItems.h"

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
    void closedForm_data() {
        // firstPoint: the first result point, when checked
        addColumns<QString, QStringList, int, double, QPointF>("className", "sources", "kind", "value",
                                                               "firstPoint");
        const auto row = [](const char* tag, const char* className, QStringList sources, int kind,
                            double value, QPointF firstPoint = {-1, -1}) {
            QTest::newRow(tag) << QString(className) << sources << kind << value << firstPoint;
        };
        row("distance point-line y=10", "Distance", {"point 0 0", "line -50 10 50 10"}, K::Dist1, 10, {0, 0});
        row("distance parallel lines", "Distance", {"line 0 0 100 0", "line 20 7 60 7"}, K::Dist1, 7);
        row("distance skew segments", "Distance", {"line 0 0 10 0", "line 20 5 20 40"}, K::Dist1,
            std::sqrt(125.0), {10, 0});
        row("distance circles: centres", "Distance", {"circle 50 50 10", "circle 80 50 5"}, K::Dist1, 30);
        row("distance circles: gap", "Distance", {"circle 50 50 10", "circle 80 50 5"}, K::Dist2, 15);
        row("distance circles: overlap is negative", "Distance", {"circle 50 50 10", "circle 62 50 5"},
            K::Dist2, -3);
        row("distance point-circle outline", "Distance", {"point 80 50", "circle 50 50 10"}, K::Dist2, 20);
        row("angle between the axes", "Angle", {"line 0 0 100 0", "line 0 0 0 100"}, K::Ang1, 90, {0, 0});
        row("angle 45, its supplement", "Angle", {"line 0 0 100 0", "line 0 0 100 100"}, K::Ang2, 135);
        row("angle of parallel lines", "Angle", {"line 0 0 100 0", "line 0 20 100 20"}, K::Ang1, 0);
        row("angle to a guide and a rectangle side", "Angle", {"vguide 30 30", "rect 0 0 100 50"}, K::Ang1,
            90, {30, 0});
        row("circle through three circles' centres", "Circle3",
            {"circle 100 100 5", "circle 140 100 5", "circle 100 140 5"}, K::Diam, std::sqrt(3200.0),
            {120, 120});
        row("projection on y=10", "Projection", {"point 0 0", "line -50 10 50 10"}, K::Dist1, 10, {0, 10});
        row("projection beyond a vertical segment", "Projection", {"point 0 50", "line 100 0 100 20"},
            K::Dist1, 100);
        row("intersection of lines", "Intersection", {"line 0 50 100 50", "line 50 0 50 100"}, K::Ang1, 90,
            {50, 50});
        row("intersection of circles", "Intersection", {"circle 50 50 10", "circle 60 50 10"}, K::Dist1,
            2 * std::sqrt(75.0));
        // The library's line-circle crossing takes a point at (0, 0) for no point.
        row("intersection at the origin is not reported", "Intersection",
            {"line -20 0 40 0", "circle 10 0 10"}, K::Cust, 1, {20, 0});
        row("intersection line-ellipse", "Intersection", {"line -10 25 110 25", "ellipse 0 0 100 50"},
            K::Dist1, 100);
        row("intersection of ellipses: four points", "Intersection",
            {"ellipse 0 0 100 50", "ellipse 25 -25 50 100"}, K::Cust, 4);
        row("tangents from a point", "Tangent", {"point 0 50", "circle 100 50 60"}, K::Dist2, 80);
        row("tangents of two circles: outer", "Tangent", {"circle 50 50 10", "circle 80 50 10"}, K::Dist1,
            30);
        row("tangents of two circles: inner", "Tangent", {"circle 50 50 10", "circle 80 50 10"}, K::Dist2,
            std::sqrt(500.0));
    }

    void closedForm() {
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
        // A copy follows the same sources.
        const std::unique_ptr<AbstractBaseItem> copy(item->clone(5));
        QCOMPARE(asConstruction(copy.get())->sources(), item->sources());
        // Calibrated like every measure: lengths by the factor, angles and counts as they are.
        item->setCalibration(calibration(0.5));
        const bool length = kind == K::Dist1 || kind == K::Dist2 || kind == K::Rad1 || kind == K::Diam;
        QVERIFY(near(item->accessmesure(unsigned(kind)), length ? value / 2 : value));
    }

    // A list the measure cannot use is refused as a whole; a usable list without a result leaves zero
    // measures and the reason in the label, and nothing unreadable in the XML.
    void badInput_data() {
        // sources: "same" repeats the item before
        const auto row = addColumns<QString, QStringList, bool>("className", "sources", "refused");
        row("one item for two", "Distance", {"point 0 0"}, true);
        row("the same item twice", "Distance", {"line 0 0 10 0", "same"}, true);
        row("angle with a point", "Angle", {"point 0 0", "line 0 0 10 0"}, true);
        row("projection on a circle", "Projection", {"point 0 0", "circle 50 50 10"}, true);
        row("intersection with a point", "Intersection", {"point 5 5", "circle 50 50 10"}, true);
        row("tangent without a circle", "Tangent", {"point 5 5", "line 0 0 9 9"}, true);
        row("parallel lines", "Intersection", {"line 0 0 100 0", "line 0 10 100 10"}, false);
        row("line missing the circle", "Intersection", {"line 0 0 100 0", "circle 50 50 10"}, false);
        row("concentric circles crossing", "Intersection", {"circle 50 50 10", "circle 50 50 20"}, false);
        row("concentric circles' tangents", "Tangent", {"circle 50 50 10", "circle 50 50 20"}, false);
        row("a circle inside the other", "Tangent", {"circle 50 50 30", "circle 55 50 5"}, false);
        row("point inside the circle", "Tangent", {"point 55 50", "circle 50 50 20"}, false);
        row("three centres on a line", "Circle3", {"point 0 0", "point 10 10", "point 30 30"}, false);
        row("two centres in one place", "Circle3", {"point 0 0", "point 0 0", "point 30 0"}, false);
    }

    void badInput() {
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
        QVERIFY(item->sources().size() == (refused ? 0 : items.size()) && !item->hasResult());
        if (!refused)
            QCOMPARE(item->label()->text(), item->problem());
        QCOMPARE(allMesures(item), allMesures(construction(scene, className)));
        const Attributes attributes = saved(item);
        for (const QString& value : attributes)
            QVERIFY2(!value.contains("nan", Qt::CaseInsensitive) && !value.contains("inf"),
                     qPrintable(value));
    }

    void pickingWithTheMouse_data() {
        const auto row = addColumns<QString, QStringList, QList<QPointF>, int, double>(
            "className", "sources", "clicks", "kind", "value");
        row("distance", "Distance", {"point 100 100", "line 50 150 250 150"}, {{100, 100}, {200, 150}},
            K::Dist1, 50);
        // The click chooses the side: the right one is perpendicular to the line, the top one parallel.
        const QStringList rectAndLine{"rect 100 100 100 60", "line 20 250 380 250"};
        row("angle to the clicked side: right", "Angle", rectAndLine, {{200, 130}, {300, 250}}, K::Ang1, 90);
        row("angle to the clicked side: top", "Angle", rectAndLine, {{150, 100}, {300, 250}}, K::Ang1, 0);
        row("circle3", "Circle3", {"point 100 100", "point 200 100", "point 100 200"},
            {{100, 100}, {200, 100}, {100, 200}}, K::Rad1, std::sqrt(5000.0));
    }

    void pickingWithTheMouse() {
        QFETCH(QString, className);
        QFETCH(QStringList, sources);
        QFETCH(QList<QPointF>, clicks);
        QFETCH(int, kind);
        QFETCH(double, value);
        DrawingView v;
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
        QCOMPARE(item->sources(), items);
        QVERIFY(refused.isEmpty() && item->isSelected());
        QVERIFY2(near(item->accessmesure(unsigned(kind)), value), qPrintable(allMesures(item)));
    }

    // Refusals are announced with a reason; a source deleted mid-pick is a pick to make again; Return
    // keeps a construction that lacks picks, marked; Escape discards it.
    void pickingProtocol() {
        DrawingView v;
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
        QVERIFY(!v.scene.itemInCreation() && tangent->hasResult());
        QCOMPARE(tangent->sources(), (QList<AbstractBaseItem*>{other, circle}));

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
    void followsItsSources_data() {
        // after: once the first source is moved by (0, 30)
        const auto row = addColumns<QString, QStringList, int, double, double>("className", "sources", "kind",
                                                                               "before", "after");
        row("distance", "Distance", {"point 100 100", "line 50 200 250 200"}, K::Dist1, 100, 70);
        row("intersection", "Intersection", {"line 50 100 250 100", "circle 150 120 40"}, K::Dist1,
            2 * std::sqrt(1200.0), 2 * std::sqrt(1500.0));
        row("tangent", "Tangent", {"point 100 70", "circle 150 100 30"}, K::Dist1, 50, 40);
    }

    void followsItsSources() {
        QFETCH(QString, className);
        QFETCH(QStringList, sources);
        QFETCH(int, kind);
        QFETCH(double, before);
        QFETCH(double, after);
        DrawingView v;
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
    void savedSceneReloadsWithAllLinks() {
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
        QVERIFY(report.messages.isEmpty() && report.skipped.isEmpty());
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

    void missingSourceIsReportedAndSkipped() {
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
};

QTEST_MAIN(TestConstructions)
#include "tst_constructions.moc"
