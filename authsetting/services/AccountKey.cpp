#include "authsetting/services/AccountKey.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>

namespace GW {

namespace {

constexpr QChar separator = u'|';

bool isPlain(unsigned char byte)
{
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z')
           || (byte >= 'A' && byte <= 'Z') || byte == '-' || byte == '_' || byte == '.';
}

// Percent-encoding keeps any byte, the separator included, apart from the key's own syntax.
QString encoded(const std::string& bytes)
{
    if (std::all_of(bytes.begin(), bytes.end(), isPlain))
        return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return QString::fromLatin1(QByteArray::fromStdString(bytes).toPercentEncoding(QByteArray(), "~"));
}

std::string decoded(const QString& text)
{
    return QByteArray::fromPercentEncoding(text.toLatin1()).toStdString();
}

} // namespace

QString genAccountKeyQs(const mbservice::CAccountInfo& account)
{
    return QString::number(account.platformId) + separator + encoded(account.brokerId) + separator
           + QString::number(account.accountSubType) + separator + encoded(account.accountId);
}

mbservice::CAccountInfo keyToAccountInfo(QString key)
{
    const QStringList fields = key.split(separator);
    if (fields.size() != 4)
        return {};
    bool platformOk = false;
    bool subTypeOk = false;
    mbservice::CAccountInfo account;
    account.platformId = fields[0].toInt(&platformOk);
    account.brokerId = decoded(fields[1]);
    account.accountSubType = fields[2].toInt(&subTypeOk);
    account.accountId = decoded(fields[3]);
    if (!platformOk || !subTypeOk || genAccountKeyQs(account) != key)
        return {};
    return account;
}

QString accountDisplayIDQs(const mbservice::CAccountInfo& account)
{
    return QString::fromStdString(account.accountAlias.empty() ? account.accountId
                                                               : account.accountAlias);
}

} // namespace GW
