#pragma once

#include "tests/monkey/Call.h"
#include "tests/support/fakes/FakeAuthClient.h"

#include <functional>

namespace monkey {

/// A client that keeps every request open until it is told how to answer it.
class SlowClient : public FakeAuthClient
{
    Q_OBJECT

public:
    using FakeAuthClient::FakeAuthClient;

    void addAuth(QString grantee, const mbservice::CAccountInfo& account, GW::CAuthLimit& limit,
                 QVariant tag, bool toServer) override;
    void delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag) override;
    void checkAuthuser(QString user) override;
    int exportAuth(const QString& filePath, const QString& password,
                   const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants) override;
    int exportAuth(const QString& filePath, const QString& password,
                   boost::shared_ptr<GW::CAuthDetail> grant, bool flag) override;
    int importAuth(const QString& filePath, const QString& password) override;
    bool getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out) override;
    bool getAuthorizedFromMeInfo(QString user,
                                 QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out) override;
    bool getSubUserList(QVector<QString>& out) override;
    bool isSubUserActive(QString user) override;
    void setSubUser(QString user, bool enable) override;
    void updateSubUser(QString user, QString password) override;

    /// Indexes of the requests that can still be answered.
    QVector<int> open() const;

    /// Everything that reached the client, in order.
    QVector<Call> log;
    /// Called at the end of every read and of every request with its index.
    std::function<void()> onRead;
    std::function<void(int)> onRequest;

private:
    void note(Call call, bool awaitsAnswer);
};

} // namespace monkey
