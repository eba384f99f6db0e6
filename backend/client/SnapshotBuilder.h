#pragma once

#include "backend/client/UserSnapshot.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/ModelEditor.h"

namespace backend {

/// Follows a model with snapshots for the pages. What did not change is shared with the snapshot
/// before; records that the pages hold are never altered, only replaced. One thread.
class SnapshotBuilder
{
public:
    /// Brings the snapshot to the state of `model`, of which `changes` tells what is new.
    const UserSnapshot& update(const UserModel& model, const ModelChanges& changes);
    const UserSnapshot& current() const { return m_snapshot; }

private:
    void rebuild(const UserModel& model);
    void addReceived(const UserModel& model);
    void replaceReceived(const UserModel& model);
    void replaceOwn(const UserModel& model, int index);
    void addGrant(const ModelAccount& account, const QString& grantor, const QString& grantee,
                  bool own);
    void readSubUsers(const UserModel& model);

    ExchangeDays m_days;
    UserSnapshot m_snapshot;
    QVector<boost::shared_ptr<GW::CAccount>> m_accounts;
    QSet<QString> m_subAccounts;
    QSet<QString> m_mainAccounts;
};

} // namespace backend
