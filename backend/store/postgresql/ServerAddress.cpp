#include "backend/store/postgresql/ServerAddress.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QStringList>

#include <chrono>
#include <libpq-fe.h>
#include <memory>
#include <poll.h>

namespace backend {

namespace {

struct ConnectionCloser
{
    void operator()(PGconn* connection) const { PQfinish(connection); }
};

// The parameters in the shape that libpq takes; they live as long as `values`.
struct ParameterArrays
{
    explicit ParameterArrays(const ServerAddress& address) : values(address.parameters())
    {
        for (const auto& [name, value] : std::as_const(values)) {
            names.append(name.constData());
            texts.append(value.constData());
        }
        names.append(nullptr);
        texts.append(nullptr);
    }

    QVector<std::pair<QByteArray, QByteArray>> values;
    QVector<const char*> names;
    QVector<const char*> texts;
};

bool waitFor(int socket, bool writable, const QDeadlineTimer& deadline)
{
    pollfd waiting = {socket, static_cast<short>(writable ? POLLOUT : POLLIN), 0};
    return ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime())) > 0;
}

} // namespace

ServerAddress::ServerAddress(const StoreOptions& options)
    : m_location(options.location), m_password(options.credential)
{
}

QVector<std::pair<QString, QString>> ServerAddress::extras() const
{
    QVector<std::pair<QString, QString>> extras{
        {QStringLiteral("application_name"), QStringLiteral("authsetting")},
        {QStringLiteral("connect_timeout"), QString::number(connectTimeout)},
        {QStringLiteral("tcp_user_timeout"), QString::number(userTimeoutMs)},
        // A line that is idle is found dead within 5 + 3 × 2 seconds.
        {QStringLiteral("keepalives"), QStringLiteral("1")},
        {QStringLiteral("keepalives_idle"), QStringLiteral("5")},
        {QStringLiteral("keepalives_interval"), QStringLiteral("2")},
        {QStringLiteral("keepalives_count"), QStringLiteral("3")},
        {QStringLiteral("sslmode"),
         m_location.sslMode.isEmpty() ? m_location.standardSslMode() : m_location.sslMode}};
    if (!m_location.sslRootCertificate.isEmpty())
        extras.append({QStringLiteral("sslrootcert"), m_location.sslRootCertificate});
    return extras;
}

QString ServerAddress::driverOptions() const
{
    QStringList options;
    const auto all = extras();
    for (const auto& [name, value] : all) {
        QString quoted = value;
        quoted.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
        quoted.replace(QLatin1Char('\''), QStringLiteral("\\'"));
        options.append(QStringLiteral("%1='%2'").arg(name, quoted));
    }
    return options.join(QLatin1Char(';'));
}

QVector<std::pair<QByteArray, QByteArray>> ServerAddress::parameters() const
{
    QVector<std::pair<QByteArray, QByteArray>> all;
    const auto add = [&all](const QString& name, const QString& value) {
        if (!value.isEmpty())
            all.append({name.toUtf8(), value.toUtf8()});
    };
    add(QStringLiteral("host"), m_location.host);
    add(QStringLiteral("port"), QString::number(m_location.port));
    add(QStringLiteral("dbname"), m_location.database);
    add(QStringLiteral("user"), m_location.user);
    add(QStringLiteral("password"), m_password);
    const auto others = extras();
    for (const auto& [name, value] : others)
        add(name, value);
    return all;
}

bool isServerThere(const ServerAddress& address)
{
    const ParameterArrays parameters(address);
    return PQpingParams(parameters.names.constData(), parameters.texts.constData(), 0) == PQPING_OK;
}

QString refusalOf(const ServerAddress& address)
{
    const ParameterArrays parameters(address);
    const std::unique_ptr<PGconn, ConnectionCloser> connection(
        PQconnectStartParams(parameters.names.constData(), parameters.texts.constData(), 0));
    if (!connection)
        return {};
    // The code instead of a text in the server's language.
    PQsetErrorVerbosity(connection.get(), PQERRORS_SQLSTATE);
    const QDeadlineTimer deadline{std::chrono::seconds{ServerAddress::connectTimeout}};
    PostgresPollingStatusType state = PGRES_POLLING_WRITING;
    while (state == PGRES_POLLING_READING || state == PGRES_POLLING_WRITING) {
        if (!waitFor(PQsocket(connection.get()), state == PGRES_POLLING_WRITING, deadline))
            return {};
        state = PQconnectPoll(connection.get());
    }
    if (state == PGRES_POLLING_OK)
        return {};
    static const QRegularExpression code(QStringLiteral("\\b([0-9A-Z]{5})\\s*$"));
    return code.match(QString::fromUtf8(PQerrorMessage(connection.get()))).captured(1);
}

} // namespace backend
