#include "backend/client/StoreWorker.h"

#include <QTimer>

#include <utility>

namespace backend {

namespace {

ClientResult resultOf(const ClientRequest& sent, const StoreReply& reply)
{
    const StoreRequest& request = sent.request;
    ClientResult result;
    result.kind = request.kind;
    result.number = request.number;
    result.user = request.user;
    result.account = request.account;
    result.limit = request.limit;
    result.tag = sent.tag;
    result.flag = request.flag;
    result.ok = reply.ok;
    result.error = reply.error;
    result.text =
        request.kind == StoreRequest::Kind::SetPassword ? request.digest : reply.reference;
    result.key = reply.refusedKey;
    return result;
}

// A file makes one result per account that it gave, and a last one for those that were refused.
void appendResults(const ClientRequest& sent, const StoreReply& reply,
                   QVector<ClientResult>& results)
{
    for (const StoreReply::RedeemedAccount& account : reply.redeemed) {
        ClientResult result;
        result.kind = sent.request.kind;
        result.number = sent.request.number;
        result.ok = true;
        result.key = account.key;
        result.text = account.secret;
        results.append(result);
    }
    if (sent.request.kind != StoreRequest::Kind::Redeem || !reply.ok)
        results.append(resultOf(sent, reply));
}

} // namespace

StoreWorker::StoreWorker(const StoreOptions& options, qint64 userId, const QString& userName,
                         RequestQueue& queue, Deliver deliver, NoteState noteState)
    : m_options(options), m_queue(queue), m_deliver(std::move(deliver)),
      m_noteState(std::move(noteState)), m_store(UserStore::create(options, userId, userName))
{
}

StoreWorker::~StoreWorker() = default;

StoreFailure StoreWorker::open(Delivery* first, Environment* environment)
{
    // Queued, because the store may be in the middle of something.
    m_store->setWakeUp(
        [this] { QMetaObject::invokeMethod(this, &StoreWorker::poll, Qt::QueuedConnection); });
    StoreFailure failure = m_store->open();
    if (failure) {
        close();
        return failure;
    }
    addSnapshot(first);
    *environment = m_store->environment();
    m_pollTimer = std::make_unique<QTimer>();
    connect(m_pollTimer.get(), &QTimer::timeout, this, &StoreWorker::poll);
    m_pollTimer->start(m_options.pollIntervalMs);
    return {};
}

void StoreWorker::close()
{
    m_pollTimer.reset();
    m_store.reset();
}

void StoreWorker::process()
{
    const QVector<ClientRequest> sent = m_queue.takeAll();
    if (sent.isEmpty())
        return;
    QVector<StoreRequest> requests;
    requests.reserve(sent.size());
    for (const ClientRequest& request : sent)
        requests.append(request.request);
    const QVector<StoreReply> replies = m_store->run(requests);

    auto delivery = std::make_shared<Delivery>();
    delivery->results.reserve(sent.size());
    for (qsizetype i = 0; i < sent.size(); ++i)
        appendResults(sent[i], replies[i], delivery->results);
    addSnapshot(delivery.get());
    m_deliver(delivery);
    noteState();
}

void StoreWorker::noteState()
{
    const bool isOnline = m_store->isOnline();
    const QString refusal = m_store->refusal();
    if (isOnline == m_isOnline && refusal == m_refusal)
        return;
    m_isOnline = isOnline;
    m_refusal = refusal;
    m_noteState(isOnline, refusal);
}

QVector<AuditEntry> StoreWorker::auditTrail(int limit)
{
    QVector<AuditEntry> entries = m_store ? m_store->auditTrail(limit) : QVector<AuditEntry>();
    if (m_store)
        noteState();
    return entries;
}

void StoreWorker::addSnapshot(Delivery* delivery)
{
    const ModelChanges changes = m_store->takeChanges();
    delivery->number = ++m_deliveries;
    if (changes.any())
        delivery->snapshot = m_snapshots.update(m_store->model(), changes);
}

UserStore::Exported StoreWorker::commitExport(const QVector<FileGrant>& grants, bool repeat,
                                              Delivery* delivery)
{
    UserStore::Exported exported = m_store->commitExport(grants, repeat);
    addSnapshot(delivery);
    noteState();
    return exported;
}

void StoreWorker::revertExport(const QStringList& references, Delivery* delivery)
{
    m_store->revertExport(references);
    addSnapshot(delivery);
    noteState();
}

void StoreWorker::noteUnwritten(const QVector<FileGrant>& grants, const QString& reason,
                                Delivery* delivery)
{
    m_store->noteUnwritten(grants, reason);
    addSnapshot(delivery);
    noteState();
}

void StoreWorker::poll()
{
    if (!m_store)
        return;
    m_store->poll();
    auto delivery = std::make_shared<Delivery>();
    addSnapshot(delivery.get());
    if (delivery->snapshot)
        m_deliver(delivery);
    noteState();
}

} // namespace backend
