#include "AbstractScene.h"
#include "DataColumns.h"
#include "DxfReadBack.h"
#include "GeometryArcs.h"
#include "NearPoints.h"
#include "TestFiles.h"
#include "TestItem.h"
#include "Tools2DXF.h"
#include "VDxfCurvesAsSplines.h"

#include <QDir>
#include <QFile>
#include <QFontMetricsF>
#include <QGraphicsItem> // and every QGraphics*Item the scene adds
#include <QPainter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace {

QPointF point(const QJsonValue& v) {
    return QPointF(v[0].toDouble(), v[1].toDouble());
}

QList<QJsonObject> ofType(const QJsonObject& report, const QString& type) {
    QList<QJsonObject> found;
    for (const QJsonValue& e : report["entities"].toArray())
        if (e["type"] == type)
            found.append(e.toObject());
    return found;
}

// A reader must take the file as it is: no audit findings, no warnings, nothing it has to add.
bool clean(const QJsonObject& report) {
    const bool ok = report["version"] == "AC1015" && dxfTakenAsItIs(report) &&
                    report["warnings"].toArray().isEmpty() && report["created"].toArray().isEmpty() &&
                    report["handseedAboveHandles"].toBool() && report["insunits"].toInt() == 0;
    if (!ok)
        qWarning().noquote() << QJsonDocument(report).toJson();
    return ok;
}

// The entity's values under these keys, space separated.
QString fields(const QJsonObject& entity, const QStringList& keys) {
    QStringList values;
    for (const QString& key : keys)
        values << entity[key].toVariant().toString();
    return values.join(' ');
}

// Scenes of 400 x 300 units map one to one onto the drawing, turned y-up.
const QRectF kSceneRect(0, 0, 400, 300);

QPointF toDxf(const QPointF& p) {
    return QPointF(p.x(), kSceneRect.height() - p.y());
}

// An item of finite bounds that paints whatever a test asks.
class PaintingItem : public QGraphicsItem {
public:
    using Paint = std::function<void(QPainter*)>;
    explicit PaintingItem(Paint paint, QGraphicsItem* parent = nullptr)
        : QGraphicsItem(parent)
        , m_paint(std::move(paint)) {}
    QRectF boundingRect() const override { return QRectF(0, 0, 50, 50); }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override { m_paint(painter); }

private:
    Paint m_paint;
};

} // namespace

Q_DECLARE_METATYPE(PaintingItem::Paint)

class TestDxfExport : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QVERIFY(QFile::exists("/usr/bin/python3"));
        QVERIFY(m_dir.isValid());
    }

    // Exported entities against the scene's own geometry, mapped as QGraphicsScene::render maps it (the
    // scene rectangle onto the device, aspect kept) and then turned y-up on the device's height.
    void sceneReadsBack() {
        AbstractScene scene;
        const QRectF sceneRect(-40, -20, 401.5, 299.6);
        scene.setSceneRect(sceneRect);
        const QSize device = sceneRect.size().toSize();
        const double k = std::min(device.width() / sceneRect.width(), device.height() / sceneRect.height());
        auto toDxf = [&](const QPointF& p) {
            return QPointF((p.x() - sceneRect.left()) * k, device.height() - (p.y() - sceneRect.top()) * k);
        };

        scene.addLine(QLineF(10, 20, 110, 20), QPen(Qt::red, 2));
        scene.addRect(QRectF(20, 40, 80, 50), QPen(QColor(250, 130, 10), 1));
        scene.addEllipse(QRectF(150, 50, 60, 60), QPen(Qt::darkGreen, 1, Qt::DashLine));
        scene.addEllipse(QRectF(250, 50, 100, 40), QPen(Qt::blue, 1, Qt::DotLine));
        QPainterPath ellipsePath;
        ellipsePath.addEllipse(QRectF(20, 150, 60, 30));
        scene.addPath(ellipsePath, QPen(Qt::magenta, 0));
        const QPolygonF triangle({QPointF(150, 150), QPointF(250, 150), QPointF(200, 230)});
        scene.addPolygon(triangle, QPen(Qt::black, 1), QBrush(Qt::yellow));
        m_font.setFamily("DejaVu Sans");
        m_font.setPixelSize(20);
        auto* label = scene.addSimpleText(QString::fromUtf8("12.5 µm 45°"), m_font);
        label->setPos(200, 240);
        auto* turned = scene.addSimpleText("turned", m_font);
        turned->setPos(40, 200);
        turned->setRotation(30);
        // Characters that TEXT would otherwise read as control codes.
        scene.addSimpleText("a^b 5% \\U+0041", m_font)->setPos(40, 260);
        // Translucency is written opaque rather than lost.
        scene.addRect(QRectF(300, 150, 40, 40), Qt::NoPen, QColor(0, 0, 255, 80))->setOpacity(0.5);

        const QString fileName = m_dir.filePath("scene.dxf");
        QCOMPARE(tools2DXF(fileName, &scene), 0);
        const QByteArray raw = contents(fileName);
        const QJsonObject report = readBackDxf(fileName);
        QVERIFY(clean(report));
        const auto at = [&](const QJsonValue& v, QPointF p, double tolerance = 1e-6) {
            return near(point(v), toDxf(p), tolerance);
        };

        // The text leaves the file as ASCII with \U+ escapes and comes back as it was.
        QVERIFY(raw.contains("12.5 \\U+00B5m 45\\U+00B0"));
        QVERIFY(std::all_of(raw.begin(), raw.end(), [](char c) { return uchar(c) < 128; }));
        const QJsonArray linetypes = report["linetypes"].toArray();
        for (const char* name : {"ByBlock", "ByLayer", "Continuous", "DASHED", "DOT"})
            QVERIFY2(linetypes.contains(QString(name)), name);
        QCOMPARE(
            dxfEntityTypes(report),
            (QMap<QString, int>{
                {"LINE", 1}, {"CIRCLE", 1}, {"ELLIPSE", 1}, {"LWPOLYLINE", 3}, {"HATCH", 2}, {"TEXT", 3}}));

        const QJsonObject line = ofType(report, "LINE")[0];
        QVERIFY(at(line["start"], {10, 20}) && at(line["end"], {110, 20}));
        QCOMPARE(fields(line, {"aci", "rgb", "lineweight"}), "1 ff0000 70"); // 2 units at 72 dpi: 0.706 mm
        const QJsonObject circle = ofType(report, "CIRCLE")[0];
        QVERIFY(at(circle["center"], {180, 80}) && std::abs(circle["radius"].toDouble() - 30 * k) < 1e-6);
        QCOMPARE(fields(circle, {"linetype", "rgb", "lineweight"}), "DASHED 008000 35");
        const QJsonObject ellipse = ofType(report, "ELLIPSE")[0];
        QVERIFY(at(ellipse["center"], {300, 70}) && near(point(ellipse["major"]), QPointF(50 * k, 0), 1e-6));
        QVERIFY(std::abs(ellipse["ratio"].toDouble() - 0.4) < 1e-9);
        QCOMPARE(fields(ellipse, {"linetype", "aci"}), "DOT 5");

        // The rectangle, the ellipse path and the triangle's outline.
        const QList<QJsonObject> polylines = ofType(report, "LWPOLYLINE");
        QVERIFY(at(polylines[0]["points"][2], {100, 90}));
        QCOMPARE(fields(polylines[0], {"closed", "rgb", "aci"}), "true fa820a 30"); // nearest: (255, 127, 0)
        QVERIFY(polylines[1]["closed"].toBool() && polylines[1]["points"].toArray().size() > 8);
        const QPointF centre = toDxf(QPointF(50, 165));
        for (const QJsonValue& v : polylines[1]["points"].toArray()) {
            const QPointF d = point(v) - centre;
            QVERIFY(std::abs(std::pow(d.x() / (30 * k), 2) + std::pow(d.y() / (15 * k), 2) - 1) < 0.02);
        }

        // The filled triangle: hatch first, outline over it.
        const QList<QJsonObject> hatches = ofType(report, "HATCH");
        QCOMPARE(fields(hatches[0], {"solid", "aci"}), "true 2");
        QCOMPARE(hatches[1]["rgb"].toString(), QString("0000ff"));
        QCOMPARE(hatches[1]["loops"][0].toArray().size(), 4);
        const QJsonArray loops = hatches[0]["loops"].toArray();
        QCOMPARE(loops.size(), 1);
        QCOMPARE(loops[0].toArray().size(), 3);
        for (int i = 0; i < 3; ++i)
            QVERIFY(at(loops[0][i], triangle[i]) && at(polylines[2]["points"][i], triangle[i]));
        QVERIFY(polylines[2]["closed"].toBool());
        const QJsonArray all = report["entities"].toArray();
        qsizetype hatchAt = 0;
        while (all[hatchAt]["type"] != "HATCH")
            ++hatchAt;
        QCOMPARE(all[hatchAt + 1].toObject(), polylines[2]);

        const QList<QJsonObject> texts = ofType(report, "TEXT");
        const QFontMetricsF metrics(m_font);
        QCOMPARE(fields(texts[0], {"text", "rotation", "rgb", "aci"}),
                 QString::fromUtf8("12.5 µm 45° 0 000000 7"));
        QVERIFY(at(texts[0]["insert"], QPointF(200, 240 + metrics.ascent()), 0.5));
        QVERIFY(std::abs(texts[0]["height"].toDouble() - metrics.capHeight() * k) < 0.01);
        QCOMPARE(texts[1]["text"].toString(), QString("turned"));
        QVERIFY(std::abs(texts[1]["rotation"].toDouble() - 330.0) < 1e-6); // clockwise on screen
        QVERIFY(at(texts[1]["insert"], turned->mapToScene(QPointF(0, metrics.ascent())), 0.5));
        QCOMPARE(texts[2]["text"].toString(), QString("a^b 5% \\U+0041"));
    }

    void emptyScene_data() {
        addColumns<QRectF, QPointF>("sceneRect", "extMax");
        QTest::newRow("sized scene rectangle") << QRectF(0, 0, 200.4, 99.6) << QPointF(200, 100);
        QTest::newRow("no scene rectangle") << QRectF() << QPointF(0, 0);
    }

    void emptyScene() {
        QFETCH(QRectF, sceneRect);
        QFETCH(QPointF, extMax);
        AbstractScene scene;
        if (!sceneRect.isNull())
            scene.setSceneRect(sceneRect);
        const QString fileName = m_dir.filePath(QString("empty %1.dxf").arg(QTest::currentDataTag()));
        QCOMPARE(tools2DXF(fileName, &scene), 0);
        const QJsonObject report = readBackDxf(fileName);
        QVERIFY(clean(report));
        QCOMPARE(report["entities"].toArray().size(), 0);
        QCOMPARE(point(report["extmin"]), QPointF(0, 0));
        QCOMPARE(point(report["extmax"]), extMax);
    }

    // Shapes QPainter would otherwise turn into bitmaps keep their outline and get a solid fill of the
    // brush's mean colour.
    void brushes_data() {
        addColumns<QBrush, QPen, QString, QString>("brush", "pen", "fill", "outline");

        QLinearGradient redToBlue(20, 0, 100, 0);
        redToBlue.setColorAt(0, Qt::red);
        redToBlue.setColorAt(1, Qt::blue);
        QLinearGradient boxWide(0, 0, 1, 0);
        boxWide.setCoordinateMode(QGradient::ObjectBoundingMode);
        boxWide.setColorAt(0, Qt::white);
        boxWide.setColorAt(1, Qt::black);
        // White fading to black over the radius: rings of radius t carry weight 2t, so 1/3 white.
        QRadialGradient whiteCentre(QPointF(60, 65), 40);
        whiteCentre.setColorAt(0, Qt::white);
        whiteCentre.setColorAt(1, Qt::black);
        QImage halves(2, 1, QImage::Format_RGB32);
        halves.setPixel(0, 0, qRgb(255, 255, 255));
        halves.setPixel(1, 0, qRgb(0, 0, 0));
        const QPen pen(Qt::black, 1);

        const QString black = "000000";
        QTest::newRow("linear gradient") << QBrush(redToBlue) << pen << QString("800080") << black;
        QTest::newRow("gradient over the bounding box")
            << QBrush(boxWide) << pen << QString("808080") << black;
        QTest::newRow("radial gradient") << QBrush(whiteCentre) << pen << QString("555555") << black;
        QTest::newRow("pattern") << QBrush(QColor(0, 128, 0), Qt::Dense4Pattern) << pen << QString("008000")
                                 << black;
        QTest::newRow("texture") << QBrush(halves) << pen << QString("808080") << black;
        QTest::newRow("transparent brush") << QBrush(Qt::transparent) << pen << QString() << black;
        QTest::newRow("gradient pen")
            << QBrush() << QPen(QBrush(redToBlue), 2) << QString() << QString("800080");
    }

    void brushes() {
        QFETCH(QBrush, brush);
        QFETCH(QPen, pen);
        QFETCH(QString, fill);
        QFETCH(QString, outline);
        AbstractScene scene(kSceneRect);
        const QRectF rect(20, 40, 80, 50);
        scene.addRect(rect, pen, brush);
        const QJsonObject report = exportAndRead(scene, "brush");
        QVERIFY(!report.isEmpty());
        const QList<QPointF> corners = {rect.topLeft(), rect.topRight(), rect.bottomRight(),
                                        rect.bottomLeft()};
        const QList<QJsonObject> polylines = ofType(report, "LWPOLYLINE");
        QCOMPARE(polylines.size(), 1);
        QCOMPARE(polylines[0]["rgb"].toString(), outline);
        QCOMPARE(polylines[0]["points"].toArray().size(), 4);
        for (int i = 0; i < 4; ++i)
            QVERIFY(near(point(polylines[0]["points"][i]), toDxf(corners[i]), 1e-6));
        const QList<QJsonObject> hatches = ofType(report, "HATCH");
        QCOMPARE(hatches.size(), fill.isEmpty() ? 0 : 1);
        if (fill.isEmpty())
            return;
        QVERIFY(hatches[0]["solid"].toBool());
        QCOMPARE(hatches[0]["rgb"].toString(), fill);
        const QJsonArray loop = hatches[0]["loops"][0].toArray();
        QCOMPARE(loop.size(), 4);
        for (const QJsonValue& v : loop)
            QVERIFY(std::any_of(corners.begin(), corners.end(),
                                [&](const QPointF& c) { return near(point(v), toDxf(c), 1e-6); }));
        QCOMPARE(report["entities"].toArray().size(), 2);
    }

    // An arc drawn as arcPath draws it, shown at one scale, is an ARC whatever its span and direction;
    // stretched, bent both ways, a curve of its own or QPainterPath::arcTo's looser arc, a polyline.
    void arcsBecomeArcEntities_data() {
        // radius: 0 for no ARC
        // start: anticlockwise, y up, as DXF angles run
        addColumns<QPainterPath, QTransform, double, double, double>("path", "transform", "radius", "start",
                                                                     "end");
        // Centre (140, 140), radius 40; the arcs' angles turn clockwise on screen.
        const auto arc = [](double start, double span) {
            return arcPath(Arc{QPointF(140, 140), 40, start, span});
        };
        const QTransform none;
        QTest::newRow("quarter") << arc(0, -90) << none << 40.0 << 0.0 << 90.0;
        QTest::newRow("200 degrees clockwise") << arc(-30, 200) << none << 40.0 << 190.0 << 30.0;
        QTest::newRow("10 degrees across 0") << arc(5, -10) << none << 40.0 << 355.0 << 5.0;
        QTest::newRow("turned and doubled")
            << arc(0, -90) << QTransform().translate(140, 140).rotate(30).scale(2, 2).translate(-140, -140)
            << 80.0 << 330.0 << 60.0;
        QTest::newRow("stretched") << arc(0, -90) << QTransform::fromScale(1.5, 1) << 0.0 << 0.0 << 0.0;
        QPainterPath bend = arc(0, -90);
        bend.connectPath(arcPath(Arc{QPointF(140, 60), 40, 90, 90}));
        QTest::newRow("two arcs bending both ways") << bend << none << 0.0 << 0.0 << 0.0;
        QPainterPath cubic(QPointF(100, 100));
        cubic.cubicTo(QPointF(120, 60), QPointF(160, 60), QPointF(180, 110));
        QTest::newRow("a curve of its own") << cubic << none << 0.0 << 0.0 << 0.0;
        QPainterPath qtArc;
        qtArc.arcMoveTo(QRectF(100, 100, 80, 80), 0);
        qtArc.arcTo(QRectF(100, 100, 80, 80), 0, 90);
        QTest::newRow("QPainterPath::arcTo") << qtArc << none << 0.0 << 0.0 << 0.0;
    }

    void arcsBecomeArcEntities() {
        QFETCH(QPainterPath, path);
        QFETCH(QTransform, transform);
        QFETCH(double, radius);
        QFETCH(double, start);
        QFETCH(double, end);
        AbstractScene scene(kSceneRect);
        scene.addPath(path, QPen(Qt::blue, 1))->setTransform(transform);
        const QJsonObject report = exportAndRead(scene, "arc");
        QVERIFY(!report.isEmpty());
        const QList<QJsonObject> arcs = ofType(report, "ARC");
        QCOMPARE(arcs.size(), radius > 0 ? 1 : 0);
        QCOMPARE(ofType(report, "LWPOLYLINE").size(), radius > 0 ? 0 : 1);
        if (arcs.isEmpty())
            return;
        QVERIFY(near(point(arcs[0]["center"]), toDxf(transform.map(QPointF(140, 140))), 1e-3));
        QVERIFY(std::abs(arcs[0]["radius"].toDouble() - radius) < 1e-3);
        QVERIFY(std::abs(arcs[0]["start"].toDouble() - start) < 1e-3);
        QVERIFY(std::abs(arcs[0]["end"].toDouble() - end) < 1e-3);
        // The extents hold the whole arc, not only its ends.
        const QRectF extents =
            QRectF(point(report["extmin"]), point(report["extmax"])).adjusted(-1e-6, -1e-6, 1e-6, 1e-6);
        const double sweep = std::fmod(end - start + 360.0, 360.0);
        for (int i = 0; i <= 100; ++i) {
            const double a = (start + sweep * i / 100) * M_PI / 180;
            QVERIFY(extents.contains(point(arcs[0]["center"]) + radius * QPointF(std::cos(a), std::sin(a))));
        }
    }

    // The scene's image and pixmap items become IMAGE entities over PNG files beside the drawing, one file
    // per distinct picture, each placed where the scene shows it.
    void rasterContentBecomesImages() {
        AbstractScene scene(kSceneRect);
        QImage background(40, 30, QImage::Format_RGB32);
        for (int y = 0; y < background.height(); ++y)
            for (int x = 0; x < background.width(); ++x)
                background.setPixel(x, y, qRgb(x * 6, y * 8, 128));
        scene.setImage(background);
        QImage stamp(8, 6, QImage::Format_ARGB32);
        stamp.fill(QColor(255, 0, 0, 128));
        stamp.setPixel(0, 0, qRgba(0, 0, 255, 255));
        const QPixmap pixmap = QPixmap::fromImage(stamp);
        QGraphicsPixmapItem* turned = scene.addPixmap(pixmap);
        turned->setPos(200, 100);
        turned->setRotation(30);
        turned->setScale(2.5);
        QGraphicsPixmapItem* again = scene.addPixmap(pixmap);
        again->setPos(300, 200);

        QDir folder(m_dir.filePath("raster"));
        QVERIFY(folder.mkpath("."));
        const QJsonObject report = exportAndRead(scene, "raster/scene");
        QVERIFY(!report.isEmpty());

        const QList<QJsonObject> images = ofType(report, "IMAGE");
        QCOMPARE(images.size(), 3);
        QCOMPARE(folder.entryList({"*.png"}), QStringList({"scene-image-1.png", "scene-image-2.png"}));
        const QList<QImage> sources = {background, stamp, stamp};
        const QList<QGraphicsItem*> items = {nullptr, turned, again};
        for (int i = 0; i < 3; ++i) {
            const QJsonObject image = images[i];
            const QString file = QString("scene-image-%1.png").arg(std::min(i + 1, 2));
            QCOMPARE(image["file"].toString(), file);
            const QSize size = sources[i].size();
            QCOMPARE(point(image["size"]), QPointF(size.width(), size.height()));
            QCOMPARE(point(image["fileSize"]), QPointF(size.width(), size.height()));
            QCOMPARE(QImage(folder.filePath(file)).convertToFormat(QImage::Format_ARGB32),
                     sources[i].convertToFormat(QImage::Format_ARGB32));
            // The corners of the picture land on the corners the scene shows.
            auto scenePoint = [&](double x, double y) {
                return items[i] ? items[i]->mapToScene(QPointF(x, y)) : QPointF(x, y);
            };
            const QPointF insert = point(image["insert"]);
            const QPointF u = point(image["u"]) * size.width(), v = point(image["v"]) * size.height();
            QVERIFY(near(insert, toDxf(scenePoint(0, size.height())), 1e-6));
            QVERIFY(near(insert + u, toDxf(scenePoint(size.width(), size.height())), 1e-4));
            QVERIFY(near(insert + v, toDxf(scenePoint(0, 0)), 1e-4));
        }
    }

    // Characters beyond the basic plane leave as surrogate pairs of four-digit escapes, which readers take.
    void textBeyondTheBasicPlane_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("emoji") << QString::fromUtf8("ok \U0001F600");
        QTest::newRow("CJK extension B") << QString::fromUtf8("\U00020B9F\u5B57");
    }

    void textBeyondTheBasicPlane() {
        QFETCH(QString, text);
        AbstractScene scene(kSceneRect);
        scene.addSimpleText(text, m_font)->setPos(20, 20);
        const QJsonObject report = exportAndRead(scene, "text");
        QVERIFY(!report.isEmpty());
        const QString raw = QString::fromLatin1(
            contents(m_dir.filePath("text " + QString(QTest::currentDataTag()) + ".dxf")));
        QVERIFY(!raw.contains(QRegularExpression("\\\\U\\+[0-9A-F]{5}")));
        // Font fallback may split the label into runs.
        QString readBack;
        for (const QJsonObject& t : ofType(report, "TEXT"))
            readBack += t["text"].toString();
        QCOMPARE(readBack.remove(' '), QString(text).remove(' '));
    }

    // A write that fails says so and leaves whatever was there; tools2DXF still returns 0 and warns.
    void failedWriteIsReported_data() {
        addColumns<QString, bool>("target", "readOnly");
        QTest::newRow("missing folder") << "missing-folder/scene.dxf" << false;
        QTest::newRow("folder") << "folder.dxf" << false;
        QTest::newRow("read-only file") << "read-only.dxf" << true;
        QTest::newRow("no file name") << "" << false;
    }

    void failedWriteIsReported() {
        QFETCH(QString, target);
        QFETCH(bool, readOnly);
        const QString fileName = target.isEmpty() ? QString() : m_dir.filePath(target);
        if (target == "folder.dxf")
            QVERIFY(QDir(m_dir.path()).mkpath(target));
        if (readOnly) {
            QFile previous(fileName);
            QVERIFY(previous.open(QIODevice::WriteOnly));
            previous.write("previous");
            previous.close();
            QVERIFY(previous.setPermissions(QFileDevice::ReadOwner));
            if (QFileInfo(fileName).isWritable())
                QSKIP("this user may write read-only files");
        }
        auto listing = [this] {
            return QDir(m_dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot) +
                   QDir::current().entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        };
        const QStringList before = listing();
        AbstractScene scene(kSceneRect);
        scene.addLine(0, 0, 10, 10);
        scene.addPixmap(QPixmap(4, 4));

        QString error;
        QVERIFY(!exportSceneToDxf(fileName, &scene, &error));
        QVERIFY2(error.contains(fileName), qPrintable(error));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("tools2DXF: cannot write .*" +
                                                              QRegularExpression::escape(target)));
        QCOMPARE(tools2DXF(fileName, &scene), 0);
        QCOMPARE(listing(), before);
        QCOMPARE(contents(fileName), QByteArray(readOnly ? "previous" : ""));
    }

    // Something drawn at a non-finite or absurd position fails the export with the name of the item
    // that drew it, and the previous file stays as it was.
    void unwritableNumbersFailTheExport_data() {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        const PaintingItem::Paint turnedByNan = [=](QPainter* p) {
            p->rotate(nan);
            p->drawText(QPointF(0, 10), "12.5 mm");
        };
        // owner: the GUID name of the measuring item it belongs to
        addColumns<PaintingItem::Paint, QString>("paint", "owner");
        QTest::newRow("line to NaN") << PaintingItem::Paint([=](QPainter* p) {
            p->drawLine(QPointF(0, 0), QPointF(nan, 5));
        }) << QString();
        QTest::newRow("infinite ellipse")
            << PaintingItem::Paint([=](QPainter* p) { p->drawEllipse(QRectF(0, 0, infinity, 10)); })
            << QString();
        QTest::newRow("absurd polygon") << PaintingItem::Paint([](QPainter* p) {
            p->drawPolygon(QPolygonF({QPointF(0, 0), QPointF(1e300, 0), QPointF(0, 10)}));
        }) << QString();
        QTest::newRow("text turned by NaN") << turnedByNan << QString();
        // A transform with a non-finite translation reads as a perspective one.
        QTest::newRow("rectangle under a NaN transform") << PaintingItem::Paint([=](QPainter* p) {
            p->setTransform(QTransform(1, 0, 0, 0, 1, 0, nan, 0, 1), true);
            p->drawRect(QRectF(0, 0, 20, 10));
        }) << QString();
        QTest::newRow("label of a measuring item") << turnedByNan << QString("Ruler7");
    }

    void unwritableNumbersFailTheExport() {
        QFETCH(PaintingItem::Paint, paint);
        QFETCH(QString, owner);
        AbstractScene scene(kSceneRect);
        scene.addLine(0, 0, 10, 10);
        scene.addSimpleText("fine", m_font)->setPos(50, 50);
        const QString fileName = m_dir.filePath("numbers.dxf");
        QVERIFY(exportSceneToDxf(fileName, &scene));
        const QByteArray previous = contents(fileName);

        auto* culprit = new PaintingItem(paint);
        culprit->setPos(100, 100);
        if (owner.isEmpty()) {
            scene.addItem(culprit);
        } else {
            auto* item = new TestItem;
            item->setGUIDname(owner);
            culprit->setParentItem(item);
            scene.addItem(item);
        }
        QString error;
        QVERIFY(!exportSceneToDxf(fileName, &scene, &error));
        const QString name = owner.isEmpty() ? QString("PaintingItem") : owner;
        QVERIFY2(error.contains(fileName) && error.contains(name), qPrintable(error));
        QCOMPARE(contents(fileName), previous);
    }

    // Asked for, a path with curves keeps them: one SPLINE through the Bezier control points, its straight
    // pieces as curves with controls on them, each piece a Bezier curve of its own (knots threefold).
    void curvesAsSplines_data() {
        addColumns<bool, bool>("asked", "turned");
        QTest::newRow("asked") << true << false;
        QTest::newRow("not asked: flattened") << false << false;
        QTest::newRow("asked, under a turn") << true << true;
    }

    void curvesAsSplines() {
        QFETCH(bool, asked);
        QFETCH(bool, turned);
        QPainterPath path(QPointF(10, 10));
        path.cubicTo(QPointF(20, 40), QPointF(40, 40), QPointF(50, 10));
        path.lineTo(QPointF(80, 10));
        AbstractScene scene(kSceneRect);
        auto* item = new PaintingItem([&](QPainter* painter) {
            std::optional<VDxfCurvesAsSplines> splines;
            if (asked)
                splines.emplace();
            painter->setPen(QPen(Qt::black, 1));
            painter->drawPath(path);
        });
        item->setPos(100, 50);
        item->setRotation(turned ? 30 : 0);
        scene.addItem(item);
        const QJsonObject report = exportAndRead(scene, "splines");
        QVERIFY(!report.isEmpty());
        const QList<QJsonObject> splines = ofType(report, "SPLINE");
        QCOMPARE(splines.size(), asked ? 1 : 0);
        QCOMPARE(ofType(report, "LWPOLYLINE").size(), asked ? 0 : 1);
        if (!asked)
            return;
        QCOMPARE(splines[0]["degree"].toInt(), 3);
        QCOMPARE(splines[0]["knots"].toArray(), (QJsonArray{0, 0, 0, 0, 1, 1, 1, 2, 2, 2, 2}));
        const QList<QPointF> controls = {{10, 10}, {20, 40}, {40, 40}, {50, 10},
                                         {60, 10}, {70, 10}, {80, 10}};
        const QJsonArray written = splines[0]["controls"].toArray();
        QCOMPARE(written.size(), controls.size());
        for (int i = 0; i < controls.size(); ++i)
            QVERIFY(near(point(written[i]), toDxf(item->mapToScene(controls[i])), 1e-5));
    }

private:
    // The file is named after the prefix and the data row; the report is empty unless it is clean.
    QJsonObject exportAndRead(AbstractScene& scene, const QString& prefix);

    QTemporaryDir m_dir;
    QFont m_font;
};

QJsonObject TestDxfExport::exportAndRead(AbstractScene& scene, const QString& prefix) {
    const QString tag = QTest::currentDataTag();
    const QString name = m_dir.filePath(tag.isEmpty() ? prefix + ".dxf" : prefix + " " + tag + ".dxf");
    QString error;
    if (!exportSceneToDxf(name, &scene, &error)) {
        qWarning().noquote() << error;
        return {};
    }
    const QJsonObject report = readBackDxf(name);
    return clean(report) ? report : QJsonObject();
}

QTEST_MAIN(TestDxfExport)
#include "tst_dxfexport.moc"
