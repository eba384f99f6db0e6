#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"
#include "authsetting/services/Services.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"

#include <climits>

class MissingServicesTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyServiceMayBeMissing_data()
    {
        QTest::addColumn<int>("missing");
        QTest::newRow("authorization client") << 0;
        QTest::newRow("user configuration") << 1;
        QTest::newRow("environment") << 2;
        QTest::newRow("messages") << 3;
        QTest::newRow("time") << 4;
        QTest::newRow("all") << 5;
    }

    void everyServiceMayBeMissing()
    {
        QFETCH(int, missing);
        FakeServices services;
        services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        services.user.addAccount(2, 1, "b", "2", mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        services.client.subUsers = {QStringLiteral("s1")};
        const auto unless = [missing](int service, auto* object) {
            return missing == service || missing == 5 ? nullptr : object;
        };
        GW::installServices(unless(0, &services.client), unless(1, &services.user),
                            unless(2, &services.config), unless(3, &services.messages),
                            unless(4, &services.time));
        OpenDialog dialog;
        dialog.load();
        dialog.show();
        const QString key = services.user.accounts[0]->key();
        for (const int page : {201, 202, 203}) {
            for (const int subPage : {INT_MAX, 20101, 20401}) {
                dialog.showPage(page, subPage, key, 0);
                KZ::CStandardTabControl* tabs = dialog.shownPage()->tabControl();
                for (int tab = 0; tab < tabs->tabCount(); ++tab) {
                    QVERIFY(tabs->activateTab(tab));
                    QWidget* widget = tabs->getTabWidget(tab);
                    auto* tabPage = qobject_cast<GW::IAuthSettingTabPage*>(widget);
                    for (const int event : {41, 59, 67, 68, 87, 88, 1103}) {
                        for (const int id : {0, 1, 2, 4, 100})
                            tabPage->handleEvent(event, id, 1, QString(), nullptr);
                    }
                    if (tabPage->metaObject()->indexOfSlot("onServerAuthTriggered(bool)") >= 0)
                        QMetaObject::invokeMethod(tabPage, "onServerAuthTriggered",
                                                  Q_ARG(bool, false));
                }
            }
        }
        dialog.slotUiUpdateAuth();
        QVERIFY(services.client.addAuths.isEmpty());
    }

    void aGrantGoesOutThoughNobodyCanBeTold()
    {
        FakeServices services;
        const auto account =
            services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        services.client.activeSubUsers = {QStringLiteral("ops")};
        GW::installServices(&services.client, &services.user, nullptr, nullptr, nullptr);
        EventRecorder dialog;

        GW::CAuthSettingAccountsAuthorizeTabPage batch(&dialog);
        batch.reloadData();
        batch.findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        batch.findChild<KZ::COddEvenRowTable*>()->setItemChecked(0, 0, true);
        batch.onServerAuthTriggered(false);
        QCOMPARE(services.client.addAuths.size(), 1);

        GW::CAuthSettingSingleAccountAuthorizeTabPage single(true, &dialog);
        single.setKey(account->key());
        single.reloadData();
        single.findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        single.onServerAuthTriggered(false);
        QCOMPARE(services.client.addAuths.size(), 2);

        GW::CAuthSettingSingleRestrictedUserGeneralTabPage subUser(&dialog);
        subUser.setKey(QStringLiteral("ops"));
        subUser.reloadData();
        subUser.findChild<KZ::COddEvenRowTable*>()->setItemChecked(0, 0, true);
        subUser.handleEvent(59, 100, 1, QString(), nullptr);
        subUser.onServerAuthTriggered(false);
        QCOMPARE(services.client.addAuths.size(), 3);
        QVERIFY(services.messages.messages.isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<MissingServicesTest>(argc, argv);
}

#include "MissingServicesTest.moc"
