#pragma once

#include "backend/store/UserModel.h"

#include <QDate>
#include <QString>

namespace backend {

/// What a rule needs to know of the user who is to receive a grant.
struct GranteeState
{
    /// 0 = nobody has that name.
    qint64 id = 0;
    bool enabled = false;
};

/// The rules that a grant has to keep whatever the page sends. Each returns the reason of a refusal
/// in Chinese, an empty text when there is none. They are judged inside the transaction that
/// writes the grant.
namespace grantrules {

/// The range is not inverted and ends today or later.
QString daysProblem(const QDate& firstDay, const QDate& lastDay, const QDate& today);
/// A fraction in (0, 1], or the value that stands for no condition.
QString ratioProblem(const GW::CAuthLimit& limit);
/// Belongs to the user, is free, is no sub-account and has none; `account` is null when the user
/// has no such account.
QString accountProblem(const ModelAccount* account);
/// Exists, is enabled and is not the user himself.
QString granteeProblem(const GranteeState& grantee, qint64 userId);

} // namespace grantrules

} // namespace backend
