#include "kit/accessible/AccessibleCell.h"

#include "kit/accessible/AccessibleCellControl.h"
#include "kit/table/CellControls.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"
#include "kit/table/TableViewClient.h"

#include <QItemSelectionModel>

namespace KZ {

CAccessibleCell::CAccessibleCell(CTableView* view, int row, int column)
    : CAccessibleTablePart(view), m_row(row), m_column(column)
{
}

CAccessibleCell::~CAccessibleCell()
{
    if (m_control != 0)
        QAccessible::deleteAccessibleInterface(m_control);
}

QModelIndex CAccessibleCell::index() const
{
    return model().index(model().viewRowOf(m_row), m_column);
}

bool CAccessibleCell::isValid() const
{
    return CAccessibleTablePart::isValid() && index().isValid();
}

QAccessibleInterface* CAccessibleCell::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    if (m_control == 0) {
        m_control = QAccessible::registerAccessibleInterface(
            new CAccessibleCellControl(view(), m_row, m_column));
    }
    return QAccessible::accessibleInterface(m_control);
}

int CAccessibleCell::childCount() const
{
    const CCellControls& controls = view()->client().cellControls();
    return controls.kind(m_row, m_column) == CCellControls::Kind::None ? 0 : 1;
}

int CAccessibleCell::indexOfChild(const QAccessibleInterface* child) const
{
    return child && m_control != 0 && child == QAccessible::accessibleInterface(m_control) ? 0 : -1;
}

QAccessibleInterface* CAccessibleCell::childAt(int x, int y) const
{
    return rect().contains(x, y) ? child(0) : nullptr;
}

QString CAccessibleCell::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name)
        return {};
    const QString text = index().data(Qt::AccessibleTextRole).toString();
    if (!text.isEmpty())
        return text;
    // Without a word the user could not tell an empty cell from one that was not read.
    return childCount() > 0 ? model().headerText(m_column) : QStringLiteral("空");
}

void CAccessibleCell::setText(QAccessible::Text kind, const QString& text)
{
    if (kind == QAccessible::Value && !stateAt(QRect()).disabled)
        model().setData(index(), text, Qt::EditRole);
}

QRect CAccessibleCell::rect() const
{
    return onScreen(view()->visualRect(index()));
}

QAccessible::State CAccessibleCell::state() const
{
    const QModelIndex cell = index();
    QAccessible::State state = stateAt(view()->visualRect(cell));
    state.focusable = true;
    state.selectable = true;
    state.selected = isSelected();
    state.focused = view()->hasFocus() && view()->currentIndex() == cell;
    state.editable = cell.flags().testFlag(Qt::ItemIsEditable);
    return state;
}

void* CAccessibleCell::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableCellInterface)
        return static_cast<QAccessibleTableCellInterface*>(this);
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface*>(this);
    return nullptr;
}

bool CAccessibleCell::isSelected() const
{
    return view()->selectionModel()->isSelected(index());
}

QList<QAccessibleInterface*> CAccessibleCell::columnHeaderCells() const
{
    // The corner comes before the headers.
    return {parent()->child(m_column + 1)};
}

int CAccessibleCell::rowIndex() const
{
    return model().viewRowOf(m_row);
}

QStringList CAccessibleCell::actionNames() const
{
    return {setFocusAction()};
}

void CAccessibleCell::doAction(const QString& action)
{
    if (action != setFocusAction() || !view()->isEnabled())
        return;
    view()->setFocus(Qt::OtherFocusReason);
    view()->setCurrentIndex(index());
}

} // namespace KZ
