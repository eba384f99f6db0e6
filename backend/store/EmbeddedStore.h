#pragma once

#include "backend/store/Database.h"
#include "backend/store/ExchangeDays.h"
#include "backend/store/SubUserOperations.h"
#include "backend/store/UserStore.h"

#include <QElapsedTimer>

#include <memory>

namespace backend {

class StoreBatch;

/// The store in a local database: rules judged here, inside the transaction that holds the
/// engine's write lock. The user's own data is kept in memory and read again only when its version
/// in the store says that somebody else changed it.
class EmbeddedStore final : public UserStore
{
public:
    EmbeddedStore(const StoreOptions& options, qint64 userId, const QString& userName);
    ~EmbeddedStore() override;

    StoreFailure open() override;
    QVector<StoreReply> run(const QVector<StoreRequest>& requests) override;
    Exported commitExport(const QVector<FileGrant>& grants, bool repeat) override;
    void revertExport(const QStringList& references) override;
    void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason) override;
    void poll() override;
    QVector<AuditEntry> auditTrail(int limit) override;
    Environment environment() override;
    bool isOnline() const override { return true; }
    const UserModel& model() const override { return m_model; }
    ModelChanges takeChanges() override;

private:
    enum class Access { Read, Write };
    template <class Work>
    StoreFailure inBatch(Access access, const Work& work);
    StoreFailure catchUp(Access access);
    void refresh(StoreBatch& batch, Access access);
    QHash<quint64, QString> hashPasswords(const QVector<StoreRequest>& requests) const;
    StoreFailure runOnce(const QVector<StoreRequest>& requests,
                         const QHash<quint64, QString>& hashes, bool apart,
                         QVector<StoreReply>* replies);
    StoreReply applyApart(StoreBatch& batch, const StoreRequest& request, const QString& hash);
    StoreReply dispatch(StoreBatch& batch, const StoreRequest& request, const QString& hash);
    void notePassword(const StoreRequest& request, const StoreReply& reply);

    StoreOptions m_options;
    std::unique_ptr<Database> m_database;
    ExchangeDays m_days;
    UserModel m_model;
    ModelChanges m_changes;
    FailedPasswords m_failedPasswords;
    qint64 m_marker = 0;
    /// The last day for which overdue grants were ended.
    QDate m_endedFor;
    /// Runs since ending them failed.
    QElapsedTimer m_endingFailed;
};

} // namespace backend
