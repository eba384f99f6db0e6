#include "authsetting/subusers/RowCancelButton.h"

#include "kit/resources/UiResource.h"

namespace GW {

CRowCancelButton::CRowCancelButton(int row, QWidget* parent)
    : CSmallNormalButton(firstId + row, parent)
{
    setText(QStringLiteral("取消授权"));
    resize(KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_width")),
           KZ::CUiResource::getSize(QStringLiteral("gw_siz_auth_setting_account_btn_height")));
    setVisible(false);
}

void CRowCancelButton::setOffered(bool offered)
{
    m_offered = offered;
    setVisible(m_wanted);
}

void CRowCancelButton::setVisible(bool visible)
{
    m_wanted = visible;
    CSmallNormalButton::setVisible(visible && m_offered);
}

} // namespace GW
