#pragma once

#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/services/AuthLimit.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace GW {

/// What the user asked for with one choice of "授权": a grant of some accounts to one user, on the
/// server or into a file. It keeps all that its end needs, whatever the page shows by then, and
/// overwrites the file's password when it goes. GUI thread only.
class CGrantRequest
{
public:
    struct Entry
    {
        mbservice::CAccountInfo account;
        CAuthLimit limit;
        /// Whether a result came, and the reference that the latest one brought when it granted.
        bool answered = false;
        QString reference;
    };

    CGrantRequest(const QString& grantee, bool toServer, const QString& path,
                  const QString& password);
    ~CGrantRequest();
    CGrantRequest(const CGrantRequest&) = delete;
    CGrantRequest& operator=(const CGrantRequest&) = delete;

    /// Adds an account; of two with one key the first counts.
    void add(const QString& key, const mbservice::CAccountInfo& account, const CAuthLimit& limit);

    /// Whether a result with these values answers this request.
    bool asksFor(const QString& key, const QString& grantee, const CAuthLimit& limit,
                 bool toServer) const;
    /// Whether `other` asks for everything that this one asks for.
    bool isRepeatedBy(const CGrantRequest& other) const;

    /// Notes a result; `reference` is empty unless it granted. Nothing for an account of others.
    void answer(const QString& key, const QString& reference);
    /// Whether the account has had its result.
    bool hasAnswer(const QString& key) const;
    /// Whether no account waits for its result any more.
    bool isAnswered() const { return m_answered == m_entries.size(); }
    qsizetype answered() const { return m_answered; }

    quint64 number() const { return m_number; }
    const QString& grantee() const { return m_grantee; }
    const QString& path() const { return m_path; }
    const QString& password() const { return m_password; }
    /// In key order.
    const QMap<QString, Entry>& entries() const { return m_entries; }

    /// The grants that results confirmed so far, as these told them.
    QVector<boost::shared_ptr<CAuthDetail>> granted;
    /// Results that its page still counts on; it may hear each of them more than once.
    int due = 0;

private:
    const quint64 m_number;
    const QString m_grantee;
    const bool m_toServer;
    const QString m_path;
    QString m_password;
    QMap<QString, Entry> m_entries;
    qsizetype m_answered = 0;
};

} // namespace GW
