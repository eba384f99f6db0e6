#include "kit/accessible/AccessibleTableHeader.h"

#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QHeaderView>

namespace KZ {

CAccessibleTableHeader::CAccessibleTableHeader(CTableView* view, Qt::Orientation orientation,
                                               int section)
    : CAccessibleTablePart(view), m_orientation(orientation), m_section(section)
{
}

QRect CAccessibleTableHeader::inHeader() const
{
    const QHeaderView* const header = view()->horizontalHeader();
    return m_orientation == Qt::Horizontal ? QRect(header->sectionViewportPosition(m_section), 0,
                                                   header->sectionSize(m_section), header->height())
                                           : QRect();
}

QString CAccessibleTableHeader::text(QAccessible::Text kind) const
{
    if (kind != QAccessible::Name || m_section < 0)
        return {};
    return m_orientation == Qt::Horizontal ? model().headerText(m_section)
                                           : QString::number(m_section + 1);
}

QRect CAccessibleTableHeader::rect() const
{
    return inHeader().translated(view()->horizontalHeader()->viewport()->mapToGlobal(QPoint()));
}

QAccessible::Role CAccessibleTableHeader::role() const
{
    if (m_orientation == Qt::Horizontal)
        return QAccessible::ColumnHeader;
    return m_section < 0 ? QAccessible::Pane : QAccessible::RowHeader;
}

QAccessible::State CAccessibleTableHeader::state() const
{
    QAccessible::State state;
    const QHeaderView* const header = view()->horizontalHeader();
    state.disabled = !header->isEnabled();
    state.invisible = !header->isVisible() || !header->viewport()->rect().intersects(inHeader());
    return state;
}

} // namespace KZ
