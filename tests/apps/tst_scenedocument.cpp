// Scene documents: round trips of items, image, calibration and links; today's gotool scenes; and
// the documents that are refused whole or in part.
#include "DataColumns.h"
#include "DrawingView.h"
#include "TestFiles.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QBuffer>
#include <QDomDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

AbstractBaseItem* addItem(AbstractScene& scene, QString className, const Attributes& attributes) {
    AbstractBaseItem* item = loadedOn(scene, className, attributes);
    item->computeMesures(nullptr);
    return item;
}

// What the item saves, as one comparable text.
QString xmlOf(const AbstractBaseItem* item) {
    QDomDocument dom;
    QDomElement e = dom.createElement(QStringLiteral("item"));
    item->toXml(e);
    QStringList pairs;
    for (int i = 0; i < e.attributes().count(); ++i)
        pairs << e.attributes().item(i).nodeName() + '=' + e.attributes().item(i).nodeValue();
    pairs.sort();
    return pairs.join('\n');
}

QImage testPicture() {
    QImage image(40, 30, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 6, y * 8, 90));
    return image;
}

const QByteArray header = "<?xml version=\"1.0\"?>\n";

} // namespace

class TestSceneDocument : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    // Two lines share a GUID name: the text stays linked to the one it followed.
    void roundTrip() {
        AbstractScene scene;
        SceneDocument document;
        const Calibration calibration = ::calibration(0.25, "µm", 3);
        document.setCalibration(calibration);
        document.setImage(testPicture());
        scene.setSceneRect(0, 0, 40, 30);
        AbstractBaseItem* second = nullptr;
        AbstractBaseItem* text = nullptr;
        const QList<AbstractBaseItem*> drawn = {
            addItem(scene, "LineItem", {{"guidname", "LineItem1"}, {"start", "0x0"}, {"end", "100x0"}}),
            second =
                addItem(scene, "LineItem", {{"guidname", "LineItem1"}, {"start", "0x0"}, {"end", "0x40"}}),
            addItem(scene, "CircleItem", {{"guidname", "CircleItem2"}, {"rect", "10x10 20x20"}}),
            text = addItem(scene, "eTextItem", {{"text", "note"}, {"pos", "5x5"}}),
        };
        for (AbstractBaseItem* item : drawn) {
            item->setCalibration(calibration);
            item->computeMesures(nullptr);
        }
        document.setLink(text, SceneDocument::textLinkRole(), second);
        const QString first = m_dir.filePath("round.xml");
        QVERIFY2(document.save(first, &scene), qPrintable(document.errorString()));

        AbstractScene reopened;
        SceneDocument copy;
        QVERIFY2(copy.open(first, &reopened), qPrintable(copy.errorString()));
        QCOMPARE(copy.messages(), QStringList());
        QVERIFY(copy.version() == SceneDocument::Version && copy.calibration() == calibration);
        QCOMPARE(copy.size(), QSize(40, 30));
        QCOMPARE(copy.image().convertToFormat(QImage::Format_ARGB32), testPicture());
        const QList<AbstractBaseItem*> saved = document.items();
        const QList<AbstractBaseItem*> loaded = copy.items();
        QCOMPARE(loaded.size(), 4);
        for (int i = 0; i < loaded.size(); ++i) {
            QCOMPARE(loaded[i]->getType(), saved[i]->getType());
            QCOMPARE(xmlOf(loaded[i]), xmlOf(saved[i]));
            QCOMPARE(copy.reference(loaded[i]), document.reference(saved[i]));
        }
        QCOMPARE(copy.linkTarget(loaded[3], SceneDocument::textLinkRole()), loaded[1]);
        QCOMPARE(loaded[1]->accessmesure(AbstractBaseItem::Dist1), 10.0);

        // Saved again unchanged, the document is the same file.
        const QString again = m_dir.filePath("again.xml");
        QVERIFY(copy.save(again, &reopened));
        QCOMPARE(contents(again), contents(first));
    }

    // Attribute texts with markup, control or non-ASCII characters come back whole, through a
    // parser of Qt's own as through the document.
    void attributeTextsComeBack_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("markup") << QStringLiteral("a\"b<c>&d'e");
        QTest::newRow("controls") << QStringLiteral("tab\tline\ncr\r");
        QTest::newRow("non-ASCII") << QStringLiteral("µm 日本");
        QTest::newRow("empty") << QString();
    }
    void attributeTextsComeBack() {
        QFETCH(QString, name);
        AbstractScene scene;
        addItem(scene, "LineItem", {{"guidname", "before"}, {"start", "0x0"}, {"end", "10x0"}});
        addItem(scene, "LineItem", {{"guidname", name}, {"start", "0x0"}, {"end", "20x0"}});
        addItem(scene, "LineItem", {{"guidname", "after"}, {"start", "0x0"}, {"end", "30x0"}});
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        SceneDocument document;
        QVERIFY(document.write(&buffer, &scene));

        QDomDocument dom;
        QVERIFY2(dom.setContent(bytes), bytes.constData());
        QStringList names;
        for (QDomElement e = dom.documentElement().firstChildElement(QStringLiteral("item")); !e.isNull();
             e = e.nextSiblingElement(QStringLiteral("item")))
            names << e.attribute(QStringLiteral("guidname"));
        QCOMPARE(names, QStringList({"before", name, "after"}));

        buffer.close();
        buffer.open(QIODevice::ReadOnly);
        AbstractScene reopened;
        SceneDocument copy;
        QVERIFY2(copy.read(&buffer, &reopened), qPrintable(copy.errorString()));
        QCOMPARE(copy.items().size(), 3);
        QCOMPARE(copy.items().at(1)->getGUIDname(), name);
        QCOMPARE(copy.items().at(2)->accessmesure(AbstractBaseItem::Dist1), 30.0);
    }

    void todaysGotoolScene() {
        AbstractScene scene;
        SceneDocument document;
        QVERIFY2(document.open(QStringLiteral(SAMPLE_SCENE), &scene), qPrintable(document.errorString()));
        QCOMPARE(document.messages(), QStringList());
        QVERIFY(document.version() == 1 && document.calibration().factor == 0.25);
        QStringList classes;
        for (AbstractBaseItem* item : document.items())
            classes << item->getType();
        QCOMPARE(classes, QStringList({"VickersPItem", "LineItem", "CircleItem", "RectangleItem"}));
        QCOMPARE(document.items().at(1)->accessmesure(AbstractBaseItem::Dist1), 50.0);
    }

    // Documents without references: a text follows the one item that bears its link name.
    void linksByName_data() {
        addColumns<QString, bool, QString>("secondName", "linked", "message");
        QTest::newRow("unique") << "L2" << true << "";
        QTest::newRow("repeated") << "L1" << false << "\"L1\" is not the only one";
    }
    void linksByName() {
        QFETCH(QString, secondName);
        QFETCH(bool, linked);
        QFETCH(QString, message);
        const QString file = written(
            m_dir, "byname.xml",
            header +
                "<scene><item class=\"LineItem\" guidname=\"L1\" start=\"0x0\" end=\"9x0\"/>"
                "<item class=\"LineItem\" guidname=\"" +
                secondName.toUtf8() + "\"/><item class=\"eTextItem\" linkname=\"L1\" text=\"t\"/></scene>");
        AbstractScene scene;
        SceneDocument document;
        QVERIFY(document.open(file, &scene));
        AbstractBaseItem* text = document.items().at(2);
        QCOMPARE(document.linkTarget(text, SceneDocument::textLinkRole()),
                 linked ? document.items().at(0) : nullptr);
        QCOMPARE(text->getLinkName(), linked ? QStringLiteral("L1") : QString());
        QVERIFY(document.messages().join('\n').contains(message));
    }

    void refused_data() {
        addColumns<QByteArray, QString>("text", "error");
        QTest::newRow("not xml") << QByteArray("scene") << "not a scene document";
        QTest::newRow("empty") << QByteArray("") << "not a scene document";
        QTest::newRow("root") << QByteArray("<drawing/>") << "the root element is <drawing>";
        QTest::newRow("factor nan") << QByteArray("<scene factor=\"nan\"/>")
                                    << "factor=\"nan\" is not a finite number";
        QTest::newRow("factor negative") << QByteArray("<scene factor=\"-1\"/>") << "calibration factor -1";
        QTest::newRow("factor zero") << QByteArray("<scene factor=\"0\"/>") << "calibration factor 0 is not";
        QTest::newRow("factor huge") << QByteArray("<scene factor=\"1e300\"/>")
                                     << "calibration factor 1e+300";
        QTest::newRow("decimals") << QByteArray("<scene decimals=\"13\"/>") << "decimals=\"13\"";
        QTest::newRow("width only") << QByteArray("<scene width=\"10\"/>") << "scene size 10 x 0";
        QTest::newRow("side") << QByteArray("<scene width=\"32769\" height=\"1\"/>")
                              << "scene size 32769 x 1";
        QTest::newRow("pixels") << QByteArray("<scene width=\"32768\" height=\"8193\"/>")
                                << "scene size 32768 x 8193";
        QTest::newRow("height inf") << QByteArray("<scene width=\"1\" height=\"inf\"/>") << "height=\"inf\"";
        QTest::newRow("version") << QByteArray("<scene version=\"two\"/>") << "version=\"two\"";
        QTest::newRow("depth") << "<scene>" + QByteArray("<a>").repeated(64) << "nested deeper than 64";
        QTest::newRow("items") << "<scene>" + QByteArray("<item/>").repeated(SceneDocument::MaxItems + 1)
                               << QStringLiteral("more than %1 items").arg(SceneDocument::MaxItems);
        QTest::newRow("damaged") << QByteArray("<scene><item class=\"LineItem\"></scene>") << "damaged";
    }
    void refused() {
        QFETCH(QByteArray, text);
        QFETCH(QString, error);
        AbstractScene scene;
        SceneDocument document;
        QVERIFY(!document.open(written(m_dir, "refused.xml", text), &scene));
        QVERIFY2(document.errorString().contains(error), qPrintable(document.errorString()));
        QVERIFY(scene.items().isEmpty());
    }

    // Each problem is told and skipped; the good line before and after it is kept.
    void skipped_data() {
        addColumns<QByteArray, QString, int>("element", "message", "count");
        QTest::newRow("unknown class") << QByteArray("<item class=\"FooItem\" guidname=\"F\"/>")
                                       << "line 4: item \"F\" of unknown class \"FooItem\", skipped" << 2;
        QTest::newRow("no class") << QByteArray("<item/>") << "line 4: item has no class, skipped" << 2;
        QTest::newRow("unknown element")
            << QByteArray("<shape/>") << "line 4: unknown or repeated element <shape>" << 2;
        QTest::newRow("link to nothing")
            << QByteArray("<links><link item=\"a\" role=\"text\" target=\"zz\"/></links>")
            << "the text link to \"zz\" has no item to go to" << 2;
        QTest::newRow("link of nothing")
            << QByteArray("<links><link item=\"zz\" role=\"text\" target=\"a\"/></links>")
            << "a link of the missing item \"zz\"" << 2;
        QTest::newRow("reference taken") << QByteArray("<item class=\"LineItem\" ref=\"a\"/>")
                                         << "the reference \"a\" is taken; the item is now \"i1\"" << 3;
        QTest::newRow("missing image")
            << QByteArray("<image path=\"none.png\"/>") << "\"none.png\": no such file" << 2;
        QTest::newRow("bad embedded image") << QByteArray("<image encoding=\"base64\">AAAA</image>")
                                            << "the embedded image: not an image" << 2;
    }
    void skipped() {
        QFETCH(QByteArray, element);
        QFETCH(QString, message);
        QFETCH(int, count);
        const QByteArray line = "<item class=\"LineItem\" ref=\"a\" start=\"0x0\" end=\"8x0\"/>\n";
        const QByteArray lineB = "<item class=\"LineItem\" ref=\"b\" start=\"0x0\" end=\"0x5\"/>\n";
        AbstractScene scene;
        SceneDocument document;
        QVERIFY(document.open(
            written(m_dir, "skip.xml",
                    header + "<scene version=\"2\">\n" + line + element + "\n" + lineB + "</scene>"),
            &scene));
        QVERIFY2(document.messages().join('\n').contains(message),
                 qPrintable(document.messages().join('\n')));
        QCOMPARE(document.items().size(), count);
        QCOMPARE(document.items().first()->accessmesure(AbstractBaseItem::Dist1), 8.0);
    }

    void failedSaveKeepsTheDocument() {
        AbstractScene scene;
        SceneDocument document;
        addItem(scene, "LineItem", {{"start", "0x0"}, {"end", "5x5"}});
        const QString fileName = m_dir.filePath("kept.xml");
        QVERIFY(document.save(fileName, &scene));
        const QByteArray before = contents(fileName);
        addItem(scene, "CircleItem", {});
        Calibration absurd;
        absurd.factor = qInf();
        document.setCalibration(absurd);
        QVERIFY(!document.save(fileName, &scene));
        QVERIFY(document.errorString().contains("not saved"));
        QCOMPARE(contents(fileName), before);
        document.setCalibration(Calibration());
        QVERIFY(!document.save(m_dir.filePath("missing/kept.xml"), &scene));
        QVERIFY(document.errorString().contains("cannot write"));
    }

    void linkedImage() {
        QVERIFY(QDir(m_dir.path()).mkpath("pictures") && QDir(m_dir.path()).mkpath("documents"));
        const QString picture = m_dir.filePath("pictures/p.png");
        QVERIFY(testPicture().save(picture));
        AbstractScene scene;
        SceneDocument document;
        document.setImage(testPicture(), picture);
        const QString fileName = m_dir.filePath("documents/linked.xml");
        QVERIFY(document.save(fileName, &scene));
        QVERIFY(contents(fileName).contains("<image path=\"../pictures/p.png\"/>"));

        AbstractScene reopened;
        SceneDocument copy;
        QVERIFY(copy.open(fileName, &reopened));
        QCOMPARE(copy.imagePath(), QStringLiteral("../pictures/p.png"));
        QCOMPARE(QFileInfo(copy.imageFilePath()), QFileInfo(picture));
        QCOMPARE(reopened.image().convertToFormat(QImage::Format_ARGB32), testPicture());
        QCOMPARE(reopened.sceneRect(), QRectF(0, 0, 40, 30));
    }

    // Constructions find their sources by uid once every item is made; one without goes.
    void constructionLinks_data() {
        addColumns<QByteArray, int, QString>("secondSource", "count", "message");
        QTest::newRow("both sources") << QByteArray("b") << 3 << "";
        QTest::newRow("missing source") << QByteArray("zz") << 2 << "needs an item that is missing, skipped";
    }
    void constructionLinks() {
        QFETCH(QByteArray, secondSource);
        QFETCH(int, count);
        QFETCH(QString, message);
        // The distance comes first: it is linked only once the lines exist.
        const QString file =
            written(m_dir, "construction.xml",
                    header +
                        "<scene version=\"2\"><item class=\"Distance\" guidname=\"D\" source0=\"a\" "
                        "source1=\"" +
                        secondSource +
                        "\"/><item class=\"PointItem\" uid=\"a\" point=\"0x0\"/>"
                        "<item class=\"PointItem\" uid=\"b\" point=\"30x40\"/></scene>");
        AbstractScene scene;
        SceneDocument document;
        QVERIFY(document.open(file, &scene));
        QCOMPARE(document.items().size(), count);
        QVERIFY2(document.messages().join('\n').contains(message),
                 qPrintable(document.messages().join('\n')));
        if (count == 3)
            QCOMPARE(document.items().first()->accessmesure(AbstractBaseItem::Dist1), 50.0);
    }

    // Pictures are named relative to the document they are saved in, and found from it again.
    void picturesFollowTheDocument() {
        QVERIFY(QDir(m_dir.path()).mkpath("art") && QDir(m_dir.path()).mkpath("docs"));
        const QString picture = m_dir.filePath("art/p.png");
        QVERIFY(testPicture().save(picture));
        AbstractScene scene;
        auto* pixmap = static_cast<PixmapItem*>(addItem(scene, "PixmapItem", {}));
        QVERIFY(pixmap->setFileName(picture));
        SceneDocument document;
        const QString fileName = m_dir.filePath("docs/pictures.xml");
        QVERIFY(document.save(fileName, &scene));
        QCOMPARE(QFileInfo(scene.documentFolder()), QFileInfo(m_dir.filePath("docs")));
        QVERIFY(contents(fileName).contains("path=\"../art/p.png\""));

        AbstractScene reopened;
        SceneDocument copy;
        QVERIFY(copy.open(fileName, &reopened));
        QCOMPARE(QFileInfo(reopened.documentFolder()), QFileInfo(m_dir.filePath("docs")));
        auto* back = static_cast<PixmapItem*>(copy.items().at(0));
        QCOMPARE(back->image().convertToFormat(QImage::Format_ARGB32), testPicture());
    }

    // An item made again with the uid of one that went takes back its reference and links.
    void referenceFollowsTheUid() {
        AbstractScene scene;
        SceneDocument document;
        AbstractBaseItem* line = addItem(scene, "LineItem", {{"start", "0x0"}, {"end", "8x0"}});
        AbstractBaseItem* text = addItem(scene, "eTextItem", {{"text", "t"}});
        const QString uid = line->ensureUid();
        document.setLink(text, SceneDocument::textLinkRole(), line);
        QBuffer before;
        QVERIFY(before.open(QIODevice::WriteOnly) && document.write(&before, &scene));
        const QString reference = document.reference(line);
        delete line;
        AbstractBaseItem* again =
            addItem(scene, "LineItem", {{"start", "0x0"}, {"end", "8x0"}, {"uid", uid}});
        again->stackBefore(text);
        text->associate(again, nullptr);
        QCOMPARE(document.reference(again), reference);
        QBuffer after;
        QVERIFY(after.open(QIODevice::WriteOnly) && document.write(&after, &scene));
        QCOMPARE(after.data(), before.data());
    }

private:
    QTemporaryDir m_dir;
};

QTEST_MAIN(TestSceneDocument)
#include "tst_scenedocument.moc"
