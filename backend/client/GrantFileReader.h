#pragma once

#include "backend/sealedfile/SealedFileError.h"
#include "backend/store/FileGrant.h"

#include <QString>
#include <QVector>

namespace backend {

/// Opens the authorization file at `filePath` and reads what the store has to judge into `grants`;
/// the secrets in the file are wiped unread, for only the store discloses one. `allowTestSeal`
/// accepts files that tests sealed. Any thread.
SealedFileError readGrantFile(const QString& filePath, const QString& password, bool allowTestSeal,
                              QVector<FileGrant>* grants);

} // namespace backend
