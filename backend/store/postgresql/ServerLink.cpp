#include "backend/store/postgresql/ServerLink.h"

#include "backend/store/postgresql/ServerProbe.h"
#include "backend/store/postgresql/ServerTimes.h"
#include "utils/LogCenter.h"

#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>

namespace backend {

namespace {

// Nothing but an administrator mends it.
bool isForGood(StoreFailure::Kind refusal)
{
    return refusal == StoreFailure::Kind::Disabled || refusal == StoreFailure::Kind::WrongLogin;
}

} // namespace

ServerLink::ServerLink(const StoreOptions& options)
    : m_options(options), m_connection(std::make_unique<PostgresConnection>(options))
{
}

ServerLink::~ServerLink() = default;

void ServerLink::open(std::function<void()> onNotice)
{
    m_onNotice = std::move(onNotice);
    try {
        connect();
    } catch (const PostgresError& error) {
        // Nothing was there that could have been lost.
        if (error.isConnectionLost())
            throw PostgresError({StoreFailure::Kind::Unreachable, error.failure().detail}, {});
        throw;
    }
    m_isOnline = true;
}

void ServerLink::connect()
{
    m_connection->open();
    m_connection->listen(QStringLiteral("authsetting_changed"), m_onNotice);
}

void ServerLink::call(const QString& sql, const QVariantList& values,
                      const PostgresConnection::OnRow& onRow)
{
    if (!m_isOnline)
        throw PostgresError({StoreFailure::Kind::Offline, QStringLiteral("offline")}, {});
    const QDeadlineTimer end(servertimes::attempts);
    std::chrono::milliseconds pause = servertimes::firstPause;
    while (true) {
        try {
            if (!m_connection->isOpen())
                connect();
            const std::chrono::milliseconds left(end.remainingTime());
            m_connection->call(sql, values,
                               std::clamp(left, servertimes::lastAttempt, servertimes::request),
                               onRow);
            return;
        } catch (const PostgresError& error) {
            const bool mayHelp = error.isConnectionLost() || error.isTransient();
            if (!mayHelp || end.hasExpired()) {
                if (!m_connection->isOpen())
                    goOffline(error);
                throw;
            }
        }
        QThread::msleep(static_cast<unsigned long>(pause.count()));
        pause = std::min<std::chrono::milliseconds>(pause * 2, std::chrono::seconds(1));
    }
}

void ServerLink::look(const QString& sql, const QVariantList& values,
                      const PostgresConnection::OnRow& onRow)
{
    try {
        m_connection->call(sql, values, servertimes::look, onRow);
    } catch (const PostgresError& error) {
        if (!m_connection->isOpen())
            goOffline(error);
        throw;
    }
}

void ServerLink::goOffline(const PostgresError& error)
{
    m_connection->close();
    const StoreFailure::Kind kind = error.failure().kind;
    m_refusal = kind == StoreFailure::Kind::Offline ? StoreFailure::Kind::None : kind;
    if (std::exchange(m_isOnline, false))
        utils::CLogCenter::warning(QStringLiteral("the server is gone [") + error.failure().detail +
                                   QStringLiteral("]"));
    waitForNextTry(isForGood(m_refusal) ? servertimes::refusedRetry : servertimes::firstRetry);
}

void ServerLink::waitForNextTry(std::chrono::milliseconds time)
{
    m_pause = time;
    m_sinceTry.start();
}

bool ServerLink::tryReturn()
{
    if (!m_probe.valid()) {
        if (m_sinceTry.isValid() && !m_sinceTry.hasExpired(m_pause.count()))
            return false;
        m_probe = std::async(std::launch::async, isServerThere, ServerAddress(m_options));
        return false;
    }
    if (m_probe.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return false;
    if (!m_probe.get()) {
        m_refusal = StoreFailure::Kind::None;
        waitForNextTry(std::min(m_pause * 2, servertimes::longestRetry));
        return false;
    }
    try {
        connect();
    } catch (const PostgresError& error) {
        const std::chrono::milliseconds next = std::min(m_pause * 2, servertimes::longestRetry);
        goOffline(error);
        if (!isForGood(m_refusal))
            waitForNextTry(next);
        return false;
    }
    m_isOnline = true;
    m_refusal = StoreFailure::Kind::None;
    utils::CLogCenter::warning(QStringLiteral("the server is back"));
    return true;
}

} // namespace backend
