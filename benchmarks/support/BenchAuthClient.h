#pragma once

#include "authsetting/services/AuthClient.h"

#include <QHash>

namespace bench {

/// An authorization client that answers at once from memory: what a page costs without a store.
class BenchAuthClient : public GW::CAuthClient
{
public:
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

    QHash<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
    QHash<QString, QMap<QString, boost::shared_ptr<GW::CAuthDetail>>> grantedTo;
    QVector<QString> subUsers;
    /// What every addAuth is answered with; empty = granted.
    QString refusal;
};

} // namespace bench
