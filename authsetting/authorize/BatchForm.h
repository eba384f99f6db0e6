#pragma once

#include "authsetting/authorize/GrantDays.h"
#include "kit/widgets/WidgetList.h"

#include <QDate>
#include <QString>

namespace KZ {
class CComboBox;
class CMediumNormalButton;
class CSoftCalendarLineEdit;
} // namespace KZ

namespace GW {

class CBatchAccountsTable;

/// What the batch tab shows: the editors of the grant in the making, the accounts, and the button.
/// The widgets' events go to the tab page under the identifiers given here.
class CBatchForm : public KZ::CWidgetList
{
    Q_OBJECT

public:
    static constexpr int GRANTEE_EDITOR_ID = 0;
    static constexpr int START_EDITOR_ID = 1;
    static constexpr int END_EDITOR_ID = 2;
    static constexpr int AUTHORIZE_BUTTON_ID = 0;

    explicit CBatchForm(QWidget* parent);
    ~CBatchForm() override;

    CBatchAccountsTable* table() const { return m_table; }
    KZ::CComboBox* granteeEditor() const { return m_granteeEditor; }
    KZ::CSoftCalendarLineEdit* endEditor() const { return m_endEditor; }
    KZ::CMediumNormalButton* authorizeButton() const { return m_authorizeButton; }

    /// The user's text, untrimmed.
    QString grantee() const;

    const CGrantDays& days() const { return m_days; }

    /// Shows the grant in the making in one row, or in every selected one.
    void showPending(int row);
    void showPendingInSelected();

private:
    void addField(const QString& caption, QWidget* editor);

    KZ::CComboBox* m_granteeEditor;
    KZ::CSoftCalendarLineEdit* m_startEditor;
    KZ::CSoftCalendarLineEdit* m_endEditor;
    CGrantDays m_days;
    CBatchAccountsTable* m_table;
    KZ::CMediumNormalButton* m_authorizeButton;
};

} // namespace GW
