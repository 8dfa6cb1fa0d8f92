// The main window: actions, menus, docks and the status bar.
#include "MainWindow.h"

#include "MeasuresDock.h"
#include "SceneView.h"
#include "VickersLoads.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QStatusBar>
#include <QTableView>
#include <QUndoStack>

#include <cmath>

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_scene(new AbstractScene(this))
    , m_view(new SceneView(m_scene))
    , m_palette(new ToolPalette(m_scene, this))
    , m_undo(new QUndoStack(this))
    , m_recorder(new UndoRecorder(m_scene, m_undo, this))
    , m_measures(new MeasuresModel(m_scene, this))
    , m_dock(new MeasuresDock(m_scene, m_measures, this)) {
    setObjectName(QStringLiteral("MainWindow"));
    setCentralWidget(m_view);
    addToolBar(Qt::LeftToolBarArea, m_palette);
    addDockWidget(Qt::RightDockWidgetArea, m_dock);
    setAcceptDrops(true);
    createActions();
    createMenus();
    createStatusBar();

    connect(m_view, &SceneView::zoomChanged, this, &MainWindow::showZoom);
    connect(m_view, &SceneView::cursorMoved, this, &MainWindow::showCursor);
    connect(m_view, &SceneView::pickedItem, this, &MainWindow::linkSelectedText);
    connect(m_view, &SceneView::pickingCancelled, this, [this] { statusBar()->clearMessage(); });
    connect(m_scene, &QGraphicsScene::selectionChanged, this, &MainWindow::updateActions);
    // Read once per image: the cursor's read-out must not scan it at every move.
    connect(m_scene, &AbstractScene::imageChanged, this, [this] {
        m_grayImage = m_scene->image().allGray();
        updateActions();
    });
    connect(m_scene, &AbstractScene::pickRefused, this,
            [this](AbstractBaseItem*, const QString& reason) { statusBar()->showMessage(reason, 4000); });
    connect(m_undo, &QUndoStack::cleanChanged, this, &MainWindow::updateTitle);
    connect(m_recorder, &UndoRecorder::contextMenuAboutToShow, this, &MainWindow::extendContextMenu);
    connect(m_dock, &MeasuresDock::exportRequested, this, &MainWindow::exportMeasuresDialog);
    connect(m_dock, &MeasuresDock::itemActivated, this,
            [this](QGraphicsItem* item) { m_view->centerOn(item); });
    m_view->viewport()->installEventFilter(this);

    resizeDocks({m_dock}, {460}, Qt::Horizontal);
    readSettings();
    updateActions();
    updateTitle();
}

MainWindow::~MainWindow() {
    // The items go before the model and the recorder that watch them.
    m_scene->cancelTool();
    m_scene->clear();
}

void MainWindow::createActions() {
    const auto add = [this](const char* key, const QString& text, const QKeySequence& shortcut, auto slot) {
        auto* action = new QAction(text, this);
        action->setObjectName(QLatin1String(key));
        if (!shortcut.isEmpty())
            action->setShortcut(shortcut);
        connect(action, &QAction::triggered, this, slot);
        m_actions.insert(QLatin1String(key), action);
        return action;
    };
    add("open", tr("&Open…"), QKeySequence::Open, &MainWindow::open);
    add("save", tr("&Save"), QKeySequence::Save, &MainWindow::save);
    add("saveAs", tr("Save &as…"), QKeySequence::SaveAs, &MainWindow::saveAs);
    add("export", tr("&Export drawing…"), QKeySequence(tr("Ctrl+E")), &MainWindow::exportDialog);
    add("exportCsv", tr("Export &measures…"), QKeySequence(tr("Ctrl+Shift+E")),
        &MainWindow::exportMeasuresDialog);
    add("quit", tr("&Quit"), QKeySequence::Quit, &QWidget::close);

    QAction* undo = m_undo->createUndoAction(this, tr("&Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction* redo = m_undo->createRedoAction(this, tr("&Redo"));
    redo->setShortcuts({QKeySequence::Redo, QKeySequence(tr("Ctrl+Y"))});
    m_actions.insert(QStringLiteral("undo"), undo);
    m_actions.insert(QStringLiteral("redo"), redo);
    add("delete", tr("&Delete"), QKeySequence::Delete, &MainWindow::deleteSelection);
    add("selectAll", tr("Select &all"), QKeySequence::SelectAll, [this] {
        for (AbstractBaseItem* item : SceneItems::topLevel(m_scene))
            item->setSelected(true);
    });
    add("editText", tr("Edit &text…"), QKeySequence(tr("F2")), &MainWindow::editSelectedText);
    add("linkText", tr("&Link text to a measure"), QKeySequence(tr("Ctrl+L")), &MainWindow::startLinkingText);

    add("zoomIn", tr("Zoom &in"), QKeySequence::ZoomIn, [this] { m_view->zoomBy(1.25); });
    add("zoomOut", tr("Zoom &out"), QKeySequence::ZoomOut, [this] { m_view->zoomBy(0.8); });
    add("fit", tr("&Fit to window"), QKeySequence(tr("Ctrl+0")), [this] { m_view->fit(); });
    add("actualSize", tr("&Actual size"), QKeySequence(tr("Ctrl+1")), [this] { m_view->setZoom(1); });
    QAction* background = add("labelBackground", tr("Label &background"), QKeySequence(tr("Ctrl+B")),
                              [this](bool on) { m_scene->setLabelBackground(on); });
    background->setCheckable(true);

    add("calibrate", tr("&Calibrate…"), QKeySequence(tr("Ctrl+K")), &MainWindow::calibrate);
    add("rectCalib", tr("Draw a calibration &rectangle"), QKeySequence(),
        [this] { startTool(m_scene, "RectCalibItem"); });
    add("scaleBar", tr("Add a &scale bar"), QKeySequence(), &MainWindow::addScaleBar);
    add("about", tr("&About"), QKeySequence(), [this] {
        QMessageBox::about(this, tr("About the viewer"),
                           tr("The GraphicsObjects viewer measures and annotates images with the "
                              "GraphicsObjects library (%1).")
                               .arg(toolInterfaceVersion(nullptr).value(1)));
    });
    for (QAction* action : std::as_const(m_actions))
        addAction(action);
}

void MainWindow::createMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addAction(m_actions.value("open"));
    m_recentMenu = file->addMenu(tr("Open &recent"));
    file->addAction(m_actions.value("save"));
    file->addAction(m_actions.value("saveAs"));
    file->addSeparator();
    file->addAction(m_actions.value("export"));
    file->addAction(m_actions.value("exportCsv"));
    file->addSeparator();
    file->addAction(m_actions.value("quit"));

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addAction(m_actions.value("undo"));
    edit->addAction(m_actions.value("redo"));
    edit->addSeparator();
    edit->addAction(m_actions.value("delete"));
    edit->addAction(m_actions.value("selectAll"));
    edit->addSeparator();
    edit->addAction(m_actions.value("editText"));
    edit->addAction(m_actions.value("linkText"));
    edit->addMenu(createLoadMenu());

    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addAction(m_actions.value("zoomIn"));
    view->addAction(m_actions.value("zoomOut"));
    view->addAction(m_actions.value("fit"));
    view->addAction(m_actions.value("actualSize"));
    view->addSeparator();
    view->addAction(m_actions.value("labelBackground"));
    view->addAction(m_palette->toggleViewAction());
    view->addAction(m_dock->toggleViewAction());

    QMenu* image = menuBar()->addMenu(tr("&Image"));
    image->addAction(m_actions.value("calibrate"));
    image->addAction(m_actions.value("rectCalib"));
    image->addAction(m_actions.value("scaleBar"));
    m_filtersMenu = image->addMenu(tr("&Filters"));
    for (const ImageFilterInfo& filter : imageFilters()) {
        const QString name = QString::fromLatin1(filter.name);
        QAction* action = m_filtersMenu->addAction(filter.displayedTitle() + QStringLiteral("…"));
        action->setObjectName(QStringLiteral("filter-") + name);
        connect(action, &QAction::triggered, this, [this, name] { applyFilter(name); });
    }

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(m_actions.value("about"));
}

QMenu* MainWindow::createLoadMenu() {
    m_loadMenu = new QMenu(tr("Vickers test &load"), this);
    auto* loads = new QActionGroup(m_loadMenu);
    for (double kgf : VickersLoads::standardKgf()) {
        QAction* action = m_loadMenu->addAction(VickersLoads::designation(kgf));
        action->setCheckable(true);
        action->setData(kgf);
        loads->addAction(action);
        connect(action, &QAction::triggered, this, [this, kgf] { setVickersLoad(kgf); });
    }
    // The entry of the selected indentations' load is checked.
    connect(m_loadMenu, &QMenu::aboutToShow, this, [this] {
        const QList<VickersPItem*> items = selected<VickersPItem>();
        for (QAction* action : m_loadMenu->actions())
            action->setChecked(!items.isEmpty() && qAbs(VickersLoads::toNewtons(action->data().toDouble()) -
                                                        items.first()->charge()) < 1e-9);
    });
    return m_loadMenu;
}

void MainWindow::createStatusBar() {
    m_position = new QLabel;
    m_pixel = new QLabel;
    m_zoom = new QLabel;
    m_position->setObjectName(QStringLiteral("cursorPosition"));
    m_pixel->setObjectName(QStringLiteral("pixelValue"));
    statusBar()->addPermanentWidget(m_position);
    statusBar()->addPermanentWidget(m_pixel);
    statusBar()->addPermanentWidget(m_zoom);
    showZoom(m_view->zoom());
}

void MainWindow::showZoom(double zoom) {
    m_zoom->setText(tr("%1 %").arg(zoom * 100, 0, 'f', zoom < 0.1 ? 1 : 0));
}

// The cursor in calibrated units from the scene's origin, and the pixel under it.
void MainWindow::showCursor(const QPointF& p) {
    const Calibration c = m_scene->calibration();
    const QPointF d = (p - m_scene->origin()) * c.factor;
    m_position->setText(
        tr("x %1 %3, y %2 %3").arg(d.x(), 0, 'f', c.decimals).arg(d.y(), 0, 'f', c.decimals).arg(c.unitName));
    const QImage& image = m_scene->image();
    const QPoint pixel(int(std::floor(p.x())), int(std::floor(p.y())));
    if (!image.valid(pixel)) {
        m_pixel->clear();
        return;
    }
    const QRgb rgb = image.pixel(pixel);
    m_pixel->setText(m_grayImage ? tr("(%1, %2) value %3").arg(pixel.x()).arg(pixel.y()).arg(qGray(rgb))
                                 : tr("(%1, %2) RGB %3, %4, %5")
                                       .arg(pixel.x())
                                       .arg(pixel.y())
                                       .arg(qRed(rgb))
                                       .arg(qGreen(rgb))
                                       .arg(qBlue(rgb)));
}

void MainWindow::updateActions() {
    const bool any = !selectedItems().isEmpty();
    const bool oneText = selected<eTextItem>().size() == 1;
    m_actions.value("delete")->setEnabled(any);
    m_actions.value("editText")->setEnabled(oneText);
    m_actions.value("linkText")->setEnabled(oneText);
    m_loadMenu->setEnabled(!selected<VickersPItem>().isEmpty());
    const bool hasImage = !m_scene->image().isNull();
    m_filtersMenu->setEnabled(hasImage);
}

void MainWindow::updateTitle() {
    const QString name = m_fileName.isEmpty() ? tr("untitled") : QFileInfo(m_fileName).fileName();
    setWindowTitle(tr("%1[*] — GraphicsObjects viewer").arg(name));
    setWindowModified(!m_undo->isClean());
}

void MainWindow::tell(const QString& title, const QString& text, bool warning) {
    m_lastMessage = text;
    statusBar()->showMessage(text.section(QLatin1Char('\n'), 0, 0), 10000);
    // Not modal to the application: the user, or a test, goes on while it is shown.
    auto* box = new QMessageBox(warning ? QMessageBox::Warning : QMessageBox::Information, title, text,
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(QStringLiteral("message"));
    box->open();
}

QList<AbstractBaseItem*> MainWindow::selectedItems() const {
    QList<AbstractBaseItem*> items;
    for (QGraphicsItem* g : m_scene->selectedItems()) {
        if (AbstractBaseItem* item = AbstractBaseItem::sceneTool(g))
            items << item;
    }
    return items;
}

template <class Item> QList<Item*> MainWindow::selected() const {
    QList<Item*> items;
    for (AbstractBaseItem* item : selectedItems()) {
        if (auto* typed = qobject_cast<Item*>(item))
            items << typed;
    }
    return items;
}

void MainWindow::readSettings() {
    QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
    m_actions.value("labelBackground")
        ->setChecked(settings.value(QStringLiteral("view/labelBackground"), false).toBool());
    m_scene->setLabelBackground(m_actions.value("labelBackground")->isChecked());
    m_dock->setCsvStyle(settings.value(QStringLiteral("measures/csvStyle"), 0).toInt());
    updateRecentMenu();
}

void MainWindow::writeSettings() {
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    settings.setValue(QStringLiteral("view/labelBackground"),
                      m_actions.value("labelBackground")->isChecked());
    settings.setValue(QStringLiteral("measures/csvStyle"), m_dock->csvStyle());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!maybeSave()) {
        event->ignore();
        return;
    }
    writeSettings();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (!urls.isEmpty() && urls.first().isLocalFile() && maybeSave())
        openFile(urls.first().toLocalFile());
}

// Double-clicking a text opens its dialog rather than editing in place.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_view->viewport() && event->type() == QEvent::MouseButtonDblClick &&
        !m_scene->itemInCreation()) {
        const QPointF p = m_view->mapToScene(static_cast<QMouseEvent*>(event)->pos());
        if (auto* text = qobject_cast<eTextItem*>(m_scene->pickableItemAt(p, 2 / m_view->zoom()))) {
            m_scene->clearSelection();
            text->setSelected(true);
            editSelectedText();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}
