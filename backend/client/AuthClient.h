#pragma once

#include "authsetting/services/AuthClient.h"
#include "backend/client/ClientRequest.h"
#include "backend/client/ConnectionState.h"
#include "backend/client/GrantFileWriter.h"
#include "backend/client/RequestQueue.h"
#include "backend/client/ResultOutbox.h"
#include "backend/client/StoreLink.h"
#include "backend/client/UserSnapshot.h"
#include "backend/store/StoreOptions.h"

#include <QThread>
#include <QVector>

#include <memory>

namespace backend {

class ClientUserConfig;
class StoreWorker;

/// The authorization client on a store. GUI thread only.
///
/// Requests that are made in one turn of the event loop run as one transaction on a worker thread.
/// Their results are emitted on the GUI thread after the commit and after the data that the reads
/// answer from is the new one; then sigUiUpdateAuth() if anything changed for this user. Each
/// request gets exactly one result, also when the store fails; only a client that is destroyed
/// finishes its requests without a word.
class AuthClient final : public GW::CAuthClient, private ResultSink, private StoreLink
{
    Q_OBJECT

public:
    /// `userConfig` is fed with the user's accounts and must live longer than the client.
    AuthClient(const StoreOptions& options, qint64 userId, const QString& userName,
               ClientUserConfig& userConfig);
    ~AuthClient() override;

    /// Opens the store and reads the user's data, before anything else is called. Returns the
    /// reason of a failure in Chinese, after which the client is only good for destruction.
    QString start();
    /// The store's platforms and brokers, after start().
    const Environment& environment() const { return m_environment; }
    const ConnectionState& connectionState() const { return m_connectionState; }
    /// See UserStore. Waits for it half a second, in which a store that is not busy answers; else
    /// it is what was read last, and sigUiUpdateAuth() follows when there is more.
    QVector<AuditEntry> auditTrail(int limit);

    void addAuth(QString grantee, const mbservice::CAccountInfo& account, GW::CAuthLimit& limit,
                 QVariant tag, bool toServer) override;
    void delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag) override;
    void checkAuthuser(QString user) override;
    /// Returns an ExportError.
    int exportAuth(const QString& filePath, const QString& password,
                   const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants) override;
    int exportAuth(const QString& filePath, const QString& password,
                   boost::shared_ptr<GW::CAuthDetail> grant, bool flag) override;
    /// Returns a SealedFileError.
    int importAuth(const QString& filePath, const QString& password) override;
    bool getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out) override;
    bool getAuthorizedFromMeInfo(QString user,
                                 QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out) override;
    bool getSubUserList(QVector<QString>& out) override;
    bool isSubUserActive(QString user) override;
    void setSubUser(QString user, bool enable) override;
    void updateSubUser(QString user, QString password) override;

Q_SIGNALS:
    /// exportAuth() is about to return an error: no file for `grants` (whose entries may be null),
    /// for `reason` in Chinese.
    void fileNotWritten(const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants,
                        const QString& reason);

private:
    void takeSnapshot(const UserSnapshot& snapshot, quint64 number) override;
    void emitResult(const ClientResult& result) override;
    void emitChanged() override;
    UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat) override;
    void revertExport(const QStringList& references) override;
    void noteUnwritten(const QVector<FileGrant>& grants, const QString& reason) override;

    void enqueue(StoreRequest request, const QVariant& tag = {});
    void handOver();
    void takeDirectly(const Delivery& delivery);

    StoreOptions m_options;
    ClientUserConfig& m_userConfig;
    RequestQueue m_queue;
    QVector<ClientRequest> m_pending;
    quint64 m_number = 0;
    quint64 m_seen = 0;
    UserSnapshot m_snapshot;
    quint64 m_snapshotNumber = 0;
    GrantFileWriter m_fileWriter;
    ResultOutbox m_outbox;
    QThread m_thread;
    Environment m_environment;
    ConnectionState m_connectionState;
    QVector<AuditEntry> m_trail;
    std::unique_ptr<StoreWorker> m_worker;
};

} // namespace backend
