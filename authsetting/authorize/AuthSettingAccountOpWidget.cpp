#include "authsetting/authorize/AuthSettingAccountOpWidget.h"

#include "authsetting/services/AuthType.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/SmallNormalButton.h"

namespace GW {

namespace {

constexpr int cancelButtonId = 0;
// Room for the cell's padding around the button, in pixels.
constexpr int roomAroundButton = 20;

} // namespace

CAuthSettingAccountOpWidget::CAuthSettingAccountOpWidget(int rowId, QWidget* parent)
    : CBaseWidget(parent), m_rowId(rowId),
      m_cancelButton(new KZ::CSmallNormalButton(cancelButtonId, this))
{
    setObjectName(QStringLiteral("halden_ftauthsettingaccountopwidget"));
    m_cancelButton->setObjectName(QStringLiteral("halden_cancel_auth_button"));
    m_cancelButton->resize(
        KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_width")),
        KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_height")));
    m_cancelButton->setText(QStringLiteral("取消授权"));
    m_cancelButton->setAccessibleName(m_cancelButton->text());
    setInnerFixWidget(m_cancelButton);
    setAuthType(m_authType);
}

void CAuthSettingAccountOpWidget::setAuthType(int type)
{
    m_authType = type;
    if (m_cancelButton)
        m_cancelButton->setVisible(m_authType == mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
}

void CAuthSettingAccountOpWidget::setAccountName(const QString& name)
{
    m_cancelButton->setAccessibleName(m_cancelButton->text() + u' ' + name);
}

QSize CAuthSettingAccountOpWidget::minimumSizeHint() const
{
    if (!m_cancelButton)
        return {0, 0};
    return m_cancelButton->size() + QSize(roomAroundButton, roomAroundButton);
}

bool CAuthSettingAccountOpWidget::handleEvent(int eventId, int param1, int param2, QString text,
                                              void* data)
{
    if (eventId != KZ::EVENT_BUTTON_CLICKED)
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    if (param1 == cancelButtonId)
        deliverEvent(EVENT_CANCEL_AUTH, m_rowId, 0, QString(), this);
    return true;
}

} // namespace GW
