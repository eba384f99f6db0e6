#include "kit/table/TableSelection.h"

#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QItemSelectionModel>
#include <QScrollBar>

#include <algorithm>
#include <iterator>

namespace KZ {

CTableSelection::CTableSelection(CTableView* view, CTableModel& model, const CRowStore& store)
    : QObject(view), m_view(view), m_model(model), m_store(store)
{
    connect(selection(), &QItemSelectionModel::selectionChanged, this, &CTableSelection::changed);
    connect(selection(), &QItemSelectionModel::currentRowChanged, this, &CTableSelection::changed);
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, &CTableSelection::scrolled);
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this,
            &CTableSelection::scrolled);
}

QItemSelectionModel* CTableSelection::selection() const
{
    return m_view->selectionModel();
}

int CTableSelection::row() const
{
    const QModelIndex current = m_view->currentIndex();
    if (selection()->isSelected(current))
        return m_model.rowAt(current.row());
    const QItemSelection ranges = selection()->selection();
    return ranges.isEmpty() ? -1 : m_model.rowAt(ranges.first().top());
}

QVector<int> CTableSelection::rows() const
{
    QVector<int> rows;
    const QItemSelection ranges = selection()->selection();
    for (const QItemSelectionRange& range : ranges) {
        for (int viewRow = range.top(); viewRow <= range.bottom(); ++viewRow)
            rows.append(viewRow);
    }
    std::sort(rows.begin(), rows.end());
    rows.resize(std::distance(rows.begin(), std::unique(rows.begin(), rows.end())));
    std::transform(rows.begin(), rows.end(), rows.begin(),
                   [this](int viewRow) { return m_model.rowAt(viewRow); });
    return rows;
}

void CTableSelection::select(int row)
{
    programActionBegun();
    m_place.reset();
    const int viewRow = m_model.viewRowOf(row);
    const int column = std::max(m_view->currentIndex().column(), 0);
    if (viewRow < 0)
        m_view->clearSelection();
    else
        selection()->setCurrentIndex(m_model.index(viewRow, column),
                                     QItemSelectionModel::ClearAndSelect |
                                         QItemSelectionModel::Rows);
    programActionEnded();
}

void CTableSelection::rememberPlace()
{
    // Cleared again before the user had a look: his place is still the remembered one.
    if (!m_place)
        m_place.emplace(*m_view, m_model, m_store, rows());
}

void CTableSelection::returnToPlace()
{
    if (m_place)
        m_place->restore(*m_view, m_model, m_store);
}

void CTableSelection::settle()
{
    if (m_store.rowCount() > 0)
        m_place.reset();
}

void CTableSelection::scrolled()
{
    // An empty view scrolls to its top by itself.
    if (m_programActions == 0 && m_model.rowCount() > 0)
        m_place.reset();
}

void CTableSelection::keepOver(const std::function<void()>& reset)
{
    const QVector<int> before = rows();
    const int currentRow = m_model.rowAt(m_view->currentIndex().row());
    const int column = m_view->currentIndex().column();
    programActionBegun();
    reset();
    QVector<int> shown;
    for (const int row : before) {
        if (const int viewRow = m_model.viewRowOf(row); viewRow >= 0)
            shown.append(viewRow);
    }
    const QModelIndex current = m_model.index(m_model.viewRowOf(currentRow), column);
    if (current.isValid())
        selection()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selection()->select(rowRanges(m_model, shown), QItemSelectionModel::ClearAndSelect);
    programActionEnded();
}

void CTableSelection::programActionEnded()
{
    --m_programActions;
    m_chosenRow = row();
}

void CTableSelection::changed()
{
    if (m_programActions > 0)
        return;
    m_isChanged = true;
    m_place.reset();
    if (m_userActions > 0)
        return;
    // Neither program nor mouse or key: an assistive tool acts for the user.
    userActionBegun();
    userActionEnded();
}

void CTableSelection::userActionEnded()
{
    --m_userActions;
    if (m_userActions > 0 || !m_isChanged)
        return;
    m_isChanged = false;
    const int chosen = row();
    if (chosen == m_chosenRow)
        return;
    m_chosenRow = chosen;
    const auto handler = m_chosen;
    if (chosen >= 0 && handler)
        handler(chosen);
}

} // namespace KZ
