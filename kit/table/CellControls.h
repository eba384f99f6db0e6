#pragma once

#include <QString>

class QAbstractButton;
class QTableView;

namespace KZ {

class CCellWidgetLayer;
class CRowStore;
class CTableModel;

/// What the cells of a table hold for the user to press or tick, told and worked without making a
/// cell's widget and without the focus: the way of assistive tools to what the mouse reaches.
class CCellControls
{
public:
    enum class Kind { None, Tick, Button };

    CCellControls(QTableView* view, const CRowStore& store, CTableModel& model,
                  CCellWidgetLayer& layer);

    Kind kind(int row, int column) const;
    /// What the control does and to which row; empty without one.
    QString name(int row, int column) const;
    /// Whether a click would do something now: the control is enabled and nothing lies over it.
    bool isUsable(int row, int column) const;
    bool isChecked(int row, int column) const;
    /// Does what a click does; nothing while the control is not usable.
    void use(int row, int column);

private:
    QString columnName(int row, int column) const;
    /// The button in the cell's widget if that exists: null when it has none that is shown.
    QAbstractButton* existingButton(int row, int column) const;
    bool isReachable(int row) const;

    QTableView* const m_view;
    const CRowStore& m_store;
    CTableModel& m_model;
    CCellWidgetLayer& m_layer;
};

} // namespace KZ
