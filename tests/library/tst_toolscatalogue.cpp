#include "Catalogue.h"
#include "ToolsCatalogue.h"

#include <QPixmap>
#include <QTest>

class TestToolsCatalogue : public QObject {
    Q_OBJECT
private slots:
    // Runs first: nothing has called InitToolsNames yet.
    void beforeInitialisation();
    void version();
    void withoutTranslator();
    void secondLanguageKeepsFirstResolvable();
    void sharedDisplayedNameGoesToLaterClass();
    void iconPaths_data();
    void iconPaths();
};

void TestToolsCatalogue::beforeInitialisation() {
    QVERIFY(getTools_NamesRef()->isEmpty());
    QVERIFY(getTools_NamesInvRef()->isEmpty());
    QCOMPARE(toolsAvailableNoTr(), catalogue::tools);
    QCOMPARE(mesuresAvailableNoTr(), catalogue::mesures);
    QCOMPARE(annotationsAvailableNoTr(), catalogue::annotations);
    QCOMPARE(toolsAvailable(), QStringList(13, QString()));
    QCOMPARE(mesuresAvailable(), QStringList(6, QString()));
    QCOMPARE(annotationsAvailable(), QStringList(12, QString()));
    NamesTranslator::prefixing("de:").whileInstalled([] {
        QCOMPARE(getIconPathFor("Angle"), QString(":/angle.png"));
        QCOMPARE(getIconPathFor("de:Angle"), QString(":/pencil.png"));
    });
}

void TestToolsCatalogue::version() {
    QCOMPARE(toolInterfaceVersion(nullptr),
             QStringList({"GraphicsObjects", "r01010", "2020.01.13", "Vandrel"}));
}

void TestToolsCatalogue::withoutTranslator() {
    InitToolsNames();
    const QMap<QString, QString>& names = *getTools_NamesRef();
    QCOMPARE(names.size(), 37);
    for (const QString& className : catalogue::all()) {
        const bool named = !catalogue::withoutName.contains(className);
        QCOMPARE(names.value(className), named ? className : QString());
    }
    QCOMPARE(*getTools_NamesInvRef(), names);
    QCOMPARE(toolsAvailable(), catalogue::tools);
    QCOMPARE(mesuresAvailable(), catalogue::mesures);
    QCOMPARE(annotationsAvailable(), catalogue::annotations);
}

void TestToolsCatalogue::secondLanguageKeepsFirstResolvable() {
    NamesTranslator::prefixing("de:").whileInstalled(InitToolsNames);
    NamesTranslator::prefixing("fr:").whileInstalled(InitToolsNames);

    const QMap<QString, QString>& names = *getTools_NamesRef();
    QCOMPARE(names.size(), 37);
    QCOMPARE(names.value("LineItem"), QString("fr:LineItem"));
    QCOMPARE(names.value("FlattenItem"), QString("FlattenItem"));
    for (const QString& displayed : names)
        QVERIFY2(!displayed.startsWith("de:"), qPrintable(displayed));
    const QMap<QString, QString>& inverse = *getTools_NamesInvRef();
    for (const QString& className : catalogue::translated()) {
        QCOMPARE(inverse.value("de:" + className), className);
        QCOMPARE(inverse.value("fr:" + className), className);
    }
    QCOMPARE(toolsAvailable().first(), QString("fr:LineItem"));
    QCOMPARE(annotationsAvailable().last(), QString("fr:CircleNote"));
    QCOMPARE(getIconPathFor("de:Angle"), QString(":/angle.png"));
}

void TestToolsCatalogue::sharedDisplayedNameGoesToLaterClass() {
    NamesTranslator({{"Angle", "Measure"}, {"Distance", "Measure"}}).whileInstalled(InitToolsNames);
    QCOMPARE(getTools_NamesInvRef()->value("Measure"), QString("Distance"));
    QCOMPARE(getIconPathFor("Measure"), QString(":/distance.png"));
    InitToolsNames();
}

void TestToolsCatalogue::iconPaths_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    const struct {
        const char* row;
        const char* name;
        const char* icon;
    } rows[] = {
        {"tool", "LineItem", "line"},
        {"anchor shares the point's", "AnchorPointItem", "point"},
        {"measure shares the circle's", "Circle3", "circle"},
        {"intersection shows the tangent line", "Intersection", "tanline"},
        {"tangent shows parallels", "Tangent", "parallel"},
        {"stamp shows the ruler", "StampItem", "qrule"},
        {"video shows the zoom", "VideoItem", "zoomplus"},
        {"listed, drawn with the pencil", "CrossHItem", "pencil"},
        {"unlisted, without a name", "VickersPItem", "poly"},
        {"unlisted, named itself", "FlattenItem", "arrow"},
        {"unlisted, pencil", "DXFItem", "pencil"},
        {"empty name", "", "pencil"},
        {"class name in other case", "lineitem", "pencil"},
        {"unknown", "Protractor", "pencil"},
    };
    for (const auto& row : rows)
        QTest::newRow(row.row) << QString(row.name) << QString(":/%1.png").arg(row.icon);
}

void TestToolsCatalogue::iconPaths() {
    QFETCH(QString, name);
    QFETCH(QString, icon);
    QCOMPARE(getIconPathFor(name), icon);
    QCOMPARE(getIconFor(name).toImage(), QPixmap(icon).toImage());
}

QTEST_MAIN(TestToolsCatalogue)
#include "tst_toolscatalogue.moc"
