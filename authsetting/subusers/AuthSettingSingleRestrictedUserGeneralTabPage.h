#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/subusers/BurstGate.h"
#include "authsetting/subusers/PendingGrants.h"

#include <QString>
#include <QVariant>

namespace KZ {
class CMediumNormalButton;
class CPushButton;
} // namespace KZ

namespace GW {

class CGrantMenu;
class CRestrictedUserForm;
class CRestrictedUserTable;

/// One restricted user, named by the tab page's key: enables him with a new password, disables
/// him, grants the user's accounts to him on the server or into a file, and cancels such grants.
///
/// Result signals are connected once more by every action that asks for one, so results come more
/// than once and everything that follows from one is repeated with it. GUI thread only.
class CAuthSettingSingleRestrictedUserGeneralTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingSingleRestrictedUserGeneralTabPage(QWidget* parent);
    ~CAuthSettingSingleRestrictedUserGeneralTabPage() override;

    /// Does nothing while a grant is under way, whose pending accounts it would forget.
    void reloadData() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

public Q_SLOTS:
    void slotUpdatesubuserResult(QString usrid, QString usrpsd, bool bresult, QString error);
    void slotSetsubuserResult(QString qSubuserId, bool bEnabled, bool bReslt, QString qsError);
    void slotAddAuthResult(QString user, mbservice::CAccountInfo account, CAuthLimit limit,
                           QString text, QVariant tag, bool ok, QString error, bool toServer);
    void slotDelAuthResult(QString user, mbservice::CAccountInfo account, QVariant tag, bool ok,
                           QString error);
    /// Grants the pending accounts on the server.
    void slotGetAuthPasswordFromServer(QString qsPassword);
    void onFileAuthTriggered(bool checked);
    void onServerAuthTriggered(bool checked);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void buildLayout();

    CAuthLimit fillRow(int row);
    void refillRow(int row);
    int runsAtOnce() const;
    void showState();
    void showStateToolTip(bool enabled);
    void refreshRows();
    void refreshRow(int row);
    void markRow(int row, bool granted);

    void onClicked(int id);
    void onRowToggled(int id);
    void onStateButton();
    bool sendPassword();
    void reloadEverything();
    void reloadNavigator();
    void cancelRow(int row);

    bool checkSelection();
    void beginGrant();
    void endGrant();
    void authPasswordForFile(QString password);
    void grantPending(const QString& password, bool toServer);
    void afterGrant(bool toServer);
    void repeatAfterGrant();
    void exportPending();

    CRestrictedUserForm* m_form = nullptr;
    KZ::CPushButton* m_stateButton = nullptr;
    KZ::CMediumNormalButton* m_grantButton = nullptr;
    CRestrictedUserTable* m_table = nullptr;
    CGrantMenu* m_menu = nullptr;
    /// To whom the current grant goes: the page may show another user before its results are in.
    QString m_grantee;
    QString m_exportPath;
    QString m_exportPassword;
    /// A grant is under way: reloads are skipped.
    bool m_granting = false;
    int m_endedGrants = 0;
    CPendingGrants m_pending;
    /// Whether the latest result belonged to a grant on the server.
    bool m_lastToServer = false;
    CBurstGate m_refreshGate;
    CBurstGate m_grantGate;
    CBurstGate m_stateGate;
};

} // namespace GW
