#pragma once

#include "SceneDocument.h"

#include <QImage>
#include <QMainWindow>
#include <QPointer>

class AbstractBaseItem;
class AbstractScene;
class MeasuresDock;
class MeasuresModel;
class QLabel;
class QMenu;
class QUndoStack;
class SceneView;
class ToolPalette;
class UndoRecorder;

// The viewer: an image or a scene document, the tool palette, the measures table, undo, the
// calibration, the filters and the exports. Problems are told in a message box that does not
// block, and in lastMessage().
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    // An image (PNG, JPEG, TIFF, BMP...) or a scene document, by its content's kind; false after
    // a message when it cannot be opened, the current scene then left as it was.
    bool openFile(const QString& fileName);
    // Saves the scene as a document; false after a message, any previous file left whole.
    bool saveDocument(const QString& fileName);
    // The scene as a DXF drawing, a picture (PNG, JPEG...) or SVG, by the extension.
    bool exportScene(const QString& fileName);
    // The measures table as CSV, in the separator style chosen in the dock.
    bool exportMeasures(const QString& fileName);

    AbstractScene* scene() const { return m_scene; }
    SceneView* view() const { return m_view; }
    ToolPalette* palette() const { return m_palette; }
    QUndoStack* undoStack() const { return m_undo; }
    MeasuresModel* measures() const { return m_measures; }
    MeasuresDock* measuresDock() const { return m_dock; }
    SceneDocument& document() { return m_document; }
    QString currentFile() const { return m_fileName; }
    QString lastMessage() const { return m_lastMessage; }
    QStringList recentFiles() const;

    // Item actions, as the menus run them.
    void deleteSelection();
    void editSelectedText();
    void startLinkingText();
    void linkSelectedText(AbstractBaseItem* target);
    void setVickersLoad(double kgf);
    void calibrate();
    void addScaleBar();
    void applyFilter(const QString& name);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createActions();
    void createMenus();
    QMenu* createLoadMenu();
    void createStatusBar();
    void readSettings();
    void writeSettings();
    void updateActions();
    void updateTitle();
    void updateRecentMenu();
    void addRecentFile(const QString& fileName);
    void showCursor(const QPointF& scenePos);
    void showZoom(double zoom);
    void extendContextMenu(AbstractBaseItem* item, QMenu* menu);
    void clearScene();
    bool openImage(const QString& fileName);
    bool openDocument(const QString& fileName);
    bool maybeSave();
    void tell(const QString& title, const QString& text, bool warning = true);
    QList<AbstractBaseItem*> selectedItems() const;
    template <class Item> QList<Item*> selected() const;

    void open();
    bool save();
    bool saveAs();
    void exportDialog();
    void exportMeasuresDialog();

    AbstractScene* m_scene;
    SceneView* m_view;
    ToolPalette* m_palette;
    QUndoStack* m_undo;
    UndoRecorder* m_recorder;
    MeasuresModel* m_measures;
    MeasuresDock* m_dock;
    SceneDocument m_document;
    QString m_fileName;
    QString m_imageFile;   // the picture the scene shows, as read from its file
    qint64 m_imageKey = 0; // that picture's cacheKey: a filtered image is another one
    bool m_grayImage = false;
    QString m_lastMessage;
    QPointer<AbstractBaseItem> m_linkingText;

    QLabel* m_position;
    QLabel* m_pixel;
    QLabel* m_zoom;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_filtersMenu = nullptr;
    QMenu* m_loadMenu = nullptr;
    QHash<QString, QAction*> m_actions;
};
