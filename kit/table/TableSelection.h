#pragma once

#include <QObject>
#include <QVector>

#include <functional>

class QItemSelectionModel;

namespace KZ {

class CTableModel;
class CTableView;

/// Which rows are selected, by row identifier, and where the user was before the rows were rebuilt
/// or filtered. Tells who has to know when the user, and not the program, chooses another row.
class CTableSelection : public QObject
{
    Q_OBJECT

public:
    CTableSelection(CTableView* view, CTableModel& model);

    void setChosenHandler(std::function<void(int row)> handler) { m_chosen = std::move(handler); }

    /// Row of the current cell if it is selected, else the first selected one, -1 without one.
    int row() const;
    /// From top to bottom.
    QVector<int> rows() const;
    /// Selects one row, or nothing when the row is not shown.
    void select(int row);

    /// Remembers scroll position and current row until the next returnToPlace() that finds rows.
    void rememberPlace();
    void returnToPlace();

    /// Brackets what the user does by mouse or key; the choice is told at its end.
    void userActionBegun() { ++m_userActions; }
    void userActionEnded();
    /// Brackets what the program does: nothing is told.
    void programActionBegun() { ++m_programActions; }
    void programActionEnded();

    /// Runs `reset`, which resets the model, and brings back what of the selection is left.
    void keepOver(const std::function<void()>& reset);

private:
    struct SPlace
    {
        bool isValid = false;
        int verticalScroll = 0;
        int horizontalScroll = 0;
        int row = -1;
        int column = 0;
        bool isSelected = false;
    };

    QItemSelectionModel* selection() const;
    void changed();

    CTableView* const m_view;
    CTableModel& m_model;
    std::function<void(int)> m_chosen;
    SPlace m_place;
    int m_chosenRow = -1;
    int m_userActions = 0;
    int m_programActions = 0;
    bool m_isChanged = false;
};

} // namespace KZ
