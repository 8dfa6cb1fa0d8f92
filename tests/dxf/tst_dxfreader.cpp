#include "DataColumns.h"
#include "DxfReader.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>

namespace {

using Polylines = QList<QPolygonF>;

// The subpaths of a path as dense polylines, curves sampled exactly rather than flattened.
Polylines sampled(const QPainterPath& path) {
    Polylines out;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isMoveTo() || out.isEmpty()) {
            out.append(QPolygonF{QPointF(e)});
            continue;
        }
        QPolygonF& line = out.last();
        const QPointF from = line.last();
        if (e.isLineTo()) {
            for (int k = 1; k <= 8; ++k)
                line.append(from + (QPointF(e) - from) * k / 8.0);
            continue;
        }
        const QPointF c1(e), c2(path.elementAt(i + 1)), to(path.elementAt(i + 2));
        i += 2;
        for (int k = 1; k <= 64; ++k) {
            const double t = k / 64.0, s = 1 - t;
            line.append(s * s * s * from + 3 * s * s * t * c1 + 3 * s * t * t * c2 + t * t * t * to);
        }
    }
    return out;
}

QPolygonF curve(const std::function<QPointF(double)>& f, double from, double to, int steps = 400) {
    QPolygonF out;
    for (int i = 0; i <= steps; ++i)
        out.append(f(from + (to - from) * i / steps));
    return out;
}

// The arc of the ellipse of centre c and semi-axes rx, ry from angle a to angle b, in radians.
QPolygonF ellipseArc(QPointF c, double rx, double ry, double a, double b) {
    return curve([=](double t) { return c + QPointF(rx * std::cos(t), ry * std::sin(t)); }, a, b);
}

double degrees(double d) {
    return d * M_PI / 180.0;
}

QString described(const DxfText& t) {
    return QString("%1 at (%2, %3) height %4 turned %5 aligned %6")
        .arg(t.text)
        .arg(t.position.x())
        .arg(t.position.y())
        .arg(t.height)
        .arg(t.rotationDegrees)
        .arg(int(t.alignment));
}

double distance(const QPointF& p, const Polylines& lines) {
    double best = std::numeric_limits<double>::infinity();
    for (const QPolygonF& line : lines) {
        for (qsizetype i = 0; i < line.size(); ++i) {
            const QPointF a = line[i], b = line[std::min(i + 1, line.size() - 1)];
            const QPointF ab = b - a;
            const double l2 = QPointF::dotProduct(ab, ab);
            const double t = l2 > 0 ? std::clamp(QPointF::dotProduct(p - a, ab) / l2, 0.0, 1.0) : 0.0;
            const QPointF d = p - (a + t * ab);
            best = std::min(best, std::hypot(d.x(), d.y()));
        }
    }
    return best;
}

// Largest distance from either set of polylines to the other.
double hausdorff(const Polylines& a, const Polylines& b) {
    if (a.isEmpty() || b.isEmpty())
        return std::numeric_limits<double>::infinity();
    double worst = 0;
    for (const QPolygonF& line : a)
        for (const QPointF& p : line)
            worst = std::max(worst, distance(p, b));
    for (const QPolygonF& line : b)
        for (const QPointF& p : line)
            worst = std::max(worst, distance(p, a));
    return worst;
}

Polylines layerPath(const DxfModel& model, const char* name) {
    const DxfLayer* layer = model.layer(name);
    return layer ? sampled(layer->path) : Polylines();
}

int subpaths(const DxfModel& model) {
    int count = 0;
    for (const DxfLayer& layer : model.layers)
        for (int i = 0; i < layer.path.elementCount(); ++i)
            count += layer.path.elementAt(i).isMoveTo();
    return count;
}

// Builders of small files for the bad-input table.
QByteArray section(const QByteArray& name, const QByteArray& body) {
    return "0\nSECTION\n2\n" + name + "\n" + body + "0\nENDSEC\n";
}
QByteArray dxf(const QByteArray& entities, const QByteArray& blocks = {}) {
    return section("BLOCKS", blocks) + section("ENTITIES", entities) + "0\nEOF\n";
}
QByteArray line(const QByteArray& x = "0") {
    return "0\nLINE\n8\n0\n10\n" + x + "\n20\n0\n11\n1\n21\n1\n";
}
QByteArray block(const QByteArray& name, const QByteArray& body) {
    return "0\nBLOCK\n2\n" + name + "\n10\n0\n20\n0\n" + body + "0\nENDBLK\n";
}
QByteArray insert(const QByteArray& name, const QByteArray& more = {}) {
    return "0\nINSERT\n2\n" + name + "\n10\n0\n20\n0\n" + more;
}

bool runs(const QStringList& arguments) {
    QProcess python;
    python.start("/usr/bin/python3", arguments);
    const bool ok = python.waitForFinished(60000) && python.exitStatus() == QProcess::NormalExit &&
                    python.exitCode() == 0;
    if (!ok)
        qWarning().noquote() << python.readAllStandardError();
    return ok;
}

} // namespace

class TestDxfReader : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void samples_data();
    void samples();
    void texts_data();
    void texts();
    void badInput_data();
    void badInput();
    void millionEntities();

private:
    QTemporaryDir m_dir;
    bool m_haveSamples = false;
};

void TestDxfReader::initTestCase() {
    QVERIFY(m_dir.isValid());
    m_haveSamples = runs({"-c", "import ezdxf"});
    if (m_haveSamples)
        QVERIFY(runs({QStringLiteral(SAMPLE_MAKER), m_dir.path()}));
}

void TestDxfReader::samples_data() {
    QTest::addColumn<QString>("version");
    QTest::newRow("R12") << "R12";
    QTest::newRow("R2010") << "R2010";
}

// Every entity of the samples against its closed form (the values of make_reader_samples.py).
void TestDxfReader::samples() {
    QFETCH(QString, version);
    if (!m_haveSamples)
        QSKIP("/usr/bin/python3 with ezdxf is needed to write the samples");
    const bool modern = version != "R12";
    DxfReadOptions options;
    options.tolerance = 0.01;
    const QString fileName = m_dir.filePath(QString("reader-%1.dxf").arg(version));
    const DxfModel m = readDxfFile(fileName, options);
    QVERIFY2(m.report.error.isEmpty(), qPrintable(m.report.error));
    QVERIFY2(m.report.problems.isEmpty(), qPrintable(m.report.toText()));
    QCOMPARE(m.version, modern ? QString("AC1024") : QString("AC1009"));
    QCOMPARE(m.insunits, modern ? 4 : 0);

    QCOMPARE(m.layer("LINE")->color, QColor(255, 0, 0));
    QCOMPARE(m.layer("circle")->color, QColor(255, 127, 0));
    QCOMPARE(m.layer("ellipse")->color, modern ? QColor(0x12, 0x34, 0x56) : QColor(0, 0, 255));
    QVERIFY(m.layer("line")->visible);
    for (const char* hidden : {"off", "frozen"})
        QVERIFY(!m.layer(hidden)->visible && !m.layer(hidden)->path.isEmpty());

    const double arcs = 0.01; // Qt's cubic arcs stray 2.7e-4 radius from the circle
    QVERIFY(hausdorff(layerPath(m, "line"), {QPolygonF{QPointF(0, 0), QPointF(100, 50)}}) < 1e-9);
    QVERIFY(hausdorff(layerPath(m, "circle"), {ellipseArc({50, 50}, 20, 20, 0, 2 * M_PI)}) < arcs);
    QVERIFY(hausdorff(layerPath(m, "arc"), {ellipseArc({150, 50}, 30, 30, degrees(30), degrees(120))}) <
            arcs);
    QVERIFY(hausdorff(layerPath(m, "mirrored"), {ellipseArc({-50, 300}, 10, 10, degrees(90), M_PI)}) < arcs);
    // Bulge -0.5 from (100, 100) to (140, 100): clockwise around (120, 85), radius 25, through (120, 110).
    QPolygonF polyline = ellipseArc({120, 85}, 25, 25, std::atan2(15, -20), std::atan2(15, 20));
    polyline << QPointF(140, 130) << QPointF(100, 100);
    QVERIFY(hausdorff(layerPath(m, "polyline"), {polyline}) < arcs);

    QCOMPARE(m.layer("point")->points, QList<QPointF>{QPointF(10, -10)});
    QCOMPARE(described(m.layer("text")->texts.value(0)),
             described({QString::fromUtf8("Hello ⌀10"), {0, -50}, 5, 30}));
    QCOMPARE(described(m.layer("centred")->texts.value(0)),
             described({"mid", {50, -50}, 2, 0, Qt::AlignHCenter | Qt::AlignVCenter}));

    // SQUARE (base 5, 5) scaled 2 by 3, turned 90 degrees, at (200, 200); layer 0 takes the insert's.
    const QPolygonF square{QPointF(215, 190), QPointF(215, 210), QPointF(185, 210), QPointF(185, 190),
                           QPointF(215, 190)};
    QVERIFY(hausdorff(layerPath(m, "insert"), {square}) < 1e-9);
    // PAIR (two squares) in 2 columns and 3 rows 50 and 40 apart.
    QCOMPARE(layerPath(m, "array").size(), 12);
    QCOMPARE(m.layer("array")->path.boundingRect(), QRectF(QPointF(300, 300), QPointF(380, 390)));

    const QMap<QString, qint64>& read = m.report.read;
    QCOMPARE((QList<qint64>{read["LINE"], read["ARC"], read["POLYLINE"], read["INSERT"]}),
             (QList<qint64>{3, 2, 2, 4}));
    QCOMPARE(m.report.unsupported, (QMap<QString, qint64>{{"SOLID", 1}}));
    QCOMPARE(m.extents.topLeft(), QPointF(-60, modern ? -100 : -50));
    if (!modern)
        return;

    // Bulge 1 from (0, 100) to (40, 100): the half circle below the chord.
    QVERIFY(hausdorff(layerPath(m, "lwpolyline"),
                      {ellipseArc({20, 100}, 20, 20, M_PI, 2 * M_PI) << QPointF(40, 140)}) < arcs);
    QVERIFY(hausdorff(layerPath(m, "ellipse"), {ellipseArc({300, 50}, 40, 20, 0, M_PI)}) < arcs);
    const auto bezier = [](double t) {
        const double s = 1 - t;
        return s * s * s * QPointF(0, 200) + 3 * s * s * t * QPointF(30, 260) +
               3 * s * t * t * QPointF(70, 140) + t * t * t * QPointF(100, 200);
    };
    QVERIFY(hausdorff(layerPath(m, "spline"), {curve(bezier, 0, 1)}) <= options.tolerance);
    const Polylines quarter = layerPath(m, "rational");
    QVERIFY(hausdorff(quarter, {ellipseArc({200, 400}, 50, 50, 0, M_PI / 2)}) <= options.tolerance);
    for (const QPointF& p : m.layer("rational")->path.toFillPolygon())
        QVERIFY(std::abs(std::hypot(p.x() - 200, p.y() - 400) - 50) < 1e-9);
    for (const QPointF& fit : {QPointF(0, 500), QPointF(20, 520), QPointF(40, 500), QPointF(60, 520)})
        QVERIFY(distance(fit, layerPath(m, "fitspline")) < 1e-9);

    DxfReadOptions coarse;
    coarse.tolerance = 1.0;
    const DxfModel rough = readDxfFile(fileName, coarse);
    QVERIFY(rough.layer("spline")->path.elementCount() < m.layer("spline")->path.elementCount());
    QVERIFY(hausdorff(layerPath(rough, "spline"), {curve(bezier, 0, 1)}) <= coarse.tolerance);

    QCOMPARE(described(m.layer("mtext")->texts.value(0)),
             described({QString::fromUtf8("Bold line\nnext 1/2 °"),
                        {0, -100},
                        4,
                        45,
                        Qt::AlignHCenter | Qt::AlignVCenter}));
    QCOMPARE(m.report.read.value("SPLINE"), qint64(3));
}

void TestDxfReader::texts_data() {
    addColumns<QByteArray, QString>("entity", "expected");
    auto text = [](const QByteArray& value) { return "0\nTEXT\n10\n0\n20\n0\n40\n1\n1\n" + value + "\n"; };
    auto mtext = [](const QByteArray& value) { return "0\nMTEXT\n10\n0\n20\n0\n40\n1\n1\n" + value + "\n"; };
    QTest::newRow("TEXT symbols") << text("%%d %%p %%c %%%") << QString::fromUtf8("° ± ⌀ %");
    QTest::newRow("TEXT underline switches") << text("a%%ub%%U") << "ab";
    QTest::newRow("TEXT character number") << text("%%176C") << QString::fromUtf8("°C");
    QTest::newRow("TEXT unicode escape") << text("12\\U+00B5m") << QString::fromUtf8("12µm");
    QTest::newRow("TEXT caret") << text("a^ b") << "a^b";
    QTest::newRow("TEXT backslash is literal") << text("a\\Pb") << "a\\Pb";
    QTest::newRow("MTEXT fonts, colours, groups")
        << mtext("\\A1;{\\H2.5x;\\C1;red} \\Lunder\\l") << "red under";
    QTest::newRow("MTEXT paragraphs, hard spaces") << mtext("a\\Pb\\~c") << "a\nb c";
    QTest::newRow("MTEXT stacked tolerance") << mtext("\\S+0.1^-0.2;") << "+0.1/-0.2";
    QTest::newRow("MTEXT escaped braces") << mtext("\\\\ \\{x\\}") << "\\ {x}";
    QTest::newRow("MTEXT chunks") << QByteArray("0\nMTEXT\n3\nabc\n3\ndef\n1\nghi\n") << "abcdefghi";
    QTest::newRow("MTEXT unterminated code") << mtext("x\\fArial") << "x";
}

void TestDxfReader::texts() {
    QFETCH(QByteArray, entity);
    QFETCH(QString, expected);
    const DxfModel m = readDxf(dxf(entity));
    QCOMPARE(m.layer("0")->texts.size(), 1);
    QCOMPARE(m.layer("0")->texts[0].text, expected);
}

void TestDxfReader::badInput_data() {
    // expected: in the report; empty when there is nothing to report
    // drawn: subpaths drawn; -1 for any
    const auto row = addColumns<QByteArray, QString, int>("input", "expected", "drawn");

    QByteArray junk(4096, '\0');
    QRandomGenerator random(42);
    for (char& c : junk)
        c = char(random.bounded(256));
    const QByteArray twoLines = section("ENTITIES", line() + line());
    QByteArray chain;
    for (int i = 0; i < 40; ++i)
        chain += block("B" + QByteArray::number(i), line() + insert("B" + QByteArray::number(i + 1)));
    QByteArray manyTypes;
    for (int i = 0; i < 1100; ++i)
        manyTypes += "0\nTYPE" + QByteArray::number(i) + "\n";

    row("empty", QByteArray(), "error: the file is empty", 0);
    row("binary DXF", QByteArray("AutoCAD Binary DXF\r\n\x1a\0", 22), "error: binary DXF", 0);
    row("binary junk", junk, "error: not a DXF file", 0);
    row("line ends CR LF", dxf(line() + line()).replace("\n", "\r\n"), "", 2);
    row("paper space", dxf(line() + "0\nCIRCLE\n67\n1\n40\n1\n"), "1 entities of paper space", 1);
    row("unknown entity", dxf(line() + "0\nFOO\n10\n1\n"), "unsupported: FOO 1", 1);
    row("many unknown types", dxf(manyTypes), "(other types) 100", 0);
    row("truncated", twoLines.left(twoLines.size() - 20), "ends early", 1);
    row("no EOF", twoLines, "ends early", 2);
    // The entity that the fault interrupts is dropped with the rest.
    row("odd group code", dxf(line() + "0\nLINE\n10\n0\nabc\nx\n" + line()), "no group code", 1);
    row("group code too large", dxf(line() + "0\nLINE\n99999\nx\n" + line()), "no group code", 1);
    for (const char* x : {"nan", "inf", "-1e300", "1e999", "12abc", ""})
        QTest::addRow("coordinate '%s'", x) << dxf(line() + line(x)) << "refused, bad values: LINE 1" << 1;
    row("bulge 1e300", dxf("0\nLWPOLYLINE\n10\n0\n20\n0\n42\n1e300\n10\n1\n20\n0\n"), "LWPOLYLINE 1", 0);
    row("vertex count lies", dxf("0\nLWPOLYLINE\n90\n2147483647\n10\n0\n20\n0\n10\n1\n20\n0\n"), "", 1);
    row("POLYLINE without SEQEND",
        dxf("0\nPOLYLINE\n66\n1\n0\nVERTEX\n10\n0\n20\n0\n0\nVERTEX\n10\n1\n20\n1\n" + line()), "", 2);
    row("spline knots do not match", dxf("0\nSPLINE\n71\n1\n40\n0\n40\n1\n10\n0\n20\n0\n10\n1\n20\n1\n"),
        "SPLINE 1", 0);
    row("spline degree 99",
        dxf("0\nSPLINE\n71\n99\n40\n0\n40\n0\n40\n1\n40\n1\n10\n0\n20\n0\n10\n1\n20\n1\n"), "SPLINE 1", 0);
    row("undefined block", dxf(insert("NOWHERE")), "\"NOWHERE\" is inserted but not defined", 0);
    row("cyclic blocks",
        dxf(insert("A"), block("A", line() + insert("B")) + block("B", line() + insert("A"))),
        "blocks insert themselves: A > B > A", 2);
    row("block inserting itself", dxf(insert("A"), block("A", line() + insert("a"))),
        "blocks insert themselves: A > A", 1);
    row("deep nesting", dxf(insert("B0"), chain), "nested deeper than 16 levels", 16);
    row("huge array", dxf(insert("A", "70\n32767\n71\n32767\n"), block("A", line())),
        "more than 10000 entities", -1);
    row("negative array counts", dxf(insert("A", "70\n-5\n71\n-7\n"), block("A", line())), "", 1);
    row("huge scale", dxf(insert("A", "41\n1e300\n"), block("A", line())), "INSERT 1", 0);
    row("scales multiplying past reason",
        dxf(insert("A", "41\n1e7\n42\n1e7\n"),
            block("A", insert("B", "41\n1e7\n42\n1e7\n")) + block("B", line())),
        "refused, bad values: INSERT 1", 0);
}

void TestDxfReader::badInput() {
    QFETCH(QByteArray, input);
    QFETCH(QString, expected);
    QFETCH(int, drawn);
    DxfReadOptions options;
    options.maxEntities = 10000;
    options.maxVertices = 100000;
    const DxfModel m = readDxf(input, options);
    const QString report = m.report.toText();
    if (expected.isEmpty())
        QVERIFY2(m.report.problems.isEmpty() && m.report.refused.isEmpty() && m.report.error.isEmpty(),
                 qPrintable(report));
    else
        QVERIFY2(report.contains(expected), qPrintable(report));
    if (drawn >= 0)
        QCOMPARE(subpaths(m), drawn);
    QVERIFY(m.report.placed <= options.maxEntities + 1);
    QVERIFY(m.extents.isNull() || (std::isfinite(m.extents.width()) && std::isfinite(m.extents.height())));
}

// A million entities are all read; below the bound, reading stops and says so.
void TestDxfReader::millionEntities() {
    const QByteArray one = line("5");
    QByteArray entities;
    entities.reserve(one.size() * 1000000);
    for (int i = 0; i < 1000000; ++i)
        entities += one;
    const QByteArray file = dxf(entities);
    const DxfModel all = readDxf(file);
    QCOMPARE(all.report.read.value("LINE"), qint64(1000000));
    QVERIFY(all.layer("0")->path.elementCount() == 2000000 && all.report.problems.isEmpty());

    DxfReadOptions bounded;
    bounded.maxEntities = 1000;
    const DxfModel some = readDxf(file, bounded);
    QCOMPARE(some.layer("0")->path.elementCount(), 2000);
    QVERIFY(some.report.limitReached && some.report.toText().contains("more than 1000 entities"));
}

QTEST_MAIN(TestDxfReader)
#include "tst_dxfreader.moc"
