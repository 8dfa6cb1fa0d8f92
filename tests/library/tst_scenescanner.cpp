#include "SceneScanner.h"

#include <QRandomGenerator>
#include <QTest>
#include <QXmlStreamReader>

namespace {

// What a reader tells of a document: start tags with their line and attributes, end tags, and
// the text between tags (runs joined). Empty when the reader does not read it through.
QStringList eventsOf(SceneScanner& s) {
    QStringList events;
    QString text;
    for (;;) {
        const SceneScanner::Token token = s.next();
        if (token == SceneScanner::Unsupported)
            return {};
        if (token == SceneScanner::Characters) {
            text += s.text();
            continue;
        }
        if (!text.isEmpty())
            events << QLatin1String("T ") + text;
        text.clear();
        if (token == SceneScanner::EndDocument)
            return events;
        QString event = (token == SceneScanner::StartElement ? QLatin1String("S ") : QLatin1String("E ")) +
                        s.name().toString();
        if (token == SceneScanner::StartElement) {
            event += QLatin1Char('@') + QString::number(s.lineNumber());
            for (qsizetype i = 0; i < s.attributeCount(); ++i)
                event += QLatin1Char(' ') + s.attributeName(i) + QLatin1Char('=') + s.attributeValue(i);
        }
        events << event;
    }
}

QStringList eventsOf(QXmlStreamReader& xml) {
    QStringList events;
    QString text;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isCharacters()) {
            text += xml.text();
            continue;
        }
        if (!text.isEmpty())
            events << QLatin1String("T ") + text;
        text.clear();
        if (xml.isStartElement()) {
            QString event = QLatin1String("S ") + xml.name().toString() + QLatin1Char('@') +
                            QString::number(xml.lineNumber());
            for (const QXmlStreamAttribute& a : xml.attributes())
                event +=
                    QLatin1Char(' ') + a.qualifiedName().toString() + QLatin1Char('=') + a.value().toString();
            events << event;
        } else if (xml.isEndElement()) {
            events << QLatin1String("E ") + xml.name().toString();
        }
    }
    return xml.hasError() ? QStringList{} : events;
}

// The scanner either leaves a document to QXmlStreamReader or reads it exactly as that reader does;
// it never takes a document that reader refuses.
void checkAgainstQt(const QByteArray& bytes, bool* supported = nullptr) {
    SceneScanner scanner(bytes);
    const QStringList fast = eventsOf(scanner);
    QXmlStreamReader xml(bytes);
    const QStringList reference = eventsOf(xml);
    if (supported)
        *supported = !fast.isEmpty();
    if (!fast.isEmpty())
        QCOMPARE(fast, reference);
}

const QByteArray sample =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<scene width=\"640\" height=\"480\" unit=\"&#xb5;m\">\n"
    "  <image path=\"a b.png\"/>\n"
    "  <item class=\"LineItem\" start=\"1x2\" end='3x4' text=\"a &lt;b&gt; &amp; &quot;c&quot;\"/>\n"
    "  <item class=\"TextItem\"\n        note=\"é\xe2\x82\xac\xf0\x9f\x98\x80\"/>\n"
    "  <links><link item=\"1\" role=\"r\" target=\"2\"/></links>\n"
    "</scene>\n";

} // namespace

class TestSceneScanner : public QObject {
    Q_OBJECT
private slots:
    void agreesWithQt_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("supported");
        QTest::newRow("a document as written") << sample << true;
        QTest::newRow("no declaration") << QByteArray("<scene a=\"1\"/>") << true;
        QTest::newRow("line breaks inside values and tags")
            << QByteArray("<scene\r\n a=\"x\r\ny\tz\nw\"\n\n><item b=\"&#10;&#9;\"\n/></scene>") << true;
        QTest::newRow("text with references and CR LF")
            << QByteArray("<s><image>QUJD\r\nREVG &amp;&#65;</image></s>") << true;
        QTest::newRow("standalone declaration")
            << QByteArray("<?xml version='1.0' standalone='yes' ?><s/>") << true;
        const char* const refused[] = {
            "",
            "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><s/>",
            "<?xml encoding=\"UTF-8\"?><s/>",
            "<!-- c --><s/>",
            "<!DOCTYPE s><s/>",
            "<s><![CDATA[x]]></s>",
            "<s a=\"1\" a=\"2\"/>",
            "<s a=\"1\"b=\"2\"/>",
            "<s a=\"&nbsp;\"/>",
            "<s a=\"&#0;\"/>",
            "<s a=\"<\"/>",
            "<s><i></j></s>",
            "<s>",
            "<s/><t/>",
            "<s/>x",
            "<p:s/>",
            "<s xmlns=\"u\"/>",
            "\xef\xbb\xbf<s/>",
            "<s a=\"\xc3\"/>",
            "<s a=\"\xed\xa0\x80\"/>",
            "<s a=\"\x01\"/>",
            "<s a=\"x\ry\"/>",
            "<s>]]></s>",
            "<s><?pi x?></s>",
        };
        for (const char* document : refused)
            QTest::newRow(document) << QByteArray(document) << false;
    }
    void agreesWithQt() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, supported);
        bool read = false;
        checkAgainstQt(bytes, &read);
        QCOMPARE(read, supported);
    }

    // Damaged copies of a document: whatever the damage, the scanner never gives another reading.
    void damagedDocumentsAgree() {
        QRandomGenerator random(20261122);
        const QByteArray alphabet = QByteArrayLiteral("<>&;#x\"'=/ \r\n\tab1:!?-]\xc3\xa9\x01");
        int read = 0;
        for (int round = 0; round < 3000; ++round) {
            QByteArray bytes = sample;
            for (int damage = random.bounded(1, 4); damage > 0; --damage) {
                const int at = random.bounded(int(bytes.size()));
                switch (random.bounded(3)) {
                case 0:
                    bytes.remove(at, random.bounded(1, 4));
                    break;
                case 1:
                    bytes.insert(at, alphabet[random.bounded(int(alphabet.size()))]);
                    break;
                default:
                    bytes[at] = alphabet[random.bounded(int(alphabet.size()))];
                }
            }
            bool supported = false;
            checkAgainstQt(bytes, &supported);
            if (QTest::currentTestFailed()) {
                qWarning() << "damaged document:" << bytes;
                return;
            }
            read += supported;
        }
        // Most damage is fatal; what survives (inside values and text) is read by the scanner.
        QVERIFY2(read > 100, qPrintable(QString::number(read)));
    }
};

QTEST_GUILESS_MAIN(TestSceneScanner)
#include "tst_scenescanner.moc"
