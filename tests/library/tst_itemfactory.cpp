#include "AbstractBaseItem.h"
#include "ItemFactory.h"
#include "NamesTranslator.h"
#include "ToolsCatalogue.h"

#include <QCoreApplication>
#include <QGraphicsRectItem>
#include <QSet>
#include <QTest>

#include <memory>

namespace {

const QStringList unlisted = {"CirclePointsItem",   "ArcPointsItem", "ArcItem",   "RectCalibItem",
                              "PolygonShapeItem",   "DXFItem",       "LassoItem", "VickersPItem",
                              "RectangleItemFeret", "FlattenItem"};

using Factory = AbstractBaseItem* (*)(QString&, QGraphicsItem*, int, void*);

std::unique_ptr<AbstractBaseItem> make(Factory factory, QString name, QGraphicsItem* parent = nullptr) {
    const QString given = name;
    std::unique_ptr<AbstractBaseItem> item(factory(name, parent, 7, nullptr));
    if (name != given)
        qFatal("the factory changed the name it was given");
    return item;
}

} // namespace

class TestItemFactory : public QObject {
    Q_OBJECT
private slots:
    // Runs first: nothing has called InitToolsNames yet.
    void displayedNamesNeedInitialisation();
    void tablesCoverTheCatalogueOnce();
    void refusals_data();
    void refusals();
    void exactlyOneFactoryBuilds_data();
    void exactlyOneFactoryBuilds();
    void displayedNameBuildsSameClass_data();
    void displayedNameBuildsSameClass();
};

void TestItemFactory::displayedNamesNeedInitialisation() {
    NamesTranslator german({{"LineItem", "Linie"}, {"Distance", "Abstand"}});
    QCoreApplication::installTranslator(&german);
    QVERIFY(!make(XBaseItemToolCreate, "Linie"));
    QVERIFY(!make(XBaseItemMesureCreate, "Abstand"));
    QCoreApplication::removeTranslator(&german);
}

void TestItemFactory::tablesCoverTheCatalogueOnce() {
    const QStringList toolNames = toolFactoryClassNames();
    const QStringList mesureNames = mesureFactoryClassNames();
    QCOMPARE(toolNames.size(), 35);
    QCOMPARE(toolNames.first(), QString("PointItem"));
    QCOMPARE(toolNames.last(), QString("FlattenItem"));
    QCOMPARE(mesureNames, mesuresAvailableNoTr());

    const QStringList all = toolNames + mesureNames;
    const QSet<QString> distinct(all.cbegin(), all.cend());
    QCOMPARE(distinct.size(), 41);
    const QStringList catalogue =
        toolsAvailableNoTr() + mesuresAvailableNoTr() + annotationsAvailableNoTr() + unlisted;
    QCOMPARE(distinct, QSet<QString>(catalogue.cbegin(), catalogue.cend()));
}

void TestItemFactory::refusals_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("toolFactory");
    QTest::newRow("class name in other case") << "pointitem" << true;
    QTest::newRow("measure name to tool factory") << "Distance" << true;
    QTest::newRow("annotation name to measure factory") << "eTextItem" << false;
    QTest::newRow("tool name to measure factory") << "LineItem" << false;
    QTest::newRow("unlisted name to measure factory") << "ArcItem" << false;
    QTest::newRow("unknown to tool factory") << "HexagonItem" << true;
    QTest::newRow("unknown to measure factory") << "Perimeter" << false;
    QTest::newRow("empty to tool factory") << "" << true;
    QTest::newRow("empty to measure factory") << "" << false;
    QTest::newRow("surrounding blanks") << " LineItem " << true;
}

void TestItemFactory::refusals() {
    QFETCH(QString, name);
    QFETCH(bool, toolFactory);
    InitToolsNames();
    QVERIFY(!make(toolFactory ? XBaseItemToolCreate : XBaseItemMesureCreate, name));
}

void TestItemFactory::exactlyOneFactoryBuilds_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<bool>("measure");
    for (const QString& name : toolFactoryClassNames())
        QTest::newRow(qPrintable(name)) << name << false;
    for (const QString& name : mesureFactoryClassNames())
        QTest::newRow(qPrintable(name)) << name << true;
}

void TestItemFactory::exactlyOneFactoryBuilds() {
    QFETCH(QString, className);
    QFETCH(bool, measure);
    const bool built = factoryBuilds(className);
    QGraphicsRectItem parent;
    const auto tool = make(XBaseItemToolCreate, className, &parent);
    const auto mesure = make(XBaseItemMesureCreate, className, &parent);
    QCOMPARE(bool(tool), built && !measure);
    QCOMPARE(bool(mesure), built && measure);
    if (const AbstractBaseItem* item = tool ? tool.get() : mesure.get()) {
        QCOMPARE(QString(item->metaObject()->className()), className);
        QCOMPARE(item->parentItem(), &parent);
    }
}

void TestItemFactory::displayedNameBuildsSameClass_data() {
    QTest::addColumn<QString>("className");
    for (const QString& name : toolsAvailableNoTr() + annotationsAvailableNoTr() + mesuresAvailableNoTr())
        QTest::newRow(qPrintable(name)) << name;
}

void TestItemFactory::displayedNameBuildsSameClass() {
    QFETCH(QString, className);
    NamesTranslator german({{className, "de:" + className}});
    QCoreApplication::installTranslator(&german);
    InitToolsNames();
    QCoreApplication::removeTranslator(&german);

    const Factory factory =
        mesuresAvailableNoTr().contains(className) ? XBaseItemMesureCreate : XBaseItemToolCreate;
    const auto byDisplayed = make(factory, "de:" + className);
    const auto byClass = make(factory, className);
    QCOMPARE(bool(byDisplayed), factoryBuilds(className));
    QCOMPARE(bool(byClass), factoryBuilds(className));
    if (byDisplayed)
        QCOMPARE(QString(byDisplayed->metaObject()->className()), className);
}

QTEST_MAIN(TestItemFactory)
#include "tst_itemfactory.moc"
