#include "backend/store/GrantRules.h"

#include <cmath>

namespace backend::grantrules {

QString daysProblem(const QDate& firstDay, const QDate& lastDay, const QDate& today)
{
    if (firstDay > lastDay)
        return QStringLiteral("授权开始时间晚于结束时间");
    if (lastDay < today)
        return QStringLiteral("授权结束时间早于今天");
    return {};
}

QString ratioProblem(const GW::CAuthLimit& limit)
{
    const double ratio = limit.availableMarginRatio;
    // What is no number is no condition either, but nobody asked for a grant without one.
    const bool isCondition = limit.hasMarginRatio() || std::isnan(ratio);
    if (!isCondition || (ratio > 0.0 && ratio <= 1.0))
        return {};
    return QStringLiteral("可用保证金比例必须大于0且不超过100%");
}

QString accountProblem(const ModelAccount* account)
{
    if (!account)
        return QStringLiteral("账号不存在或不属于当前用户");
    if (account->isSubAccount)
        return QStringLiteral("子账户不能授权");
    if (account->hasSubAccount)
        return QStringLiteral("含有子账户的账号不能授权");
    if (!account->grant.isNull())
        return QStringLiteral("账号已授权，请先取消原有授权");
    return {};
}

QString granteeProblem(const GranteeState& grantee, qint64 userId)
{
    if (grantee.id == 0)
        return QStringLiteral("用户不存在");
    if (grantee.id == userId)
        return QStringLiteral("不能授权给自己");
    if (!grantee.enabled)
        return QStringLiteral("用户已被禁用");
    return {};
}

} // namespace backend::grantrules
