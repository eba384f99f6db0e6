#pragma once

#include "authsetting/authorize/GrantChoice.h"
#include "authsetting/authorize/GrantRequests.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"
#include "authsetting/subusers/BurstGate.h"
#include "authsetting/subusers/PendingGrants.h"

#include <QString>
#include <QVariant>

namespace KZ {
class CMediumNormalButton;
class CPushButton;
} // namespace KZ

namespace GW {

class CRestrictedUserForm;
class CRestrictedUserTable;

/// One restricted user, named by the tab page's key: enables him with a new password, disables
/// him, grants the user's accounts to him on the server or into a file, and cancels such grants.
///
/// Result signals are connected once more by every action that asks for one, so results come more
/// than once and everything that follows from one is repeated with it. A request that is out goes
/// on by its own copy whatever the page shows by then, and what the user starts goes out only while
/// it is as he saw it. GUI thread only.
class CAuthSettingSingleRestrictedUserGeneralTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingSingleRestrictedUserGeneralTabPage(QWidget* parent);
    ~CAuthSettingSingleRestrictedUserGeneralTabPage() override;

    /// Does nothing while a grant to the user shown is under way, whose pending accounts it would
    /// forget.
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
    CGrantChoice::Page asPage();
    void buildLayout();
    void fill();

    CAuthLimit fillRow(int row);
    void refillRow(int row);
    int runsAtOnce() const;
    void showState();
    void showStateToolTip(bool enabled);
    void refreshRows();
    void refreshRow(int row);
    void markRow(int row, bool granted);

    void onClicked(int id, void* sender);
    void onRowToggled(int id);
    void dropPending(int row);
    void onStateButton(const void* sender);
    bool isShownStateTrue() const;
    bool sendPassword();
    void reloadEverything();
    void reloadNavigator();
    void cancelRow(int row);

    /// Whether page and user are still those for whom `pending` was shown, and every account of it
    /// is still ticked and can be granted.
    bool stillHolds(const CPendingGrants& pending) const;
    void tellChanged(QWidget* control);
    bool checkSelection();
    void beginGrant();
    void endGrant(const CGrantRequests::Pointer& request);
    void authPasswordForFile(QString password);
    void grantPending(const QString& password, bool toServer);
    void afterGrant(const CGrantRequests::Pointer& request, bool toServer);
    void repeatAfterGrant();
    void exportGrant(const CGrantRequests::Pointer& request);

    CRestrictedUserForm* m_form = nullptr;
    KZ::CPushButton* m_stateButton = nullptr;
    KZ::CMediumNormalButton* m_grantButton = nullptr;
    CRestrictedUserTable* m_table = nullptr;
    /// The user for whom the form was filled.
    QString m_shownKey;
    /// The user whose name and state stand there: without a key the form keeps the one before.
    QString m_namedUser;
    bool m_shownEnabled = false;
    /// File and password for the grant that is about to be asked for.
    QString m_exportPath;
    QString m_exportPassword;
    /// A grant is under way: reloads are skipped.
    bool m_granting = false;
    int m_endedGrants = 0;
    CPendingGrants m_pending;
    CGrantChoice m_choice;
    // Behind the choice, so that a page that goes with its menu open is not filled once more.
    CReloadGate m_reloads;
    COutcomes m_outcomes;
    CGrantRequests m_requests;
    /// The latest request that was made from the form as it is filled now.
    CGrantRequests::Pointer m_formRequest;
    /// The request of the latest result, and whether that belonged to a grant on the server.
    CGrantRequests::Pointer m_lastRequest;
    bool m_lastToServer = false;
    quint64 m_cancelRequest = 0;
    quint64 m_stateRequest = 0;
    CBurstGate m_refreshGate;
    CBurstGate m_grantGate;
    CBurstGate m_stateGate;
};

} // namespace GW
