// The tool palette and the calibration dialog of the host kit.
#include "DataColumns.h"
#include "DrawingView.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QActionGroup>
#include <QSettings>
#include <QTemporaryDir>

class TestHostKit : public QObject {
    Q_OBJECT
private slots:
    void paletteOffersWhatTheFactoriesBuild() {
        AbstractScene scene;
        const ToolPalette palette(&scene);
        QStringList expected;
        for (const QStringList& list :
             {toolsAvailableNoTr(), mesuresAvailableNoTr(), annotationsAvailableNoTr()}) {
            for (const QString& name : list) {
                if (factoryBuilds(name))
                    expected << name;
            }
        }
        QCOMPARE(palette.classNames(), expected);
        QVERIFY(!palette.action("NoSuchItem"));
        QVERIFY(!palette.action("LineItem")->icon().isNull());
    }

    // The entry stays checked while its item is drawn, and unchecks itself once it is accepted or
    // rejected, but not when another entry takes over.
    void paletteEntryFollowsTheDrawing() {
        DrawingView v;
        ToolPalette palette(&v.scene);
        QAction* line = palette.action("LineItem");
        QAction* circle = palette.action("CircleItem");
        circle->trigger();
        QCOMPARE(v.scene.itemInCreation()->getType(), QStringLiteral("CircleItem"));
        line->trigger();
        QVERIFY(line->isChecked() && !circle->isChecked());
        QCOMPARE(v.scene.itemInCreation()->getType(), QStringLiteral("LineItem"));
        v.drag({20, 20}, {120, 60});
        QVERIFY(!line->isChecked());
        QCOMPARE(v.scene.selectedItems().size(), 1);

        line->trigger();
        QTest::keyClick(v.view.viewport(), Qt::Key_Escape);
        QVERIFY(!line->isChecked());
        QVERIFY(!v.scene.itemInCreation());
        line->trigger();
        line->trigger();
        QVERIFY(!v.scene.itemInCreation());
    }

    void calibrationDialog_data() {
        addColumns<double, double, double>("knownLength", "pixelsPerUnit", "factor");
        QTest::newRow("line of 200 px is 50 µm") << 50.0 << 0.0 << 0.25;
        QTest::newRow("4 pixels per µm") << 0.0 << 4.0 << 0.25;
        QTest::newRow("nothing typed") << 0.0 << 0.0 << 0.0;
    }
    void calibrationDialog() {
        QFETCH(double, knownLength);
        QFETCH(double, pixelsPerUnit);
        QFETCH(double, factor);
        AbstractScene scene;
        QString className = QStringLiteral("LineItem");
        _AUTOPOINTPARAMS record;
        record.points = {{0, 0}, {120, 160}};
        AbstractBaseItem* line = XBaseItemToolCreate(className, nullptr, 1, &record);
        scene.addItem(line);
        CalibrationDialog dialog(Calibration{});
        QVERIFY(dialog.setReferenceItem(line));
        if (pixelsPerUnit > 0 || knownLength == 0)
            dialog.setPixelsPerUnit(pixelsPerUnit, QStringLiteral("µm"));
        else
            dialog.setKnownLength(knownLength, QStringLiteral("µm"));
        QCOMPARE(dialog.isValid(), factor > 0);
        if (factor > 0) {
            QCOMPARE(dialog.calibration().factor, factor);
            QCOMPARE(dialog.calibration().unitName, QStringLiteral("µm"));
            QCOMPARE(dialog.calibration().unitCode, int(Types::Micrometre));
        }
    }

    // Saved under their names; values edited by hand into the settings are refused.
    void namedCalibrations() {
        QTemporaryDir dir;
        QSettings settings(dir.filePath("settings.ini"), QSettings::IniFormat);
        Calibration x10;
        x10.factor = 0.5;
        x10.unitName = QStringLiteral("µm");
        x10.decimals = 3;
        CalibrationDialog::saveCalibration(settings, "x10", x10);
        CalibrationDialog::saveCalibration(settings, "x50", Calibration{});
        QCOMPARE(CalibrationDialog::savedCalibrations(settings), QStringList({"x10", "x50"}));
        Calibration read;
        QVERIFY(CalibrationDialog::loadCalibration(settings, "x10", &read));
        QCOMPARE(read.factor, 0.5);
        QCOMPARE(read.unitName, QStringLiteral("µm"));
        QCOMPARE(read.decimals, 3);
        settings.setValue("calibrations/x50/factor", "inf");
        QVERIFY(!CalibrationDialog::loadCalibration(settings, "x50", &read));
        CalibrationDialog::removeCalibration(settings, "x10");
        QCOMPARE(CalibrationDialog::savedCalibrations(settings), QStringList({"x50"}));
    }
};

QTEST_MAIN(TestHostKit)
#include "tst_hostkit.moc"
