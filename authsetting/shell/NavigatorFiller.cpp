#include "authsetting/shell/NavigatorFiller.h"

#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorUpdate.h"

namespace GW {

namespace {

QString accountIcon()
{
    return QStringLiteral("gw_img_auth_setting_tree_icon_account");
}

void addAccountNodes(CNavigatorUpdate* tree)
{
    CUserConfig* user = getUserConfig();
    if (!user)
        return;
    // A copy, because the client may change the list while its reads are under way.
    const QVector<boost::shared_ptr<CAccount>> accounts = user->accounts;
    for (const boost::shared_ptr<CAccount>& account : accounts) {
        if (!account)
            continue;
        const QString key = account->key();
        if (user->isSubAccount(key) || user->hasSubAccount(key))
            continue;
        const QString text = accountDisplayIDQs(*account);
        if (account->authType == mbservice::AUTH_TYPE_GRANTED_TO_ME) {
            tree->addChild(text, ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION,
                           ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_AUTHORIZATION, accountIcon(), key);
        } else if (account->authType == mbservice::AUTH_TYPE_NOT_GRANTED ||
                   account->authType == mbservice::AUTH_TYPE_GRANTED_TO_OTHER) {
            tree->addChild(text, ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                           ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_ACCOUNT, accountIcon(), key);
        }
    }
}

void addSubUserNodes(CNavigatorUpdate* tree)
{
    CAuthClient* client = getAuthClient();
    QVector<QString> users;
    if (!client || !client->getSubUserList(users))
        return;
    for (const QString& user : std::as_const(users)) {
        const QString icon = client->isSubUserActive(user)
                                 ? QStringLiteral("gw_img_auth_setting_tree_icon_sub_user")
                                 : QStringLiteral("gw_img_auth_setting_tree_icon_sub_user_d");
        tree->addChild(user, ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                       ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER, icon, user);
    }
}

} // namespace

void fillNavigator(CAuthSettingNavigator* navigator)
{
    CNavigatorUpdate tree(navigator);
    tree.addTop(QStringLiteral("账号授权"), ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                QStringLiteral("gw_img_auth_setting_tree_icon_authorize"));
    tree.addTop(QStringLiteral("导入授权"), ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION,
                QStringLiteral("gw_img_auth_setting_tree_icon_import_auth"));
    tree.addTop(QStringLiteral("子用户"), ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                QStringLiteral("gw_img_auth_setting_tree_icon_sub_user"));
    addAccountNodes(&tree);
    addSubUserNodes(&tree);
    tree.show();
}

} // namespace GW
