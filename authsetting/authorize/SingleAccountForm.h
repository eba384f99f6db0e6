#pragma once

#include "authsetting/authorize/GrantDays.h"
#include "authsetting/services/AuthLimit.h"
#include "kit/widgets/WidgetList.h"

#include <QModelIndex>
#include <QString>

namespace KZ {
class CComboBox;
class CLineEdit;
class CMediumNormalButton;
class COddEvenRowTable;
class CSimpleTextWidget;
class CSoftCalendarLineEdit;
} // namespace KZ

namespace GW {

class CAccount;
class CAuthDetail;

/// The widgets of the single account tab: what the account is, to whom and for how long it is or
/// will be granted, under which condition, and the button that does it. GUI thread only.
class CSingleAccountForm : public KZ::CWidgetList
{
    Q_OBJECT

public:
    /// Identifiers of the editors and of the button in their events. The grantee's box shares its
    /// number with the platform's editor, which the user cannot change.
    static constexpr int ID_PLATFORM = 0;
    static constexpr int ID_GRANTEE = 0;
    static constexpr int ID_BROKER = 1;
    static constexpr int ID_GRANT_BUTTON = 1;
    static constexpr int ID_ACCOUNT = 2;
    static constexpr int ID_START = 4;
    static constexpr int ID_END = 5;

    explicit CSingleAccountForm(QWidget* parent);
    ~CSingleAccountForm() override;

    /// Proposes a week from today to nobody with the threshold at 100 %; the condition's tick
    /// stays.
    void reset();
    /// Offers the enabled restricted users as grantees.
    void fillGrantees();
    void setGrantable(bool grantable);
    /// Shows who the account is; null empties the fields.
    void showAccount(const CAccount* account);
    void showGrant(const CAuthDetail& grant);
    void setConditionTicked(bool ticked);
    /// Puts the user back into the threshold of a ticked condition when what he typed there was not
    /// taken; false when nothing is open. A grant would carry another limit than the one in sight.
    bool returnToOpenThreshold();

    const CGrantDays& days() const { return m_days; }
    /// Days and, when ticked, condition as the user set them. `wholePercent` drops the fraction of
    /// the percentage.
    CAuthLimit limit(bool wholePercent) const;

    KZ::CComboBox* granteeBox() const { return m_grantee; }
    KZ::CLineEdit* platformEdit() const { return m_platform; }
    KZ::CSoftCalendarLineEdit* startEdit() const { return m_start; }
    KZ::CSoftCalendarLineEdit* endEdit() const { return m_end; }
    KZ::CMediumNormalButton* grantButton() const { return m_grantButton; }

private:
    void addRows();
    void addTable();
    void addGrantButton();
    QModelIndex thresholdCell() const;

    KZ::CSimpleTextWidget* m_state = nullptr;
    KZ::CLineEdit* m_platform = nullptr;
    KZ::CSimpleTextWidget* m_brokerCaption = nullptr;
    KZ::CLineEdit* m_broker = nullptr;
    KZ::CLineEdit* m_account = nullptr;
    KZ::CSoftCalendarLineEdit* const m_start;
    KZ::CSoftCalendarLineEdit* const m_end;
    CGrantDays m_days;
    KZ::CComboBox* m_grantee = nullptr;
    KZ::COddEvenRowTable* m_conditions = nullptr;
    KZ::CMediumNormalButton* m_grantButton = nullptr;
};

} // namespace GW
