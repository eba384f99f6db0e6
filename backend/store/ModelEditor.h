#pragma once

#include "backend/store/UserModel.h"

#include <optional>
#include <utility>

namespace backend {

/// Which parts of a model are other than they were.
struct ModelChanges
{
    /// The model was read anew.
    bool all = false;
    /// Indexes of own accounts whose grant changed; one can come twice.
    QVector<int> own;
    /// Some received account came, went or changed.
    bool received = false;
    bool subUsers = false;

    bool any() const { return all || received || subUsers || !own.isEmpty(); }
    void merge(const ModelChanges& later);
};

/// Changes a model together with the transaction that changes the store, and undoes that when the
/// transaction fails.
class ModelEditor
{
public:
    explicit ModelEditor(UserModel& model)
        : m_model(model), m_version(model.version), m_hadOverdue(model.hasOverdue)
    {
    }
    ModelEditor(const ModelEditor&) = delete;
    ModelEditor& operator=(const ModelEditor&) = delete;

    const UserModel& model() const { return m_model; }
    void setGrant(int ownIndex, const CurrentGrant& grant);
    void setSubUserEnabled(int subUserIndex, bool enabled);
    /// Notes that the store's version of this user went up by one.
    void countVersion() { ++m_model.version; }
    void replace(UserModel model);
    /// Notes that the store no longer calls an ended grant current.
    void settleOverdue();

    void rollback();
    const ModelChanges& changes() const { return m_changes; }

private:
    UserModel& m_model;
    qint64 m_version;
    bool m_hadOverdue;
    ModelChanges m_changes;
    QVector<std::pair<int, CurrentGrant>> m_grantsBefore;
    QVector<std::pair<int, bool>> m_subUsersBefore;
    std::optional<UserModel> m_modelBefore;
};

} // namespace backend
