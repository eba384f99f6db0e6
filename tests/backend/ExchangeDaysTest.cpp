#include "backend/store/ExchangeDays.h"

#include "tests/support/TestCase.h"
#include "tests/support/ZoneFile.h"
#include "utils/ExchangeTimeZone.h"

#include <limits>

using backend::ExchangeDays;

class ExchangeDaysTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void aDayBeginsAtTheEarlierOfTwoMidnights_data();
    void aDayBeginsAtTheEarlierOfTwoMidnights();
    void daysBeyondTheSecondsAreLimited();
};

void ExchangeDaysTest::cleanup()
{
    QVERIFY(utils::setExchangeTimeZone(QTimeZone("Asia/Shanghai")));
    TestCase::cleanup();
}

void ExchangeDaysTest::aDayBeginsAtTheEarlierOfTwoMidnights_data()
{
    QTest::addColumn<bool>("summerIsDaylight");
    // Of the two moments Qt takes the one that is not daylight time by the data.
    QTest::newRow("Qt takes the later") << true;
    QTest::newRow("Qt takes the earlier") << false;
}

void ExchangeDaysTest::aDayBeginsAtTheEarlierOfTwoMidnights()
{
    QFETCH(bool, summerIsDaylight);
    const QDate autumn(2026, 11, 1);
    const QDateTime change(autumn, QTime(5, 0), QTimeZone::utc());
    const ZoneFile file({{-18000, !summerIsDaylight, "CST"}, {-14400, summerIsDaylight, "CDT"}},
                        {{change.addMonths(-8), 1}, {change, 0}, {change.addMonths(4), 1}});
    QVERIFY(utils::setExchangeTimeZone(file.zone()));
    ExchangeDays days;
    const qint32 start = days.seconds(autumn);
    QCOMPARE(qint64(start), change.addSecs(-3600).toSecsSinceEpoch());
    QCOMPARE(days.day(start), autumn);
    QCOMPARE(days.day(start - 1), autumn.addDays(-1));
    QCOMPARE(days.seconds(autumn.addDays(1)) - start, 25 * 3600);
}

void ExchangeDaysTest::daysBeyondTheSecondsAreLimited()
{
    ExchangeDays days;
    QCOMPARE(days.seconds(QDate(2100, 1, 1)), std::numeric_limits<qint32>::max());
    QCOMPARE(days.seconds(QDate(1800, 1, 1)), std::numeric_limits<qint32>::min());
}

int main(int argc, char** argv)
{
    return runTest<ExchangeDaysTest>(argc, argv);
}

#include "ExchangeDaysTest.moc"
