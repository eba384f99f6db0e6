#pragma once

#include <QString>
#include <QVector>

class QItemSelection;

namespace KZ {

class CRowStore;
class CTableModel;
class CTableView;

/// Where the user was in a table before its rows went: the framed row, the selected ones and those
/// in sight, by what they stand for, so that they are found again among rows that were built anew.
class CTablePlace
{
public:
    /// `selected` are the rows that are selected now.
    CTablePlace(const CTableView& view, const CTableModel& model, const CRowStore& store,
                const QVector<int>& selected);

    /// Brings selection and scroll position of the view to the place, as far as its rows exist.
    void restore(CTableView& view, const CTableModel& model, const CRowStore& store) const;

private:
    struct SRow
    {
        int row = -1;
        QString key;
    };
    struct SRowInSight
    {
        SRow row;
        /// Its upper edge in the viewport, in pixels.
        int top = 0;
    };

    SRow m_current;
    int m_column = 0;
    bool m_isCurrentSelected = false;
    QVector<SRow> m_selected;
    /// The framed row first, then from top to bottom; empty when no row in sight has a key.
    QVector<SRowInSight> m_inSight;
    int m_verticalScroll = 0;
    int m_horizontalScroll = 0;
};

/// The rows as few ranges as possible, because a selection of many ranges is slow. The view rows
/// need not be sorted.
QItemSelection rowRanges(const CTableModel& model, QVector<int> viewRows);

} // namespace KZ
