#include "benchmarks/support/BenchAuthClient.h"

namespace bench {

void BenchAuthClient::addAuth(QString grantee, const mbservice::CAccountInfo& account,
                              GW::CAuthLimit& limit, QVariant tag, bool toServer)
{
    const GW::CAuthLimit sent = limit;
    QMetaObject::invokeMethod(
        this,
        [=, this] {
            Q_EMIT sigAddAuthResult(grantee, account, sent, QStringLiteral("ref"), tag,
                                    refusal.isEmpty(), refusal, toServer);
        },
        Qt::QueuedConnection);
}

void BenchAuthClient::delAuth(QString, mbservice::CAccountInfo, QVariant) {}

void BenchAuthClient::checkAuthuser(QString) {}

int BenchAuthClient::exportAuth(const QString&, const QString&,
                                const QVector<boost::shared_ptr<GW::CAuthDetail>>&)
{
    return 0;
}

int BenchAuthClient::exportAuth(const QString&, const QString&, boost::shared_ptr<GW::CAuthDetail>,
                                bool)
{
    return 0;
}

int BenchAuthClient::importAuth(const QString&, const QString&)
{
    return 1;
}

bool BenchAuthClient::getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out)
{
    const auto found = grants.constFind(accountKey);
    if (found == grants.constEnd())
        return false;
    out = *found;
    return true;
}

bool BenchAuthClient::getAuthorizedFromMeInfo(
    QString user, QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out)
{
    out = grantedTo.value(user);
    return true;
}

bool BenchAuthClient::getSubUserList(QVector<QString>& out)
{
    out = subUsers;
    return true;
}

bool BenchAuthClient::isSubUserActive(QString user)
{
    return !user.endsWith(QLatin1Char('0'));
}

void BenchAuthClient::setSubUser(QString, bool) {}

void BenchAuthClient::updateSubUser(QString, QString) {}

} // namespace bench
