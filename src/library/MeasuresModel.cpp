#include "MeasuresModel.h"

#include "AbstractBaseItem.h"
#include "AbstractScene.h"
#include "ToolsCatalogue.h"

#include <QBrush>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QSaveFile>

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

QString csvField(const QString& field, QChar separator) {
    if (!field.contains(separator) && !field.contains(QLatin1Char('"')) &&
        !field.contains(QLatin1Char('\n')) && !field.contains(QLatin1Char('\r')))
        return field;
    QString quoted = field;
    quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

// The shortest text that reads back to the same double.
QString fullNumber(double v, QChar decimalMark) {
    QString text = QString::number(v, 'g', QLocale::FloatingPointShortest);
    if (decimalMark != QLatin1Char('.'))
        text.replace(QLatin1Char('.'), decimalMark);
    return text;
}

QList<std::pair<QString, QString>> keysOf(const QList<ItemMeasure>& measures) {
    QList<std::pair<QString, QString>> keys;
    for (const ItemMeasure& m : measures)
        keys.append({m.name, m.unit});
    return keys;
}

} // namespace

bool MeasuresModel::Key::operator<(const Key& o) const {
    if (rank != o.rank)
        return rank < o.rank;
    if (unit != o.unit)
        return unit < o.unit;
    return name < o.name;
}

MeasuresModel::MeasuresModel(AbstractScene* scene, QObject* parent)
    : QAbstractTableModel(parent)
    , m_scene(scene) {
    if (!scene)
        return;
    connect(scene, &AbstractScene::itemAdded, this, &MeasuresModel::addItem);
    connect(scene, &AbstractScene::itemRemoved, this, &MeasuresModel::removeObject);
    // Drawn items may measure themselves without a signal.
    connect(scene, &AbstractScene::itemAccepted, this, &MeasuresModel::refreshItem);
    for (QGraphicsItem* g : scene->items(Qt::AscendingOrder)) {
        if (AbstractBaseItem* tool = AbstractBaseItem::sceneTool(g))
            addItem(tool);
    }
}

AbstractBaseItem* MeasuresModel::item(int row) const {
    return row >= 0 && row < m_rows.size() ? m_rows.at(row).item.data() : nullptr;
}

int MeasuresModel::row(const AbstractBaseItem* item) const {
    const int at = item ? rowOfObject(item) : -1;
    return at >= 0 && !m_rows.at(at).gone ? at : -1;
}

int MeasuresModel::rowOfObject(const QObject* object) const {
    if (m_indexDirty) {
        m_index.clear();
        for (int i = 0; i < m_rows.size(); ++i)
            m_index.insert(m_rows.at(i).object, i);
        m_indexDirty = false;
    }
    return m_index.value(object, -1);
}

int MeasuresModel::measureColumn(const QString& name, const QString& unit) const {
    for (int i = 0; i < m_keys.size(); ++i) {
        if (m_keys.at(i).name == name && m_keys.at(i).unit == unit)
            return FixedColumns + i;
    }
    return -1;
}

void MeasuresModel::fill(Row& row) const {
    AbstractBaseItem* item = row.item;
    row.className = item->getType();
    row.displayedName = getTools_NamesRef()->value(row.className);
    if (row.displayedName.isEmpty())
        row.displayedName = row.className;
    row.name = item->getGUIDname();
    row.measures = itemMeasures(item);
    row.remarks = itemRemarks(item);
}

bool MeasuresModel::count(const Row& row, int delta) {
    bool crossed = false;
    for (const ItemMeasure& m : row.measures) {
        auto& use = m_keyUse[m.name + QLatin1Char('\n') + m.unit];
        use.first = Key{m.name, m.unit, m.rank};
        crossed = crossed || use.second == 0 || use.second + delta == 0;
        use.second += delta;
    }
    const auto remark = [&](const QString& text, int& uses) {
        if (text.isEmpty())
            return;
        crossed = crossed || uses == 0 || uses + delta == 0;
        uses += delta;
    };
    remark(row.remarks.designation, m_designations);
    remark(row.remarks.warning, m_warnings);
    return crossed;
}

void MeasuresModel::addItem(AbstractBaseItem* item) {
    if (!item)
        return;
    const int existing = rowOfObject(item);
    if (existing >= 0 && !m_rows.at(existing).gone)
        return;
    const auto refresh = [this, item] { refreshItem(item); };
    connect(item, &AbstractBaseItem::mesureChanged, this, refresh);
    connect(item, &AbstractBaseItem::mesureChangedEND, this, refresh);
    connect(item, &AbstractBaseItem::itemChanged, this, refresh);
    connect(item, &QObject::destroyed, this, &MeasuresModel::removeObject);
    if (existing >= 0) {
        // Back before its row went: the row is its own again.
        Row& row = m_rows[existing];
        row.gone = false;
        row.item = item;
        refreshItem(item);
    } else {
        Row row{item, item, {}, {}, {}, {}, {}};
        fill(row);
        const int at = int(m_rows.size());
        beginInsertRows(QModelIndex(), at, at);
        m_rows.append(row);
        if (!m_indexDirty)
            m_index.insert(item, at);
        endInsertRows();
        if (count(row, 1))
            syncColumns();
    }
    m_pending << item;
    schedule();
}

void MeasuresModel::removeObject(QObject* object) {
    const int at = rowOfObject(object);
    if (at < 0 || m_rows.at(at).gone)
        return;
    // Still alive when it only left the scene.
    disconnect(object, nullptr, this, nullptr);
    m_rows[at].gone = true;
    m_rows[at].item = nullptr;
    m_anyGone = true;
    schedule();
}

void MeasuresModel::schedule() {
    if (m_scheduled)
        return;
    m_scheduled = true;
    QMetaObject::invokeMethod(this, &MeasuresModel::runScheduled, Qt::QueuedConnection);
}

void MeasuresModel::runScheduled() {
    m_scheduled = false;
    compact();
    const QList<QPointer<AbstractBaseItem>> pending = std::exchange(m_pending, {});
    m_batch = true;
    for (const QPointer<AbstractBaseItem>& item : pending) {
        if (item)
            refreshItem(item);
    }
    m_batch = false;
    resort();
}

void MeasuresModel::compact() {
    if (!std::exchange(m_anyGone, false))
        return;
    bool crossed = false;
    for (int end = int(m_rows.size()) - 1; end >= 0; --end) {
        if (!m_rows.at(end).gone)
            continue;
        int first = end;
        while (first > 0 && m_rows.at(first - 1).gone)
            --first;
        for (int i = first; i <= end; ++i)
            crossed = count(m_rows.at(i), -1) || crossed;
        beginRemoveRows(QModelIndex(), first, end);
        m_rows.remove(first, end - first + 1);
        m_indexDirty = true;
        endRemoveRows();
        end = first;
    }
    if (crossed)
        syncColumns();
}

void MeasuresModel::refresh() {
    compact();
    m_pending.clear();
    m_batch = true;
    for (const Row& row : std::as_const(m_rows)) {
        if (row.item)
            refreshItem(row.item);
    }
    m_batch = false;
    resort();
}

void MeasuresModel::refreshItem(QObject* object) {
    const int at = rowOfObject(object);
    if (at < 0 || !m_rows.at(at).item)
        return;
    Row& row = m_rows[at];
    const auto before = keysOf(row.measures);
    const bool designation = !row.remarks.designation.isEmpty();
    const bool warning = !row.remarks.warning.isEmpty();
    Row old = row;
    fill(row);
    if (keysOf(row.measures) != before || designation != !row.remarks.designation.isEmpty() ||
        warning != !row.remarks.warning.isEmpty()) {
        const bool gone = count(old, -1);
        const bool came = count(row, 1);
        if (gone || came)
            syncColumns();
    }
    emit dataChanged(index(at, 0), index(at, columnCount() - 1));
    // A row that now stands out of order puts the table in order again.
    if (m_sortColumn < 0 || m_batch)
        return;
    const QVariant here = sortValue(m_rows.at(at), m_sortColumn);
    const bool fits =
        (at == 0 || compareValues(sortValue(m_rows.at(at - 1), m_sortColumn), here) <= 0) &&
        (at + 1 == m_rows.size() || compareValues(here, sortValue(m_rows.at(at + 1), m_sortColumn)) <= 0);
    if (!fits)
        resort();
}

void MeasuresModel::syncColumns() {
    QList<Key> wanted;
    for (auto it = m_keyUse.cbegin(); it != m_keyUse.cend(); ++it) {
        if (it.value().second > 0)
            wanted << it.value().first;
    }
    std::sort(wanted.begin(), wanted.end());
    // Both lists are in the same order: once the columns no longer wanted are gone, the current
    // ones are a subsequence of the wanted ones.
    for (int i = int(m_keys.size()) - 1; i >= 0; --i) {
        if (wanted.contains(m_keys.at(i)))
            continue;
        beginRemoveColumns(QModelIndex(), FixedColumns + i, FixedColumns + i);
        m_keys.removeAt(i);
        endRemoveColumns();
    }
    for (int i = 0; i < wanted.size(); ++i) {
        if (i < m_keys.size() && m_keys.at(i) == wanted.at(i))
            continue;
        beginInsertColumns(QModelIndex(), FixedColumns + i, FixedColumns + i);
        m_keys.insert(i, wanted.at(i));
        endInsertColumns();
    }
    const bool designation = m_designations > 0;
    const bool warning = m_warnings > 0;
    const int remarks = FixedColumns + int(m_keys.size());
    if (designation != m_designation) {
        designation ? beginInsertColumns(QModelIndex(), remarks, remarks)
                    : beginRemoveColumns(QModelIndex(), remarks, remarks);
        m_designation = designation;
        designation ? endInsertColumns() : endRemoveColumns();
    }
    const int warningColumn = remarks + (m_designation ? 1 : 0);
    if (warning != m_warning) {
        warning ? beginInsertColumns(QModelIndex(), warningColumn, warningColumn)
                : beginRemoveColumns(QModelIndex(), warningColumn, warningColumn);
        m_warning = warning;
        warning ? endInsertColumns() : endRemoveColumns();
    }
    if (m_sortColumn >= columnCount())
        m_sortColumn = -1;
}

int MeasuresModel::remarkColumn(int column) const {
    const int first = FixedColumns + int(m_keys.size());
    if (m_designation && column == first)
        return 0;
    if (m_warning && column == first + (m_designation ? 1 : 0))
        return 1;
    return -1;
}

const ItemMeasure* MeasuresModel::measureAt(const Row& row, int column) const {
    const int k = column - FixedColumns;
    if (k < 0 || k >= m_keys.size())
        return nullptr;
    const Key& key = m_keys.at(k);
    for (const ItemMeasure& m : row.measures) {
        if (m.name == key.name && m.unit == key.unit)
            return &m;
    }
    return nullptr;
}

int MeasuresModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int MeasuresModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid()
               ? 0
               : FixedColumns + int(m_keys.size()) + (m_designation ? 1 : 0) + (m_warning ? 1 : 0);
}

QString MeasuresModel::cellText(const Row& row, int column, QChar decimalMark) const {
    switch (column) {
    case ClassColumn:
        return row.className;
    case DisplayedNameColumn:
        return row.displayedName;
    case NameColumn:
        return row.name;
    default:
        break;
    }
    switch (remarkColumn(column)) {
    case 0:
        return row.remarks.designation;
    case 1:
        return row.remarks.warning;
    default:
        break;
    }
    const ItemMeasure* m = measureAt(row, column);
    if (!m)
        return QString();
    if (decimalMark.isNull())
        return QString::number(m->value, 'f', m->decimals);
    return fullNumber(m->value, decimalMark);
}

QVariant MeasuresModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= m_rows.size() || index.column() >= columnCount())
        return QVariant();
    const Row& row = m_rows.at(index.row());
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return cellText(row, column, QChar());
    case ValueRole:
        if (const ItemMeasure* m = measureAt(row, column))
            return m->value;
        return QVariant();
    case Qt::TextAlignmentRole:
        if (measureAt(row, column))
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return QVariant();
    case Qt::ForegroundRole:
        if (remarkColumn(column) == 1)
            return QBrush(Qt::red);
        return QVariant();
    case Qt::ToolTipRole:
        if (!row.remarks.warning.isEmpty())
            return row.remarks.warning;
        return QVariant();
    default:
        return QVariant();
    }
}

QVariant MeasuresModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal)
        return role == Qt::DisplayRole ? QVariant(section + 1) : QVariant();
    if (section < 0 || section >= columnCount())
        return QVariant();
    const int k = section - FixedColumns;
    if (role == UnitRole)
        return k >= 0 && k < m_keys.size() ? m_keys.at(k).unit : QString();
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case ClassColumn:
        return tr("Class");
    case DisplayedNameColumn:
        return tr("Tool");
    case NameColumn:
        return tr("Name");
    default:
        break;
    }
    switch (remarkColumn(section)) {
    case 0:
        return tr("Designation");
    case 1:
        return tr("Warning");
    default:
        break;
    }
    const Key& key = m_keys.at(k);
    return key.unit.isEmpty() ? key.name : QStringLiteral("%1 (%2)").arg(key.name, key.unit);
}

QVariant MeasuresModel::sortValue(const Row& row, int column) const {
    if (const ItemMeasure* m = measureAt(row, column))
        return m->value;
    const QString text = cellText(row, column, QChar());
    return text.isEmpty() ? QVariant() : QVariant(text);
}

int MeasuresModel::compareValues(const QVariant& a, const QVariant& b) const {
    // Rows without a value go last in either order.
    if (!a.isValid() || !b.isValid())
        return a.isValid() == b.isValid() ? 0 : a.isValid() ? -1 : 1;
    const int c = a.typeId() == QMetaType::Double ? (a.toDouble() < b.toDouble()   ? -1
                                                     : b.toDouble() < a.toDouble() ? 1
                                                                                   : 0)
                                                  : QString::localeAwareCompare(a.toString(), b.toString());
    return m_sortOrder == Qt::AscendingOrder ? c : -c;
}

void MeasuresModel::sort(int column, Qt::SortOrder order) {
    m_sortColumn = column >= 0 && column < columnCount() ? column : -1;
    m_sortOrder = order;
    resort();
}

void MeasuresModel::resort() {
    if (m_sortColumn < 0 || m_rows.size() < 2)
        return;
    QList<QVariant> values;
    for (const Row& row : std::as_const(m_rows))
        values.append(sortValue(row, m_sortColumn));
    QList<int> order(m_rows.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return compareValues(values.at(a), values.at(b)) < 0; });
    bool unchanged = true;
    for (int i = 0; i < order.size() && unchanged; ++i)
        unchanged = order.at(i) == i;
    if (unchanged)
        return;
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    QList<int> newRowOf(order.size());
    QList<Row> sorted;
    for (int i = 0; i < order.size(); ++i) {
        newRowOf[order.at(i)] = i;
        sorted.append(m_rows.at(order.at(i)));
    }
    m_rows = sorted;
    m_indexDirty = true;
    const QModelIndexList persistent = persistentIndexList();
    for (const QModelIndex& old : persistent)
        changePersistentIndex(old, index(newRowOf.at(old.row()), old.column()));
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QStringList MeasuresModel::csvHeader() const {
    QStringList header;
    for (int c = 0; c < columnCount(); ++c)
        header << headerData(c, Qt::Horizontal).toString();
    return header;
}

QString MeasuresModel::toCsv(QChar separator, QChar decimalMark) const {
    QString csv;
    QStringList fields;
    for (const QString& h : csvHeader())
        fields << csvField(h, separator);
    csv += fields.join(separator) + QStringLiteral("\r\n");
    for (const Row& row : m_rows) {
        if (row.gone)
            continue;
        fields.clear();
        for (int c = 0; c < columnCount(); ++c)
            fields << csvField(cellText(row, c, decimalMark), separator);
        csv += fields.join(separator) + QStringLiteral("\r\n");
    }
    return csv;
}

QByteArray MeasuresModel::toJson() const {
    QJsonArray items;
    for (const Row& row : m_rows) {
        if (row.gone)
            continue;
        QJsonArray measures;
        for (const ItemMeasure& m : row.measures)
            measures.append(QJsonObject{{QStringLiteral("name"), m.name},
                                        {QStringLiteral("value"), m.value},
                                        {QStringLiteral("unit"), m.unit}});
        QJsonObject item{{QStringLiteral("class"), row.className},
                         {QStringLiteral("displayedName"), row.displayedName},
                         {QStringLiteral("name"), row.name},
                         {QStringLiteral("measures"), measures}};
        if (!row.remarks.designation.isEmpty())
            item.insert(QStringLiteral("designation"), row.remarks.designation);
        if (!row.remarks.warning.isEmpty())
            item.insert(QStringLiteral("warning"), row.remarks.warning);
        items.append(item);
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("items"), items}}).toJson(QJsonDocument::Indented);
}

bool MeasuresModel::saveCsv(const QString& fileName, QChar separator, QChar decimalMark,
                            QString* error) const {
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(toCsv(separator, decimalMark).toUtf8()) < 0 ||
        !file.commit()) {
        if (error)
            *error = tr("%1: cannot write: %2").arg(fileName, file.errorString());
        return false;
    }
    return true;
}
