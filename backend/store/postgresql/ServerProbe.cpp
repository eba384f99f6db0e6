#include "backend/store/postgresql/ServerProbe.h"

#include "backend/store/postgresql/PostgresError.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>

#include <chrono>
#include <libpq-fe.h>
#include <memory>
#include <poll.h>
#include <utility>

namespace backend {

namespace {

using Kind = StoreFailure::Kind;

struct ConnectionCloser
{
    void operator()(PGconn* connection) const { PQfinish(connection); }
};
using Connection = std::unique_ptr<PGconn, ConnectionCloser>;

// The parameters in the shape that libpq takes; they live as long as `values`. Of two values for
// one name libpq takes the later.
struct ParameterArrays
{
    using Parameters = QVector<std::pair<QByteArray, QByteArray>>;

    explicit ParameterArrays(const ServerAddress& address, const Parameters& others = {})
        : values(address.parameters() + others)
    {
        for (const auto& [name, value] : std::as_const(values)) {
            names.append(name.constData());
            texts.append(value.constData());
        }
        names.append(nullptr);
        texts.append(nullptr);
    }

    Parameters values;
    QVector<const char*> names;
    QVector<const char*> texts;
};

bool isThere(const ParameterArrays& parameters)
{
    return PQpingParams(parameters.names.constData(), parameters.texts.constData(), 0) == PQPING_OK;
}

bool waitFor(int socket, bool writable, const QDeadlineTimer& deadline)
{
    pollfd waiting = {socket, static_cast<short>(writable ? POLLOUT : POLLIN), 0};
    return ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime())) > 0;
}

// False when it took too long. `last` gets what the connection was about when it ended.
bool finishConnecting(PGconn* connection, ConnStatusType* last)
{
    const QDeadlineTimer deadline{std::chrono::seconds{ServerAddress::connectTimeout}};
    PostgresPollingStatusType state = PGRES_POLLING_WRITING;
    while (state == PGRES_POLLING_READING || state == PGRES_POLLING_WRITING) {
        if (!waitFor(PQsocket(connection), state == PGRES_POLLING_WRITING, deadline))
            return false;
        *last = PQstatus(connection);
        state = PQconnectPoll(connection);
    }
    return true;
}

bool wantsEncryption(const ServerAddress& address)
{
    const StoreLocation& location = address.location();
    const QString mode = location.sslMode.isEmpty() ? location.standardSslMode() : location.sslMode;
    return mode == QStringLiteral("require") || mode.startsWith(QStringLiteral("verify-"));
}

// A line that was cut while the encryption was agreed upon says nothing; a server that answers
// somebody less strict does. Nobody's name or password is sent for that.
Kind encryptionProblem(const ServerAddress& address)
{
    const QByteArray noName("encryption-check");
    const ParameterArrays unverified(address, {{"user", noName},
                                               {"password", noName},
                                               {"sslmode", "require"},
                                               {"sslrootcert", "/dev/null/none"}});
    if (isThere(unverified))
        return Kind::Untrusted;
    const ParameterArrays plain(address,
                                {{"user", noName}, {"password", noName}, {"sslmode", "disable"}});
    return isThere(plain) ? Kind::Unencrypted : Kind::Offline;
}

// The server says with one code that the login is disabled, which it tells only after the right
// password, and that it has no rule for who comes from there, which it tells before any.
Kind kindOfRefusal(const QString& sqlState, bool passwordWasAsked)
{
    if (sqlState == QStringLiteral("28000") && !passwordWasAsked)
        return Kind::NotAdmitted;
    if (sqlState == QStringLiteral("42501"))
        return Kind::NotAdmitted;
    return PostgresError::kindOf(sqlState);
}

} // namespace

bool isServerThere(const ServerAddress& address)
{
    return isThere(ParameterArrays(address));
}

std::optional<ServerRefusal> refusalIn(const QString& text, const QString& login)
{
    if (text.contains(
            QStringLiteral("FATAL: password authentication failed for user \"%1\"").arg(login)))
        return ServerRefusal{Kind::WrongLogin, QStringLiteral("28P01")};
    if (text.contains(QStringLiteral("FATAL: role \"%1\" is not permitted to log in").arg(login)))
        return ServerRefusal{Kind::Disabled, QStringLiteral("28000")};
    return std::nullopt;
}

ServerRefusal refusalOf(const ServerAddress& address)
{
    const QString& authority = address.location().sslRootCertificate;
    if (!authority.isEmpty() && !QFileInfo(authority).isReadable())
        return {Kind::NoAuthority, {}};
    const ParameterArrays parameters(address);
    const Connection connection(
        PQconnectStartParams(parameters.names.constData(), parameters.texts.constData(), 0));
    if (!connection)
        return {Kind::OutOfMemory, {}};
    // The code instead of a text in the server's language.
    PQsetErrorVerbosity(connection.get(), PQERRORS_SQLSTATE);
    ConnStatusType last = CONNECTION_STARTED;
    if (!finishConnecting(connection.get(), &last) || PQstatus(connection.get()) == CONNECTION_OK)
        return {};
    static const QRegularExpression code(QStringLiteral("\\b([0-9A-Z]{5})\\s*$"));
    const QString sqlState =
        code.match(QString::fromUtf8(PQerrorMessage(connection.get()))).captured(1);
    if (!sqlState.isEmpty())
        return {kindOfRefusal(sqlState, PQconnectionUsedPassword(connection.get()) != 0), sqlState};
    if (last == CONNECTION_SSL_STARTUP && wantsEncryption(address))
        return {encryptionProblem(address), {}};
    return {};
}

} // namespace backend
