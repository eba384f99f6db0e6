#include "authsetting/shell/NavigatorFiller.h"

#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingNavigator.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"
#include "tests/support/fakes/FakeServices.h"

#include <climits>

namespace {

QString icon(const char* name)
{
    return QStringLiteral("gw_img_auth_setting_tree_icon_") + QString::fromLatin1(name);
}

/// One line per node: depth, text, page, sub-page, key, icon.
QStringList linesOf(const QTreeWidget& tree)
{
    QStringList lines;
    const auto line = [&](QTreeWidgetItem* item, const QString& indent) {
        const auto* node = dynamic_cast<GW::CAuthNavigateNode*>(item);
        const QString subPage = node->subPageId() == INT_MAX ? QStringLiteral("top")
                                                             : QString::number(node->subPageId());
        lines.append(indent + node->text(0) + u' ' + QString::number(node->pageId()) + u' ' +
                     subPage + u' ' + node->key() + u' ' + node->iconKey());
    };
    for (int top = 0; top < tree.topLevelItemCount(); ++top) {
        line(tree.topLevelItem(top), QString());
        for (int child = 0; child < tree.topLevelItem(top)->childCount(); ++child)
            line(tree.topLevelItem(top)->child(child), QStringLiteral("- "));
    }
    return lines;
}

} // namespace

class NavigatorFillerTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void namesEveryPlaceInOrder()
    {
        FakeServices services;
        const auto own =
            services.user.addAccount(1, 1, "b", "800001", mbservice::AUTH_TYPE_NOT_GRANTED);
        const auto mine =
            services.user.addAccount(2, 1, "b", "800002", mbservice::AUTH_TYPE_GRANTED_TO_ME);
        const auto granted =
            services.user.addAccount(2, 1, "b", "800003", mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        granted->accountAlias = "别名";
        services.client.subUsers = {QStringLiteral("on"), QStringLiteral("off")};
        services.client.activeSubUsers = {QStringLiteral("on")};
        EventRecorder dialog;
        GW::CAuthSettingNavigator navigator(&dialog);
        GW::fillNavigator(&navigator);
        const QStringList expected{
            QStringLiteral("账号授权 201 top  ") + icon("authorize"),
            QStringLiteral("- 800001 201 20101 ") + own->key() + u' ' + icon("account"),
            QStringLiteral("- 别名 201 20101 ") + granted->key() + u' ' + icon("account"),
            QStringLiteral("导入授权 202 top  ") + icon("import_auth"),
            QStringLiteral("- 800002 202 20201 ") + mine->key() + u' ' + icon("account"),
            QStringLiteral("子用户 203 top  ") + icon("sub_user"),
            QStringLiteral("- on 203 20401 on ") + icon("sub_user"),
            QStringLiteral("- off 203 20401 off ") + icon("sub_user_d"),
        };
        QCOMPARE(linesOf(navigator), expected);
    }

    void leavesOutWhatCanNeverBeGrantedAndUnknownStates()
    {
        FakeServices services;
        const auto child =
            services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        const auto parent =
            services.user.addAccount(1, 1, "b", "2", mbservice::AUTH_TYPE_GRANTED_TO_ME);
        services.user.addAccount(1, 1, "b", "3", mbservice::AUTH_TYPE_UNKNOWN);
        services.user.addAccount(1, 1, "b", "4", mbservice::EAuthType(9));
        services.user.accounts.append(nullptr);
        services.user.subAccounts.insert(child->key());
        services.user.parentAccounts.insert(parent->key());
        EventRecorder dialog;
        GW::CAuthSettingNavigator navigator(&dialog);
        GW::fillNavigator(&navigator);
        QCOMPARE(linesOf(navigator).size(), 3);
    }

    void withoutServicesOnlyThePagesAreNamed()
    {
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
        EventRecorder dialog;
        GW::CAuthSettingNavigator navigator(&dialog);
        GW::fillNavigator(&navigator);
        QCOMPARE(navigator.topLevelItemCount(), 3);
        QCOMPARE(linesOf(navigator).size(), 3);
    }

    void anUnavailableSubUserListIsAnEmptyOne()
    {
        FakeServices services;
        services.client.subUsers = {QStringLiteral("on")};
        services.client.subUserListAvailable = false;
        EventRecorder dialog;
        GW::CAuthSettingNavigator navigator(&dialog);
        GW::fillNavigator(&navigator);
        QCOMPARE(navigator.topLevelItem(2)->childCount(), 0);
    }

    void everyIconExistsInBothThemes()
    {
        for (const char* name : {"authorize", "account", "import_auth", "sub_user", "sub_user_d"})
            QVERIFY2(KZ::CUiResource::hasKey(icon(name)), name);
    }
};

int main(int argc, char** argv)
{
    return runTest<NavigatorFillerTest>(argc, argv);
}

#include "NavigatorFillerTest.moc"
