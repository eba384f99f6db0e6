#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace GW {

/// The authorization client: every change that the dialog makes goes through it.
///
/// Derive from it to connect the dialog to another server. All functions are called on the GUI
/// thread. Requests (functions without a result) return at once and are answered by exactly one
/// signal each, in any order and from any thread; the pages receive them on the GUI thread. The
/// reads and the file operations answer at once.
///
/// `tag` names the requesting page: the signal carries it back unchanged, and a page ignores the
/// results that carry another page's tag. `error` is the reason that the user reads after the
/// page's own words; empty on success.
class AUTHSETTING_EXPORT CAuthClient : public QObject
{
    Q_OBJECT

public:
    explicit CAuthClient(QObject* parent = nullptr);
    ~CAuthClient() override;

    /// Grants one account to `grantee`. With `toServer` the grant takes effect; without, it is only
    /// validated and prepared for a file, and takes effect by exportAuth(). `limit` lives no longer
    /// than the call. Answered by sigAddAuthResult().
    virtual void addAuth(QString grantee, const mbservice::CAccountInfo& account, CAuthLimit& limit,
                         QVariant tag, bool toServer) = 0;
    /// Cancels the grant of `account` to `grantee`. Answered by sigDelAuthResult().
    virtual void delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag) = 0;
    /// Checks that `user` exists and may receive grants. Answered by sigCheckAuthuserResult().
    virtual void checkAuthuser(QString user) = 0;
    /// Writes `grants` into an authorization file sealed with `password`; 0 = written, any other
    /// value = failed and no file left behind.
    virtual int exportAuth(const QString& filePath, const QString& password,
                           const QVector<boost::shared_ptr<CAuthDetail>>& grants) = 0;
    /// The same for one grant. `flag` is kept for servers that tell two kinds of files apart;
    /// the dialog passes false.
    virtual int exportAuth(const QString& filePath, const QString& password,
                           boost::shared_ptr<CAuthDetail> grant, bool flag) = 0;
    /// Opens an authorization file; 0 = opened, its validation is under way and is answered by
    /// sigValidAuth(); any other value = could not be opened, and no signal follows.
    virtual int importAuth(const QString& filePath, const QString& password) = 0;
    /// The current grant of one of the user's accounts, own or received; false without one, `out`
    /// is then not used.
    virtual bool getAuthDetail(QString accountKey, boost::shared_ptr<CAuthDetail>& out) = 0;
    /// The grants that the logged-in user made to `user`, by account key; false when they are not
    /// available, `out` then stays empty.
    virtual bool getAuthorizedFromMeInfo(QString user,
                                         QMap<QString, boost::shared_ptr<CAuthDetail>>& out) = 0;
    /// Names of the user's restricted users; false when the list is not available.
    virtual bool getSubUserList(QVector<QString>& out) = 0;
    /// Whether that restricted user is enabled; false for an unknown one.
    virtual bool isSubUserActive(QString user) = 0;
    /// Enables or disables a restricted user. Answered by sigSetSubUserResult().
    virtual void setSubUser(QString user, bool enable) = 0;
    /// Changes a restricted user's password; `password` is the digest the user will sign in with:
    /// utils::sha1_checksum() of the password's bytes as utils::hexlify() writes it. Answered by
    /// sigUpdatesubuserResult().
    virtual void updateSubUser(QString user, QString password) = 0;

Q_SIGNALS:
    // Unqualified, because a host may connect to this signature by its text.
    // clazy:excludeall=fully-qualified-moc-types
    /// Answers addAuth(); `grantRef` is the reference of the new grant, empty on failure.
    void sigAddAuthResult(QString grantee, mbservice::CAccountInfo account, CAuthLimit limit,
                          QString grantRef, QVariant tag, bool ok, QString error, bool toServer);
    /// Answers delAuth().
    void sigDelAuthResult(QString grantee, mbservice::CAccountInfo account, QVariant tag, bool ok,
                          QString error);
    /// Answers checkAuthuser().
    void sigCheckAuthuserResult(QString user, bool ok, QString error);
    /// Answers importAuth(): `qsKey` is the account key of the redeemed grant, `qsPassword` the
    /// account's secret (`accountPrivate`) that the file discloses. Never log the latter.
    void sigValidAuth(QString qsKey, QString qsPassword, bool bSuccess, QString qsError);
    /// Answers setSubUser(); `bEnabled` is the state that was requested.
    void sigSetSubUserResult(QString qSubuserId, bool bEnabled, bool bReslt, QString qsError);
    /// Answers updateSubUser(); `usrpsd` is the digest that was sent.
    void sigUpdatesubuserResult(QString usrid, QString usrpsd, bool bresult, QString error);
    /// Grants, accounts or restricted users of this user changed, by whomever.
    void sigUiUpdateAuth();
};

} // namespace GW
