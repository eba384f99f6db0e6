#pragma once

#include "backend/store/StoreFailure.h"
#include "backend/store/postgresql/ServerAddress.h"

#include <QString>

#include <optional>

namespace backend {

/// Why a server lets nobody in. A value.
struct ServerRefusal
{
    /// Offline when the server does not answer.
    StoreFailure::Kind kind = StoreFailure::Kind::Offline;
    /// The server's five-character code; empty when it was not the server that refused.
    QString sqlState;
};

/// Whether the server behind `address` answers at all; takes connectTimeout at most. Any thread.
bool isServerThere(const ServerAddress& address);

/// What a server that speaks English has against `login`, when its text leaves no doubt; then
/// nobody has to try again, for which a server that slows down guessing takes its time.
std::optional<ServerRefusal> refusalIn(const QString& text, const QString& login);

/// Why `address` cannot be connected to, found out by trying once more, whatever language the
/// server speaks. Takes connectTimeout, and up to twice that again when the encryption fails. Any
/// thread.
ServerRefusal refusalOf(const ServerAddress& address);

} // namespace backend
