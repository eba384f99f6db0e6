#include "backend/store/SignIn.h"

#include "backend/store/AuditTrail.h"
#include "backend/store/Database.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/SignInGuard.h"
#include "backend/store/TextRules.h"
#include "backend/store/Transaction.h"

namespace backend {

namespace {

QString wrongText()
{
    return QStringLiteral("用户名或密码错误");
}

} // namespace

int SignIn::reserveAttempt(const QString& name)
{
    const QDateTime now = m_database.options().now();
    Transaction transaction(m_database, Transaction::Mode::Write);
    SignInGuard guard(m_database);
    const int wait = guard.wait(name, now);
    if (wait == 0)
        guard.count(name, now);
    transaction.commit();
    return wait;
}

void SignIn::record(const QString& name, qint64 userId, bool passwordRight, const QString& error)
{
    Transaction transaction(m_database, Transaction::Mode::Write);
    if (passwordRight)
        SignInGuard(m_database).forget(name);
    AuditTrail audit(m_database, storedTime(m_database.options().now()));
    audit.write({userId, userId, 0, "sign_in", 0, QString(), error});
    transaction.commit();
}

SignIn::Result SignIn::attempt(const QString& name, const QString& digest)
{
    if (!userNameProblem(name).isEmpty() || !isPasswordDigest(digest))
        return {0, {}, wrongText()};
    const QString userName = name.normalized(QString::NormalizationForm_C);
    const int wait = reserveAttempt(userName);
    if (wait > 0)
        return {0, {}, QStringLiteral("登录失败次数过多，请在%1秒后重试").arg(wait)};

    qint64 userId = 0;
    bool enabled = false;
    QString hash;
    {
        Statement row = m_database.statement("users.by_name");
        if (row.run(userName).next()) {
            userId = row.integer(0);
            enabled = row.flag(2);
            hash = row.text(3);
        }
    }
    const PasswordHash hasher(m_database.options().cheapCryptographyForTests);
    bool right = false;
    if (userId == 0)
        hasher.spendTime(digest);
    else
        right = hasher.verify(hash, digest);

    QString error;
    if (!right)
        error = wrongText();
    else if (!enabled)
        error = QStringLiteral("用户已被禁用，请联系管理人");
    record(userName, userId, right, error);
    if (!error.isEmpty())
        return {0, {}, error};
    return {userId, userName, {}};
}

} // namespace backend
