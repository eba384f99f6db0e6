#pragma once

#include "authsetting/AuthSettingExport.h"

#include <QDateTime>

namespace GW {

/// The client's clock. GUI thread only.
class AUTHSETTING_EXPORT CTimeService
{
public:
    CTimeService();
    CTimeService(const CTimeService&) = delete;
    CTimeService& operator=(const CTimeService&) = delete;
    virtual ~CTimeService();

    /// The client's current date and time in the exchange time zone, always valid. The pages take
    /// "today" from its date() and never from the machine's clock.
    virtual QDateTime currentDateTime() const = 0;
};

} // namespace GW
