#include "authsetting/services/Services.h"
#include "authsetting/shell/AccountTextCache.h"
#include "authsetting/shell/AccountTexts.h"
#include "authsetting/shell/ClientDate.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TipTestCase.h"
#include "tests/support/fakes/FakeServices.h"

#include <QElapsedTimer>
#include <QPointer>

namespace {

mbservice::CAccountInfo accountOf(int type, int platform)
{
    mbservice::CAccountInfo account;
    account.accountType = type;
    account.platformId = platform;
    account.brokerId = "b";
    return account;
}

void nameEverything(FakeServices& services)
{
    services.config.addPlatform(1, QStringLiteral("期货一"));
    services.config.addStkPlatform(1, QStringLiteral("股票一"));
    services.config.addPlatform(2, QStringLiteral("只有期货"));
    services.user.brokers.insert({1, QStringLiteral("b")}, QStringLiteral("期货公司"));
    services.user.stkBrokers.insert({1, QStringLiteral("b")}, QStringLiteral("证券公司"));
}

} // namespace

class ShellHelpersTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theRequestTagIsThePagesAddressIn32Bits()
    {
        QWidget page;
        QWidget other;
        const QVariant tag = GW::requestTag(&page);
        QCOMPARE(tag.metaType(), QMetaType::fromType<int>());
        QCOMPARE(tag.toInt(), int(quint32(quintptr(&page))));
        QVERIFY(GW::isRequestOf(&page, tag));
        QVERIFY(!GW::isRequestOf(&other, tag));
        QVERIFY(!GW::isRequestOf(&page, QVariant()));
        QVERIFY(GW::isRequestOf(&page, QVariant(QString::number(tag.toInt()))));
    }

    void theTwoStockRulesDifferForUnknownTypes_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("onlyStock");
        QTest::addColumn<bool>("allButFutures");
        QTest::newRow("futures") << 1 << false << false;
        QTest::newRow("stock") << 2 << true << true;
        QTest::newRow("unset") << 0 << false << true;
        QTest::newRow("unknown") << 7 << false << true;
    }

    void theTwoStockRulesDifferForUnknownTypes()
    {
        QFETCH(int, type);
        QFETCH(bool, onlyStock);
        QFETCH(bool, allButFutures);
        FakeServices services;
        nameEverything(services);
        const mbservice::CAccountInfo account = accountOf(type, 1);
        const QStringList platforms{QStringLiteral("期货一"), QStringLiteral("股票一")};
        const QStringList brokers{QStringLiteral("期货公司"), QStringLiteral("证券公司")};
        QCOMPARE(GW::platformName(account, GW::StockRule::OnlyStockType), platforms[onlyStock]);
        QCOMPARE(GW::platformName(account, GW::StockRule::AllButFuturesType),
                 platforms[allButFutures]);
        QCOMPARE(GW::brokerName(account, GW::StockRule::OnlyStockType), brokers[onlyStock]);
        QCOMPARE(GW::brokerName(account, GW::StockRule::AllButFuturesType), brokers[allButFutures]);
    }

    void anUnknownPlatformHasAnEmptyName()
    {
        FakeServices services;
        nameEverything(services);
        using enum GW::StockRule;
        QCOMPARE(GW::platformName(accountOf(1, 9), OnlyStockType), QString());
        QCOMPARE(GW::platformName(accountOf(2, 9), OnlyStockType), QString());
        // Known among the futures platforms only.
        QCOMPARE(GW::platformName(accountOf(2, 2), OnlyStockType), QString());
        QCOMPARE(GW::platformName(accountOf(2, 2), AllButFuturesType), QString());
        QCOMPARE(GW::brokerName(accountOf(1, 9), OnlyStockType), QString());
    }

    void missingServicesGiveEmptyNames()
    {
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
        QCOMPARE(GW::platformName(accountOf(1, 1), GW::StockRule::OnlyStockType), QString());
        QCOMPARE(GW::brokerName(accountOf(1, 1), GW::StockRule::OnlyStockType), QString());
    }

    void sharedTextsAreThoseOfEachAccountHoweverManyDiffer()
    {
        constexpr int many = 1000;
        constexpr int secondsPerDay = 86400;
        FakeServices services;
        QVector<mbservice::CAccountInfo> accounts;
        for (int number = 0; number < many; ++number) {
            const QString broker = QStringLiteral("b%1").arg(number);
            services.config.addPlatform(number, QStringLiteral("futures %1").arg(number));
            services.config.addStkPlatform(number, QStringLiteral("stock %1").arg(number));
            services.user.brokers.insert({number % 7, broker}, QStringLiteral("f%1").arg(number));
            services.user.stkBrokers.insert({number % 7, broker},
                                            QStringLiteral("s%1").arg(number));
            mbservice::CAccountInfo account;
            account.accountType = 1 + number % 2;
            account.platformId = number;
            accounts.append(account);
            account.platformId = number % 7;
            account.brokerId = broker.toStdString();
            accounts.append(account);
        }
        for (const GW::StockRule rule :
             {GW::StockRule::OnlyStockType, GW::StockRule::AllButFuturesType}) {
            GW::CAccountTextCache texts(rule);
            for (int round = 0; round < 2; ++round) {
                for (const mbservice::CAccountInfo& account : std::as_const(accounts)) {
                    QCOMPARE(texts.platformName(account), GW::platformName(account, rule));
                    QCOMPARE(texts.brokerName(account), GW::brokerName(account, rule));
                }
                for (int day = -many; day < many; ++day)
                    QCOMPARE(texts.grantDayText(day * secondsPerDay + day),
                             GW::grantDayText(day * secondsPerDay + day));
            }
        }
    }

    void aSharedTextIsAskedForOncePerReload()
    {
        FakeServices services;
        nameEverything(services);
        mbservice::CAccountInfo account;
        account.accountType = 1;
        account.platformId = 1;
        account.brokerId = "b";
        GW::CAccountTextCache texts(GW::StockRule::OnlyStockType);
        QCOMPARE(texts.platformName(account), QStringLiteral("期货一"));
        QCOMPARE(texts.brokerName(account), QStringLiteral("期货公司"));
        services.config.addPlatform(1, QStringLiteral("改名"));
        services.user.brokers.insert({1, QStringLiteral("b")}, QStringLiteral("新名"));
        QCOMPARE(texts.platformName(account), QStringLiteral("期货一"));
        QCOMPARE(texts.brokerName(account), QStringLiteral("期货公司"));
        GW::CAccountTextCache next(GW::StockRule::OnlyStockType);
        QCOMPARE(next.platformName(account), QStringLiteral("改名"));
        QCOMPARE(next.brokerName(account), QStringLiteral("新名"));
    }

    void aGrantsDayIsTheExchangeZonesDay()
    {
        const QDateTime midnight(QDate(2026, 3, 9), QTime(0, 0), utils::exchangeTimeZone());
        const int seconds = int(midnight.toSecsSinceEpoch());
        QCOMPARE(GW::grantDayText(seconds), QStringLiteral("2026-03-09"));
        QCOMPARE(GW::grantDayText(seconds - 1), QStringLiteral("2026-03-08"));
    }

    void todayIsTheTimeServicesDay_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QTime>("time");
        // Just after midnight the machine's day is another one east of it, just before it west.
        for (const char* zone : {"Asia/Shanghai", "America/New_York", "UTC"}) {
            for (const QTime& time : {QTime(0, 0), QTime(0, 30), QTime(23, 59)})
                QTest::addRow("%s %s", zone, qPrintable(time.toString()))
                    << QByteArray(zone) << time;
        }
    }

    void todayIsTheTimeServicesDay()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QTime, time);
        FakeServices services;
        services.time.now = QDateTime(QDate(2031, 5, 6), time, QTimeZone(zone));
        QCOMPARE(GW::clientToday(), QDate(2031, 5, 6));
    }

    void withoutATimeServiceTodayIsTheExchangeZonesDay()
    {
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
        const QTimeZone usual = utils::exchangeTimeZone();
        // More than a day apart, so that the machine's own day is never that of both.
        for (const char* zone : {"Pacific/Kiritimati", "Etc/GMT+12"}) {
            QVERIFY(utils::setExchangeTimeZone(QTimeZone(zone)));
            const auto today = [zone] {
                return QDateTime::currentDateTimeUtc().toTimeZone(QTimeZone(zone)).date();
            };
            const QDate before = today();
            const QDate answer = GW::clientToday();
            QVERIFY(answer == before || answer == today());
        }
        utils::setExchangeTimeZone(usual);
    }

    void aTableLayoutIsKeptUnderTheTablesIdentifier()
    {
        FakeServices services;
        EventRecorder window;
        auto* table = new KZ::COddEvenRowTable(77, &window);
        table->setColumnCount(3);
        table->setColumnWidth(1, 123);
        GW::saveTableLayout(table);
        QCOMPARE(services.user.tableLayouts.keys(), QList<int>{77});
        auto* other = new KZ::COddEvenRowTable(77, &window);
        other->setColumnCount(3);
        GW::restoreTableLayout(other);
        QCOMPARE(other->columnWidth(1), 123);
        QCOMPARE(other->saveConfigStr(), services.user.tableLayouts.value(77));
    }

    void withoutAConfigurationATableKeepsItsOwnLayout()
    {
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
        EventRecorder window;
        auto* table = new KZ::COddEvenRowTable(77, &window);
        table->setColumnCount(3);
        table->setColumnWidth(1, 123);
        GW::saveTableLayout(table);
        GW::restoreTableLayout(table);
        QCOMPARE(table->columnWidth(1), 123);
    }

    void aTipCarriesItsTextKindAndAnchor()
    {
        EventRecorder window;
        window.resize(300, 200);
        window.show();
        GW::showResultTip(&window, QStringLiteral("文字"), 2);
        QCOMPARE(KZ::CMessageTip::visibleTips().size(), 1);
        const KZ::CMessageTip* tip = KZ::CMessageTip::visibleTips().first();
        QCOMPARE(tip->texts(), QStringList(QStringLiteral("文字")));
        QCOMPARE(tip->kind(), 2);
        QCOMPARE(tip->anchor(), &window);
    }

    void aTipStandsBelowItsAnchorForThreeSeconds()
    {
        EventRecorder window;
        window.resize(600, 400);
        QWidget anchor(&window);
        anchor.setGeometry(100, 50, 300, 30);
        window.show();
        QElapsedTimer timer;
        timer.start();
        GW::showResultTip(&anchor, QStringLiteral("文字"), 3);
        const QPointer<KZ::CMessageTip> tip = KZ::CMessageTip::visibleTips().first();
        const QPoint corner = anchor.mapToGlobal(QPoint(0, anchor.height()));
        QCOMPARE(tip->geometry().left(), corner.x());
        QVERIFY(tip->geometry().top() >= corner.y());
        QTRY_VERIFY_WITH_TIMEOUT(!tip, 10000);
        QVERIFY2(timer.elapsed() >= 3000, qPrintable(QString::number(timer.elapsed())));
        QVERIFY2(timer.elapsed() < 8000, qPrintable(QString::number(timer.elapsed())));
    }
};

int main(int argc, char** argv)
{
    return runTest<ShellHelpersTest>(argc, argv);
}

#include "ShellHelpersTest.moc"
