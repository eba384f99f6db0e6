#include "backend/store/StoreBatch.h"

#include "backend/store/ModelReader.h"

#include <utility>

namespace backend {

StoreBatch::StoreBatch(Database& database, ModelEditor& editor, ExchangeDays& days,
                       const QDateTime& now)
    : m_database(database), m_editor(editor), m_days(days), m_time(storedTime(now)),
      m_today(now.date()), m_audit(database, m_time)
{
}

GranteeState StoreBatch::grantee(const QString& name)
{
    const auto found = m_grantees.constFind(name);
    if (found != m_grantees.constEnd())
        return *found;
    GranteeState state;
    Statement row = m_database.statement("users.by_name");
    if (row.run(name.normalized(QString::NormalizationForm_C)).next())
        state = {row.integer(0), row.flag(2)};
    m_grantees.insert(name, state);
    return state;
}

qint64 StoreBatch::nextGrantId()
{
    if (m_nextGrantId == 0) {
        Statement row = m_database.statement("grants.next_id");
        row.run().next();
        m_nextGrantId = row.integer(0);
    }
    return m_nextGrantId++;
}

void StoreBatch::endOverdueGrants()
{
    struct Overdue
    {
        qint64 id, grantorId, granteeId, accountId;
        QString detail;
    };
    QVector<Overdue> overdue;
    {
        Statement row = m_database.statement("grants.overdue");
        row.run(storedDay(m_today));
        while (row.next()) {
            overdue.append({row.integer(0), row.integer(1), row.integer(2), row.integer(3),
                            detailText(row.day(4), row.day(5), GW::CAuthLimit::noMarginRatio)});
        }
    }
    for (const Overdue& grant : overdue) {
        m_database.statement("grants.end")
            .run(static_cast<int>(GrantState::Expired), m_time, grant.id);
        m_audit.write({0, grant.grantorId, grant.granteeId, "expire", grant.accountId, grant.detail,
                       QString()});
        touch(grant.grantorId);
        touch(grant.granteeId);
    }
}

void StoreBatch::finish()
{
    for (const qint64 userId : std::as_const(m_touched)) {
        m_database.statement("users.touch").run(userId);
        if (userId == model().userId)
            m_editor.countVersion();
    }
    if (m_readAnew) {
        m_editor.replace(ModelReader(m_database).read(model().userId, model().userName, m_today));
    }
}

QString StoreBatch::dayText(const QDate& day)
{
    QString& text = m_dayTexts[day];
    if (text.isEmpty())
        text = storedDay(day);
    return text;
}

QString StoreBatch::detailText(const QDate& firstDay, const QDate& lastDay, double ratio)
{
    QString days = dayText(firstDay) + QStringLiteral(" 至 ") + dayText(lastDay);
    GW::CAuthLimit limit;
    limit.availableMarginRatio = ratio;
    if (!limit.hasMarginRatio())
        return days;
    return QStringLiteral("%1，可用保证金比例 %2%").arg(days).arg(ratio * 100.0, 0, 'f', 2);
}

} // namespace backend
