#pragma once

#include "authsetting/authorize/UserCheck.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"
#include "authsetting/shell/AuthSettingTabPage.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVariant>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace GW {

class CAccount;
class CBatchForm;
class CGrantMenu;

/// The tab "批量授权": grants every ticked account to one user for a range of days, on the server
/// or into an authorization file, and cancels the grant of a single row.
///
/// One request per account goes out at once; the last answer ends the wait. Failures are told one
/// by one as they arrive, and a success is told as soon as one account was granted.
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
    void buildMenu();
    void connectClient();
    void fillTable();

    bool isReadyToGrant();
    void grantSelected(const QString& password, bool toServer);
    /// A grant as the form says, of no account yet.
    CAuthDetail newGrant() const;
    void announceGrant(const mbservice::CAccountInfo& account);
    /// The shown account with this key; empty when there is none.
    boost::shared_ptr<CAccount> accountOf(const QString& key);
    void finishGrant(bool toServer);
    void cancelGrant(int row);
    void showCancelResult(bool ok, QString error);

    void onTicked(int row, bool ticked);
    void checkGrantee();
    void checkDates();
    void popUpMenu();
    void reloadEverything();

    CBatchForm* m_form;
    CGrantMenu* m_authMenu = nullptr;
    CUserCheck m_userCheck;
    /// Row of the last cancel request.
    int m_cancelRow = -1;
    /// Accounts by row identifier.
    QVector<boost::shared_ptr<CAccount>> m_accounts;
    /// The first element of m_accounts with each account key; empty until one is looked for.
    QHash<QString, qsizetype> m_accountIndex;
    /// Keys of the accounts whose grant is still to be answered.
    QSet<QString> m_pendingKeys;
    /// How many of them there were.
    qsizetype m_requested = 0;
    /// Password of the current file grant, empty for a server grant.
    QString m_exportPassword;
    /// File of the current file grant.
    QString m_exportPath;
    /// The grants confirmed during the current request.
    QVector<boost::shared_ptr<CAuthDetail>> m_granted;
};

} // namespace GW
