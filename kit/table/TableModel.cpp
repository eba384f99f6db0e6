#include "kit/table/TableModel.h"

#include "kit/resources/UiResource.h"
#include "kit/table/DisplayText.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/table/RowSorter.h"
#include "kit/table/RowStore.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>
#include <utility>

namespace KZ {

namespace {

constexpr qsizetype DISPLAYED_LENGTH = 512;

} // namespace

CTableModel::CTableModel(CRowStore& store, QObject* parent)
    : QAbstractTableModel(parent), m_store(store)
{
}

void CTableModel::setHandlers(TextHandler textEdited, TickHandler tickToggled)
{
    m_textEdited = std::move(textEdited);
    m_tickToggled = std::move(tickToggled);
}

void CTableModel::setColumns(int count)
{
    beginResetModel();
    m_store.setColumnCount(count);
    m_headers.resize(m_store.columnCount());
    m_centeredHeaders.resize(size_t(m_store.columnCount()));
    m_editable.resize(size_t(m_store.columnCount()));
    if (m_sortColumn >= m_store.columnCount()) {
        m_sortColumn = -1;
        m_published = m_store.rowCount();
        setOrder(acceptedRows(0));
    }
    forgetChanges();
    endResetModel();
}

void CTableModel::setColumnEditable(int column, bool editable)
{
    if (column >= 0 && column < columnCount())
        m_editable[size_t(column)] = editable;
}

bool CTableModel::isEditable() const
{
    return std::find(m_editable.cbegin(), m_editable.cend(), true) != m_editable.cend();
}

void CTableModel::setInnerEnabled(bool enabled)
{
    m_innerEnabled = enabled;
}

void CTableModel::setHeaderText(int column, const QString& text)
{
    if (column < 0 || column >= columnCount() || m_headers[column] == text)
        return;
    m_headers[column] = text;
    Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

void CTableModel::setHeaderCentered(int column, bool centered)
{
    if (column < 0 || column >= columnCount())
        return;
    m_centeredHeaders[size_t(column)] = centered;
    Q_EMIT headerDataChanged(Qt::Horizontal, column, column);
}

void CTableModel::clearRows()
{
    beginResetModel();
    m_store.clear();
    m_published = 0;
    setOrder({});
    forgetChanges();
    endResetModel();
}

bool CTableModel::hasUnpublishedRows() const
{
    return m_published < m_store.rowCount();
}

void CTableModel::publish()
{
    if (!hasUnpublishedRows())
        return;
    const int first = m_published;
    if (!isPermuted()) {
        beginInsertRows(QModelIndex(), first, m_store.rowCount() - 1);
        m_published = m_store.rowCount();
        endInsertRows();
        return;
    }
    std::vector<int> added = acceptedRows(first);
    const bool isFirst = m_order.empty();
    if (isFirst && m_sortColumn >= 0)
        sortRows(m_store, m_sortColumn, m_sortOrder, added);
    const int shown = int(m_order.size());
    if (!added.empty())
        beginInsertRows(QModelIndex(), shown, shown + int(added.size()) - 1);
    std::vector<int> rows = m_order;
    rows.insert(rows.end(), added.cbegin(), added.cend());
    m_published = m_store.rowCount();
    setOrder(std::move(rows));
    if (added.empty())
        return;
    endInsertRows();
    if (!isFirst && m_sortColumn >= 0)
        sort(m_sortColumn, m_sortOrder);
}

int CTableModel::rowAt(int viewRow) const
{
    if (viewRow < 0 || viewRow >= rowCount())
        return -1;
    return isPermuted() ? m_order[size_t(viewRow)] : viewRow;
}

int CTableModel::viewRowOf(int row) const
{
    if (row < 0 || row >= m_published)
        return -1;
    return isPermuted() ? m_viewRows[size_t(row)] : row;
}

void CTableModel::setOrder(std::vector<int> rows)
{
    m_order.clear();
    m_viewRows.clear();
    if (!isPermuted()) {
        m_order.shrink_to_fit();
        m_viewRows.shrink_to_fit();
        return;
    }
    m_order = std::move(rows);
    m_viewRows.assign(size_t(m_published), -1);
    for (int viewRow = 0; viewRow < int(m_order.size()); ++viewRow)
        m_viewRows[size_t(m_order[size_t(viewRow)])] = viewRow;
}

bool CTableModel::isAccepted(int row) const
{
    return std::all_of(m_words.cbegin(), m_words.cend(),
                       [this, row](const QString& word) {
                           for (int column = 0; column < m_store.columnCount(); ++column) {
                               if (m_store.text(row, column).contains(word, Qt::CaseInsensitive))
                                   return true;
                           }
                           return false;
                       }) ||
           m_store.isRowTicked(row);
}

std::vector<int> CTableModel::acceptedRows(int first) const
{
    std::vector<int> rows;
    for (int row = first; row < m_store.rowCount(); ++row) {
        if (!isFiltered() || isAccepted(row))
            rows.push_back(row);
    }
    return rows;
}

void CTableModel::setFilter(const QString& text)
{
    static const QRegularExpression blanks(QStringLiteral("\\s+"));
    beginResetModel();
    m_words = text.split(blanks, Qt::SkipEmptyParts);
    m_published = m_store.rowCount();
    std::vector<int> rows;
    if (isPermuted())
        rows = acceptedRows(0);
    if (m_sortColumn >= 0)
        sortRows(m_store, m_sortColumn, m_sortOrder, rows);
    setOrder(std::move(rows));
    forgetChanges();
    endResetModel();
}

void CTableModel::sort(int column, Qt::SortOrder order)
{
    flushChanges();
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> identifiers;
    identifiers.reserve(size_t(before.size()));
    for (const QModelIndex& index : before)
        identifiers.push_back(rowAt(index.row()));

    std::vector<int> rows;
    if (isPermuted()) {
        rows = m_order;
        std::sort(rows.begin(), rows.end());
    } else {
        rows.resize(size_t(m_published));
        std::iota(rows.begin(), rows.end(), 0);
    }
    m_sortColumn = column >= 0 && column < columnCount() ? column : -1;
    m_sortOrder = order;
    if (m_sortColumn >= 0)
        sortRows(m_store, m_sortColumn, m_sortOrder, rows);
    setOrder(std::move(rows));

    QModelIndexList after;
    after.reserve(before.size());
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(viewRowOf(identifiers[size_t(i)]), before[i].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void CTableModel::cellChanged(int row, int column)
{
    const int viewRow = viewRowOf(row);
    if (viewRow < 0)
        return;
    const bool isFirst = m_lastChangedRow < 0;
    m_firstChangedRow = std::min(m_firstChangedRow, viewRow);
    m_lastChangedRow = std::max(m_lastChangedRow, viewRow);
    m_firstChangedColumn = isFirst ? column : std::min(m_firstChangedColumn, column);
    m_lastChangedColumn = isFirst ? column : std::max(m_lastChangedColumn, column);
}

void CTableModel::flushChanges()
{
    if (m_lastChangedRow < 0)
        return;
    const QModelIndex first = index(m_firstChangedRow, m_firstChangedColumn);
    const QModelIndex last = index(m_lastChangedRow, m_lastChangedColumn);
    forgetChanges();
    Q_EMIT dataChanged(first, last);
}

void CTableModel::forgetChanges()
{
    m_firstChangedRow = std::numeric_limits<int>::max();
    m_lastChangedRow = -1;
}

int CTableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return isPermuted() ? int(m_order.size()) : m_published;
}

int CTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_store.columnCount();
}

QString CTableModel::accessibleText(int row, int column) const
{
    const CRowStore::STick* const tick = m_store.tick(row, column);
    if (!tick) {
        const QString text = safeText(m_store.text(row, column), DISPLAYED_LENGTH);
        const QString mark = safeText(m_store.toolTip(row, column), DISPLAYED_LENGTH);
        return text.isEmpty() || mark.isEmpty() ? QString(text + mark)
                                                : QString(text + u'，' + mark);
    }
    const QString state = tick->checked ? tr("已勾选") : tr("未勾选");
    return tick->enabled ? state : QString(state + tr("，已锁定"));
}

QVariant CTableModel::data(const QModelIndex& index, int role) const
{
    const int row = index.isValid() ? rowAt(index.row()) : -1;
    const int column = index.column();
    if (!m_store.contains(row, column))
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return safeText(m_store.text(row, column), DISPLAYED_LENGTH);
    case Qt::EditRole:
        return m_store.text(row, column);
    case Qt::ToolTipRole: {
        const QString text = m_store.toolTip(row, column);
        return text.isEmpty() ? QVariant() : QVariant(toolTipText(text));
    }
    case Qt::DecorationRole: {
        const QString key = m_store.iconKey(row, column);
        return key.isEmpty() ? QVariant() : QVariant(CUiResource::getIcon(key));
    }
    case Qt::ForegroundRole: {
        const QString key = m_store.colorKey(row, column);
        return key.isEmpty() ? QVariant() : QVariant(CUiResource::getColor(key));
    }
    case Qt::CheckStateRole: {
        const CRowStore::STick* const tick = m_store.tick(row, column);
        return tick ? QVariant(int(tick->checked ? Qt::Checked : Qt::Unchecked)) : QVariant();
    }
    case Qt::TextAlignmentRole:
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::AccessibleTextRole:
        return accessibleText(row, column);
    case COddEvenRowTable::ROW_IDENTIFIER_ROLE:
        return row;
    default:
        return QVariant();
    }
}

bool CTableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const int row = index.isValid() ? rowAt(index.row()) : -1;
    const Qt::ItemFlags can = flags(index);
    // Copies, because the handlers may bring about the end of this model.
    if (role == Qt::EditRole && can.testFlag(Qt::ItemIsEditable)) {
        const TextHandler handler = m_textEdited;
        return handler && handler(row, index.column(), value.toString());
    }
    const TickHandler handler = m_tickToggled;
    if (role != Qt::CheckStateRole || !can.testFlag(Qt::ItemIsUserCheckable) || !handler)
        return false;
    handler(row, index.column(), value.toInt() == Qt::Checked);
    return true;
}

QVariant CTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return safeText(m_headers[section], DISPLAYED_LENGTH);
    case Qt::TextAlignmentRole:
        return int((m_centeredHeaders[size_t(section)] ? Qt::AlignHCenter : Qt::AlignLeft) |
                   Qt::AlignVCenter);
    default:
        return QVariant();
    }
}

Qt::ItemFlags CTableModel::flags(const QModelIndex& index) const
{
    const int row = index.isValid() ? rowAt(index.row()) : -1;
    if (!m_store.contains(row, index.column()))
        return Qt::NoItemFlags;
    if (!m_innerEnabled)
        return Qt::ItemNeverHasChildren;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    const CRowStore::STick* const tick = m_store.tick(row, index.column());
    if (tick && tick->enabled)
        flags |= Qt::ItemIsUserCheckable;
    if (!tick && m_editable[size_t(index.column())])
        flags |= Qt::ItemIsEditable;
    return flags;
}

} // namespace KZ
