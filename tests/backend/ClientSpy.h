#pragma once

#include "authsetting/services/AuthClient.h"

#include <QObject>
#include <QStringList>
#include <QTest>

#include <functional>

/// Writes down what a client answers, one line per signal in the order of arrival:
/// "add 880001 bob ok", "del …", "check …", "valid <key> …", "state …", "password …", "changed".
/// A failure ends with its error text in place of "ok".
class ClientSpy : public QObject
{
public:
    explicit ClientSpy(GW::CAuthClient* client)
    {
        using GW::CAuthClient;
        connect(client, &CAuthClient::sigAddAuthResult, this,
                [this](const QString& grantee, const mbservice::CAccountInfo& account,
                       GW::CAuthLimit limit, const QString& reference, const QVariant& tag, bool ok,
                       const QString& error, bool toServer) {
                    references.append(reference);
                    tags.append(tag);
                    limits.append(limit);
                    toServers.append(toServer);
                    note(QStringLiteral("add %1 %2 ")
                             .arg(QString::fromStdString(account.accountId), grantee),
                         ok, error);
                });
        connect(client, &CAuthClient::sigDelAuthResult, this,
                [this](const QString& grantee, const mbservice::CAccountInfo& account,
                       const QVariant& tag, bool ok, const QString& error) {
                    tags.append(tag);
                    note(QStringLiteral("del %1 %2 ")
                             .arg(QString::fromStdString(account.accountId), grantee),
                         ok, error);
                });
        connect(client, &CAuthClient::sigCheckAuthuserResult, this,
                [this](const QString& user, bool ok, const QString& error) {
                    note(QStringLiteral("check %1 ").arg(user), ok, error);
                });
        connect(client, &CAuthClient::sigValidAuth, this,
                [this](const QString& key, const QString& secret, bool ok, const QString& error) {
                    note(QStringLiteral("valid %1 %2 ").arg(key, secret), ok, error);
                });
        connect(client, &CAuthClient::sigSetSubUserResult, this,
                [this](const QString& user, bool enabled, bool ok, const QString& error) {
                    note(QStringLiteral("state %1 %2 ")
                             .arg(user, enabled ? QStringLiteral("on") : QStringLiteral("off")),
                         ok, error);
                });
        connect(client, &CAuthClient::sigUpdatesubuserResult, this,
                [this](const QString& user, const QString& digest, bool ok, const QString& error) {
                    note(QStringLiteral("password %1 %2 ").arg(user, digest), ok, error);
                });
        connect(client, &CAuthClient::sigUiUpdateAuth, this, [this] {
            lines.append(QStringLiteral("changed"));
            if (onLine)
                onLine();
        });
    }

    /// Waits until there are `count` lines, and gives them.
    QStringList wait(int count)
    {
        [&] { QTRY_VERIFY_WITH_TIMEOUT(lines.size() >= count, 20000); }();
        return lines;
    }

    QStringList lines;
    QStringList references;
    QVariantList tags;
    QVector<GW::CAuthLimit> limits;
    QVector<bool> toServers;
    /// Called after each line, inside the client's signal.
    std::function<void()> onLine;

private:
    void note(const QString& line, bool ok, const QString& error)
    {
        lines.append(line + (ok ? QStringLiteral("ok") : error));
        if (onLine)
            onLine();
    }
};
