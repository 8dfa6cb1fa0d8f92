#include "AbstractScene.h"
#include "HoverEventItem.h"
#include "ItemFactory.h"
#include "SimpleTextItem.h"
#include "VickersPItem.h"

#include <QAction>
#include <QDomDocument>
#include <QGraphicsPolygonItem>
#include <QGraphicsView>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using Attributes = QMap<QString, QString>;

namespace {

// A rhombus centred on (150, 150): d1 vertical (p0-p2), d2 horizontal (p1-p3), corners clockwise on screen.
QList<QPointF> rhombus(double d1, double d2) {
    return {{150, 150 - d1 / 2}, {150 + d2 / 2, 150}, {150, 150 + d1 / 2}, {150 - d2 / 2, 150}};
}

std::unique_ptr<VickersPItem> fromRecord(const QList<QPointF>& corners, double load = 0,
                                         AbstractBaseItem* source = nullptr) {
    _AUTOPOINTPARAMS params;
    params.points = corners;
    params.load = load;
    params.source = source;
    return std::make_unique<VickersPItem>(nullptr, 1, &params);
}

Attributes saved(const AbstractBaseItem& item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item.toXml(e);
    Attributes result;
    for (int i = 0; i < e.attributes().count(); ++i)
        result.insert(e.attributes().item(i).nodeName(), e.attributes().item(i).nodeValue());
    return result;
}

std::unique_ptr<VickersPItem> loaded(const Attributes& attributes) {
    QString name = QStringLiteral("VickersPItem");
    std::unique_ptr<VickersPItem> item(
        qobject_cast<VickersPItem*>(XBaseItemToolCreate(name, nullptr, 2, nullptr)));
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    for (auto it = attributes.begin(); it != attributes.end(); ++it)
        e.setAttribute(it.key(), it.value());
    item->fromXml(e);
    return item;
}

QList<QAction*> menuOf(AbstractBaseItem& item, QMenu& menu) {
    item.fillContextMenu(&menu);
    return menu.actions();
}

} // namespace

class TestVickersItem : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void workedExample_data();
    void workedExample();
    void drawnCornersInEitherOrderMeasureAlike();
    void handgripDragRecomputes_data();
    void handgripDragRecomputes();
    void hostRecords();
    void fewerOrUnreadableCorners_data();
    void fewerOrUnreadableCorners();
    void saveLoadSave_data();
    void saveLoadSave();
    void metallographerQueries_data();
    void metallographerQueries();

private:
    VickersPItem* draw(const QList<QPointF>& corners);
    QPoint at(const QPointF& p) const { return m_view->mapFromScene(p); }
    AbstractScene* m_scene = nullptr;
    QGraphicsView* m_view = nullptr;
};

void TestVickersItem::init() {
    m_scene = new AbstractScene(QRectF(0, 0, 400, 300));
    m_view = new QGraphicsView(m_scene);
    m_view->setFixedSize(420, 320);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view));
}

void TestVickersItem::cleanup() {
    delete m_view;
    delete m_scene;
}

// Clicks the corners in the view; null unless the rubber band follows the cursor and creation goes on until
// four.
VickersPItem* TestVickersItem::draw(const QList<QPointF>& corners) {
    auto* item = qobject_cast<VickersPItem*>(m_scene->startTool(QStringLiteral("VickersPItem")));
    for (int i = 0; i < corners.size(); ++i) {
        QTest::mouseMove(m_view->viewport(), at(corners[i]));
        if (i > 0 && item->polygonItem()->polygon() != QPolygonF(item->mline() << corners[i]))
            return nullptr;
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(corners[i]));
        if ((m_scene->itemInCreation() == item) != (i < 3))
            return nullptr;
    }
    return item;
}

void TestVickersItem::workedExample_data() {
    QTest::addColumn<double>("factor");
    QTest::addColumn<int>("menuEntry");
    QTest::addColumn<double>("hardness");
    QTest::newRow("high precision") << 1.0 << 0 << 18.531;
    QTest::newRow("standard precision") << 1.0 << 1 << 18.522;
    QTest::newRow("half a micrometre per pixel") << 0.5 << 0 << 74.124;
}

void TestVickersItem::workedExample() {
    QFETCH(double, factor);
    QFETCH(int, menuEntry);
    QFETCH(double, hardness);
    auto item = fromRecord(rhombus(100, 100));
    Calibration c;
    c.factor = factor;
    item->setCalibration(c);
    QSignalSpy changed(item.get(), &AbstractBaseItem::itemChanged);
    QSignalSpy ended(item.get(), &AbstractBaseItem::mesureChangedEND);
    QMenu menu;
    const QList<QAction*> actions = menuOf(*item, menu);
    QCOMPARE(actions.at(0)->text() + actions.at(1)->text(), QString("High PrecisionStd Precision"));
    item->applyContextMenu(actions.at(menuEntry)->data().toInt());
    QCOMPARE(item->accessmesure(1), 100 * factor);
    QCOMPARE(item->accessmesure(2), 0.98);
    QVERIFY(qAbs(item->accessmesure(3) - 0.0999322) < 1e-7);
    QVERIFY2(qAbs(item->accessmesure(9) - hardness) < 5e-4,
             qPrintable(QString::number(item->accessmesure(9))));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(1).toString(), QString("VICKERS"));
    QCOMPARE(*static_cast<double*>(changed.first().at(2).value<void*>()), item->accessmesure(9));
    QCOMPARE(ended.count(), 1);
    QMenu after;
    QVERIFY(menuOf(*item, after).at(menuEntry)->isChecked());
    QCOMPARE(item->label()->text(), QString("hardness:%1*HV").arg(hardness, 0, 'f', 2));
}

void TestVickersItem::drawnCornersInEitherOrderMeasureAlike() {
    const QList<QPointF> corners = rhombus(120, 80);
    VickersPItem* clockwise = draw(corners);
    VickersPItem* anticlockwise = draw({corners[3], corners[2], corners[1], corners[0]});
    QVERIFY(clockwise && anticlockwise && anticlockwise->isSelected());
    QCOMPARE(anticlockwise->mline(), corners);
    QCOMPARE(anticlockwise->accessmesureP(0), 120.0);
    QCOMPARE(anticlockwise->accessmesureP(1), 80.0);
    QCOMPARE(anticlockwise->accessmesure(9), clockwise->accessmesure(9));
    for (int i = 0; i < 4; ++i) // grips follow their corners through the reversal
        QCOMPARE(anticlockwise->handgripItems().at(i)->pos(), corners[i]);
}

void TestVickersItem::handgripDragRecomputes_data() {
    QTest::addColumn<QPointF>("hostPos");
    QTest::newRow("at the origin") << QPointF(0, 0);
    QTest::newRow("moved by the host") << QPointF(30, 20);
}

void TestVickersItem::handgripDragRecomputes() {
    QFETCH(QPointF, hostPos);
    VickersPItem* item = draw(rhombus(100, 100));
    QVERIFY(item);
    item->setPos(hostPos);
    QSignalSpy started(item, &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy changed(item, &AbstractBaseItem::mesureChanged);
    QSignalSpy ended(item, &AbstractBaseItem::mesureChangedEND);
    const QPointF grip = item->handgripItems().at(1)->scenePos();
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at(grip));
    QTest::mouseMove(m_view->viewport(), at(grip + QPointF(10, 0)));
    QTest::mouseMove(m_view->viewport(), at(grip + QPointF(20, 0)));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at(grip + QPointF(20, 0)));
    QCOMPARE(started.count(), 1);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(ended.count(), 3); // each step, then the release
    QCOMPARE(item->polygonItem()->polygon().at(1), QPointF(220, 150));
    QCOMPARE(item->accessmesureP(1), 120.0);
}

void TestVickersItem::hostRecords() {
    QString name = QStringLiteral("VickersPItem");
    std::unique_ptr<AbstractBaseItem> made(XBaseItemToolCreate(name, nullptr, 7, nullptr));
    QVERIFY(qobject_cast<VickersPItem*>(made.get()) && !made->creationStarted());
    QCOMPARE(made->getGUIDname(), QString("VickersPItem7"));

    auto source = fromRecord(rhombus(100, 100));
    auto taken = fromRecord(rhombus(100, 100).mid(0, 3), 0, source.get());
    QVERIFY(taken->generated() && taken->mline().isEmpty());
    QCOMPARE(taken->accessmesure(9), source->accessmesure(9));

    _AUTOPOINTPARAMS params;
    params.load = 1.96;
    source->suspendComputation(true);
    source->setSpecificparameters(QString(), &params);
    QCOMPARE(source->charge(), 0.98);
    source->suspendComputation(false);
    source->setSpecificparameters(QString(), &params);
    QVERIFY(qAbs(source->accessmesure(9) - 2 * taken->accessmesure(9)) < 1e-9);
}

void TestVickersItem::fewerOrUnreadableCorners_data() {
    QTest::addColumn<QString>("coords");
    QTest::addColumn<int>("corners");
    QTest::newRow("none") << "" << 0;
    QTest::newRow("three") << "100x50;150x100;100x150;" << 3;
    QTest::newRow("unreadable parts skipped") << "abc;;1x2x3;x;100x50;;150x100;nanxinf;" << 4;
    QTest::newRow("five, first four kept") << "100x50;150x100;100x150;50x100;0x0;" << 4;
}

void TestVickersItem::fewerOrUnreadableCorners() {
    QFETCH(QString, coords);
    QFETCH(int, corners);
    auto item = loaded({{"coords", coords}, {"charge", "garbage"}});
    QCOMPARE(item->handgripItems().size(), corners);
    QCOMPARE(item->charge(), 0.0);
    QCOMPARE(item->computeMesures(nullptr), corners == 4);
    QCOMPARE(item->endEdition(), corners == 4);
    QCOMPARE(item->hardnessDesignation().isEmpty(), true); // no load, no hardness
}

void TestVickersItem::saveLoadSave_data() {
    QTest::addColumn<QPointF>("hostPos");
    QTest::addColumn<bool>("highPrecision");
    QTest::addColumn<double>("load");
    QTest::addColumn<QString>("charge");
    QTest::newRow("0.987 N kept as 0.99") << QPointF(0, 0) << true << 0.987 << "0.99";
    QTest::newRow("moved by the host") << QPointF(30, -20) << true << 294.2 << "294.20";
    QTest::newRow("standard precision") << QPointF(0, 0) << false << 0.98 << "0.98";
}

void TestVickersItem::saveLoadSave() {
    QFETCH(QPointF, hostPos);
    QFETCH(bool, highPrecision);
    QFETCH(double, load);
    QFETCH(QString, charge);
    VickersPItem* item = draw(rhombus(120, 80));
    QVERIFY(item);
    item->setCharge(load);
    item->setHighPrecision(highPrecision);
    item->setPos(hostPos);
    const Attributes first = saved(*item);
    QCOMPARE(first.value("charge"), charge);
    QCOMPARE(first.value("coords").count(';'), 4);
    auto back = loaded(first);
    QCOMPARE(saved(*back), first);
    QCOMPARE(back->mapToScene(back->mline().at(0)), item->mapToScene(item->mline().at(0)));
    QVERIFY(back->computeMesures(nullptr));
    QCOMPARE(back->accessmesure(2), charge.toDouble());
    QCOMPARE(saved(*std::unique_ptr<AbstractBaseItem>(item->clone(3))), first);
}

void TestVickersItem::metallographerQueries_data() {
    QTest::addColumn<double>("load");
    QTest::addColumn<double>("d1");
    QTest::addColumn<double>("d2");
    QTest::addColumn<QString>("designation");
    QTest::addColumn<QString>("warning");
    const QString differ =
        "Diagonals differ by 7.3 % (limit 5 %): check the indentation or the specimen's flatness";
    QTest::newRow("0.98 N is HV 0.1") << 0.98 << 100.0 << 100.0 << "18.5 HV 0.1" << QString();
    QTest::newRow("rounding gains a digit") << 0.98 << 136.14 << 136.14 << "10.0 HV 0.1" << QString();
    QTest::newRow("thousands") << 294.2 << 100.0 << 100.0 << "5560 HV 30" << QString();
    QTest::newRow("9.807 N is HV 1") << 9.807 << 1000.0 << 1000.0 << "1.85 HV 1" << QString();
    QTest::newRow("1.471 N is HV 0.15") << 1.471 << 50.0 << 50.0 << "111 HV 0.15" << QString();
    QTest::newRow("exactly 5 % apart") << 0.98 << 97.5 << 102.5 << "18.5 HV 0.1" << QString();
    QTest::newRow("7.3 % apart") << 0.98 << 100.0 << 107.6 << "17.2 HV 0.1" << differ;
}

void TestVickersItem::metallographerQueries() {
    QFETCH(double, load);
    QFETCH(double, d1);
    QFETCH(double, d2);
    QFETCH(QString, designation);
    QFETCH(QString, warning);
    auto item = fromRecord(rhombus(d1, d2), load);
    QCOMPARE(item->hardnessDesignation(), designation);
    QString text = QStringLiteral("stale");
    QCOMPARE(item->diagonalsDiffer(&text), !warning.isEmpty());
    QCOMPARE(text, warning);
}

QTEST_MAIN(TestVickersItem)
#include "tst_vickersitem.moc"
