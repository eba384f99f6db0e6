#pragma once

#include "authsetting/services/AuthClient.h"

/// A client team's own authorization client, the smallest that does something: it grants whatever
/// it is asked to and knows no files.
class HostAuthClient : public GW::CAuthClient
{
    Q_OBJECT

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

    /// By account key.
    QMap<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
};
