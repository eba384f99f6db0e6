#include "kit/accessible/AccessibleButton.h"

#include "kit/accessible/InReach.h"
#include "kit/widgets/Button.h"

namespace KZ {

CAccessibleButton::CAccessibleButton(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::Button)
{
}

CButton* CAccessibleButton::button() const
{
    return static_cast<CButton*>(widget());
}

QString CAccessibleButton::text(QAccessible::Text kind) const
{
    const QString own = QAccessibleWidget::text(kind);
    if (kind == QAccessible::Name && own.isEmpty())
        return button()->text();
    if (kind == QAccessible::Accelerator && own.isEmpty())
        return button()->shortcut().toString(QKeySequence::NativeText);
    return own;
}

QAccessible::State CAccessibleButton::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.pressed = button()->isDown();
    return state;
}

QStringList CAccessibleButton::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (button()->isEnabled())
        names.prepend(pressAction());
    return names;
}

void CAccessibleButton::doAction(const QString& action)
{
    if (action != pressAction())
        QAccessibleWidget::doAction(action);
    else if (isInReach(button()))
        button()->click();
}

QStringList CAccessibleButton::keyBindingsForAction(const QString& action) const
{
    const QKeySequence keys = button()->shortcut();
    return action == pressAction() && !keys.isEmpty() ? QStringList(keys.toString())
                                                      : QStringList();
}

} // namespace KZ
