#include "tests/support/fakes/FakeAuthClient.h"

#include <QTest>

void FakeAuthClient::addAuth(QString grantee, const mbservice::CAccountInfo& account,
                             GW::CAuthLimit& limit, QVariant tag, bool toServer)
{
    calls.append(QStringLiteral("addAuth"));
    addAuths.append({grantee, account, limit, tag, toServer});
}

void FakeAuthClient::delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag)
{
    calls.append(QStringLiteral("delAuth"));
    delAuths.append({grantee, account, tag});
}

void FakeAuthClient::checkAuthuser(QString user)
{
    calls.append(QStringLiteral("checkAuthuser"));
    checkedUsers.append(user);
}

int FakeAuthClient::exportAuth(const QString& filePath, const QString& password,
                               const QVector<boost::shared_ptr<GW::CAuthDetail>>& toExport)
{
    calls.append(QStringLiteral("exportAuth"));
    exports.append({filePath, password, toExport, false, true});
    return exportResult;
}

int FakeAuthClient::exportAuth(const QString& filePath, const QString& password,
                               boost::shared_ptr<GW::CAuthDetail> grant, bool flag)
{
    calls.append(QStringLiteral("exportAuth"));
    exports.append({filePath, password, {grant}, true, flag});
    return exportResult;
}

int FakeAuthClient::importAuth(const QString& filePath, const QString& password)
{
    calls.append(QStringLiteral("importAuth"));
    imports.append({filePath, password});
    return importResult;
}

bool FakeAuthClient::getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out)
{
    const auto found = grants.constFind(accountKey);
    if (found == grants.constEnd())
        return false;
    out = *found;
    return true;
}

bool FakeAuthClient::getAuthorizedFromMeInfo(QString user,
                                             QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out)
{
    out.clear();
    for (auto grant = grants.constBegin(); grant != grants.constEnd(); ++grant) {
        if (grant.value()->grantee == user)
            out.insert(grant.key(), grant.value());
    }
    return true;
}

bool FakeAuthClient::getSubUserList(QVector<QString>& out)
{
    if (!subUserListAvailable)
        return false;
    out = subUsers;
    return true;
}

bool FakeAuthClient::isSubUserActive(QString user)
{
    return activeSubUsers.contains(user);
}

void FakeAuthClient::setSubUser(QString user, bool enable)
{
    calls.append(QStringLiteral("setSubUser"));
    setSubUsers.append({user, enable, QString()});
}

void FakeAuthClient::updateSubUser(QString user, QString password)
{
    calls.append(QStringLiteral("updateSubUser"));
    updateSubUsers.append({user, false, password});
}

void FakeAuthClient::answerAdd(bool ok, const QString& error, const QString& ref)
{
    QVERIFY2(m_answeredAdds < addAuths.size(), "no open addAuth request");
    const AddAuth request = addAuths.at(m_answeredAdds++);
    Q_EMIT sigAddAuthResult(request.grantee, request.account, request.limit, ref, request.tag, ok,
                            error, request.toServer);
}

void FakeAuthClient::answerDel(bool ok, const QString& error)
{
    QVERIFY2(m_answeredDels < delAuths.size(), "no open delAuth request");
    const DelAuth request = delAuths.at(m_answeredDels++);
    Q_EMIT sigDelAuthResult(request.grantee, request.account, request.tag, ok, error);
}
