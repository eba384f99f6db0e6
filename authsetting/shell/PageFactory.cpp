#include "authsetting/shell/PageFactory.h"

#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"
#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"
#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/AuthSettingPage.h"
#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"

#include <climits>

namespace GW {

namespace {

void addAccountTabs(CAuthSettingPage* page)
{
    if (page->subPageId() == INT_MAX) {
        page->addTabPage(QStringLiteral("账号总览"), new CAuthSettingAccountsOverviewTabPage(page));
        page->addTabPage(QStringLiteral("批量授权"),
                         new CAuthSettingAccountsAuthorizeTabPage(page));
    } else {
        page->addTabPage(QStringLiteral("账号授权"),
                         new CAuthSettingSingleAccountAuthorizeTabPage(true, page));
    }
}

void addImportTabs(CAuthSettingPage* page)
{
    if (page->subPageId() == INT_MAX) {
        page->addTabPage(QStringLiteral("导入授权"),
                         new CAuthSettingImportAuthorizationTabPage(page));
        page->addCornerButton(0, QStringLiteral("导入授权"), QKeySequence(Qt::CTRL | Qt::Key_O),
                              QStringLiteral("打开授权文件并导入其中的账号"));
    } else {
        page->addTabPage(QStringLiteral("基本信息"),
                         new CAuthSettingSingleAccountAuthorizeTabPage(false, page));
    }
}

void addSubUserTabs(CAuthSettingPage* page)
{
    if (page->subPageId() == INT_MAX) {
        page->addTabPage(QStringLiteral("子用户管理"),
                         new CAuthSettingRestrictedUsersManageTabPage(page));
        page->addCornerButton(
            0, QStringLiteral("全部启用"), QKeySequence(),
            QStringLiteral("启用所有子用户，沿用各自原有的密码，不再要求输入密码"));
        page->addCornerButton(1, QStringLiteral("全部禁用"), QKeySequence(),
                              QStringLiteral("禁用所有子用户"));
    } else if (page->subPageId() == ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER) {
        page->addTabPage(QStringLiteral("子用户设置"),
                         new CAuthSettingSingleRestrictedUserGeneralTabPage(page));
    }
}

} // namespace

void addTabPages(CAuthSettingPage* page)
{
    if (page->pageId() == ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE)
        addAccountTabs(page);
    else if (page->pageId() == ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION)
        addImportTabs(page);
    else if (page->pageId() == ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS)
        addSubUserTabs(page);
}

} // namespace GW
