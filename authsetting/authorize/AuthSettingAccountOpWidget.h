#pragma once

#include "kit/widgets/BaseWidget.h"

namespace KZ {
class CSmallNormalButton;
}

namespace GW {

/// The content of an account row's operation cell: the button "取消授权", shown only while the
/// account is granted to somebody. A click delivers EVENT_CANCEL_AUTH with the row's identifier.
class CAuthSettingAccountOpWidget : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    /// `rowId` is the table's identifier of the row.
    CAuthSettingAccountOpWidget(int rowId, QWidget* parent);

    /// Moves the widget to another row.
    void setRowId(int rowId) { m_rowId = rowId; }
    /// Sets the account's mbservice::EAuthType.
    void setAuthType(int type);

    /// Names the account to assistive tools, which read the buttons without their rows.
    void setAccountName(const QString& name);

    QSize minimumSizeHint() const override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

private:
    int m_rowId;
    int m_authType = 0;
    KZ::CSmallNormalButton* m_cancelButton;
};

} // namespace GW
