#include "tests/monkey/SlowClient.h"

#include <boost/make_shared.hpp>

namespace monkey {

void SlowClient::note(Call call, bool awaitsAnswer)
{
    call.isOpen = awaitsAnswer;
    log.append(call);
    if (awaitsAnswer && onRequest)
        onRequest(static_cast<int>(log.size()) - 1);
}

void SlowClient::addAuth(QString grantee, const mbservice::CAccountInfo& account,
                         GW::CAuthLimit& limit, QVariant tag, bool toServer)
{
    Call call;
    call.kind = Call::Grant;
    call.user = grantee;
    call.account = account;
    call.limit = limit;
    call.tag = tag;
    call.toServer = toServer;
    note(call, true);
}

void SlowClient::delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag)
{
    Call call;
    call.kind = Call::Cancel;
    call.user = grantee;
    call.account = account;
    call.tag = tag;
    note(call, true);
}

void SlowClient::checkAuthuser(QString user)
{
    Call call;
    call.kind = Call::Check;
    call.user = user;
    note(call, true);
}

int SlowClient::exportAuth(const QString& filePath, const QString& password,
                           const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants)
{
    Call call;
    call.kind = Call::Export;
    call.path = filePath;
    call.password = password;
    for (const auto& grant : grants)
        call.grants.append(boost::make_shared<GW::CAuthDetail>(*grant));
    note(call, false);
    return exportResult;
}

int SlowClient::exportAuth(const QString& filePath, const QString& password,
                           boost::shared_ptr<GW::CAuthDetail> grant, bool)
{
    return exportAuth(filePath, password, QVector<boost::shared_ptr<GW::CAuthDetail>>{grant});
}

int SlowClient::importAuth(const QString& filePath, const QString& password)
{
    Call call;
    call.kind = Call::Import;
    call.path = filePath;
    call.password = password;
    note(call, importResult == 0);
    return importResult;
}

bool SlowClient::getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out)
{
    const bool found = FakeAuthClient::getAuthDetail(accountKey, out);
    if (onRead)
        onRead();
    return found;
}

bool SlowClient::getAuthorizedFromMeInfo(QString user,
                                         QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out)
{
    const bool found = FakeAuthClient::getAuthorizedFromMeInfo(user, out);
    if (onRead)
        onRead();
    return found;
}

bool SlowClient::getSubUserList(QVector<QString>& out)
{
    const bool found = FakeAuthClient::getSubUserList(out);
    if (onRead)
        onRead();
    return found;
}

bool SlowClient::isSubUserActive(QString user)
{
    const bool active = FakeAuthClient::isSubUserActive(user);
    if (onRead)
        onRead();
    return active;
}

void SlowClient::setSubUser(QString user, bool enable)
{
    Call call;
    call.kind = Call::SetUser;
    call.user = user;
    call.enable = enable;
    note(call, true);
}

void SlowClient::updateSubUser(QString user, QString password)
{
    Call call;
    call.kind = Call::Password;
    call.user = user;
    call.password = password;
    note(call, true);
}

QVector<int> SlowClient::open() const
{
    QVector<int> indexes;
    for (int index = 0; index < log.size(); ++index) {
        if (log.at(index).isOpen && !log.at(index).isForgotten)
            indexes.append(index);
    }
    return indexes;
}

} // namespace monkey
