#include "AbstractBaseItem.h"
#include "Catalogue.h"
#include "ItemFactory.h"
#include "ToolsCatalogue.h"

#include <QGraphicsRectItem>
#include <QSet>
#include <QTest>

#include <memory>

namespace {

using Factory = AbstractBaseItem* (*)(QString&, QGraphicsItem*, int, void*);

std::unique_ptr<AbstractBaseItem> make(Factory factory, QString name, QGraphicsItem* parent = nullptr) {
    const QString given = name;
    std::unique_ptr<AbstractBaseItem> item(factory(name, parent, 7, nullptr));
    if (name != given)
        qFatal("the factory changed the name it was given");
    return item;
}

QString classOf(const std::unique_ptr<AbstractBaseItem>& item) {
    return QString::fromLatin1(item->metaObject()->className());
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
    void onlyItsOwnFactoryBuildsAClass_data();
    void onlyItsOwnFactoryBuildsAClass();
};

void TestItemFactory::displayedNamesNeedInitialisation() {
    NamesTranslator({{"LineItem", "Linie"}, {"Distance", "Abstand"}}).whileInstalled([] {
        QVERIFY(!make(XBaseItemToolCreate, "Linie"));
        QVERIFY(!make(XBaseItemMesureCreate, "Abstand"));
    });
}

void TestItemFactory::tablesCoverTheCatalogueOnce() {
    const QStringList toolNames = toolFactoryClassNames();
    QCOMPARE(toolNames.first(), QString("PointItem"));
    QCOMPARE(toolNames.last(), QString("FlattenItem"));
    QCOMPARE(mesureFactoryClassNames(), catalogue::mesures);
    const QStringList all = toolNames + mesureFactoryClassNames();
    const QStringList expected = catalogue::all();
    QCOMPARE(all.size(), expected.size());
    QCOMPARE(QSet<QString>(all.cbegin(), all.cend()), QSet<QString>(expected.cbegin(), expected.cend()));
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

void TestItemFactory::onlyItsOwnFactoryBuildsAClass_data() {
    QTest::addColumn<QString>("className");
    for (const QString& name : catalogue::all())
        QTest::newRow(qPrintable(name)) << name;
}

// By class name and, where the class has one, by displayed name.
void TestItemFactory::onlyItsOwnFactoryBuildsAClass() {
    QFETCH(QString, className);
    NamesTranslator({{className, "de:" + className}}).whileInstalled(InitToolsNames);
    const bool measure = catalogue::mesures.contains(className);
    const bool built = factoryBuilds(className);
    QGraphicsRectItem parent;
    const auto tool = make(XBaseItemToolCreate, className, &parent);
    const auto mesure = make(XBaseItemMesureCreate, className, &parent);
    QCOMPARE(bool(tool), built && !measure);
    QCOMPARE(bool(mesure), built && measure);
    if (const auto& item = tool ? tool : mesure) {
        QCOMPARE(classOf(item), className);
        QCOMPARE(item->parentItem(), &parent);
    }
    const QString displayed = getTools_NamesRef()->value(className);
    if (displayed.isEmpty())
        return;
    const auto byDisplayed = make(measure ? XBaseItemMesureCreate : XBaseItemToolCreate, displayed);
    QCOMPARE(bool(byDisplayed), built);
    if (byDisplayed)
        QCOMPARE(classOf(byDisplayed), className);
}

QTEST_MAIN(TestItemFactory)
#include "tst_itemfactory.moc"
