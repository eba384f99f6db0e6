#include "backend/sealedfile/GrantPayload.h"

#include "backend/sealedfile/GrantReader.h"
#include "backend/sealedfile/SealedFile.h"
#include "backend/sealedfile/SecretSink.h"

#include <QCborStreamWriter>
#include <QSet>
#include <QUtf8StringView>

#include <cmath>
#include <new>

namespace backend {

using namespace grantpayload;

namespace {

bool isWritable(const QString& text)
{
    // UTF-16 never becomes shorter in UTF-8; the exact length is checked only near the limit.
    if (text.size() > maxTextBytes || !text.isValidUtf16())
        return false;
    return text.size() <= maxTextBytes / 3 || text.toUtf8().size() <= maxTextBytes;
}

bool isWritable(const std::string& text)
{
    const auto size = static_cast<qsizetype>(text.size());
    return size <= maxTextBytes && QUtf8StringView(text.data(), size).isValidUtf8();
}

bool isWritable(const GW::CAuthDetail& grant)
{
    const mbservice::CAccountInfo& account = grant.account;
    const double ratio = grant.limit.availableMarginRatio;
    return !grant.grantRef.isEmpty() && isWritable(grant.grantRef) && isWritable(grant.grantor) &&
           isWritable(grant.grantee) && isWritable(account.brokerId) &&
           isWritable(account.accountId) && isWritable(account.accountPrivate) &&
           isWritable(account.accountAlias) && !std::isnan(ratio) &&
           (!grant.limit.hasMarginRatio() || (ratio > 0 && ratio <= 1));
}

// At least what writeGrant() writes, so that one buffer takes all of it.
qsizetype sizeBound(const GW::CAuthDetail& grant)
{
    constexpr qsizetype headsAndNumbers = 1 + 7 * 3 + 5 * 5 + 9;
    const mbservice::CAccountInfo& account = grant.account;
    const std::size_t bytes = account.brokerId.size() + account.accountId.size() +
                              account.accountPrivate.size() + account.accountAlias.size();
    return headsAndNumbers + static_cast<qsizetype>(bytes) +
           3 * (grant.grantRef.size() + grant.grantor.size() + grant.grantee.size());
}

void writeText(QCborStreamWriter& writer, const std::string& text)
{
    writer.appendTextString(text.data(), static_cast<qsizetype>(text.size()));
}

void writeGrant(QCborStreamWriter& writer, const GW::CAuthDetail& grant)
{
    const bool withRatio = grant.limit.hasMarginRatio();
    writer.startArray(withRatio ? 13 : 12);
    writer.append(QStringView(grant.grantRef));
    writer.append(QStringView(grant.grantor));
    writer.append(QStringView(grant.grantee));
    writer.append(grant.account.accountType);
    writer.append(grant.account.platformId);
    writeText(writer, grant.account.brokerId);
    writer.append(grant.account.accountSubType);
    writeText(writer, grant.account.accountId);
    writeText(writer, grant.account.accountPrivate);
    writeText(writer, grant.account.accountAlias);
    writer.append(grant.limit.startTime);
    writer.append(grant.limit.endTime);
    if (withRatio)
        writer.append(grant.limit.availableMarginRatio);
    writer.endArray();
}

SealedFileError encode(const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants, SecretBytes* out)
{
    if (grants.isEmpty() || grants.size() > maxGrants)
        return SealedFileError::InvalidInput;
    QSet<QString> references;
    references.reserve(grants.size());
    qsizetype bound = 16;
    for (const auto& grant : grants) {
        if (!grant || !isWritable(*grant))
            return SealedFileError::InvalidInput;
        references.insert(grant->grantRef);
        bound += sizeBound(*grant);
    }
    if (references.size() != grants.size())
        return SealedFileError::InvalidInput;

    SecretBytes buffer =
        SecretBytes::allocate(static_cast<std::size_t>(qMin(bound, sealedfile::maxPayloadSize)));
    if (buffer.isNull())
        return SealedFileError::OutOfMemory;
    SecretSink sink(&buffer);
    QCborStreamWriter writer(&sink);
    writer.startArray(2);
    writer.append(version);
    writer.startArray(static_cast<quint64>(grants.size()));
    for (const auto& grant : grants)
        writeGrant(writer, *grant);
    writer.endArray();
    writer.endArray();
    if (sink.overflowed())
        return SealedFileError::InvalidInput;
    buffer.truncate(sink.written());
    *out = std::move(buffer);
    return SealedFileError::None;
}

} // namespace

SealedFileError encodeGrants(const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants,
                             SecretBytes* out)
{
    out->clear();
    try {
        return encode(grants, out);
    } catch (const std::bad_alloc&) {
        return SealedFileError::OutOfMemory;
    }
}

SealedFileError decodeGrants(QByteArrayView payload,
                             QVector<boost::shared_ptr<GW::CAuthDetail>>* out)
{
    out->clear();
    try {
        GrantReader reader(payload);
        return reader.read(out);
    } catch (const std::bad_alloc&) {
        return SealedFileError::OutOfMemory;
    }
}

} // namespace backend
