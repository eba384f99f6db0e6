#include "authsetting/authorize/ExpiryHints.h"

#include "tests/authsetting/TabPageTools.h"

class ExpiryHintsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheDaysThatAreLeft_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("text");
        QTest::newRow("long over") << -400 << QString();
        QTest::newRow("over") << -1 << QString();
        QTest::newRow("last day") << 0 << QStringLiteral("今天到期");
        QTest::newRow("tomorrow") << 1 << QStringLiteral("还有 1 天到期");
        QTest::newRow("three days") << 3 << QStringLiteral("还有 3 天到期");
        QTest::newRow("four days") << 4 << QString();
        QTest::newRow("years") << 4000 << QString();
    }

    void tellsTheDaysThatAreLeft()
    {
        QFETCH(int, days);
        const FakeServices services;
        const GW::CExpiryHints hints;
        QTEST(hints.text(secondsOf(testToday().addDays(days))), "text");
        // Any second of the last day says the same.
        QTEST(hints.text(secondsOf(testToday().addDays(days)) + 86399), "text");
    }

    void aMarkGoesWithTheGrant()
    {
        const FakeServices services;
        EventRecorder window;
        auto* table = new KZ::COddEvenRowTable(77, &window);
        table->setColumnCount(2);
        table->appendRow();
        const GW::CExpiryHints hints;
        hints.mark(table, 0, 1, secondsOf(testToday()));
        QCOMPARE(expiryMark(table, 0, 1), QStringLiteral("今天到期"));
        hints.mark(table, 0, 1, secondsOf(testToday().addDays(9)));
        QCOMPARE(expiryMark(table, 0, 1), QString());
        hints.mark(table, 0, 1, secondsOf(testToday()));
        GW::CExpiryHints::unmark(table, 0, 1);
        QCOMPARE(expiryMark(table, 0, 1), QString());
    }
};

int main(int argc, char** argv)
{
    return runTest<ExpiryHintsTest>(argc, argv);
}

#include "ExpiryHintsTest.moc"
