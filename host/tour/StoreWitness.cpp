#include "host/tour/StoreWitness.h"

#include "authsetting/services/AuthClient.h"
#include "backend/client/Session.h"
#include "backend/store/StoreAdmin.h"
#include "host/tour/TourFailure.h"
#include "host/tour/TourScene.h"
#include "kit/dates/DateConversions.h"

#include <utility>

namespace host {

namespace {

std::unique_ptr<backend::StoreAdmin> openStore(const backend::StoreOptions& options)
{
    QString error;
    std::unique_ptr<backend::StoreAdmin> store = backend::StoreAdmin::open(options, &error);
    if (!store)
        throw TourFailure(QStringLiteral("不能读存储：%1").arg(error));
    return store;
}

} // namespace

StoreWitness::StoreWitness(backend::StoreOptions options) : m_options(std::move(options)) {}

std::optional<backend::GrantRecord> StoreWitness::newestGrant(const std::string& accountId,
                                                              const QString& grantee) const
{
    std::optional<backend::GrantRecord> newest;
    const QVector<backend::GrantRecord> grants = openStore(m_options)->grants();
    for (const backend::GrantRecord& grant : grants) {
        if (grant.account.accountId == accountId && grant.grantee == grantee)
            newest = grant;
    }
    return newest;
}

backend::GrantRecord StoreWitness::requireGrant(const std::string& accountId,
                                                const QString& grantee, backend::GrantSource source,
                                                backend::GrantState state) const
{
    const QString what = QStringLiteral("存储中账号 %1 给 %2 的授权")
                             .arg(QString::fromStdString(accountId), grantee);
    const std::optional<backend::GrantRecord> grant = newestGrant(accountId, grantee);
    if (!grant)
        throw TourFailure(what + QStringLiteral("不存在"));
    if (grant->source != source || grant->state != state) {
        throw TourFailure(what + QStringLiteral("应为来源 %1 状态 %2，却是来源 %3 状态 %4")
                                     .arg(static_cast<int>(source))
                                     .arg(static_cast<int>(state))
                                     .arg(static_cast<int>(grant->source))
                                     .arg(static_cast<int>(grant->state)));
    }
    return *grant;
}

void StoreWitness::requireDays(const backend::GrantRecord& grant, int days) const
{
    const QDate today = m_options.now().date();
    const QDate first = KZ::secondToQDateTime(grant.limit.startTime).date();
    const QDate last = KZ::secondToQDateTime(grant.limit.endTime).date();
    TourScene::require(QStringLiteral("授权期为 %1 起的 %2 天（存储中为 %3 到 %4）")
                           .arg(today.toString(Qt::ISODate))
                           .arg(days)
                           .arg(first.toString(Qt::ISODate), last.toString(Qt::ISODate)),
                       first == today && last == today.addDays(days));
}

bool StoreWitness::isSubUserEnabled(const QString& owner, const QString& password,
                                    const QString& subUser) const
{
    QString error;
    const bool enabled = TourScene::onGui([&] {
        const backend::SignInResult result = backend::Session::signIn(m_options, owner, password);
        error = result.error;
        return result.session && result.session->authClient()->isSubUserActive(subUser);
    });
    if (!error.isEmpty())
        throw TourFailure(QStringLiteral("不能另行登录存储：%1").arg(error));
    return enabled;
}

void StoreWitness::requireSound() const
{
    const QString problem = openStore(m_options)->verify();
    if (!problem.isEmpty())
        throw TourFailure(QStringLiteral("存储有问题：%1").arg(problem));
}

} // namespace host
