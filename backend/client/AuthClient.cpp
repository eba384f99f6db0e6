#include "backend/client/AuthClient.h"

#include "backend/client/GrantFileReader.h"
#include "backend/client/StoreWorker.h"
#include "backend/config/UserConfig.h"
#include "backend/sealedfile/SealedFile.h"
#include "utils/LogCenter.h"

#include <QSemaphore>

#include <atomic>
#include <utility>

namespace backend {

namespace {

// Long enough for a store that is not busy, short enough not to be felt as a hang.
constexpr int auditWaitMs = 500;

} // namespace

AuthClient::AuthClient(const StoreOptions& options, qint64 userId, const QString& userName,
                       ClientUserConfig& userConfig)
    : m_options(options), m_userConfig(userConfig),
      m_fileWriter(*this, userName, options.cheapCryptographyForTests), m_outbox(*this),
      m_connectionState(options.location.isServer())
{
    const auto deliver = [this](const std::shared_ptr<Delivery>& delivery) {
        QMetaObject::invokeMethod(
            this, [this, delivery] { m_outbox.add(delivery); }, Qt::QueuedConnection);
    };
    const auto noteState = [this](bool isOnline, const QString& refusal) {
        QMetaObject::invokeMethod(
            this, [this, isOnline, refusal] { m_connectionState.set(isOnline, refusal); },
            Qt::QueuedConnection);
    };
    m_worker =
        std::make_unique<StoreWorker>(options, userId, userName, m_queue, deliver, noteState);
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("authsetting-store"));
}

AuthClient::~AuthClient()
{
    if (!m_thread.isRunning())
        return;
    handOver();
    // Posted behind the work, so that everything that was asked for is done before the end.
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this] {
            m_worker->close();
            m_thread.quit();
        },
        Qt::QueuedConnection);
    m_thread.wait();
}

QString AuthClient::start()
{
    m_thread.start();
    Delivery first;
    StoreFailure failure;
    QMetaObject::invokeMethod(
        m_worker.get(), [&] { failure = m_worker->open(&first, &m_environment); },
        Qt::BlockingQueuedConnection);
    if (failure)
        return failure.text();
    takeSnapshot(first.snapshot.value_or(UserSnapshot()), first.number);
    return {};
}

void AuthClient::enqueue(StoreRequest request, const QVariant& tag)
{
    request.number = ++m_number;
    request.seen = m_seen;
    m_pending.append({std::move(request), tag});
    // Posted, so that all requests of this turn of the event loop become one transaction.
    if (m_pending.size() == 1)
        QMetaObject::invokeMethod(
            this, [this] { handOver(); }, Qt::QueuedConnection);
}

void AuthClient::handOver()
{
    if (m_pending.isEmpty())
        return;
    m_queue.put(std::exchange(m_pending, {}));
    QMetaObject::invokeMethod(
        m_worker.get(), [worker = m_worker.get()] { worker->process(); }, Qt::QueuedConnection);
}

void AuthClient::addAuth(QString grantee, const mbservice::CAccountInfo& account,
                         GW::CAuthLimit& limit, QVariant tag, bool toServer)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::Add;
    request.user = std::move(grantee);
    request.account = account;
    request.limit = limit;
    request.flag = toServer;
    enqueue(std::move(request), tag);
}

void AuthClient::delAuth(QString grantee, mbservice::CAccountInfo account, QVariant tag)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::Cancel;
    request.user = std::move(grantee);
    request.account = account;
    enqueue(std::move(request), tag);
}

void AuthClient::checkAuthuser(QString user)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::CheckUser;
    request.user = std::move(user);
    enqueue(std::move(request));
}

void AuthClient::setSubUser(QString user, bool enable)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::SetSubUser;
    request.user = std::move(user);
    request.flag = enable;
    enqueue(std::move(request));
}

void AuthClient::updateSubUser(QString user, QString password)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::SetPassword;
    request.user = std::move(user);
    request.digest = std::move(password);
    enqueue(std::move(request));
}

int AuthClient::exportAuth(const QString& filePath, const QString& password,
                           const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants)
{
    QString reason;
    const ExportError error =
        m_fileWriter.write(filePath, password, grants, m_snapshot.accounts, &reason);
    if (error != ExportError::None)
        Q_EMIT fileNotWritten(grants, reason);
    return static_cast<int>(error);
}

int AuthClient::exportAuth(const QString& filePath, const QString& password,
                           boost::shared_ptr<GW::CAuthDetail> grant, bool flag)
{
    Q_UNUSED(flag)
    return exportAuth(filePath, password, {grant});
}

int AuthClient::importAuth(const QString& filePath, const QString& password)
{
    StoreRequest request;
    request.kind = StoreRequest::Kind::Redeem;
    const SealedFileError error =
        readGrantFile(filePath, password, m_options.cheapCryptographyForTests, &request.grants);
    if (error == SealedFileError::None)
        enqueue(std::move(request));
    else
        utils::CLogCenter::warning(sealedFileErrorText(error));
    return static_cast<int>(error);
}

UserStore::Exported AuthClient::commitExport(const QVector<FileGrant>& grants, bool repeat)
{
    // What was asked for before happens before.
    handOver();
    UserStore::Exported exported;
    Delivery delivery;
    QMetaObject::invokeMethod(
        m_worker.get(), [&] { exported = m_worker->commitExport(grants, repeat, &delivery); },
        Qt::BlockingQueuedConnection);
    takeDirectly(delivery);
    return exported;
}

void AuthClient::revertExport(const QStringList& references)
{
    Delivery delivery;
    QMetaObject::invokeMethod(
        m_worker.get(), [&] { m_worker->revertExport(references, &delivery); },
        Qt::BlockingQueuedConnection);
    takeDirectly(delivery);
}

void AuthClient::noteUnwritten(const QVector<FileGrant>& grants, const QString& reason)
{
    handOver();
    Delivery delivery;
    QMetaObject::invokeMethod(
        m_worker.get(), [&] { m_worker->noteUnwritten(grants, reason, &delivery); },
        Qt::BlockingQueuedConnection);
    takeDirectly(delivery);
}

QVector<AuditEntry> AuthClient::auditTrail(int limit)
{
    struct Answer
    {
        QSemaphore ready;
        QVector<AuditEntry> entries;
        std::atomic<bool> isLate = false;
    };
    const auto answer = std::make_shared<Answer>();
    QMetaObject::invokeMethod(
        m_worker.get(),
        [this, worker = m_worker.get(), answer, limit] {
            answer->entries = worker->auditTrail(limit);
            answer->ready.release();
            if (!answer->isLate)
                return;
            QMetaObject::invokeMethod(
                this,
                [this, answer] {
                    m_trail = answer->entries;
                    Q_EMIT sigUiUpdateAuth();
                },
                Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
    if (answer->ready.tryAcquire(1, auditWaitMs))
        m_trail = answer->entries;
    else
        answer->isLate = true;
    return m_trail.mid(0, limit);
}

void AuthClient::takeDirectly(const Delivery& delivery)
{
    if (!delivery.snapshot)
        return;
    takeSnapshot(*delivery.snapshot, delivery.number);
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT sigUiUpdateAuth(); }, Qt::QueuedConnection);
}

bool AuthClient::getAuthDetail(QString accountKey, boost::shared_ptr<GW::CAuthDetail>& out)
{
    const auto found = m_snapshot.grants.constFind(accountKey);
    if (found == m_snapshot.grants.constEnd())
        return false;
    out = *found;
    return true;
}

bool AuthClient::getAuthorizedFromMeInfo(QString user,
                                         QMap<QString, boost::shared_ptr<GW::CAuthDetail>>& out)
{
    out = m_snapshot.grantedTo.value(user);
    return true;
}

bool AuthClient::getSubUserList(QVector<QString>& out)
{
    out = m_snapshot.subUsers;
    return true;
}

bool AuthClient::isSubUserActive(QString user)
{
    return m_snapshot.activeSubUsers.contains(user);
}

void AuthClient::takeSnapshot(const UserSnapshot& snapshot, quint64 number)
{
    if (number <= m_snapshotNumber)
        return;
    m_snapshotNumber = number;
    m_snapshot = snapshot;
    m_userConfig.setAccounts(snapshot.accounts);
}

void AuthClient::emitChanged()
{
    Q_EMIT sigUiUpdateAuth();
}

void AuthClient::emitResult(const ClientResult& result)
{
    m_seen = result.number;
    switch (result.kind) {
    case StoreRequest::Kind::Add:
        Q_EMIT sigAddAuthResult(result.user, result.account, result.limit, result.text, result.tag,
                                result.ok, result.error, result.flag);
        break;
    case StoreRequest::Kind::Cancel:
        Q_EMIT sigDelAuthResult(result.user, result.account, result.tag, result.ok, result.error);
        break;
    case StoreRequest::Kind::CheckUser:
        Q_EMIT sigCheckAuthuserResult(result.user, result.ok, result.error);
        break;
    case StoreRequest::Kind::SetSubUser:
        Q_EMIT sigSetSubUserResult(result.user, result.flag, result.ok, result.error);
        break;
    case StoreRequest::Kind::SetPassword:
        Q_EMIT sigUpdatesubuserResult(result.user, result.text, result.ok, result.error);
        break;
    case StoreRequest::Kind::Redeem:
        Q_EMIT sigValidAuth(result.key, result.text, result.ok, result.error);
        break;
    }
}

} // namespace backend
