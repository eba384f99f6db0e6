#include "backend/store/GrantOperations.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/GrantRow.h"
#include "backend/store/StoreBatch.h"
#include "backend/store/TextRules.h"

#include <QStringList>

#include <sodium.h>

namespace backend {

namespace {

QString firstProblem(const QString& first, const QString& second)
{
    return first.isEmpty() ? second : first;
}

} // namespace

QString newGrantReference()
{
    QByteArray bytes(16, Qt::Uninitialized);
    randombytes_buf(bytes.data(), static_cast<std::size_t>(bytes.size()));
    return QString::fromLatin1(bytes.toHex());
}

StoreReply GrantOperations::add(const StoreRequest& request)
{
    // What no page sends leaves no trace, not even in the audit trail.
    const QString hostile =
        firstProblem(userNameProblem(request.user), accountProblem(request.account));
    if (!hostile.isEmpty())
        return StoreReply::refused(hostile);

    const UserModel& model = m_batch.model();
    const int index = model.ownIndex(GW::genAccountKeyQs(request.account));
    const ModelAccount* account = index < 0 ? nullptr : &model.own[index];
    const GranteeState grantee = m_batch.grantee(request.user);
    const QDate firstDay = m_batch.days().day(request.limit.startTime);
    const QDate lastDay = m_batch.days().day(request.limit.endTime);

    QString problem = grantrules::accountProblem(account);
    if (problem.isEmpty())
        problem = grantrules::granteeProblem(grantee, model.userId);
    if (problem.isEmpty())
        problem = grantrules::daysProblem(firstDay, lastDay, m_batch.today());
    if (problem.isEmpty())
        problem = grantrules::ratioProblem(request.limit);

    const bool hasRatio = request.limit.hasMarginRatio();
    AuditTrail::Record record{model.userId,
                              model.userId,
                              grantee.id,
                              request.flag ? "grant" : "prepare",
                              account ? account->id : 0,
                              {},
                              problem};
    // The rules have refused a missing account already; the second test only says so.
    if (!problem.isEmpty() || !account) {
        m_batch.audit().write(record);
        return StoreReply::refused(problem);
    }

    const GrantState state = request.flag ? GrantState::Current : GrantState::Prepared;
    CurrentGrant grant;
    grant.id = m_batch.nextGrantId();
    grant.reference = newGrantReference();
    grant.otherId = grantee.id;
    grant.otherName = request.user.normalized(QString::NormalizationForm_C);
    grant.firstDay = firstDay;
    grant.lastDay = lastDay;
    if (hasRatio)
        grant.ratio = request.limit.availableMarginRatio;
    grant.source = request.flag ? GrantSource::Server : GrantSource::File;

    if (!request.flag)
        m_batch.database().statement("grants.forget_prepared").run(account->id);
    m_batch.database()
        .statement("grants.insert")
        .run(grant.id, grant.reference, model.userId, grantee.id, account->id,
             m_batch.dayText(firstDay), m_batch.dayText(lastDay),
             hasRatio ? QVariant(grant.ratio) : QVariant(QMetaType(QMetaType::Double)),
             static_cast<int>(grant.source), static_cast<int>(state), m_batch.time());
    record.detail = m_batch.detailText(firstDay, lastDay, grant.ratio);
    m_batch.audit().write(record);

    if (request.flag) {
        m_batch.touch(model.userId);
        m_batch.touch(grantee.id);
        m_batch.editor().setGrant(index, grant);
    }
    StoreReply reply = StoreReply::accepted();
    reply.reference = grant.reference;
    return reply;
}

StoreReply GrantOperations::cancel(const StoreRequest& request)
{
    const QString hostile =
        firstProblem(userNameProblem(request.user), accountProblem(request.account));
    if (!hostile.isEmpty())
        return StoreReply::refused(hostile);

    const UserModel& model = m_batch.model();
    const int index = model.ownIndex(GW::genAccountKeyQs(request.account));
    AuditTrail::Record record;
    record.actorId = model.userId;
    record.userId = model.userId;
    record.action = "cancel";
    if (index < 0) {
        record.error = QStringLiteral("账号不存在或不属于当前用户");
    } else {
        const ModelAccount& account = model.own[index];
        record.accountId = account.id;
        if (account.grant.isNull())
            record.error = QStringLiteral("账号没有有效的授权");
        else if (account.grant.otherName != request.user.normalized(QString::NormalizationForm_C))
            record.error = QStringLiteral("账号没有授权给该用户");
    }
    if (!record.error.isEmpty()) {
        m_batch.audit().write(record);
        return StoreReply::refused(record.error);
    }

    const CurrentGrant grant = model.own[index].grant;
    m_batch.database()
        .statement("grants.end")
        .run(static_cast<int>(GrantState::Cancelled), m_batch.time(), grant.id);
    record.otherUserId = grant.otherId;
    record.detail = m_batch.detailText(grant.firstDay, grant.lastDay, grant.ratio);
    m_batch.audit().write(record);
    m_batch.touch(model.userId);
    m_batch.touch(grant.otherId);
    m_batch.editor().setGrant(index, {});
    return StoreReply::accepted();
}

StoreReply GrantOperations::checkUser(const StoreRequest& request)
{
    const QString hostile = userNameProblem(request.user);
    if (!hostile.isEmpty())
        return StoreReply::refused(hostile);
    const QString problem =
        grantrules::granteeProblem(m_batch.grantee(request.user), m_batch.model().userId);
    return problem.isEmpty() ? StoreReply::accepted() : StoreReply::refused(problem);
}

QString GrantOperations::redeemOne(const FileGrant& grant, StoreReply& reply)
{
    GrantRow row;
    if (!row.read(m_batch.database(), grant.reference))
        return QStringLiteral("授权不存在");
    const UserModel& model = m_batch.model();
    if (row.granteeId != model.userId)
        return QStringLiteral("授权文件不是授予当前用户的");
    QString problem;
    if (row.state == GrantState::Cancelled)
        problem = QStringLiteral("授权已被取消");
    else if (row.state == GrantState::Expired || row.lastDay < m_batch.today())
        problem = QStringLiteral("授权已过期");
    else if (row.state == GrantState::Prepared)
        problem = QStringLiteral("授权尚未生效");
    else if (row.source != GrantSource::File)
        problem = QStringLiteral("授权不是文件授权");
    else if (row.redeemed)
        problem = QStringLiteral("授权已导入过");
    else if (row.ownerId != row.grantorId)
        problem = QStringLiteral("账号已不属于授权人");
    else if (row.accountKey != grant.accountKey)
        problem = QStringLiteral("授权文件与授权记录不符");

    if (problem.isEmpty()) {
        Statement update = m_batch.database().statement("grants.redeem");
        if (update.run(m_batch.time(), row.id).affectedRows() != 1)
            problem = QStringLiteral("授权已导入过");
    }
    m_batch.audit().write({model.userId, model.userId, row.grantorId, "redeem", row.accountId,
                           m_batch.detailText(row.firstDay, row.lastDay, row.ratio), problem});
    if (problem.isEmpty())
        reply.redeemed.append({row.accountKey, row.accountSecret});
    return problem;
}

StoreReply GrantOperations::redeem(const StoreRequest& request)
{
    StoreReply reply = StoreReply::accepted();
    QStringList refusals;
    for (const FileGrant& grant : request.grants) {
        const QString problem = redeemOne(grant, reply);
        if (problem.isEmpty())
            continue;
        if (refusals.isEmpty())
            reply.refusedKey = grant.accountKey;
        refusals.append(QStringLiteral("账号%1：%2").arg(grant.accountName, problem));
    }
    if (!reply.redeemed.isEmpty()) {
        m_batch.touch(m_batch.model().userId);
        m_batch.readAnew();
    }
    reply.ok = refusals.isEmpty();
    reply.error = refusals.join(QStringLiteral("；"));
    return reply;
}

} // namespace backend
