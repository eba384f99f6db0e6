#include "backend/store/ModelEditor.h"

namespace backend {

void ModelChanges::merge(const ModelChanges& later)
{
    all = all || later.all;
    received = received || later.received;
    subUsers = subUsers || later.subUsers;
    own += later.own;
}

void ModelEditor::setGrant(int ownIndex, const CurrentGrant& grant)
{
    CurrentGrant& target = m_model.own[ownIndex].grant;
    if (!m_modelBefore)
        m_grantsBefore.append({ownIndex, target});
    target = grant;
    m_changes.own.append(ownIndex);
}

void ModelEditor::setSubUserEnabled(int subUserIndex, bool enabled)
{
    bool& target = m_model.subUsers[subUserIndex].enabled;
    if (!m_modelBefore)
        m_subUsersBefore.append({subUserIndex, target});
    target = enabled;
    m_changes.subUsers = true;
}

void ModelEditor::replace(UserModel model)
{
    if (!m_modelBefore)
        m_modelBefore = std::move(m_model);
    m_model = std::move(model);
    m_changes.all = true;
}

void ModelEditor::settleOverdue()
{
    m_model.hasOverdue = false;
}

void ModelEditor::rollback()
{
    if (m_modelBefore)
        m_model = std::move(*m_modelBefore);
    // Backwards, because one entry can have changed several times.
    for (auto before = m_grantsBefore.crbegin(); before != m_grantsBefore.crend(); ++before)
        m_model.own[before->first].grant = before->second;
    for (auto before = m_subUsersBefore.crbegin(); before != m_subUsersBefore.crend(); ++before)
        m_model.subUsers[before->first].enabled = before->second;
    m_model.version = m_version;
    m_model.hasOverdue = m_hadOverdue;
    m_modelBefore.reset();
    m_grantsBefore.clear();
    m_subUsersBefore.clear();
    m_changes = {};
}

} // namespace backend
