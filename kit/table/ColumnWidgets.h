#pragma once

#include "kit/table/ColumnWidgetKind.h"

#include <QList>
#include <QPointer>
#include <QWidget>

#include <map>

namespace KZ {

/// The widgets of columns whose cells share one kind: those that stand for no cell at the moment
/// wait here for the next one.
class CColumnWidgets
{
public:
    void setKind(int column, CColumnWidgetKind kind);
    int alignment(int column) const;
    /// Null for a column without one; valid until setKind().
    const CColumnWidgetKind* kind(int column) const;

    /// A widget that stands for no cell yet; null when the owner makes none.
    QPointer<QWidget> take(int column, QWidget* parent);
    /// Lets the widget stand for the row's cell.
    void bind(int column, int row, QWidget* widget) const;
    /// Keeps the widget for the next cell; false when it has to go, because the user is at work
    /// with it or enough others wait.
    bool giveBack(int column, QWidget* widget);
    /// The widgets that wait.
    QList<QWidget*> spare() const;

private:
    struct SColumn
    {
        CColumnWidgetKind kind;
        QList<QPointer<QWidget>> spare;
    };

    std::map<int, SColumn> m_columns;
};

} // namespace KZ
