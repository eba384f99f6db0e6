#include "backend/store/SignInGuard.h"

#include "backend/store/Database.h"

#include <QCryptographicHash>

#include <algorithm>

namespace backend {

namespace {

// Counts of a name that nobody tried for a day are dropped, so that made-up names do not pile up.
constexpr int keepDays = 1;

QString nameDigest(const QString& name)
{
    const QByteArray bytes = name.normalized(QString::NormalizationForm_C).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

} // namespace

int SignInGuard::wait(const QString& name, const QDateTime& now)
{
    Statement row = m_database.statement("sign_in.failures");
    if (!row.run(nameDigest(name)).next())
        return 0;
    const int failures = row.number(0);
    if (failures < freeFailures)
        return 0;
    const int doublings = std::min(failures - freeFailures, 10);
    const qint64 needed = std::min(firstWaitSeconds << doublings, longestWaitSeconds);
    // A clock that was set back does not lengthen the wait.
    const qint64 passed = std::max<qint64>(row.time(1).secsTo(now), 0);
    return static_cast<int>(std::max<qint64>(needed - passed, 0));
}

void SignInGuard::count(const QString& name, const QDateTime& now)
{
    m_database.statement("sign_in.forget_old").run(storedTime(now.addDays(-keepDays)));
    const QString digest = nameDigest(name);
    int failures = 0;
    {
        Statement row = m_database.statement("sign_in.failures");
        if (row.run(digest).next())
            failures = row.number(0);
    }
    m_database.statement(failures == 0 ? "sign_in.add_first" : "sign_in.set")
        .run(failures + 1, storedTime(now), digest);
}

void SignInGuard::forget(const QString& name)
{
    m_database.statement("sign_in.forget").run(nameDigest(name));
}

} // namespace backend
