#include "backend/store/Statement.h"

#include "backend/store/StoreError.h"

namespace backend {

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

QString storedTime(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QString storedDay(const QDate& day)
{
    return day.toString(Qt::ISODate);
}

} // namespace backend
