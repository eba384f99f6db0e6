#include "utils/FirstMoment.h"

#include "tests/support/TestCase.h"
#include "tests/support/ZoneFile.h"

using utils::firstMomentOf;

namespace {

constexpr int HOUR = 3600;

QDateTime utc(const QDate& date, const QTime& time)
{
    return QDateTime(date, time, QTimeZone::utc());
}

/// Clocks five hours behind UTC that go forward at their midnight and back at their one o'clock, so
/// that midnight of 2026-03-08 is skipped and that of 2026-11-01 comes twice. Which of the two
/// offsets the data call daylight time makes Qt choose the one moment or the other.
ZoneFile midnightChanges(bool summerIsDaylight, bool winterIsDaylight)
{
    return ZoneFile({{-5 * HOUR, winterIsDaylight, "CST"}, {-4 * HOUR, summerIsDaylight, "CDT"}},
                    {{utc(QDate(2025, 3, 9), QTime(5, 0)), 1},
                     {utc(QDate(2025, 11, 2), QTime(5, 0)), 0},
                     {utc(QDate(2026, 3, 8), QTime(5, 0)), 1},
                     {utc(QDate(2026, 11, 1), QTime(5, 0)), 0},
                     {utc(QDate(2027, 3, 14), QTime(5, 0)), 1}});
}

/// The same changes, told by a rule instead of one by one.
ZoneFile midnightRule()
{
    return ZoneFile(
        {{-5 * HOUR, false, "CST"}, {-4 * HOUR, true, "CDT"}},
        {{utc(QDate(2020, 3, 8), QTime(5, 0)), 1}, {utc(QDate(2020, 11, 1), QTime(5, 0)), 0}},
        "CST5CDT,M3.2.0/0,M11.1.0/1");
}

} // namespace

class FirstMomentTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aTimeShownTwiceIsTheEarlier_data() { addZones(); }
    void aTimeShownTwiceIsTheEarlier();
    void aSkippedTimeIsTheEndOfTheGap_data() { addZones(); }
    void aSkippedTimeIsTheEndOfTheGap();
    void anyOtherTimeIsTheOneMoment_data() { addZones(); }
    void anyOtherTimeIsTheOneMoment();
    void theDataLeadQtToEitherAnswer();
    void aSkippedDayBeginsWithTheNext();
    void aDayShownTwiceBeginsTheFirstTime();
    void aZoneWithoutChangesHasOneMoment();
    void whatIsInvalidGivesNoMoment();

private:
    static void addZones();
};

void FirstMomentTest::addZones()
{
    QTest::addColumn<QTimeZone>("zone");
    QTest::newRow("summer is daylight time") << midnightChanges(true, false).zone();
    QTest::newRow("winter is daylight time") << midnightChanges(false, true).zone();
    QTest::newRow("neither is") << midnightChanges(false, false).zone();
    QTest::newRow("both are") << midnightChanges(true, true).zone();
    QTest::newRow("changes by rule") << midnightRule().zone();
}

void FirstMomentTest::aTimeShownTwiceIsTheEarlier()
{
    QFETCH(QTimeZone, zone);
    QVERIFY(zone.isValid());
    const QDate day(2026, 11, 1);
    const QDateTime midnight = firstMomentOf(day, QTime(0, 0), zone);
    QCOMPARE(midnight.toUTC(), utc(day, QTime(4, 0)));
    QCOMPARE(midnight.timeZone(), zone);
    QCOMPARE(midnight.date(), day);
    QCOMPARE(midnight.time(), QTime(0, 0));
    QCOMPARE(firstMomentOf(day, QTime(0, 30), zone).toUTC(), utc(day, QTime(4, 30)));
    QCOMPARE(firstMomentOf(day, QTime(0, 59, 59, 999), zone).toUTC(),
             utc(day, QTime(4, 59, 59, 999)));
}

void FirstMomentTest::aSkippedTimeIsTheEndOfTheGap()
{
    QFETCH(QTimeZone, zone);
    const QDate day(2026, 3, 8);
    for (const QTime& skipped : {QTime(0, 0), QTime(0, 30), QTime(0, 59, 59, 999)})
        QCOMPARE(firstMomentOf(day, skipped, zone).toUTC(), utc(day, QTime(5, 0)));
    QCOMPARE(firstMomentOf(day, QTime(0, 0), zone).time(), QTime(1, 0));
}

void FirstMomentTest::anyOtherTimeIsTheOneMoment()
{
    QFETCH(QTimeZone, zone);
    const QDate spring(2026, 3, 8);
    QCOMPARE(firstMomentOf(spring.addDays(-1), QTime(23, 59), zone).toUTC(),
             utc(spring, QTime(4, 59)));
    QCOMPARE(firstMomentOf(spring, QTime(1, 0), zone).toUTC(), utc(spring, QTime(5, 0)));
    const QDate autumn(2026, 11, 1);
    QCOMPARE(firstMomentOf(autumn.addDays(-1), QTime(23, 59), zone).toUTC(),
             utc(autumn, QTime(3, 59)));
    QCOMPARE(firstMomentOf(autumn, QTime(1, 0), zone).toUTC(), utc(autumn, QTime(6, 0)));
    QCOMPARE(firstMomentOf(autumn.addDays(1), QTime(0, 0), zone).toUTC(),
             utc(autumn.addDays(1), QTime(5, 0)));
}

void FirstMomentTest::theDataLeadQtToEitherAnswer()
{
    const QDate day(2026, 11, 1);
#if QT_VERSION < QT_VERSION_CHECK(6, 7, 0)
    // What the other tests have to stand up to; later versions of Qt may agree with themselves.
    QCOMPARE(day.startOfDay(midnightChanges(true, false).zone()).toUTC(), utc(day, QTime(5, 0)));
    QCOMPARE(day.startOfDay(midnightChanges(false, true).zone()).toUTC(), utc(day, QTime(4, 0)));
#endif
    QCOMPARE(firstMomentOf(day, QTime(0, 0), midnightChanges(true, false).zone()).toUTC(),
             firstMomentOf(day, QTime(0, 0), midnightChanges(false, true).zone()).toUTC());
}

void FirstMomentTest::aSkippedDayBeginsWithTheNext()
{
    // An island that moves to the other side of the date line has no 2011-12-30.
    const ZoneFile file({{-10 * HOUR, false, "EAS"}, {14 * HOUR, false, "WES"}},
                        {{utc(QDate(2011, 12, 30), QTime(10, 0)), 1}});
    const QDateTime start = firstMomentOf(QDate(2011, 12, 30), QTime(0, 0), file.zone());
    QCOMPARE(start.toUTC(), utc(QDate(2011, 12, 30), QTime(10, 0)));
    QCOMPARE(start.date(), QDate(2011, 12, 31));
}

void FirstMomentTest::aDayShownTwiceBeginsTheFirstTime()
{
    const ZoneFile file({{14 * HOUR, false, "WES"}, {-10 * HOUR, false, "EAS"}},
                        {{utc(QDate(2011, 12, 30), QTime(10, 0)), 1}});
    const QDate twice(2011, 12, 30);
    QCOMPARE(firstMomentOf(twice, QTime(0, 0), file.zone()).toUTC(),
             utc(QDate(2011, 12, 29), QTime(10, 0)));
    QCOMPARE(firstMomentOf(twice.addDays(1), QTime(0, 0), file.zone()).toUTC(),
             utc(QDate(2011, 12, 31), QTime(10, 0)));
}

void FirstMomentTest::aZoneWithoutChangesHasOneMoment()
{
    const QDate day(2026, 11, 1);
    QCOMPARE(firstMomentOf(day, QTime(8, 0), QTimeZone(8 * HOUR)).toUTC(), utc(day, QTime(0, 0)));
    QCOMPARE(firstMomentOf(day, QTime(8, 0), QTimeZone::utc()).toUTC(), utc(day, QTime(8, 0)));
}

void FirstMomentTest::whatIsInvalidGivesNoMoment()
{
    QVERIFY(!firstMomentOf(QDate(), QTime(0, 0), QTimeZone::utc()).isValid());
    QVERIFY(!firstMomentOf(QDate(2026, 2, 30), QTime(0, 0), QTimeZone::utc()).isValid());
    QVERIFY(!firstMomentOf(QDate(2026, 11, 1), QTime(), QTimeZone::utc()).isValid());
    QVERIFY(!firstMomentOf(QDate(2026, 11, 1), QTime(0, 0), QTimeZone()).isValid());
}

int main(int argc, char** argv)
{
    return runTest<FirstMomentTest>(argc, argv);
}

#include "FirstMomentTest.moc"
