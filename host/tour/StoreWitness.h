#pragma once

#include "backend/store/GrantRecord.h"
#include "backend/store/StoreOptions.h"

#include <QDate>
#include <QString>

#include <optional>

namespace host {

/// Reads the store past the client, to see what really arrived there. Used on the tour's thread;
/// what it cannot read is a TourFailure.
class StoreWitness
{
public:
    explicit StoreWitness(backend::StoreOptions options);

    /// The newest grant of the account with this number to `grantee`.
    std::optional<backend::GrantRecord> newestGrant(const std::string& accountId,
                                                    const QString& grantee) const;
    /// Fails unless the newest grant of that account to `grantee` is in `state` and came by
    /// `source`; returns it.
    backend::GrantRecord requireGrant(const std::string& accountId, const QString& grantee,
                                      backend::GrantSource source, backend::GrantState state) const;
    /// Fails unless the grant runs from today for `days` days after today.
    void requireDays(const backend::GrantRecord& grant, int days) const;
    /// Whether the store lets `subUser` of `owner` sign in; signs in as `owner` to ask.
    bool isSubUserEnabled(const QString& owner, const QString& password,
                          const QString& subUser) const;
    /// Fails unless engine and relations are sound.
    void requireSound() const;

private:
    backend::StoreOptions m_options;
};

} // namespace host
