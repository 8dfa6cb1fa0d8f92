#include "DataColumns.h"
#include "DrawingView.h"
#include "VickersPItem.h"

#include <QGraphicsPolygonItem>

namespace {

// A rhombus centred on (150, 150): d1 vertical (p0-p2), d2 horizontal (p1-p3), corners clockwise on screen.
QList<QPointF> rhombus(double d1, double d2) {
    return {{150, 150 - d1 / 2}, {150 + d2 / 2, 150}, {150, 150 + d1 / 2}, {150 - d2 / 2, 150}};
}

std::unique_ptr<VickersPItem> fromRecord(const QList<QPointF>& corners, double load = 0,
                                         AbstractBaseItem* source = nullptr) {
    return generated<VickersPItem>({source, corners, {}, {}, 0, load, {}});
}

VickersPItem* loadedVickers(const Attributes& attributes, std::unique_ptr<AbstractBaseItem>& holder) {
    holder = loaded("VickersPItem", attributes);
    return qgraphicsitem_cast<VickersPItem*>(holder.get());
}

} // namespace

class TestVickersItem : public QObject {
    Q_OBJECT
private slots:
    void workedExample_data() {
        addColumns<double, QString, double>("factor", "mode", "hardness");
        QTest::newRow("high precision") << 1.0 << "High Precision" << 18.531;
        QTest::newRow("standard precision") << 1.0 << "Std Precision" << 18.522;
        QTest::newRow("half a micrometre per pixel") << 0.5 << "High Precision" << 74.124;
    }

    void workedExample() {
        QFETCH(double, factor);
        QFETCH(QString, mode);
        QFETCH(double, hardness);
        auto item = fromRecord(rhombus(100, 100));
        item->setCalibration(calibration(factor));
        QSignalSpy changed(item.get(), &AbstractBaseItem::itemChanged);
        QSignalSpy ended(item.get(), &AbstractBaseItem::mesureChangedEND);
        QVERIFY(choose(item.get(), mode));
        QCOMPARE(item->accessmesure(1), 100 * factor);
        QCOMPARE(item->accessmesure(2), 0.98);
        QVERIFY(qAbs(item->accessmesure(3) - 0.0999322) < 1e-7);
        QVERIFY2(qAbs(item->accessmesure(9) - hardness) < 5e-4,
                 qPrintable(QString::number(item->accessmesure(9))));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(1).toString(), QString("VICKERS"));
        QCOMPARE(*static_cast<double*>(changed.first().at(2).value<void*>()), item->accessmesure(9));
        QCOMPARE(ended.count(), 1);
        QCOMPARE(checkedEntries(item.get()), QStringList{mode});
        QCOMPARE(item->label()->text(), QString("hardness:%1*HV").arg(hardness, 0, 'f', 2));
    }

    void drawnCornersInEitherOrderMeasureAlike() {
        DrawingView v;
        const QList<QPointF> corners = rhombus(120, 80);
        VickersPItem* clockwise = draw(v, corners);
        VickersPItem* anticlockwise = draw(v, {corners[3], corners[2], corners[1], corners[0]});
        QVERIFY(clockwise && anticlockwise && anticlockwise->isSelected());
        QCOMPARE(anticlockwise->mline(), corners);
        QCOMPARE(anticlockwise->accessmesureP(0), 120.0);
        QCOMPARE(anticlockwise->accessmesureP(1), 80.0);
        QCOMPARE(anticlockwise->accessmesure(9), clockwise->accessmesure(9));
        for (int i = 0; i < 4; ++i) // grips follow their corners through the reversal
            QCOMPARE(anticlockwise->handgripItems().at(i)->pos(), corners[i]);
    }

    void handgripDragRecomputes_data() {
        QTest::addColumn<QPointF>("hostPos");
        QTest::newRow("at the origin") << QPointF(0, 0);
        QTest::newRow("moved by the host") << QPointF(30, 20);
    }

    void handgripDragRecomputes() {
        QFETCH(QPointF, hostPos);
        DrawingView v;
        VickersPItem* item = draw(v, rhombus(100, 100));
        QVERIFY(item);
        item->setPos(hostPos);
        EditSpy spy(item);
        v.dragGrip(item, 1, item->handgripItems().at(1)->scenePos() + QPointF(20, 0));
        QCOMPARE(spy.counts(), (QList<qsizetype>{1, 1, 2})); // an end for each step, then the release
        QCOMPARE(item->polygonItem()->polygon().at(1), QPointF(220, 150));
        QCOMPARE(item->accessmesureP(1), 120.0);
    }

    void hostRecords() {
        auto source = fromRecord(rhombus(100, 100));
        source->setCalibration(calibration(0.5));
        auto taken = fromRecord(rhombus(100, 100).mid(0, 3), 0, source.get());
        QVERIFY(taken->generated() && taken->mline().isEmpty());
        // Only the measures come from the source, not its calibration.
        QCOMPARE(taken->calibration().factor, 1.0);
        QCOMPARE(taken->accessmesure(9), source->accessmesure(9));

        _AUTOPOINTPARAMS params{nullptr, {}, {}, {}, 0, 1.96, {}};
        source->suspendComputation(true);
        source->setSpecificparameters(QString(), &params);
        QCOMPARE(source->charge(), 0.98);
        source->suspendComputation(false);
        source->setSpecificparameters(QString(), &params);
        QVERIFY(qAbs(source->accessmesure(9) - 2 * taken->accessmesure(9)) < 1e-9);
        // The load is saved with two decimals, and read back as saved.
        source->setCharge(0.987);
        QCOMPARE(saved(source.get()).value("charge"), QString("0.99"));
        std::unique_ptr<AbstractBaseItem> holder;
        VickersPItem* back = loadedVickers(saved(source.get()), holder);
        QVERIFY(back->computeMesures(nullptr));
        QCOMPARE(back->accessmesure(2), 0.99);
        // Four corners on one spot are kept, with the infinite hardness that tells what went wrong.
        const auto spot = fromRecord(QList<QPointF>(4, QPointF(10, 10)), 0.98);
        QVERIFY(spot->endEdition() && std::isinf(spot->accessmesure(9)));
    }

    void fewerOrUnreadableCorners_data() {
        addColumns<QString, int>("coords", "corners");
        QTest::newRow("none") << "" << 0;
        QTest::newRow("three compute nothing") << "100x50;150x100;100x150;" << 3;
        // Every non-empty part is a corner; one that is no usable point stands at the origin.
        QTest::newRow("unreadable parts at the origin") << "abc;;1x2x3;x;100x50;;150x100;nanxinf;" << 6;
        QTest::newRow("five, all kept") << "100x50;150x100;100x150;50x100;0x0;" << 5;
    }

    void fewerOrUnreadableCorners() {
        QFETCH(QString, coords);
        QFETCH(int, corners);
        std::unique_ptr<AbstractBaseItem> holder;
        VickersPItem* item = loadedVickers({{"coords", coords}, {"charge", "garbage"}}, holder);
        QCOMPARE(item->handgripItems().size(), corners);
        QCOMPARE(item->charge(), 0.0);
        QCOMPARE(item->computeMesures(nullptr), corners >= 4);
        QCOMPARE(item->endEdition(), corners == 4);
        QVERIFY(item->hardnessDesignation().isEmpty()); // no load, no hardness
    }

    void metallographerQueries_data() {
        addColumns<double, double, double, QString, QString>("load", "d1", "d2", "designation", "warning");
        const QString differ =
            "Diagonals differ by 7.3 % (limit 5 %): check the indentation or the specimen's flatness";
        QTest::newRow("0.98 N is HV 0.1") << 0.98 << 100.0 << 100.0 << "18.5 HV 0.1" << QString();
        QTest::newRow("rounding gains a digit") << 0.98 << 136.14 << 136.14 << "10.0 HV 0.1" << QString();
        QTest::newRow("thousands") << 294.2 << 100.0 << 100.0 << "5560 HV 30" << QString();
        QTest::newRow("1.471 N is HV 0.15") << 1.471 << 50.0 << 50.0 << "111 HV 0.15" << QString();
        QTest::newRow("exactly 5 % apart") << 0.98 << 97.5 << 102.5 << "18.5 HV 0.1" << QString();
        QTest::newRow("7.3 % apart") << 0.98 << 100.0 << 107.6 << "17.2 HV 0.1" << differ;
    }

    void metallographerQueries() {
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

private:
    VickersPItem* draw(DrawingView& v, const QList<QPointF>& corners);
};

// Clicks the corners in the view; null unless the rubber band follows the cursor to the fourth corner
// and creation ends there.
VickersPItem* TestVickersItem::draw(DrawingView& v, const QList<QPointF>& corners) {
    auto* item = qgraphicsitem_cast<VickersPItem*>(v.click("VickersPItem", corners.mid(0, 3)));
    v.move(corners[3]);
    if (!item || v.scene.itemInCreation() != item ||
        item->polygonItem()->polygon() != QPolygonF(item->mline() << corners[3]))
        return nullptr;
    QTest::mouseClick(v.view.viewport(), Qt::LeftButton, {}, v.at(corners[3]));
    return v.scene.itemInCreation() ? nullptr : item;
}

QTEST_MAIN(TestVickersItem)
#include "tst_vickersitem.moc"
