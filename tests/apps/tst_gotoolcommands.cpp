// gotool's commands on good input: the measure formats, render, export and filter, and --help.
#include "DataColumns.h"
#include "GotoolRun.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

class TestGotoolCommands : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        QFile scene(m_dir.filePath("quoted.xml"));
        QVERIFY(scene.open(QIODevice::WriteOnly));
        // A 3-4-5 line of 50 pixels at 0.5 mm a pixel, with a name that CSV must quote.
        scene.write(
            "<scene factor=\"0.5\"><item class=\"LineItem\" guidname='L,\"1\"' start=\"0x0\" end=\"30x40\"/>"
            "</scene>");
        for (const char* name : {"picture.png", "linked-image.xml"})
            QVERIFY(QFile::copy(QStringLiteral(BAD_INPUTS) + '/' + name, m_dir.filePath(name)));
    }

    void csvQuotesFields() {
        const GotoolRun r = gotool({"measure", "quoted.xml", "--format", "csv"});
        QCOMPARE(r.status, 0);
        const QStringList lines = r.out.split("\r\n");
        QVERIFY2(lines.size() == 3 && lines[2].isEmpty(), qPrintable(r.out));
        QVERIFY2(lines[0].startsWith("Class,Tool,Name,Length (mm),Angle (°)"), qPrintable(lines[0]));
        QVERIFY2(lines[1].startsWith("LineItem,LineItem,\"L,\"\"1\"\"\",25,"), qPrintable(lines[1]));
    }

    void jsonValues() {
        const GotoolRun r = gotool({"measure", "quoted.xml", "--format", "json"});
        QCOMPARE(r.status, 0);
        const QJsonObject root = QJsonDocument::fromJson(r.out.toUtf8()).object();
        const QJsonObject item = root["items"].toArray().at(0).toObject();
        QCOMPARE(item["name"].toString(), QStringLiteral("L,\"1\""));
        const QJsonObject distance = item["measures"].toArray().at(0).toObject();
        QCOMPARE(distance["name"].toString(), QStringLiteral("Length"));
        QCOMPARE(distance["unit"].toString(), QStringLiteral("mm"));
        QCOMPARE(distance["value"].toDouble(), 25.0);
    }

    // The picture at twice the scene's size shows the document's image under its line.
    void renderScaled() {
        const GotoolRun r = gotool({"render", "linked-image.xml", "-o", "twice.png", "--scale", "2"});
        QVERIFY2(r.status == 0, qPrintable(r.err));
        const QImage out(m_dir.filePath("twice.png"));
        const QImage in(m_dir.filePath("picture.png"));
        QCOMPARE(out.size(), in.size() * 2);
        const QPoint away(30, 40);
        QVERIFY(qAbs(qRed(out.pixel(away * 2)) - qRed(in.pixel(away))) <= 8);
        QVERIFY(qAbs(qGreen(out.pixel(away * 2)) - qGreen(in.pixel(away))) <= 8);
        // The red line from (10,10) to (50,10) is drawn over the image.
        QCOMPARE(out.pixel(60, 20), qRgb(255, 0, 0));
    }

    void exportDxf() {
        const GotoolRun r = gotool({"export", "linked-image.xml", "drawing.dxf"});
        QCOMPARE(r.status, 0);
        QFile dxf(m_dir.filePath("drawing.dxf"));
        QVERIFY(dxf.open(QIODevice::ReadOnly));
        QVERIFY(dxf.readAll().trimmed().endsWith("EOF"));
        QCOMPARE(QDir(m_dir.path()).entryList({".gotool-*"}, QDir::Hidden | QDir::Files), QStringList());
    }

    void filterChain() {
        const GotoolRun r =
            gotool({"filter", "picture.png", "-o", "grey.png", "--brightness", "-20", "--grayscale"});
        QVERIFY2(r.status == 0, qPrintable(r.err));
        const QImage grey(m_dir.filePath("grey.png"));
        QCOMPARE(grey.size(), QSize(64, 48));
        for (const QPoint p : {QPoint(0, 0), QPoint(63, 47), QPoint(20, 30)}) {
            QCOMPARE(qRed(grey.pixel(p)), qGreen(grey.pixel(p)));
            QCOMPARE(qGreen(grey.pixel(p)), qBlue(grey.pixel(p)));
        }
    }

    void help_data() {
        QTest::addColumn<QString>("command");
        for (const char* c : {"catalogue", "measure", "export", "render", "filter"})
            QTest::newRow(c) << c;
    }
    void help() {
        QFETCH(QString, command);
        const GotoolRun r = gotool({command, "--help"});
        QCOMPARE(r.status, 0);
        QVERIFY(r.out.startsWith("usage: gotool " + command));
        QCOMPARE(r.err, QString());
    }

private:
    GotoolRun gotool(const QStringList& args) { return runGotool(m_dir.path(), args); }

    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestGotoolCommands)
#include "tst_gotoolcommands.moc"
