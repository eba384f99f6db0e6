#pragma once

#include "backend/client/Delivery.h"
#include "backend/client/RequestQueue.h"
#include "backend/client/SnapshotBuilder.h"
#include "backend/store/UserStore.h"

#include <QObject>

#include <functional>
#include <memory>

class QTimer;

namespace backend {

/// The side of the client that talks to the store, in a thread of its own. Every function but the
/// constructor and destructor runs in that thread.
class StoreWorker : public QObject
{
    Q_OBJECT

public:
    /// `deliver` is called in the worker's thread with what was committed.
    using Deliver = std::function<void(const std::shared_ptr<Delivery>&)>;

    /// Called in the worker's thread when the store was lost or found again, and when it has
    /// another reason than before not to take the user back; see UserStore::refusal().
    using NoteState = std::function<void(bool isOnline, const QString& refusal)>;

    StoreWorker(const StoreOptions& options, qint64 userId, const QString& userName,
                RequestQueue& queue, Deliver deliver, NoteState noteState);
    ~StoreWorker() override;

    /// Opens the store and reads the user's data into `first`, and what there is besides into
    /// `environment`.
    StoreFailure open(Delivery* first, Environment* environment);
    /// Runs everything that is queued as one transaction and delivers the results.
    void process();
    /// See UserStore; the new state, if any, goes into `delivery`.
    UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat,
                                     Delivery* delivery);
    void revertExport(const QStringList& references, Delivery* delivery);
    void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason, Delivery* delivery);
    /// See UserStore.
    QVector<AuditEntry> auditTrail(int limit);
    /// Lets go of the store and of the timer.
    void close();

private:
    void poll();
    void addSnapshot(Delivery* delivery);
    void noteState();

    StoreOptions m_options;
    RequestQueue& m_queue;
    Deliver m_deliver;
    NoteState m_noteState;
    bool m_isOnline = true;
    QString m_refusal;
    std::unique_ptr<UserStore> m_store;
    SnapshotBuilder m_snapshots;
    std::unique_ptr<QTimer> m_pollTimer;
    quint64 m_deliveries = 0;
};

} // namespace backend
