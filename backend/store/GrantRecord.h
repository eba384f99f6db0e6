#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"

#include <QString>

namespace backend {

/// How a grant reaches its grantee.
enum class GrantSource : int { Server = 1, File = 2 };

/// Life of a grant. Only a `Current` one makes its account a granted one, and an account has at
/// most one of these.
enum class GrantState : int { Prepared = 1, Current = 2, Cancelled = 3, Expired = 4 };

/// One grant as the store keeps it.
struct GrantRecord
{
    /// 32 hexadecimal digits; when a grant is added, empty asks for a random one.
    QString reference;
    QString grantor;
    QString grantee;
    mbservice::CAccountInfo account;
    GW::CAuthLimit limit;
    GrantSource source = GrantSource::Server;
    GrantState state = GrantState::Current;
    /// Whether the grantee has imported the file; false for a grant on the server.
    bool redeemed = false;
};

} // namespace backend
