#include "Arrow2Item.h"
#include "ArrowItem.h"
#include "DataColumns.h"
#include "DrawingView.h"
#include "LineItem.h"
#include "NearPoints.h"
#include "RulerItem.h"

#include <QPainter>

#include <cmath>

namespace {

QImage painted(QGraphicsItem& item, const QSize& size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    item.paint(&painter, nullptr, nullptr);
    return image;
}

bool dark(const QImage& image, double x, double y) {
    return qGray(image.pixel(int(x), int(y))) < 128;
}

} // namespace

class TestLines : public QObject {
    Q_OBJECT
private slots:
    void init() { getCommonParamsRef()->clear(); }
    void drawnLinesAndArrows_data() {
        // label: empty when rejected
        const auto row = addColumns<QString, QPointF, QPointF, double, double, QString>(
            "tool", "from", "to", "factor", "angle", "label");
        const char *line = "LineItem", *arrow = "ArrowItem";
        const QPointF c(200, 150);
        row("3-4-5 up right, calibrated", line, {50, 100}, {80, 60}, 0.5, 53.130102354156, "dist1:25.00*mm");
        row("straight down, calibrated", line, {200, 50}, {200, 250}, 0.5, 270, "dist1:100.00*mm");
        row("line 7 px", line, c, c + QPointF(7, 0), 1, 0, "");
        row("line 8 px", line, c, c + QPointF(0, -8), 1, 90, "dist1:8.00*mm");
        row("line diagonal 7.07", line, c, c + QPointF(5, 5), 1, 0, "");
        row("line click, never measured", line, c, c, 1, 0, "");
        row("arrow 7 px", arrow, c, c + QPointF(7, 0), 1, 0, "");
        row("arrow 8 px right", arrow, c, c + QPointF(8, 0), 1, 0, "+");
        row("arrow down left", arrow, c, c + QPointF(-50, 50), 1, 225, "+");
    }

    void drawnLinesAndArrows() {
        QFETCH(QString, tool);
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        QFETCH(double, factor);
        QFETCH(double, angle);
        QFETCH(QString, label);
        DrawingView v;
        AbstractBaseItem* item = v.draw(tool, from, to, factor);
        QCOMPARE(bool(item), !label.isEmpty());
        if (!item)
            return;
        QVERIFY(item->isSelected());
        if (tool == "ArrowItem") {
            // The arrow sits at its head, turned clockwise on screen by the drawn direction.
            QCOMPARE(item->pos(), to);
            QVERIFY(qAbs(item->QGraphicsItem::rotation() + angle) < 1e-9);
            QVERIFY(near(item->handgripItems()[0]->scenePos(), from) &&
                    near(item->handgripItems()[1]->scenePos(), to));
        }
        if (tool != "LineItem")
            return;
        const double length = QLineF(from, to).length();
        QCOMPARE(item->mline(), (QList<QPointF>{from, to}));
        QCOMPARE(item->accessmesureP(AbstractBaseItem::Dist1), length);
        QCOMPARE(item->accessmesure(AbstractBaseItem::Dist1), length * factor);
        QVERIFY(qAbs(item->accessmesure(AbstractBaseItem::Ang1) - angle) < 1e-9);
        // No reference length yet: the second angle is 0.
        QCOMPARE(item->accessmesureP(AbstractBaseItem::Ang2), 0.0);
        QCOMPARE(item->label()->text(), label);
        QCOMPARE(item->handgripCentroid()->scenePos(), (from + to) / 2);
        QVERIFY(!qgraphicsitem_cast<LineItem*>(item)->showStartMark());
    }

    void orthogonalConstraint_data() {
        addColumns<QPointF, bool, QPointF>("delta", "shift", "end");
        // Displacements compare as truncated pixels: 5 and 5 tie and give a vertical line.
        QTest::newRow("tie is vertical") << QPointF(5.7, -5.2) << false << QPointF(10, 4.8);
        QTest::newRow("wider is horizontal") << QPointF(6.1, -5.9) << false << QPointF(16.1, 10);
        QTest::newRow("tie with shift") << QPointF(5.7, -5.2) << true << QPointF(10, 4.8);
    }

    void orthogonalConstraint() {
        QFETCH(QPointF, delta);
        QFETCH(bool, shift);
        QFETCH(QPointF, end);
        DrawingView v;
        v.zoom(QPointF(12, 10));
        const QPointF from(10, 10);
        QPointer<AbstractBaseItem> item = startTool(&v.scene, "LineItem");
        if (!shift)
            item->setConstrainstate(true);
        const Qt::KeyboardModifiers modifiers = shift ? Qt::ShiftModifier : Qt::NoModifier;
        v.press(from, modifiers);
        v.move(from + delta);
        QVERIFY(item->constrained());
        QVERIFY(near(item->mline().at(1), end));
        QCOMPARE(qgraphicsitem_cast<LineItem*>(item)->line().p2(), item->mline().at(1));
        // Too short to keep: the scene discards it at the release.
        v.release(from + delta, modifiers);
        QVERIFY(!item);
        // The constraint ends with the release: the next line goes where it is drawn.
        AbstractBaseItem* constrained = v.draw("LineItem", {10, 10}, {30, 14}, 1.0, modifiers);
        QVERIFY(constrained && !constrained->constrained());
        AbstractBaseItem* next = v.draw("LineItem", {10, 12}, {20, 20});
        QVERIFY(next && !next->constrained());
        QCOMPARE(next->mline().at(1), QPointF(20, 20));
    }

    void lineFromContextRecord() {
        auto line = generated<LineItem>({nullptr, {{10, 20}, {40, 60}, {99, 99}}, {}, {}, 0, 0, {}});
        QVERIFY(line->creationStarted() && line->generated());
        QCOMPARE(line->mline(), (QList<QPointF>{{10, 20}, {40, 60}}));
        QCOMPARE(line->accessmesureP(AbstractBaseItem::Dist1), 50.0);
        _AUTOPOINTPARAMS fromRect{nullptr, {}, QRectF(5, 6, 30, 40), {}, 0, 0, {{"a", "b"}}};
        auto diagonal = generated<LineItem>(fromRect);
        QCOMPARE(diagonal->mline(), (QList<QPointF>{{5, 6}, {35, 46}}));
        diagonal->fixupForTransform(fromRect, 0, nullptr);
        QVERIFY(fromRect.texts.isEmpty());
    }

    void lineHandgripDrag() {
        DrawingView v;
        AbstractBaseItem* item = v.draw("LineItem", {100, 100}, {200, 100}, 0.5);
        QVERIFY(item);
        EditSpy spy(item);
        v.dragGrip(item, 0, {200, 160});
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
        QCOMPARE(spy.start.first().first().value<void*>(), static_cast<void*>(item));
        QCOMPARE(item->mline(), (QList<QPointF>{{200, 160}, {200, 100}}));
        QCOMPARE(item->handgripItems()[0]->scenePos(), QPointF(200, 160));
        QCOMPARE(item->label()->text(), QString("dist1:30.00*mm"));
        // The dragged grip shows the direction, whatever the label shows.
        QCOMPARE(item->handgripItems()[0]->tooltip(), QString(" ang1:90.00"));
    }

    void linePainting_data() {
        addColumns<QString, bool, bool, bool>("arrows", "startMark", "head", "tail");
        QTest::newRow("start mark only") << "noArrow" << true << false << false;
        QTest::newRow("head") << "ArrowHead" << false << true << false;
        QTest::newRow("tail") << "ArrowTail" << false << false << true;
        QTest::newRow("both, with the mark") << "ArrowBoth" << true << true << true;
    }

    void linePainting() {
        QFETCH(QString, arrows);
        QFETCH(bool, startMark);
        QFETCH(bool, head);
        QFETCH(bool, tail);
        auto line = generated<LineItem>({nullptr, {{20, 50}, {120, 50}}, {}, {}, 0, 0, {}});
        QVERIFY(line->showStartMark());
        QVERIFY(choose(line.get(), arrows));
        if (!startMark)
            line->applyContextMenu(LineItem::ToggleStartMark);
        const QImage image = painted(*line, QSize(140, 100));
        // The dashed mark crosses the start point over L/6 + 24 = 40.67 pixels each side.
        int markPixels = 0;
        for (int y = 0; y < 100; ++y)
            markPixels += dark(image, 20, y) ? 1 : 0;
        QCOMPARE(markPixels > 20 && markPixels < 80, startMark);
        QVERIFY(!dark(image, 20, 5));
        // Heads of 2 x 10 pixels: their backs cross the line 17.32 pixels from either end.
        const auto darkAround = [&](int x) {
            return dark(image, x - 1, 50) || dark(image, x, 50) || dark(image, x + 1, 50);
        };
        QCOMPARE(darkAround(103), head);
        QCOMPARE(darkAround(37), tail);
    }

    void lineMenuChoices_data() {
        addColumns<QStringList, int, bool, bool, QStringList, QString>("choices", "mesureIndex", "head",
                                                                       "tail", "checked", "label");
        const auto row = [](const char* tag, QStringList choices, int mesureIndex, bool head, bool tail,
                            QStringList checked, QString label = "dist1:50.00*mm") {
            QTest::newRow(tag) << choices << mesureIndex << head << tail << checked << label;
        };
        row("defaults", {}, 1, false, false, {"Distance1", "noArrow"});
        row("None stores 100", {"None"}, 100, false, false, {"None", "noArrow"}, "");
        row("direction", {"Ang1"}, 3, false, false, {"Ang1", "noArrow"}, "ang1:306.87");
        row("both then head", {"ArrowBoth", "ArrowHead"}, 1, true, false, {"Distance1", "ArrowHead"});
        row("both", {"Ang2", "ArrowBoth"}, 4, true, true, {"Ang2", "ArrowHead", "ArrowTail", "ArrowBoth"},
            "ang2:0.00");
        row("both then none", {"ArrowBoth", "noArrow"}, 1, false, false, {"Distance1", "noArrow"});
    }

    void lineMenuChoices() {
        QFETCH(QStringList, choices);
        QFETCH(int, mesureIndex);
        QFETCH(bool, head);
        QFETCH(bool, tail);
        QFETCH(QStringList, checked);
        QFETCH(QString, label);
        DrawingView v;
        auto* line = v.draw<LineItem>({100, 100}, {130, 140});
        QVERIFY(line);
        QSignalSpy changed(line, &AbstractBaseItem::mesureChanged);
        for (const QString& choice : choices)
            QVERIFY(choose(line, choice));
        // Any choice stores all four of the line's parameters.
        QCOMPARE(getCommonParamsRef()->keys(), choices.isEmpty()
                                                   ? QStringList()
                                                   : QStringList({"line_arrowFactor", "line_arrowHead",
                                                                  "line_arrowTail", "line_mesureIndex"}));
        QCOMPARE(checkedEntries(line), checked);
        QCOMPARE(line->label()->text(), label);
        QCOMPARE(changed.count(), int(choices.filter(QRegularExpression("^(Ang|None)")).size()));
        // The next line starts with the same choices.
        auto* next = v.draw<LineItem>({100, 200}, {130, 240});
        for (LineItem* l : {line, next})
            QCOMPARE((QList<int>{l->mesureIndex(), l->arrowHead(), l->arrowTail(), l->arrowFactor()}),
                     (QList<int>{mesureIndex, head, tail, 2}));
    }

    void orthoModeReachesTheScene() {
        DrawingView v;
        AbstractBaseItem* item = v.draw("LineItem", {100, 100}, {150, 50});
        QSignalSpy ortho(&v.scene, &AbstractScene::orthoReferenceAngleChanged);
        QVERIFY(choose(item, "Ortho on"));
        QCOMPARE(v.scene.orthoReferenceAngle(), 45.0);
        QVERIFY(choose(item, "Ortho off"));
        QCOMPARE(v.scene.orthoReferenceAngle(), 0.0);
        QCOMPARE(ortho.count(), 2);
    }

    void arrowHeadShrinksOnShortArrows_data() {
        addColumns<double, double>("length", "halfHead");
        QTest::newRow("long: full head") << 100.0 << 10.0;
        QTest::newRow("at the threshold") << 32.0 << 10.0;
        QTest::newRow("short") << 16.0 << 10 * (16 * 0.85 / 32 + 0.15);
    }

    void arrowHeadShrinksOnShortArrows() {
        QFETCH(double, length);
        QFETCH(double, halfHead);
        // The shaft ends one pixel past the length; the head is at the origin.
        QCOMPARE(ArrowItem::arrowPath(length, 1.0).boundingRect(),
                 QRectF(-length - 1, -halfHead, length + 1, 2 * halfHead));
    }

    void arrowScaleAndGripDrag() {
        DrawingView v;
        auto* arrow = v.draw<ArrowItem>({100, 100}, {200, 100});
        QVERIFY(arrow);
        arrow->setPen(QPen(Qt::blue, 3));
        QCOMPARE(checkedEntries(arrow), QStringList{"1:1"});
        QVERIFY(choose(arrow, "x:x"));
        QCOMPARE(arrow->arrowScale(), 3.0);
        QCOMPARE(checkedEntries(arrow), QStringList{"x:x"});
        QVERIFY(qAbs(arrow->path().boundingRect().top() + 30) < 1e-9);
        QVERIFY(choose(arrow, "1:1"));
        QCOMPARE(arrow->arrowScale(), 1.0);
        // An arrow not drawn yet keeps its empty outline.
        ArrowItem undrawn(nullptr, 1, nullptr);
        QVERIFY(choose(&undrawn, "x:x"));
        QVERIFY(undrawn.path().isEmpty());

        EditSpy spy(arrow);
        v.dragGrip(arrow, 0, {100, 200});
        QCOMPARE(spy.start.count() + spy.end.count(), 2);
        QCOMPARE(arrow->pos(), QPointF(200, 100));
        QVERIFY(qAbs(arrow->QGraphicsItem::rotation() + 45) < 1e-9);
    }

    void blockArrow() {
        DrawingView v;
        auto* arrow = v.draw<Arrow2Item>({200, 150}, {200, 150});
        QVERIFY(arrow);
        // A click lays a 176 pixel square centred on itself, pointing right.
        const QRectF square(112, 62, 176, 176);
        QCOMPARE(arrow->path().boundingRect(), square);
        QCOMPARE(arrow->path().elementCount(), 8);
        QCOMPARE(QPointF(arrow->path().elementAt(2)), QPointF(112 + 176 * 2.0 / 3, 62 + 176 / 3.0));
        QCOMPARE(checkedEntries(arrow), QStringList{"arrow"});
        QVERIFY(choose(arrow, "dblarrow", true));
        QCOMPARE(arrow->path().elementCount(), 11);
        QVERIFY(near(arrow->path().elementAt(5), QPointF(200, 238)));
        QVERIFY(choose(arrow, "arrow"));
        QCOMPARE(arrow->path().elementCount(), 8);

        EditSpy spy(arrow);
        v.dragGrip(arrow, HoverEventItem::MiddleRight, {320, 150});
        QCOMPARE(arrow->frame(), QRectF(112, 62, 208, 176));
        QCOMPARE(arrow->path().boundingRect(), arrow->frame());
        QCOMPARE(arrow->handgripItems().at(HoverEventItem::TopRight)->scenePos(), QPointF(320, 62));
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 1}));
        // A corner grip turns the arrow about its centre: the top-left corner, 104 left of and 88 above
        // the centre, dragged onto the horizontal through the centre.
        v.dragGrip(arrow, HoverEventItem::TopLeft, {80, 150});
        QVERIFY(near(arrow->mapToScene(arrow->frame().center()), QPointF(216, 150)));
        QVERIFY(qAbs(arrow->QGraphicsItem::rotation() + std::atan2(88.0, 104.0) * 180 / M_PI) < 1e-9);
        QVERIFY(near(arrow->handgripItems().at(HoverEventItem::TopLeft)->scenePos(),
                     QPointF(216 - std::hypot(104.0, 88.0), 150)));
        QCOMPARE(spy.start.count() + spy.end.count(), 4);
    }

    void rulerSinglePressAndResize() {
        DrawingView v;
        auto* ruler = qgraphicsitem_cast<RulerItem*>(startTool(&v.scene, "RulerItem"));
        // Moves during creation change nothing.
        v.drag({100, 100}, {150, 180});
        QVERIFY(ruler && ruler->isSelected());
        QCOMPARE(ruler->rect(), QRectF(100, 82, 200, 36));
        QCOMPARE(ruler->mline(), (QList<QPointF>{{100, 82}, {300, 118}}));

        EditSpy spy(ruler);
        v.dragGrip(ruler, HoverEventItem::MiddleRight, {350, 100});
        QCOMPARE(ruler->rect(), QRectF(100, 82, 250, 36));
        v.dragGrip(ruler, HoverEventItem::BottomMiddle, {200, 140});
        QCOMPARE(ruler->rect(), QRectF(100, 82, 250, 58));
        // A side dragged past the opposite one swaps them once released.
        v.dragGrip(ruler, HoverEventItem::MiddleLeft, {380, 100});
        QCOMPARE(ruler->rect(), QRectF(350, 82, 30, 58));
        QCOMPARE(ruler->mline(), (QList<QPointF>{{350, 82}, {380, 140}}));
        QCOMPARE(ruler->handgripItems().at(HoverEventItem::TopLeft)->scenePos(), QPointF(350, 82));
        QCOMPARE(spy.start.count() + spy.end.count(), 6);

        QCOMPARE(checkedEntries(ruler), QStringList{"x10"});
        QVERIFY(choose(ruler, "x1"));
        QCOMPARE(ruler->labelDivisor(), 10);
        QCOMPARE(checkedEntries(ruler), QStringList{"x1"});
    }

    void rulerGraduations_data() {
        addColumns<double, bool>("factor", "drawn");
        QTest::newRow("one unit every 4 px") << 0.25 << true;
        QTest::newRow("ten million units a pixel") << 1e7 << true;
        QTest::newRow("step as wide as the ruler") << 1.0 / 200 << false;
        QTest::newRow("negative factor") << -1.0 << false;
    }

    void rulerGraduations() {
        QFETCH(double, factor);
        QFETCH(bool, drawn);
        std::unique_ptr<AbstractBaseItem> ruler =
            loaded("RulerItem", {{"rect", "10x10 200x36"}, {"color", "#000000"}, {"style", "1"}});
        ruler->setPen(QPen(Qt::black, 0));
        ruler->setCalibration(calibration(factor));
        const QImage image = painted(*ruler, QSize(240, 80));
        QCOMPARE(dark(image, 10, 12), drawn);
        if (factor > 1) // ticks finer than a pixel: one per pixel along the whole ruler
            QVERIFY(dark(image, 150, 12) && dark(image, 209, 12));
        if (!drawn || factor > 1)
            return;
        // Ticks hang from the top edge: 10 px at 0 and every fifth, 15 px every tenth, else 5 px.
        const QList<QPair<int, double>> ticks{{0, 10}, {1, 5}, {5, 10}, {10, 15}};
        for (const auto& [i, length] : ticks) {
            const double x = 10 + i / factor;
            QVERIFY2(dark(image, x, 10 + length - 1) && !dark(image, x, 10 + length + 1),
                     qPrintable(QString::number(i)));
        }
    }
};

QTEST_MAIN(TestLines)
#include "tst_lines.moc"
