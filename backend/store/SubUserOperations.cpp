#include "backend/store/SubUserOperations.h"

#include "backend/store/PasswordHash.h"
#include "backend/store/SignInGuard.h"
#include "backend/store/StoreBatch.h"
#include "backend/store/TextRules.h"

namespace backend {

QString SubUserOperations::problem(const QString& name, int* index) const
{
    QString hostile = userNameProblem(name);
    if (!hostile.isEmpty())
        return hostile;
    *index = m_batch.model().subUserIndex(name.normalized(QString::NormalizationForm_C));
    return *index < 0 ? QStringLiteral("子用户不存在或不属于当前用户") : QString();
}

StoreReply SubUserOperations::refuse(const QString& error, const char* action, qint64 subUserId)
{
    const qint64 userId = m_batch.model().userId;
    m_batch.audit().write({userId, userId, subUserId, action, 0, QString(), error});
    return StoreReply::refused(error);
}

StoreReply SubUserOperations::setEnabled(const StoreRequest& request)
{
    int index = -1;
    const QString hostile = problem(request.user, &index);
    if (!hostile.isEmpty())
        return StoreReply::refused(hostile);

    const UserModel& model = m_batch.model();
    const ModelSubUser subUser = model.subUsers[index];
    const auto failed = m_failedPasswords.constFind(request.user);
    if (request.flag && failed != m_failedPasswords.constEnd() && *failed > request.seen) {
        return refuse(QStringLiteral("子用户密码未能修改，没有启用"), "sub_user_state", subUser.id);
    }
    m_batch.database().statement("users.set_enabled").run(request.flag, subUser.id, model.userId);
    m_batch.forgetGrantees();
    m_batch.audit().write({model.userId, model.userId, subUser.id, "sub_user_state", 0,
                           request.flag ? QStringLiteral("启用") : QStringLiteral("禁用"),
                           QString()});
    if (subUser.enabled != request.flag) {
        m_batch.touch(model.userId);
        m_batch.touch(subUser.id);
        m_batch.editor().setSubUserEnabled(index, request.flag);
    }
    return StoreReply::accepted();
}

StoreReply SubUserOperations::setPassword(const StoreRequest& request, const QString& hash)
{
    int index = -1;
    const QString hostile = problem(request.user, &index);
    if (!hostile.isEmpty())
        return StoreReply::refused(hostile);

    const UserModel& model = m_batch.model();
    const ModelSubUser subUser = model.subUsers[index];
    if (!isPasswordDigest(request.digest)) {
        return refuse(QStringLiteral("密码摘要必须是40位十六进制字符"), "sub_user_password",
                      subUser.id);
    }
    if (hash.isEmpty())
        return refuse(QStringLiteral("内存不足，密码未修改"), "sub_user_password", subUser.id);
    m_batch.database().statement("users.set_password").run(hash, subUser.id, model.userId);
    SignInGuard(m_batch.database()).forget(subUser.name);
    m_batch.audit().write(
        {model.userId, model.userId, subUser.id, "sub_user_password", 0, QString(), QString()});
    return StoreReply::accepted();
}

} // namespace backend
