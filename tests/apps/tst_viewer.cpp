// The viewer's main window driven as a user would: the bundled sample opened, a tool picked from the
// palette and drawn, its row in the table, undo, save and reopen; damaged documents and failed saves;
// selection both ways; calibration, filters, links, test loads, exports and the French names.
#include "FilterDialog.h"
#include "MainWindow.h"
#include "MeasuresDock.h"
#include "SceneView.h"
#include "TestFiles.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>
#include <QUndoStack>
#include <QtTest>

#include <unistd.h>

namespace {

// The table as the user reads it, one line per row.
QStringList tableText(const MeasuresModel* model) {
    QStringList rows;
    for (int r = 0; r < model->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < model->columnCount(); ++c)
            cells << model->headerData(c, Qt::Horizontal).toString() + '=' +
                         model->index(r, c).data().toString();
        rows << cells.join(' ');
    }
    return rows;
}

// Accepts the next modal dialog once it shows, after letting the test set it up.
template <class Dialog, class Setup> void acceptNextDialog(Setup setup) {
    QTimer::singleShot(0, [setup] {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        setup(dialog);
        dialog->accept();
    });
}

} // namespace

class TestViewer : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() {
        QVERIFY(m_dir.isValid());
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.filePath("settings"));
        InitToolsNames();
    }

    void init() {
        m_window = std::make_unique<MainWindow>();
        m_window->resize(1000, 700);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }
    void cleanup() {
        m_window->undoStack()->setClean();
        m_window.reset();
    }

    void drawUndoSaveReopen() {
        MainWindow& w = *m_window;
        QVERIFY(w.openFile(SAMPLE_SCENE));
        MeasuresModel* model = w.measures();
        QCOMPARE(model->rowCount(), 4);
        const int designation = model->columnCount() - 1;
        QCOMPARE(model->index(0, designation).data().toString(), QStringLiteral("511 HV 1"));

        // At the natural size the mouse reaches whole pixels: 200 of them are 50 µm.
        w.view()->setZoom(1);
        w.palette()->action("LineItem")->trigger();
        drag({100, 300}, {300, 300});
        QVERIFY(!w.palette()->action("LineItem")->isChecked());
        QCOMPARE(model->rowCount(), 5);
        const QModelIndex length = model->index(4, model->measureColumn("Length", "µm"));
        QCOMPARE(length.data(MeasuresModel::ValueRole).toDouble(), 50.0);
        QVERIFY(w.measuresDock()->table()->selectionModel()->isRowSelected(4, {}));

        w.undoStack()->undo();
        QTRY_COMPARE(model->rowCount(), 4);
        w.undoStack()->redo();
        QCOMPARE(model->rowCount(), 5);
        const QStringList before = tableText(model);
        QCOMPARE(model->index(4, model->measureColumn("Length", "µm")).data().toString(),
                 QStringLiteral("50.00"));

        const QString saved = m_dir.filePath("drawn.xml");
        QVERIFY(w.saveDocument(saved));
        QVERIFY(w.undoStack()->isClean());
        MainWindow reopened;
        QVERIFY(reopened.openFile(saved));
        QCOMPARE(tableText(reopened.measures()), before);
        QCOMPARE(reopened.recentFiles().first(), QFileInfo(saved).absoluteFilePath());
    }

    void damagedDocumentKeepsItsGoodItems() {
        const QString file = written(m_dir, "damaged.xml",
                                     "<scene version=\"2\">\n"
                                     "<item class=\"LineItem\" start=\"0x0\" end=\"40x30\"/>\n"
                                     "<item class=\"NoSuchItem\" guidname=\"ghost\"/>\n"
                                     "<item class=\"CircleItem\" rect=\"0x0 20x20\" radius1=\"10\"/>\n"
                                     "</scene>");
        QVERIFY(m_window->openFile(file));
        QCOMPARE(m_window->measures()->rowCount(), 2);
        QVERIFY2(m_window->lastMessage().contains("\"ghost\" of unknown class \"NoSuchItem\""),
                 qPrintable(m_window->lastMessage()));
        QVERIFY(m_window->findChild<QMessageBox*>("message")->isVisible());

        // A document refused whole leaves the scene as it was.
        QVERIFY(
            !m_window->openFile(written(m_dir, "broken.xml", "<scene><item class=\"LineItem\"></scene>")));
        QCOMPARE(m_window->measures()->rowCount(), 2);
        QVERIFY(m_window->lastMessage().contains("damaged"));
    }

    void saveIntoReadOnlyFolderKeepsTheOldFile() {
        if (geteuid() == 0)
            QSKIP("running as root, which may write into a read-only folder: saveWhereNoFileCanBe tells the "
                  "failure");
        QDir(m_dir.path()).mkpath("locked");
        const QString file = m_dir.filePath("locked/scene.xml");
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        QVERIFY(m_window->saveDocument(file));
        const QByteArray before = contents(file);
        m_window->undoStack()->push(
            new DeleteItemsCommand(m_window->scene(), SceneItems::topLevel(m_window->scene())));
        QFile::setPermissions(m_dir.filePath("locked"), QFile::ReadOwner | QFile::ExeOwner);
        const bool saved = m_window->saveDocument(file);
        QFile::setPermissions(m_dir.filePath("locked"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(!saved);
        QVERIFY(m_window->lastMessage().contains("cannot write"));
        QCOMPARE(contents(file), before);
    }

    // Below a regular file no file can be made, for root as for anyone.
    void saveWhereNoFileCanBe() {
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        const QString file = m_dir.filePath("kept.xml");
        QVERIFY(m_window->saveDocument(file));
        const QByteArray before = contents(file);
        QVERIFY(!m_window->saveDocument(file + "/inside.xml"));
        QVERIFY2(m_window->lastMessage().contains("cannot write"), qPrintable(m_window->lastMessage()));
        QCOMPARE(contents(file), before);
        QVERIFY(!m_window->undoStack()->isClean() ||
                m_window->currentFile() == QFileInfo(file).absoluteFilePath());
    }

    void selectionBothWays() {
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        QTableView* table = m_window->measuresDock()->table();
        AbstractBaseItem* circle = m_window->measures()->item(2);
        circle->setSelected(true);
        QCOMPARE(table->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(table->selectionModel()->selectedRows().first().row(), 2);
        table->selectRow(1);
        QCOMPARE(m_window->scene()->selectedItems(), QList<QGraphicsItem*>{m_window->measures()->item(1)});
    }

    void calibrationAndFilterUndo() {
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        AbstractBaseItem* line = m_window->measures()->item(1);
        line->setSelected(true);
        acceptNextDialog<CalibrationDialog>([](CalibrationDialog* d) { d->setKnownLength(100, "mm"); });
        m_window->calibrate();
        QCOMPARE(line->accessmesure(AbstractBaseItem::Dist1), 100.0);
        QCOMPARE(m_window->scene()->calibration().unitName, QStringLiteral("mm"));
        m_window->undoStack()->undo();
        QCOMPARE(line->accessmesure(AbstractBaseItem::Dist1), 50.0);

        QImage image(640, 480, QImage::Format_RGB32);
        image.fill(qRgb(200, 120, 40));
        m_window->scene()->setImage(image);
        acceptNextDialog<FilterDialog>([this](FilterDialog* d) {
            d->updatePreview();
            QVERIFY(m_window->scene()->image().allGray());
        });
        m_window->applyFilter("grayscale");
        QVERIFY(m_window->scene()->image().allGray());
        m_window->undoStack()->undo();
        QCOMPARE(m_window->scene()->image(), image);
    }

    void linkTextToAMeasureWithTheMouse() {
        MainWindow& w = *m_window;
        QVERIFY(w.openFile(SAMPLE_SCENE));
        w.palette()->action("eTextItem")->trigger();
        click({500, 440});
        auto* text =
            qobject_cast<eTextItem*>(AbstractBaseItem::fromGraphicsItem(w.scene()->selectedItems().value(0)));
        QVERIFY(text);
        w.startLinkingText();
        QVERIFY(w.view()->picking());
        click({160, 420});
        QCOMPARE(text->linkedItem(), w.measures()->item(1));
        QVERIFY(text->text().contains("50.00"));
        w.undoStack()->undo();
        QVERIFY(!text->linkedItem());
    }

    void vickersLoadAndZoom() {
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        auto* vickers = static_cast<VickersPItem*>(m_window->measures()->item(0));
        vickers->setSelected(true);
        m_window->setVickersLoad(0.5);
        QCOMPARE(vickers->charge(), 0.5 * 9.80665);
        QCOMPARE(m_window->measures()->index(0, m_window->measures()->columnCount() - 1).data().toString(),
                 QStringLiteral("255 HV 0.5"));
        m_window->undoStack()->undo();
        QCOMPARE(vickers->charge(), 9.81);

        const double zoom = m_window->view()->zoom();
        m_window->view()->zoomBy(2);
        QCOMPARE(m_window->scene()->horizontalZoom(), zoom * 2);
    }

    void exports() {
        QVERIFY(m_window->openFile(SAMPLE_SCENE));
        for (const char* name : {"scene.png", "scene.svg", "scene.dxf"})
            QVERIFY2(m_window->exportScene(m_dir.filePath(name)), qPrintable(m_window->lastMessage()));
        QCOMPARE(QImage(m_dir.filePath("scene.png")).size(), QSize(640, 480));
        QVERIFY(contents(m_dir.filePath("scene.svg")).contains("<svg"));
        QVERIFY(!m_window->exportScene(m_dir.filePath("scene.doc")));
        m_window->measuresDock()->setCsvStyle(1);
        QVERIFY(m_window->exportMeasures(m_dir.filePath("measures.csv")));
        QVERIFY(contents(m_dir.filePath("measures.csv")).contains("Class;Tool;Name;"));
    }

    void frenchNames() {
        QTranslator french;
        QVERIFY(french.load(VIEWER_FRENCH));
        QApplication::installTranslator(&french);
        InitToolsNames();
        const QString line = getTools_NamesRef()->value("LineItem");
        const QString length = QCoreApplication::translate("MeasureNames", "Length");
        QApplication::removeTranslator(&french);
        InitToolsNames();
        QCOMPARE(line, QStringLiteral("Ligne"));
        QCOMPARE(length, QStringLiteral("Longueur"));
    }

private:
    QPoint at(const QPointF& p) const { return m_window->view()->mapFromScene(p); }
    void drag(const QPointF& from, const QPointF& to) {
        QWidget* viewport = m_window->view()->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, at(from));
        QTest::mouseMove(viewport, at(to));
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, at(to));
    }
    void click(const QPointF& p) {
        QTest::mouseClick(m_window->view()->viewport(), Qt::LeftButton, {}, at(p));
    }

    QTemporaryDir m_dir;
    std::unique_ptr<MainWindow> m_window;
};

QTEST_MAIN(TestViewer)
#include "tst_viewer.moc"
