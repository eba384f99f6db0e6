#pragma once

#include "authsetting/authorize/GrantMenu.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"

#include <climits>

/// The dialog in front of a user with the free accounts 1000 to 1002, the account 1003 that is
/// granted to "bob", and the enabled sub-users "u1" and "u2"; a client that answers when told.
struct TruthDesk
{
    TruthDesk()
    {
        nameFirms(services());
        services().client.subUsers = {QStringLiteral("u1"), QStringLiteral("u2")};
        services().client.activeSubUsers = {QStringLiteral("u1"), QStringLiteral("u2")};
        for (int number = 0; number < 4; ++number) {
            accounts.append(services().user.addAccount(1, 1, "9000", std::to_string(1000 + number),
                                                       mbservice::AUTH_TYPE_NOT_GRANTED));
            accounts.last()->accountPrivate = "secret of " + std::to_string(1000 + number);
        }
        services().grant(accounts[3], QStringLiteral("bob"), testToday(), testToday().addDays(5));
    }

    void showOverview() { desk.dialog.showPage(201, INT_MAX, QString(), 0); }
    void showBatch() { desk.dialog.showPage(201, INT_MAX, QString(), 1); }
    void showAccount(int number) { desk.dialog.showPage(201, 20101, accounts[number]->key(), 0); }
    void showSubUsers() { desk.dialog.showPage(203, INT_MAX, QString(), 0); }
    void showSubUser(const QString& user) { desk.dialog.showPage(203, 20401, user, 0); }

    /// Closes the dialog and opens it again, as a user does who does not want to wait.
    void reopen()
    {
        desk.dialog.close();
        desk.dialog.show();
    }

    /// Another desk changes an account; this one hears of it or does not.
    void grantElsewhere(int number, const QString& user, bool heard)
    {
        services().grant(accounts[number], user, testToday(), testToday().addDays(3));
        if (heard)
            Q_EMIT services().client.sigUiUpdateAuth();
    }

    FakeServices& services() { return desk.services; }
    FakeAuthClient& client() { return desk.services.client; }
    QWidget* page() { return desk.currentTab(); }
    KZ::COddEvenRowTable* table() { return page()->findChild<KZ::COddEvenRowTable*>(); }
    KZ::CComboBox* grantee() { return page()->findChild<KZ::CComboBox*>(); }
    KZ::CMediumNormalButton* grantButton() { return page()->findChild<KZ::CMediumNormalButton*>(); }
    GW::CGrantMenu* menu() { return page()->findChild<GW::CGrantMenu*>(); }

    void tick(int row)
    {
        auto* box = qobject_cast<KZ::CCheckBox*>(table()->itemWidget(row, 0));
        box->click();
    }

    void openMenu() { grantButton()->click(); }

    /// Chooses from the open menu as the mouse does.
    void choose(QAction* action)
    {
        GW::CGrantMenu* shown = menu();
        QTest::mouseClick(shown, Qt::LeftButton, {}, shown->actionGeometry(action).center());
    }
    void chooseServer() { choose(menu()->serverAction()); }
    void chooseFile() { choose(menu()->fileAction()); }

    /// Grants what the page shows into a file.
    void grantIntoFile(const QString& path, const QString& password)
    {
        ModalDriver dialogs(&desk.dialog);
        dialogs.answerFile(path);
        dialogs.answerPassword(password);
        openMenu();
        chooseFile();
    }

    /// Emits the answer of the `index`-th grant.
    void answer(int index, bool ok = true)
    {
        const FakeAuthClient::AddAuth request = client().addAuths.at(index);
        Q_EMIT client().sigAddAuthResult(request.grantee, request.account, request.limit,
                                         ok ? QStringLiteral("ref-%1").arg(index) : QString(),
                                         request.tag, ok, ok ? QString() : QStringLiteral("no"),
                                         request.toServer);
    }

    /// Lets answers come late enough to be shown at once.
    void wait() { clock.now += 1; }

    static QString changed() { return QStringLiteral("内容已变化，请核对后再操作"); }

    StandingClock clock;
    DialogUnderTest desk;
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
};
