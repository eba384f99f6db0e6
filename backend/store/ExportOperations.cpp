#include "backend/store/ExportOperations.h"

#include "backend/store/GrantRow.h"
#include "backend/store/StoreBatch.h"
#include "backend/store/TextRules.h"

#include <cmath>

namespace backend {

namespace {

// The ratio went through memory only, so nothing but equality is expected; the tolerance is the
// one by which "no condition" is told.
bool sameRatio(double left, double right)
{
    return left == right || std::fabs(left - right) <= 1e-5;
}

} // namespace

UserStore::Exported ExportOperations::commitOne(const FileGrant& grant, bool repeat)
{
    const UserModel& model = m_batch.model();
    GrantRow row;
    if (!row.read(m_batch.database(), grant.reference) || row.grantorId != model.userId)
        return {ExportError::UnknownReference, QStringLiteral("授权不存在"), {}};
    if (row.accountKey != grant.accountKey ||
        row.granteeName != grant.grantee.normalized(QString::NormalizationForm_C) ||
        row.firstDay != m_batch.days().day(grant.limit.startTime) ||
        row.lastDay != m_batch.days().day(grant.limit.endTime) ||
        !sameRatio(row.ratio, grant.limit.availableMarginRatio))
        return {ExportError::Altered, QStringLiteral("授权与准备时的内容不符"), {}};
    if (repeat && row.state == GrantState::Current && row.source == GrantSource::File)
        return {};
    if (row.state != GrantState::Prepared)
        return {ExportError::NotPrepared, QStringLiteral("授权已失效或已写入其他文件"), {}};

    const int index = model.ownIndex(row.accountKey);
    QString problem = grantrules::accountProblem(index < 0 ? nullptr : &model.own[index]);
    if (problem.isEmpty())
        problem = grantrules::granteeProblem({row.granteeId, row.granteeEnabled}, model.userId);
    if (problem.isEmpty())
        problem = grantrules::daysProblem(row.firstDay, row.lastDay, m_batch.today());
    if (!problem.isEmpty())
        return {ExportError::Refused, problem, {}};

    m_batch.database().statement("grants.make_current").run(row.id);
    m_batch.audit().write({model.userId, model.userId, row.granteeId, "export", row.accountId,
                           m_batch.detailText(row.firstDay, row.lastDay, row.ratio), QString()});
    // Nothing changes for the grantee before he redeems the file.
    m_batch.touch(model.userId);
    m_batch.editor().setGrant(index, {row.id, grant.reference, row.granteeId, row.granteeName,
                                      row.firstDay, row.lastDay, row.ratio, GrantSource::File});
    return {ExportError::None, {}, {grant.reference}};
}

UserStore::Exported ExportOperations::commit(const QVector<FileGrant>& grants, bool repeat)
{
    UserStore::Exported all;
    for (const FileGrant& grant : grants) {
        UserStore::Exported one = commitOne(grant, repeat);
        if (one.error != ExportError::None)
            return one;
        all.changed += one.changed;
    }
    return all;
}

void ExportOperations::revert(const QStringList& references)
{
    const UserModel& model = m_batch.model();
    for (const QString& reference : references) {
        GrantRow row;
        if (!row.read(m_batch.database(), reference))
            continue;
        Statement update = m_batch.database().statement("grants.take_back");
        if (update.run(row.id).affectedRows() != 1)
            continue;
        m_batch.audit().write({model.userId, model.userId, row.granteeId, "export", row.accountId,
                               QString(), QStringLiteral("授权文件未能写出，授权恢复为未生效")});
        m_batch.touch(model.userId);
        const int index = model.ownIndex(row.accountKey);
        if (index >= 0)
            m_batch.editor().setGrant(index, {});
    }
}

void ExportOperations::noteUnwritten(const QVector<FileGrant>& grants, const QString& reason)
{
    const UserModel& model = m_batch.model();
    for (const FileGrant& grant : grants) {
        const int index = model.ownIndex(grant.accountKey);
        // What no page sends leaves no trace.
        if (index < 0 || !userNameProblem(grant.grantee).isEmpty())
            continue;
        m_batch.audit().write({model.userId, model.userId, m_batch.grantee(grant.grantee).id,
                               "export", model.own[index].id, QString(), reason});
    }
}

} // namespace backend
