#include "AbstractScene.h"
#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "CommonParams.h"
#include "HoverEventItem.h"
#include "ItemFactory.h"
#include "LineItem.h"
#include "RulerItem.h"
#include "SimpleTextItem.h"

#include <QAction>
#include <QDir>
#include <QDomDocument>
#include <QGraphicsView>
#include <QMenu>
#include <QPainter>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

namespace {

using Attributes = QMap<QString, QString>;

Attributes save(const AbstractBaseItem* item) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    item->toXml(e);
    Attributes attributes;
    const QDomNamedNodeMap map = e.attributes();
    for (int i = 0; i < map.count(); ++i)
        attributes.insert(map.item(i).nodeName(), map.item(i).nodeValue());
    return attributes;
}

AbstractBaseItem* load(const QString& className, const AbstractBaseItem* from) {
    QDomDocument doc;
    QDomElement e = doc.createElement(QStringLiteral("item"));
    from->toXml(e);
    QString name = className;
    AbstractBaseItem* item = XBaseItemToolCreate(name, nullptr, 7, nullptr);
    if (item)
        item->fromXml(e);
    return item;
}

// Chooses a menu entry the way a click does: by its text, through the action's data.
bool chooseFromMenu(AbstractBaseItem* item, const QString& text, bool editMenu = false) {
    QMenu menu;
    editMenu ? item->fillEditMenu(&menu) : item->fillContextMenu(&menu);
    for (QAction* action : menu.actions()) {
        if (action->text() == text) {
            editMenu ? item->applyEditMenu(action->data().toInt())
                     : item->applyContextMenu(action->data().toInt());
            return true;
        }
    }
    return false;
}

QStringList menuTexts(AbstractBaseItem* item, bool checkedOnly = false) {
    QMenu menu;
    item->fillContextMenu(&menu);
    QStringList texts;
    for (QAction* action : menu.actions()) {
        if (!checkedOnly || action->isChecked())
            texts << (action->isSeparator() ? QStringLiteral("|") : action->text());
    }
    return texts;
}

double itemRotation(const QGraphicsItem* item) {
    return item->rotation();
}

} // namespace

class TestLines : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();

    void factoryMakesEachClass_data();
    void factoryMakesEachClass();
    void lineMeasures_data();
    void lineMeasures();
    void lineThresholds_data();
    void lineThresholds();
    void orthogonalConstraint_data();
    void orthogonalConstraint();
    void constraintEndsWithRelease();
    void lineFromContextRecord();
    void lineHandgripDrag();
    void linePainting_data();
    void linePainting();
    void lineMenuChoices_data();
    void lineMenuChoices();
    void orthoModeReachesTheScene();
    void arrowThresholdsAndPlacement_data();
    void arrowThresholdsAndPlacement();
    void arrowHeadShrinksOnShortArrows_data();
    void arrowHeadShrinksOnShortArrows();
    void arrowScaleMenu();
    void arrow2ClickAndModes();
    void arrow2SideDragAndRotation();
    void rulerSinglePressAndResize();
    void rulerGraduations_data();
    void rulerGraduations();
    void xmlRoundTrip_data();
    void xmlRoundTrip();
    void sceneOfEachItem();
    void badXmlNeverCrashes_data();
    void badXmlNeverCrashes();

private:
    QPoint at(const QPointF& p) const { return m_view->mapFromScene(p); }
    // Press at from, move through to, release there; the item survives only if accepted.
    QPointer<AbstractBaseItem> draw(const QString& tool, const QPointF& from, const QPointF& to,
                                    Qt::KeyboardModifiers modifiers = {}, double factor = 1.0);
    void dragGrip(const HoverEventItem* grip, const QPointF& to);
    void zoomIn(double factor);

    AbstractScene* m_scene = nullptr;
    QGraphicsView* m_view = nullptr;
};

void TestLines::init() {
    getCommonParamsRef()->clear();
    m_scene = new AbstractScene(QRectF(0, 0, 400, 300));
    m_view = new QGraphicsView(m_scene);
    m_view->setFixedSize(420, 320);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view));
}

void TestLines::cleanup() {
    delete m_view;
    delete m_scene;
}

void TestLines::zoomIn(double factor) {
    m_scene->setSceneRect(0, 0, 400 / factor, 300 / factor);
    m_view->scale(factor, factor);
}

QPointer<AbstractBaseItem> TestLines::draw(const QString& tool, const QPointF& from, const QPointF& to,
                                           Qt::KeyboardModifiers modifiers, double factor) {
    QPointer<AbstractBaseItem> item = m_scene->startTool(tool);
    if (!item)
        return item;
    Calibration calibration;
    calibration.factor = factor;
    item->setCalibration(calibration);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, modifiers, at(from));
    if (to != from)
        QTest::mouseMove(m_view->viewport(), at(to));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, modifiers, at(to));
    return item;
}

void TestLines::dragGrip(const HoverEventItem* grip, const QPointF& to) {
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at(grip->scenePos()));
    QTest::mouseMove(m_view->viewport(), at(to));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at(to));
}

void TestLines::factoryMakesEachClass_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<int>("subType");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("grips");
    QTest::newRow("line") << "LineItem" << 1 << 5 << 2;
    QTest::newRow("ruler") << "RulerItem" << 4 << 0 << 8;
    QTest::newRow("arrow") << "ArrowItem" << 4 << 0 << 2;
    QTest::newRow("block arrow") << "Arrow2Item" << 4 << 0 << 8;
}

void TestLines::factoryMakesEachClass() {
    QFETCH(QString, className);
    QFETCH(int, subType);
    QFETCH(int, flags);
    QFETCH(int, grips);
    QVERIFY(factoryBuilds(className));
    QScopedPointer<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, 12, nullptr));
    QVERIFY(item);
    QCOMPARE(item->getType(), className);
    QCOMPARE(int(item->getSubType()), subType);
    QCOMPARE(int(item->mesuresFlag()), flags);
    QCOMPARE(item->getGUIDname(), className + "12");
    QCOMPARE(item->handgripItems().size(), grips);
    QCOMPARE(item->mline(), (QList<QPointF>{{0, 0}, {0, 0}}));
    QVERIFY(!item->creationStarted());
    for (const HoverEventItem* grip : item->handgripItems())
        QVERIFY(!grip->isVisible());
}

void TestLines::lineMeasures_data() {
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("angle");
    QTest::addColumn<QString>("label");
    QTest::newRow("rightwards, pixels")
        << QPointF(50, 60) << QPointF(150, 60) << 1.0 << 100.0 << 0.0 << "dist1:100.00*mm";
    QTest::newRow("3-4-5 up right, calibrated")
        << QPointF(50, 100) << QPointF(80, 60) << 0.5 << 50.0 << 53.130102354156 << "dist1:25.00*mm";
    QTest::newRow("straight down, calibrated")
        << QPointF(200, 50) << QPointF(200, 250) << 0.5 << 200.0 << 270.0 << "dist1:100.00*mm";
    QTest::newRow("leftwards") << QPointF(300, 100) << QPointF(240, 100) << 2.0 << 60.0 << 180.0
                               << "dist1:120.00*mm";
}

void TestLines::lineMeasures() {
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(double, factor);
    QFETCH(double, length);
    QFETCH(double, angle);
    QFETCH(QString, label);
    QSignalSpy accepted(m_scene, &AbstractScene::itemAccepted);
    QPointer<AbstractBaseItem> item = draw("LineItem", from, to, {}, factor);
    QVERIFY(item);
    QCOMPARE(accepted.count(), 1);
    QVERIFY(item->isSelected());
    QCOMPARE(item->mline(), (QList<QPointF>{from, to}));
    QCOMPARE(item->accessmesureP(AbstractBaseItem::Dist1), length);
    QCOMPARE(item->accessmesure(AbstractBaseItem::Dist1), length * factor);
    QVERIFY(qAbs(item->accessmesureP(AbstractBaseItem::Ang1) - angle) < 1e-9);
    QCOMPARE(item->accessmesure(AbstractBaseItem::Ang1), item->accessmesureP(AbstractBaseItem::Ang1));
    // No reference length yet: the second angle is 0.
    QCOMPARE(item->accessmesureP(AbstractBaseItem::Ang2), 0.0);
    QCOMPARE(item->mesureIndex(), 1);
    QCOMPARE(item->label()->text(), label);
    QCOMPARE(item->centroid(), (from + to) / 2);
    QCOMPARE(item->handgripCentroid()->scenePos(), (from + to) / 2);
    auto* line = qobject_cast<LineItem*>(item);
    QVERIFY(!line->showStartMark());
    for (const HoverEventItem* grip : item->handgripItems())
        QVERIFY(grip->isVisible());
}

void TestLines::lineThresholds_data() {
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QPointF>("delta");
    QTest::addColumn<bool>("accepted");
    QTest::newRow("line 7 px") << "LineItem" << QPointF(7, 0) << false;
    QTest::newRow("line 8 px") << "LineItem" << QPointF(0, -8) << true;
    QTest::newRow("line diagonal 7.07") << "LineItem" << QPointF(5, 5) << false;
    QTest::newRow("line diagonal 8.49") << "LineItem" << QPointF(-6, 6) << true;
    // Never moved: the length was never measured.
    QTest::newRow("line click") << "LineItem" << QPointF(0, 0) << false;
    QTest::newRow("arrow 7 px") << "ArrowItem" << QPointF(7, 0) << false;
    QTest::newRow("arrow 8 px") << "ArrowItem" << QPointF(8, 0) << true;
    QTest::newRow("arrow diagonal 7.07") << "ArrowItem" << QPointF(5, -5) << false;
    QTest::newRow("arrow diagonal 8.49") << "ArrowItem" << QPointF(6, 6) << true;
    QTest::newRow("ruler click") << "RulerItem" << QPointF(0, 0) << true;
    QTest::newRow("block arrow click") << "Arrow2Item" << QPointF(0, 0) << true;
}

void TestLines::lineThresholds() {
    QFETCH(QString, tool);
    QFETCH(QPointF, delta);
    QFETCH(bool, accepted);
    QSignalSpy acceptedSpy(m_scene, &AbstractScene::itemAccepted);
    QSignalSpy rejectedSpy(m_scene, &AbstractScene::itemRejected);
    const QPointF from(100, 100);
    QPointer<AbstractBaseItem> item = draw(tool, from, from + delta);
    QCOMPARE(bool(item), accepted);
    QCOMPARE(acceptedSpy.count(), accepted ? 1 : 0);
    QCOMPARE(rejectedSpy.count(), accepted ? 0 : 1);
    if (!accepted)
        QCOMPARE(rejectedSpy.first().first().toString(), tool);
}

void TestLines::orthogonalConstraint_data() {
    QTest::addColumn<QPointF>("delta");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QPointF>("end");
    // Displacements compare as truncated pixels: 5 and 5 tie and give a vertical line.
    QTest::newRow("tie is vertical") << QPointF(5.7, -5.2) << false << QPointF(10, 4.8);
    QTest::newRow("wider is horizontal") << QPointF(6.1, -5.9) << false << QPointF(16.1, 10);
    QTest::newRow("tie with shift") << QPointF(5.7, -5.2) << true << QPointF(10, 4.8);
    QTest::newRow("wider with shift") << QPointF(6.1, -5.9) << true << QPointF(16.1, 10);
}

void TestLines::orthogonalConstraint() {
    QFETCH(QPointF, delta);
    QFETCH(bool, shift);
    QFETCH(QPointF, end);
    zoomIn(10);
    const QPointF from(10, 10);
    QPointer<AbstractBaseItem> item = m_scene->startTool("LineItem");
    if (!shift)
        item->setConstrainstate(true);
    const Qt::KeyboardModifiers modifiers = shift ? Qt::ShiftModifier : Qt::NoModifier;
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, modifiers, at(from));
    QTest::mouseMove(m_view->viewport(), at(from + delta));
    QVERIFY(item->constrained());
    const QPointF p1 = item->mline().at(1);
    QVERIFY2(qAbs(p1.x() - end.x()) < 1e-9 && qAbs(p1.y() - end.y()) < 1e-9,
             qPrintable(QStringLiteral("%1,%2").arg(p1.x()).arg(p1.y())));
    QCOMPARE(qobject_cast<LineItem*>(item)->line().p2(), p1);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, modifiers, at(from + delta));
}

void TestLines::constraintEndsWithRelease() {
    QPointer<AbstractBaseItem> item = m_scene->startTool("LineItem");
    item->setConstrainstate(true);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at({100, 100}));
    QTest::mouseMove(m_view->viewport(), at({160, 130}));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at({160, 130}));
    QVERIFY(item);
    QCOMPARE(item->mline().at(1), QPointF(160, 100));
    QVERIFY(!item->constrained());

    QPointer<AbstractBaseItem> next = draw("LineItem", {100, 200}, {160, 230});
    QVERIFY(next);
    QVERIFY(!next->constrained());
    QCOMPARE(next->mline().at(1), QPointF(160, 230));
}

void TestLines::lineFromContextRecord() {
    LineItem source(nullptr, 1, nullptr);
    _AUTOPOINTPARAMS fromPoints;
    fromPoints.points = {{10, 20}, {40, 60}, {99, 99}};
    fromPoints.source = &source;
    LineItem line(nullptr, 2, &fromPoints);
    QVERIFY(line.creationStarted());
    QVERIFY(line.generated());
    QCOMPARE(line.mline(), (QList<QPointF>{{10, 20}, {40, 60}}));
    QCOMPARE(line.accessmesureP(AbstractBaseItem::Dist1), 50.0);
    QCOMPARE(line.handgripItems().at(1)->pos(), QPointF(40, 60));

    _AUTOPOINTPARAMS fromRect;
    fromRect.rect = QRectF(5, 6, 30, 40);
    fromRect.texts.insert("a", "b");
    LineItem diagonal(nullptr, 3, &fromRect);
    QCOMPARE(diagonal.mline(), (QList<QPointF>{{5, 6}, {35, 46}}));
    QCOMPARE(diagonal.accessmesure(AbstractBaseItem::Dist1), 50.0);
    diagonal.fixupForTransform(fromRect, 0, nullptr);
    QVERIFY(fromRect.texts.isEmpty());
}

void TestLines::lineHandgripDrag() {
    QPointer<AbstractBaseItem> item = draw("LineItem", {100, 100}, {200, 100}, {}, 0.5);
    QVERIFY(item);
    QSignalSpy start(item.data(), &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy changed(item.data(), &AbstractBaseItem::mesureChanged);
    QSignalSpy end(item.data(), &AbstractBaseItem::mesureChangedEND);
    HoverEventItem* grip = item->handgripItems().at(0);
    dragGrip(grip, {200, 160});
    QCOMPARE(start.count(), 1);
    QVERIFY(changed.count() >= 1);
    QCOMPARE(end.count(), 1);
    QCOMPARE(start.first().first().value<void*>(), static_cast<void*>(item.data()));
    QCOMPARE(item->mline(), (QList<QPointF>{{200, 160}, {200, 100}}));
    QCOMPARE(grip->scenePos(), QPointF(200, 160));
    QCOMPARE(item->accessmesureP(AbstractBaseItem::Dist1), 60.0);
    QCOMPARE(item->label()->text(), QString("dist1:30.00*mm"));
    // The dragged grip shows the direction, whatever the label shows.
    QCOMPARE(grip->tooltip(), QString(" ang1:90.00"));
    QVERIFY(!qobject_cast<LineItem*>(item)->showStartMark());
}

void TestLines::linePainting_data() {
    QTest::addColumn<QString>("arrows");
    QTest::addColumn<bool>("startMark");
    QTest::addColumn<bool>("head");
    QTest::addColumn<bool>("tail");
    QTest::newRow("start mark only") << "noArrow" << true << false << false;
    QTest::newRow("head") << "ArrowHead" << false << true << false;
    QTest::newRow("tail") << "ArrowTail" << false << false << true;
    QTest::newRow("both, with the mark") << "ArrowBoth" << true << true << true;
}

void TestLines::linePainting() {
    QFETCH(QString, arrows);
    QFETCH(bool, startMark);
    QFETCH(bool, head);
    QFETCH(bool, tail);
    _AUTOPOINTPARAMS params;
    params.points = {{20, 50}, {120, 50}};
    LineItem line(nullptr, 1, &params);
    QVERIFY(line.showStartMark());
    QVERIFY(chooseFromMenu(&line, arrows));
    if (!startMark)
        line.applyContextMenu(LineItem::ToggleStartMark);
    QImage image(140, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    line.paint(&painter, nullptr, nullptr);
    painter.end();
    auto darkAround = [&](int x, int y) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (qGray(image.pixel(x + dx, y)) < 128)
                return true;
        }
        return false;
    };
    // The dashed mark crosses the start point over L/6 + 24 = 40.67 pixels each side.
    int markPixels = 0;
    for (int y = 0; y < 100; ++y)
        markPixels += qGray(image.pixel(20, y)) < 128 ? 1 : 0;
    QCOMPARE(markPixels > 20 && markPixels < 80, startMark);
    QVERIFY(!startMark || qGray(image.pixel(20, 5)) > 128);
    // Heads of 2 x 10 pixels: their backs cross the line 17.32 pixels from either end.
    QCOMPARE(darkAround(103, 50), head);
    QCOMPARE(darkAround(37, 50), tail);
}

void TestLines::lineMenuChoices_data() {
    QTest::addColumn<QStringList>("choices");
    QTest::addColumn<int>("mesureIndex");
    QTest::addColumn<bool>("head");
    QTest::addColumn<bool>("tail");
    QTest::addColumn<QStringList>("checked");
    QTest::addColumn<QString>("label");
    const QString length = "dist1:50.00*mm";
    QTest::newRow("defaults") << QStringList{} << 1 << false << false << QStringList{"Distance1", "noArrow"}
                              << length;
    QTest::newRow("None stores 100") << QStringList{"None"} << 100 << false << false
                                     << QStringList{"None", "noArrow"} << "";
    QTest::newRow("direction") << QStringList{"Ang1"} << 3 << false << false << QStringList{"Ang1", "noArrow"}
                               << "ang1:306.87";
    QTest::newRow("both then head") << QStringList{"ArrowBoth", "ArrowHead"} << 1 << true << false
                                    << QStringList{"Distance1", "ArrowHead"} << length;
    QTest::newRow("tail") << QStringList{"ArrowTail"} << 1 << false << true
                          << QStringList{"Distance1", "ArrowTail"} << length;
    QTest::newRow("both") << QStringList{"Ang2", "ArrowBoth"} << 4 << true << true
                          << QStringList{"Ang2", "ArrowHead", "ArrowTail", "ArrowBoth"} << "ang2:0.00";
    QTest::newRow("both then none") << QStringList{"ArrowBoth", "noArrow"} << 1 << false << false
                                    << QStringList{"Distance1", "noArrow"} << length;
}

void TestLines::lineMenuChoices() {
    QFETCH(QStringList, choices);
    QFETCH(int, mesureIndex);
    QFETCH(bool, head);
    QFETCH(bool, tail);
    QFETCH(QStringList, checked);
    QFETCH(QString, label);
    QPointer<AbstractBaseItem> item = draw("LineItem", {100, 100}, {130, 140});
    QVERIFY(item);
    QCOMPARE(menuTexts(item), (QStringList{"Distance1", "Ang1", "Ang2", "None", "|", "noArrow", "ArrowHead",
                                           "ArrowTail", "ArrowBoth", "|", "Ortho on", "Ortho off"}));
    QSignalSpy changed(item.data(), &AbstractBaseItem::mesureChanged);
    for (const QString& choice : choices)
        QVERIFY(chooseFromMenu(item, choice));
    auto* line = qobject_cast<LineItem*>(item);
    QCOMPARE(line->mesureIndex(), mesureIndex);
    QCOMPARE(line->arrowHead(), head);
    QCOMPARE(line->arrowTail(), tail);
    QCOMPARE(menuTexts(item, true), checked);
    QCOMPARE(line->label()->text(), label);
    QCOMPARE(changed.count(), int(choices.filter(QRegularExpression("^(Ang|None)")).size()));

    // The next line starts with the same choices.
    QPointer<AbstractBaseItem> next = draw("LineItem", {100, 200}, {130, 240});
    QVERIFY(next);
    auto* nextLine = qobject_cast<LineItem*>(next);
    QCOMPARE(nextLine->mesureIndex(), mesureIndex);
    QCOMPARE(nextLine->arrowHead(), head);
    QCOMPARE(nextLine->arrowTail(), tail);
    QCOMPARE(nextLine->arrowFactor(), 2);
    if (choices.contains("None"))
        QCOMPARE(getCommonParams("line_mesureIndex", 0).toInt(), 100);
}

void TestLines::orthoModeReachesTheScene() {
    QPointer<AbstractBaseItem> item = draw("LineItem", {100, 100}, {150, 50});
    QVERIFY(item);
    QSignalSpy ortho(m_scene, &AbstractScene::orthoReferenceAngleChanged);
    QVERIFY(chooseFromMenu(item, "Ortho on"));
    QCOMPARE(m_scene->orthoReferenceAngle(), 45.0);
    // Ortho choices store the arrow settings as well.
    QCOMPARE(getCommonParams("line_arrowFactor", -1).toInt(), 2);
    QCOMPARE(getCommonParams("line_arrowHead", -1).toInt(), 0);
    QVERIFY(chooseFromMenu(item, "Ortho off"));
    QCOMPARE(m_scene->orthoReferenceAngle(), 0.0);
    QCOMPARE(ortho.count(), 2);
    item->applyContextMenu(LineItem::ToggleStartMark);
    QVERIFY(qobject_cast<LineItem*>(item)->showStartMark());
}

void TestLines::arrowThresholdsAndPlacement_data() {
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<double>("rotation");
    const QPointF from(200, 150);
    QTest::newRow("right") << from + QPointF(50, 0) << 0.0;
    QTest::newRow("up") << from + QPointF(0, -50) << -90.0;
    QTest::newRow("down") << from + QPointF(0, 50) << -270.0;
    QTest::newRow("left") << from + QPointF(-50, 0) << -180.0;
    QTest::newRow("down left") << from + QPointF(-50, 50) << -225.0;
}

void TestLines::arrowThresholdsAndPlacement() {
    QFETCH(QPointF, to);
    QFETCH(double, rotation);
    const QPointF from(200, 150);
    QPointer<AbstractBaseItem> item = draw("ArrowItem", from, to);
    QVERIFY(item);
    QCOMPARE(item->pos(), to);
    QVERIFY(qAbs(itemRotation(item) - rotation) < 1e-9);
    // The tail lies at the shaft's end, one pixel past the length, in the scene.
    const QPointF tail = item->mapToScene(QPointF(-(QLineF(from, to).length() + 1), 0));
    QVERIFY(QLineF(tail, from + (from - to) / QLineF(from, to).length()).length() < 1e-9);
    const QList<HoverEventItem*> grips = item->handgripItems();
    QVERIFY(QLineF(grips[0]->scenePos(), from).length() < 1e-9);
    QVERIFY(QLineF(grips[1]->scenePos(), to).length() < 1e-9);
}

void TestLines::arrowHeadShrinksOnShortArrows_data() {
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("halfHead");
    QTest::newRow("long: full head") << 100.0 << 10.0;
    QTest::newRow("at the threshold") << 32.0 << 10.0;
    QTest::newRow("short") << 16.0 << 10 * (16 * 0.85 / 32 + 0.15);
}

void TestLines::arrowHeadShrinksOnShortArrows() {
    QFETCH(double, length);
    QFETCH(double, halfHead);
    const QRectF r = ArrowItem::arrowPath(length, 1.0).boundingRect();
    QVERIFY(qAbs(r.top() + halfHead) < 1e-9);
    QVERIFY(qAbs(r.bottom() - halfHead) < 1e-9);
    QVERIFY(qAbs(r.left() + length + 1) < 1e-9);
    QCOMPARE(r.right(), 0.0);
}

void TestLines::arrowScaleMenu() {
    QPointer<AbstractBaseItem> item = draw("ArrowItem", {100, 100}, {200, 100});
    QVERIFY(item);
    auto* arrow = qobject_cast<ArrowItem*>(item);
    item->setPen(QPen(Qt::blue, 3));
    QCOMPARE(menuTexts(item, true), QStringList{"1:1"});
    QVERIFY(chooseFromMenu(item, "x:x"));
    QCOMPARE(arrow->arrowScale(), 3.0);
    QCOMPARE(menuTexts(item, true), QStringList{"x:x"});
    QVERIFY(qAbs(arrow->path().boundingRect().top() + 30) < 1e-9);
    QVERIFY(chooseFromMenu(item, "1:1"));
    QCOMPARE(arrow->arrowScale(), 1.0);

    QSignalSpy start(item.data(), &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy end(item.data(), &AbstractBaseItem::mesureChangedEND);
    dragGrip(arrow->handgripItems().at(0), {100, 200});
    QCOMPARE(start.count(), 1);
    QCOMPARE(end.count(), 1);
    QCOMPARE(item->pos(), QPointF(200, 100));
    QVERIFY(qAbs(itemRotation(item) + 45) < 1e-9);
}

void TestLines::arrow2ClickAndModes() {
    const QPointF click(200, 150);
    QPointer<AbstractBaseItem> item = draw("Arrow2Item", click, click);
    QVERIFY(item);
    auto* arrow = qobject_cast<Arrow2Item*>(item);
    const QRectF square(112, 62, 176, 176);
    QCOMPARE(arrow->frame(), square);
    QCOMPARE(arrow->path().boundingRect(), square);
    QCOMPARE(arrow->path().elementCount(), 8);
    QCOMPARE(QPointF(arrow->path().elementAt(2)), QPointF(112 + 176 * 2.0 / 3, 62 + 176 / 3.0));
    QCOMPARE(arrow->handgripItems().at(HoverEventItem::BottomMiddle)->scenePos(), QPointF(200, 238));
    QCOMPARE(menuTexts(item, true), QStringList{"arrow"});

    QVERIFY(chooseFromMenu(item, "dblarrow", true));
    QCOMPARE(arrow->arrowMode(), 1);
    QCOMPARE(arrow->path().elementCount(), 11);
    QVERIFY(QLineF(arrow->path().boundingRect().bottomRight(), square.bottomRight()).length() < 1e-9);
    QVERIFY(QLineF(arrow->path().elementAt(5), QPointF(200, 238)).length() < 1e-9);
    QVERIFY(chooseFromMenu(item, "arrow"));
    QCOMPARE(arrow->path().elementCount(), 8);
}

void TestLines::arrow2SideDragAndRotation() {
    const QPointF click(200, 150);
    QPointer<AbstractBaseItem> item = draw("Arrow2Item", click, click);
    QVERIFY(item);
    auto* arrow = qobject_cast<Arrow2Item*>(item);
    QSignalSpy start(item.data(), &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy changed(item.data(), &AbstractBaseItem::mesureChanged);
    QSignalSpy end(item.data(), &AbstractBaseItem::mesureChangedEND);

    dragGrip(arrow->handgripItems().at(HoverEventItem::MiddleRight), {320, 150});
    QCOMPARE(arrow->frame(), QRectF(112, 62, 208, 176));
    QCOMPARE(arrow->path().boundingRect(), arrow->frame());
    QCOMPARE(arrow->handgripItems().at(HoverEventItem::TopRight)->scenePos(), QPointF(320, 62));
    QCOMPARE(start.count(), 1);
    QVERIFY(changed.count() >= 1);
    QCOMPARE(end.count(), 1);

    // A corner grip turns the arrow about its centre: the top-left corner, 104 left of and 88 above
    // the centre, dragged onto the horizontal through the centre.
    HoverEventItem* corner = arrow->handgripItems().at(HoverEventItem::TopLeft);
    dragGrip(corner, {80, 150});
    const QPointF centre = item->mapToScene(arrow->frame().center());
    QVERIFY(QLineF(centre, QPointF(216, 150)).length() < 1e-9);
    QVERIFY(qAbs(itemRotation(item) + std::atan2(88.0, 104.0) * 180 / M_PI) < 1e-9);
    QVERIFY(QLineF(corner->scenePos(), QPointF(216 - std::hypot(104.0, 88.0), 150)).length() < 1e-9);
    QCOMPARE(start.count(), 2);
    QCOMPARE(end.count(), 2);
}

void TestLines::rulerSinglePressAndResize() {
    QPointer<AbstractBaseItem> item = m_scene->startTool("RulerItem");
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, at({100, 100}));
    // Moves during creation change nothing.
    QTest::mouseMove(m_view->viewport(), at({150, 180}));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, at({150, 180}));
    QVERIFY(item);
    QVERIFY(item->isSelected());
    auto* ruler = qobject_cast<RulerItem*>(item);
    QCOMPARE(ruler->rect(), QRectF(100, 82, 200, 36));
    QCOMPARE(item->mline(), (QList<QPointF>{{100, 82}, {300, 118}}));
    QCOMPARE(item->handgripItems().at(HoverEventItem::MiddleRight)->scenePos(), QPointF(300, 100));

    QSignalSpy start(item.data(), &AbstractBaseItem::mesureChangedSTART);
    QSignalSpy end(item.data(), &AbstractBaseItem::mesureChangedEND);
    dragGrip(item->handgripItems().at(HoverEventItem::MiddleRight), {350, 100});
    QCOMPARE(ruler->rect(), QRectF(100, 82, 250, 36));
    dragGrip(item->handgripItems().at(HoverEventItem::BottomMiddle), {200, 140});
    QCOMPARE(ruler->rect(), QRectF(100, 82, 250, 58));
    // A side dragged past the opposite one swaps them once released.
    dragGrip(item->handgripItems().at(HoverEventItem::MiddleLeft), {380, 100});
    QCOMPARE(ruler->rect(), QRectF(350, 82, 30, 58));
    QCOMPARE(item->mline(), (QList<QPointF>{{350, 82}, {380, 140}}));
    QCOMPARE(item->handgripItems().at(HoverEventItem::TopLeft)->scenePos(), QPointF(350, 82));
    QCOMPARE(start.count(), 3);
    QCOMPARE(end.count(), 3);

    QCOMPARE(menuTexts(item, true), QStringList{"x10"});
    QVERIFY(chooseFromMenu(item, "x1"));
    QCOMPARE(ruler->labelDivisor(), 10);
    QCOMPARE(menuTexts(item, true), QStringList{"x1"});
}

void TestLines::rulerGraduations_data() {
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("drawn");
    QTest::newRow("one unit every 4 px") << 0.25 << true;
    QTest::newRow("one unit every 10 px") << 0.1 << true;
    QTest::newRow("step as wide as the ruler") << 1.0 / 200 << false;
    QTest::newRow("zero factor") << 0.0 << false;
    QTest::newRow("negative factor") << -1.0 << false;
}

void TestLines::rulerGraduations() {
    QFETCH(double, factor);
    QFETCH(bool, drawn);
    RulerItem ruler(nullptr, 1, nullptr);
    QDomDocument doc;
    QDomElement e = doc.createElement("item");
    e.setAttribute("rect", "10x10 200x36");
    e.setAttribute("color", "#000000");
    e.setAttribute("width", "1");
    e.setAttribute("style", "1");
    ruler.fromXml(e);
    ruler.setPen(QPen(Qt::black, 0));
    Calibration calibration;
    calibration.factor = factor;
    ruler.setCalibration(calibration);

    QImage image(240, 80, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    ruler.paint(&painter, nullptr, nullptr);
    painter.end();
    auto dark = [&](double x, double y) { return qGray(image.pixel(int(x), int(y))) < 128; };
    if (!drawn) {
        QVERIFY(!dark(10, 12));
        return;
    }
    const double step = 1 / factor;
    // Ticks hang from the top edge: 10 px at 0 and every fifth, 15 px every tenth, else 5 px.
    const struct {
        int i;
        double length;
    } ticks[] = {{0, 10}, {1, 5}, {5, 10}, {10, 15}};
    for (const auto& tick : ticks) {
        const double x = 10 + tick.i * step;
        QVERIFY2(dark(x, 10 + tick.length - 1), qPrintable(QString::number(tick.i)));
        QVERIFY2(!dark(x, 10 + tick.length + 1), qPrintable(QString::number(tick.i)));
    }
}

void TestLines::xmlRoundTrip_data() {
    QTest::addColumn<QString>("className");
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<QPointF>("moved");
    QTest::newRow("line") << "LineItem" << QPointF(50, 60) << QPointF(173, 141) << QPointF();
    QTest::newRow("line moved by the host")
        << "LineItem" << QPointF(50, 60) << QPointF(173, 141) << QPointF(13.5, -7);
    QTest::newRow("arrow") << "ArrowItem" << QPointF(50, 60) << QPointF(173, 141) << QPointF();
    QTest::newRow("arrow moved") << "ArrowItem" << QPointF(50, 60) << QPointF(173, 141) << QPointF(13.5, -7);
    QTest::newRow("block arrow") << "Arrow2Item" << QPointF(150, 160) << QPointF(290, 280) << QPointF();
    QTest::newRow("block arrow moved")
        << "Arrow2Item" << QPointF(150, 160) << QPointF(290, 280) << QPointF(13.5, -7);
    QTest::newRow("ruler") << "RulerItem" << QPointF(50, 60) << QPointF(50, 60) << QPointF();
    QTest::newRow("ruler moved") << "RulerItem" << QPointF(50, 60) << QPointF(50, 60) << QPointF(13.5, -7);
}

void TestLines::xmlRoundTrip() {
    QFETCH(QString, className);
    QFETCH(QPointF, from);
    QFETCH(QPointF, to);
    QFETCH(QPointF, moved);
    QPointer<AbstractBaseItem> item = draw(className, from, to, {}, 0.5);
    QVERIFY(item);
    item->setPen(QPen(QColor(10, 200, 30), 2, Qt::DashLine));
    if (className == "LineItem")
        QVERIFY(chooseFromMenu(item, "ArrowTail"));
    if (className == "Arrow2Item")
        QVERIFY(chooseFromMenu(item, "dblarrow"));
    item->setPos(item->pos() + moved);

    const Attributes first = save(item);
    QScopedPointer<AbstractBaseItem> copy(load(className, item));
    QVERIFY(copy);
    QCOMPARE(save(copy.data()), first);
    QScopedPointer<AbstractBaseItem> cloned(item->clone(9));
    QCOMPARE(save(cloned.data()), first);

    if (className == "LineItem") {
        // The moved positions come back as the points, with the item at the origin.
        QCOMPARE(copy->pos(), QPointF());
        QCOMPARE(copy->mline(), (QList<QPointF>{from + moved, to + moved}));
        QCOMPARE(first.value("start"), QString("%1x%2").arg(from.x() + moved.x()).arg(from.y() + moved.y()));
        QCOMPARE(first.value("arrowTail"), QString("1"));
        QCOMPARE(first.value("arrowHead"), QString("0"));
        QCOMPARE(first.value("arrowFactor"), QString("2"));
        QCOMPARE(first.value("mesure1").toDouble(), QLineF(from, to).length() * 0.5);
        QCOMPARE(copy->pen().color(), QColor(10, 200, 30));
        QCOMPARE(qobject_cast<LineItem*>(copy.data())->line(), QLineF(from + moved, to + moved));
    }
    if (className == "ArrowItem") {
        QVERIFY(!first.contains("mesure1"));
        QCOMPARE(first.value("end"), QString("%1x%2").arg(to.x() + moved.x()).arg(to.y() + moved.y()));
        QCOMPARE(copy->pos(), to + moved);
    }
    if (className == "Arrow2Item") {
        // The press laid the corner 88 pixels up and left of itself; the drag moved the other one.
        QCOMPARE(first.value("begin"), QString("62x72"));
        QCOMPARE(first.value("end"), QString("290x280"));
        QCOMPARE(first.value("form"), QString("1"));
        QCOMPARE(first.value("rotation"), QString("0.0000"));
        QCOMPARE(copy->pos(), moved);
    }
    if (className == "RulerItem") {
        QCOMPARE(first.value("rect"), QString("50x42 200x36"));
        QCOMPARE(copy->pos(), moved);
        QCOMPARE(copy->handgripItems().at(HoverEventItem::BottomRight)->scenePos(), QPointF(250, 78) + moved);
    }
}

void TestLines::sceneOfEachItem() {
    QPointer<AbstractBaseItem> ruler = draw("RulerItem", {20, 30}, {20, 30}, {}, 0.5);
    QPointer<AbstractBaseItem> arrow = draw("ArrowItem", {40, 120}, {150, 80});
    QPointer<AbstractBaseItem> block = draw("Arrow2Item", {250, 40}, {330, 160});
    QVERIFY(chooseFromMenu(block, "dblarrow"));
    block->setBrush(QColor(255, 200, 0));
    QPointer<AbstractBaseItem> line = draw("LineItem", {60, 250}, {300, 200}, {}, 0.5);
    QVERIFY(ruler && arrow && block && line);
    QVERIFY(chooseFromMenu(line, "ArrowBoth"));
    line->setPen(QPen(Qt::blue, 2));
    QVERIFY(line->isSelected());
    const QImage image = m_view->grab().toImage();
    QVERIFY(image.save(QDir::current().absoluteFilePath("lines_scene.png")));
}

void TestLines::badXmlNeverCrashes_data() {
    QTest::addColumn<QString>("className");
    for (const char* name : {"LineItem", "ArrowItem", "Arrow2Item", "RulerItem"})
        QTest::newRow(name) << QString(name);
}

void TestLines::badXmlNeverCrashes() {
    QFETCH(QString, className);
    QDomDocument doc;
    QDomElement empty = doc.createElement("item");
    QDomElement bad = doc.createElement("item");
    for (const char* key : {"start", "end", "begin", "rect", "pos", "rotation", "form", "arrowFactor"})
        bad.setAttribute(key, "nanxinf 1e999");
    bad.setAttribute("rotation", "nan");
    bad.setAttribute("arrowFactor", "2147483647");
    bad.setAttribute("arrowHead", "1");
    for (const QDomElement& e : {empty, bad}) {
        QScopedPointer<AbstractBaseItem> item(XBaseItemToolCreate(className, nullptr, 1, nullptr));
        QVERIFY(item->fromXml(e));
        m_scene->addItem(item.data());
        QImage image(100, 100, QImage::Format_RGB32);
        QPainter painter(&image);
        m_scene->render(&painter);
        painter.end();
        QVERIFY(!save(item.data()).isEmpty());
        m_scene->removeItem(item.data());
    }
}

QTEST_MAIN(TestLines)
#include "tst_lines.moc"
