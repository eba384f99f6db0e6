#include "authsetting/authorize/GrantRequest.h"

#include "authsetting/authorize/SameLimit.h"
#include "authsetting/authorize/SecretText.h"
#include "authsetting/shell/ResultTip.h"

#include <algorithm>

namespace GW {

namespace {

// A copy of its own, which nobody shares when it is overwritten.
QString ownCopy(const QString& text)
{
    return QString(text.constData(), text.size());
}

} // namespace

CGrantRequest::CGrantRequest(const QString& grantee, bool toServer, const QString& path,
                             const QString& password)
    : m_number(newRequestNumber()), m_grantee(grantee), m_toServer(toServer), m_path(path),
      m_password(ownCopy(password))
{
}

CGrantRequest::~CGrantRequest()
{
    wipeSecret(m_password);
}

void CGrantRequest::add(const QString& key, const mbservice::CAccountInfo& account,
                        const CAuthLimit& limit)
{
    if (!m_entries.contains(key))
        m_entries.insert(key, {account, limit, false, QString()});
}

bool CGrantRequest::asksFor(const QString& key, const QString& grantee, const CAuthLimit& limit,
                            bool toServer) const
{
    const auto entry = m_entries.constFind(key);
    return entry != m_entries.constEnd() && toServer == m_toServer && grantee == m_grantee &&
           isSameLimit(limit, entry->limit);
}

bool CGrantRequest::isRepeatedBy(const CGrantRequest& other) const
{
    return std::all_of(m_entries.keyBegin(), m_entries.keyEnd(), [&](const QString& key) {
        return other.asksFor(key, m_grantee, m_entries.constFind(key)->limit, m_toServer);
    });
}

void CGrantRequest::answer(const QString& key, const QString& reference)
{
    const auto entry = m_entries.find(key);
    if (entry == m_entries.end())
        return;
    m_answered += entry->answered ? 0 : 1;
    entry->answered = true;
    entry->reference = reference;
}

bool CGrantRequest::hasAnswer(const QString& key) const
{
    const auto entry = m_entries.constFind(key);
    return entry != m_entries.constEnd() && entry->answered;
}

} // namespace GW
