#include "authsetting/authorize/GrantRequests.h"

#include "authsetting/shell/OnScreen.h"

#include <boost/make_shared.hpp>

namespace GW {

void CGrantRequests::begin(const Pointer& request)
{
    m_open.removeIf([&request](const Pointer& earlier) { return earlier->isRepeatedBy(*request); });
    m_open.append(request);
    m_present = request;
}

CGrantRequests::Pointer CGrantRequests::find(const QString& key, const QString& grantee,
                                             const CAuthLimit& limit, bool toServer) const
{
    Pointer latest;
    for (const QVector<Pointer>* requests : {&m_open, &m_ended}) {
        for (auto at = requests->crbegin(); at != requests->crend(); ++at) {
            if (!(*at)->asksFor(key, grantee, limit, toServer))
                continue;
            if (!(*at)->hasAnswer(key))
                return *at;
            if (!latest)
                latest = *at;
        }
    }
    return latest;
}

CGrantRequests::Pointer CGrantRequests::takeResult(const QWidget* page, const QString& key,
                                                   const QString& grantee, const CAuthLimit& limit,
                                                   bool toServer, const QString& path,
                                                   const QString& password) const
{
    const Pointer request = find(key, grantee, limit, toServer);
    if (request || isHosted(page))
        return request;
    const Pointer latest = present();
    return latest ? latest : boost::make_shared<CGrantRequest>(grantee, toServer, path, password);
}

bool CGrantRequests::isAwaited(const Pointer& request) const
{
    const Pointer latest = present();
    return !latest || latest == request;
}

CGrantRequests::Pointer CGrantRequests::present() const
{
    return m_open.contains(m_present) ? m_present : Pointer();
}

void CGrantRequests::end(const Pointer& request)
{
    if (m_open.removeAll(request) == 0)
        return;
    m_ended.append(request);
    QMetaObject::invokeMethod(
        &m_context, [this] { m_ended.clear(); }, Qt::QueuedConnection);
}

} // namespace GW
