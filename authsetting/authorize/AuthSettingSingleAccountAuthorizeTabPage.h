#pragma once

#include "authsetting/authorize/GrantChoice.h"
#include "authsetting/authorize/GrantRequests.h"
#include "authsetting/authorize/ShownAccount.h"
#include "authsetting/authorize/SingleAccountOffer.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"
#include "authsetting/services/AuthType.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"

#include <QString>
#include <QVariant>

#include <boost/shared_ptr.hpp>

namespace GW {

class CAccount;
class CSingleAccountForm;

/// One of the user's accounts, named by the tab page's key: grants it to one user, on the server or
/// into a file, for a range of days and with an optional margin condition, or cancels its grant.
///
/// A reload leaves the grant button disabled; becoming active enables it where there is something
/// to do: for an own account that is not granted and a range of at least one day, and for a granted
/// one. What the user starts goes out only while account and form are as he saw them. GUI thread
/// only.
class CAuthSettingSingleAccountAuthorizeTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    /// `single` puts the tab page under the user's own accounts, otherwise under the imported ones.
    CAuthSettingSingleAccountAuthorizeTabPage(bool single, QWidget* parent);
    ~CAuthSettingSingleAccountAuthorizeTabPage() override;

    void reloadData() override;
    void onActive() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

public Q_SLOTS:
    void slotAddAuthResult(QString grantee, mbservice::CAccountInfo account, CAuthLimit limit,
                           QString grantRef, QVariant tag, bool ok, QString error, bool toServer);
    void slotDelAuthResult(QString grantee, mbservice::CAccountInfo account, QVariant tag, bool ok,
                           QString error);
    void slotCheckAuthuserResult(QString user, bool ok, QString error);
    /// Grants the account on the server.
    void slotAuthPasswordForServer(QString password);
    void onFileAuthTriggered(bool checked);
    void onServerAuthTriggered(bool checked);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    boost::shared_ptr<CAccount> account() const;
    mbservice::EAuthType authType() const;
    CGrantChoice::Page asPage();
    void connectClient();
    void fill();
    bool checkGrantee();
    void checkDates();
    void onGrantButton(const void* sender);
    CSingleAccountOffer shownOffer() const;
    bool stillHolds(const CSingleAccountOffer& offer) const;
    void tellChanged();
    void authPasswordForFile(QString password);
    void grant(const CAuthLimit& limit, bool toServer);
    void finishGrant(const CGrantRequests::Pointer& request, const CAuthDetail& confirmed,
                     bool toServer);
    void cancelGrant();
    void reloadEverything();

    CSingleAccountForm* m_form;
    boost::shared_ptr<CAuthDetail> m_granted;
    /// Password and file for the grant that is about to be asked for.
    QString m_exportPassword;
    QString m_exportPath;
    /// The account that the form shows.
    CShownAccount m_shown;
    CGrantChoice m_choice;
    // Behind the choice, so that a page that goes with its menu open is not filled once more.
    CReloadGate m_reloads;
    COutcomes m_outcomes;
    CGrantRequests m_requests;
    quint64 m_cancelRequest = 0;
    /// The user did not leave an editor that a reload or hiding the page took from him.
    bool m_leavingByProgram = false;
    /// The dialog put the user into the grantee's box, and he has not typed there since.
    bool m_enteredByProgram = false;
};

} // namespace GW
