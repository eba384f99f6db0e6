#include "backend/store/EmbeddedStore.h"

#include "backend/store/ExportOperations.h"
#include "backend/store/GrantOperations.h"
#include "backend/store/ModelReader.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/StoreBatch.h"
#include "backend/store/StoreError.h"
#include "backend/store/Transaction.h"
#include "utils/LogCenter.h"

#include <algorithm>

namespace backend {

namespace {

// How long a store that could not be written is left alone.
constexpr qint64 endingRetryMs = 60'000;

QString disabledText()
{
    return QStringLiteral("当前用户已被禁用");
}

void logFailure(const StoreFailure& failure)
{
    utils::CLogCenter::error(failure.text() + QStringLiteral(" [") + failure.detail +
                             QStringLiteral("]"));
}

} // namespace

EmbeddedStore::EmbeddedStore(const StoreOptions& options, qint64 userId, const QString& userName)
    : m_options(options)
{
    m_model.userId = userId;
    m_model.userName = userName;
}

EmbeddedStore::~EmbeddedStore() = default;

StoreFailure EmbeddedStore::open()
{
    try {
        m_database = std::make_unique<Database>(m_options);
        m_database->open(Database::Creation::Forbidden, Database::Inspection::Brief);
        m_marker = m_database->changeMarker();
    } catch (const StoreError& error) {
        logFailure(error.failure());
        return error.failure();
    }
    return catchUp(Access::Write);
}

// Runs `work` in one transaction after bringing the model up to date; when anything fails, or when
// `work` returns false, store and model are as they were.
template <class Work>
StoreFailure EmbeddedStore::inBatch(Access access, const Work& work)
{
    ModelEditor editor(m_model);
    try {
        m_database->requireSameStore();
        Transaction transaction(*m_database, access == Access::Write ? Transaction::Mode::Write
                                                                     : Transaction::Mode::Read);
        StoreBatch batch(*m_database, editor, m_days, m_options.now());
        refresh(batch, access);
        if (!work(batch)) {
            editor.rollback();
            return {};
        }
        batch.finish();
        transaction.commit();
        m_changes.merge(editor.changes());
        if (access == Access::Write)
            m_endedFor = batch.today();
    } catch (const StoreError& error) {
        editor.rollback();
        logFailure(error.failure());
        return error.failure();
    }
    return {};
}

StoreFailure EmbeddedStore::catchUp(Access access)
{
    return inBatch(access, [](StoreBatch&) { return true; });
}

void EmbeddedStore::refresh(StoreBatch& batch, Access access)
{
    const bool anew = m_model.isOtherOn(batch.today());
    if (access == Access::Write && (m_model.hasOverdue || m_endedFor != batch.today())) {
        batch.endOverdueGrants();
        batch.editor().settleOverdue();
    }
    ModelReader reader(batch.database());
    qint64 version = -1;
    bool enabled = false;
    reader.readState(m_model.userId, &version, &enabled);
    if (version == m_model.version && !anew) {
        m_model.today = batch.today();
    } else if (enabled) {
        batch.editor().replace(reader.read(m_model.userId, m_model.userName, batch.today()));
    } else {
        // Whoever is disabled keeps what he has seen and gets to see nothing more.
        UserModel kept = m_model;
        kept.enabled = false;
        kept.version = version;
        kept.today = batch.today();
        batch.editor().replace(std::move(kept));
    }
}

QHash<quint64, QString> EmbeddedStore::hashPasswords(const QVector<StoreRequest>& requests) const
{
    // Slow on purpose, so it is done before the store is locked.
    QHash<quint64, QString> hashes;
    const PasswordHash hasher(m_options.cheapCryptographyForTests);
    for (const StoreRequest& request : requests) {
        if (request.kind == StoreRequest::Kind::SetPassword && isPasswordDigest(request.digest))
            hashes.insert(request.number, hasher.hash(request.digest));
    }
    return hashes;
}

// With `apart`, each request has a savepoint of its own, to which it is undone when the tables
// forbid what it writes.
StoreFailure EmbeddedStore::runOnce(const QVector<StoreRequest>& requests,
                                    const QHash<quint64, QString>& hashes, bool apart,
                                    QVector<StoreReply>* replies)
{
    const bool writes =
        std::any_of(requests.cbegin(), requests.cend(), [](const StoreRequest& request) {
            return request.kind != StoreRequest::Kind::CheckUser;
        });
    replies->clear();
    replies->reserve(requests.size());
    return inBatch(writes ? Access::Write : Access::Read, [&](StoreBatch& batch) {
        for (const StoreRequest& request : requests) {
            const QString hash = hashes.value(request.number);
            replies->append(apart ? applyApart(batch, request, hash)
                                  : dispatch(batch, request, hash));
            notePassword(request, replies->constLast());
        }
        return true;
    });
}

QVector<StoreReply> EmbeddedStore::run(const QVector<StoreRequest>& requests)
{
    const QHash<quint64, QString> hashes = hashPasswords(requests);
    QVector<StoreReply> replies;
    StoreFailure failure = runOnce(requests, hashes, false, &replies);
    // The rules leave nothing for the tables to forbid; should they differ once, it costs the
    // burst a second run, and only the request concerned fails.
    if (failure.kind == StoreFailure::Kind::Constraint)
        failure = runOnce(requests, hashes, true, &replies);
    if (failure) {
        replies.fill(StoreReply::refused(failure.text()), requests.size());
        for (int i = 0; i < requests.size(); ++i)
            notePassword(requests[i], replies[i]);
    }
    return replies;
}

void EmbeddedStore::notePassword(const StoreRequest& request, const StoreReply& reply)
{
    if (request.kind != StoreRequest::Kind::SetPassword)
        return;
    if (reply.ok)
        m_failedPasswords.remove(request.user);
    else
        m_failedPasswords.insert(request.user, request.number);
}

StoreReply EmbeddedStore::applyApart(StoreBatch& batch, const StoreRequest& request,
                                     const QString& hash)
{
    Database& database = batch.database();
    database.statement("savepoint.begin").run();
    try {
        StoreReply reply = dispatch(batch, request, hash);
        database.statement("savepoint.release").run();
        return reply;
    } catch (const StoreError& error) {
        if (error.failure().kind != StoreFailure::Kind::Constraint)
            throw;
        database.statement("savepoint.undo").run();
        database.statement("savepoint.release").run();
        logFailure(error.failure());
        return StoreReply::refused(error.failure().text());
    }
}

StoreReply EmbeddedStore::dispatch(StoreBatch& batch, const StoreRequest& request,
                                   const QString& hash)
{
    if (!m_model.enabled)
        return StoreReply::refused(disabledText());
    switch (request.kind) {
    case StoreRequest::Kind::Add:
        return GrantOperations(batch).add(request);
    case StoreRequest::Kind::Cancel:
        return GrantOperations(batch).cancel(request);
    case StoreRequest::Kind::Redeem:
        return GrantOperations(batch).redeem(request);
    case StoreRequest::Kind::SetSubUser:
        return SubUserOperations(batch, m_failedPasswords).setEnabled(request);
    case StoreRequest::Kind::SetPassword:
        return SubUserOperations(batch, m_failedPasswords).setPassword(request, hash);
    case StoreRequest::Kind::CheckUser:
        break;
    }
    return GrantOperations(batch).checkUser(request);
}

UserStore::Exported EmbeddedStore::commitExport(const QVector<FileGrant>& grants, bool repeat)
{
    Exported exported;
    const StoreFailure failure = inBatch(Access::Write, [&](StoreBatch& batch) {
        if (m_model.enabled)
            exported = ExportOperations(batch).commit(grants, repeat);
        else
            exported = {ExportError::Refused, disabledText(), {}};
        return exported.error == ExportError::None;
    });
    if (failure)
        return {ExportError::Store, failure.text(), {}};
    return exported;
}

void EmbeddedStore::revertExport(const QStringList& references)
{
    inBatch(Access::Write, [&](StoreBatch& batch) {
        ExportOperations(batch).revert(references);
        return true;
    });
}

void EmbeddedStore::noteUnwritten(const QVector<FileGrant>& grants, const QString& reason)
{
    inBatch(Access::Write, [&](StoreBatch& batch) {
        if (m_model.enabled)
            ExportOperations(batch).noteUnwritten(grants, reason);
        return true;
    });
}

void EmbeddedStore::poll()
{
    qint64 marker = 0;
    try {
        marker = m_database->changeMarker();
    } catch (const StoreError& error) {
        logFailure(error.failure());
        return;
    }
    const QDate today = m_options.now().date();
    const bool mayEnd = !m_endingFailed.isValid() || m_endingFailed.hasExpired(endingRetryMs);
    if ((m_model.hasOverdue || m_endedFor != today) && mayEnd) {
        m_endingFailed.invalidate();
        if (catchUp(Access::Write))
            m_endingFailed.start();
    }
    // Where the store cannot be written, the clock still ends the grant for this user.
    if ((marker != m_marker || m_model.isOtherOn(today)) && !catchUp(Access::Read))
        m_marker = marker;
}

QVector<AuditEntry> EmbeddedStore::auditTrail(int limit)
{
    try {
        return AuditTrail(*m_database, QString()).read(m_model.userId, limit);
    } catch (const StoreError& error) {
        logFailure(error.failure());
        return {};
    }
}

Environment EmbeddedStore::environment()
{
    try {
        return Environment::read(*m_database);
    } catch (const StoreError& error) {
        logFailure(error.failure());
        return {};
    }
}

ModelChanges EmbeddedStore::takeChanges()
{
    ModelChanges changes;
    std::swap(changes, m_changes);
    return changes;
}

} // namespace backend
