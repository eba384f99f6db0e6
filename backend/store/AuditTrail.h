#pragma once

#include "backend/store/AuditEntry.h"

#include <QString>
#include <QVector>

namespace backend {

class Database;

/// The append-only record of who did what to whom, and with what result. Failures are thrown as
/// StoreError.
class AuditTrail
{
public:
    /// One entry to be written; 0 stands for nobody and for no account.
    struct Record
    {
        qint64 actorId = 0;
        qint64 userId = 0;
        qint64 otherUserId = 0;
        const char* action = "";
        qint64 accountId = 0;
        QString detail;
        /// Empty after a success.
        QString error;
    };

    /// Entries are stamped with `time` (UTC, ISO 8601). To write, the caller must be inside a
    /// writing transaction.
    AuditTrail(Database& database, QString time);

    void write(const Record& record);
    /// What concerns that user, newest first.
    QVector<AuditEntry> read(qint64 userId, int limit);

private:
    Database& m_database;
    QString m_time;
    qint64 m_nextId = 0;
};

} // namespace backend
