#include "tests/embedding/HostAuthClient.h"

void HostAuthClient::addAuth(QString grantee, const mbservice::CAccountInfo& account,
                             GW::CAuthLimit& limit, QVariant tag, bool toServer)
{
    Q_EMIT sigAddAuthResult(grantee, account, limit, QStringLiteral("ref"), tag, true, QString(),
                            toServer);
}

void HostAuthClient::delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag)
{
    Q_EMIT sigDelAuthResult(grantee, account, tag, true, QString());
}

void HostAuthClient::checkAuthuser(QString user)
{
    Q_EMIT sigCheckAuthuserResult(user, true, QString());
}

int HostAuthClient::exportAuth(const QString&, const QString&,
                               const QVector<boost::shared_ptr<GW::CAuthDetail>>&)
{
    return 1;
}

int HostAuthClient::exportAuth(const QString&, const QString&, boost::shared_ptr<GW::CAuthDetail>,
                               bool)
{
    return 1;
}

int HostAuthClient::importAuth(const QString&, const QString&)
{
    return 1;
}

bool HostAuthClient::getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out)
{
    out = grants.value(accountKey);
    return out != nullptr;
}

bool HostAuthClient::getAuthorizedFromMeInfo(QString user,
                                             QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out)
{
    out.clear();
    for (auto it = grants.cbegin(); it != grants.cend(); ++it) {
        if (it.value()->grantee == user)
            out.insert(it.key(), it.value());
    }
    return !out.isEmpty();
}

bool HostAuthClient::getSubUserList(QVector<QString>& out)
{
    out = {QStringLiteral("sub1")};
    return true;
}

bool HostAuthClient::isSubUserActive(QString)
{
    return true;
}

void HostAuthClient::setSubUser(QString user, bool enable)
{
    Q_EMIT sigSetSubUserResult(user, enable, true, QString());
}

void HostAuthClient::updateSubUser(QString user, QString password)
{
    Q_EMIT sigUpdatesubuserResult(user, password, true, QString());
}
