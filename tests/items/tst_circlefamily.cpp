// The circles, the ellipse and the arcs: drawn, dragged, generated, saved, searched on the image and
// exported, against closed-form values.
#include "CircleItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "DxfReadBack.h"
#include "EllipseItem.h"
#include "FittedRoundItem.h"
#include "Tools2DXF.h"

#include <QPainter>
#include <QTemporaryDir>

#include <cmath>
#include <limits>

using Mesures = QMap<int, double>;
using K = AbstractBaseItem::MesureKind;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();

// The first two points are a drag (a click when equal), the others clicks; Return ends what is left.
AbstractBaseItem* drawn(DrawingView& v, const QString& className, const QList<QPointF>& points) {
    QPointer<AbstractBaseItem> item = startTool(&v.scene, className);
    item->setCalibration(calibration(0.5, "um"));
    v.drag(points[0], points[1]);
    for (qsizetype i = 2; i < points.size() && v.scene.itemInCreation(); ++i) {
        v.move(points[i]);
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(points[i]));
    }
    if (v.scene.itemInCreation())
        QTest::keyClick(v.view.viewport(), Qt::Key_Return);
    return item.data();
}

void compareMesures(const AbstractBaseItem* item, const Mesures& expected) {
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const double actual = item->accessmesure(unsigned(it.key()));
        QVERIFY2(std::abs(actual - it.value()) <= 1e-6 * std::max(1.0, std::abs(it.value())),
                 qPrintable(QString("kind %1: %2, not %3").arg(it.key()).arg(actual).arg(it.value())));
    }
}

// Nothing the item shows or saves is a NaN or an infinity.
void verifyFinite(const AbstractBaseItem* item) {
    QString all = item->label()->text() + item->toolTip();
    for (const QString& value : saved(item))
        all += value;
    QVERIFY2(!all.contains("nan", Qt::CaseInsensitive) && !all.contains("inf"), qPrintable(all));
}

// A dark pore (60) on a light ground (200): an anti-aliased ellipse with semi-axes a, b centred at c.
QImage poreImage(const QSize& size, const QPointF& c, double a, double b) {
    QImage image(size, QImage::Format_Grayscale8);
    image.fill(200);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(60, 60, 60));
    painter.drawEllipse(c, a, b);
    return image;
}

std::unique_ptr<CircleItem> circle(QPointF centre, double radius, AbstractBaseItem* source = nullptr) {
    return generated<CircleItem>({source, {}, {}, centre, radius, 0, {}});
}

} // namespace

class TestCircleFamily : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    // r = 50 px at 0.5 um/px: area 1963.50, perimeter 157.08.
    void drawnShapes_data() {
        addColumns<QString, QList<QPointF>, Mesures, QString>("className", "points", "expected", "label");
        const auto row = [](const char* tag, const char* className, QList<QPointF> points,
                            Mesures expected = {}, QString label = {}) {
            QTest::newRow(tag) << QString(className) << points << expected << label;
        };
        const Mesures circle{{K::Aera, 625 * M_PI}, {K::Perim, 50 * M_PI}, {K::Rad1, 25}, {K::Diam, 50}};
        const Mesures quarter{{K::Rad1, 25},
                              {K::Ang1, 90},
                              {K::Dist1, 25 * M_SQRT2},
                              {K::Perim, 12.5 * M_PI},
                              {K::Dist2, 25 * (1 - M_SQRT1_2)}};
        // Ramanujan's second formula, within 1e-9 at a 5:3 axis ratio.
        const double h = std::pow((25.0 - 15) / (25 + 15), 2);
        const double perimeter = M_PI * 40 * (1 + 3 * h / (10 + std::sqrt(4 - 3 * h)));
        row("diameter", "CirclePItem", {{100, 150}, {200, 150}}, circle, "aera:1963.50");
        row("three points", "Circle3PointsItem", {{150, 100}, {150, 100}, {200, 150}, {100, 150}}, circle,
            "aera:1963.50");
        Mesures exact = circle;
        exact.insert({{K::Rad2, 0}, {K::Cust, 0}});
        row("fitted to clicks", "CirclePointsItem",
            {{200, 150}, {200, 150}, {150, 200}, {100, 150}, {150, 100}}, exact, "aera:1963.50");
        row("ellipse, dragged up", "EllipseItem", {{200, 180}, {100, 120}},
            {{K::Dist1, 50}, {K::Rad2, 15}, {K::Aera, 375 * M_PI}, {K::Cust, 0.8}, {K::Perim, perimeter}},
            QString("perim:%1*um").arg(perimeter, 0, 'f', 2));
        // The circle drawn from its centre: r = 10 px, and below 8 px it is rejected.
        row("circle", "CircleItem", {{100, 150}, {110, 150}},
            {{K::Aera, 25 * M_PI}, {K::Perim, 10 * M_PI}, {K::Rad2, 5}, {K::Diam, 10}, {K::Dist2, 10}},
            "aera:78.54");
        row("circle of r = 5", "CircleItem", {{100, 150}, {103, 154}});
        // Drawings that define nothing are rejected.
        row("diameter of length 0", "CirclePItem", {{100, 150}, {100, 150}});
        row("third point on the line, then Return", "Circle3PointsItem",
            {{100, 150}, {100, 150}, {150, 150}, {200, 150}});
        row("two points to fit", "CirclePointsItem", {{100, 150}, {100, 150}, {200, 150}});
        row("arc by centre", "ArcItem", {{150, 150}, {200, 150}, {150, 200}}, quarter, "rad1:25.00*um");
        row("arc through 3", "Arc3PointsItem", {{200, 150}, {200, 150}, {180, 190}, {150, 200}}, quarter,
            "rad1:25.00*um");
        row("arc fitted", "ArcPointsItem", {{200, 150}, {200, 150}, {190, 180}, {180, 190}, {150, 200}},
            quarter, "rad1:25.00*um");
    }

    void drawnShapes() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(Mesures, expected);
        QFETCH(QString, label);
        DrawingView v;
        QSignalSpy accepted(&v.scene, &AbstractScene::itemAccepted);
        AbstractBaseItem* item = drawn(v, className, points);
        QCOMPARE(accepted.count(), expected.isEmpty() ? 0 : 1);
        QCOMPARE(bool(item), !expected.isEmpty());
        if (!item)
            return;
        compareMesures(item, expected);
        QCOMPARE(item->label()->text(), label);
    }

    // The three-point tools announce an edit at their first click (a host opens its undo step there).
    void firstClickAnnounced_data() {
        QTest::addColumn<QString>("className");
        QTest::addColumn<int>("starts");
        QTest::newRow("three-point circle") << "Circle3PointsItem" << 1;
        QTest::newRow("three-point arc") << "Arc3PointsItem" << 1;
        QTest::newRow("fitted circle") << "CirclePointsItem" << 0;
    }
    void firstClickAnnounced() {
        QFETCH(QString, className);
        QFETCH(int, starts);
        DrawingView v;
        QPointer<AbstractBaseItem> item = startTool(&v.scene, className);
        QSignalSpy started(item.data(), &AbstractBaseItem::mesureChangedSTART);
        QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at({150, 100}));
        QCOMPARE(started.count(), starts);
    }

    // Grips move the points they stand on; points that define no shape leave the last one and mark the item.
    void gripDrags_data() {
        addColumns<QString, QList<QPointF>, int, QPointF, Mesures, bool>("className", "points", "grip", "to",
                                                                         "expected", "stale");
        const QList<QPointF> diameter{{100, 150}, {200, 150}};
        const QList<QPointF> three{{150, 100}, {150, 100}, {200, 150}, {100, 150}};
        const QList<QPointF> box{{100, 120}, {200, 180}};
        const QList<QPointF> arc{{150, 150}, {200, 150}, {150, 200}};
        const auto row = [](const char* tag, const char* className, QList<QPointF> points, int grip,
                            QPointF to, Mesures expected, bool stale = false) {
            QTest::newRow(tag) << QString(className) << points << grip << to << expected << stale;
        };
        row("diameter's end", "CirclePItem", diameter, 1, {220, 150}, {{K::Rad1, 30}});
        // Through (150, 90), (200, 150) and (100, 150): centre (150, 140.83), radius 50.83.
        row("point of three", "Circle3PointsItem", three, 0, {150, 90}, {{K::Rad1, 0.5 * (50 + 5.0 / 6)}});
        row("three on a line", "Circle3PointsItem", three, 0, {150, 150}, {{K::Rad1, 25}}, true);
        row("arc's middle on its chord", "Arc3PointsItem", {{200, 150}, {200, 150}, {180, 190}, {150, 200}},
            1, {175, 175}, {{K::Ang1, 90}}, true);
        row("ellipse's axis", "EllipseItem", box, HoverEventItem::MiddleRight, {220, 150},
            {{K::Dist1, 70}, {K::Dist2, 30}});
        // The corner (200, 120) turned a quarter anticlockwise about the centre (150, 150).
        row("ellipse turned", "EllipseItem", box, EllipseItem::RotationGrip, {120, 100},
            {{K::Ang1, 90}, {K::Dist1, 50}});
        row("arc's end round to half a turn", "ArcItem", arc, 2, {100, 150},
            {{K::Ang1, 180}, {K::Perim, 25 * M_PI}});
        row("arc's centre moves it", "ArcItem", arc, 0, {130, 170}, {{K::Ang1, 90}, {K::Rad1, 25}});
    }

    void gripDrags() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(int, grip);
        QFETCH(QPointF, to);
        QFETCH(Mesures, expected);
        QFETCH(bool, stale);
        DrawingView v;
        AbstractBaseItem* item = drawn(v, className, points);
        QVERIFY(item);
        EditSpy spy(item);
        v.dragGrip(item, grip, to);
        QVERIFY(spy.start.count() == 1 && spy.end.count() == 1);
        compareMesures(item, expected);
        QCOMPARE(!item->toolTip().isEmpty(), stale);
        verifyFinite(item);
    }

    // A host record defines the shape or gives no item; records with a radius centre on (100, 100).
    void records_data() {
        // rad1: pixels; 0 for no item
        const auto row = addColumns<QString, QList<QPointF>, double, QRectF, double>(
            "className", "points", "radius", "rect", "rad1");
        row("diameter's ends", "CirclePItem", {{0, 0}, {0, 30}}, 0, {}, 15);
        row("circle of a centre", "CirclePItem", {}, 12, {}, 12);
        row("one end only", "CirclePItem", {{0, 0}}, 0, {}, 0);
        row("negative radius", "CirclePItem", {}, -3, {}, 0);
        row("NaN radius", "Circle3PointsItem", {}, NaN, {}, 0);
        row("inscribed in a rectangle", "Circle3PointsItem", {}, 0, {0, 0, 40, 60}, 20);
        row("point at 1e300", "Circle3PointsItem", {{0, 0}, {1e300, 1}, {2, 0}}, 0, {}, 0);
        row("NaN point", "CirclePointsItem", {{0, 0}, {NaN, 1}, {2, 0}, {1, 5}}, 0, {}, 0);
        row("ellipse's rectangle", "EllipseItem", {}, 0, {0, 0, 40, 60}, 30);
        row("flat rectangle", "EllipseItem", {}, 0, {0, 0, 40, 0}, 0);
        row("arc by centre, start, end", "ArcItem", {{0, 0}, {0, 9}, {9, 0}}, 0, {}, 9);
        row("arc of a centre", "ArcItem", {}, 9, {}, 0);
        row("arc fitted", "ArcPointsItem", {{10, 0}, {0, 10}, {-10, 0}}, 0, {}, 10);
    }

    void records() {
        QFETCH(QString, className);
        QFETCH(QList<QPointF>, points);
        QFETCH(double, radius);
        QFETCH(QRectF, rect);
        QFETCH(double, rad1);
        _AUTOPOINTPARAMS params{nullptr, points, rect, QPointF(100, 100), radius, 0, {}};
        std::unique_ptr<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, 1, &params));
        QCOMPARE(bool(item), rad1 > 0);
        if (!item)
            return;
        QCOMPARE(item->accessmesureP(K::Rad1), rad1);
        QVERIFY(item->generated());
        verifyFinite(item.get());
    }

    // Unusable numbers from a file leave no NaN behind; a shape that cannot be read comes from the points.
    void badXml_data() {
        QTest::addColumn<QString>("className");
        for (const char* name : {"CirclePItem", "Circle3PointsItem", "CirclePointsItem", "EllipseItem",
                                 "ArcItem", "Arc3PointsItem", "ArcPointsItem"})
            QTest::newRow(name) << QString(name);
    }

    void badXml() {
        QFETCH(QString, className);
        const Attributes bad{{"coords", "1e300x5;nanx3;100x150;200x150;150x200"},
                             {"radius1", "-4"},
                             {"centroid", "infx0"},
                             {"spanAngle", "nan"},
                             {"rect", "0x0 nanx5"},
                             {"rotation", "inf"},
                             {"origin", "1e999x2"},
                             {"rays", "99999"},
                             {"dropped", "-1;x;7"},
                             {"mesure5", "nan"},
                             {"mesureP7", "1e999"}};
        std::unique_ptr<AbstractBaseItem> item = loaded(className, bad);
        QVERIFY(item);
        verifyFinite(item.get());
        const Attributes once = saved(item.get());
        QCOMPARE(saved(loaded(className, once).get()), once);
        // The points that a scene can hold define the circle (150, 150), r = 50.
        if (className.contains("Circle"))
            QCOMPARE(item->accessmesureP(K::Rad1), 50.0);
    }

    // A measure chosen in the menu is remembered under the class's key, for the next item of any class
    // that shares it; the arc's key is written but read by no new arc.
    void mesureChoice_data() {
        const auto row = addColumns<QString, QString, QString, int, QString, int>(
            "className", "entry", "key", "chosen", "nextClass", "next");
        row("circle, shared by the diameter", "CircleItem", "Distance", "circle_mesureIndex", 9,
            "CirclePItem", 9);
        row("ellipse", "EllipseItem", "Eccentricity", "ellipse_mesureIndex", 10, "EllipseItem", 10);
        row("arc", "ArcItem", "Chord", "arc_mesureIndex", 1, "ArcItem", 7);
        row("rectangle, shared by the Feret one", "RectangleItem", "Area", "rectangle_mesureIndex", 5,
            "RectangleItemFeret", 5);
        row("the calibration rectangle keeps its own", "RectangleItem", "Area", "rectangle_mesureIndex", 5,
            "RectCalibItem", 10);
        row("rectangle, none", "RectangleItemFeret", "None", "rectangle_mesureIndex", -1, "RectangleItem",
            -1);
    }

    void mesureChoice() {
        QFETCH(QString, className);
        QFETCH(QString, entry);
        QFETCH(QString, key);
        QFETCH(int, chosen);
        QFETCH(QString, nextClass);
        QFETCH(int, next);
        _AUTOPOINTPARAMS params;
        params.points = {{0, 0}, {0, 20}, {20, 0}, {40, 20}};
        params.rect = QRectF(0, 0, 30, 20); // the ellipse's and the rectangle's
        params.radius = 10;                 // the circle's
        std::unique_ptr<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, 1, &params));
        QVERIFY(item);
        QSignalSpy changed(item.get(), &AbstractBaseItem::mesureChanged);
        QVERIFY(choose(item.get(), entry));
        QCOMPARE((QList<int>{item->mesureIndex(), getCommonParams(key, -2).toInt()}),
                 (QList<int>{chosen, chosen}));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(std::unique_ptr<AbstractBaseItem>(XBaseItemToolCreate(nextClass, nullptr, 2, nullptr))
                     ->mesureIndex(),
                 next);
    }

    // One click inside a pore finds its edge; the fit recovers an anti-aliased disc to 0.3 px and
    // gives an elliptic pore a roundness deviation. Flat images and features larger than the image are
    // refused. An arc searches the sector its clicks span.
    void foundOnTheImage_data() {
        // axes: of the pore centred at (100.3, 90.6)
        // span: of an arc; 0 for a circle, -1 when refused
        addColumns<QString, QSizeF, QSize, QList<QPointF>, double>("className", "axes", "imageSize", "clicks",
                                                                   "span");
        const QSize size(220, 200);
        const QList<QPointF> inside{{102, 88}, {102, 88}};
        QTest::newRow("disc r = 40") << "CirclePointsItem" << QSizeF(40, 40) << size << inside << 0.0;
        QTest::newRow("elliptic pore") << "CirclePointsItem" << QSizeF(45, 35) << size << inside << 0.0;
        QTest::newRow("flat image") << "CirclePointsItem" << QSizeF(0, 0) << size << inside << -1.0;
        QTest::newRow("pore beyond the image")
            << "CirclePointsItem" << QSizeF(40, 40) << QSize(115, 100) << inside << -1.0;
        // The sector from the right of the pore, clockwise on screen to its bottom.
        QTest::newRow("arc of the disc")
            << "ArcPointsItem" << QSizeF(40, 40) << size
            << QList<QPointF>{{102, 88}, {102, 88}, {160, 90}, {140, 130}, {100, 150}} << 90.0;
    }

    void foundOnTheImage() {
        QFETCH(QString, className);
        QFETCH(QSizeF, axes);
        QFETCH(QSize, imageSize);
        QFETCH(QList<QPointF>, clicks);
        QFETCH(double, span);
        const QPointF centre(100.3, 90.6);
        DrawingView v;
        QImage flat(imageSize, QImage::Format_Grayscale8);
        flat.fill(128);
        v.scene.setImage(axes.isEmpty() ? flat : poreImage(imageSize, centre, axes.width(), axes.height()));
        QVariant image = int(FittedRoundItem::FoundOnImage);
        setCommonParams(className == "ArcPointsItem" ? "arcpoints_way" : "circlepoints_way", image);
        QList<int> steps; // negative: the last
        QPointer<AbstractBaseItem> item = startTool(&v.scene, className);
        QObject::connect(item, qOverload<void*, int, bool>(&AbstractBaseItem::transformIndex),
                         [&](void*, int step, bool last) { steps << step * (last ? -1 : 1); });
        item->setCalibration(calibration(1, "um"));
        v.drag(clicks[0], clicks[1]);
        for (qsizetype i = 2; i < clicks.size(); ++i)
            QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(clicks[i]));
        if (v.scene.itemInCreation())
            QTest::keyClick(v.view.viewport(), Qt::Key_Return);
        QCOMPARE(bool(item), span >= 0);
        if (!item)
            return;
        auto* fitted = qobject_cast<FittedRoundItem*>(item);
        const RoundShape shape = fitted->roundShape();
        QCOMPARE(steps, (QList<int>{FittedRoundItem::SearchStep, FittedRoundItem::FitStep,
                                    -FittedRoundItem::RefitStep}));
        QVERIFY(fitted->foundOnImage());
        const double deviation = item->accessmesure(K::Rad2);
        if (axes.width() == axes.height()) {
            QVERIFY2(std::abs(shape.radius - 40) < 0.3, qPrintable(QString::number(shape.radius)));
            QVERIFY(QLineF(item->mapToScene(shape.centre), centre).length() < 0.3);
            QVERIFY(deviation < 1);
        } else {
            QVERIFY2(deviation > 3, qPrintable(QString::number(deviation)));
        }
        QVERIFY(item->accessmesure(K::Cust) <= deviation);
        if (fitted->isArc())
            QVERIFY(std::abs(shape.spanAngle - span) < 6);
        checkXmlRoundTrip(item);
    }

    // Following the image, a new image is searched again from the same click; a flat one leaves the shape.
    void followsTheImage() {
        DrawingView v;
        v.scene.setImage(poreImage(QSize(220, 200), QPointF(100.3, 90.6), 40, 40));
        QVariant image = int(FittedRoundItem::FoundOnImage);
        setCommonParams("circlepoints_way", image);
        auto* item = qobject_cast<FittedRoundItem*>(drawn(v, "CirclePointsItem", {{102, 88}, {102, 88}}));
        QVERIFY(item);
        QVERIFY(choose(item, "follow image"));
        QSignalSpy imageChanged(item, &AbstractBaseItem::imageChanged);
        v.scene.setImage(poreImage(QSize(220, 200), QPointF(110.5, 95), 30, 30));
        QCOMPARE(imageChanged.takeFirst(), (QVariantList{"scene", true}));
        QVERIFY(std::abs(item->roundShape().radius - 30) < 0.3);
        QVERIFY(QLineF(item->sceneCentre(), QPointF(110.5, 95)).length() < 0.3);
        const QString before = item->label()->text();
        QImage flat(220, 200, QImage::Format_Grayscale8);
        flat.fill(128);
        v.scene.setImage(flat);
        QCOMPARE(imageChanged.takeFirst(), (QVariantList{"scene", false}));
        QCOMPARE(item->label()->text(), before);
        QVERIFY(item->isStale() && !item->toolTip().isEmpty());
    }

    // One of each on a scene: true CIRCLE, ARC and ELLIPSE entities that pass ezdxf's strict audit.
    void exportsTrueEntities() {
        DrawingView v;
        drawn(v, "CirclePItem", {{20, 50}, {80, 50}});
        drawn(v, "Circle3PointsItem", {{150, 20}, {150, 20}, {180, 50}, {120, 50}});
        drawn(v, "CirclePointsItem", {{250, 20}, {250, 20}, {280, 50}, {250, 80}, {220, 50}});
        auto* ellipse = static_cast<EllipseItem*>(drawn(v, "EllipseItem", {{300, 120}, {380, 160}}));
        ellipse->rotate(30);
        drawn(v, "ArcItem", {{50, 200}, {90, 200}, {50, 240}});
        drawn(v, "Arc3PointsItem", {{190, 200}, {190, 200}, {174, 232}, {150, 240}});
        drawn(v, "ArcPointsItem", {{290, 200}, {290, 200}, {274, 232}, {250, 240}, {210, 200}});
        QTemporaryDir dir;
        const QString file = dir.filePath("round.dxf");
        QCOMPARE(tools2DXF(file, &v.scene), 0);
        const QJsonObject report = readBackDxf(file);
        QVERIFY(dxfTakenAsItIs(report));
        QMap<QString, QList<QJsonObject>> byType;
        for (const QJsonValue& e : report["entities"].toArray())
            byType[e["type"].toString()] << e.toObject();
        QCOMPARE((QList<qsizetype>{byType["CIRCLE"].size(), byType["ARC"].size(), byType["ELLIPSE"].size()}),
                 (QList<qsizetype>{3, 3, 1}));
        const QJsonArray major = byType["ELLIPSE"][0]["major"].toArray();
        const double direction = std::atan2(major[1].toDouble(), major[0].toDouble()) * 180 / M_PI;
        QVERIFY(std::abs(std::remainder(direction - 30, 180.0)) < 1e-6);
        QVERIFY(std::abs(byType["ELLIPSE"][0]["ratio"].toDouble() - 0.5) < 1e-9);
    }

    // The circle drawn from its centre: its corner grips, its extraction and its records.
    void cornerGripsChangeOnlyTheRadius_data() {
        addColumns<int, QPointF, double>("grip", "to", "radius");
        // The circle: centre (100, 100), radius 10.
        QTest::newRow("bottom-right to 30.7 x 50, side truncated") << 7 << QPointF(120.7, 140) << 15.0;
        QTest::newRow("top-left inwards") << 0 << QPointF(94, 96) << 7.0;
        QTest::newRow("collapsed onto the facing corner") << 7 << QPointF(90, 90) << 0.0;
    }

    void cornerGripsChangeOnlyTheRadius() {
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
        QVERIFY(item->radius1() == radius && item->radius2() == radius);
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

    void extractCutsOutTheCircle() {
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
        QCOMPARE(changed.takeFirst()[1], "extract");
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

    void generatedFromARecordAndReloaded() {
        auto source = circle(QPointF(), 1);
        source->setCalibration(calibration(0.5, "um"));
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
};

QTEST_MAIN(TestCircleFamily)
#include "tst_circlefamily.moc"
