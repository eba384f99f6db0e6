#include "kit/accessible/AccessibleBusyBar.h"

#include "kit/widgets/BusyBar.h"

namespace KZ {

CAccessibleBusyBar::CAccessibleBusyBar(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::ProgressBar)
{
}

const CBusyBar* CAccessibleBusyBar::bar() const
{
    return qobject_cast<const CBusyBar*>(widget());
}

QString CAccessibleBusyBar::text(QAccessible::Text kind) const
{
    const bool tellsCount = kind == QAccessible::Value || kind == QAccessible::Description;
    return tellsCount ? bar()->countText() : QAccessibleWidget::text(kind);
}

QAccessible::State CAccessibleBusyBar::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.busy = bar()->isVisible();
    return state;
}

void* CAccessibleBusyBar::interface_cast(QAccessible::InterfaceType type)
{
    // A value of nothing would be read as a finished or an unbegun work.
    if (type == QAccessible::ValueInterface)
        return bar()->total() > 0 ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    return QAccessibleWidget::interface_cast(type);
}

QVariant CAccessibleBusyBar::currentValue() const
{
    return bar()->done();
}

void CAccessibleBusyBar::setCurrentValue(const QVariant&) {}

QVariant CAccessibleBusyBar::maximumValue() const
{
    return bar()->total();
}

QVariant CAccessibleBusyBar::minimumValue() const
{
    return 0;
}

QVariant CAccessibleBusyBar::minimumStepSize() const
{
    return 1;
}

} // namespace KZ
