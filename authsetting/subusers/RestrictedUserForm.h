#pragma once

#include "authsetting/authorize/GrantDays.h"
#include "kit/widgets/WidgetList.h"

#include <QString>

namespace KZ {
class CLineEdit;
class CSimpleTextWidget;
class CSoftCalendarLineEdit;
class CSoftKeyboardLineEdit;
} // namespace KZ

namespace GW {

/// The form above the table of one restricted user: his name and state, a new password, and the
/// days of grants to come. The page puts its table and button below. GUI thread only.
class CRestrictedUserForm : public KZ::CWidgetList
{
    Q_OBJECT

public:
    explicit CRestrictedUserForm(QWidget* parent);

    /// Shows the user and empties the passwords; a password is asked for only while he is disabled,
    /// days only while he is enabled.
    void showUser(const QString& name, bool enabled);
    void clearPasswords();
    /// Tool tip of the state.
    void setStateHint(const QString& hint);

    CGrantDays& days() { return m_days; }

    KZ::CSoftKeyboardLineEdit* passwordEdit() const { return m_password; }
    KZ::CSoftKeyboardLineEdit* confirmEdit() const { return m_confirm; }
    KZ::CSoftCalendarLineEdit* startEdit() const { return m_start; }
    KZ::CSoftCalendarLineEdit* endEdit() const { return m_end; }

private:
    // In the order in which Tab goes through them.
    KZ::CLineEdit* const m_name;
    KZ::CSoftKeyboardLineEdit* const m_password;
    KZ::CSoftKeyboardLineEdit* const m_confirm;
    KZ::CSoftCalendarLineEdit* const m_start;
    KZ::CSoftCalendarLineEdit* const m_end;
    CGrantDays m_days;
    KZ::CSimpleTextWidget* m_state = nullptr;
};

} // namespace GW
