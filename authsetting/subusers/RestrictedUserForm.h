#pragma once

#include "authsetting/services/AuthLimit.h"
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

    /// A week from today, and the days that the editors show.
    static CAuthLimit proposedDays();
    CAuthLimit days() const;
    void setDays(const CAuthLimit& limit);
    /// Lets the user enter no day before today.
    void refreshMinimumDates();
    /// Whether the range begins and ends on the same day.
    bool isOneDay() const;

    KZ::CSoftKeyboardLineEdit* passwordEdit() const { return m_password; }
    KZ::CSoftKeyboardLineEdit* confirmEdit() const { return m_confirm; }
    KZ::CSoftCalendarLineEdit* startEdit() const { return m_start; }
    KZ::CSoftCalendarLineEdit* endEdit() const { return m_end; }

private:
    KZ::CLineEdit* m_name = nullptr;
    KZ::CSoftKeyboardLineEdit* m_password = nullptr;
    KZ::CSoftKeyboardLineEdit* m_confirm = nullptr;
    KZ::CSimpleTextWidget* m_state = nullptr;
    KZ::CSoftCalendarLineEdit* m_start = nullptr;
    KZ::CSoftCalendarLineEdit* m_end = nullptr;
};

} // namespace GW
