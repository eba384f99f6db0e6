#pragma once

#include "backend/store/StoreError.h"

#include <QString>

#include <utility>

namespace backend {

/// What went wrong with a call to the server.
class PostgresError final : public StoreError
{
public:
    PostgresError(StoreFailure failure, QString sqlState)
        : StoreError(std::move(failure)), m_sqlState(std::move(sqlState))
    {
    }

    /// The server's five-character code; empty when it did not answer.
    const QString& sqlState() const { return m_sqlState; }
    /// Whether the connection is gone, so that nobody knows what became of the call.
    bool isConnectionLost() const { return failure().kind == StoreFailure::Kind::Offline; }
    /// Whether the same transaction may well succeed when it is run again.
    bool isTransient() const;

    /// What to make of a server's code.
    static StoreFailure::Kind kindOf(const QString& sqlState);

private:
    QString m_sqlState;
};

} // namespace backend
