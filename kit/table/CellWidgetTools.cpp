#include "kit/table/CellWidgetTools.h"

#include <QWidget>

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

} // namespace KZ
