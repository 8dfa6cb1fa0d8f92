#pragma once

#include "MeasureNames.h"
#include "graphicsobjects_export.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QList>
#include <QPointer>

class AbstractBaseItem;
class AbstractScene;

// The measures of a scene's items as a table: one row per tool (its class, displayed
// name and GUID name), one column per measure name and unit that some item fills ("Length (µm)"),
// and for Vickers indentations their designation and warning. It follows the scene live: items
// added or removed, and each item's measure, change and deletion signals; the rows of items that
// went are removed together once control is back in the event loop, so that clearing a large
// scene stays linear. Sortable by any column (numbers by value, rows without one last); exports
// CSV and JSON.
class GRAPHICSOBJECTS_EXPORT MeasuresModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { ClassColumn, DisplayedNameColumn, NameColumn, FixedColumns };
    enum Role {
        // The calibrated value of a measure cell as a double; null for other cells.
        ValueRole = Qt::UserRole + 1,
        // The unit of a measure column, in headerData.
        UnitRole,
    };

    explicit MeasuresModel(AbstractScene* scene, QObject* parent = nullptr);

    AbstractScene* scene() const { return m_scene; }
    AbstractBaseItem* item(int row) const;
    // The row of the item, -1 when it has none.
    int row(const AbstractBaseItem* item) const;
    // The column of a measure, -1 when no item fills it.
    int measureColumn(const QString& name, const QString& unit) const;
    // Reads every row from its item again. Items loaded after they were added (fromXml) change
    // without a signal: the model reads them again once control is back in the event loop, or
    // at once through this call.
    void refresh();

    // RFC 4180: a header line, then one line per row in the model's order, each ended by CRLF;
    // a field holding the separator, a quote or a line break is quoted, quotes doubled. Numbers are
    // written in full (the shortest text that reads back to the same double) with the decimal mark
    // given: ';' and ',' for the spreadsheets of many locales. An empty cell has no measure.
    QString toCsv(QChar separator = QLatin1Char(','), QChar decimalMark = QLatin1Char('.')) const;
    // {"items": [{"class", "displayedName", "name", "measures": [{"name", "value", "unit"}],
    //   "designation", "warning"}]}, designation and warning only when there are some.
    QByteArray toJson() const;
    // Writes toCsv through a temporary file renamed over fileName; false with error on failure.
    bool saveCsv(const QString& fileName, QChar separator, QChar decimalMark, QString* error = nullptr) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    struct Key {
        QString name;
        QString unit;
        int rank;
        bool operator==(const Key& o) const { return name == o.name && unit == o.unit; }
        bool operator<(const Key& o) const;
    };
    struct Row {
        QObject* object; // the item, also while it is being destroyed
        QPointer<AbstractBaseItem> item;
        QString className;
        QString displayedName;
        QString name;
        QList<ItemMeasure> measures;
        ItemRemarks remarks;
        bool gone = false; // its item left the scene: the row goes at the next compaction
    };

    void addItem(AbstractBaseItem* item);
    void removeObject(QObject* object);
    void refreshItem(QObject* object);
    void fill(Row& row) const;
    int rowOfObject(const QObject* object) const;
    // Counts the columns a row fills; true when a column comes or goes.
    bool count(const Row& row, int delta);
    // Brings the measure columns and the remark columns in line with the counts.
    void syncColumns();
    int remarkColumn(int column) const; // 0 designation, 1 warning, -1 neither
    const ItemMeasure* measureAt(const Row& row, int column) const;
    QVariant sortValue(const Row& row, int column) const;
    // Negative when a goes before b in the order asked for.
    int compareValues(const QVariant& a, const QVariant& b) const;
    void resort();
    QStringList csvHeader() const;
    QString cellText(const Row& row, int column, QChar decimalMark) const;
    // Work gathered until control is back in the event loop: reading items added, and removing the
    // rows of items gone, each in one pass however many items came or went.
    void schedule();
    void runScheduled();
    void compact();

    QPointer<AbstractScene> m_scene;
    QList<Row> m_rows;
    mutable QHash<const QObject*, int> m_index; // row by item
    mutable bool m_indexDirty = false;
    QList<QPointer<AbstractBaseItem>> m_pending; // added, to be read again
    bool m_scheduled = false;
    bool m_anyGone = false;
    bool m_batch = false; // refreshing many rows: one sort at the end
    QList<Key> m_keys;
    QHash<QString, std::pair<Key, int>> m_keyUse; // rows filling each column
    int m_designations = 0;
    int m_warnings = 0;
    bool m_designation = false;
    bool m_warning = false;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
