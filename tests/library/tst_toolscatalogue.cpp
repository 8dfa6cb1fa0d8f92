#include "NamesTranslator.h"
#include "ToolsCatalogue.h"

#include <QCoreApplication>
#include <QTest>

namespace {

const QStringList tools = {"LineItem",   "PointItem",     "AnchorPointItem",   "EllipseItem",
                           "CircleItem", "CirclePItem",   "Circle3PointsItem", "Arc3PointsItem",
                           "CurveItem",  "RectangleItem", "PolygonItem",       "PolylineItem",
                           "CrossItem"};
const QStringList mesures = {"Distance", "Angle", "Circle3", "Projection", "Intersection", "Tangent"};
const QStringList annotations = {"eTextItem",  "ArrowItem",  "Arrow2Item", "SmileyItem",
                                 "PixmapItem", "VideoItem",  "RulerItem",  "StampItem",
                                 "Custom1",    "CrossHItem", "CrossVItem", "CircleNote"};
const QStringList translatedUnlisted = {"CirclePointsItem", "ArcPointsItem", "LassoItem"};
const QStringList untranslated = {"RectCalibItem", "FlattenItem", "PolygonShapeItem"};
const QStringList withoutName = {"VickersPItem", "ArcItem", "DXFItem", "RectangleItemFeret"};

QStringList translatedClasses() {
    return tools + mesures + annotations + translatedUnlisted;
}

// A language in which every translated class name gets a prefix.
QMap<QString, QString> language(const QString& prefix) {
    QMap<QString, QString> names;
    for (const QString& className : translatedClasses())
        names.insert(className, prefix + className);
    return names;
}

} // namespace

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
    void iconOfDisplayedName();
    void iconsLoad();

private:
    void initUnder(QTranslator* translator);
};

void TestToolsCatalogue::initUnder(QTranslator* translator) {
    QCoreApplication::installTranslator(translator);
    InitToolsNames();
    QCoreApplication::removeTranslator(translator);
}

void TestToolsCatalogue::beforeInitialisation() {
    QVERIFY(getTools_NamesRef()->isEmpty());
    QVERIFY(getTools_NamesInvRef()->isEmpty());
    QCOMPARE(toolsAvailableNoTr(), tools);
    QCOMPARE(mesuresAvailableNoTr(), mesures);
    QCOMPARE(annotationsAvailableNoTr(), annotations);
    QCOMPARE(toolsAvailable(), QStringList(13, QString()));
    QCOMPARE(mesuresAvailable(), QStringList(6, QString()));
    QCOMPARE(annotationsAvailable(), QStringList(12, QString()));

    NamesTranslator german(language("de:"));
    QCoreApplication::installTranslator(&german);
    QCOMPARE(getIconPathFor("Angle"), QString(":/angle.png"));
    QCOMPARE(getIconPathFor("de:Angle"), QString(":/pencil.png"));
    QCoreApplication::removeTranslator(&german);
}

void TestToolsCatalogue::version() {
    QCOMPARE(toolInterfaceVersion(nullptr),
             QStringList({"GraphicsObjects", "r01010", "2020.01.13", "Vandrel"}));
}

void TestToolsCatalogue::withoutTranslator() {
    InitToolsNames();
    const QMap<QString, QString>& names = *getTools_NamesRef();
    QCOMPARE(names.size(), 37);
    for (const QString& className : translatedClasses() + untranslated)
        QCOMPARE(names.value(className), className);
    for (const QString& className : withoutName)
        QVERIFY2(!names.contains(className), qPrintable(className));
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        QCOMPARE(getTools_NamesInvRef()->value(it.key()), it.key());
    QCOMPARE(toolsAvailable(), tools);
    QCOMPARE(mesuresAvailable(), mesures);
    QCOMPARE(annotationsAvailable(), annotations);
}

void TestToolsCatalogue::secondLanguageKeepsFirstResolvable() {
    NamesTranslator german(language("de:")), french(language("fr:"));
    initUnder(&german);
    initUnder(&french);

    const QMap<QString, QString>& names = *getTools_NamesRef();
    QCOMPARE(names.size(), 37);
    QCOMPARE(names.value("LineItem"), QString("fr:LineItem"));
    QCOMPARE(names.value("FlattenItem"), QString("FlattenItem"));
    for (const QString& displayed : names)
        QVERIFY2(!displayed.startsWith("de:"), qPrintable(displayed));

    const QMap<QString, QString>& inverse = *getTools_NamesInvRef();
    for (const QString& className : translatedClasses()) {
        QCOMPARE(inverse.value("de:" + className), className);
        QCOMPARE(inverse.value("fr:" + className), className);
    }
    QCOMPARE(toolsAvailable().first(), QString("fr:LineItem"));
    QCOMPARE(annotationsAvailable().last(), QString("fr:CircleNote"));
    QCOMPARE(getIconPathFor("de:Angle"), QString(":/angle.png"));
}

void TestToolsCatalogue::sharedDisplayedNameGoesToLaterClass() {
    NamesTranslator shared({{"Angle", "Measure"}, {"Distance", "Measure"}});
    initUnder(&shared);
    QCOMPARE(getTools_NamesInvRef()->value("Measure"), QString("Distance"));
    QCOMPARE(getIconPathFor("Measure"), QString(":/distance.png"));
    InitToolsNames();
}

void TestToolsCatalogue::iconPaths_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    const QList<QPair<QString, QString>> icons = {
        {"LineItem", "line"},
        {"PointItem", "point"},
        {"AnchorPointItem", "point"},
        {"EllipseItem", "ellipse"},
        {"CircleItem", "circle"},
        {"CirclePItem", "circleP"},
        {"Circle3PointsItem", "circle"},
        {"Arc3PointsItem", "arc"},
        {"CurveItem", "curve"},
        {"RectangleItem", "rectangle"},
        {"PolygonItem", "polyclosed"},
        {"PolylineItem", "poly"},
        {"CrossItem", "orthosnap"},
        {"Distance", "distance"},
        {"Angle", "angle"},
        {"Circle3", "circle"},
        {"Projection", "perpline"},
        {"Intersection", "tanline"},
        {"Tangent", "parallel"},
        {"eTextItem", "font"},
        {"ArrowItem", "arrow"},
        {"Arrow2Item", "arrow"},
        {"SmileyItem", "smiley"},
        {"PixmapItem", "image"},
        {"VideoItem", "zoomplus"},
        {"RulerItem", "qrule"},
        {"StampItem", "qrule"},
        {"Custom1", "protractor"},
        {"CrossHItem", "pencil"},
        {"CrossVItem", "pencil"},
        {"CircleNote", "circle"},
        {"CirclePointsItem", "circle"},
        {"ArcPointsItem", "arc"},
        {"LassoItem", "poly"},
        {"VickersPItem", "poly"},
        {"FlattenItem", "arrow"},
        {"RectCalibItem", "pencil"},
        {"PolygonShapeItem", "pencil"},
        {"ArcItem", "pencil"},
        {"DXFItem", "pencil"},
        {"RectangleItemFeret", "pencil"},
    };
    for (const auto& [name, icon] : icons)
        QTest::newRow(qPrintable(name)) << name << ":/" + icon + ".png";
    QTest::newRow("empty name") << QString() << ":/pencil.png";
    QTest::newRow("other case") << "lineitem"
                                << ":/pencil.png";
    QTest::newRow("unknown") << "Protractor"
                             << ":/pencil.png";
}

void TestToolsCatalogue::iconPaths() {
    QFETCH(QString, name);
    QFETCH(QString, icon);
    QCOMPARE(getIconPathFor(name), icon);
    QCOMPARE(getIconFor(name).toImage(), QPixmap(icon).toImage());
}

void TestToolsCatalogue::iconOfDisplayedName() {
    NamesTranslator german({{"Angle", "Winkel"}, {"Tangent", "Tangente"}});
    initUnder(&german);
    QCOMPARE(getIconPathFor("Winkel"), QString(":/angle.png"));
    QCOMPARE(getIconPathFor("Tangente"), QString(":/parallel.png"));
    QCOMPARE(getIconPathFor("winkel"), QString(":/pencil.png"));
    InitToolsNames();
}

void TestToolsCatalogue::iconsLoad() {
    const QPixmap pencil = getIconFor("no such tool");
    QVERIFY(!pencil.isNull());
    QCOMPARE(pencil.size(), QSize(32, 32));
    QCOMPARE(pencil.toImage(), QPixmap(":/pencil.png").toImage());
    QVERIFY(getIconFor("Angle").toImage() != pencil.toImage());
}

QTEST_MAIN(TestToolsCatalogue)
#include "tst_toolscatalogue.moc"
