#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace KZ {

/// One kind of widget for many cells of a column. The table makes about as many as there are rows
/// in sight and moves them on from cell to cell; one that somebody asked for stays with its cell.
struct CColumnWidgetKind
{
    std::function<QWidget*(QWidget* parent)> make;
    /// Makes a widget stand for a row: sets everything about it that differs between rows.
    std::function<void(QWidget* widget, int row)> bind;
    /// As for COddEvenRowTable::setItemWidget().
    int alignment = 0;
    /// What the widget's button does and to which row, for assistive tools, who are told without
    /// the widget being made. Empty for a row that shows no button.
    std::function<QString(int row)> accessibleName = {};
    /// Does what a click on the button does, for a row whose widget has not been made.
    std::function<void(int row)> press = {};
};

} // namespace KZ
