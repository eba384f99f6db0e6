#include "backend/store/Schema.h"

#include "backend/store/Database.h"
#include "backend/store/SqlText.h"
#include "backend/store/StoreError.h"
#include "backend/store/Transaction.h"

namespace backend {

int Schema::version()
{
    if (m_database.execute(m_database.engine().countTablesSql()).toInt() == 0)
        return 0;
    try {
        const QVariant found = m_database.execute(sqlText("schema.version"));
        return found.isValid() ? found.toInt() : -1;
    } catch (const StoreError& error) {
        if (error.failure().kind != StoreFailure::Kind::Other)
            throw;
        throw StoreError({StoreFailure::Kind::NotAStore, error.failure().detail});
    }
}

void Schema::requireUsable(bool emptyAllowed)
{
    const int found = version();
    if (found == 0 && !emptyAllowed)
        throw StoreError({StoreFailure::Kind::NotAStore, QStringLiteral("no tables")});
    if (found < 0)
        throw StoreError({StoreFailure::Kind::Damaged, QStringLiteral("impossible version")});
    if (found > currentVersion)
        throw StoreError({StoreFailure::Kind::NewerSchema, QString::number(found)});
}

void Schema::requireSound()
{
    const QString result = m_database.check(false);
    if (result != QStringLiteral("ok"))
        throw StoreError({StoreFailure::Kind::Damaged, result});
}

void Schema::migrate(int version)
{
    if (this->version() >= version)
        return;
    Transaction transaction(m_database, Transaction::Mode::Write);
    // Another process may have been faster.
    for (int next = this->version() + 1; next <= version; ++next)
        apply(next);
    transaction.commit();
}

void Schema::apply(int version)
{
    const QStringList statements = migrationScript(version, QString()) +
                                   migrationScript(version, m_database.engine().migrationSuffix());
    for (const QString& statement : statements)
        m_database.execute(statement);
    m_database.statement(version == 1 ? "schema.set_first_version" : "schema.set_version")
        .run(version);
}

} // namespace backend
