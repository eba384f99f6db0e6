#pragma once

#include "authsetting/shell/NavigatorFiller.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"

/// The dialog of a user with three free accounts, one granted, one granted to him, and two
/// sub-users of whom "night" is disabled.
struct AccessibleDesk
{
    AccessibleDesk()
    {
        nameFirms(test.services);
        test.services.client.subUsers = {QStringLiteral("ops"), QStringLiteral("night")};
        test.services.client.activeSubUsers = {QStringLiteral("ops")};
        for (const char* id : {"1000", "1001", "1002"}) {
            accounts.append(
                test.services.user.addAccount(1, 1, "9000", id, mbservice::AUTH_TYPE_NOT_GRANTED));
        }
        test.services.grant(accounts[1], QStringLiteral("bob"), QDate(2026, 1, 2),
                            QDate(2026, 3, 4));
        test.services.grant(accounts[2], QStringLiteral("ops"), QDate(2026, 1, 2),
                            QDate(2026, 12, 31));
        accounts.append(
            test.services.user.addAccount(1, 1, "9000", "2000", mbservice::AUTH_TYPE_NOT_GRANTED));
        test.services.grant(accounts[3], QStringLiteral("trader01"), QDate(2026, 1, 2),
                            QDate(2026, 12, 31));
        accounts[3]->authType = mbservice::AUTH_TYPE_GRANTED_TO_ME;
        test.dialog.setNavigatorFiller(GW::fillNavigator);
        test.dialog.load();
    }

    bool show(int page, int subPage = INT_MAX, const QString& key = QString(), int tab = 0)
    {
        test.dialog.showPage(page, subPage, key, tab);
        test.dialog.show();
        return QTest::qWaitForWindowActive(&test.dialog);
    }

    DialogUnderTest test;
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
};
