#include "kit/accessible/AccessibleTable.h"

#include "kit/accessible/AccessibleCell.h"
#include "kit/accessible/AccessibleTableHeader.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QItemSelectionModel>

#include <utility>

namespace KZ {

namespace {

/// Column headers stand above the first row.
constexpr int HEADER_ROW = -1;

quint64 keyOf(int row, int column)
{
    return (quint64(quint32(row)) << 32) | quint32(column);
}

} // namespace

CAccessibleTable::CAccessibleTable(CTableView* view) : QAccessibleWidget(view, QAccessible::Table)
{
}

CAccessibleTable::~CAccessibleTable()
{
    forgetParts();
}

CTableView* CAccessibleTable::view() const
{
    return static_cast<CTableView*>(widget());
}

CTableModel& CAccessibleTable::model() const
{
    return *static_cast<CTableModel*>(view()->model());
}

void CAccessibleTable::forgetParts()
{
    const auto parts = std::exchange(m_parts, {});
    for (const QAccessible::Id id : parts)
        QAccessible::deleteAccessibleInterface(id);
}

int CAccessibleTable::rowCount() const
{
    return model().rowCount();
}

int CAccessibleTable::columnCount() const
{
    return model().columnCount();
}

int CAccessibleTable::childCount() const
{
    return (rowCount() + 1) * stride();
}

QAccessibleInterface* CAccessibleTable::make(int index) const
{
    const int viewRow = index / stride() - 1;
    const int column = index % stride() - 1;
    if (viewRow == HEADER_ROW && column >= 0)
        return new CAccessibleTableHeader(view(), Qt::Horizontal, column);
    if (column < 0)
        return new CAccessibleTableHeader(view(), Qt::Vertical, viewRow);
    return new CAccessibleCell(view(), model().rowAt(viewRow), column);
}

QAccessibleInterface* CAccessibleTable::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const int viewRow = index / stride() - 1;
    const int column = index % stride() - 1;
    // A row's header tells its place, its cells belong to it wherever it goes.
    const int row = column < 0 ? viewRow : model().rowAt(viewRow);
    const quint64 key = keyOf(row, column);
    const auto found = m_parts.constFind(key);
    if (found != m_parts.cend())
        return QAccessible::accessibleInterface(*found);
    QAccessibleInterface* const part = make(index);
    m_parts.insert(key, QAccessible::registerAccessibleInterface(part));
    return part;
}

int CAccessibleTable::indexOfChild(const QAccessibleInterface* child) const
{
    if (!child || child->parent() != this)
        return -1;
    if (auto* const cell = const_cast<QAccessibleInterface*>(child)->tableCellInterface())
        return (cell->rowIndex() + 1) * stride() + cell->columnIndex() + 1;
    for (auto part = m_parts.cbegin(); part != m_parts.cend(); ++part) {
        if (QAccessible::accessibleInterface(*part) == child)
            return (int(quint32(part.key() >> 32)) + 1) * stride() + int(quint32(part.key())) + 1;
    }
    return -1;
}

QAccessibleInterface* CAccessibleTable::childAt(int x, int y) const
{
    const QModelIndex at = view()->indexAt(view()->viewport()->mapFromGlobal(QPoint(x, y)));
    return at.isValid() ? cellAt(at.row(), at.column()) : nullptr;
}

QAccessibleInterface* CAccessibleTable::focusChild() const
{
    const QModelIndex current = view()->currentIndex();
    if (view()->hasFocus())
        return current.isValid() ? cellAt(current.row(), current.column()) : nullptr;
    return QAccessibleWidget::focusChild();
}

QAccessible::State CAccessibleTable::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.multiSelectable = true;
    return state;
}

void* CAccessibleTable::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QAccessibleInterface* CAccessibleTable::cellAt(int row, int column) const
{
    const bool exists = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
    return exists ? child((row + 1) * stride() + column + 1) : nullptr;
}

QString CAccessibleTable::columnDescription(int column) const
{
    return model().headerText(column);
}

QList<int> CAccessibleTable::selectedRows() const
{
    QList<int> rows;
    const QModelIndexList selected = view()->selectionModel()->selectedRows();
    for (const QModelIndex& index : selected)
        rows.append(index.row());
    return rows;
}

QList<int> CAccessibleTable::selectedColumns() const
{
    QList<int> columns;
    const QModelIndexList selected = view()->selectionModel()->selectedColumns();
    for (const QModelIndex& index : selected)
        columns.append(index.column());
    return columns;
}

int CAccessibleTable::selectedCellCount() const
{
    return int(view()->selectionModel()->selectedIndexes().size());
}

QList<QAccessibleInterface*> CAccessibleTable::selectedCells() const
{
    QList<QAccessibleInterface*> cells;
    const QModelIndexList selected = view()->selectionModel()->selectedIndexes();
    for (const QModelIndex& index : selected)
        cells.append(cellAt(index.row(), index.column()));
    return cells;
}

bool CAccessibleTable::isColumnSelected(int column) const
{
    return view()->selectionModel()->isColumnSelected(column);
}

bool CAccessibleTable::isRowSelected(int row) const
{
    return view()->selectionModel()->isRowSelected(row);
}

bool CAccessibleTable::changeSelection(int row, bool selected)
{
    const QModelIndex index = model().index(row, 0);
    if (!index.isValid() || !view()->isEnabled())
        return false;
    view()->selectionModel()->select(
        index, (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) |
                   QItemSelectionModel::Rows);
    return true;
}

bool CAccessibleTable::selectRow(int row)
{
    return changeSelection(row, true);
}

bool CAccessibleTable::unselectRow(int row)
{
    return changeSelection(row, false);
}

void CAccessibleTable::modelChange(QAccessibleTableModelChangeEvent* event)
{
    if (event->modelChangeType() != QAccessibleTableModelChangeEvent::DataChanged)
        forgetParts();
}

} // namespace KZ
