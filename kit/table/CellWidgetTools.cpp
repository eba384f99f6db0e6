#include "kit/table/CellWidgetTools.h"

#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"

#include <QTableView>

#include <algorithm>
#include <iterator>

namespace KZ {

namespace {

QList<QWidget*> withDescendants(QWidget* widget)
{
    QList<QWidget*> widgets = widget->findChildren<QWidget*>();
    widgets.prepend(widget);
    return widgets;
}

} // namespace

void takeFromTabChain(QWidget* widget)
{
    const QList<QWidget*> widgets = withDescendants(widget);
    for (QWidget* const each : widgets) {
        if (each->focusPolicy() & Qt::TabFocus)
            each->setFocusPolicy(Qt::FocusPolicy(each->focusPolicy() & ~Qt::TabFocus));
    }
}

bool isHiddenByOwner(const QWidget* widget)
{
    return widget->testAttribute(Qt::WA_WState_Hidden) &&
           widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
}

QList<QWidget*> focusStops(QWidget* widget)
{
    const QList<QWidget*> widgets = withDescendants(widget);
    QList<QWidget*> stops;
    std::copy_if(widgets.cbegin(), widgets.cend(), std::back_inserter(stops), [](QWidget* each) {
        return each->focusPolicy() != Qt::NoFocus && each->isVisible() && each->isEnabled();
    });
    return stops;
}

std::vector<quint64> widgetCellsInSight(const QTableView& view, const CRowStore& store,
                                        const CTableModel& model)
{
    std::vector<quint64> keys;
    const QRect viewport = view.viewport()->rect();
    const int first = view.rowAt(0);
    if (first < 0)
        return keys;
    const int lowest = view.rowAt(viewport.height() - 1);
    const int last = lowest < 0 ? model.rowCount() - 1 : lowest;
    for (int column = 0; column < store.columnCount(); ++column) {
        const int left = view.columnViewportPosition(column);
        if (!store.columnHasWidgets(column) || left >= viewport.width() ||
            left + view.columnWidth(column) <= 0)
            continue;
        for (int viewRow = first; viewRow <= last; ++viewRow) {
            const int row = model.rowAt(viewRow);
            if (store.isWidgetCell(row, column))
                keys.push_back(CRowStore::cellKey(row, column));
        }
    }
    return keys;
}

} // namespace KZ
