#include "authsetting/shell/AccountTextCache.h"

#include "tests/authsetting/TabPageTools.h"

namespace {

mbservice::CAccountInfo accountOf(int type, int platform, const QString& broker)
{
    mbservice::CAccountInfo account;
    account.accountType = type;
    account.platformId = platform;
    account.brokerId = broker.toStdString();
    return account;
}

} // namespace

/// Many more names and days than the cache has places for, each asked for twice, so that every
/// place is taken over again and again.
class AccountTextCacheTest : public TestCase
{
    Q_OBJECT

    static constexpr int keys = 2000;

private Q_SLOTS:
    void everyPlatformHasItsOwnName_data()
    {
        QTest::addColumn<int>("rule");
        QTest::newRow("only type 2 is stock") << int(GW::StockRule::OnlyStockType);
        QTest::newRow("all but type 1 is stock") << int(GW::StockRule::AllButFuturesType);
    }

    void everyPlatformHasItsOwnName()
    {
        QFETCH(int, rule);
        FakeServices services;
        for (int id = 0; id < keys; ++id) {
            services.config.addPlatform(id, QStringLiteral("期货%1").arg(id));
            services.config.addStkPlatform(id, QStringLiteral("股票%1").arg(id));
        }
        const auto stockRule = static_cast<GW::StockRule>(rule);
        GW::CAccountTextCache texts(stockRule);
        for (int round = 0; round < 2; ++round) {
            for (int id = 0; id < keys; ++id) {
                for (const int type : {1, 2, 7}) {
                    const auto account = accountOf(type, id, QStringLiteral("b"));
                    QCOMPARE(texts.platformName(account), GW::platformName(account, stockRule));
                }
            }
        }
    }

    void everyBrokerHasItsOwnName()
    {
        FakeServices services;
        for (int id = 0; id < keys; ++id) {
            for (const int platform : {1, 2}) {
                const QPair<int, QString> broker(platform, QString::number(id));
                services.user.brokers.insert(broker,
                                             QStringLiteral("期%1-%2").arg(platform).arg(id));
                services.user.stkBrokers.insert(broker,
                                                QStringLiteral("证%1-%2").arg(platform).arg(id));
            }
        }
        GW::CAccountTextCache texts(GW::StockRule::OnlyStockType);
        for (int round = 0; round < 2; ++round) {
            for (int id = 0; id < keys; ++id) {
                for (const int platform : {1, 2}) {
                    for (const int type : {1, 2}) {
                        const auto account = accountOf(type, platform, QString::number(id));
                        QCOMPARE(texts.brokerName(account),
                                 GW::brokerName(account, GW::StockRule::OnlyStockType));
                    }
                }
            }
        }
    }

    void everySecondHasItsDay()
    {
        GW::CAccountTextCache texts(GW::StockRule::OnlyStockType);
        const int first = secondsOf(testToday());
        for (int round = 0; round < 2; ++round) {
            for (int day = 0; day < 600; ++day) {
                // The exchange's midnight, the second before it and one in the middle of the day.
                for (const int offset : {0, -1, 43200}) {
                    const int seconds = first + day * 86400 + offset;
                    QCOMPARE(texts.grantDayText(seconds), GW::grantDayText(seconds));
                }
            }
        }
        QCOMPARE(texts.grantDayText(0), GW::grantDayText(0));
        QCOMPARE(texts.grantDayText(-86400), GW::grantDayText(-86400));
    }
};

int main(int argc, char** argv)
{
    return runTest<AccountTextCacheTest>(argc, argv);
}

#include "AccountTextCacheTest.moc"
