#include "backend/store/postgresql/PostgresConnection.h"

#include "backend/store/postgresql/PostgresError.h"
#include "backend/store/postgresql/ServerProbe.h"
#include "backend/store/postgresql/ServerTimes.h"

#include <QSocketNotifier>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlQuery>
#include <QStringList>

#include <atomic>
#include <libpq-fe.h>

Q_DECLARE_OPAQUE_POINTER(PGconn*)

namespace backend {

namespace {

QString newConnectionName()
{
    static std::atomic<quint64> count = 0;
    return QStringLiteral("authsetting-server-%1").arg(++count);
}

[[noreturn]] void throwError(const QSqlError& error, bool isLost)
{
    const QString code = error.nativeErrorCode();
    const StoreFailure::Kind kind =
        isLost ? StoreFailure::Kind::Offline : PostgresError::kindOf(code);
    throw PostgresError({kind, error.text().simplified()}, code);
}

// One round trip instead of the three that a prepared statement takes.
QString withLiterals(const QString& sql, const QVariantList& values, const QSqlDriver& driver)
{
    const QStringList parts = sql.split(QLatin1Char('?'));
    QString text = parts[0];
    for (int i = 1; i < parts.size(); ++i) {
        const QVariant value = values.value(i - 1);
        QSqlField field(QString(), value.metaType());
        field.setValue(value);
        text += driver.formatValue(field);
        text += parts[i];
    }
    return text;
}

} // namespace

PostgresConnection::PostgresConnection(const StoreOptions& options)
    : m_address(options), m_name(newConnectionName())
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_name);
    const StoreLocation& location = m_address.location();
    database.setHostName(location.host);
    database.setPort(location.port);
    database.setDatabaseName(location.database);
    database.setUserName(location.user);
    database.setPassword(m_address.password());
    database.setConnectOptions(m_address.driverOptions());
}

PostgresConnection::~PostgresConnection()
{
    close();
    QSqlDatabase::removeDatabase(m_name);
}

void PostgresConnection::open()
{
    close();
    QSqlDatabase database = QSqlDatabase::database(m_name, false);
    if (!database.open()) {
        const QString detail = database.lastError().text().simplified();
        database.close();
        const auto told = refusalIn(detail, m_address.location().user);
        const ServerRefusal refusal = told ? *told : refusalOf(m_address);
        throw PostgresError({refusal.kind, detail}, refusal.sqlState);
    }
    m_isOpen = true;
    m_watchdog.watch(PQsocket(handle()));
}

void PostgresConnection::close()
{
    // Before the descriptor that it watches is closed.
    m_notifier.reset();
    m_watchdog.watch(-1);
    QSqlDatabase::database(m_name, false).close();
    m_isOpen = false;
}

pg_conn* PostgresConnection::handle() const
{
    return QSqlDatabase::database(m_name, false).driver()->handle().value<PGconn*>();
}

void PostgresConnection::call(const QString& sql, const QVariantList& values,
                              std::chrono::milliseconds time, const OnRow& onRow)
{
    if (m_isOpen)
        dropIfLost();
    if (!m_isOpen)
        throw PostgresError({StoreFailure::Kind::Offline, QStringLiteral("not connected")}, {});
    QSqlError error;
    {
        const ConnectionWatchdog::Guard guard(m_watchdog, time);
        const QSqlDatabase database = QSqlDatabase::database(m_name, false);
        // Not forward only: rows that come one by one are there before the commit is.
        QSqlQuery query(database);
        if (!query.exec(withLiterals(sql, values, *database.driver())))
            error = query.lastError();
        else
            while (onRow && query.next())
                onRow(query);
    }
    if (error.isValid())
        dropIfLost();
    // What has come together with the answer, nothing would announce again.
    if (m_isOpen && takeNotices() && m_onNotice)
        m_onNotice();
    if (error.isValid())
        throwError(error, !m_isOpen);
}

void PostgresConnection::listen(const QString& channel, std::function<void()> onNotice)
{
    call(QStringLiteral("LISTEN ") + channel, {}, servertimes::listen);
    m_onNotice = std::move(onNotice);
    m_notifier = std::make_unique<QSocketNotifier>(PQsocket(handle()), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { onReadable(); });
}

void PostgresConnection::onReadable()
{
    PQconsumeInput(handle());
    const bool isNotice = takeNotices();
    const bool isGone = PQstatus(handle()) != CONNECTION_OK;
    if (!isNotice && !isGone)
        return;
    const std::function<void()> onNotice = m_onNotice;
    if (isGone) {
        // Deleted later, because this is its own signal; the descriptor is closed already.
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater();
        close();
    }
    onNotice();
}

// Whether there was one from another connection; who changed something himself knows it.
bool PostgresConnection::takeNotices()
{
    pg_conn* connection = handle();
    bool isFromOthers = false;
    while (PGnotify* notice = PQnotifies(connection)) {
        isFromOthers = isFromOthers || notice->be_pid != PQbackendPID(connection);
        PQfreemem(notice);
    }
    return isFromOthers;
}

void PostgresConnection::dropIfLost()
{
    if (PQstatus(handle()) != CONNECTION_OK)
        close();
}

QString PostgresConnection::verifier(const QString& user, const QString& password) const
{
    if (!m_isOpen)
        return {};
    const QByteArray text = password.toUtf8();
    char* made = PQencryptPasswordConn(handle(), text.constData(), user.toUtf8().constData(),
                                       "scram-sha-256");
    QString result = QString::fromLatin1(made);
    PQfreemem(made);
    return result;
}

} // namespace backend
