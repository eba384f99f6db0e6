#include "backend/store/postgresql/RequestJson.h"

#include "authsetting/services/AccountKey.h"
#include "backend/store/TextRules.h"
#include "backend/store/postgresql/RefusalText.h"

#include <QJsonArray>

#include <cmath>

namespace backend {

namespace {

QString normal(const QString& name)
{
    return name.normalized(QString::NormalizationForm_C);
}

QString errorText(const QJsonObject& answer)
{
    return refusalText(answer.value(QStringLiteral("error_code")).toString());
}

bool isOk(const QJsonObject& answer)
{
    return answer.value(QStringLiteral("ok")).toBool();
}

// What comes out of a file can be anything, and nothing but a reference is looked for.
QString plainReference(const QString& reference)
{
    const QByteArray bytes = reference.toLatin1();
    return reference.size() == 32 && QByteArray::fromHex(bytes).toHex() == bytes ? reference
                                                                                 : QString();
}

mbservice::CAccountInfo plainAccount(const QString& key)
{
    const mbservice::CAccountInfo account = GW::keyToAccountInfo(key);
    return accountProblem(account).isEmpty() ? account : mbservice::CAccountInfo();
}

} // namespace

QString RequestJson::problem(const StoreRequest& request)
{
    if (request.kind == StoreRequest::Kind::Redeem)
        return {};
    const QString problem = userNameProblem(request.user);
    const bool hasAccount =
        request.kind == StoreRequest::Kind::Add || request.kind == StoreRequest::Kind::Cancel;
    return problem.isEmpty() && hasAccount ? accountProblem(request.account) : problem;
}

void RequestJson::addAccount(const mbservice::CAccountInfo& account, QJsonObject& object)
{
    object.insert(QStringLiteral("platform_id"), account.platformId);
    object.insert(QStringLiteral("broker_id"), QString::fromStdString(account.brokerId));
    object.insert(QStringLiteral("account_sub_type"), account.accountSubType);
    object.insert(QStringLiteral("account_number"), QString::fromStdString(account.accountId));
}

QString RequestJson::dayText(qint32 seconds)
{
    QString& text = m_dayTexts[seconds];
    if (text.isEmpty())
        text = m_days.day(seconds).toString(Qt::ISODate);
    return text;
}

void RequestJson::addLimit(const GW::CAuthLimit& limit, QJsonObject& object)
{
    object.insert(QStringLiteral("first_day"), dayText(limit.startTime));
    object.insert(QStringLiteral("last_day"), dayText(limit.endTime));
    const double ratio = limit.availableMarginRatio;
    // JSON has no such numbers, but the server is to refuse them all the same.
    if (!std::isfinite(ratio))
        object.insert(QStringLiteral("ratio"), QStringLiteral("NaN"));
    else
        object.insert(QStringLiteral("ratio"),
                      limit.hasMarginRatio() ? QJsonValue(ratio) : QJsonValue(QJsonValue::Null));
}

QJsonObject RequestJson::request(const StoreRequest& request, const QString& verifier,
                                 bool passwordFailed)
{
    QJsonObject object;
    const auto setKind = [&](const QString& kind) {
        object.insert(QStringLiteral("kind"), kind);
        if (request.kind != StoreRequest::Kind::Redeem)
            object.insert(QStringLiteral("user"), normal(request.user));
    };
    switch (request.kind) {
    case StoreRequest::Kind::Add:
        setKind(QStringLiteral("add"));
        addAccount(request.account, object);
        addLimit(request.limit, object);
        object.insert(QStringLiteral("on_server"), request.flag);
        break;
    case StoreRequest::Kind::Cancel:
        setKind(QStringLiteral("cancel"));
        addAccount(request.account, object);
        break;
    case StoreRequest::Kind::CheckUser:
        setKind(QStringLiteral("check"));
        break;
    case StoreRequest::Kind::SetSubUser:
        setKind(QStringLiteral("enable"));
        object.insert(QStringLiteral("enabled"), request.flag);
        object.insert(QStringLiteral("password_failed"), passwordFailed);
        break;
    case StoreRequest::Kind::SetPassword:
        setKind(QStringLiteral("password"));
        object.insert(QStringLiteral("verifier"), verifier);
        break;
    case StoreRequest::Kind::Redeem: {
        setKind(QStringLiteral("redeem"));
        QJsonArray grants;
        for (const FileGrant& grant : request.grants) {
            QJsonObject item;
            item.insert(QStringLiteral("reference"), plainReference(grant.reference));
            addAccount(plainAccount(grant.accountKey), item);
            grants.append(item);
        }
        object.insert(QStringLiteral("grants"), grants);
        break;
    }
    }
    return object;
}

StoreReply RequestJson::redeemed(const StoreRequest& request, const QJsonObject& answer) const
{
    StoreReply reply = StoreReply::accepted();
    QStringList refusals;
    const QJsonArray answers = answer.value(QStringLiteral("grants")).toArray();
    for (qsizetype i = 0; i < request.grants.size(); ++i) {
        const FileGrant& grant = request.grants[i];
        const QJsonObject one = answers.at(i).toObject();
        if (isOk(one)) {
            reply.redeemed.append(
                {grant.accountKey, one.value(QStringLiteral("secret")).toString()});
            continue;
        }
        if (refusals.isEmpty())
            reply.refusedKey = grant.accountKey;
        refusals.append(QStringLiteral("账号%1：%2").arg(grant.accountName, errorText(one)));
    }
    reply.ok = refusals.isEmpty();
    reply.error = refusals.join(QStringLiteral("；"));
    return reply;
}

StoreReply RequestJson::reply(const StoreRequest& request, const QJsonObject& answer) const
{
    if (request.kind == StoreRequest::Kind::Redeem && answer.contains(QStringLiteral("grants")))
        return redeemed(request, answer);
    if (!isOk(answer))
        return StoreReply::refused(errorText(answer));
    StoreReply reply = StoreReply::accepted();
    reply.reference = answer.value(QStringLiteral("reference")).toString();
    return reply;
}

QJsonObject RequestJson::exported(const FileGrant& grant)
{
    QJsonObject object;
    object.insert(QStringLiteral("reference"), plainReference(grant.reference));
    object.insert(QStringLiteral("user"),
                  userNameProblem(grant.grantee).isEmpty() ? normal(grant.grantee) : QString());
    addAccount(plainAccount(grant.accountKey), object);
    addLimit(grant.limit, object);
    return object;
}

UserStore::Exported RequestJson::exported(const QJsonObject& answer) const
{
    UserStore::Exported exported;
    if (isOk(answer)) {
        const QJsonArray changed = answer.value(QStringLiteral("changed")).toArray();
        for (const auto& reference : changed)
            exported.changed.append(reference.toString());
        return exported;
    }
    static const QHash<QString, ExportError> errors{
        {QStringLiteral("reference_missing"), ExportError::UnknownReference},
        {QStringLiteral("altered"), ExportError::Altered},
        {QStringLiteral("not_prepared"), ExportError::NotPrepared}};
    const QString code = answer.value(QStringLiteral("error_code")).toString();
    exported.error = errors.value(code, ExportError::Refused);
    exported.reason = exported.error == ExportError::Altered
                          ? QStringLiteral("授权与准备时的内容不符")
                          : refusalText(code);
    return exported;
}

} // namespace backend
