#include "authsetting/authorize/GrantButton.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/MediumNormalButton.h"

namespace GW {

KZ::CMediumNormalButton* newGrantButton(int id, QWidget* parent)
{
    auto* button = new KZ::CMediumNormalButton(id, parent);
    button->setText(QStringLiteral("授权"));
    button->setIcon(QStringLiteral("gw_img_auth_export"), 0, 6);
    button->resize(KZ::CUiResource::getSize(QStringLiteral(
                       "gw_siz_auth_setting_accounts_authorize_btn_authorize_width")),
                   KZ::CUiResource::getSize(
                       QStringLiteral("gw_siz_auth_setting_accounts_authorize_btn_height")));
    return button;
}

} // namespace GW
