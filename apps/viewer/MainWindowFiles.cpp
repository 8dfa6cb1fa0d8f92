// The main window's files: opening images and scene documents, saving, exports, recent files.
#include "MainWindow.h"

#include "MeasuresDock.h"
#include "SceneView.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QBuffer>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QSaveFile>
#include <QSettings>
#include <QStatusBar>
#include <QSvgGenerator>
#include <QTableView>
#include <QUndoStack>

namespace {

constexpr int MaxRecentFiles = 8;

const QString recentKey = QStringLiteral("recentFiles");

bool isPicture(const QString& fileName) {
    const QByteArray suffix = QFileInfo(fileName).suffix().toLower().toLatin1();
    return suffix != "xml" && suffix != "svg" && QImageReader::supportedImageFormats().contains(suffix);
}

QString folderOf(const QString& fileName) {
    return fileName.isEmpty() ? QString() : QFileInfo(fileName).absolutePath();
}

// Writes data through a temporary file renamed over fileName: a failure leaves the old file whole.
bool writeFile(const QString& fileName, const QByteArray& data, QString* error) {
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit())
        return true;
    *error = QStringLiteral("%1: %2").arg(fileName, file.errorString());
    return false;
}

} // namespace

bool MainWindow::openFile(const QString& fileName) {
    const QFileInfo info(fileName);
    if (!info.isFile()) {
        tell(tr("Not opened"), tr("%1: no such file").arg(fileName));
        return false;
    }
    const bool opened = isPicture(fileName) ? openImage(fileName) : openDocument(fileName);
    if (!opened)
        return false;
    addRecentFile(info.absoluteFilePath());
    m_dock->table()->resizeColumnsToContents();
    m_view->fit();
    updateActions();
    updateTitle();
    return true;
}

void MainWindow::clearScene() {
    m_view->stopPicking();
    m_scene->cancelTool();
    m_undo->clear();
    m_scene->clearSelection();
    m_scene->clear();
    m_scene->setImage(QImage());
    m_scene->setSceneRect(QRectF());
    m_scene->clearOrigin();
    m_scene->setDocumentFolder(QString());
    m_document = SceneDocument();
    m_imageFile.clear();
    m_imageKey = 0;
}

bool MainWindow::openImage(const QString& fileName) {
    QImageReader reader(fileName);
    const QSize size = reader.size();
    QImage image;
    if (size.isValid() && !SceneDocument::sizeAllowed(size)) {
        tell(tr("Not opened"), tr("%1: %2 x %3 pixels is more than this viewer opens")
                                   .arg(fileName)
                                   .arg(size.width())
                                   .arg(size.height()));
        return false;
    }
    if (!reader.read(&image) || !SceneDocument::sizeAllowed(image.size())) {
        tell(tr("Not opened"), tr("%1: not a picture: %2").arg(fileName, reader.errorString()));
        return false;
    }
    const Calibration calibration = m_scene->calibration();
    clearScene();
    m_document.setImage(image, fileName);
    m_document.setCalibration(calibration);
    m_scene->setSceneRect(QRectF(QPointF(0, 0), image.size()));
    m_scene->setImage(image);
    m_scene->setCalibration(calibration);
    m_imageFile = QFileInfo(fileName).absoluteFilePath();
    m_imageKey = m_scene->image().cacheKey();
    m_fileName.clear();
    return true;
}

bool MainWindow::openDocument(const QString& fileName) {
    // A document refused whole leaves the current scene as it is.
    {
        AbstractScene scratch;
        scratch.setItemIndexMethod(QGraphicsScene::NoIndex);
        SceneDocument probe;
        if (!probe.open(fileName, &scratch)) {
            tell(tr("Not opened"), probe.errorString());
            return false;
        }
    }
    clearScene();
    if (!m_document.open(fileName, m_scene)) {
        tell(tr("Not opened"), m_document.errorString());
        return false;
    }
    m_scene->setCalibration(m_document.calibration());
    if (m_document.size().isValid())
        m_scene->setSceneRect(QRectF(QPointF(0, 0), m_document.size()));
    m_imageFile = m_document.imageFilePath();
    m_imageKey = m_scene->image().cacheKey();
    m_fileName = QFileInfo(fileName).absoluteFilePath();
    m_measures->refresh();
    if (!m_document.messages().isEmpty())
        tell(tr("Opened with problems"),
             tr("%1 was opened; what follows was left out or changed:\n%2")
                 .arg(QFileInfo(fileName).fileName(), m_document.messages().join(QLatin1Char('\n'))));
    return true;
}

bool MainWindow::saveDocument(const QString& fileName) {
    m_document.setCalibration(m_scene->calibration());
    const QImage image = m_scene->image();
    // The picture stays a file beside the document while it is the file's; filtered, it is embedded.
    if (!image.isNull() && image.cacheKey() == m_imageKey && !m_imageFile.isEmpty())
        m_document.setImage(image, m_imageFile);
    else
        m_document.setImage(image);
    if (!m_document.save(fileName, m_scene)) {
        tell(tr("Not saved"), m_document.errorString());
        return false;
    }
    m_fileName = QFileInfo(fileName).absoluteFilePath();
    m_undo->setClean();
    addRecentFile(m_fileName);
    updateTitle();
    statusBar()->showMessage(tr("Saved %1").arg(fileName), 4000);
    if (!m_document.messages().isEmpty())
        tell(tr("Saved"), m_document.messages().join(QLatin1Char('\n')), false);
    return true;
}

bool MainWindow::exportScene(const QString& fileName) {
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    QString error;
    // Grips and selection frames are no part of the picture.
    const QList<QGraphicsItem*> selection = m_scene->selectedItems();
    m_scene->clearSelection();
    const QRectF area = m_scene->sceneRect();
    bool done = false;
    if (suffix == QLatin1String("dxf")) {
        done = exportSceneToDxf(fileName, m_scene, &error);
    } else if (suffix == QLatin1String("svg")) {
        QBuffer buffer;
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(area.size().toSize());
        svg.setViewBox(QRectF(QPointF(0, 0), area.size()));
        svg.setTitle(QFileInfo(m_fileName).fileName());
        QPainter painter(&svg);
        m_scene->render(&painter, QRectF(QPointF(0, 0), area.size()), area);
        painter.end();
        done = writeFile(fileName, buffer.data(), &error);
    } else if (QImageWriter::supportedImageFormats().contains(suffix.toLatin1())) {
        if (!SceneDocument::sizeAllowed(area.size().toSize())) {
            error = tr("the scene is too large for a picture");
        } else {
            QImage picture(area.size().toSize(), QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::white);
            QPainter painter(&picture);
            painter.setRenderHint(QPainter::Antialiasing);
            m_scene->render(&painter, QRectF(picture.rect()), area);
            painter.end();
            QBuffer buffer;
            buffer.open(QIODevice::WriteOnly);
            done = picture.save(&buffer, suffix.toLatin1().constData()) &&
                   writeFile(fileName, buffer.data(), &error);
            if (!done && error.isEmpty())
                error = tr("the picture cannot be written as %1").arg(suffix);
        }
    } else {
        error = tr("no drawing or picture format is known by the extension \"%1\"").arg(suffix);
    }
    for (QGraphicsItem* item : selection)
        item->setSelected(true);
    if (!done) {
        tell(tr("Not exported"), error);
        return false;
    }
    statusBar()->showMessage(tr("Exported %1").arg(fileName), 4000);
    return true;
}

bool MainWindow::exportMeasures(const QString& fileName) {
    QString error;
    if (!m_measures->saveCsv(fileName, m_dock->separator(), m_dock->decimalMark(), &error)) {
        tell(tr("Not exported"), error);
        return false;
    }
    statusBar()->showMessage(tr("Exported %1").arg(fileName), 4000);
    return true;
}

bool MainWindow::maybeSave() {
    if (m_undo->isClean())
        return true;
    const auto answer =
        QMessageBox::question(this, tr("Unsaved changes"), tr("Save the changes to the scene?"),
                              QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::open() {
    if (!maybeSave())
        return;
    const QString fileName = QFileDialog::getOpenFileName(
        this, tr("Open an image or a scene"), folderOf(recentFiles().value(0)),
        tr("Images and scenes (*.png *.jpg *.jpeg *.tif *.tiff *.bmp *.xml);;All files (*)"));
    if (!fileName.isEmpty())
        openFile(fileName);
}

bool MainWindow::save() {
    return m_fileName.isEmpty() ? saveAs() : saveDocument(m_fileName);
}

bool MainWindow::saveAs() {
    QString fileName = QFileDialog::getSaveFileName(this, tr("Save the scene"),
                                                    m_fileName.isEmpty() ? folderOf(m_imageFile) : m_fileName,
                                                    tr("Scene documents (*.xml)"));
    if (fileName.isEmpty())
        return false;
    if (QFileInfo(fileName).suffix().isEmpty())
        fileName += QStringLiteral(".xml");
    return saveDocument(fileName);
}

void MainWindow::exportDialog() {
    QString filter;
    QString fileName = QFileDialog::getSaveFileName(
        this, tr("Export the drawing"), folderOf(m_fileName.isEmpty() ? m_imageFile : m_fileName),
        tr("DXF drawing (*.dxf);;PNG picture (*.png);;SVG drawing (*.svg)"), &filter);
    if (fileName.isEmpty())
        return;
    if (QFileInfo(fileName).suffix().isEmpty())
        fileName += filter.contains(QLatin1String("dxf"))   ? QStringLiteral(".dxf")
                    : filter.contains(QLatin1String("svg")) ? QStringLiteral(".svg")
                                                            : QStringLiteral(".png");
    exportScene(fileName);
}

void MainWindow::exportMeasuresDialog() {
    QString fileName = QFileDialog::getSaveFileName(this, tr("Export the measures"),
                                                    folderOf(m_fileName.isEmpty() ? m_imageFile : m_fileName),
                                                    tr("CSV tables (*.csv)"));
    if (fileName.isEmpty())
        return;
    if (QFileInfo(fileName).suffix().isEmpty())
        fileName += QStringLiteral(".csv");
    exportMeasures(fileName);
}

QStringList MainWindow::recentFiles() const {
    return QSettings().value(recentKey).toStringList();
}

void MainWindow::addRecentFile(const QString& fileName) {
    QStringList files = recentFiles();
    files.removeAll(fileName);
    files.prepend(fileName);
    QSettings().setValue(recentKey, files.mid(0, MaxRecentFiles));
    updateRecentMenu();
}

void MainWindow::updateRecentMenu() {
    m_recentMenu->clear();
    const QStringList files = recentFiles();
    for (int i = 0; i < files.size(); ++i) {
        const QString fileName = files.at(i);
        QAction* action =
            m_recentMenu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(fileName).fileName()));
        action->setToolTip(fileName);
        connect(action, &QAction::triggered, this, [this, fileName] {
            if (maybeSave())
                openFile(fileName);
        });
    }
    m_recentMenu->addSeparator();
    m_recentMenu->addAction(tr("Clear the list"), this, [this] {
        QSettings().remove(recentKey);
        updateRecentMenu();
    });
    m_recentMenu->setEnabled(true);
}
