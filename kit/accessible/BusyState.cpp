#include "kit/accessible/BusyState.h"

#include <QAccessible>
#include <QVariant>
#include <QWidget>

namespace KZ {

namespace {

constexpr auto BUSY_PROPERTY = "kz_accessible_busy";

} // namespace

void setAccessibleBusy(QWidget* widget, bool busy)
{
    if (isAccessibleBusy(widget) == busy)
        return;
    widget->setProperty(BUSY_PROPERTY, busy);
    QAccessible::State changed;
    changed.busy = true;
    QAccessibleStateChangeEvent event(widget, changed);
    QAccessible::updateAccessibility(&event);
}

bool isAccessibleBusy(const QWidget* widget)
{
    return widget->property(BUSY_PROPERTY).toBool();
}

} // namespace KZ
