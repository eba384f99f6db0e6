#pragma once

#include "backend/store/AuditEntry.h"

#include <QVector>

class QSqlQuery;

namespace backend {

/// Turns the rows of the server's audit trail into entries; the server keeps codes and figures,
/// which get their words here. One thread.
class ServerAuditReader
{
public:
    /// The query for the newest entries, whose one value is how many.
    static QString query();
    void add(const QSqlQuery& row);
    const QVector<AuditEntry>& entries() const { return m_entries; }

private:
    QVector<AuditEntry> m_entries;
};

} // namespace backend
