#pragma once

#include "backend/store/StoreOptions.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <utility>

namespace backend {

/// How a server is reached and how long its silence is borne, in the words of libpq. A value.
class ServerAddress
{
public:
    /// Seconds that making a connection may take, whatever the network does.
    static constexpr int connectTimeout = 3;
    /// Milliseconds after which sent data that nobody confirms ends the connection.
    static constexpr int userTimeoutMs = 8000;

    explicit ServerAddress(const StoreOptions& options);

    /// The options that QtSql has no function for, as it wants them.
    QString driverOptions() const;
    /// Everything, as name and value.
    QVector<std::pair<QByteArray, QByteArray>> parameters() const;

    const StoreLocation& location() const { return m_location; }
    const QString& password() const { return m_password; }

private:
    QVector<std::pair<QString, QString>> extras() const;

    StoreLocation m_location;
    QString m_password;
};

} // namespace backend
