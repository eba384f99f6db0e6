#pragma once

#include "host/options/HostOptions.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QDate>
#include <QMainWindow>
#include <QTimer>

#include <memory>

namespace backend {
class Session;
}

namespace GW {
class CAuthSettingDialog;
}

namespace KZ {
class CMenu;
class CSimpleTextWidget;
class CStandardTabControl;
} // namespace KZ

namespace host {

class AccountListView;
class AccountMessages;
class AuditView;
class ConnectionView;
class GrantFailures;
class MessageArea;
class OfflineNotice;

/// The client's window for one signed-in user: his accounts, their messages, the audit trail, and
/// the ways into the settings dialog. It owns the session and the dialog. GUI thread only.
class ClientWindow : public QMainWindow, public KZ::CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Installs the session's services; no other dialog may exist. `storeName` tells the user which
    /// store he works on.
    ClientWindow(std::unique_ptr<backend::Session> session, const QString& storeName);
    /// Destroys the dialog first, then takes the services back.
    ~ClientWindow() override;

    /// Opens the settings dialog; returns when the user has closed it.
    void openSettings(int pageId);
    /// The same for one account (its key or number) or sub-user.
    void openSettings(int pageId, int subPageId, const QString& key, int tab);

    AccountListView* accountList() const { return m_accounts; }
    AuditView* auditView() const { return m_audit; }
    MessageArea* messageArea() const { return m_messageArea; }
    GW::CAuthSettingDialog* settingsDialog() const { return m_dialog; }

    void onUiResourceChanged() override;

Q_SIGNALS:
    /// The user wants to sign out; the receiver destroys the window, later.
    void signOutRequested();
    /// The user has closed the window.
    void closed();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildMenus();
    void buildSettingsMenu();
    void buildViewMenu();
    void buildCentre();
    void buildStatusBar(const QString& storeName);
    void fillSubUserMenu();
    void openAccount(const QString& key);
    void showAuditTrail();
    void takeTheme();
    void reload();
    void tick();
    void onConnectionChanged(bool isOnline);

    std::unique_ptr<backend::Session> m_session;
    std::unique_ptr<AccountMessages> m_messages;
    std::unique_ptr<GrantFailures> m_grantFailures;
    GW::CAuthSettingDialog* m_dialog;
    KZ::CStandardTabControl* m_tabs = nullptr;
    AccountListView* m_accounts = nullptr;
    MessageArea* m_messageArea = nullptr;
    OfflineNotice* m_offlineNotice = nullptr;
    AuditView* m_audit = nullptr;
    KZ::CMenu* m_subUserMenu = nullptr;
    /// Null for a store on this machine.
    ConnectionView* m_connection = nullptr;
    KZ::CSimpleTextWidget* m_nearExpiry = nullptr;
    KZ::CSimpleTextWidget* m_clock = nullptr;
    QTimer m_clockTimer;
    QDate m_shownDay;
};

} // namespace host
