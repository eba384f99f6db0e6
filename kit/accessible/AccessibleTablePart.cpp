#include "kit/accessible/AccessibleTablePart.h"

#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QWindow>

namespace KZ {

CAccessibleTablePart::CAccessibleTablePart(CTableView* view) : m_view(view) {}

CAccessibleTablePart::~CAccessibleTablePart() = default;

QWindow* CAccessibleTablePart::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface* CAccessibleTablePart::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view);
}

CTableModel& CAccessibleTablePart::model() const
{
    return *static_cast<CTableModel*>(m_view->model());
}

QRect CAccessibleTablePart::onScreen(const QRect& inViewport) const
{
    return inViewport.translated(m_view->viewport()->mapToGlobal(QPoint()));
}

QAccessible::State CAccessibleTablePart::stateAt(const QRect& inViewport) const
{
    QAccessible::State state;
    const QWidget* const viewport = m_view->viewport();
    state.disabled = !viewport->isEnabled();
    state.invisible = !viewport->isVisible();
    state.offscreen = !viewport->rect().intersects(inViewport);
    // The bus shows what is merely off the screen as if it could be seen.
    if (state.offscreen)
        state.invisible = true;
    return state;
}

} // namespace KZ
