#pragma once

#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/PushButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/authsetting/TabPageTools.h"

#include <QMenu>

/// The tab of the sub-user "ops" (enabled) under a recorder. Rows: 0 and 1 are free accounts, 2 is
/// granted to him, 3 to somebody else.
struct SubUserFixture
{
    SubUserFixture()
    {
        nameFirms(services);
        services.client.subUsers = {QStringLiteral("ops")};
        services.client.activeSubUsers = {QStringLiteral("ops")};
        for (int number = 0; number < 4; ++number) {
            accounts.append(services.user.addAccount(1, 1, "9000", "100" + std::to_string(number),
                                                     mbservice::AUTH_TYPE_NOT_GRANTED));
            accounts.last()->accountPrivate = "secret " + std::to_string(number);
        }
        services.grant(accounts[2], QStringLiteral("ops"), QDate(2026, 1, 2), QDate(2026, 5, 6));
        services.grant(accounts[3], QStringLiteral("friend"), QDate(2026, 2, 3), QDate(2026, 6, 7));
        page->resize(900, 500);
        page->setKey(QStringLiteral("ops"));
    }

    bool deliver(int eventId, int param1 = 0)
    {
        return page->handleEvent(eventId, param1, 0, QString(), nullptr);
    }

    /// Ticks or unticks as the user does.
    void tick(int row, bool ticked = true)
    {
        table()->setItemChecked(row, 0, ticked);
        deliver(59, 100 + row);
    }

    void setDays(const QDate& first, const QDate& last)
    {
        start()->setDate(first);
        end()->setDate(last);
    }

    /// Shows the tab with a free row made pending for the 10th to the 12th of March 2026.
    void makePending(int row)
    {
        page->reloadData();
        setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        tick(row);
    }

    void disableUser()
    {
        services.client.activeSubUsers.clear();
        page->reloadData();
    }

    void typePasswords(const QString& password, const QString& confirmation)
    {
        this->password()->setText(password);
        confirm()->setText(confirmation);
    }

    /// Emits the answer of the `index`-th addAuth request.
    void answer(int index, bool ok = true, const QString& text = QStringLiteral("ref"))
    {
        const FakeAuthClient::AddAuth request = services.client.addAuths.at(index);
        Q_EMIT services.client.sigAddAuthResult(request.grantee, request.account, request.limit,
                                                text, request.tag, ok, QStringLiteral("reason"),
                                                request.toServer);
    }

    /// Grants what is pending into a file up to the client's answers.
    void sendFileGrant(const QString& filePassword = QStringLiteral("pw"))
    {
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/sub-user.taa"));
        dialogs.answerPassword(filePassword);
        page->onFileAuthTriggered(false);
    }

    /// Lets answers come late enough to be shown at once.
    void wait() { clock.now += 1; }

    int navigatorReloads() const { return int(top.of(GW::EVENT_RELOAD_NAVIGATOR).size()); }

    KZ::COddEvenRowTable* table() const { return page->findChild<KZ::COddEvenRowTable*>(); }
    KZ::CSoftCalendarLineEdit* start() const { return byId<KZ::CSoftCalendarLineEdit>(page, 3); }
    KZ::CSoftCalendarLineEdit* end() const { return byId<KZ::CSoftCalendarLineEdit>(page, 4); }
    KZ::CSoftKeyboardLineEdit* password() const { return byId<KZ::CSoftKeyboardLineEdit>(page, 1); }
    KZ::CSoftKeyboardLineEdit* confirm() const { return byId<KZ::CSoftKeyboardLineEdit>(page, 2); }
    KZ::CLineEdit* name() const { return byId<KZ::CLineEdit>(page, 0); }
    KZ::CPushButton* stateButton() const { return byId<KZ::CPushButton>(page, 1); }
    KZ::CMediumNormalButton* grantButton() const { return byId<KZ::CMediumNormalButton>(page, 2); }
    QMenu* menu() const { return page->findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly); }
    KZ::CSimpleTextWidget* state() const
    {
        return page->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_sub_user_state"));
    }
    QString cell(int row, int column) const { return table()->itemText(row, column); }
    bool ticked(int row) const { return table()->isItemChecked(row, 0); }

    FakeServices services;
    StandingClock clock;
    EventRecorder top;
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
    GW::CAuthSettingSingleRestrictedUserGeneralTabPage* page =
        new GW::CAuthSettingSingleRestrictedUserGeneralTabPage(&top);
};
