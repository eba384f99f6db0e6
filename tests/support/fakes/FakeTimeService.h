#pragma once

#include "authsetting/services/TimeService.h"
#include "utils/ExchangeTimeZone.h"

/// A clock that stands where the test sets it; at first noon of 2026-03-02 in the exchange zone.
class FakeTimeService : public GW::CTimeService
{
public:
    QDateTime currentDateTime() const override { return now; }

    QDateTime now{QDate(2026, 3, 2), QTime(12, 0), utils::exchangeTimeZone()};
};
