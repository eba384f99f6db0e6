#include "backend/client/SnapshotBuilder.h"

#include <boost/make_shared.hpp>

namespace backend {

namespace {

boost::shared_ptr<GW::CAccount> ownAccount(const ModelAccount& account)
{
    auto shown = boost::make_shared<GW::CAccount>(account.info);
    shown->authType = account.grant.isNull() ? mbservice::AUTH_TYPE_NOT_GRANTED
                                             : mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
    return shown;
}

} // namespace

const UserSnapshot& SnapshotBuilder::update(const UserModel& model, const ModelChanges& changes)
{
    if (changes.all) {
        rebuild(model);
    } else if (changes.received || !changes.own.isEmpty()) {
        for (const int index : changes.own)
            replaceOwn(model, index);
        if (changes.received)
            replaceReceived(model);
        m_snapshot.accounts = AccountSnapshot(m_accounts, m_subAccounts, m_mainAccounts);
    }
    if (changes.all || changes.subUsers)
        readSubUsers(model);
    return m_snapshot;
}

void SnapshotBuilder::rebuild(const UserModel& model)
{
    m_snapshot = {};
    m_accounts.clear();
    m_subAccounts.clear();
    m_mainAccounts.clear();
    m_accounts.reserve(model.own.size() + model.received.size());
    m_snapshot.grants.reserve(model.own.size() + model.received.size());
    for (const ModelAccount& account : model.own) {
        m_accounts.append(ownAccount(account));
        if (account.isSubAccount)
            m_subAccounts.insert(account.key);
        if (account.hasSubAccount)
            m_mainAccounts.insert(account.key);
        if (!account.grant.isNull())
            addGrant(account, model.userName, account.grant.otherName, true);
    }
    addReceived(model);
    m_snapshot.accounts = AccountSnapshot(m_accounts, m_subAccounts, m_mainAccounts);
}

void SnapshotBuilder::addReceived(const UserModel& model)
{
    for (const ModelAccount& account : model.received) {
        auto shown = boost::make_shared<GW::CAccount>(account.info);
        shown->authType = mbservice::AUTH_TYPE_GRANTED_TO_ME;
        m_accounts.append(shown);
        addGrant(account, account.grant.otherName, model.userName, false);
    }
}

// Received accounts stand behind the own ones.
void SnapshotBuilder::replaceReceived(const UserModel& model)
{
    for (qsizetype i = model.own.size(); i < m_accounts.size(); ++i)
        m_snapshot.grants.remove(m_accounts[i]->key());
    m_accounts.resize(model.own.size());
    addReceived(model);
}

void SnapshotBuilder::replaceOwn(const UserModel& model, int index)
{
    const ModelAccount& account = model.own[index];
    const auto before = m_snapshot.grants.constFind(account.key);
    if (before != m_snapshot.grants.constEnd()) {
        m_snapshot.grantedTo[(*before)->grantee].remove(account.key);
        m_snapshot.grants.erase(before);
    }
    m_accounts[index] = ownAccount(account);
    if (!account.grant.isNull())
        addGrant(account, model.userName, account.grant.otherName, true);
}

void SnapshotBuilder::addGrant(const ModelAccount& account, const QString& grantor,
                               const QString& grantee, bool own)
{
    auto detail = boost::make_shared<GW::CAuthDetail>();
    detail->grantRef = account.grant.reference;
    detail->grantor = grantor;
    detail->grantee = grantee;
    detail->account = account.info;
    detail->account.accountPrivate.clear();
    detail->limit.startTime = m_days.seconds(account.grant.firstDay);
    detail->limit.endTime = m_days.seconds(account.grant.lastDay);
    detail->limit.availableMarginRatio = account.grant.ratio;
    m_snapshot.grants.insert(account.key, detail);
    if (own)
        m_snapshot.grantedTo[grantee].insert(account.key, detail);
}

void SnapshotBuilder::readSubUsers(const UserModel& model)
{
    m_snapshot.subUsers.clear();
    m_snapshot.activeSubUsers.clear();
    for (const ModelSubUser& subUser : model.subUsers) {
        m_snapshot.subUsers.append(subUser.name);
        if (subUser.enabled)
            m_snapshot.activeSubUsers.insert(subUser.name);
    }
}

} // namespace backend
