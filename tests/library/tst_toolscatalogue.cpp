#include "AbstractBaseItem.h"
#include "DataColumns.h"
#include "ItemFactory.h"
#include "ToolsCatalogue.h"

#include <QCoreApplication>
#include <QGraphicsRectItem>
#include <QPixmap>
#include <QSet>
#include <QTest>
#include <QTranslator>

#include <memory>

namespace {

// The catalogue as hosts see it: the three lists in their order, then the unlisted classes by how
// their displayed name is made (translated, the class name itself, or none).
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

QStringList translated() {
    return tools + mesures + annotations + translatedUnlisted;
}
QStringList all() {
    return translated() + untranslated + withoutName;
}

// A translator for the context "NAMES" only, from a table of class name -> displayed name.
class NamesTranslator : public QTranslator {
public:
    explicit NamesTranslator(QMap<QString, QString> names)
        : m_names(std::move(names)) {}
    // A language in which every translated class name gets a prefix.
    static NamesTranslator prefixing(const QString& prefix) {
        QMap<QString, QString> names;
        for (const QString& className : translated())
            names.insert(className, prefix + className);
        return NamesTranslator(names);
    }

    QString translate(const char* context, const char* sourceText, const char*, int) const override {
        return qstrcmp(context, "NAMES") == 0 ? m_names.value(QString::fromLatin1(sourceText)) : QString();
    }
    bool isEmpty() const override { return false; }

    // Runs f with this translator installed.
    template <typename F> void whileInstalled(F f) {
        QCoreApplication::installTranslator(this);
        f();
        QCoreApplication::removeTranslator(this);
    }

private:
    QMap<QString, QString> m_names;
};

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

class TestToolsCatalogue : public QObject {
    Q_OBJECT
private slots:
    // Runs first: nothing has called InitToolsNames yet.
    void beforeInitialisation() {
        QVERIFY(getTools_NamesRef()->isEmpty());
        QVERIFY(getTools_NamesInvRef()->isEmpty());
        QCOMPARE(toolsAvailableNoTr(), tools);
        QCOMPARE(mesuresAvailableNoTr(), mesures);
        QCOMPARE(annotationsAvailableNoTr(), annotations);
        QCOMPARE(toolsAvailable(), QStringList(13, QString()));
        QCOMPARE(mesuresAvailable(), QStringList(6, QString()));
        QCOMPARE(annotationsAvailable(), QStringList(12, QString()));
        NamesTranslator::prefixing("de:").whileInstalled([] {
            QCOMPARE(getIconPathFor("Angle"), QString(":/angle.png"));
            QCOMPARE(getIconPathFor("de:Angle"), QString(":/pencil.png"));
            QVERIFY(!make(XBaseItemToolCreate, "de:LineItem"));
            QVERIFY(!make(XBaseItemMesureCreate, "de:Distance"));
        });
    }

    void withoutTranslator() {
        InitToolsNames();
        const QMap<QString, QString>& names = *getTools_NamesRef();
        QCOMPARE(names.size(), 37);
        for (const QString& className : all()) {
            const bool named = !withoutName.contains(className);
            QCOMPARE(names.value(className), named ? className : QString());
        }
        QCOMPARE(*getTools_NamesInvRef(), names);
        QCOMPARE(toolsAvailable(), tools);
        QCOMPARE(mesuresAvailable(), mesures);
        QCOMPARE(annotationsAvailable(), annotations);
    }

    void secondLanguageKeepsFirstResolvable() {
        NamesTranslator::prefixing("de:").whileInstalled(InitToolsNames);
        NamesTranslator::prefixing("fr:").whileInstalled(InitToolsNames);

        const QMap<QString, QString>& names = *getTools_NamesRef();
        QCOMPARE(names.size(), 37);
        QCOMPARE(names.value("LineItem"), QString("fr:LineItem"));
        QCOMPARE(names.value("FlattenItem"), QString("FlattenItem"));
        for (const QString& displayed : names)
            QVERIFY2(!displayed.startsWith("de:"), qPrintable(displayed));
        const QMap<QString, QString>& inverse = *getTools_NamesInvRef();
        for (const QString& className : translated()) {
            QCOMPARE(inverse.value("de:" + className), className);
            QCOMPARE(inverse.value("fr:" + className), className);
        }
        QCOMPARE(toolsAvailable().first(), QString("fr:LineItem"));
        QCOMPARE(annotationsAvailable().last(), QString("fr:CircleNote"));
        QCOMPARE(getIconPathFor("de:Angle"), QString(":/angle.png"));
    }

    void sharedDisplayedNameGoesToLaterClass() {
        NamesTranslator({{"Angle", "Measure"}, {"Distance", "Measure"}}).whileInstalled(InitToolsNames);
        QCOMPARE(getTools_NamesInvRef()->value("Measure"), QString("Distance"));
        QCOMPARE(getIconPathFor("Measure"), QString(":/distance.png"));
        InitToolsNames();
    }

    void iconPaths_data() {
        addColumns<QString, QString>("name", "icon");
        const auto row = [](const char* name, const char* className, const char* icon) {
            QTest::newRow(name) << QString(className) << QString(":/%1.png").arg(icon);
        };
        row("tool", "LineItem", "line");
        row("listed, drawn with the pencil", "CrossHItem", "pencil");
        row("unlisted, without a name", "VickersPItem", "poly");
        row("unlisted, named itself", "FlattenItem", "arrow");
        row("empty name", "", "pencil");
        row("class name in other case", "lineitem", "pencil");
    }

    void iconPaths() {
        QFETCH(QString, name);
        QFETCH(QString, icon);
        QCOMPARE(getIconPathFor(name), icon);
        QCOMPARE(getIconFor(name).toImage(), QPixmap(icon).toImage());
    }

    void tablesCoverTheCatalogueOnce() {
        const QStringList toolNames = toolFactoryClassNames();
        QCOMPARE(toolNames.first(), QString("PointItem"));
        QCOMPARE(toolNames.last(), QString("FlattenItem"));
        QCOMPARE(mesureFactoryClassNames(), mesures);
        const QStringList built = toolNames + mesureFactoryClassNames(), expected = all();
        QCOMPARE(built.size(), expected.size());
        QCOMPARE(QSet<QString>(built.cbegin(), built.cend()),
                 QSet<QString>(expected.cbegin(), expected.cend()));
    }

    void refusals_data() {
        addColumns<QString, bool>("name", "toolFactory");
        // A class given to the other factory: onlyItsOwnFactoryBuildsAClass.
        QTest::newRow("class name in other case") << "pointitem" << true;
        QTest::newRow("unknown") << "HexagonItem" << true;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("surrounding blanks") << " LineItem " << true;
    }

    void refusals() {
        QFETCH(QString, name);
        QFETCH(bool, toolFactory);
        InitToolsNames();
        QVERIFY(!make(toolFactory ? XBaseItemToolCreate : XBaseItemMesureCreate, name));
    }

    void onlyItsOwnFactoryBuildsAClass_data() {
        QTest::addColumn<QString>("className");
        for (const QString& name : all())
            QTest::newRow(qPrintable(name)) << name;
    }

    // By class name and, where the class has one, by displayed name.
    void onlyItsOwnFactoryBuildsAClass() {
        QFETCH(QString, className);
        NamesTranslator({{className, "de:" + className}}).whileInstalled(InitToolsNames);
        const bool measure = mesures.contains(className);
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
};

QTEST_MAIN(TestToolsCatalogue)
#include "tst_toolscatalogue.moc"
