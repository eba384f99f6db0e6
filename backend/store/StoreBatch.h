#pragma once

#include "backend/store/AuditTrail.h"
#include "backend/store/Database.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/GrantRules.h"
#include "backend/store/ModelEditor.h"

#include <QDate>
#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QString>

namespace backend {

/// What the requests of one transaction share. Failures are thrown as StoreError.
class StoreBatch
{
public:
    StoreBatch(Database& database, ModelEditor& editor, ExchangeDays& days, const QDateTime& now);

    Database& database() { return m_database; }
    ModelEditor& editor() { return m_editor; }
    const UserModel& model() const { return m_editor.model(); }
    ExchangeDays& days() { return m_days; }
    AuditTrail& audit() { return m_audit; }
    /// When the batch began, UTC, ISO 8601.
    const QString& time() const { return m_time; }
    /// The same in the exchange time zone.
    const QDate& today() const { return m_today; }

    /// The user of that name, asked once per batch.
    GranteeState grantee(const QString& name);
    /// Has grantees asked anew, after one was enabled or disabled.
    void forgetGrantees() { m_grantees.clear(); }
    qint64 nextGrantId();
    /// A day as the store has it; a burst names few days.
    QString dayText(const QDate& day);
    /// The days and the condition of a grant as the audit trail shows them.
    QString detailText(const QDate& firstDay, const QDate& lastDay, double ratio);
    /// Notes that what this user sees has changed.
    void touch(qint64 userId) { m_touched.insert(userId); }
    /// Has the model read anew at the end, for changes that are not worth following one by one.
    void readAnew() { m_readAnew = true; }
    /// Ends the grants of all users whose last day has passed.
    void endOverdueGrants();
    /// Writes the versions of everybody concerned; the last step before the commit.
    void finish();

private:
    Database& m_database;
    ModelEditor& m_editor;
    ExchangeDays& m_days;
    QString m_time;
    QDate m_today;
    AuditTrail m_audit;
    QHash<QString, GranteeState> m_grantees;
    QHash<QDate, QString> m_dayTexts;
    QSet<qint64> m_touched;
    qint64 m_nextGrantId = 0;
    bool m_readAnew = false;
};

} // namespace backend
