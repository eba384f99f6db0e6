#include "kit/table/TableSelection.h"

#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QItemSelectionModel>
#include <QScrollBar>

#include <algorithm>
#include <iterator>

namespace KZ {

CTableSelection::CTableSelection(CTableView* view, CTableModel& model)
    : QObject(view), m_view(view), m_model(model)
{
    connect(selection(), &QItemSelectionModel::selectionChanged, this, &CTableSelection::changed);
    connect(selection(), &QItemSelectionModel::currentRowChanged, this, &CTableSelection::changed);
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
    // Cleared again before any row was shown: the user's place is still the remembered one.
    if (m_place.isValid && m_model.rowCount() == 0)
        return;
    const QModelIndex current = m_view->currentIndex();
    m_place.isValid = true;
    m_place.verticalScroll = m_view->verticalScrollBar()->value();
    m_place.horizontalScroll = m_view->horizontalScrollBar()->value();
    m_place.row = m_model.rowAt(current.row());
    m_place.column = current.column();
    m_place.isSelected = selection()->isSelected(current);
}

void CTableSelection::returnToPlace()
{
    if (!m_place.isValid || m_model.rowCount() == 0)
        return;
    m_place.isValid = false;
    const QModelIndex current = m_model.index(m_model.viewRowOf(m_place.row), m_place.column);
    m_view->setAutoScroll(false);
    if (current.isValid()) {
        selection()->setCurrentIndex(current, m_place.isSelected
                                                  ? QItemSelectionModel::ClearAndSelect |
                                                        QItemSelectionModel::Rows
                                                  : QItemSelectionModel::NoUpdate);
    }
    m_view->layoutNow();
    m_view->verticalScrollBar()->setValue(m_place.verticalScroll);
    m_view->horizontalScrollBar()->setValue(m_place.horizontalScroll);
    m_view->setAutoScroll(true);
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
    std::sort(shown.begin(), shown.end());
    // Neighbours go into one range, because a selection of many ranges is slow.
    QItemSelection ranges;
    const int lastColumn = m_model.columnCount() - 1;
    for (qsizetype i = 0; i < shown.size();) {
        qsizetype end = i + 1;
        while (end < shown.size() && shown[end] == shown[end - 1] + 1)
            ++end;
        ranges.append(QItemSelectionRange(m_model.index(shown[i], 0),
                                          m_model.index(shown[end - 1], lastColumn)));
        i = end;
    }
    const QModelIndex current = m_model.index(m_model.viewRowOf(currentRow), column);
    if (current.isValid())
        selection()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
    selection()->select(ranges, QItemSelectionModel::ClearAndSelect);
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
    if (chosen >= 0 && m_chosen)
        m_chosen(chosen);
}

} // namespace KZ
