#include "kit/dates/DateConversions.h"
#include "tests/support/TestCase.h"
#include "tests/support/ZoneFile.h"
#include "utils/ExchangeTimeZone.h"

#include <limits>

using namespace KZ;

/// Runs under several machine time zones, which must make no difference.
class KitDatesTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aDisplayedTimeIsReadInTheExchangeZone_data();
    void aDisplayedTimeIsReadInTheExchangeZone();
    void localTimeIsReadAsDisplayed();
    void aSecondIsShownInTheExchangeZone();
    void everySecondSurvivesTheRoundTrip_data();
    void everySecondSurvivesTheRoundTrip();
    void timesThatClocksSkipBeginAfterTheGap();
    void timesThatClocksShowTwiceAreTheEarlier();
    void aMidnightThatComesTwiceIsTheEarlier_data();
    void aMidnightThatComesTwiceIsTheEarlier();
    void limitsAreClampedAndInvalidIsZero();
    void theLastGrantableDateFitsInEveryZone();
    void todayIsTheExchangesDay();
};

namespace {

void useZone(const char* id)
{
    QVERIFY2(utils::setExchangeTimeZone(QTimeZone(id)), id);
}

int secondOf(const QDate& date, const QTime& time)
{
    return qDateTimeToSecond(QDateTime(date, time, QTimeZone::utc()));
}

qint64 utcSecond(const QDate& date, const QTime& time)
{
    return QDateTime(date, time, QTimeZone::utc()).toSecsSinceEpoch();
}

} // namespace

void KitDatesTest::init()
{
    TestCase::init();
    useZone("Asia/Shanghai");
}

void KitDatesTest::cleanup()
{
    useZone("Asia/Shanghai");
    TestCase::cleanup();
}

void KitDatesTest::aDisplayedTimeIsReadInTheExchangeZone_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<qint64>("utc");
    // Shanghai is eight hours ahead all year, New York five behind in November.
    const QDate day(2026, 11, 20);
    QTest::newRow("midnight") << QByteArray("Asia/Shanghai") << QTime(0, 0)
                              << utcSecond(day.addDays(-1), QTime(16, 0));
    QTest::newRow("half past midnight")
        << QByteArray("Asia/Shanghai") << QTime(0, 30) << utcSecond(day.addDays(-1), QTime(16, 30));
    QTest::newRow("last second") << QByteArray("Asia/Shanghai") << QTime(23, 59, 59)
                                 << utcSecond(day, QTime(15, 59, 59));
    QTest::newRow("New York midnight")
        << QByteArray("America/New_York") << QTime(0, 0) << utcSecond(day, QTime(5, 0));
    QTest::newRow("New York half past midnight")
        << QByteArray("America/New_York") << QTime(0, 30) << utcSecond(day, QTime(5, 30));
}

void KitDatesTest::aDisplayedTimeIsReadInTheExchangeZone()
{
    QFETCH(QByteArray, zone);
    QFETCH(QTime, time);
    QFETCH(qint64, utc);
    useZone(zone.constData());
    QCOMPARE(qint64(secondOf(QDate(2026, 11, 20), time)), utc);
}

void KitDatesTest::localTimeIsReadAsDisplayed()
{
    const QDate day(2026, 11, 20);
    const QDateTime local(day, QTime(0, 30));
    QCOMPARE(qDateTimeToSecond(local), secondOf(day, QTime(0, 30)));
    const QDateTime offset(day, QTime(0, 30), QTimeZone(-11 * 3600));
    QCOMPARE(qDateTimeToSecond(offset), secondOf(day, QTime(0, 30)));
}

void KitDatesTest::aSecondIsShownInTheExchangeZone()
{
    const int second = int(utcSecond(QDate(2026, 11, 19), QTime(16, 30)));
    QCOMPARE(secondToQDateTime(second).toString(QStringLiteral("yyyy-MM-dd hh:mm")),
             QStringLiteral("2026-11-20 00:30"));
    useZone("America/New_York");
    QCOMPARE(secondToQDateTime(second).toString(QStringLiteral("yyyy-MM-dd hh:mm")),
             QStringLiteral("2026-11-19 11:30"));
}

void KitDatesTest::everySecondSurvivesTheRoundTrip_data()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char* zone : {"Asia/Shanghai", "America/New_York", "Pacific/Auckland",
                             "America/Sao_Paulo", "America/Havana", "UTC"})
        QTest::newRow(zone) << QByteArray(zone);
}

void KitDatesTest::everySecondSurvivesTheRoundTrip()
{
    QFETCH(QByteArray, zone);
    useZone(zone.constData());
    // A step that is no divisor of a day meets every hour, the repeated ones too.
    constexpr int step = 1777;
    const int first = int(utcSecond(QDate(2018, 1, 1), QTime(0, 0)));
    for (int second = first; second < first + 366 * 86400; second += step)
        QCOMPARE(qDateTimeToSecond(secondToQDateTime(second)), second);
}

void KitDatesTest::timesThatClocksSkipBeginAfterTheGap()
{
    // Clocks in Sao Paulo went from 2018-11-03 23:59:59 to 2018-11-04 01:00, at 03:00 UTC.
    useZone("America/Sao_Paulo");
    const QDate day(2018, 11, 4);
    const qint64 start = utcSecond(day, QTime(3, 0));
    QCOMPARE(qint64(secondOf(day, QTime(0, 0))), start);
    QCOMPARE(qint64(secondOf(day, QTime(0, 30))), start);
    QCOMPARE(exchangeDayStart(day).toSecsSinceEpoch(), start);
    QCOMPARE(secondToQDateTime(int(start)).date(), day);
    QCOMPARE(qint64(secondOf(day, QTime(1, 30))), start + 1800);
    // Clocks in New York go from 01:59:59 to 03:00 on 2026-03-08, at 07:00 UTC.
    useZone("America/New_York");
    const QDate spring(2026, 3, 8);
    QCOMPARE(qint64(secondOf(spring, QTime(2, 30))), utcSecond(spring, QTime(7, 0)));
    QCOMPARE(qint64(secondOf(spring, QTime(0, 0))), utcSecond(spring, QTime(5, 0)));
}

void KitDatesTest::timesThatClocksShowTwiceAreTheEarlier()
{
    // Clocks in New York go back from 02:00 to 01:00 on 2026-11-01, at 06:00 UTC.
    useZone("America/New_York");
    const QDate autumn(2026, 11, 1);
    QCOMPARE(qint64(secondOf(autumn, QTime(1, 30))), utcSecond(autumn, QTime(5, 30)));
    QCOMPARE(qint64(secondOf(autumn, QTime(0, 30))), utcSecond(autumn, QTime(4, 30)));
    QCOMPARE(qint64(secondOf(autumn, QTime(2, 30))), utcSecond(autumn, QTime(7, 30)));
}

void KitDatesTest::aMidnightThatComesTwiceIsTheEarlier_data()
{
    QTest::addColumn<QTimeZone>("zone");
    // Of the two moments Qt takes the one that is not daylight time by the data.
    for (const bool summerIsDaylight : {true, false}) {
        const ZoneFile file({{-18000, !summerIsDaylight, "CST"}, {-14400, summerIsDaylight, "CDT"}},
                            {{QDateTime(QDate(2026, 3, 8), QTime(5, 0), QTimeZone::utc()), 1},
                             {QDateTime(QDate(2026, 11, 1), QTime(5, 0), QTimeZone::utc()), 0},
                             {QDateTime(QDate(2027, 3, 14), QTime(5, 0), QTimeZone::utc()), 1}});
        QTest::newRow(summerIsDaylight ? "Qt takes the later" : "Qt takes the earlier")
            << file.zone();
    }
    QTest::newRow("data of the machine") << QTimeZone("America/Havana");
}

void KitDatesTest::aMidnightThatComesTwiceIsTheEarlier()
{
    QFETCH(QTimeZone, zone);
    QVERIFY(utils::setExchangeTimeZone(zone));
    // Clocks go back from 01:00 to 00:00 at 05:00 UTC.
    const QDate autumn(2026, 11, 1);
    QCOMPARE(qint64(secondOf(autumn, QTime(0, 0))), utcSecond(autumn, QTime(4, 0)));
    QCOMPARE(qint64(secondOf(autumn, QTime(0, 30))), utcSecond(autumn, QTime(4, 30)));
    QCOMPARE(exchangeDayStart(autumn).toSecsSinceEpoch(), utcSecond(autumn, QTime(4, 0)));
    QCOMPARE(exchangeDayStart(autumn).date(), autumn);
}

void KitDatesTest::limitsAreClampedAndInvalidIsZero()
{
    QCOMPARE(qDateTimeToSecond(QDateTime()), 0);
    QCOMPARE(secondOf(QDate(2100, 1, 1), QTime(0, 0)), std::numeric_limits<int>::max());
    QCOMPARE(secondOf(QDate(1800, 1, 1), QTime(0, 0)), std::numeric_limits<int>::min());
    for (const int limit :
         {std::numeric_limits<int>::min(), -1, 0, 1, std::numeric_limits<int>::max()})
        QCOMPARE(qDateTimeToSecond(secondToQDateTime(limit)), limit);
    QCOMPARE(secondToQDateTime(std::numeric_limits<int>::max()).toUTC(),
             QDateTime(QDate(2038, 1, 19), QTime(3, 14, 7), QTimeZone::utc()));
}

void KitDatesTest::theLastGrantableDateFitsInEveryZone()
{
    QCOMPARE(LAST_GRANTABLE_DATE, QDate(2038, 1, 18));
    const QList<QByteArray> zones = QTimeZone::availableTimeZoneIds();
    QVERIFY(zones.size() > 300);
    for (const QByteArray& zone : zones) {
        useZone(zone.constData());
        QVERIFY2(exchangeDayStart(LAST_GRANTABLE_DATE).toSecsSinceEpoch() <
                     std::numeric_limits<int>::max(),
                 zone.constData());
    }
}

void KitDatesTest::todayIsTheExchangesDay()
{
    // The two zones are 25 hours apart, so they never have the same day.
    useZone("Pacific/Kiritimati");
    const QDate east = exchangeToday();
    useZone("Pacific/Pago_Pago");
    QVERIFY(exchangeToday() < east);
}

int main(int argc, char** argv)
{
    return runTest<KitDatesTest>(argc, argv);
}

#include "KitDatesTest.moc"
