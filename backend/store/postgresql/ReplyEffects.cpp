#include "backend/store/postgresql/ReplyEffects.h"

#include "authsetting/services/AccountKey.h"

namespace backend {

namespace {

using Kind = StoreRequest::Kind;

bool concernsAccount(const StoreRequest& request)
{
    return (request.kind == Kind::Add && request.flag) || request.kind == Kind::Cancel;
}

// Where in the model each request has its effect: -1 for none, empty when a place is not known.
std::optional<QVector<int>> places(const QVector<StoreRequest>& requests,
                                   const QVector<StoreReply>& replies, const UserModel& model)
{
    QVector<int> found(requests.size(), -1);
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const StoreRequest& request = requests[i];
        // Received accounts come with more than the reply holds.
        if (!replies[i].redeemed.isEmpty())
            return std::nullopt;
        const bool isState = request.kind == Kind::SetSubUser;
        if (!replies[i].ok || !(isState || concernsAccount(request)))
            continue;
        found[i] = isState
                       ? model.subUserIndex(request.user.normalized(QString::NormalizationForm_C))
                       : model.ownIndex(GW::genAccountKeyQs(request.account));
        if (found[i] < 0)
            return std::nullopt;
    }
    return found;
}

CurrentGrant grantOf(const StoreRequest& request, const StoreReply& reply, qint64 accountId,
                     ExchangeDays& days)
{
    CurrentGrant grant;
    grant.id = accountId;
    grant.reference = reply.reference;
    grant.otherName = request.user.normalized(QString::NormalizationForm_C);
    grant.firstDay = days.day(request.limit.startTime);
    grant.lastDay = days.day(request.limit.endTime);
    if (request.limit.hasMarginRatio())
        grant.ratio = request.limit.availableMarginRatio;
    return grant;
}

} // namespace

std::optional<ModelChanges> applyReplies(const QVector<StoreRequest>& requests,
                                         const QVector<StoreReply>& replies, ExchangeDays& days,
                                         UserModel& model)
{
    const auto found = places(requests, replies, model);
    if (!found)
        return std::nullopt;
    ModelChanges changes;
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const int index = found->at(i);
        if (index < 0)
            continue;
        const StoreRequest& request = requests[i];
        if (request.kind == Kind::SetSubUser) {
            bool& enabled = model.subUsers[index].enabled;
            changes.subUsers = changes.subUsers || enabled != request.flag;
            enabled = request.flag;
            continue;
        }
        ModelAccount& account = model.own[index];
        account.grant = request.kind == Kind::Add ? grantOf(request, replies[i], account.id, days)
                                                  : CurrentGrant();
        changes.own.append(index);
    }
    return changes;
}

} // namespace backend
