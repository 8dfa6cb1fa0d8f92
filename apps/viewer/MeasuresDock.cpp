#include "MeasuresDock.h"

#include <GraphicsObjects/GraphicsObjects.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

MeasuresDock::MeasuresDock(AbstractScene* scene, MeasuresModel* model, QWidget* parent)
    : QDockWidget(tr("Measures"), parent)
    , m_scene(scene)
    , m_model(model)
    , m_table(new QTableView)
    , m_style(new QComboBox) {
    setObjectName(QStringLiteral("MeasuresDock"));
    m_table->setObjectName(QStringLiteral("measuresTable"));
    m_table->setModel(model);
    m_table->setSortingEnabled(true);
    m_table->sortByColumn(-1, Qt::AscendingOrder);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->setVisible(false);
    // The tool's displayed name says what the class says, in the user's language.
    m_table->setColumnHidden(MeasuresModel::ClassColumn, true);
    // Sized once when a column comes: sizing on every change reads every row.
    connect(model, &QAbstractItemModel::columnsInserted, this,
            [this](const QModelIndex&, int first, int last) {
                for (int c = first; c <= last; ++c)
                    m_table->resizeColumnToContents(c);
            });
    m_style->addItem(tr("Comma separated, decimal point (1.5)"));
    m_style->addItem(tr("Semicolon separated, decimal comma (1,5)"));
    auto* exportButton = new QPushButton(tr("Export CSV…"));
    exportButton->setObjectName(QStringLiteral("exportCsv"));

    auto* bar = new QHBoxLayout;
    bar->addWidget(m_style, 1);
    bar->addWidget(exportButton);
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(m_table);
    layout->addLayout(bar);
    setWidget(content);

    connect(exportButton, &QPushButton::clicked, this, &MeasuresDock::exportRequested);
    connect(scene, &QGraphicsScene::selectionChanged, this, &MeasuresDock::sceneSelectionChanged);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MeasuresDock::tableSelectionChanged);
    // Rows that come or go, or move in a sort, keep the scene's selection.
    connect(model, &QAbstractItemModel::layoutChanged, this, &MeasuresDock::sceneSelectionChanged);
    connect(model, &QAbstractItemModel::rowsInserted, this, &MeasuresDock::sceneSelectionChanged);
    connect(m_table, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        if (AbstractBaseItem* item = m_model->item(index.row()))
            emit itemActivated(item);
    });
}

int MeasuresDock::csvStyle() const {
    return m_style->currentIndex();
}

void MeasuresDock::setCsvStyle(int style) {
    m_style->setCurrentIndex(style == 1 ? 1 : 0);
}

QChar MeasuresDock::separator() const {
    return csvStyle() == 1 ? QLatin1Char(';') : QLatin1Char(',');
}

QChar MeasuresDock::decimalMark() const {
    return csvStyle() == 1 ? QLatin1Char(',') : QLatin1Char('.');
}

void MeasuresDock::sceneSelectionChanged() {
    if (m_syncing)
        return;
    m_syncing = true;
    QItemSelection selection;
    for (QGraphicsItem* g : m_scene->selectedItems()) {
        const int row = m_model->row(AbstractBaseItem::fromGraphicsItem(g));
        if (row >= 0)
            selection.select(m_model->index(row, 0), m_model->index(row, m_model->columnCount() - 1));
    }
    m_table->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty())
        m_table->scrollTo(selection.first().topLeft());
    m_syncing = false;
}

void MeasuresDock::tableSelectionChanged() {
    if (m_syncing)
        return;
    m_syncing = true;
    QList<QGraphicsItem*> chosen;
    for (const QModelIndex& index : m_table->selectionModel()->selectedRows()) {
        if (AbstractBaseItem* item = m_model->item(index.row()))
            chosen << item;
    }
    m_scene->clearSelection();
    for (QGraphicsItem* item : std::as_const(chosen)) {
        item->setFlag(QGraphicsItem::ItemIsSelectable, true);
        item->setSelected(true);
    }
    m_syncing = false;
}
