#pragma once

#include "authsetting/services/AuthDetail.h"
#include "backend/config/AccountSnapshot.h"

#include <QHash>
#include <QMap>
#include <QSet>
#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

namespace backend {

/// Everything that the pages read about one user, at one moment. Built by the worker, read by the
/// GUI thread; copies share their data.
struct UserSnapshot
{
    using GrantMap = QMap<QString, boost::shared_ptr<GW::CAuthDetail>>;

    /// Own accounts in the order of their making, then received ones.
    AccountSnapshot accounts;
    /// Current grants by account key, own and received; without the accounts' secrets.
    QHash<QString, boost::shared_ptr<GW::CAuthDetail>> grants;
    /// Own grants by grantee.
    QHash<QString, GrantMap> grantedTo;
    QVector<QString> subUsers;
    QSet<QString> activeSubUsers;
};

} // namespace backend
