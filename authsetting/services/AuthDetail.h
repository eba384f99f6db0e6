#pragma once

#include "authsetting/AuthSettingExport.h"
#include "authsetting/services/AccountInfo.h"
#include "authsetting/services/AuthLimit.h"

#include <QString>

#include <boost/shared_ptr.hpp>

namespace GW {

/// One grant; always held through boost::shared_ptr<CAuthDetail>.
class AUTHSETTING_EXPORT CAuthDetail
{
public:
    /// The store's reference of the grant, as sigAddAuthResult reported it.
    QString grantRef;
    /// The user whose account it is.
    QString grantor;
    /// The user who may trade it.
    QString grantee;
    mbservice::CAccountInfo account;
    CAuthLimit limit;
};

} // namespace GW

Q_DECLARE_METATYPE(boost::shared_ptr<GW::CAuthDetail>)
