#pragma once

#include "authsetting/services/AuthDetail.h"
#include "backend/sealedfile/SealedFileError.h"
#include "backend/sealedfile/SecretBytes.h"

#include <QByteArrayView>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace backend {

/// Content of an authorization file: CBOR (RFC 8949), an array of the payload version 1 and the
/// array of grants. A grant is an array of twelve elements (reference, grantor, grantee, account
/// type, platform, broker, account sub-type, account number, account secret, account alias, first
/// day, last day; days in seconds as CAuthLimit has them) and a thirteenth, the ratio of available
/// margin, only if there is one. Fields have a fixed order and no names: none can come twice and
/// none can be unknown, and whoever needs another field raises the version.
namespace grantpayload {
inline constexpr int version = 1;
/// No real file comes near these; they bound what a hostile one can ask for.
inline constexpr qsizetype maxGrants = 100'000;
/// UTF-8 bytes of one text.
inline constexpr qsizetype maxTextBytes = 4096;
} // namespace grantpayload

/// Writes `grants` into `*out`, memory that is wiped when it goes. InvalidInput (and a null `*out`)
/// for no grants, too many, a null one, one without a reference, a reference that comes twice, a
/// text that is too long or no UTF-8, a ratio that is neither absent nor in (0, 1], or a payload
/// over sealedfile::maxPayloadSize; OutOfMemory. Any thread.
SealedFileError encodeGrants(const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants,
                             SecretBytes* out);

/// Reads what encodeGrants() wrote. Damaged for whatever it would not have written, trailing bytes
/// included; Unsupported for another payload version; `*out` is then empty. The records hold the
/// account secrets: wipe() them when done. Any thread.
SealedFileError decodeGrants(QByteArrayView payload,
                             QVector<boost::shared_ptr<GW::CAuthDetail>>* out);

} // namespace backend
