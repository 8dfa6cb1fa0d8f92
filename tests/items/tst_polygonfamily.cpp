// Items defined by their vertices: polygons, polylines, curves, regular polygons, lasso regions and
// straightening paths.
#include "CurveItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "FlattenItem.h"
#include "GeometryPolygonMetrics.h"
#include "LassoItem.h"
#include "PolygonItem.h"
#include "PolygonShapeItem.h"
#include "ToolsCatalogue.h"

#include <cmath>
#include <random>

namespace {

using Slots = QMap<int, double>; // expected pixel measures by kind

// An item of the class generated from a host record.
std::unique_ptr<AbstractBaseItem> generated(const QString& className, const QList<QPointF>& points,
                                            QPointF centre = {}, double radius = 0) {
    _AUTOPOINTPARAMS record;
    record.points = points;
    record.center = centre;
    record.radius = radius;
    return std::unique_ptr<AbstractBaseItem>(ItemRegistry::find(className)->construct(nullptr, 1, &record));
}

QList<QPointF> regular(int sides, double radius, QPointF centre = {100, 100}) {
    QList<QPointF> points;
    for (int k = 0; k < sides; ++k)
        points << centre + radius * QPointF(std::cos(2 * M_PI * k / sides), std::sin(2 * M_PI * k / sides));
    return points;
}

double shoelace(const QList<QPointF>& p) {
    double twice = 0;
    for (int i = 0; i < p.size(); ++i)
        twice += p[i].x() * p[(i + 1) % p.size()].y() - p[(i + 1) % p.size()].x() * p[i].y();
    return std::abs(twice) / 2;
}

// A grey image with every pixel for which inside(i, j) holds at level `in`, the others at `out`.
QImage greyImage(QSize size, const std::function<bool(int, int)>& inside, int in, int out) {
    QImage image(size, QImage::Format_Grayscale8);
    for (int j = 0; j < size.height(); ++j)
        for (int i = 0; i < size.width(); ++i)
            image.scanLine(j)[i] = uchar(inside(i, j) ? in : out);
    return image;
}

} // namespace

class TestPolygonFamily : public QObject {
    Q_OBJECT
private slots:
    void init() {
        InitToolsNames();
        setCommonParams(QMap<QString, QVariant>());
    }
    void closedFormMesures_data() {
        addColumns<QString, QList<QPointF>, double, Slots, bool>("className", "points", "radius", "expected",
                                                                 "crosses");
        using I = AbstractBaseItem;
        const auto row = [](const char* tag, const char* className, QList<QPointF> points, double radius,
                            Slots expected, bool crosses = false) {
            QTest::newRow(tag) << QString(className) << points << radius << expected << crosses;
        };
        const double s3 = std::sqrt(3.0);
        row("polygon: 3-4-5 triangle", "PolygonItem", {{0, 0}, {4, 0}, {4, 3}}, 0,
            {{I::Aera, 6},
             {I::Perim, 12},
             {I::Dist1, 5},
             {I::Dist2, 2.4},
             {I::Ang1, 143.13010235415598},
             {I::Cust, M_PI / 6}});
        row("polygon: collinear and repeated vertices", "PolygonItem", {{0, 0}, {5, 0}, {5, 0}, {10, 0}}, 0,
            {{I::Aera, 0}, {I::Perim, 20}, {I::Dist1, 10}, {I::Dist2, 0}, {I::Cust, 0}}, true);
        // The two loops of a bow tie turn opposite ways: their shoelace areas, 100 and 80, partly cancel.
        const double tie = std::sqrt(500.0) + 10 + std::sqrt(544.0) + 12;
        row("polygon: bow tie", "PolygonItem", {{0, 0}, {20, 10}, {20, 0}, {0, 12}}, 0,
            {{I::Aera, 20},
             {I::Perim, tie},
             {I::Dist1, std::sqrt(544.0)},
             {I::Ang1, std::atan(0.6) * 180 / M_PI},
             {I::Dist2, 240 / std::sqrt(404.0)},
             {I::Cust, 80 * M_PI / (tie * tie)}},
            true);
        row("regular polygon: hexagon of side 10", "PolygonShapeItem", {}, 10,
            {{I::Aera, 150 * s3}, {I::Perim, 60}, {I::Rad1, 10}, {I::Rad2, 5 * s3}, {I::Dist1, 10}});
        row("polyline: 3-4-5 zigzag", "PolylineItem", {{0, 0}, {3, 4}, {6, 0}}, 0,
            {{I::Dist1, 10}, {I::Dist2, 6}, {I::Cust, 10.0 / 6}, {I::Ang1, 0}});
        row("polyline: closed loop has no tortuosity", "PolylineItem", {{0, 0}, {3, 4}, {0, 0}}, 0,
            {{I::Dist1, 10}, {I::Dist2, 0}, {I::Cust, 0}});
        row("curve: straight through unequal steps", "CurveItem", {{0, 0}, {10, 0}, {40, 0}}, 0,
            {{I::Dist1, 40}, {I::Dist2, 40}, {I::Cust, 1}, {I::Ang1, 0}});
        row("flatten: path and band", "FlattenItem", {{0, 0}, {30, 40}}, 5, {{I::Dist1, 50}, {I::Dist2, 10}});
    }

    // Closed-form pixel measures, calibrated by their kind's unit; a kind the item lacks stays 0.
    void closedFormMesures() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(double, radius);
        QFETCH(Slots, expected);
        QFETCH(bool, crosses);
        const auto item = generated(className, points, {100, 100}, radius);
        item->setCalibration(calibration(0.5));
        for (int i = 0; i <= AbstractBaseItem::Cust; ++i) {
            const double pixels = expected.value(i, 0);
            QVERIFY2(std::abs(item->accessmesureP(i) - pixels) < 1e-9 * std::max(1.0, pixels),
                     qPrintable(QString("kind %1: %2").arg(i).arg(item->accessmesureP(i), 0, 'g', 17)));
            const AbstractBaseItem::MesureUnit unit = item->mesureUnit(i);
            const double k = unit == AbstractBaseItem::MesureUnit::Length ? 0.5
                             : unit == AbstractBaseItem::MesureUnit::Area ? 0.25
                                                                          : 1.0;
            QVERIFY(std::abs(item->accessmesure(i) - pixels * k) < 1e-9 * std::max(1.0, pixels));
        }
        const auto* outline = qobject_cast<VertexItem*>(item.get());
        QCOMPARE(outline && outline->crossesItself(), crosses);
        QCOMPARE(!item->toolTip().isEmpty(), crosses);
    }

    void drawnClickByClick_data() {
        // vertices: 0 when rejected
        addColumns<QString, QList<QPointF>, QString, int>("className", "clicks", "end", "vertices");
        const QList<QPointF> three{{50, 50}, {150, 60}, {120, 150}};
        QTest::newRow("polygon closed on its first vertex")
            << "PolygonItem" << (three + QList<QPointF>{{52, 49}}) << "" << 3;
        QTest::newRow("polygon ended by a double click") << "PolygonItem" << three << "double click" << 3;
        QTest::newRow("polygon of two vertices") << "PolygonItem" << three.mid(0, 2) << "Return" << 0;
        QTest::newRow("polyline of two vertices") << "PolylineItem" << three.mid(0, 2) << "Return" << 2;
        QTest::newRow("polyline: a click on its first vertex goes on")
            << "PolylineItem" << (three + QList<QPointF>{{52, 49}}) << "Return" << 4;
        QTest::newRow("curve of one point") << "CurveItem" << three.mid(0, 1) << "Return" << 0;
    }

    void drawnClickByClick() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, clicks);
        QFETCH(QString, end);
        QFETCH(int, vertices);
        DrawingView v;
        QSignalSpy rejected(&v.scene, &AbstractScene::itemRejected);
        QPointer<AbstractBaseItem> item = v.click(className, clicks);
        QVERIFY(item);
        QSignalSpy deleted(item.data(), &AbstractBaseItem::objectDeleted);
        if (v.scene.itemInCreation()) {
            v.move(QPointF(300, 200));
            QVERIFY(item->boundingRect().contains(QPointF(300, 200))); // the edge to the cursor
        }
        if (end == "double click")
            QTest::mouseDClick(v.view.viewport(), Qt::LeftButton, {}, v.at(clicks.last()));
        else if (!end.isEmpty())
            QTest::keyClick(v.view.viewport(), end == "Enter" ? Qt::Key_Enter : Qt::Key_Return);
        QVERIFY(!v.scene.itemInCreation());
        QCOMPARE(rejected.count(), vertices ? 0 : 1);
        QCOMPARE(deleted.count(), className == "CurveItem" && !vertices ? 1 : 0);
        if (!vertices) {
            QTRY_VERIFY(!item);
            return;
        }
        QVERIFY(item && item->isSelected());
        QCOMPARE(item->mline(), clicks.mid(0, vertices));
        QVERIFY(!item->boundingRect().contains(QPointF(300, 200)));
    }

    // Every vertex has a grip whose id is its index, the ninth included; a drag moves that vertex only.
    void vertexGrips() {
        DrawingView v;
        const QList<QPointF> decagon = regular(10, 80, {200, 150});
        auto* item = qobject_cast<PolygonItem*>(generated("PolygonItem", decagon).release());
        v.scene.addItem(item);
        item->forceSelection();
        QList<int> ids;
        for (const HoverEventItem* grip : item->handgripItems())
            ids << grip->getId();
        QCOMPARE(ids, (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        EditSpy spy(item);
        v.dragGrip(item, 8, {240, 60});
        QList<QPointF> moved = decagon;
        moved[8] = {240, 60};
        QCOMPARE(item->mline(), moved);
        QVERIFY(spy.start.count() == 1 && spy.end.count() == 1 && spy.changed.count() >= 1);
        QVERIFY(std::abs(item->accessmesureP(AbstractBaseItem::Aera) - shoelace(moved)) < 1e-9);
        QCOMPARE(item->handgripItems().at(8)->scenePos(), QPointF(240, 60));
    }

    // 10^5 vertices: no grip until the cursor comes near, then only the nearest few, dragged as any other.
    void largeOutlineShowsGripsNearTheCursor() {
        DrawingView v;
        const int n = 100000;
        auto* item =
            qobject_cast<PolygonItem*>(generated("PolygonItem", regular(n, 120, {200, 150})).release());
        v.scene.addItem(item);
        item->forceSelection();
        QCOMPARE(item->handgripItems().size(), 0);
        v.move({320, 150}); // vertex 0
        const QList<HoverEventItem*> grips = item->handgripItems();
        QVERIFY(!grips.isEmpty() && grips.size() <= VertexItem::NearGrips);
        for (const HoverEventItem* grip : grips) {
            const int id = grip->getId();
            QVERIFY(id < VertexItem::NearGrips / 2 + 1 || id > n - VertexItem::NearGrips / 2 - 1);
            QCOMPARE(grip->pos(), item->vertices().at(id));
            QVERIFY(grip->isVisible());
        }
        const double area = item->accessmesureP(AbstractBaseItem::Aera);
        v.dragGrip(item, 0, {330, 150});
        QCOMPARE(item->vertices().at(0), QPointF(330, 150));
        QVERIFY(item->accessmesureP(AbstractBaseItem::Aera) > area);
        QVERIFY(std::abs(item->accessmesureP(AbstractBaseItem::Dist1) - 250) < 0.01); // hull, after release
    }

    void insertAndDeleteVertices() {
        DrawingView v;
        QPointer<AbstractBaseItem> item = v.click("PolygonItem", {{50, 50}, {250, 50}, {150, 250}});
        QTest::keyClick(v.view.viewport(), Qt::Key_Return);
        auto* polygon = qobject_cast<PolygonItem*>(item);
        QVERIFY(polygon && polygon->isSelected());
        // A press on a slanted edge inserts a vertex there and drags it.
        v.press({175, 200});
        v.move({200, 220});
        v.release({200, 220});
        QCOMPARE(item->mline(), (QList<QPointF>{{50, 50}, {250, 50}, {200, 220}, {150, 250}}));
        // An edge parallel to an axis is reached within its ten units too.
        v.drag({120, 56}, {120, 56});
        QCOMPARE(polygon->vertices().size(), 5);
        QCOMPARE(polygon->vertices().at(1), QPointF(120, 56));
        // Delete removes the vertex whose grip is hovered, never below three.
        for (int remaining : {4, 3, 3}) {
            v.move(polygon->handgripItems().at(1)->scenePos());
            QTest::keyClick(v.view.viewport(), Qt::Key_Delete);
            QCOMPARE(polygon->vertices().size(), remaining);
        }
        QMenu menu;
        QVERIFY(!menuOf(item, menu).value("Delete vertex")->isEnabled());
        QVERIFY(std::abs(polygon->accessmesureP(AbstractBaseItem::Aera) - shoelace(item->mline())) < 1e-9);
    }

    void simplify_data() {
        addColumns<QString, QList<QPointF>, double, int, int>("className", "points", "tolerance", "passes",
                                                              "removed");
        std::mt19937 random(3);
        QList<QPointF> wobbly;
        for (const QPointF& p : regular(200, 100))
            wobbly << p + QPointF(random() % 100 / 200.0, random() % 100 / 200.0);
        QTest::newRow("wobbly circle") << "PolygonItem" << wobbly << 1.0 << 1 << 150;
        QTest::newRow("triangle: nothing to remove") << "PolygonItem" << regular(3, 50) << 5.0 << 0 << 0;
        // At 60 units the square would keep two corners: the tolerance halves until three remain.
        QTest::newRow("square, tolerance too large")
            << "PolygonItem" << QList<QPointF>{{0, 0}, {50, 0}, {50, 50}, {0, 50}, {0, 25}} << 60.0 << 2 << 1;
        QTest::newRow("polyline") << "PolylineItem" << wobbly.mid(0, 50) << 1.0 << 1 << 35;
    }

    // Each pass says whether it was the last; a tolerance too large halves until enough vertices remain.
    void simplify() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(double, tolerance);
        QFETCH(int, passes);
        QFETCH(int, removed);
        auto item = generated(className, points);
        auto* outline = qobject_cast<VertexItem*>(item.get());
        QSignalSpy steps(item.get(), qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
        const int gone = outline->simplify(tolerance);
        QVERIFY2(removed ? gone >= removed : gone == 0, qPrintable(QString::number(gone)));
        QCOMPARE(steps.count(), passes);
        for (int i = 0; i < passes; ++i)
            QCOMPARE(steps[i].mid(1), (QList<QVariant>{i, i + 1 == passes}));
        const QPolygonF kept = outline->vertices();
        QVERIFY(kept.size() >= outline->minimumVertices());
        QVERIFY(std::abs(item->accessmesureP(AbstractBaseItem::Perim) -
                         (outline->isClosed() ? polygonPerimeter(kept) : 0)) < 1e-9);
    }

    void xml_data() {
        const auto row =
            addColumns<QString, Attributes, Attributes, int>("className", "attributes", "expected", "grips");
        row("polygon: unusable points left out", "PolygonItem",
            {{"coords", "1x1;nanxinf;5x5;1e12x3;2x9;1x2x3;abc;;4.5x-1;"}},
            {{"coords", "1x1;5x5;2x9;4.5x-1;"}}, 4);
        const Attributes triangle{{"coords", "0x0;4x0;4x3;"}, {"mesureP5", "7"}, {"mesure5", "1.75"}};
        row("polygon: unreadable measures measured again", "PolygonItem",
            {{"coords", "0x0;4x0;4x3;"}, {"mesureP5", "nan"}, {"mesure5", "inf"}},
            {{"mesureP5", "6"}, {"mesure5", "6"}, {"mesureP1", "5"}}, 3);
        row("curve of one point", "CurveItem", {{"coords", "3x4;"}}, {{"coords", "3x4;"}, {"mesure1", "0"}},
            1);
        row("regular polygon: sides out of range", "PolygonShapeItem",
            {{"centre", "10x10"}, {"corner", "20x10"}, {"sides", "99"}},
            {{"sides", "6"}, {"centre", "10x10"}, {"mesure7", "10"}}, 2);
        row("lasso: tolerance clamped", "LassoItem",
            {{"coords", "0x0;10x0;10x10;0x10;"},
             {"holes", "2x2;4x2;4x4;2x4;|nan"},
             {"seed", "1x1"},
             {"tolerance", "999"},
             {"pixels", "96"}},
            {{"tolerance", "255"}, {"holes", "2x2;4x2;4x4;2x4;"}, {"mesure5", "96"}}, 1);
        row("flatten: band clamped", "FlattenItem", {{"coords", "0x0;30x40;"}, {"band", "1e9"}},
            {{"band", "10000"}, {"mesure2", "10000"}}, 3);
        row("flatten: band not a number", "FlattenItem", {{"coords", "0x0;30x40;"}, {"band", "nan"}},
            {{"band", "20"}}, 3);
    }

    // What each class reads from its attributes and writes back; saved, loaded and cloned alike.
    void xml() {
        QFETCH(QString, className);
        QFETCH(Attributes, attributes);
        QFETCH(Attributes, expected);
        QFETCH(int, grips);
        const std::unique_ptr<AbstractBaseItem> item = loaded(className, attributes);
        const Attributes back = saved(item.get());
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QCOMPARE(it.key() + "=" + back.value(it.key()), it.key() + "=" + it.value());
        for (const QString& value : back)
            QVERIFY2(!value.contains("nan") && !value.contains("inf"), qPrintable(value));
        QCOMPARE(item->handgripItems().size(), grips);
        checkXmlRoundTrip(item.get());
    }

    // Drawn with the mouse, the drag's length choosing the tolerance: the exact pixel count and
    // closed-form measures, the hole kept, the segmentation announced once.
    void lassoSegments() {
        const auto squareWithHole = [](int i, int j) {
            return i >= 20 && i < 80 && j >= 30 && j < 90 && !(i >= 40 && i < 60 && j >= 50 && j < 70);
        };
        DrawingView v;
        v.scene.setImage(greyImage({120, 120}, squareWithHole, 50, 200));
        QPointer<LassoItem> lasso = qobject_cast<LassoItem*>(startTool(&v.scene, "LassoItem"));
        QSignalSpy segmented(lasso.data(), &AbstractBaseItem::itemChanged);
        const QPointF seed(25.5, 35.5), to = seed + QPointF(10, 0);
        v.press(seed);
        v.move(to);
        QCOMPARE(lasso->label()->text(), QString("tolerance:10"));
        v.release(to);
        QVERIFY(lasso && !v.scene.itemInCreation());
        QCOMPARE(lasso->tolerance(), 10);
        QCOMPARE(lasso->pixelCount(), 3200);
        QCOMPARE(lasso->holes().size(), 1);
        QCOMPARE(segmented.count(), 1);
        QCOMPARE(segmented[0].mid(1), (QList<QVariant>{"segmented", QVariant::fromValue<void*>(nullptr)}));
        using I = AbstractBaseItem;
        const Slots expected{{I::Aera, 3200},
                             {I::Perim, 240},
                             {I::Dist1, 60 * std::sqrt(2.0)},
                             {I::Dist2, 60},
                             {I::Cust, 4 * M_PI * 3200 / 57600}};
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QVERIFY(std::abs(lasso->accessmesureP(it.key()) - it.value()) < 1e-9);
        // Once segmented the label shows the measure, and a reopened lasso shows the same.
        const QString shown = lasso->label()->text();
        QVERIFY(!shown.isEmpty());
        QCOMPARE(shown, lasso->displayedMesure(lasso->mesureIndex()));
        QCOMPARE(loadedOn(v.scene, "LassoItem", saved(lasso))->label()->text(), shown);
    }

    // The shared state: what was segmented blocks later regions until its lasso goes; InitToolsNames
    // starts it afresh.
    void lassoRegionsStayApart() {
        DrawingView v;
        v.scene.setImage(greyImage(
            {100, 100}, [](int i, int) { return i < 40; }, 60, 100));
        QPointer<LassoItem> first = qobject_cast<LassoItem*>(startTool(&v.scene, "LassoItem"));
        v.drag({10, 10}, {30, 10});
        QVERIFY(first);
        const auto shared = [] {
            return QList<qsizetype>{LassoItem::regionsSegmented(), LassoItem::lastTolerance(),
                                    LassoItem::segmentedOutlines().size()};
        };
        QCOMPARE(first->pixelCount(), 4000);
        QCOMPARE(shared(), (QList<qsizetype>{1, 20, 1}));
        // The next lasso starts with the last tolerance; the whole image is in range, but not the first
        // region.
        QPointer<LassoItem> second = qobject_cast<LassoItem*>(startTool(&v.scene, "LassoItem"));
        QCOMPARE(second->tolerance(), 20);
        v.drag({90, 90}, {90, 90});
        second->setTolerance(1000);
        QCOMPARE(second->tolerance(), 255);
        QCOMPARE(second->pixelCount(), 6000);
        QCOMPARE(LassoItem::regionsSegmented(), 2);
        QSignalSpy rejected(&v.scene, &AbstractScene::itemRejected);
        startTool(&v.scene, "LassoItem");
        v.drag({20, 50}, {20, 50});
        QCOMPARE(rejected.count(), 1);
        delete first;
        QCOMPARE(LassoItem::segmentedOutlines().size(), 1);
        second->setTolerance(255);
        QCOMPARE(second->pixelCount(), 10000);
        InitToolsNames();
        QCOMPARE(shared(), (QList<qsizetype>{0, 0, 0}));
    }

    void lassoRefusals() {
        DrawingView v;
        // Without an image the lasso waits, and segments when one arrives.
        QPointer<LassoItem> waiting = qobject_cast<LassoItem*>(startTool(&v.scene, "LassoItem"));
        v.drag({1.5, 1.5}, {1.5, 1.5});
        QVERIFY(waiting && waiting->pixelCount() == 0 && !waiting->refusal().isEmpty());
        QCOMPARE(waiting->accessmesure(AbstractBaseItem::Aera), 0.0);
        QSignalSpy segmented(waiting.data(), &AbstractBaseItem::itemChanged);
        QImage plain(4, 4, QImage::Format_RGB32);
        plain.fill(Qt::gray);
        v.scene.setImage(plain);
        QVERIFY(segmented.count() == 1 && waiting->pixelCount() == 16 && waiting->vertices().size() == 4);
        waiting->setTolerance(-5);
        QCOMPARE(waiting->tolerance(), 0);
        // A lasso from a host record segments once on a scene with an image, even of one pixel; the first
        // lasso's region goes with it.
        delete waiting;
        v.scene.setImage(plain.copy(0, 0, 1, 1));
        auto* generatedLasso =
            qobject_cast<LassoItem*>(generated("LassoItem", {}, {0.5, 0.5}, 300).release());
        v.scene.addItem(generatedLasso);
        QVERIFY(generatedLasso->pixelCount() == 1 && generatedLasso->tolerance() == 255);
        // A click off the image is refused.
        QSignalSpy rejected(&v.scene, &AbstractScene::itemRejected);
        startTool(&v.scene, "LassoItem");
        v.drag({50, 50}, {50, 50});
        QCOMPARE(rejected.count(), 1);
    }

    // Straightened from the menu along a level path through an image that changes downwards only: a
    // band twice the half-width high, one column per pixel of the path, its rows flat; progress comes
    // in blocks of 256 columns, the last flagged.
    void straightenedFromTheMenu() {
        QImage image(400, 200, QImage::Format_Grayscale8);
        for (int j = 0; j < 200; ++j)
            std::fill_n(image.scanLine(j), 400, uchar(j));
        DrawingView v;
        v.scene.setImage(image);
        auto* item =
            qobject_cast<FlattenItem*>(generated("FlattenItem", {{20, 100}, {320, 100}}, {}, 20).release());
        v.scene.addItem(item);
        QSignalSpy blocks(item, qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex));
        QSignalSpy flattened(item, &AbstractBaseItem::itemChanged);
        QVERIFY(choose(item, "Straighten"));
        QCOMPARE(flattened.size(), 1);
        QCOMPARE(flattened[0].at(1), "flattened");
        const QImage straight = *static_cast<QImage*>(flattened[0].at(2).value<void*>());
        QCOMPARE(straight, item->straightenedImage());
        QCOMPARE(straight.size(), QSize(301, 40));
        QCOMPARE(blocks.count(), 2);
        QCOMPARE(blocks.last().at(2).toBool(), true);
        for (int j = 0; j < straight.height(); ++j)
            QVERIFY2(straight.pixel(0, j) == straight.pixel(300, j) &&
                         straight.pixel(150, j) == straight.pixel(0, j),
                     qPrintable(QString::number(j)));
    }

    void regularPolygonTurnsIntoPolygon() {
        DrawingView v;
        QPointer<PolygonShapeItem> shape =
            qobject_cast<PolygonShapeItem*>(v.draw("PolygonShapeItem", {200, 150}, {240, 150}));
        QVERIFY(shape && shape->isSelected());
        QCOMPARE(shape->sides(), 6);
        QVERIFY(!shape->setSides(2) && !shape->setSides(65));
        shape->applyContextMenu(PolygonShapeItem::SidesBase - 4);
        QCOMPARE(shape->sides(), 4);
        QVERIFY(std::abs(shape->accessmesureP(AbstractBaseItem::Aera) - 3200) < 1e-9);
        // The next one starts with four sides too.
        QCOMPARE(qobject_cast<PolygonShapeItem*>(generated("PolygonShapeItem", {}).get())->sides(), 4);
        v.dragGrip(shape, PolygonShapeItem::CentreGrip, {100, 100});
        const QList<QPointF> corners{{140, 100}, {100, 140}, {60, 100}, {100, 60}};
        QSignalSpy changed(shape.data(), &AbstractBaseItem::itemChanged);
        QSignalSpy deleted(shape.data(), &AbstractBaseItem::objectDeleted);
        QVERIFY(choose(shape, "Turn into a free PolygonItem"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0].at(1), "polygon");
        auto* polygon = static_cast<PolygonItem*>(changed[0].at(2).value<void*>());
        QVERIFY(polygon->scene() == &v.scene && polygon->isSelected());
        for (int i = 0; i < 4; ++i)
            QVERIFY(QLineF(polygon->mline().at(i), corners[i]).length() < 1e-9);
        QVERIFY(std::abs(polygon->accessmesureP(AbstractBaseItem::Aera) - 3200) < 1e-9);
        QCOMPARE(deleted.count(), 1);
        QTRY_VERIFY(!shape);
    }
};

QTEST_MAIN(TestPolygonFamily)
#include "tst_polygonfamily.moc"
