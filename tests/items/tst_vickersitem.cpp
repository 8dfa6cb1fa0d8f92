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

namespace {

// A rhombus centred on (150, 150): d1 vertical (p0-p2), d2 horizontal (p1-p3), corners clockwise on screen.
QList<QPointF> rhombus(double d1, double d2) {
    return {{150, 150 - d1 / 2}, {150 + d2 / 2, 150}, {150, 150 + d1 / 2}, {150 - d2 / 2, 150}};
}

std::unique_ptr<VickersPItem> fromCorners(const QList<QPointF>& corners, double load = 0) {
    _AUTOPOINTPARAMS params;
    params.points = corners;
    params.load = load;
    return std::make_unique<VickersPItem>(nullptr, 1, &params);
}

QMap<QString, QString> attributes(const AbstractBaseItem& item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item.toXml(e);
    QMap<QString, QString> result;
    const QDomNamedNodeMap map = e.attributes();
    for (int i = 0; i < map.count(); ++i)
        result.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return result;
}

std::unique_ptr<VickersPItem> loaded(const QMap<QString, QString>& attrs) {
    QString name = QStringLiteral("VickersPItem");
    std::unique_ptr<VickersPItem> item(
        qobject_cast<VickersPItem*>(XBaseItemToolCreate(name, nullptr, 2, nullptr)));
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    for (auto it = attrs.begin(); it != attrs.end(); ++it)
        e.setAttribute(it.key(), it.value());
    item->fromXml(e);
    return item;
}

void chooseFromMenu(AbstractBaseItem& item, const QString& text) {
    QMenu menu;
    item.fillContextMenu(&menu);
    for (QAction* action : menu.actions()) {
        if (action->text() == text)
            item.applyContextMenu(action->data().toInt());
    }
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
    void loadFromParameterRecord();
    void fewerOrUnreadableCorners_data();
    void fewerOrUnreadableCorners();
    void chargeKeepsTwoDecimals_data();
    void chargeKeepsTwoDecimals();
    void handgripDragRecomputes_data();
    void handgripDragRecomputes();
    void designation_data();
    void designation();
    void diagonalsDiffer_data();
    void diagonalsDiffer();
    void saveLoadSaveIdentical_data();
    void saveLoadSaveIdentical();
    void factoryAndContext();

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

// Clicks the corners in a real view, checking the rubber band and that creation goes on until four.
VickersPItem* TestVickersItem::draw(const QList<QPointF>& corners) {
    auto* item = qobject_cast<VickersPItem*>(m_scene->startTool(QStringLiteral("VickersPItem")));
    for (int i = 0; i < corners.size(); ++i) {
        if (i > 0) {
            QTest::mouseMove(m_view->viewport(), at(corners[i]));
            const QPolygonF band = item->polygonItem()->polygon();
            if (band.size() != i + 1 || band.last() != corners[i])
                return nullptr;
        }
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, at(corners[i]));
        if ((m_scene->itemInCreation() == item) != (i < 3))
            return nullptr;
    }
    return item;
}

void TestVickersItem::workedExample_data() {
    QTest::addColumn<double>("factor");
    QTest::addColumn<QString>("mode");
    QTest::addColumn<double>("hardness");
    QTest::newRow("high precision") << 1.0 << "High Precision" << 18.531;
    QTest::newRow("standard precision") << 1.0 << "Std Precision" << 18.522;
    QTest::newRow("half a micrometre per pixel") << 0.5 << "High Precision" << 74.124;
}

void TestVickersItem::workedExample() {
    QFETCH(double, factor);
    QFETCH(QString, mode);
    QFETCH(double, hardness);
    auto item = fromCorners(rhombus(100, 100));
    Calibration c;
    c.factor = factor;
    item->setCalibration(c);
    QSignalSpy changed(item.get(), &AbstractBaseItem::itemChanged);
    QSignalSpy ended(item.get(), &AbstractBaseItem::mesureChangedEND);
    chooseFromMenu(*item, QStringLiteral("Std Precision")); // a switch always recomputes
    chooseFromMenu(*item, mode);
    QCOMPARE(item->accessmesureP(0), 100.0);
    QCOMPARE(item->accessmesure(1), 100 * factor);
    QCOMPARE(item->accessmesure(2), 0.98);
    QVERIFY(qAbs(item->accessmesure(3) - 0.0999322) < 1e-7);
    QVERIFY2(qAbs(item->accessmesure(9) - hardness) < 5e-4,
             qPrintable(QString::number(item->accessmesure(9))));
    QCOMPARE(changed.count(), 2);
    QCOMPARE(changed.last().at(1).toString(), QString("VICKERS"));
    QCOMPARE(*static_cast<double*>(changed.last().at(2).value<void*>()), item->accessmesure(9));
    QCOMPARE(ended.count(), 2);
    QMenu menu;
    item->fillContextMenu(&menu);
    QCOMPARE(menu.actions().at(0)->isChecked(), mode == "High Precision");
    QCOMPARE(menu.actions().at(1)->isChecked(), mode == "Std Precision");
    QCOMPARE(item->label()->text(), QString("hardness:%1*HV").arg(item->accessmesure(9), 0, 'f', 2));
}

void TestVickersItem::drawnCornersInEitherOrderMeasureAlike() {
    const QList<QPointF> corners = rhombus(120, 80);
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    VickersPItem* clockwise = draw(corners);
    VickersPItem* anticlockwise = draw({corners[3], corners[2], corners[1], corners[0]});
    QVERIFY(clockwise && anticlockwise);
    QCOMPARE(accepted.count(), 2);
    QCOMPARE(anticlockwise->mline(), corners);
    QCOMPARE(anticlockwise->accessmesureP(0), 120.0);
    QCOMPARE(anticlockwise->accessmesureP(1), 80.0);
    QCOMPARE(anticlockwise->accessmesure(9), clockwise->accessmesure(9));
    // Grips follow their corners through the reversal.
    for (int i = 0; i < 4; ++i)
        QCOMPARE(anticlockwise->handgripItems().at(i)->pos(), corners[i]);
}

void TestVickersItem::loadFromParameterRecord() {
    auto item = fromCorners(rhombus(100, 100));
    const double hv = item->accessmesure(9);
    _AUTOPOINTPARAMS params;
    params.load = 1.96;
    item->suspendComputation(true);
    item->setSpecificparameters(QString(), &params);
    QCOMPARE(item->charge(), 0.98);
    item->suspendComputation(false);
    item->setSpecificparameters(QString(), &params);
    QCOMPARE(item->accessmesure(2), 1.96);
    QVERIFY(qAbs(item->accessmesure(9) - 2 * hv) < 1e-9);
}

void TestVickersItem::fewerOrUnreadableCorners_data() {
    QTest::addColumn<QString>("coords");
    QTest::addColumn<int>("corners");
    QTest::newRow("none") << "" << 0;
    QTest::newRow("three") << "100x50;150x100;100x150;" << 3;
    QTest::newRow("unreadable parts skipped") << "abc;;1x2x3;x;100x50;;150x100;nanxinf;" << 4;
    QTest::newRow("five, first four kept") << "100x50;150x100;100x150;50x100;0x0;" << 4;
    QTest::newRow("separators only") << ";;;;" << 0;
}

void TestVickersItem::fewerOrUnreadableCorners() {
    QFETCH(QString, coords);
    QFETCH(int, corners);
    auto item = loaded({{"coords", coords}, {"charge", "garbage"}});
    QCOMPARE(item->mline().size(), corners);
    QCOMPARE(item->handgripItems().size(), corners);
    QCOMPARE(item->charge(), 0.0);
    QCOMPARE(item->computeMesures(nullptr), corners == 4);
    if (corners < 4) {
        QCOMPARE(item->accessmesure(9), 0.0);
        QVERIFY(!item->endEdition());
        QVERIFY(item->hardnessDesignation().isEmpty());
    }
}

void TestVickersItem::chargeKeepsTwoDecimals_data() {
    QTest::addColumn<double>("load");
    QTest::addColumn<QString>("text");
    QTest::newRow("0.987 rounds up") << 0.987 << "0.99";
    QTest::newRow("0.98 as is") << 0.98 << "0.98";
    QTest::newRow("294.2 padded") << 294.2 << "294.20";
}

void TestVickersItem::chargeKeepsTwoDecimals() {
    QFETCH(double, load);
    QFETCH(QString, text);
    auto item = fromCorners(rhombus(100, 100), load);
    const auto attrs = attributes(*item);
    QCOMPARE(attrs.value("charge"), text);
    auto back = loaded(attrs);
    QCOMPARE(back->charge(), text.toDouble());
    QVERIFY(back->computeMesures(nullptr));
    QCOMPARE(back->accessmesure(2), text.toDouble());
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
    QVERIFY(ended.count() >= 1);
    QCOMPARE(item->mline().at(1), QPointF(220, 150));
    QCOMPARE(item->accessmesureP(1), 120.0);
    QCOMPARE(item->accessmesureP(0), 100.0);
    QCOMPARE(item->polygonItem()->polygon().at(1), QPointF(220, 150));
}

void TestVickersItem::designation_data() {
    QTest::addColumn<double>("load");
    QTest::addColumn<double>("diagonal");
    QTest::addColumn<QString>("designation");
    QTest::newRow("0.98 N is HV 0.1") << 0.98 << 100.0 << "18.5 HV 0.1";
    QTest::newRow("three digits") << 0.98 << 31.6227766 << "185 HV 0.1";
    QTest::newRow("rounding gains a digit") << 0.98 << 136.14 << "10.0 HV 0.1";
    QTest::newRow("thousands keep three digits") << 294.2 << 100.0 << "5560 HV 30";
    QTest::newRow("9.807 N is HV 1") << 9.807 << 1000.0 << "1.85 HV 1";
    QTest::newRow("1.471 N is HV 0.15") << 1.471 << 50.0 << "111 HV 0.15";
}

void TestVickersItem::designation() {
    QFETCH(double, load);
    QFETCH(double, diagonal);
    QFETCH(QString, designation);
    QCOMPARE(fromCorners(rhombus(diagonal, diagonal), load)->hardnessDesignation(), designation);
}

void TestVickersItem::diagonalsDiffer_data() {
    QTest::addColumn<double>("d1");
    QTest::addColumn<double>("d2");
    QTest::addColumn<QString>("warning");
    QTest::newRow("equal") << 100.0 << 100.0 << "";
    QTest::newRow("exactly 5 % is accepted") << 97.5 << 102.5 << "";
    QTest::newRow("7.3 %") << 100.0 << 107.6
                           << "Diagonals differ by 7.3 % (limit 5 %): check the indentation or the "
                              "specimen's flatness";
}

void TestVickersItem::diagonalsDiffer() {
    QFETCH(double, d1);
    QFETCH(double, d2);
    QFETCH(QString, warning);
    QString text = QStringLiteral("stale");
    QCOMPARE(fromCorners(rhombus(d1, d2))->diagonalsDiffer(&text), !warning.isEmpty());
    QCOMPARE(text, warning);
}

void TestVickersItem::saveLoadSaveIdentical_data() {
    QTest::addColumn<QPointF>("hostPos");
    QTest::addColumn<bool>("highPrecision");
    QTest::newRow("as drawn") << QPointF(0, 0) << true;
    QTest::newRow("moved by the host") << QPointF(30, -20) << true;
    QTest::newRow("standard precision") << QPointF(0, 0) << false;
}

void TestVickersItem::saveLoadSaveIdentical() {
    QFETCH(QPointF, hostPos);
    QFETCH(bool, highPrecision);
    VickersPItem* item = draw(rhombus(120, 80));
    QVERIFY(item);
    item->setCharge(0.987);
    item->setHighPrecision(highPrecision);
    item->setPos(hostPos);
    const auto saved = attributes(*item);
    QCOMPARE(saved.value("coords").count(';'), 4);
    auto back = loaded(saved);
    QCOMPARE(attributes(*back), saved);
    QCOMPARE(back->mapToScene(back->mline().at(0)), item->mapToScene(item->mline().at(0)));
    std::unique_ptr<AbstractBaseItem> copy(item->clone(3));
    QCOMPARE(attributes(*copy), saved);
}

void TestVickersItem::factoryAndContext() {
    QString name = QStringLiteral("VickersPItem");
    std::unique_ptr<AbstractBaseItem> made(XBaseItemToolCreate(name, nullptr, 7, nullptr));
    QVERIFY(qobject_cast<VickersPItem*>(made.get()));
    QCOMPARE(made->getType(), name);
    QCOMPARE(made->getGUIDname(), QString("VickersPItem7"));
    QVERIFY(!made->creationStarted());

    // A source's measures are taken over; three points are ignored.
    auto source = fromCorners(rhombus(100, 100));
    _AUTOPOINTPARAMS params;
    params.source = source.get();
    params.points = rhombus(100, 100).mid(0, 3);
    VickersPItem item(nullptr, 8, &params);
    QVERIFY(item.generated() && item.creationStarted());
    QVERIFY(item.mline().isEmpty());
    QCOMPARE(item.accessmesure(9), source->accessmesure(9));
    QCOMPARE(item.accessmesureP(0), 100.0);
}

QTEST_MAIN(TestVickersItem)
#include "tst_vickersitem.moc"
