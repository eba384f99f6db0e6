#pragma once

#include "backend/store/StoreOptions.h"

#include <QByteArray>

#include <memory>

struct pg_conn;

namespace bench {

/// A bare connection to a server through libpq. Failures end the program.
class ServerConnection
{
public:
    /// As the location's user, a login of the server, with the credential.
    explicit ServerConnection(const backend::StoreOptions& options);

    /// The rows of the last statement of `sql`, a tab between the columns.
    QList<QByteArray> run(const QByteArray& sql);
    /// Sends `lines` to a table with COPY.
    void copy(const QByteArray& table, const QByteArray& lines);
    /// Blocks until the server tells of a change; each call takes one such notice.
    void awaitNotice();

private:
    struct Closer
    {
        void operator()(pg_conn* connection) const;
    };

    std::unique_ptr<pg_conn, Closer> m_connection;
};

} // namespace bench
