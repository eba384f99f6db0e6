#include "host/client/GrantFailures.h"

#include "authsetting/services/AccountKey.h"
#include "authsetting/services/UserConfig.h"
#include "backend/client/AuthClient.h"
#include "backend/client/Session.h"
#include "host/client/AccountMessages.h"

namespace host {

namespace {

QString told(const QString& reason)
{
    return reason.isEmpty() ? QStringLiteral("未知") : reason;
}

} // namespace

GrantFailures::GrantFailures(const backend::Session& session, AccountMessages& messages,
                             QObject* parent)
    : QObject(parent), m_session(session), m_messages(messages)
{
    connect(session.authClient(), &GW::CAuthClient::sigAddAuthResult, this,
            [this](const QString& grantee, const mbservice::CAccountInfo& account,
                   const GW::CAuthLimit&, const QString&, const QVariant&, bool ok,
                   const QString& error, bool) {
                if (!ok)
                    tellRefused(grantee, account, error);
            });
    if (const auto* const client = qobject_cast<backend::AuthClient*>(session.authClient()))
        connect(client, &backend::AuthClient::fileNotWritten, this, &GrantFailures::tellUnwritten);
}

void GrantFailures::tellRefused(const QString& grantee, const mbservice::CAccountInfo& account,
                                const QString& reason)
{
    tell(account, QStringLiteral("授权给%1失败。原因：%2").arg(grantee, told(reason)));
}

void GrantFailures::tellUnwritten(const Grants& grants, const QString& reason)
{
    // A page may try one file twice in a row.
    if (m_unwritten.isEmpty())
        QMetaObject::invokeMethod(
            this, [this] { m_unwritten.clear(); }, Qt::QueuedConnection);
    for (const boost::shared_ptr<GW::CAuthDetail>& grant : grants) {
        if (!grant)
            continue;
        const QString text = QStringLiteral("授权给%1的授权文件未能写出。原因：%2")
                                 .arg(grant->grantee, told(reason));
        const QString which = GW::genAccountKeyQs(grant->account) + QLatin1Char('\n') + text;
        if (m_unwritten.contains(which))
            continue;
        m_unwritten.insert(which);
        tell(grant->account, text);
    }
}

void GrantFailures::tell(const mbservice::CAccountInfo& account, const QString& text)
{
    const QString key = GW::genAccountKeyQs(account);
    const boost::shared_ptr<GW::CAccount> known = m_session.userConfig()->getAccountData(key);
    const QString name = GW::accountDisplayIDQs(known ? *known : account);
    m_messages.showAccountMsg(QStringLiteral("账户") + name + text, key, GW::MSG_TYPE_AUTH,
                              mbservice::MSG_LEVEL_ERROR);
}

} // namespace host
