#include "DataColumns.h"
#include "DrawingView.h"
#include "TestItem.h"
#include "VariantText.h"
#include "XmlAttributes.h"
#include "XmlRead.h"

#include <QRegion>
#include <QTransform>

#include <cmath>

class TestItemXml : public QObject {
    Q_OBJECT
private slots:
    void variantToString_data() {
        addColumns<QVariant, QString>("value", "expected");
        QTest::newRow("point") << QVariant(QPointF(12.5, -3)) << "12.5x-3";
        QTest::newRow("point, six significant digits")
            << QVariant(QPointF(1.23456789, 1e-7)) << "1.23457x1e-07";
        QTest::newRow("integer point") << QVariant(QPoint(4, 5)) << "4x5";
        QTest::newRow("rectangle") << QVariant(QRectF(1, 2, 30, 40.5)) << "1x2 30x40.5";
        QTest::newRow("colour, lower-case hex") << QVariant(QColor(0xAB, 0xCD, 0xEF)) << "#abcdef";
        QTest::newRow("size") << QVariant(QSizeF(3, 4)) << "3x4";
        QTest::newRow("line") << QVariant(QLineF(1, 2, 3, 4)) << "1 x 2 at 3 x 4";
        QTest::newRow("transform") << QVariant(QTransform(1, 2, 3, 4, 5, 6, 7, 8, 9))
                                   << "[1 2 3, 4 5 6, 7 8 9]";
        QTest::newRow("string list") << QVariant(QStringList{"a", "b"}) << "a, b";
        QTest::newRow("image without pixels") << QVariant(QImage()) << "<no image>";
        QTest::newRow("region of several rects")
            << QVariant(QRegion(0, 0, 2, 2) + QRegion(5, 5, 2, 2)) << "<2 rects>";
        QTest::newRow("empty") << QVariant() << "<empty>";
        QTest::newRow("double reads back") << QVariant(0.1 + 0.2) << "0.30000000000000004";
    }

    void variantToString() {
        QFETCH(QVariant, value);
        QFETCH(QString, expected);
        QCOMPARE(::variantToString(value), expected);
    }

    void stringToVariant_data() {
        addColumns<QString, int, QVariant, bool>("text", "type", "expected", "ok");
        QTest::newRow("point") << "12.5x-3" << int(QMetaType::QPointF) << QVariant(QPointF(12.5, -3)) << true;
        QTest::newRow("point, non-number part reads 0")
            << "abcx4" << int(QMetaType::QPointF) << QVariant(QPointF(0, 4)) << true;
        QTest::newRow("point, empty part")
            << "x4" << int(QMetaType::QPointF) << QVariant(QPointF(0, 4)) << true;
        QTest::newRow("point, NaN reads 0")
            << "nanx4" << int(QMetaType::QPointF) << QVariant(QPointF(0, 4)) << true;
        QTest::newRow("point, one part") << "5" << int(QMetaType::QPointF) << QVariant() << false;
        QTest::newRow("point, three parts") << "1x2x3" << int(QMetaType::QPointF) << QVariant() << false;
        QTest::newRow("upper-case X is no separator")
            << "1X2" << int(QMetaType::QPointF) << QVariant() << false;
        QTest::newRow("empty text") << "" << int(QMetaType::QPointF) << QVariant() << true;
        QTest::newRow("rectangle") << "1x2 30x40.5" << int(QMetaType::QRectF)
                                   << QVariant(QRectF(1, 2, 30, 40.5)) << true;
        QTest::newRow("rectangle, tabs")
            << "1x2\t\t30x40" << int(QMetaType::QRectF) << QVariant(QRectF(1, 2, 30, 40)) << true;
        QTest::newRow("rectangle, too few parts") << "1x2 3" << int(QMetaType::QRectF) << QVariant() << false;
        QTest::newRow("colour") << "#abcdef" << int(QMetaType::QColor) << QVariant(QColor(0xAB, 0xCD, 0xEF))
                                << true;
        QTest::newRow("colour, garbage") << "#zz" << int(QMetaType::QColor) << QVariant() << false;
    }

    void stringToVariant() {
        QFETCH(QString, text);
        QFETCH(int, type);
        QFETCH(QVariant, expected);
        QFETCH(bool, ok);
        bool success = !ok;
        const QVariant v = ::stringToVariant(text, QMetaType::Type(type), &success);
        QCOMPARE(success, ok);
        QCOMPARE(v.isValid(), expected.isValid());
        if (expected.isValid())
            QCOMPARE(v, expected);
    }

    // The fast path must give QString::toDouble's value to the bit, and its verdict, on every text.
    void parseDoubleAgreesWithQt_data() {
        QTest::addColumn<QString>("text");
        const char* const texts[] = {"0", "-0", "12.5", "-3", "5.830951894845301", "329.03624346792645",
                                     "1e-07", "1E5", "3e-05", "0.1", "123456789012345678901234567890", ".5",
                                     "5.", "-.5", "1e308", "1e309", "-1e309", "4.9e-324", "1e-400",
                                     "1.7976931348623157e308",
                                     // Texts the fast path leaves to Qt.
                                     "+1", " 2", "3 ", "1e", "1-2", "--1", "-", ".", "e5", "", "inf", "-inf",
                                     "nan", "1,5", "0x10", "1.5e+05", "١٢", "٣", "7"};
        for (const char* text : texts)
            QTest::newRow(text[0] ? text : "empty") << QString::fromUtf8(text);
        QTest::newRow("41 digits") << QString(41, QLatin1Char('1'));
    }

    void parseDoubleAgreesWithQt() {
        QFETCH(QString, text);
        bool qtOk = false;
        const double qt = text.toDouble(&qtOk);
        bool ok = !qtOk;
        const double fast = parseDouble(text, &ok);
        QCOMPARE(ok, qtOk);
        QCOMPARE(std::signbit(fast), std::signbit(qt));
        QVERIFY2(fast == qt || (std::isnan(fast) && std::isnan(qt)),
                 qPrintable(QString::number(fast, 'g', 17)));
    }

    // Items write the same text on a flat attribute list as on a QDomElement, so files do not change.
    void attributesWriteAsDom_data() {
        QTest::addColumn<double>("value");
        for (double v :
             {0.1, 1.0 / 3, 1e21, 1.2345678901234568e17, -0.0, 2.5e-7, 100.0, 1e16, -12345.678901234567})
            QTest::newRow(qPrintable(QString::number(v, 'g', 17))) << v;
    }
    void attributesWriteAsDom() {
        QFETCH(double, value);
        QDomDocument document;
        QDomElement e = document.createElement("item");
        XmlAttributes a;
        e.setAttribute("d", value);
        a.setAttribute("d", value);
        e.setAttribute("f", float(value));
        a.setAttribute("f", float(value));
        // Whole numbers within their type's range.
        const int whole = int(std::fmod(value, 1e9));
        const qlonglong large = qlonglong(std::fmod(value, 1e18));
        e.setAttribute("i", whole);
        a.setAttribute("i", whole);
        e.setAttribute("q", large);
        a.setAttribute("q", large);
        for (const char* name : {"d", "f", "i", "q"})
            QCOMPARE(a.attribute(name), e.attribute(name));
        QCOMPARE(XmlAttributes(e).attribute("f"), e.attribute("f"));
    }

    // A value replaced in the middle leaves its neighbours; a copy given new values keeps the names
    // and lookups of its model and leaves the model as it was.
    void attributesReplaceAndShareNames() {
        XmlAttributes model;
        model.setAttribute("a", QStringLiteral("1"));
        model.setAttribute("bb", QStringLiteral("22"));
        model.setAttribute("c", QStringLiteral("333"));
        model.setAttribute("bb", QStringLiteral("x"));
        QCOMPARE(model.size(), 3);
        QCOMPARE(model.attribute("a") + model.attribute("bb") + model.attribute("c"),
                 QStringLiteral("1x333"));
        model.prepareLookups();
        XmlAttributes copy = model;
        copy.setValues(QStringLiteral("46&<"), {1, 1, 4});
        QCOMPARE(copy.attribute("c"), QStringLiteral("6&<"));
        QVERIFY(copy.hasAttribute("bb") && copy.view("bb").isEmpty() && !copy.hasAttribute("b"));
        QCOMPARE(model.attribute("c"), QStringLiteral("333"));
        // An element with far more names than an item writes is looked up through another hash.
        XmlAttributes many;
        for (int i = 0; i < 300; ++i)
            many.append(QString::number(i), QString::number(i * 7));
        for (int i = 0; i < 300; ++i)
            QCOMPARE(many.view(QString::number(i)).toInt(), i * 7);
        QVERIFY(!many.hasAttribute("300"));
    }

    // Points and rectangles are read without copies, as the variant texts read them.
    void pointsAndRectsReadAsVariantText_data() {
        QTest::addColumn<QString>("text");
        for (const char* text : {"", "x", "1x2", "1.5x-2e3", " 1x2", "1x2x3", "1x", "ax2", "1e400x2", "2e9x1",
                                 "1x2 3x4", "1x2  3x4", "1x2\t\n3x4", " 1x2 3x4", "1x2 3x4 ", "1 2 3 4",
                                 "1xx2 3", "1x2 3x4x5", "-0x-0 0x0"})
            QTest::newRow(text) << QString::fromLatin1(text);
        QTest::newRow("no-break space") << QStringLiteral("1x2\u00a03x4");
    }
    void pointsAndRectsReadAsVariantText() {
        QFETCH(QString, text);
        XmlAttributes e;
        e.setAttribute("v", text);
        const auto sane = [](double v) { return std::isfinite(v) && std::abs(v) <= 1e9; };
        QPointF point = ::stringToVariant(text, QMetaType::QPointF).toPointF();
        if (!sane(point.x()) || !sane(point.y()))
            point = QPointF();
        QRectF rect = ::stringToVariant(text, QMetaType::QRectF).toRectF();
        if (!sane(rect.x()) || !sane(rect.y()) || !sane(rect.width()) || !sane(rect.height()))
            rect = QRectF();
        QCOMPARE(readPoint(e, "v"), point);
        QCOMPARE(readRect(e, "v"), rect);
    }

    void fontComesBack() {
        const QFont font("DejaVu Serif", 13, QFont::Bold, true);
        QCOMPARE(::stringToVariant(::variantToString(font), QMetaType::QFont).value<QFont>(), font);
    }

    // Save -> load -> save, and a clone, give the same attributes; the loaded pen is round-capped and
    // -joined, and a loaded lock does not reach the handgrips.
    void commonAttributesRoundTrip() {
        TestItem item;
        item.setGUIDname("LineItem3");
        item.setLockstate(true);
        item.setgenerated(true);
        item.setTextUsage(false);
        item.setMesureIndex(7);
        item.setPen(QPen(QColor(10, 20, 30), 4, Qt::DashDotLine, Qt::FlatCap, Qt::MiterJoin));
        item.setFont(QFont("DejaVu Sans", 11));
        item.transmitFont(QFont("DejaVu Serif", 9, QFont::Bold));
        item.label()->setPos(12.5, -3);
        for (int i = 0; i < 12; ++i)
            item.setMesure(i, i * 1.1 + 0.123456789012345, -i / 3.0);

        QDomDocument doc;
        QDomElement first = doc.createElement("item");
        item.toXml(first);
        const Attributes attributes = saved(&item);
        const Attributes expected{
            {"guidname", "LineItem3"}, {"textPos", "12.5x-3"}, {"color", "#0a141e"}, {"style", "4"},
            {"locked", "1"},           {"generated", "1"},     {"textuse", "0"},     {"mesureIndex", "7"},
            {"mesureP3", "-1"}};
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QCOMPARE(it.key() + "=" + attributes.value(it.key()), it.key() + "=" + it.value());
        TestItem back;
        back.addGrip(0, 0);
        back.fromXml(first);
        QVERIFY(back.locked() && !back.handgripItems().first()->lockstate());
        QCOMPARE(back.pen(), QPen(QColor(10, 20, 30), 4, Qt::DashDotLine, Qt::RoundCap, Qt::RoundJoin));
        for (int i = 0; i < 12; ++i)
            QCOMPARE(back.accessmesure(i), item.accessmesure(i));
        QCOMPARE(saved(&back), attributes);
        QCOMPARE(saved(std::unique_ptr<AbstractBaseItem>(item.clone(8)).get()), attributes);
    }

    // Loading replaces everything: what is missing takes its default, a lone measure zeroes the others.
    void missingAttributesGiveDefaults() {
        TestItem item;
        for (int i = 0; i < 12; ++i)
            item.setMesure(i, 5, 5);
        QDomDocument doc;
        for (const char* textPos : {"", "5", "1x2x3"}) {
            QDomElement e = doc.createElement("item");
            e.setAttribute("mesure3", "2.5");
            if (*textPos)
                e.setAttribute("textPos", textPos);
            item.label()->setPos(9, 9);
            item.fromXml(e);
            QCOMPARE(item.label()->pos(), QPointF(0, 0));
        }
        QCOMPARE(item.getGUIDname(), QString());
        QVERIFY(!item.locked() && !item.generated() && !item.textusage());
        QCOMPARE(item.mesureIndex(), 0);
        QVERIFY(!item.pen().color().isValid() && item.pen().style() == Qt::NoPen && item.pen().width() == 0);
        QCOMPARE(item.font(), QFont());
        for (int i = 0; i < 12; ++i) {
            QCOMPARE(item.accessmesure(i), i == 3 ? 2.5 : 0.0);
            QCOMPARE(item.accessmesureP(i), 0.0);
        }
    }

    void badAttributeTextNeverCrashes() {
        const QStringList keys = {"guidname", "locked",  "generated", "textuse", "mesureIndex",
                                  "color",    "width",   "style",     "font1",   "font2",
                                  "textPos",  "mesure0", "mesureP11"};
        // Blank, broken pairs, non-finite, overflowing, odd colours, and bytes that are not UTF-8.
        const QStringList values =
            QString::fromUtf8(
                "| |x|1x2x3|nan|NaNxinf|-inf|1e309|99999999999999999999|-2147483649|#|#12345678901|"
                ",,,,,,,,,,|0x|\xff\xfe|9x9 9")
                .split('|');
        QDomDocument doc;
        for (const QString& key : keys) {
            for (const QString& value : values) {
                QDomElement e = doc.createElement("item");
                e.setAttribute(key, value);
                TestItem item;
                item.fromXml(e);
                QVERIFY(saved(&item).contains("mesure11"));
            }
        }
    }
};

QTEST_MAIN(TestItemXml)
#include "tst_itemxml.moc"
