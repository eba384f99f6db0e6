#pragma once

#include "authsetting/subusers/PendingGrant.h"

#include <QMap>
#include <QString>

namespace GW {

/// The prepared grants by account key, and how many of them are still to be answered. An answered
/// grant stays until it is removed, so that a file can be written from it. GUI thread only.
class CPendingGrants
{
public:
    /// Adds or replaces the grant of an account; only an added one is counted.
    void set(const QString& key, const CPendingGrant& grant);

    /// Removes the grant of an account and counts it down; nothing when there is none.
    void remove(const QString& key);

    /// Notes the text of one result and counts down, once for each delivery; nothing when the
    /// account has no grant here.
    void answer(const QString& key, const QString& result);

    /// Whether nothing is left to be answered; forgets what was answered too often.
    bool isAnswered();

    void clear();

    /// Whether both hold the same accounts with the same days.
    bool isSameAs(const CPendingGrants& other) const;

    bool isEmpty() const { return m_grants.isEmpty(); }
    bool contains(const QString& key) const { return m_grants.contains(key); }
    int count() const { return m_count; }
    /// In key order.
    const QMap<QString, CPendingGrant>& grants() const { return m_grants; }

private:
    QMap<QString, CPendingGrant> m_grants;
    int m_count = 0;
};

} // namespace GW
