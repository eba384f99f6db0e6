#include "backend/store/postgresql/PostgresStore.h"

#include "backend/store/PasswordHash.h"
#include "backend/store/postgresql/LoginName.h"
#include "backend/store/postgresql/ReplyEffects.h"
#include "backend/store/postgresql/ServerAuditReader.h"
#include "backend/store/postgresql/ServerMigrations.h"
#include "backend/store/postgresql/ServerModelReader.h"
#include "backend/store/postgresql/ServerTimes.h"
#include "utils/LogCenter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSqlQuery>
#include <QTimer>
#include <QUuid>

#include <algorithm>

namespace backend {

namespace {

StoreOptions asLogin(StoreOptions options)
{
    options.location.user = loginName(options.location.user);
    return options;
}

QString newRequestId()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}

QString compact(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

// In the server's syntax; references are hexadecimal, so nothing in them needs quoting.
QString textArray(const QStringList& references)
{
    return QLatin1Char('{') + references.join(QLatin1Char(',')) + QLatin1Char('}');
}

void checkSchema(int version)
{
    using Kind = StoreFailure::Kind;
    const int known = ServerMigrations::currentVersion();
    if (version != known)
        throw StoreError({version > known ? Kind::NewerSchema : Kind::NotPrepared,
                          QStringLiteral("schema %1 instead of %2").arg(version).arg(known)});
}

void logFailure(const StoreFailure& failure)
{
    utils::CLogCenter::error(failure.text() + QStringLiteral(" [") + failure.detail +
                             QStringLiteral("]"));
}

} // namespace

PostgresStore::PostgresStore(const StoreOptions& options) : m_options(options) {}

PostgresStore::~PostgresStore() = default;

// Runs `work`; failures of the server end here.
template <class Work>
StoreFailure PostgresStore::attempt(const Work& work)
{
    try {
        work();
        return {};
    } catch (const StoreError& error) {
        logFailure(error.failure());
        return error.failure();
    }
}

StoreFailure PostgresStore::open()
{
    return attempt([&] {
        m_link = std::make_unique<ServerLink>(asLogin(m_options));
        // Made here, in the thread that it works in.
        m_hintTimer = std::make_unique<QTimer>();
        m_hintTimer->setSingleShot(true);
        m_hintTimer->setTimerType(Qt::PreciseTimer);
        QObject::connect(m_hintTimer.get(), &QTimer::timeout, m_hintTimer.get(),
                         [this] { wakeUp(); });
        m_link->open([this] { onNotice(); });
        QDate today;
        int schema = 0;
        m_link->look(
            QStringLiteral("SELECT user_id, user_name, today, schema FROM authsetting.sign_in()"),
            {}, [&](const QSqlQuery& row) {
                m_model.userId = row.value(0).toLongLong();
                m_model.userName = row.value(1).toString();
                today = row.value(2).toDate();
                schema = row.value(3).toInt();
            });
        checkSchema(schema);
        settleIfDue(today);
        readModel(-1);
    });
}

QJsonObject PostgresStore::callForJson(const QString& sql, const QVariantList& values)
{
    QJsonObject answer;
    m_link->call(sql, values, [&](const QSqlQuery& row) {
        answer = QJsonDocument::fromJson(row.value(0).toString().toUtf8()).object();
    });
    return answer;
}

QString PostgresStore::refusal() const
{
    using Kind = StoreFailure::Kind;
    const Kind kind = m_link ? m_link->refusal() : Kind::None;
    if (kind == Kind::Disabled)
        return QStringLiteral("当前用户已被禁用");
    if (kind == Kind::WrongLogin)
        return QStringLiteral("密码已被更改，请重新登录");
    return StoreFailure{kind, {}}.text();
}

QString PostgresStore::offlineText() const
{
    const QString text = refusal();
    return text.isEmpty() ? StoreFailure{StoreFailure::Kind::Offline, {}}.text() : text;
}

QVector<StoreReply> PostgresStore::refuseAll(const QVector<StoreRequest>& requests,
                                             const QString& text)
{
    for (const StoreRequest& request : requests)
        notePassword(request, StoreReply::refused(text));
    return QVector<StoreReply>(requests.size(), StoreReply::refused(text));
}

QString PostgresStore::verifierFor(const StoreRequest& request) const
{
    if (request.kind != StoreRequest::Kind::SetPassword || !isPasswordDigest(request.digest))
        return {};
    return m_link->connection().verifier(request.user, request.digest.toLower());
}

bool PostgresStore::hasPasswordFailed(const StoreRequest& request) const
{
    const auto failed = m_failedPasswords.constFind(request.user);
    return failed != m_failedPasswords.constEnd() && *failed > request.seen;
}

void PostgresStore::notePassword(const StoreRequest& request, const StoreReply& reply)
{
    if (request.kind != StoreRequest::Kind::SetPassword)
        return;
    if (reply.ok)
        m_failedPasswords.remove(request.user);
    else
        m_failedPasswords.insert(request.user, request.number);
}

QVector<StoreReply> PostgresStore::run(const QVector<StoreRequest>& requests)
{
    if (!m_link->isOnline())
        return refuseAll(requests, offlineText());
    QVector<StoreReply> replies;
    const StoreFailure failure = attempt([&] { replies = answer(requests); });
    if (!failure)
        return replies;
    return refuseAll(requests, m_link->isOnline() ? failure.text() : offlineText());
}

QVector<StoreReply> PostgresStore::answer(const QVector<StoreRequest>& requests)
{
    QVector<StoreReply> replies(requests.size());
    QVector<qsizetype> sent;
    QJsonArray items;
    bool ends = false;
    for (qsizetype i = 0; i < requests.size(); ++i) {
        const StoreRequest& request = requests[i];
        const QString problem = RequestJson::problem(request);
        if (!problem.isEmpty()) {
            replies[i] = StoreReply::refused(problem);
            notePassword(request, replies[i]);
            continue;
        }
        sent.append(i);
        items.append(m_json.request(request, verifierFor(request), hasPasswordFailed(request)));
        ends = ends || (request.kind == StoreRequest::Kind::SetSubUser && !request.flag);
    }
    if (sent.isEmpty())
        return replies;

    const QJsonObject answered =
        callForJson(QStringLiteral("SELECT authsetting.run_requests(?::uuid, ?::jsonb)"),
                    {newRequestId(), compact(items)});
    const QJsonArray results = answered.value(QStringLiteral("results")).toArray();
    for (qsizetype i = 0; i < sent.size(); ++i) {
        const StoreRequest& request = requests[sent[i]];
        replies[sent[i]] = m_json.reply(request, results.at(i).toObject());
        notePassword(request, replies[sent[i]]);
    }
    // What follows is for the screen only; the requests are done.
    attempt([&] {
        if (ends)
            m_link->look(QStringLiteral("SELECT authsetting.end_sub_user_connections()"), {});
        follow(requests, replies, answered);
    });
    return replies;
}

// Brings the model to the state after the requests: from the replies when nobody else changed
// anything, otherwise by reading what is new.
void PostgresStore::follow(const QVector<StoreRequest>& requests,
                           const QVector<StoreReply>& replies, const QJsonObject& answered)
{
    const qint64 version = answered.value(QStringLiteral("version")).toInteger();
    if (version == m_model.version)
        return;
    const qint64 before = answered.value(QStringLiteral("version_before")).toInteger(-1);
    if (before == m_model.version && !m_model.hasOverdue) {
        if (const auto changes = applyReplies(requests, replies, m_days, m_model)) {
            m_model.version = version;
            m_changes.merge(*changes);
            return;
        }
    }
    readModel(m_model.version);
}

UserStore::Exported PostgresStore::commitExport(const QVector<FileGrant>& grants, bool repeat)
{
    if (!m_link->isOnline())
        return {ExportError::Store, offlineText(), {}};
    QJsonArray items;
    for (const FileGrant& grant : grants)
        items.append(m_json.exported(grant));
    const OpenEnd end{newRequestId(), compact(items), repeat, {}};
    Exported exported;
    const StoreFailure failure = attempt([&] {
        exported = m_json.exported(
            callForJson(QStringLiteral("SELECT authsetting.commit_export(?::uuid, ?::jsonb, ?)"),
                        {end.requestId, end.grants, end.repeat}));
    });
    if (!failure) {
        attempt([&] { readModel(m_model.version); });
        return exported;
    }
    // The server may have done it all the same, and no file is going to be there.
    if (!m_link->isOnline())
        m_openEnds.append(end);
    return {ExportError::Store, m_link->isOnline() ? failure.text() : offlineText(), {}};
}

void PostgresStore::revert(const QStringList& references)
{
    if (!references.isEmpty())
        m_link->call(QStringLiteral("SELECT authsetting.revert_export(?::text[])"),
                     {textArray(references)});
}

void PostgresStore::revertExport(const QStringList& references)
{
    const StoreFailure failure = attempt([&] {
        revert(references);
        readModel(m_model.version);
    });
    if (failure && !m_link->isOnline())
        m_openEnds.append({{}, {}, false, references});
}

void PostgresStore::closeOpenEnds()
{
    while (!m_openEnds.isEmpty()) {
        const OpenEnd& end = m_openEnds.constFirst();
        if (end.requestId.isEmpty()) {
            revert(end.references);
        } else {
            // Finds the result of the first attempt, or does it now to take it back.
            revert(m_json
                       .exported(callForJson(
                           QStringLiteral("SELECT authsetting.commit_export(?::uuid, ?::jsonb, ?)"),
                           {end.requestId, end.grants, end.repeat}))
                       .changed);
        }
        m_openEnds.removeFirst();
    }
}

void PostgresStore::settleIfDue(const QDate& today)
{
    if (m_settledFor == today && !m_model.hasOverdue)
        return;
    m_link->look(QStringLiteral("SELECT authsetting.settle()"), {});
    m_settledFor = today;
}

void PostgresStore::readModel(qint64 since)
{
    ServerModelReader reader(m_model);
    m_link->look(QStringLiteral("SELECT ") + ServerModelReader::columns() +
                     QStringLiteral(" FROM authsetting.read_model(?)"),
                 {since}, [&](const QSqlQuery& row) { reader.add(row); });
    m_changes.merge(reader.finish());
}

void PostgresStore::onNotice()
{
    m_hints.note();
    // A connection that is found to be gone is a matter of its own.
    if (m_hints.isDue() || !m_link->connection().isOpen())
        wakeUp();
    else
        awaitHints();
}

void PostgresStore::awaitHints()
{
    if (const auto wait = m_hints.wait())
        m_hintTimer->start(*wait);
}

void PostgresStore::look()
{
    m_hints.beginRead();
    m_sinceLook.start();
    qint64 version = -1;
    QDate today;
    m_link->look(QStringLiteral("SELECT version, today FROM authsetting.my_version()"), {},
                 [&](const QSqlQuery& row) {
                     version = row.value(0).toLongLong();
                     today = row.value(1).toDate();
                 });
    settleIfDue(today);
    if (m_model.isOtherOn(today))
        readModel(-1);
    else if (version != m_model.version)
        readModel(m_model.version);
    m_model.today = today;
}

bool PostgresStore::takeHint()
{
    m_hints.beginRead();
    const QDate day = m_model.today;
    const qint64 version = m_model.version;
    readModel(m_model.version);
    if (m_model.today != day) {
        // What a new day begins and ends is no change of rows; the whole look tells it.
        m_model.today = day;
        look();
    }
    return m_model.version != version;
}

void PostgresStore::poll()
{
    const bool isBack = !m_link->isOnline() && m_link->tryReturn();
    if (!m_link->isOnline())
        return;
    const std::chrono::milliseconds interval = std::min<std::chrono::milliseconds>(
        servertimes::lookInterval, std::chrono::milliseconds(m_options.pollIntervalMs) * 10);
    const bool due = !m_sinceLook.isValid() || m_sinceLook.hasExpired(interval.count());
    const bool isOwnReason = isBack || due || !m_link->connection().isOpen();
    if (isOwnReason || m_hints.isDue()) {
        bool foundChange = false;
        const StoreFailure failure = attempt([&] {
            closeOpenEnds();
            if (isOwnReason)
                look();
            else
                foundChange = takeHint();
        });
        if (!isOwnReason)
            m_hints.endRead(foundChange);
        if (failure)
            m_hints.note();
    }
    awaitHints();
}

QVector<AuditEntry> PostgresStore::auditTrail(int limit)
{
    if (m_link->isOnline()) {
        attempt([&] {
            ServerAuditReader reader;
            m_link->look(ServerAuditReader::query(), {limit},
                         [&](const QSqlQuery& row) { reader.add(row); });
            m_trail = reader.entries();
        });
    }
    return m_trail.mid(0, limit);
}

Environment PostgresStore::environment()
{
    Environment environment;
    attempt([&] {
        m_link->look(QStringLiteral("SELECT what, kind, platform_id, broker_id, name"
                                    " FROM authsetting.read_environment()"),
                     {}, [&](const QSqlQuery& row) {
                         const int platform = row.value(2).toInt();
                         const std::string name = row.value(4).toString().toStdString();
                         const bool isStock = row.value(1).toInt() == 2;
                         if (row.value(0).toInt() == 1)
                             environment.addPlatform(isStock, {platform, name});
                         else
                             environment.addBroker(
                                 isStock, {platform, row.value(3).toString().toStdString(), name});
                     });
    });
    return environment;
}

ModelChanges PostgresStore::takeChanges()
{
    return std::exchange(m_changes, {});
}

} // namespace backend
