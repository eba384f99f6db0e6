#include "backend/store/Transaction.h"

#include "backend/store/Database.h"
#include "backend/store/StoreError.h"

namespace backend {

Transaction::Transaction(Database& database, Mode mode) : m_database(database)
{
    m_database.execute(mode == Mode::Write ? m_database.engine().beginWriteSql()
                                           : QStringLiteral("BEGIN"));
}

Transaction::~Transaction()
{
    if (m_open)
        rollback();
}

void Transaction::commit()
{
    m_database.execute(QStringLiteral("COMMIT"));
    m_open = false;
}

void Transaction::rollback() noexcept
{
    try {
        m_database.execute(QStringLiteral("ROLLBACK"));
    } catch (const StoreError&) {
        // After some failures (a full disk) the engine has rolled back already.
    }
}

} // namespace backend
