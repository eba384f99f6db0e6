#include "backend/sealedfile/GrantReader.h"

#include "backend/sealedfile/GrantPayload.h"

#include <QSet>
#include <QUtf8StringView>

#include <boost/make_shared.hpp>

#include <limits>

namespace backend {

using namespace grantpayload;

namespace {

constexpr quint64 fieldsWithoutRatio = 12;
constexpr quint64 fieldsWithRatio = 13;

} // namespace

GrantReader::GrantReader(QByteArrayView payload)
    : m_payload(payload), m_reader(payload.data(), payload.size())
{
}

SealedFileError GrantReader::read(QVector<boost::shared_ptr<GW::CAuthDetail>>* out)
{
    quint64 length = 0;
    qint32 payloadVersion = 0;
    if (!enterArray(2, 2, &length) || !readInteger(&payloadVersion))
        return SealedFileError::Damaged;
    if (payloadVersion != version)
        return SealedFileError::Unsupported;
    QVector<boost::shared_ptr<GW::CAuthDetail>> grants;
    if (!readGrants(&grants) || !m_reader.leaveContainer() ||
        m_reader.currentOffset() != m_payload.size())
        return SealedFileError::Damaged;
    *out = std::move(grants);
    return SealedFileError::None;
}

bool GrantReader::enterArray(quint64 minLength, quint64 maxLength, quint64* length)
{
    if (!m_reader.isArray() || !m_reader.isLengthKnown())
        return false;
    *length = m_reader.length();
    return *length >= minLength && *length <= maxLength && m_reader.enterContainer();
}

bool GrantReader::readGrants(QVector<boost::shared_ptr<GW::CAuthDetail>>* grants)
{
    quint64 length = 0;
    if (!enterArray(1, static_cast<quint64>(maxGrants), &length))
        return false;
    QSet<QString> references;
    for (quint64 i = 0; i < length; ++i) {
        auto grant = boost::make_shared<GW::CAuthDetail>();
        if (!readGrant(grant.get()) || references.contains(grant->grantRef))
            return false;
        references.insert(grant->grantRef);
        grants->append(std::move(grant));
    }
    return m_reader.leaveContainer();
}

bool GrantReader::readGrant(GW::CAuthDetail* grant)
{
    quint64 length = 0;
    if (!enterArray(fieldsWithoutRatio, fieldsWithRatio, &length))
        return false;
    mbservice::CAccountInfo& account = grant->account;
    GW::CAuthLimit& limit = grant->limit;
    return readText(&grant->grantRef) && !grant->grantRef.isEmpty() && readText(&grant->grantor) &&
           readText(&grant->grantee) && readInteger(&account.accountType) &&
           readInteger(&account.platformId) && readText(&account.brokerId) &&
           readInteger(&account.accountSubType) && readText(&account.accountId) &&
           readText(&account.accountPrivate) && readText(&account.accountAlias) &&
           readInteger(&limit.startTime) && readInteger(&limit.endTime) &&
           (length == fieldsWithoutRatio || readRatio(&limit.availableMarginRatio)) &&
           m_reader.leaveContainer();
}

bool GrantReader::readText(std::string* text)
{
    if (!m_reader.isString() || !m_reader.isLengthKnown() ||
        m_reader.length() > static_cast<quint64>(maxTextBytes))
        return false;
    const auto size = static_cast<qsizetype>(m_reader.length());
    text->resize(static_cast<std::size_t>(size));
    // The first chunk is the whole text, the second its end, which steps to the next element.
    const auto chunk = m_reader.readStringChunk(text->data(), size);
    if (chunk.status != QCborStreamReader::Ok || chunk.data != size)
        return false;
    char none = 0;
    return m_reader.readStringChunk(&none, 0).status == QCborStreamReader::EndOfString &&
           QUtf8StringView(text->data(), size).isValidUtf8();
}

bool GrantReader::readText(QString* text)
{
    std::string utf8;
    if (!readText(&utf8))
        return false;
    *text = QString::fromStdString(utf8);
    return true;
}

bool GrantReader::readInteger(qint32* value)
{
    using Limits = std::numeric_limits<qint32>;
    if (m_reader.isUnsignedInteger()) {
        const quint64 read = m_reader.toUnsignedInteger();
        if (read > static_cast<quint64>(Limits::max()))
            return false;
        *value = static_cast<qint32>(read);
    } else if (m_reader.isNegativeInteger()) {
        // The amount below zero, where 0 stands for 2^64.
        const auto amount = static_cast<quint64>(m_reader.toNegativeInteger());
        if (amount == 0 || amount > static_cast<quint64>(Limits::max()) + 1)
            return false;
        *value = static_cast<qint32>(-static_cast<qint64>(amount));
    } else {
        return false;
    }
    return m_reader.next();
}

bool GrantReader::readRatio(double* value)
{
    if (!m_reader.isDouble())
        return false;
    *value = m_reader.toDouble();
    return *value > 0 && *value <= 1 && m_reader.next();
}

} // namespace backend
