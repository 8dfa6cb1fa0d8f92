#include "CommonParams.h"

#include <QDomDocument>
#include <QTest>

class TestCommonParams : public QObject {
    Q_OBJECT
private slots:
    void init() { setCommonParams(QMap<QString, QVariant>()); }
    void freshTableWritesDefaults();
};

void TestCommonParams::freshTableWritesDefaults()
{
    QDomDocument doc;
    QDomElement e = doc.createElement("p");
    toCommonParams(e);
    QCOMPARE(e.attribute("circle_mesureIndex"), QString("5"));
}

QTEST_GUILESS_MAIN(TestCommonParams)
#include "tst_commonparams.moc"
