// The measures table: names, units and closed-form values per class; rows and columns that follow
// the scene; sorting; CSV read back by Python's csv module in both separator styles; JSON.
#include "DataColumns.h"
#include "DrawingView.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QAbstractItemModelTester>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

namespace {

AbstractBaseItem* addItem(AbstractScene& scene, QString className, const Attributes& attributes,
                          double factor = 1.0, const QString& unit = QStringLiteral("mm")) {
    AbstractBaseItem* item = loadedOn(scene, className, attributes);
    item->setCalibration(calibration(factor, unit));
    item->computeMesures(nullptr);
    return item;
}

QStringList texts(const QList<ItemMeasure>& measures) {
    QStringList list;
    for (const ItemMeasure& m : measures)
        list << QStringLiteral("%1=%2 %3").arg(m.name).arg(m.value, 0, 'f', 3).arg(m.unit).trimmed();
    return list;
}

} // namespace

class TestMeasuresModel : public QObject {
    Q_OBJECT
private slots:
    void namesAndValues_data() {
        addColumns<QString, Attributes, double, QStringList>("className", "attributes", "factor", "expected");
        // 140 x 90 pixels at 0.25 µm.
        QTest::newRow("rectangle") << "RectangleItem" << Attributes{{"rect", "0x0 140x90"}} << 0.25
                                   << QStringList{"Width=35.000 µm", "Height=22.500 µm",
                                                  "Perimeter=115.000 µm", "Area=787.500 µm²"};
        const double pi = M_PI;
        QTest::newRow("circle") << "CircleItem" << Attributes{{"rect", "0x0 120x120"}, {"radius1", "60"}}
                                << 0.25
                                << QStringList{"Radius=15.000 µm", "Diameter=30.000 µm",
                                               QStringLiteral("Perimeter=%1 µm").arg(30 * pi, 0, 'f', 3),
                                               QStringLiteral("Area=%1 µm²").arg(225 * pi, 0, 'f', 3)};
        // A 3-4-5 line going down to the right: 53.13° below the axis.
        QTest::newRow("line") << "LineItem" << Attributes{{"start", "0x0"}, {"end", "30x40"}} << 1.0
                              << QStringList{"Length=50.000 µm", "Angle=306.870 °"};
        QTest::newRow("text") << "eTextItem" << Attributes{{"text", "note"}} << 0.5 << QStringList{};
    }
    void namesAndValues() {
        QFETCH(QString, className);
        QFETCH(Attributes, attributes);
        QFETCH(double, factor);
        QFETCH(QStringList, expected);
        AbstractScene scene;
        const AbstractBaseItem* item = addItem(scene, className, attributes, factor, QStringLiteral("µm"));
        QCOMPARE(texts(itemMeasures(item)), expected);
    }

    // Never saved: made from its rectangle, 10 x 20 pixels. Its own area is scaled by the factor
    // once; the table gives square units.
    void calibrationRectangle() {
        _AUTOPOINTPARAMS record;
        record.rect = QRectF(0, 0, 10, 20);
        RectCalibItem item(nullptr, 1, &record);
        item.setCalibration(calibration(0.5, "µm"));
        QCOMPARE(texts(itemMeasures(&item)),
                 QStringList({"Width=5.000 µm", "Height=10.000 µm",
                              QStringLiteral("Diagonal=%1 µm").arg(std::sqrt(500.0) / 2, 0, 'f', 3),
                              "Perimeter=30.000 µm", "Area=50.000 µm²"}));
    }

    void vickersRemarks() {
        AbstractScene scene;
        AbstractBaseItem* vickers = addItem(
            scene, "VickersPItem", {{"coords", "300x120;420x240;300x360;178x240;"}, {"charge", "9.81"}}, 0.25,
            QStringLiteral("µm"));
        const ItemRemarks remarks = itemRemarks(vickers);
        QCOMPARE(remarks.designation, QStringLiteral("511 HV 1"));
        QVERIFY(remarks.warning.isEmpty());
        QCOMPARE(texts(itemMeasures(vickers)).last(), QStringLiteral("Hardness=511.011 HV"));
        static_cast<VickersPItem*>(vickers)->handleMoved(1, QPointF(460, 240), {});
        QVERIFY(itemRemarks(vickers).warning.contains("Diagonals differ"));

        MeasuresModel model(&scene);
        QCOMPARE(model.headerData(model.columnCount() - 2, Qt::Horizontal).toString(),
                 QStringLiteral("Designation"));
        QCOMPARE(model.headerData(model.columnCount() - 1, Qt::Horizontal).toString(),
                 QStringLiteral("Warning"));
    }

    // Rows follow the items; columns appear and go with the measures some item fills.
    void followsTheScene() {
        AbstractScene scene;
        MeasuresModel model(&scene);
        QAbstractItemModelTester tester(&model);
        AbstractBaseItem* line = addItem(scene, "LineItem", {{"start", "0x0"}, {"end", "30x40"}});
        QCOMPARE(model.rowCount(), 1);
        // Loaded after it was added: read again once the event loop runs.
        const int length = model.measureColumn("Length", "mm");
        QTRY_COMPARE(model.index(0, length).data(MeasuresModel::ValueRole).toDouble(), 50.0);
        QCOMPARE(model.columnCount(), MeasuresModel::FixedColumns + 2);

        QPointer<AbstractBaseItem> circle =
            addItem(scene, "CircleItem", {{"rect", "0x0 20x20"}, {"radius1", "10"}});
        model.refresh();
        QCOMPARE(model.rowCount(), 2);
        QVERIFY(model.measureColumn("Radius", "mm") > 0);
        QVERIFY(model.index(1, length).data(MeasuresModel::ValueRole).isNull());

        // A change of calibration renames the columns with the unit.
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        scene.setCalibration(calibration(2, "µm"));
        QVERIFY(!changed.isEmpty());
        QCOMPARE(model.measureColumn("Length", "mm"), -1);
        QCOMPARE(
            model.index(0, model.measureColumn("Length", "µm")).data(MeasuresModel::ValueRole).toDouble(),
            100.0);

        // Rows of items gone go together once the event loop runs.
        delete circle;
        QTRY_COMPARE(model.rowCount(), 1);
        QCOMPARE(model.measureColumn("Radius", "µm"), -1);
        scene.removeItem(line);
        QTRY_COMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), int(MeasuresModel::FixedColumns));
        delete line;
    }

    void sortsByValueWithEmptyCellsLast() {
        AbstractScene scene;
        MeasuresModel model(&scene);
        addItem(scene, "LineItem", {{"guidname", "b"}, {"start", "0x0"}, {"end", "20x0"}});
        addItem(scene, "eTextItem", {{"guidname", "t"}, {"text", "x"}});
        addItem(scene, "LineItem", {{"guidname", "a"}, {"start", "0x0"}, {"end", "5x0"}});
        addItem(scene, "LineItem", {{"guidname", "c"}, {"start", "0x0"}, {"end", "100x0"}});
        model.refresh();
        const QPersistentModelIndex first = model.index(0, MeasuresModel::NameColumn);
        const int length = model.measureColumn("Length", "mm");
        const auto names = [&] {
            QString s;
            for (int r = 0; r < model.rowCount(); ++r)
                s += model.index(r, MeasuresModel::NameColumn).data().toString();
            return s;
        };
        model.sort(length, Qt::AscendingOrder);
        QCOMPARE(names(), QStringLiteral("abct"));
        model.sort(length, Qt::DescendingOrder);
        QCOMPARE(names(), QStringLiteral("cbat"));
        QCOMPARE(first.data().toString(), QStringLiteral("b"));
        QCOMPARE(first.row(), 1);
        // A value that changes puts its row in its place.
        model.item(2)->setCalibration([] {
            Calibration c;
            c.factor = 100;
            return c;
        }());
        QCOMPARE(names(), QStringLiteral("acbt"));
    }

    // What a spreadsheet reads: Python's csv module, with either separator style, finds the same
    // texts and the same doubles.
    void csvReadsBack_data() {
        addColumns<QChar, QChar>("separator", "decimalMark");
        QTest::newRow("comma, point") << QChar(',') << QChar('.');
        QTest::newRow("semicolon, comma") << QChar(';') << QChar(',');
    }
    void csvReadsBack() {
        QFETCH(QChar, separator);
        QFETCH(QChar, decimalMark);
        AbstractScene scene;
        addItem(scene, "LineItem", {{"guidname", "L;\"1\""}, {"start", "0x0"}, {"end", "30x41"}}, 0.1 / 3);
        addItem(scene, "RectangleItem", {{"guidname", "R,2\nnext"}, {"rect", "0x0 7x3"}}, 1e-7, "m");
        addItem(scene, "VickersPItem", {{"guidname", "V"}, {"coords", "300x120;420x240;300x360;178x240;"}},
                0.25, QStringLiteral("µm"));
        addItem(scene, "eTextItem", {{"guidname", "plain"}, {"text", "t"}});
        const MeasuresModel model(&scene);
        QTemporaryDir dir;
        const QString file = dir.filePath("measures.csv");
        QString error;
        QVERIFY2(model.saveCsv(file, separator, decimalMark, &error), qPrintable(error));

        QProcess python;
        python.start("/usr/bin/python3", {CSV_READER, file, separator, decimalMark});
        QVERIFY(python.waitForFinished(30000));
        QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
        const QJsonObject read = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
        const QJsonArray header = read["header"].toArray();
        QCOMPARE(header.size(), model.columnCount());
        for (int c = 0; c < model.columnCount(); ++c)
            QCOMPARE(header.at(c).toString(), model.headerData(c, Qt::Horizontal).toString());
        const QJsonArray rows = read["rows"].toArray();
        QCOMPARE(rows.size(), model.rowCount());
        for (int r = 0; r < model.rowCount(); ++r) {
            const QJsonArray row = rows.at(r).toArray();
            QCOMPARE(row.size(), model.columnCount());
            for (int c = 0; c < model.columnCount(); ++c) {
                const QVariant value = model.index(r, c).data(MeasuresModel::ValueRole);
                if (value.isValid())
                    QCOMPARE(row.at(c).toDouble(), value.toDouble());
                else
                    QCOMPARE(row.at(c).toString(), model.index(r, c).data().toString());
            }
        }
    }

    void json() {
        AbstractScene scene;
        addItem(scene, "VickersPItem",
                {{"guidname", "V"}, {"coords", "300x120;420x240;300x360;178x240;"}, {"charge", "9.81"}}, 0.25,
                QStringLiteral("µm"));
        const MeasuresModel model(&scene);
        const QJsonObject item =
            QJsonDocument::fromJson(model.toJson()).object()["items"].toArray().at(0).toObject();
        QCOMPARE(item["class"].toString(), QStringLiteral("VickersPItem"));
        QCOMPARE(item["designation"].toString(), QStringLiteral("511 HV 1"));
        const QJsonObject first = item["measures"].toArray().at(0).toObject();
        QCOMPARE(first["name"].toString(), QStringLiteral("Diagonal 1"));
        QCOMPARE(first["unit"].toString(), QStringLiteral("µm"));
        QCOMPARE(first["value"].toDouble(), 60.0);
    }
};

QTEST_MAIN(TestMeasuresModel)
#include "tst_measuresmodel.moc"
