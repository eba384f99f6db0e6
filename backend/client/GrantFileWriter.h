#pragma once

#include "authsetting/services/AuthDetail.h"
#include "backend/client/StoreLink.h"
#include "backend/config/AccountSnapshot.h"
#include "backend/store/ExportError.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace backend {

/// Writes prepared grants into an authorization file: the file is sealed and lies on the disk under
/// another name before the store makes its grants current, and gets its name only afterwards, so
/// that no file is ever there whose grants are not. GUI thread.
class GrantFileWriter
{
public:
    /// `cheap` seals for tests only.
    GrantFileWriter(StoreLink& store, QString userName, bool cheap);

    /// `accounts` are the user's own, whose secrets go into the file. Of a failure, `failure`
    /// (may be null) gets the reason in Chinese, and the store's audit trail as far as it can.
    ExportError write(const QString& filePath, const QString& password,
                      const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants,
                      const AccountSnapshot& accounts, QString* failure = nullptr);

private:
    ExportError writeUnlogged(const QString& filePath, const QString& password,
                              const QVector<boost::shared_ptr<GW::CAuthDetail>>& grants,
                              const AccountSnapshot& accounts, QString* reason, bool* isNoted);

    StoreLink& m_store;
    QString m_userName;
    bool m_cheap;
    /// References of the files that were written, by path.
    QHash<QString, QSet<QString>> m_written;
};

} // namespace backend
