// Points, the anchor, the crosses and guides, and the protractor: drawn with the mouse, measured
// from the scene's origin, moved and turned by their grips.
#include "AnchorPointItem.h"
#include "CrossItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "ItemLinks.h"
#include "PlacedItems.h"

using K = AbstractBaseItem::MesureKind;

class TestPoints : public QObject {
    Q_OBJECT
private slots:
    void measuredFromTheOrigin_data() {
        // expected: dist1, dist2 at (130, 140), factor 0.5, no origin
        addColumns<QString, QPointF>("className", "expected");
        QTest::newRow("point") << "PointItem" << QPointF(65, 70);
        QTest::newRow("horizontal guide: y") << "CrossHItem" << QPointF(70, 0);
        QTest::newRow("vertical guide: x") << "CrossVItem" << QPointF(65, 0);
    }

    void measuredFromTheOrigin() {
        QFETCH(QString, className);
        QFETCH(QPointF, expected);
        DrawingView v;
        AbstractBaseItem* item = v.draw(className, {130, 140}, {130, 140}, 0.5);
        QVERIFY(item);
        auto mesures = [item] { return QPointF(item->accessmesure(K::Dist1), item->accessmesure(K::Dist2)); };
        QCOMPARE(mesures(), expected);
        QSignalSpy changed(item, &AbstractBaseItem::mesureChanged);
        v.scene.setOrigin({30, 40});
        QCOMPARE(changed.count(), 1);
        const QPointF shift = className == "CrossHItem"   ? QPointF(20, 0)
                              : className == "CrossVItem" ? QPointF(15, 0)
                                                          : QPointF(15, 20);
        QCOMPARE(mesures(), expected - shift);
        v.scene.clearOrigin();
        QCOMPARE(mesures(), expected);
        checkXmlRoundTrip(item);
    }

    void anchorCarriesItemsAndSetsTheOrigin() {
        DrawingView v;
        auto* anchor = qobject_cast<AnchorPointItem*>(v.draw("AnchorPointItem", {50, 50}, {50, 50}));
        AbstractBaseItem* line = v.draw("LineItem", {100, 100}, {200, 100});
        AbstractBaseItem* circle = v.draw("CircleItem", {250, 150}, {270, 150});
        AbstractBaseItem* point = v.draw("PointItem", {90, 70}, {90, 70});
        QVERIFY(anchor && line && circle && point);
        v.scene.clearSelection();
        line->setSelected(true);
        circle->setSelected(true);
        anchor->setSelected(true);
        QVERIFY(choose(anchor, "Anchor selected items"));
        const QList<AbstractBaseItem*> anchored = anchor->anchoredItems();
        QCOMPARE(QSet(anchored.begin(), anchored.end()), (QSet<AbstractBaseItem*>{line, circle}));
        QVERIFY(choose(anchor, "Set as origin"));
        QCOMPARE(v.scene.origin(), QPointF(50, 50));
        QCOMPARE(point->accessmesure(K::Dist1), 40.0);
        // Refused: itself, another anchor, a construction.
        AbstractBaseItem* other = place(v.scene, "anchor 10 10");
        QVERIFY(!anchor->anchorItem(anchor) && !anchor->anchorItem(other));
        QVERIFY(!anchor->anchorItem(construction(v.scene, "Distance")));

        // Dragged by its grip, the anchor carries its items, selected or not; dragged as a whole with a
        // selection, it leaves the selected ones to the drag.
        v.scene.clearSelection();
        anchor->forceSelection();
        line->setSelected(true);
        v.dragGrip(anchor, 0, {80, 60});
        QCOMPARE(line->mline(), (QList<QPointF>{{130, 110}, {230, 110}}));
        QCOMPARE(circle->mapToScene(circle->centroid()), QPointF(280, 160));
        QCOMPARE(v.scene.origin(), QPointF(80, 60));
        QCOMPARE(point->accessmesure(K::Dist1), 10.0);
        v.drag({80, 48}, {90, 48});
        QCOMPARE(line->mline(), (QList<QPointF>{{140, 110}, {240, 110}}));
        QCOMPARE(circle->mapToScene(circle->centroid()), QPointF(290, 160));

        // Both roles come back with a document; deleting the anchor gives the origin up.
        AbstractScene reloaded(QRectF(0, 0, 400, 300));
        const QList<AbstractBaseItem*> back = loadedScene(reloaded, savedScene({line, circle, anchor}));
        QCOMPARE(linkLoadedItems(back).messages, QStringList());
        QCOMPARE(reloaded.origin(), QPointF(90, 60));
        const QList<AbstractBaseItem*> reanchored = qobject_cast<AnchorPointItem*>(back[2])->anchoredItems();
        QCOMPARE(QSet(reanchored.begin(), reanchored.end()), (QSet<AbstractBaseItem*>{back[0], back[1]}));
        delete anchor;
        QVERIFY(!v.scene.hasOrigin());
        QCOMPARE(point->accessmesure(K::Dist1), 90.0);
    }

    void crossTurnsTheOrthogonalReference() {
        DrawingView v;
        auto* cross = qobject_cast<CrossItem*>(v.draw("CrossItem", {100, 150}, {160, 150}));
        QVERIFY(cross);
        QCOMPARE(cross->accessmesure(K::Ang1), 0.0);
        QCOMPARE(cross->armLength(), 60.0);
        EditSpy spy(cross);
        cross->forceSelection();
        v.dragGrip(cross, CrossItem::ArmGrip, {100, 90});
        QCOMPARE(cross->accessmesure(K::Ang1), 90.0);
        QCOMPARE(cross->accessmesure(K::Ang2), 180.0);
        QCOMPARE(v.scene.orthoReferenceAngle(), 90.0);
        QCOMPARE(spy.start.count(), 1);
        QCOMPARE(spy.end.count(), 1);
        QVERIFY(spy.changed.count() > 0);
        QCOMPARE(cross->lines().first(), QLineF(100, 210, 100, 90));
        checkXmlRoundTrip(cross);
    }

    void guideMovesAcrossItsDirectionOnly() {
        // A scene that grows to hold its items does not grow by its guides.
        AbstractScene growing;
        place(growing, "line 0 0 300 200");
        place(growing, "vguide 100 50");
        const QRectF first = growing.sceneRect();
        QVERIFY(first.height() < 210);
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
            QCOMPARE(growing.sceneRect(), first);
        }
        DrawingView v;
        auto* guide = qobject_cast<PositionItem*>(v.draw("CrossHItem", {130, 140}, {130, 140}));
        QVERIFY(guide);
        // Inside the scene by the pen's reach.
        QCOMPARE(guide->lines(), QList<QLineF>{QLineF(1.5, 140, 398.5, 140)});
        v.dragGrip(guide, 0, {200, 180});
        QCOMPARE(guide->point(), QPointF(130, 180));
        guide->setPos(50, 70);
        QCOMPARE(guide->point(), QPointF(130, 70));
        v.scene.setSceneRect(0, 0, 600, 300);
        QCOMPARE(guide->lines(), QList<QLineF>{QLineF(1.5, 70, 598.5, 70)});
    }

    void protractorByThreeClicks() {
        DrawingView v;
        AbstractBaseItem* protractor = v.click("Custom1", {{200, 100}, {100, 100}, {100, 20}});
        QVERIFY(protractor);
        QVERIFY(!v.scene.itemInCreation());
        QCOMPARE(protractor->accessmesure(K::Ang1), 90.0);
        QCOMPARE(protractor->accessmesure(K::Ang2), 270.0);
        QCOMPARE(protractor->label()->text(), QString("ang1:90.00"));
        v.dragGrip(protractor, 2, {20, 100});
        QCOMPARE(protractor->accessmesure(K::Ang1), 180.0);
        checkXmlRoundTrip(protractor);
        QSignalSpy rejected(&v.scene, &AbstractScene::itemRejected);
        QVERIFY(!v.click("Custom1", {{50, 50}, {50, 50}, {90, 50}}));
        QCOMPARE(rejected.count(), 1);
    }
};

QTEST_MAIN(TestPoints)
#include "tst_points.moc"
