#include "kit/accessible/AccessibleCellControl.h"

#include "kit/table/CellControls.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"
#include "kit/table/TableViewClient.h"

namespace KZ {

CAccessibleCellControl::CAccessibleCellControl(CTableView* view, int row, int column)
    : CAccessibleTablePart(view), m_row(row), m_column(column)
{
}

CCellControls& CAccessibleCellControl::controls() const
{
    return view()->client().cellControls();
}

QModelIndex CAccessibleCellControl::index() const
{
    return model().index(model().viewRowOf(m_row), m_column);
}

bool CAccessibleCellControl::isTick() const
{
    return controls().kind(m_row, m_column) == CCellControls::Kind::Tick;
}

bool CAccessibleCellControl::isValid() const
{
    return CAccessibleTablePart::isValid() && index().isValid() &&
           controls().kind(m_row, m_column) != CCellControls::Kind::None;
}

QAccessibleInterface* CAccessibleCellControl::parent() const
{
    const QAccessibleInterface* const table = CAccessibleTablePart::parent();
    return const_cast<QAccessibleInterface*>(table)->tableInterface()->cellAt(
        model().viewRowOf(m_row), m_column);
}

QString CAccessibleCellControl::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? controls().name(m_row, m_column) : QString();
}

QRect CAccessibleCellControl::rect() const
{
    return onScreen(view()->visualRect(index()));
}

QAccessible::Role CAccessibleCellControl::role() const
{
    return isTick() ? QAccessible::CheckBox : QAccessible::Button;
}

QAccessible::State CAccessibleCellControl::state() const
{
    QAccessible::State state = stateAt(view()->visualRect(index()));
    state.disabled = !controls().isUsable(m_row, m_column);
    state.checkable = isTick();
    state.checked = controls().isChecked(m_row, m_column);
    return state;
}

void* CAccessibleCellControl::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                : nullptr;
}

QString CAccessibleCellControl::ownAction() const
{
    return isTick() ? toggleAction() : pressAction();
}

QStringList CAccessibleCellControl::actionNames() const
{
    return controls().isUsable(m_row, m_column) ? QStringList(ownAction()) : QStringList();
}

void CAccessibleCellControl::doAction(const QString& action)
{
    if (action == ownAction())
        controls().use(m_row, m_column);
}

} // namespace KZ
