#include "AbstractBaseItem.h"
#include "CommonParams.h"
#include "DataColumns.h"

#include <QDomDocument>
#include <QTest>

namespace {
QMap<QString, QString> saved() {
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    toCommonParams(e);
    QMap<QString, QString> out;
    for (int i = 0; i < e.attributes().count(); ++i)
        out.insert(e.attributes().item(i).nodeName(), e.attributes().item(i).nodeValue());
    return out;
}
} // namespace

class TestCommonParams : public QObject {
    Q_OBJECT
private slots:
    void init() { setCommonParams(QMap<QString, QVariant>()); }
    // Writing reads the table without filling it.
    void freshTableWritesDefaults() {
        QCOMPARE(saved().size(), 8);
        QVERIFY(getCommonParamsRef()->isEmpty());
    }

    void fromCommonParams_data() {
        addColumns<QString, int>("text", "expected");
        QTest::newRow("number") << "3" << 3;
        QTest::newRow("missing is 0, not the default") << QString() << 0;
        QTest::newRow("trailing garbage") << "3x" << 0;
        QTest::newRow("hexadecimal is not base 10") << "0x10" << 0;
        QTest::newRow("negative") << "-1" << -1;
        QTest::newRow("too large") << "99999999999" << 0;
    }

    void fromCommonParams() {
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

    void saveLoadSaveIsIdentical() {
        QVariant v = 9;
        AbstractBaseItem::setCommonParams("rectangle_mesureIndex", v);
        QDomDocument doc;
        QDomElement a = doc.createElement("a");
        toCommonParams(a);
        setCommonParams(QMap<QString, QVariant>());
        ::fromCommonParams(a);
        const QMap<QString, QString> again = saved();
        QCOMPARE(again.value("rectangle_mesureIndex"), QString("9"));
        QCOMPARE(again.size(), 8);
        for (auto it = again.cbegin(); it != again.cend(); ++it)
            QCOMPARE(a.attribute(it.key()), it.value());
    }

    // Old keys are forgotten, unsaved keys stay unsaved, and a stored null is returned as it is.
    void tableReplacedAsAWhole() {
        QVariant v = 4;
        setCommonParams("line_mesureIndex", v);
        setCommonParams(QMap<QString, QVariant>{{"arc_mesureIndex", 2}, {"circle_mesureIndex", QVariant()}});
        QCOMPARE(getCommonParams("line_mesureIndex", 1).toInt(), 1);
        QCOMPARE(AbstractBaseItem::getCommonParams("arc_mesureIndex", 0).toInt(), 2);
        QVERIFY(!getCommonParams("circle_mesureIndex", 5).isValid());
        const QMap<QString, QString> out = saved();
        QVERIFY(!out.contains("arc_mesureIndex"));
        QCOMPARE(out.value("circle_mesureIndex"), QString("0"));
    }
};

QTEST_MAIN(TestCommonParams)
#include "tst_commonparams.moc"
