#include "benchmarks/support/BenchServices.h"

#include "authsetting/services/Services.h"
#include "kit/dates/DateConversions.h"

#include <boost/make_shared.hpp>

namespace bench {

namespace {

constexpr int platformCount = 4;
constexpr int brokersPerPlatform = 6;

std::string brokerOf(int number)
{
    return std::to_string(8000 + number % brokersPerPlatform);
}

boost::shared_ptr<GW::CAccount> makeAccount(int number, bool granted)
{
    auto account = boost::make_shared<GW::CAccount>();
    account->accountType = number % 3 == 0 ? 2 : 1;
    account->platformId = 1 + number % platformCount;
    account->brokerId = brokerOf(number);
    account->accountSubType = 0;
    account->accountId = std::to_string(600000000 + number);
    account->authType =
        granted ? mbservice::AUTH_TYPE_GRANTED_TO_OTHER : mbservice::AUTH_TYPE_NOT_GRANTED;
    return account;
}

} // namespace

BenchServices::BenchServices(int accounts, bool granted, int subUsers)
    : m_user(QStringLiteral("bench"), QString())
{
    addNames();
    for (int number = 0; number < subUsers; ++number)
        m_client.subUsers.append(QStringLiteral("sub%1").arg(number, 4, 10, QLatin1Char('0')));
    setAccounts(accounts, granted);
    GW::installServices(&m_client, &m_user, &m_config, nullptr, &m_time);
}

BenchServices::~BenchServices()
{
    GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
}

void BenchServices::addNames()
{
    QVector<mbservice::CPlatformInfo> platforms;
    QVector<mbservice::CBrokerInfo> brokers;
    for (int platform = 1; platform <= platformCount; ++platform) {
        const QString name = QStringLiteral("交易平台%1").arg(platform);
        platforms.append({platform, name.toStdString()});
        for (int broker = 0; broker < brokersPerPlatform; ++broker) {
            const QString brokerName = QStringLiteral("第%1经纪公司").arg(broker);
            brokers.append({platform, brokerOf(broker), brokerName.toStdString()});
        }
    }
    m_config.setPlatforms(platforms, platforms);
    m_user.setBrokers(brokers, brokers);
}

void BenchServices::setAccounts(int count, bool granted)
{
    const QDate first = m_time.currentDateTime().date();
    QVector<boost::shared_ptr<GW::CAccount>> accounts;
    accounts.reserve(count);
    for (int number = 0; number < count; ++number) {
        const bool isGranted = granted && number % 10 < 5;
        const boost::shared_ptr<GW::CAccount> account = makeAccount(number, isGranted);
        accounts.append(account);
        if (!isGranted)
            continue;
        auto detail = boost::make_shared<GW::CAuthDetail>();
        detail->grantRef = QString::number(number);
        detail->grantor = m_user.userName;
        detail->grantee = m_client.subUsers.isEmpty()
                              ? QStringLiteral("trader")
                              : m_client.subUsers.at(number % m_client.subUsers.size());
        detail->account = *account;
        // A few dozen different days, as a back office has them.
        detail->limit.startTime = KZ::qDateTimeToSecond(first.addDays(number % 37).startOfDay());
        detail->limit.endTime = KZ::qDateTimeToSecond(first.addDays(60 + number % 41).startOfDay());
        m_client.grants.insert(account->key(), detail);
        m_client.grantedTo[detail->grantee].insert(account->key(), detail);
    }
    m_user.setAccounts(backend::AccountSnapshot(accounts, {}, {}));
}

} // namespace bench
