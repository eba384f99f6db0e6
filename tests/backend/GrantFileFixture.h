#pragma once

#include "authsetting/services/UserConfig.h"
#include "backend/store/ExportError.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/StoreFixture.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <boost/make_shared.hpp>

#include <memory>

using Details = QVector<boost::shared_ptr<GW::CAuthDetail>>;

inline const QString password = QStringLiteral("文件密码");

inline int authType(backend::Session& session, int account)
{
    const auto record = session.userConfig()->getAccountData(StoreFixture::key(account));
    return record ? record->authType : -1;
}

inline bool put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

inline QString accepted(int account)
{
    return QStringLiteral("valid %1 secret-%2 ok").arg(StoreFixture::key(account)).arg(account);
}

/// Two users at their desks, and what passes between them.
class Desks
{
public:
    Desks() : ready(fixture.fill() != nullptr), alice(fixture.signIn(name::alice)) {}

    QString path(const QString& fileName) const
    {
        return QDir(fixture.folder()).filePath(fileName);
    }
    QStringList taaFiles() const
    {
        return QDir(fixture.folder()).entryList(QDir::Files | QDir::Hidden);
    }

    /// The grant as a page builds it from the answer to its preparation.
    boost::shared_ptr<GW::CAuthDetail> prepare(int account, const QString& grantee)
    {
        return prepare(account, grantee, fixture.days(0, 7));
    }
    boost::shared_ptr<GW::CAuthDetail> prepare(int account, const QString& grantee,
                                               GW::CAuthLimit limit)
    {
        ClientSpy spy(alice->authClient());
        alice->authClient()->addAuth(grantee, StoreFixture::account(account), limit, {}, false);
        [&] { QTRY_COMPARE(spy.references.size(), 1); }();
        auto detail = boost::make_shared<GW::CAuthDetail>();
        detail->grantRef = spy.references.value(0);
        detail->grantor = name::alice;
        detail->grantee = grantee;
        detail->account = StoreFixture::account(account);
        detail->limit = limit;
        return detail;
    }
    backend::ExportError write(const QString& fileName, const Details& grants)
    {
        return static_cast<backend::ExportError>(
            alice->authClient()->exportAuth(path(fileName), password, grants));
    }

    /// The answers to importing a file as `user`.
    QStringList import(const QString& user, const QString& fileName, int answers = 1)
    {
        const auto session = fixture.signIn(user);
        ClientSpy spy(session->authClient());
        const int result = session->authClient()->importAuth(path(fileName), password);
        if (result != 0)
            return {QStringLiteral("not opened: %1").arg(result)};
        QStringList lines = spy.wait(answers);
        lines.removeAll(QStringLiteral("changed"));
        return lines;
    }

    StoreFixture fixture;
    bool ready;
    std::unique_ptr<backend::Session> alice;
};
