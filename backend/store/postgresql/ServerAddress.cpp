#include "backend/store/postgresql/ServerAddress.h"

#include <QStringList>

namespace backend {

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

} // namespace backend
