#include "kit/accessible/AccessibleBox.h"

#include "kit/accessible/BusyState.h"
#include "kit/widgets/WidgetList.h"

#include <QWidget>

#include <algorithm>
#include <tuple>

namespace KZ {

CAccessibleBox::CAccessibleBox(QWidget* widget, QAccessible::Role role)
    : QAccessibleWidget(widget, role)
{
}

QWidgetList CAccessibleBox::children() const
{
    QWidgetList widgets;
    for (QObject* const object : widget()->children()) {
        auto* const child = qobject_cast<QWidget*>(object);
        if (child && !child->isWindow())
            widgets.append(child);
    }
    // What stands in one row is not always aligned at its top.
    const auto* const list = qobject_cast<const CWidgetList*>(widget());
    const bool isRow = list && list->orientation() == Qt::Horizontal;
    const auto place = [isRow](const QWidget* child) {
        return std::make_tuple(isRow ? 0 : child->y(), child->x());
    };
    std::stable_sort(
        widgets.begin(), widgets.end(),
        [&place](const QWidget* left, const QWidget* right) { return place(left) < place(right); });
    return widgets;
}

int CAccessibleBox::childCount() const
{
    return int(children().size());
}

QAccessibleInterface* CAccessibleBox::child(int index) const
{
    const QWidgetList widgets = children();
    return index >= 0 && index < widgets.size()
               ? QAccessible::queryAccessibleInterface(widgets.at(index))
               : nullptr;
}

int CAccessibleBox::indexOfChild(const QAccessibleInterface* child) const
{
    return child ? int(children().indexOf(qobject_cast<QWidget*>(child->object()))) : -1;
}

QAccessible::Role CAccessibleBox::role() const
{
    const QAccessible::Role role = QAccessibleWidget::role();
    return role == QAccessible::Client && !widget()->accessibleName().isEmpty() ? QAccessible::Pane
                                                                                : role;
}

QAccessible::State CAccessibleBox::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.busy = isAccessibleBusy(widget());
    return state;
}

} // namespace KZ
