#pragma once

#include "backend/store/AuditEntry.h"
#include "backend/store/Environment.h"
#include "backend/store/ExportError.h"
#include "backend/store/FileGrant.h"
#include "backend/store/ModelEditor.h"
#include "backend/store/StoreFailure.h"
#include "backend/store/StoreOptions.h"
#include "backend/store/StoreReply.h"
#include "backend/store/StoreRequest.h"
#include "backend/store/UserModel.h"

#include <QStringList>

#include <functional>
#include <memory>

namespace backend {

/// One signed-in user's way to the store, whichever engine keeps it. Lives and dies in one thread,
/// the only one that may call it. Nothing throws.
class UserStore
{
public:
    /// Outcome of commitExport().
    struct Exported
    {
        ExportError error = ExportError::None;
        /// Ready for the log, in Chinese.
        QString reason;
        /// References that became current by this call.
        QStringList changed;
    };

    virtual ~UserStore();

    /// The store of `options` for the user `userId`; not open yet. On a server the user is the one
    /// of the location, and `userId` is not looked at.
    static std::unique_ptr<UserStore> create(const StoreOptions& options, qint64 userId,
                                             const QString& userName);

    virtual StoreFailure open() = 0;
    /// Runs all requests in order in one transaction, a refused one not failing the others, and
    /// returns their replies in the same order once they are committed.
    virtual QVector<StoreReply> run(const QVector<StoreRequest>& requests) = 0;
    /// Makes every one of `grants`, or none, the current grant of its account. With `repeat`, those
    /// that a file made current already are fine as they are.
    virtual Exported commitExport(const QVector<FileGrant>& grants, bool repeat) = 0;
    /// Makes the grants prepared again that a file was to carry and could not.
    virtual void revertExport(const QStringList& references) = 0;
    /// Enters into the audit trail that no file was written for `grants`. A server notes by itself
    /// what it refuses and takes nobody's word for the rest.
    virtual void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason);
    /// Looks for changes made elsewhere and for grants that have ended, and for a server that went
    /// away or came back. To be called several times a second.
    virtual void poll() = 0;
    /// What the user did and what was done to him or his accounts, newest first; as it was read
    /// last when the store cannot be read.
    virtual QVector<AuditEntry> auditTrail(int limit) = 0;
    /// Empty when it cannot be read.
    virtual Environment environment() = 0;
    /// Whether the store can be reached; a local one always can.
    virtual bool isOnline() const = 0;
    /// Why the store does not take the user back by itself, in Chinese; empty while it is online or
    /// simply out of reach.
    virtual QString refusal() const { return {}; }

    /// Sets what to call, in the store's thread, when poll() has something to do before its time.
    void setWakeUp(std::function<void()> wakeUp) { m_wakeUp = std::move(wakeUp); }

    /// What the user may know, as of the last call that reached the store.
    virtual const UserModel& model() const = 0;
    /// What changed in it since this was last asked.
    virtual ModelChanges takeChanges() = 0;

protected:
    void wakeUp() const
    {
        if (m_wakeUp)
            m_wakeUp();
    }

private:
    std::function<void()> m_wakeUp;
};

} // namespace backend
