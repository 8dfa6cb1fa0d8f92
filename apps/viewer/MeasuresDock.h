#pragma once

#include <QDockWidget>

class AbstractScene;
class MeasuresModel;
class QComboBox;
class QGraphicsItem;
class QTableView;

// The measures table in a dock: one row per item, sortable, its selection and the scene's
// following each other, and a CSV export in the separator style the user picks.
class MeasuresDock : public QDockWidget {
    Q_OBJECT
public:
    MeasuresDock(AbstractScene* scene, MeasuresModel* model, QWidget* parent = nullptr);

    QTableView* table() const { return m_table; }
    MeasuresModel* model() const { return m_model; }
    // 0: "," and "." (1.5); 1: ";" and "," (1,5), for the spreadsheets of many locales.
    int csvStyle() const;
    void setCsvStyle(int style);
    QChar separator() const;
    QChar decimalMark() const;

signals:
    void exportRequested();
    // A row was double-clicked: the view may show its item.
    void itemActivated(QGraphicsItem* item);

private:
    void sceneSelectionChanged();
    void tableSelectionChanged();

    AbstractScene* m_scene;
    MeasuresModel* m_model;
    QTableView* m_table;
    QComboBox* m_style;
    bool m_syncing = false;
};
