#pragma once

#include "backend/store/UserStore.h"
#include "backend/store/postgresql/HintPacer.h"
#include "backend/store/postgresql/RequestJson.h"
#include "backend/store/postgresql/ServerLink.h"

#include <QElapsedTimer>
#include <QHash>
#include <QJsonObject>

#include <memory>

class QTimer;

namespace backend {

/// The store on a PostgreSQL server, which judges every rule itself: the user is whoever the
/// connection was made as. Notices tell when to look, the rows tell what changed. While the server
/// is away the model stays as it was last read and every request is refused.
class PostgresStore final : public UserStore
{
public:
    /// The location's user and the credential are the login.
    explicit PostgresStore(const StoreOptions& options);
    ~PostgresStore() override;

    StoreFailure open() override;
    QVector<StoreReply> run(const QVector<StoreRequest>& requests) override;
    Exported commitExport(const QVector<FileGrant>& grants, bool repeat) override;
    void revertExport(const QStringList& references) override;
    void poll() override;
    QVector<AuditEntry> auditTrail(int limit) override;
    Environment environment() override;
    bool isOnline() const override { return m_link && m_link->isOnline(); }
    QString refusal() const override;
    const UserModel& model() const override { return m_model; }
    ModelChanges takeChanges() override;

private:
    /// An export whose outcome nobody knows, or one that could not be taken back.
    struct OpenEnd
    {
        QString requestId;
        QString grants;
        bool repeat = false;
        QStringList references;
    };

    template <class Work>
    StoreFailure attempt(const Work& work);
    QJsonObject callForJson(const QString& sql, const QVariantList& values);
    QVector<StoreReply> refuseAll(const QVector<StoreRequest>& requests, const QString& text);
    QVector<StoreReply> answer(const QVector<StoreRequest>& requests);
    QString verifierFor(const StoreRequest& request) const;
    bool hasPasswordFailed(const StoreRequest& request) const;
    void notePassword(const StoreRequest& request, const StoreReply& reply);
    QString offlineText() const;

    void follow(const QVector<StoreRequest>& requests, const QVector<StoreReply>& replies,
                const QJsonObject& answered);
    void look();
    void onNotice();
    void awaitHints();
    /// Asks for the rows at once, because somebody has said that some changed. Whether any did.
    bool takeHint();
    void readModel(qint64 since);
    void settleIfDue(const QDate& today);
    void closeOpenEnds();
    void revert(const QStringList& references);

    StoreOptions m_options;
    std::unique_ptr<ServerLink> m_link;
    RequestJson m_json;
    ExchangeDays m_days;
    UserModel m_model;
    ModelChanges m_changes;
    QHash<QString, quint64> m_failedPasswords;
    QVector<OpenEnd> m_openEnds;
    QVector<AuditEntry> m_trail;
    HintPacer m_hints;
    /// Wakes up for the hints that wait for the end of their interval.
    std::unique_ptr<QTimer> m_hintTimer;
    QElapsedTimer m_sinceLook;
    /// The last day for which ended grants were ended on the server.
    QDate m_settledFor;
};

} // namespace backend
