#pragma once

#include "backend/sealedfile/FileKey.h"
#include "backend/sealedfile/SealProfile.h"
#include "backend/sealedfile/SealedFileError.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <future>

namespace backend {

/// Seals one file. The slow part, deriving its key, runs on a thread of its own from construction
/// on, so that its maker builds the payload or asks the store meanwhile. The object itself belongs
/// to one thread; its destructor waits for the derivation.
class FileSealer
{
public:
    FileSealer(const QString& password, SealProfile profile);
    FileSealer(const FileSealer&) = delete;
    FileSealer& operator=(const FileSealer&) = delete;

    /// Seals `payload` into `*out`, a whole file ready to be written. Errors: InvalidInput (empty
    /// password, empty or too large payload, unknown profile, a second call: two files under one
    /// nonce would give both away), OutOfMemory; `*out` is then empty.
    SealedFileError seal(QByteArrayView payload, QByteArray* out);

private:
    void begin(const QString& password, SealProfile profile);

    /// Everything before the commitment; empty when nothing can be sealed.
    QByteArray m_head;
    FileKey m_key;
    SealedFileError m_error = SealedFileError::None;
    std::future<SealedFileError> m_derivation;
};

} // namespace backend
