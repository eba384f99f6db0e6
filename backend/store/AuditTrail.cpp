#include "backend/store/AuditTrail.h"

#include "backend/store/Database.h"
#include "backend/store/TextRules.h"
#include "utils/ExchangeTimeZone.h"

namespace backend {

namespace {

QVariant idOrNull(qint64 id)
{
    return id == 0 ? QVariant(QMetaType(QMetaType::LongLong)) : QVariant(id);
}

} // namespace

AuditTrail::AuditTrail(Database& database, QString time)
    : m_database(database), m_time(std::move(time))
{
}

void AuditTrail::write(const Record& record)
{
    if (m_nextId == 0) {
        Statement row = m_database.statement("audit.next_id");
        row.run().next();
        m_nextId = row.integer(0);
    }
    m_database.statement("audit.insert")
        .run(m_nextId, m_time, idOrNull(record.actorId), idOrNull(record.userId),
             idOrNull(record.otherUserId), QString::fromLatin1(record.action),
             idOrNull(record.accountId), fitted(record.detail), record.error.isEmpty(),
             fitted(record.error));
    ++m_nextId;
}

QVector<AuditEntry> AuditTrail::read(qint64 userId, int limit)
{
    QVector<AuditEntry> entries;
    Statement row = m_database.statement("audit.of_user");
    row.run(userId, userId, limit);
    while (row.next()) {
        AuditEntry entry;
        entry.id = row.integer(0);
        entry.when = row.time(1).toTimeZone(utils::exchangeTimeZone());
        entry.actor = row.text(2);
        entry.action = row.text(3);
        // To the one it was done to, the other user is the one who did it.
        entry.otherUser = row.integer(4) == userId ? row.text(6) : row.text(5);
        entry.account = row.text(7).isEmpty() ? row.text(8) : row.text(7);
        entry.detail = row.text(9);
        entry.ok = row.flag(10);
        entry.error = row.text(11);
        entries.append(entry);
    }
    return entries;
}

} // namespace backend
