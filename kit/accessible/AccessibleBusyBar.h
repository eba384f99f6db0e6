#pragma once

#include <QAccessibleWidget>

namespace KZ {

class CBusyBar;

/// A CBusyBar as assistive tools meet it: a progress bar with a value as long as a count is known.
class CAccessibleBusyBar : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit CAccessibleBusyBar(QWidget* widget);

    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override;
    QVariant minimumValue() const override;
    QVariant minimumStepSize() const override;

private:
    const CBusyBar* bar() const;
};

} // namespace KZ
