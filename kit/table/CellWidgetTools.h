#pragma once

#include <QList>

class QWidget;

namespace KZ {

/// Takes a cell's widget and what is below it out of the window's chain of focus: a full page of
/// them would be an obstacle.
void takeFromTabChain(QWidget* widget);

/// Whether somebody has hidden the widget itself.
bool isHiddenByOwner(const QWidget* widget);

/// The widget and those below it that can take the focus now.
QList<QWidget*> focusStops(QWidget* widget);

} // namespace KZ
