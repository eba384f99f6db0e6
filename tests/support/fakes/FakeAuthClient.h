#pragma once

#include "authsetting/services/AuthClient.h"

#include <QSet>
#include <QStringList>

/// Records every request and answers none by itself: a test emits the result it wants, either
/// through the signals or with the answer…() helpers, which answer the oldest open request.
class FakeAuthClient : public GW::CAuthClient
{
    Q_OBJECT

public:
    struct AddAuth
    {
        QString grantee;
        mbservice::CAccountInfo account;
        GW::CAuthLimit limit;
        QVariant tag;
        bool toServer = false;
    };
    struct DelAuth
    {
        QString grantee;
        mbservice::CAccountInfo account;
        QVariant tag;
    };
    struct Export
    {
        QString path;
        QString password;
        QVector<boost::shared_ptr<GW::CAuthDetail>> grants;
        bool oneGrantForm = false;
        bool flag = true;
    };
    struct Import
    {
        QString path;
        QString password;
    };
    struct SubUserRequest
    {
        QString user;
        bool enable = false;
        QString digest;
    };

    using GW::CAuthClient::CAuthClient;

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

    /// Emits the result of the oldest open addAuth / delAuth request and closes it.
    void answerAdd(bool ok, const QString& error = QString(), const QString& ref = QString());
    void answerDel(bool ok, const QString& error = QString());

    /// Names of all operations in the order of their calls, for tests of order.
    QStringList calls;
    QVector<AddAuth> addAuths;
    QVector<DelAuth> delAuths;
    QStringList checkedUsers;
    QVector<Export> exports;
    QVector<Import> imports;
    QVector<SubUserRequest> setSubUsers;
    QVector<SubUserRequest> updateSubUsers;

    /// What the reads and the file operations answer.
    QMap<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
    QVector<QString> subUsers;
    QSet<QString> activeSubUsers;
    bool subUserListAvailable = true;
    int exportResult = 0;
    int importResult = 0;

private:
    int m_answeredAdds = 0;
    int m_answeredDels = 0;
};
