#pragma once

#include "authsetting/authorize/BatchOffer.h"
#include "authsetting/authorize/GrantChoice.h"
#include "authsetting/authorize/GrantRequests.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/Outcomes.h"
#include "authsetting/shell/ReloadGate.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace GW {

class CAccount;
class CBatchForm;

/// The tab "批量授权": grants every ticked account to one user for a range of days, on the server
/// or into an authorization file, and cancels the grant of a single row.
///
/// One request per account goes out at once; the last answer ends the wait. Failures are told one
/// by one as they arrive, and a success is told as soon as one account was granted. What the user
/// chose in the menu goes out only as he saw it when the menu opened, otherwise not at all.
class CAuthSettingAccountsAuthorizeTabPage : public IAuthSettingTabPage
{
    Q_OBJECT

public:
    explicit CAuthSettingAccountsAuthorizeTabPage(QWidget* parent);
    ~CAuthSettingAccountsAuthorizeTabPage() override;

    void reloadData() override;
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

    /// Grants the selected accounts for a file that `password` will seal.
    void authPasswordForFile(QString password);

public Q_SLOTS:
    void slotAddAuthResult(QString grantee, mbservice::CAccountInfo account, CAuthLimit limit,
                           QString grantRef, QVariant tag, bool ok, QString error, bool toServer);
    void slotDelAuthResult(QString grantee, mbservice::CAccountInfo account, QVariant tag, bool ok,
                           QString error);
    void slotCheckAuthuserResult(QString user, bool ok, QString error);
    /// Grants the selected accounts on the server.
    void slotAuthPasswordForServer(QString password);
    void onFileAuthTriggered(bool checked);
    void onServerAuthTriggered(bool checked);

private:
    CGrantChoice::Page asPage();
    void connectClient();
    void fill();
    void fillTable();

    CBatchOffer shownOffer() const;
    /// Whether the page still shows the offer and all of its accounts can be granted.
    bool stillHolds(const CBatchOffer& offer) const;
    void tellChanged();

    bool isReadyToGrant();
    void grantSelected(const QString& password, bool toServer);
    void announceGrant(const mbservice::CAccountInfo& account);
    /// The shown account with this key; empty when there is none.
    boost::shared_ptr<CAccount> accountOf(const QString& key);
    /// Its row; -1 when there is none.
    int rowOf(const QString& key);
    void finishGrant(const CGrantRequests::Pointer& request, bool toServer);
    void cancelGrant(int row);
    void showCancelResult(bool ok, QString error);

    void onTicked(int row, bool ticked);
    void checkGrantee();
    void checkDates();
    void reloadEverything();

    CBatchForm* m_form;
    CGrantChoice m_choice;
    // Behind the choice, so that a page that goes with its menu open is not filled once more.
    CReloadGate m_reloads;
    COutcomes m_outcomes;
    CGrantRequests m_requests;
    /// Row and account of the last cancel request, and its number.
    int m_cancelRow = -1;
    QString m_cancelKey;
    quint64 m_cancelRequest = 0;
    /// Accounts by row identifier.
    QVector<boost::shared_ptr<CAccount>> m_accounts;
    /// The first element of m_accounts with each account key; empty until one is looked for.
    QHash<QString, qsizetype> m_accountIndex;
    /// Password and file for the grant that is about to be asked for.
    QString m_exportPassword;
    QString m_exportPath;
};

} // namespace GW
