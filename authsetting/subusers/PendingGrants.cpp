#include "authsetting/subusers/PendingGrants.h"

#include "authsetting/authorize/SameLimit.h"

#include <algorithm>

namespace GW {

void CPendingGrants::set(const QString& key, const CPendingGrant& grant)
{
    if (!m_grants.contains(key))
        ++m_count;
    m_grants.insert(key, grant);
}

void CPendingGrants::remove(const QString& key)
{
    if (m_grants.remove(key) > 0)
        --m_count;
}

void CPendingGrants::answer(const QString& key, const QString& result)
{
    const auto grant = m_grants.find(key);
    if (grant == m_grants.end())
        return;
    grant->result = result;
    --m_count;
}

bool CPendingGrants::isAnswered()
{
    if (m_count >= 1)
        return false;
    m_count = 0;
    return true;
}

bool CPendingGrants::isSameAs(const CPendingGrants& other) const
{
    return m_grants.size() == other.m_grants.size() &&
           std::all_of(m_grants.keyValueBegin(), m_grants.keyValueEnd(), [&](const auto& entry) {
               const auto twin = other.m_grants.constFind(entry.first);
               return twin != other.m_grants.constEnd() &&
                      isSameLimit(twin->limit, entry.second.limit);
           });
}

void CPendingGrants::clear()
{
    m_grants.clear();
    m_count = 0;
}

} // namespace GW
