#include "backend/store/postgresql/ServerAuditReader.h"

#include "backend/store/postgresql/RefusalText.h"
#include "utils/ExchangeTimeZone.h"

#include <QSqlQuery>
#include <QVariant>

namespace backend {

namespace {

QString detailText(const QSqlQuery& row)
{
    QString code = row.value(9).toString();
    if (code == QStringLiteral("enabled"))
        return QStringLiteral("启用");
    if (code == QStringLiteral("disabled"))
        return QStringLiteral("禁用");
    if (code == QStringLiteral("created"))
        return QStringLiteral("新建");
    if (row.isNull(6))
        return code;
    QString days = QStringLiteral("%1 至 %2")
                       .arg(row.value(6).toDate().toString(Qt::ISODate),
                            row.value(7).toDate().toString(Qt::ISODate));
    if (row.isNull(8))
        return days;
    return QStringLiteral("%1，可用保证金比例 %2%")
        .arg(days)
        .arg(row.value(8).toDouble() * 100.0, 0, 'f', 2);
}

} // namespace

QString ServerAuditReader::query()
{
    return QStringLiteral("SELECT id, (extract(epoch FROM happened_at) * 1000)::bigint, actor,"
                          " action, other_user, account, first_day, last_day, ratio, detail, ok,"
                          " error FROM authsetting.read_audit(?)");
}

void ServerAuditReader::add(const QSqlQuery& row)
{
    AuditEntry entry;
    entry.id = row.value(0).toLongLong();
    entry.when =
        QDateTime::fromMSecsSinceEpoch(row.value(1).toLongLong(), utils::exchangeTimeZone());
    entry.actor = row.value(2).toString();
    entry.action = row.value(3).toString();
    entry.otherUser = row.value(4).toString();
    entry.account = row.value(5).toString();
    entry.ok = row.value(10).toBool();
    entry.detail = detailText(row);
    const QString error = row.value(11).toString();
    if (!entry.ok && !error.isEmpty())
        entry.error = refusalText(error);
    m_entries.append(entry);
}

} // namespace backend
