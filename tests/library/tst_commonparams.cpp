#include "CommonParams.h"
#include "TestItem.h"

#include <QDomDocument>
#include <QTest>

class TestCommonParams : public QObject {
    Q_OBJECT
private slots:
    void init() { setCommonParams(QMap<QString, QVariant>()); }
    void freshTableWritesDefaults();
    void fromCommonParams_data();
    void fromCommonParams();
    void saveLoadSaveIsIdentical();
    void replacingTheTableForgetsOldKeys();
    void storedNullIsReturnedAsIs();
    void itemsShareTheTable();
};

namespace {
const QStringList savedKeys = {"circle_mesureIndex",    "ellipse_mesureIndex", "polygon_mesureIndex",
                               "rectangle_mesureIndex", "line_mesureIndex",    "line_arrowFactor",
                               "line_arrowHead",        "line_arrowTail"};
}

void TestCommonParams::freshTableWritesDefaults() {
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    e.setAttribute("other", "kept");
    toCommonParams(e);
    const QStringList expected = {"5", "6", "5", "6", "1", "2", "0", "0"};
    for (int i = 0; i < savedKeys.size(); ++i)
        QCOMPARE(e.attribute(savedKeys[i]), expected[i]);
    QCOMPARE(e.attribute("other"), QString("kept"));
    QCOMPARE(e.attributes().count(), 9);
    QVERIFY(getCommonParamsRef()->isEmpty());
}

void TestCommonParams::fromCommonParams_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("number") << "3" << 3;
    QTest::newRow("missing is 0, not the default") << QString() << 0;
    QTest::newRow("trailing garbage") << "3x" << 0;
    QTest::newRow("hexadecimal is not base 10") << "0x10" << 0;
    QTest::newRow("negative") << "-1" << -1;
    QTest::newRow("too large") << "99999999999" << 0;
}

void TestCommonParams::fromCommonParams() {
    QFETCH(QString, text);
    QFETCH(int, expected);
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    if (!text.isNull())
        e.setAttribute("line_arrowFactor", text);
    ::fromCommonParams(e);
    QCOMPARE(getCommonParams("line_arrowFactor", 2).toInt(), expected);
    QCOMPARE(getCommonParams("circle_mesureIndex", 5).toInt(), 0);
    QCOMPARE(getCommonParamsRef()->size(), 8);
}

void TestCommonParams::saveLoadSaveIsIdentical() {
    QVariant v = 9;
    setCommonParams("rectangle_mesureIndex", v);
    QDomDocument doc;
    QDomElement a = doc.createElement("a");
    toCommonParams(a);
    setCommonParams(QMap<QString, QVariant>());
    ::fromCommonParams(a);
    QDomElement b = doc.createElement("b");
    toCommonParams(b);
    for (const QString& key : savedKeys)
        QCOMPARE(b.attribute(key), a.attribute(key));
    QCOMPARE(b.attribute("rectangle_mesureIndex"), QString("9"));
}

void TestCommonParams::replacingTheTableForgetsOldKeys() {
    QVariant v = 4;
    setCommonParams("line_mesureIndex", v);
    setCommonParams(QMap<QString, QVariant>{{"arc_mesureIndex", 2}});
    QCOMPARE(getCommonParams("line_mesureIndex", 1).toInt(), 1);
    QCOMPARE(getCommonParams("arc_mesureIndex", 0).toInt(), 2);
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    toCommonParams(e);
    QVERIFY(!e.hasAttribute("arc_mesureIndex"));
}

void TestCommonParams::storedNullIsReturnedAsIs() {
    QVariant null;
    setCommonParams("circle_mesureIndex", null);
    QVERIFY(!getCommonParams("circle_mesureIndex", 5).isValid());
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    toCommonParams(e);
    QCOMPARE(e.attribute("circle_mesureIndex"), QString("0"));
}

void TestCommonParams::itemsShareTheTable() {
    QVariant v = 7;
    AbstractBaseItem::setCommonParams("polygon_mesureIndex", v);
    QCOMPARE(getCommonParams("polygon_mesureIndex", 5).toInt(), 7);
    QCOMPARE(AbstractBaseItem::getCommonParams("polygon_mesureIndex", 5).toInt(), 7);
    QCOMPARE(getCommonParamsRef()->value("polygon_mesureIndex").toInt(), 7);
}

QTEST_MAIN(TestCommonParams)
#include "tst_commonparams.moc"
