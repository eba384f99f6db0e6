#include "backend/store/Database.h"

#include "backend/store/Schema.h"
#include "backend/store/SqlText.h"
#include "backend/store/StoreError.h"

#include <QSqlDatabase>

#include <atomic>

namespace backend {

namespace {

QString newConnectionName()
{
    static std::atomic<quint64> count = 0;
    return QStringLiteral("authsetting-store-%1").arg(++count);
}

} // namespace

Database::Database(const StoreOptions& options)
    : m_options(options), m_engine(SqlEngine::create(options))
{
}

Database::~Database()
{
    m_statements.clear();
    if (!m_connection.isEmpty()) {
        QSqlDatabase::database(m_connection, false).close();
        QSqlDatabase::removeDatabase(m_connection);
    }
}

void Database::connect()
{
    m_connection = newConnectionName();
    QSqlDatabase database = QSqlDatabase::addDatabase(m_engine->driver(), m_connection);
    m_engine->configure(database);
    if (!database.open()) {
        const QSqlError error = database.lastError();
        throw StoreError({m_engine->classify(error), error.text()});
    }
    m_engine->rememberIdentity();
}

void Database::open(Creation creation, Inspection inspection)
{
    if (!m_engine)
        throw StoreError({StoreFailure::Kind::Missing, QStringLiteral("no engine for location")});
    const StoreFailure failure = m_engine->prepare(creation == Creation::Allowed);
    if (failure)
        throw StoreError(failure);
    connect();
    Schema schema(*this);
    schema.requireUsable(creation == Creation::Allowed);
    if (inspection == Inspection::Whole)
        schema.requireSound();
    for (const QString& sql : m_engine->sessionSetup())
        execute(sql);
    schema.migrate();
}

QSqlQuery& Database::prepared(const char* name)
{
    std::unique_ptr<QSqlQuery>& query = m_statements[name];
    if (!query) {
        auto fresh = std::make_unique<QSqlQuery>(QSqlDatabase::database(m_connection, false));
        fresh->setForwardOnly(true);
        if (!fresh->prepare(withNamedPlaceholders(sqlText(name)))) {
            const QSqlError error = fresh->lastError();
            throw StoreError({m_engine->classify(error), error.text()});
        }
        query = std::move(fresh);
    }
    return *query;
}

Statement Database::statement(const char* name)
{
    return Statement(prepared(name), *m_engine);
}

QVariant Database::execute(const QString& sql)
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    if (!query.exec(sql)) {
        const QSqlError error = query.lastError();
        throw StoreError({m_engine->classify(error), error.text()});
    }
    return query.next() ? query.value(0) : QVariant();
}

void Database::requireSameStore() const
{
    if (!m_engine->isSameStore())
        throw StoreError({StoreFailure::Kind::Replaced, QStringLiteral("another file")});
}

qint64 Database::changeMarker()
{
    return execute(m_engine->changeMarkerSql()).toLongLong();
}

QString Database::check(bool thorough)
{
    return execute(m_engine->checkSql(thorough)).toString();
}

} // namespace backend
