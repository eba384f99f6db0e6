#include "backend/client/GrantFileReader.h"

#include "authsetting/services/AccountKey.h"
#include "backend/sealedfile/GrantPayload.h"
#include "backend/sealedfile/SealedFile.h"
#include "backend/sealedfile/Wipe.h"
#include "backend/store/TextRules.h"

namespace backend {

namespace {

// The name comes from whoever made the file and goes into a message.
QString safeName(const mbservice::CAccountInfo& account)
{
    if (!accountProblem(account).isEmpty())
        return QStringLiteral("（无法显示）");
    return GW::accountDisplayIDQs(account);
}

} // namespace

SealedFileError readGrantFile(const QString& filePath, const QString& password, bool allowTestSeal,
                              QVector<FileGrant>* grants)
{
    QByteArray bytes;
    SealedFileError error = readSealedFile(filePath, &bytes);
    SecretBytes payload;
    if (error == SealedFileError::None)
        error = openBytes(bytes, password, allowTestSeal, &payload);
    QVector<boost::shared_ptr<GW::CAuthDetail>> records;
    if (error == SealedFileError::None)
        error = decodeGrants(payload.view(), &records);
    if (error != SealedFileError::None)
        return error;
    for (const auto& record : records) {
        wipe(record->account.accountPrivate);
        grants->append({record->grantRef, record->grantee, GW::genAccountKeyQs(record->account),
                        safeName(record->account), record->limit});
    }
    return SealedFileError::None;
}

} // namespace backend
