#include "AbstractScene.h"
#include "Tools2DXF.h"

#include <QFile>
#include <QFontMetricsF>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsPathItem>
#include <QGraphicsPixmapItem>
#include <QGraphicsPolygonItem>
#include <QGraphicsRectItem>
#include <QGraphicsSimpleTextItem>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

// Reads a file back through ezdxf (Debian's python3-ezdxf, installed by tools/deps.sh).
QJsonObject readBack(const QString& fileName) {
    QProcess python;
    python.start("/usr/bin/python3", {QStringLiteral(DXF_CHECKER), fileName});
    if (!python.waitForFinished(60000) || python.exitCode() != 0) {
        qWarning().noquote() << python.readAllStandardError();
        return {};
    }
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

QPointF point(const QJsonValue& v) {
    return QPointF(v[0].toDouble(), v[1].toDouble());
}

bool near(const QPointF& a, const QPointF& b, double tolerance = 1e-6) {
    return std::hypot(a.x() - b.x(), a.y() - b.y()) <= tolerance;
}

QList<QJsonObject> ofType(const QJsonObject& report, const QString& type) {
    QList<QJsonObject> found;
    for (const QJsonValue& e : report["entities"].toArray())
        if (e["type"] == type)
            found.append(e.toObject());
    return found;
}

// A reader must take the file as it is: no audit findings, no warnings, nothing it has to add.
void verifyClean(const QJsonObject& report) {
    QCOMPARE(report["version"].toString(), QString("AC1015"));
    QCOMPARE(report["errors"].toArray(), QJsonArray());
    QCOMPARE(report["fixes"].toArray(), QJsonArray());
    QCOMPARE(report["warnings"].toArray(), QJsonArray());
    QCOMPARE(report["created"].toArray(), QJsonArray());
    QVERIFY(report["handseedAboveHandles"].toBool());
    QCOMPARE(report["insunits"].toInt(), 0);
}

} // namespace

class TestDxfExport : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void sceneReadsBack();
    void emptyScene_data();
    void emptyScene();
    void unwritableFileIsReported();

private:
    QTemporaryDir m_dir;
    QJsonObject m_report;
    QByteArray m_raw;
    QFont m_font;
};

void TestDxfExport::initTestCase() {
    QVERIFY(QFile::exists("/usr/bin/python3"));
    QVERIFY(m_dir.isValid());
}

// Exported entities against the scene's own geometry, mapped as QGraphicsScene::render maps it (the
// scene rectangle onto the device, aspect kept) and then turned y-up on the device's height.
void TestDxfExport::sceneReadsBack() {
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
    // Translucency is written opaque rather than lost; bitmaps are left out.
    scene.addRect(QRectF(300, 150, 40, 40), Qt::NoPen, QColor(0, 0, 255, 80))->setOpacity(0.5);
    QImage bitmap(16, 16, QImage::Format_RGB32);
    bitmap.fill(Qt::red);
    scene.addPixmap(QPixmap::fromImage(bitmap))->setPos(300, 200);

    const QString fileName = m_dir.filePath("scene.dxf");
    QCOMPARE(tools2DXF(fileName, &scene), 0);
    QFile raw(fileName);
    QVERIFY(raw.open(QIODevice::ReadOnly));
    m_raw = raw.readAll();
    m_report = readBack(fileName);
    QVERIFY2(!m_report.isEmpty(), "ezdxf could not read the file");
    verifyClean(m_report);
    if (QTest::currentTestFailed())
        return;

    // The text leaves the file as ASCII with \U+ escapes and comes back as it was.
    QVERIFY(m_raw.contains("12.5 \\U+00B5m 45\\U+00B0"));
    for (char c : m_raw)
        QVERIFY(uchar(c) < 128);

    const QJsonArray linetypes = m_report["linetypes"].toArray();
    for (const char* name : {"ByBlock", "ByLayer", "Continuous", "DASHED", "DOT"})
        QVERIFY2(linetypes.contains(QString(name)), name);

    const QList<QJsonObject> lines = ofType(m_report, "LINE");
    QCOMPARE(lines.size(), 1);
    QVERIFY(near(point(lines[0]["start"]), toDxf(QPointF(10, 20))));
    QVERIFY(near(point(lines[0]["end"]), toDxf(QPointF(110, 20))));
    QCOMPARE(lines[0]["aci"].toInt(), 1);
    QCOMPARE(lines[0]["rgb"].toString(), QString("ff0000"));
    QCOMPARE(lines[0]["lineweight"].toInt(), 70); // 2 units at 72 dpi: 0.706 mm

    const QList<QJsonObject> circles = ofType(m_report, "CIRCLE");
    QCOMPARE(circles.size(), 1);
    QVERIFY(near(point(circles[0]["center"]), toDxf(QPointF(180, 80))));
    QVERIFY(std::abs(circles[0]["radius"].toDouble() - 30 * k) < 1e-6);
    QCOMPARE(circles[0]["linetype"].toString(), QString("DASHED"));
    QCOMPARE(circles[0]["rgb"].toString(), QString("008000"));
    QCOMPARE(circles[0]["lineweight"].toInt(), 35);

    const QList<QJsonObject> ellipses = ofType(m_report, "ELLIPSE");
    QCOMPARE(ellipses.size(), 1);
    QVERIFY(near(point(ellipses[0]["center"]), toDxf(QPointF(300, 70))));
    QVERIFY(near(point(ellipses[0]["major"]), QPointF(50 * k, 0)));
    QVERIFY(std::abs(ellipses[0]["ratio"].toDouble() - 0.4) < 1e-9);
    QCOMPARE(ellipses[0]["linetype"].toString(), QString("DOT"));
    QCOMPARE(ellipses[0]["aci"].toInt(), 5);

    const QList<QJsonObject> polylines = ofType(m_report, "LWPOLYLINE");
    QCOMPARE(polylines.size(), 3); // rectangle, ellipse path, triangle outline
    const QJsonObject rectangle = polylines[0];
    QVERIFY(rectangle["closed"].toBool());
    const QJsonArray corners = rectangle["points"].toArray();
    QCOMPARE(corners.size(), 4);
    const QList<QPointF> expectedCorners = {QPointF(20, 40), QPointF(100, 40), QPointF(100, 90),
                                            QPointF(20, 90)};
    for (int i = 0; i < 4; ++i)
        QVERIFY(near(point(corners[i]), toDxf(expectedCorners[i])));
    QCOMPARE(rectangle["rgb"].toString(), QString("fa820a"));
    QCOMPARE(rectangle["aci"].toInt(), 30); // nearest index colour (255, 127, 0)

    const QJsonObject flattened = polylines[1];
    QVERIFY(flattened["closed"].toBool());
    QVERIFY(flattened["points"].toArray().size() > 8);
    const QPointF centre = toDxf(QPointF(50, 165));
    for (const QJsonValue& v : flattened["points"].toArray()) {
        const QPointF d = point(v) - centre;
        QVERIFY(std::abs(std::pow(d.x() / (30 * k), 2) + std::pow(d.y() / (15 * k), 2) - 1) < 0.02);
    }

    // The filled triangle: hatch first, outline over it.
    const QList<QJsonObject> hatches = ofType(m_report, "HATCH");
    QCOMPARE(hatches.size(), 2);
    QCOMPARE(hatches[1]["rgb"].toString(), QString("0000ff"));
    QCOMPARE(hatches[1]["loops"][0].toArray().size(), 4);
    QVERIFY(hatches[0]["solid"].toBool());
    QCOMPARE(hatches[0]["aci"].toInt(), 2);
    const QJsonArray loops = hatches[0]["loops"].toArray();
    QCOMPARE(loops.size(), 1);
    QCOMPARE(loops[0].toArray().size(), 3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(near(point(loops[0][i]), toDxf(triangle[i])));
        QVERIFY(near(point(polylines[2]["points"][i]), toDxf(triangle[i])));
    }
    QVERIFY(polylines[2]["closed"].toBool());
    const QJsonArray all = m_report["entities"].toArray();
    qsizetype hatchAt = 0;
    while (all[hatchAt]["type"] != "HATCH")
        ++hatchAt;
    QCOMPARE(all[hatchAt + 1].toObject(), polylines[2]);

    const QList<QJsonObject> texts = ofType(m_report, "TEXT");
    QCOMPARE(texts.size(), 3);
    QCOMPARE(texts[2]["text"].toString(), QString("a^b 5% \\U+0041"));
    const QFontMetricsF metrics(m_font);
    QCOMPARE(texts[0]["text"].toString(), QString::fromUtf8("12.5 µm 45°"));
    QVERIFY(near(point(texts[0]["insert"]), toDxf(QPointF(200, 240 + metrics.ascent())), 0.5));
    QVERIFY(std::abs(texts[0]["height"].toDouble() - metrics.capHeight() * k) < 0.01);
    QCOMPARE(texts[0]["rotation"].toDouble(), 0.0);
    QCOMPARE(texts[0]["rgb"].toString(), QString("000000"));
    QCOMPARE(texts[0]["aci"].toInt(), 7);
    QCOMPARE(texts[1]["text"].toString(), QString("turned"));
    QVERIFY(std::abs(texts[1]["rotation"].toDouble() - 330.0) < 1e-6); // clockwise on screen
    const QPointF turnedBaseline = turned->mapToScene(QPointF(0, metrics.ascent()));
    QVERIFY(near(point(texts[1]["insert"]), toDxf(turnedBaseline), 0.5));

    QCOMPARE(all.size(), 11);
    const QRectF extents(point(m_report["extmin"]), point(m_report["extmax"]));
    for (const QJsonObject& polyline : polylines)
        for (const QJsonValue& v : polyline["points"].toArray())
            QVERIFY(extents.adjusted(-1e-6, -1e-6, 1e-6, 1e-6).contains(point(v)));
}

void TestDxfExport::emptyScene_data() {
    QTest::addColumn<QRectF>("sceneRect");
    QTest::addColumn<QPointF>("extMax");
    QTest::newRow("sized scene rectangle") << QRectF(0, 0, 200.4, 99.6) << QPointF(200, 100);
    QTest::newRow("no scene rectangle") << QRectF() << QPointF(0, 0);
}

void TestDxfExport::emptyScene() {
    QFETCH(QRectF, sceneRect);
    QFETCH(QPointF, extMax);
    AbstractScene scene;
    if (!sceneRect.isNull())
        scene.setSceneRect(sceneRect);
    const QString fileName =
        m_dir.filePath(QString("empty-%1.dxf").arg(QTest::currentDataTag()).replace(' ', '-'));
    QCOMPARE(tools2DXF(fileName, &scene), 0);
    QVERIFY(QFile::exists(fileName));
    const QJsonObject report = readBack(fileName);
    QVERIFY(!report.isEmpty());
    verifyClean(report);
    if (QTest::currentTestFailed())
        return;
    QCOMPARE(report["entities"].toArray().size(), 0);
    QCOMPARE(point(report["extmin"]), QPointF(0, 0));
    QCOMPARE(point(report["extmax"]), extMax);
}

void TestDxfExport::unwritableFileIsReported() {
    AbstractScene scene;
    scene.addLine(0, 0, 10, 10);
    const QString fileName = m_dir.filePath("missing-folder/scene.dxf");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression("cannot write DXF file .*missing-folder/scene.dxf"));
    QCOMPARE(tools2DXF(fileName, &scene), 0);
    QVERIFY(!QFile::exists(fileName));
}

QTEST_MAIN(TestDxfExport)
#include "tst_dxfexport.moc"
