#include "backend/client/GrantFileWriter.h"

#include "authsetting/services/AccountKey.h"
#include "backend/sealedfile/FileSealer.h"
#include "backend/sealedfile/GrantPayload.h"
#include "backend/sealedfile/SafeFileWriter.h"
#include "backend/sealedfile/SealedFile.h"
#include "backend/sealedfile/Wipe.h"
#include "utils/LogCenter.h"

#include <QFileInfo>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <utility>

namespace backend {

namespace {

using Details = QVector<boost::shared_ptr<GW::CAuthDetail>>;

// The records as they go into the file: what the user's own data says of the account wins over
// what the page sent, and nobody can name another grantor.
Details recordsForFile(const Details& grants, const QString& userName,
                       const AccountSnapshot& accounts)
{
    Details records;
    for (const auto& grant : grants) {
        auto record = boost::make_shared<GW::CAuthDetail>(*grant);
        record->grantor = userName;
        if (const auto own = accounts.account(GW::genAccountKeyQs(grant->account)))
            record->account = *own;
        records.append(record);
    }
    return records;
}

SealedFileError encode(const Details& records, SecretBytes* payload)
{
    const SealedFileError error = encodeGrants(records, payload);
    for (const auto& record : records)
        wipe(record->account.accountPrivate);
    return error;
}

QSet<QString> referencesOf(const Details& grants)
{
    QSet<QString> references;
    references.reserve(grants.size());
    for (const auto& grant : grants)
        references.insert(grant->grantRef);
    return references;
}

QVector<FileGrant> storeGrants(const Details& grants)
{
    QVector<FileGrant> result;
    for (const auto& grant : grants) {
        if (!grant)
            continue;
        result.append({grant->grantRef, grant->grantee, GW::genAccountKeyQs(grant->account),
                       GW::accountDisplayIDQs(grant->account), grant->limit});
    }
    return result;
}

} // namespace

GrantFileWriter::GrantFileWriter(StoreLink& store, QString userName, bool cheap)
    : m_store(store), m_userName(std::move(userName)), m_cheap(cheap)
{
}

ExportError GrantFileWriter::write(const QString& filePath, const QString& password,
                                   const Details& grants, const AccountSnapshot& accounts,
                                   QString* failure)
{
    QString reason;
    bool isNoted = false;
    const ExportError error =
        writeUnlogged(filePath, password, grants, accounts, &reason, &isNoted);
    if (error == ExportError::None)
        return error;
    if (reason.isEmpty())
        reason = exportErrorText(error);
    utils::CLogCenter::warning(QStringLiteral("Authorization file not written (%1) %2")
                                   .arg(static_cast<int>(error))
                                   .arg(reason));
    if (!isNoted)
        m_store.noteUnwritten(storeGrants(grants), reason);
    if (failure)
        *failure = reason;
    return error;
}

ExportError GrantFileWriter::writeUnlogged(const QString& filePath, const QString& password,
                                           const Details& grants, const AccountSnapshot& accounts,
                                           QString* reason, bool* isNoted)
{
    if (grants.isEmpty())
        return ExportError::NoGrants;
    const auto hasReference = [](const auto& grant) { return grant && !grant->grantRef.isEmpty(); };
    if (!std::all_of(grants.cbegin(), grants.cend(), hasReference))
        return ExportError::NoReference;
    if (password.trimmed().isEmpty())
        return ExportError::EmptyPassword;
    if (filePath.contains(QChar(0)))
        return ExportError::BadPath;

    QFileInfo target(filePath);
    if (target.fileName().isEmpty() || target.isDir())
        return ExportError::BadPath;
    // The save dialog has asked about an existing file of the name that was typed, not about one
    // of the completed name.
    const bool completed = target.suffix().isEmpty();
    if (completed)
        target.setFile(filePath + QStringLiteral(".taa"));
    const QString path = target.absoluteFilePath();
    const auto before = m_written.constFind(path);
    const bool repeat = before != m_written.cend() && *before == referencesOf(grants);
    const auto replace =
        completed && !repeat ? SafeFileWriter::Replace::Refused : SafeFileWriter::Replace::Allowed;
    if (replace == SafeFileWriter::Replace::Refused && (target.exists() || target.isSymLink()))
        return ExportError::FileExists;

    QByteArray bytes;
    // Derives the key while the content is put together.
    FileSealer sealer(password, m_cheap ? SealProfile::Test : SealProfile::Standard);
    SecretBytes payload;
    SealedFileError sealing = encode(recordsForFile(grants, m_userName, accounts), &payload);
    const QVector<FileGrant> forStore = storeGrants(grants);
    const QSet<QString> references = referencesOf(grants);
    if (sealing == SealedFileError::None)
        sealing = sealer.seal(payload.view(), &bytes);
    if (sealing != SealedFileError::None) {
        *reason = sealedFileErrorText(sealing);
        return ExportError::Seal;
    }
    SafeFileWriter writer;
    if (!writer.prepare(path, bytes)) {
        *reason = writer.errorText();
        return ExportError::Write;
    }
    const UserStore::Exported exported = m_store.commitExport(forStore, repeat);
    if (exported.error != ExportError::None) {
        *reason = exported.reason;
        *isNoted = exported.error == ExportError::Store;
        return exported.error;
    }
    const SafeFileWriter::Published published = writer.publish(replace);
    if (published != SafeFileWriter::Published::Yes) {
        *reason = writer.errorText();
        m_store.revertExport(exported.changed);
        *isNoted = !exported.changed.isEmpty();
        return published == SafeFileWriter::Published::Exists ? ExportError::FileExists
                                                              : ExportError::Write;
    }
    m_written.insert(path, references);
    return ExportError::None;
}

} // namespace backend
