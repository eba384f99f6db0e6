#pragma once

#include "backend/config/Config.h"
#include "backend/config/TimeService.h"
#include "backend/config/UserConfig.h"
#include "benchmarks/support/BenchAuthClient.h"

namespace bench {

/// The dialog's services over accounts made up in memory, installed while the object lives:
/// `accounts` own accounts, futures and stock over several platforms and brokers, the first half
/// of each ten granted when `granted`, and `subUsers` restricted users.
class BenchServices
{
public:
    BenchServices(int accounts, bool granted, int subUsers = 3);
    ~BenchServices();
    BenchServices(const BenchServices&) = delete;
    BenchServices& operator=(const BenchServices&) = delete;

    /// Puts this many accounts in the place of those there were.
    void setAccounts(int count, bool granted);
    BenchAuthClient& client() { return m_client; }

private:
    void addNames();

    BenchAuthClient m_client;
    backend::ClientUserConfig m_user;
    backend::ClientConfig m_config;
    backend::SystemTimeService m_time;
};

} // namespace bench
