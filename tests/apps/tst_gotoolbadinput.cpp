// gotool's answers to bad input: each row runs one command in a scratch folder holding copies of
// the inputs and checks the exit status and the one line on stderr. No row may crash, take more
// than 10 s, need more than 1 GB of address space, or create or change a file.
#include "DataColumns.h"
#include "GotoolRun.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Path -> SHA-1 of every file and link under folder.
QMap<QString, QByteArray> checksums(const QString& folder) {
    QMap<QString, QByteArray> sums;
    QDirIterator it(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        QByteArray sum = info.isSymLink() ? info.symLinkTarget().toUtf8() : QByteArray("dir");
        QFile file(info.filePath());
        if (!info.isSymLink() && info.isFile() && file.open(QIODevice::ReadOnly))
            sum = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
        sums.insert(QDir(folder).relativeFilePath(info.filePath()), sum);
    }
    return sums;
}

} // namespace

class TestGotoolBadInput : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        const QDir bad(QStringLiteral(BAD_INPUTS));
        for (const QString& name : bad.entryList(QDir::Files))
            QVERIFY(QFile::copy(bad.filePath(name), m_dir.filePath(name)));
        QVERIFY(QFile::copy(QStringLiteral(SAMPLE_SCENE), m_dir.filePath("scene.dxf")));
        QVERIFY(QFile::copy(QStringLiteral(SAMPLE_SCENE), m_dir.filePath("scene.xml")));
        // The picture the sample measures goes with it.
        QVERIFY(QFile::copy(QFileInfo(QStringLiteral(SAMPLE_SCENE)).dir().filePath("hardness-test.png"),
                            m_dir.filePath("hardness-test.png")));
        QVERIFY(QFile::link("scene.xml", m_dir.filePath("link-to-scene.dxf")));
        QVERIFY(QDir(m_dir.path()).mkdir("folder.dxf"));
        // 10 MB of nested elements, and 10 MB of items.
        QFile nested(m_dir.filePath("nested.xml"));
        QVERIFY(nested.open(QIODevice::WriteOnly));
        nested.write("<scene>" + QByteArray("<a>").repeated(1700000) + QByteArray("</a>").repeated(1700000));
        QFile items(m_dir.filePath("many-items.xml"));
        QVERIFY(items.open(QIODevice::WriteOnly));
        items.write("<scene>" + QByteArray("<item class=\"LineItem\"/>\n").repeated(400000) + "</scene>");
    }

    void rows_data() {
        addColumns<QStringList, int, QString>("args", "status", "message");
        auto row = [](const char* name, const QString& args, int status, const QString& message) {
            QTest::newRow(name) << args.split(' ') << status << message;
        };
        const QString limit = QStringLiteral("beyond the limit of 32768 x 32768 and 268435456 pixels in all");
        row("output is the input", "export scene.dxf scene.dxf --force", 1,
            "scene.dxf is the input scene.dxf; refusing to overwrite it");
        row("output links to the input", "export scene.xml link-to-scene.dxf --force", 1,
            "link-to-scene.dxf is the input scene.xml; refusing to overwrite it");
        row("output is the linked image", "render linked-image.xml -o picture.png --force", 1,
            "picture.png is the input " + m_dir.filePath("picture.png") + "; refusing to overwrite it");
        row("filter onto its input", "filter picture.png -o picture.png --force --blur 2", 1,
            "picture.png is the input picture.png; refusing to overwrite it");
        row("existing output", "export scene.xml picture.png", 1,
            "picture.png exists; give --force to replace it");
        row("scene of 50000 x 50000", "export huge-scene.xml out.png", 1,
            "huge-scene.xml: not opened: the scene size 50000 x 50000 is " + limit);
        row("scene of 1e9 x 1e9", "render giant-scene.xml -o out.png", 1,
            "giant-scene.xml: not opened: the scene size 1e+09 x 1e+09 is " + limit);
        row("picture beyond the limits", "render wide-scene.xml -o out.png --scale 2", 1,
            "a picture of 65536 x 16384 pixels is " + limit);
        row("dxf into a missing folder", "export scene.xml no-folder/out.dxf", 1,
            "cannot write DXF file \"no-folder/out.dxf\": No such file or directory");
        row("dxf over a folder", "export scene.xml folder.dxf --force", 1,
            "cannot write DXF file \"folder.dxf\": Filename refers to a directory");
        row("10 MB of nested elements", "measure nested.xml", 1,
            "nested.xml: not opened: elements are nested deeper than 64");
        row("10 MB of items", "measure many-items.xml", 1,
            "many-items.xml: not opened: it holds more than 250000 items");
        // The document's own refusals (root, factor) are rows of its test; gotool only tells them.
        row("missing document", "measure no-such.xml", 1, "no-such.xml: no such file");
        row("not xml", "measure not-xml.xml", 1, "not-xml.xml: not a scene document: Start tag expected.");
        row("truncated document", "measure truncated.xml", 1,
            "truncated.xml: line 4, column 27: the document is damaged: Premature end of document.");
        row("unknown class", "measure unknown-class.xml", 0,
            "unknown-class.xml: line 4: item \"Foo1\" of unknown class \"FooItem\", skipped");
        row("missing image", "render missing-image.xml -o out.png", 1,
            "missing-image.xml: the image \"no-such-picture.png\": no such file");
        row("unreadable picture", "filter not-a-picture.png -o out.png --grayscale", 1,
            "not-a-picture.png: not a picture gotool can read: Unsupported image format");
        row("picture header of 40000 x 40000", "filter huge-header.png -o out.png --grayscale", 1,
            "huge-header.png: 40000 x 40000 pixels is " + limit);
        row("unknown filter", "filter picture.png -o out.png --frobnicate", 2,
            "unknown filter or option --frobnicate (see gotool filter --help)");
        row("filter argument", "filter picture.png -o out.png --blur x", 2,
            "--blur RADIUS: \"x\" is not a whole number from 1 to 100");
        row("filter argument out of range", "filter picture.png -o out.png --gamma inf", 2,
            "--gamma GAMMA: \"inf\" is not a number from 0.01 to 10");
        row("scale of zero", "render scene.xml -o out.png --scale 0", 2,
            "--scale 0: give a number above 0 and at most 16");
        row("scale not a number", "render scene.xml -o out.png --scale nan", 2,
            "--scale nan: give a number above 0 and at most 16");
        row("unknown format", "measure scene.xml --format xml", 2,
            "unknown format \"xml\": table, csv or json");
        row("unknown command", "frobnicate", 2, "unknown command \"frobnicate\" (see gotool --help)");
    }

    void rows() {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, message);
        const QMap<QString, QByteArray> before = checksums(m_dir.path());

        const GotoolRun r = runGotool(m_dir.path(), args, 10000);
        QVERIFY2(r.finished, "took more than 10 s");
        QCOMPARE(r.status, status);
        QCOMPARE(r.err, "gotool: " + message + '\n');
        QCOMPARE(checksums(m_dir.path()), before);
    }

private:
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(TestGotoolBadInput)
#include "tst_gotoolbadinput.moc"
