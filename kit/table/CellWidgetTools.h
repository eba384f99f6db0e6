#pragma once

#include <QList>

#include <vector>

class QTableView;
class QWidget;

namespace KZ {

class CRowStore;
class CTableModel;

/// Takes a cell's widget and what is below it out of the window's chain of focus: a full page of
/// them would be an obstacle.
void takeFromTabChain(QWidget* widget);

/// Whether somebody has hidden the widget itself.
bool isHiddenByOwner(const QWidget* widget);

/// The widget and those below it that can take the focus now.
QList<QWidget*> focusStops(QWidget* widget);

/// Keys of the cells in sight that have a tick or a widget.
std::vector<quint64> widgetCellsInSight(const QTableView& view, const CRowStore& store,
                                        const CTableModel& model);

} // namespace KZ
