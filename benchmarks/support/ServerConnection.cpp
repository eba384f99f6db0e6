#include "benchmarks/support/ServerConnection.h"

#include "backend/store/postgresql/ServerAddress.h"

#include <QVector>
#include <QtDebug>

#include <libpq-fe.h>
#include <poll.h>

namespace bench {

void ServerConnection::Closer::operator()(pg_conn* connection) const
{
    PQfinish(connection);
}

ServerConnection::ServerConnection(const backend::StoreOptions& options)
{
    const auto parameters = backend::ServerAddress(options).parameters();
    QVector<const char*> names;
    QVector<const char*> values;
    for (const auto& [name, value] : parameters) {
        names.append(name.constData());
        values.append(value.constData());
    }
    names.append(nullptr);
    values.append(nullptr);
    m_connection.reset(PQconnectdbParams(names.constData(), values.constData(), 0));
    if (PQstatus(m_connection.get()) != CONNECTION_OK)
        qFatal("the server: %s", PQerrorMessage(m_connection.get()));
}

QList<QByteArray> ServerConnection::run(const QByteArray& sql)
{
    PGresult* result = PQexec(m_connection.get(), sql.constData());
    const ExecStatusType status = PQresultStatus(result);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK && status != PGRES_COPY_IN)
        qFatal("the server: %s", PQerrorMessage(m_connection.get()));
    QList<QByteArray> rows;
    for (int row = 0; row < PQntuples(result); ++row) {
        QByteArray line;
        for (int column = 0; column < PQnfields(result); ++column) {
            line += column == 0 ? "" : "\t";
            line += PQgetvalue(result, row, column);
        }
        rows.append(line);
    }
    PQclear(result);
    return rows;
}

void ServerConnection::copy(const QByteArray& table, const QByteArray& lines)
{
    run("COPY " + table + " FROM STDIN");
    PQputCopyData(m_connection.get(), lines.constData(), static_cast<int>(lines.size()));
    PQputCopyEnd(m_connection.get(), nullptr);
    while (PGresult* result = PQgetResult(m_connection.get())) {
        if (PQresultStatus(result) != PGRES_COMMAND_OK)
            qFatal("the server: %s", PQerrorMessage(m_connection.get()));
        PQclear(result);
    }
}

void ServerConnection::awaitNotice()
{
    constexpr int patienceMs = 10'000;
    while (true) {
        if (PGnotify* notice = PQnotifies(m_connection.get())) {
            PQfreemem(notice);
            return;
        }
        pollfd waiting = {PQsocket(m_connection.get()), POLLIN, 0};
        if (::poll(&waiting, 1, patienceMs) <= 0)
            qFatal("the server tells of no change");
        PQconsumeInput(m_connection.get());
    }
}

} // namespace bench
