#include "backend/store/Statement.h"

#include "backend/store/StoreError.h"

#include <array>

namespace backend {

namespace {

// More than any statement has.
constexpr int maxPlaceholders = 16;

std::array<QString, maxPlaceholders> placeholderNames()
{
    std::array<QString, maxPlaceholders> names;
    for (int i = 0; i < maxPlaceholders; ++i)
        names[static_cast<std::size_t>(i)] = QStringLiteral(":v%1x").arg(i);
    return names;
}

} // namespace

const QString& Statement::placeholder(int index)
{
    static const std::array<QString, maxPlaceholders> names = placeholderNames();
    return names.at(static_cast<std::size_t>(index));
}

void Statement::execute()
{
    if (!m_query.exec()) {
        const QSqlError error = m_query.lastError();
        throw StoreError({m_engine.classify(error), error.text()});
    }
}

bool Statement::next()
{
    if (m_query.next())
        return true;
    // A row that cannot be read ends the result like its last row does, but leaves an error.
    const QSqlError error = m_query.lastError();
    if (error.isValid())
        throw StoreError({m_engine.classify(error), error.text()});
    return false;
}

QDate Statement::day(int column) const
{
    const QVariant value = m_query.value(column);
    if (value.metaType().id() == QMetaType::QDate)
        return value.toDate();
    return QDate::fromString(value.toString(), Qt::ISODate);
}

QDateTime Statement::time(int column) const
{
    return m_query.value(column).toDateTime().toUTC();
}

QString withNamedPlaceholders(const QString& sql)
{
    const QStringList parts = sql.split(QLatin1Char('?'));
    QString named = parts[0];
    for (int i = 1; i < parts.size(); ++i)
        named += Statement::placeholder(i - 1) + parts[i];
    return named;
}

QString storedTime(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QString storedDay(const QDate& day)
{
    return day.toString(Qt::ISODate);
}

} // namespace backend
