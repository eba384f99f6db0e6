#include "kit/widgets/NumberFormat.h"

#include "tests/support/TestCase.h"

#include <limits>

using namespace KZ;

class NumberFormatTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void writesFixedDecimals_data();
    void writesFixedDecimals();
    void groupsThousands();
    void flagsChangeSignAndZeros();
    void whatIsNoNumberGivesTheInvalidText_data();
    void whatIsNoNumberGivesTheInvalidText();
    void decimalsAreLimited();
};

namespace {

const QString invalid = QStringLiteral("非法值");

QString plain(double value, int decimals)
{
    return formatDoubleNumber(value, decimals, 0, false, invalid);
}

} // namespace

void NumberFormatTest::writesFixedDecimals_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 100.0 << 2 << QStringLiteral("100.00");
    QTest::newRow("half") << 50.5 << 2 << QStringLiteral("50.50");
    QTest::newRow("rounded up") << 99.999 << 2 << QStringLiteral("100.00");
    QTest::newRow("no decimals") << 1234567.5 << 0 << QStringLiteral("1234568");
    QTest::newRow("negative") << -1.25 << 1 << QStringLiteral("-1.3");
    QTest::newRow("negative zero") << -0.001 << 2 << QStringLiteral("0.00");
    QTest::newRow("smallest") << 0.01 << 2 << QStringLiteral("0.01");
    QTest::newRow("large, not grouped") << 1e15 << 1 << QStringLiteral("1000000000000000.0");
}

void NumberFormatTest::writesFixedDecimals()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QTEST(plain(value, decimals), "text");
}

void NumberFormatTest::groupsThousands()
{
    QCOMPARE(formatDoubleNumber(1234567.891, 2, 0, true, invalid), QStringLiteral("1,234,567.89"));
    QCOMPARE(formatDoubleNumber(-1234.0, 0, 0, true, invalid), QStringLiteral("-1,234"));
    QCOMPARE(formatDoubleNumber(999.0, 0, 0, true, invalid), QStringLiteral("999"));
}

void NumberFormatTest::flagsChangeSignAndZeros()
{
    QCOMPARE(formatDoubleNumber(1.5, 2, NUMBER_FORMAT_PLUS_SIGN, false, invalid),
             QStringLiteral("+1.50"));
    QCOMPARE(formatDoubleNumber(0.001, 2, NUMBER_FORMAT_PLUS_SIGN, false, invalid),
             QStringLiteral("0.00"));
    QCOMPARE(formatDoubleNumber(1.5, 3, NUMBER_FORMAT_TRIM_ZEROS, false, invalid),
             QStringLiteral("1.5"));
    QCOMPARE(formatDoubleNumber(100.0, 2, NUMBER_FORMAT_TRIM_ZEROS, false, invalid),
             QStringLiteral("100"));
    QCOMPARE(formatDoubleNumber(100.0, 0, NUMBER_FORMAT_TRIM_ZEROS, false, invalid),
             QStringLiteral("100"));
}

void NumberFormatTest::whatIsNoNumberGivesTheInvalidText_data()
{
    QTest::addColumn<double>("value");
    QTest::newRow("NaN") << std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
    QTest::newRow("negative infinity") << -std::numeric_limits<double>::infinity();
    QTest::newRow("largest") << std::numeric_limits<double>::max();
    QTest::newRow("lowest") << std::numeric_limits<double>::lowest();
}

void NumberFormatTest::whatIsNoNumberGivesTheInvalidText()
{
    QFETCH(double, value);
    QCOMPARE(plain(value, 2), invalid);
}

void NumberFormatTest::decimalsAreLimited()
{
    QCOMPARE(plain(1.5, -3), QStringLiteral("2"));
    QCOMPARE(plain(0.5, 1000).size(), 19);
}

int main(int argc, char** argv)
{
    return runTest<NumberFormatTest>(argc, argv);
}

#include "NumberFormatTest.moc"
