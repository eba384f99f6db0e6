#pragma once

#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/authorize/BatchAccountsTable.h"
#include "authsetting/services/AccountKey.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/fakes/FakeServices.h"

#include <QMenu>

#include <initializer_list>

/// The batch tab under a recorder in the dialog's place, with a client that answers nothing by
/// itself. Today is 2026-03-02.
struct BatchUnderTest
{
    BatchUnderTest()
    {
        services.config.addPlatform(1, QStringLiteral("期货一"));
        services.config.addStkPlatform(1, QStringLiteral("股票一"));
        services.user.brokers.insert({1, QStringLiteral("b")}, QStringLiteral("期货公司"));
        services.user.stkBrokers.insert({1, QStringLiteral("b")}, QStringLiteral("证券公司"));
        create();
    }

    void create()
    {
        page = new GW::CAuthSettingAccountsAuthorizeTabPage(&dialog);
        table = page->findChild<KZ::COddEvenRowTable*>(QStringLiteral("halden_batch_table"));
        grantee = page->findChild<KZ::CComboBox*>(QStringLiteral("halden_batch_grantee"));
        start = page->findChild<KZ::CSoftCalendarLineEdit*>(QStringLiteral("halden_batch_start"));
        end = page->findChild<KZ::CSoftCalendarLineEdit*>(QStringLiteral("halden_batch_end"));
        button =
            page->findChild<KZ::CMediumNormalButton*>(QStringLiteral("halden_batch_authorize"));
        menu = page->findChild<QMenu*>(QStringLiteral("halden_batch_menu"));
    }

    /// Shows the page as the dialog would.
    void show()
    {
        page->setEnabled(true);
        page->resize(900, 600);
        page->show();
        dialog.resize(900, 600);
        dialog.show();
    }

    boost::shared_ptr<GW::CAccount>
    add(const char* id, int type = 1, mbservice::EAuthType state = mbservice::AUTH_TYPE_NOT_GRANTED)
    {
        auto account = services.user.addAccount(type, 1, "b", id, state);
        account->accountPrivate = std::string("secret of ") + id;
        return account;
    }

    boost::shared_ptr<GW::CAccount> addGranted(const char* id, const QString& user)
    {
        auto account = add(id);
        services.grant(account, user, QDate(2026, 3, 4), QDate(2026, 3, 9));
        return account;
    }

    /// Shows the page with these accounts of the user's own.
    void open(std::initializer_list<const char*> ids)
    {
        for (const char* id : ids)
            add(id);
        page->reloadData();
        show();
    }

    QStringList row(int row) const
    {
        QStringList texts;
        for (int column = 1; column < 8; ++column)
            texts.append(table->itemText(row, column));
        return texts;
    }

    /// Ticks or unticks a row as the user does.
    void tick(int row, bool ticked)
    {
        auto* box = qobject_cast<KZ::CCheckBox*>(table->itemWidget(row, 0));
        if (box->isChecked() != ticked)
            box->click();
    }

    void tickAllAndName(const QString& user)
    {
        for (int row = 0; row < table->rowCount(); ++row) {
            if (table->isItemCheckEnabled(row, 0))
                tick(row, true);
        }
        grantee->setEditText(user);
    }

    void grantAllTo(const QString& user)
    {
        tickAllAndName(user);
        page->onServerAuthTriggered(false);
    }

    FakeServices services;
    EventRecorder dialog;
    GW::CAuthSettingAccountsAuthorizeTabPage* page = nullptr;
    KZ::COddEvenRowTable* table = nullptr;
    KZ::CComboBox* grantee = nullptr;
    KZ::CSoftCalendarLineEdit* start = nullptr;
    KZ::CSoftCalendarLineEdit* end = nullptr;
    KZ::CMediumNormalButton* button = nullptr;
    QMenu* menu = nullptr;
};
