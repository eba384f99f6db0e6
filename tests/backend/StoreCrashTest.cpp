#include "tests/backend/HelperProcess.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QSet>

using namespace backend;

class StoreCrashTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aCrashLosesNoAcknowledgedGrantAndLeavesNoneHalfDone_data()
    {
        QTest::addColumn<int>("burst");
        QTest::addColumn<int>("acknowledged");
        // Killed while another burst is under way, at different points of it.
        QTest::newRow("single grants") << 1 << 20;
        QTest::newRow("small bursts") << 7 << 50;
        QTest::newRow("large bursts") << 250 << 250;
        QTest::newRow("large bursts, later") << 250 << 1000;
    }

    void aCrashLosesNoAcknowledgedGrantAndLeavesNoneHalfDone()
    {
        QFETCH(int, burst);
        QFETCH(int, acknowledged);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(fixture.addAccounts(1000, 5000));
        HelperProcess helper({QStringLiteral("grant"), fixture.place(), name::alice, name::bob,
                              QString::number(burst)});
        QVERIFY(helper.waitForLines(1 + acknowledged));
        helper.kill();
        QCOMPARE(helper.lines.takeFirst(), QStringLiteral("ready"));
        QVERIFY(!helper.lines.contains(QStringLiteral("no account left")));

        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin);
        QCOMPARE(admin->verify(), QString());
        QSet<QString> stored;
        const QVector<GrantRecord> grants = admin->grants();
        for (const GrantRecord& grant : grants)
            stored.insert(grant.reference);
        for (const QString& reference : std::as_const(helper.lines))
            QVERIFY2(stored.contains(reference), qPrintable(reference));
        // Whole bursts only, and each grant with its line in the audit trail.
        const qsizetype left = grants.size() % burst;
        QVERIFY2(left == 0, qPrintable(QString::number(grants.size())));
        QCOMPARE(fixture.auditCount(QStringLiteral("grant")), grants.size());

        // And the work goes on where it stopped.
        const auto session = fixture.signIn(name::alice);
        QVERIFY(session);
    }
};

int main(int argc, char** argv)
{
    return runTest<StoreCrashTest>(argc, argv);
}

#include "StoreCrashTest.moc"
