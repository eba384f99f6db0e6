#include "authsetting/subusers/SubUserPassword.h"

#include "authsetting/authorize/SecretText.h"
#include "utils/Digest.h"

namespace GW {

QString subUserPasswordDigest(const QString& password)
{
    constexpr int digestLength = 40;
    QString typed = password.trimmed();
    if (typed.isEmpty() || typed.size() == digestLength)
        return typed;
    QByteArray bytes = typed.toLocal8Bit();
    QString digest = QString::fromLatin1(utils::hexlify(utils::sha1_checksum(bytes)));
    wipeSecret(bytes);
    wipeSecret(typed);
    return digest;
}

} // namespace GW
