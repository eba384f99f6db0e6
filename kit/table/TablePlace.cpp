#include "kit/table/TablePlace.h"

#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QHash>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>

#include <algorithm>

namespace KZ {

namespace {

/// Finds the row that stands for what a row of earlier stood for.
class CRowFinder
{
public:
    CRowFinder(const CRowStore& store, const CTableModel& model) : m_store(store), m_model(model) {}

    /// View row, -1 when there is none.
    int viewRowOf(int row, const QString& key)
    {
        // Most reloads bring the same rows in the same order, and rows without keys have no other.
        if (m_store.rowKey(row) == key)
            return m_model.viewRowOf(row);
        if (key.isEmpty())
            return -1;
        if (m_rows.isEmpty()) {
            m_rows.reserve(m_store.rowCount());
            for (int each = m_store.rowCount() - 1; each >= 0; --each)
                m_rows.insert(m_store.rowKey(each), each);
        }
        return m_model.viewRowOf(m_rows.value(key, -1));
    }

private:
    const CRowStore& m_store;
    const CTableModel& m_model;
    QHash<QString, int> m_rows;
};

} // namespace

CTablePlace::CTablePlace(const CTableView& view, const CTableModel& model, const CRowStore& store,
                         const QVector<int>& selected)
    : m_verticalScroll(view.verticalScrollBar()->value()),
      m_horizontalScroll(view.horizontalScrollBar()->value())
{
    const QModelIndex current = view.currentIndex();
    m_current = {model.rowAt(current.row()), store.rowKey(model.rowAt(current.row()))};
    m_column = current.column();
    m_isCurrentSelected = view.selectionModel()->isSelected(current);
    for (const int row : selected) {
        if (const QString& key = store.rowKey(row); !key.isEmpty())
            m_selected.append({row, key});
    }
    const int height = view.viewport()->height();
    for (int viewRow = view.rowAt(0); viewRow >= 0 && viewRow < model.rowCount(); ++viewRow) {
        const int top = view.rowViewportPosition(viewRow);
        if (top >= height)
            break;
        const int row = model.rowAt(viewRow);
        const QString& key = store.rowKey(row);
        if (key.isEmpty())
            continue;
        const SRowInSight seen{{row, key}, top};
        if (row == m_current.row)
            m_inSight.prepend(seen);
        else
            m_inSight.append(seen);
    }
}

void CTablePlace::restore(CTableView& view, const CTableModel& model, const CRowStore& store) const
{
    CRowFinder finder(store, model);
    const int viewRow = m_current.row < 0 ? -1 : finder.viewRowOf(m_current.row, m_current.key);
    view.setAutoScroll(false);
    if (m_current.row >= 0 && viewRow < 0) {
        // The keys of the user must not meet another row than the one that he was in.
        view.selectionModel()->clear();
    } else {
        QVector<int> selected;
        for (const SRow& each : m_selected)
            selected.append(finder.viewRowOf(each.row, each.key));
        if (m_isCurrentSelected && m_current.key.isEmpty())
            selected.append(viewRow);
        selected.removeIf([](int each) { return each < 0; });
        view.selectionModel()->select(rowRanges(model, selected),
                                      QItemSelectionModel::ClearAndSelect);
        if (viewRow >= 0)
            view.selectionModel()->setCurrentIndex(model.index(viewRow, m_column),
                                                   QItemSelectionModel::NoUpdate);
    }
    view.layoutNow();
    int scroll = m_verticalScroll;
    for (const SRowInSight& seen : m_inSight) {
        const int found = finder.viewRowOf(seen.row.row, seen.row.key);
        if (found < 0)
            continue;
        scroll = view.verticalHeader()->sectionPosition(found) - seen.top;
        break;
    }
    view.verticalScrollBar()->setValue(scroll);
    view.horizontalScrollBar()->setValue(m_horizontalScroll);
    view.setAutoScroll(true);
}

QItemSelection rowRanges(const CTableModel& model, QVector<int> viewRows)
{
    std::sort(viewRows.begin(), viewRows.end());
    QItemSelection ranges;
    const int lastColumn = model.columnCount() - 1;
    for (qsizetype i = 0; i < viewRows.size();) {
        qsizetype end = i + 1;
        while (end < viewRows.size() && viewRows[end] <= viewRows[end - 1] + 1)
            ++end;
        ranges.append(QItemSelectionRange(model.index(viewRows[i], 0),
                                          model.index(viewRows[end - 1], lastColumn)));
        i = end;
    }
    return ranges;
}

} // namespace KZ
