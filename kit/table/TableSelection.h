#pragma once

#include "kit/table/TablePlace.h"

#include <QObject>
#include <QVector>

#include <functional>
#include <optional>

class QItemSelectionModel;

namespace KZ {

class CRowStore;
class CTableModel;
class CTableView;

/// Which rows are selected, by row identifier, and where the user was before the rows were rebuilt
/// or filtered. Tells who has to know when the user, and not the program, chooses another row.
class CTableSelection : public QObject
{
    Q_OBJECT

public:
    CTableSelection(CTableView* view, CTableModel& model, const CRowStore& store);

    void setChosenHandler(std::function<void(int row)> handler) { m_chosen = std::move(handler); }

    /// Row of the current cell if it is selected, else the first selected one, -1 without one.
    int row() const;
    /// From top to bottom.
    QVector<int> rows() const;
    /// Selects one row, or nothing when the row is not shown.
    void select(int row);

    /// Remembers where the user is, for the rows that will come.
    void rememberPlace();
    /// Brings the user back there. Rows that come in portions may do so several times, until
    /// settle(), which ends it when there are rows, or until somebody selects or scrolls.
    void returnToPlace();
    void settle();

    /// Brackets what the user does by mouse or key; the choice is told at its end.
    void userActionBegun() { ++m_userActions; }
    void userActionEnded();
    /// Brackets what the program does: nothing is told.
    void programActionBegun() { ++m_programActions; }
    void programActionEnded();

    /// Runs `reset`, which resets the model, and brings back what of the selection is left.
    void keepOver(const std::function<void()>& reset);

private:
    QItemSelectionModel* selection() const;
    void changed();
    void scrolled();

    CTableView* const m_view;
    CTableModel& m_model;
    const CRowStore& m_store;
    std::function<void(int)> m_chosen;
    std::optional<CTablePlace> m_place;
    int m_chosenRow = -1;
    int m_userActions = 0;
    int m_programActions = 0;
    bool m_isChanged = false;
};

} // namespace KZ
