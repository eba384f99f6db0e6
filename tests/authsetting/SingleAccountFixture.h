#pragma once

#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"
#include "authsetting/shell/RequestTag.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/authsetting/TabPageTools.h"

#include <QMenu>

/// A single account tab under a recorder, with one account of each kind that it tells apart.
struct SingleAccountFixture
{
    explicit SingleAccountFixture(bool single = true)
        : page(new GW::CAuthSettingSingleAccountAuthorizeTabPage(single, &top))
    {
        nameFirms(services);
        services.client.subUsers = {QStringLiteral("ops1"), QStringLiteral("ops2"),
                                    QStringLiteral("ops3")};
        services.client.activeSubUsers = {QStringLiteral("ops1"), QStringLiteral("ops3")};
        own = services.user.addAccount(1, 1, "9000", "1001", mbservice::AUTH_TYPE_NOT_GRANTED);
        own->accountPrivate = "secret of 1001";
        granted = services.user.addAccount(2, 1, "9000", "1002", mbservice::AUTH_TYPE_NOT_GRANTED);
        services.grant(granted, QStringLiteral("friend"), QDate(2026, 1, 5), QDate(2026, 4, 6));
        received =
            services.user.addAccount(3, 1, "9000", "1003", mbservice::AUTH_TYPE_GRANTED_TO_ME);
        page->resize(900, 500);
    }

    void show(const boost::shared_ptr<GW::CAccount>& account)
    {
        page->setKey(account ? account->key() : QStringLiteral("nobody"));
        page->reloadData();
    }

    /// As its page does on activation.
    void activate(const boost::shared_ptr<GW::CAccount>& account)
    {
        page->setEnabled(true);
        show(account);
        page->onActive();
    }

    bool deliver(int eventId, int param1, void* data = nullptr)
    {
        return page->handleEvent(eventId, param1, 0, QString(), data);
    }

    /// What the threshold's cell contains and whether the page took it.
    KZ::CCellEdit typeThreshold(const QString& text)
    {
        KZ::CCellEdit edit{text, true};
        deliver(45, 0, &edit);
        if (edit.accepted)
            table()->setItemText(0, 2, edit.text);
        return edit;
    }

    /// Lets the answer come late enough to be shown at once.
    void wait() { clock.now += 1; }

    KZ::CSoftCalendarLineEdit* start() const { return byId<KZ::CSoftCalendarLineEdit>(page, 4); }
    KZ::CSoftCalendarLineEdit* end() const { return byId<KZ::CSoftCalendarLineEdit>(page, 5); }
    KZ::CComboBox* grantee() const { return page->findChild<KZ::CComboBox*>(); }
    KZ::CLineEdit* field(int id) const { return byId<KZ::CLineEdit>(page, id); }
    KZ::COddEvenRowTable* table() const { return page->findChild<KZ::COddEvenRowTable*>(); }
    KZ::CMediumNormalButton* button() const { return byId<KZ::CMediumNormalButton>(page, 1); }
    QMenu* menu() const { return page->findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly); }
    KZ::CSimpleTextWidget* state() const
    {
        return page->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_account_state"));
    }
    QStringList captions() const
    {
        QStringList texts;
        for (const KZ::CSimpleTextWidget* text : page->findChildren<KZ::CSimpleTextWidget*>())
            texts.append(text->text());
        return texts;
    }

    FakeServices services;
    StandingClock clock;
    EventRecorder top;
    boost::shared_ptr<GW::CAccount> own;
    boost::shared_ptr<GW::CAccount> granted;
    boost::shared_ptr<GW::CAccount> received;
    GW::CAuthSettingSingleAccountAuthorizeTabPage* page;
};
