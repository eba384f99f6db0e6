#pragma once

#include "backend/store/SqlEngine.h"

#include <QDate>
#include <QDateTime>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

namespace backend {

/// A prepared statement in use; going out of scope frees it for the next use and releases the
/// locks of a half-read result. Failures are thrown as StoreError.
class Statement
{
public:
    Statement(QSqlQuery& query, const SqlEngine& engine) : m_query(query), m_engine(engine) {}
    ~Statement() { m_query.finish(); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    /// Runs the statement with `values` in the order of its question marks.
    template <class... Values>
    Statement& run(const Values&... values)
    {
        int index = 0;
        (m_query.bindValue(placeholder(index++), bindable(values)), ...);
        execute();
        return *this;
    }

    bool next();
    bool isNull(int column) const { return m_query.isNull(column); }
    qint64 integer(int column) const { return m_query.value(column).toLongLong(); }
    int number(int column) const { return m_query.value(column).toInt(); }
    double real(int column) const { return m_query.value(column).toDouble(); }
    bool flag(int column) const { return m_query.value(column).toBool(); }
    QString text(int column) const { return m_query.value(column).toString(); }
    std::string bytes(int column) const { return text(column).toStdString(); }
    QDate day(int column) const;
    QDateTime time(int column) const;
    int affectedRows() const { return m_query.numRowsAffected(); }

    /// The name of the value at that position.
    static const QString& placeholder(int index);

private:
    // The driver would take a null text for NULL; only a null QVariant means that here.
    static QVariant bindable(const QString& text)
    {
        return text.isNull() ? QVariant(QStringLiteral("")) : QVariant(text);
    }
    static QVariant bindable(const QVariant& value) { return value; }
    void execute();

    QSqlQuery& m_query;
    const SqlEngine& m_engine;
};

/// `sql` with its question marks replaced by the names under which Statement binds: the driver
/// looks a name up far faster than a position.
QString withNamedPlaceholders(const QString& sql);

/// How times are bound and read: UTC, ISO 8601, milliseconds.
QString storedTime(const QDateTime& time);
/// How days are bound: ISO 8601.
QString storedDay(const QDate& day);

} // namespace backend
