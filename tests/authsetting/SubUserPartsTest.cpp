#include "authsetting/authorize/SecretText.h"
#include "authsetting/subusers/BurstGate.h"
#include "authsetting/subusers/PendingGrants.h"
#include "tests/support/TestCase.h"

namespace {

constexpr int atOnce = 3;

} // namespace

/// What the tab of one restricted user is built from.
class SubUserPartsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstRequestsOfABurstRunAtOnceAndTheRestTogether()
    {
        int runs = 0;
        GW::CBurstGate gate([&runs] { ++runs; });
        for (int request = 0; request < atOnce; ++request)
            QVERIFY(gate.request(atOnce));
        QCOMPARE(runs, atOnce);
        for (int request = 0; request < 1000; ++request)
            QVERIFY(!gate.request(atOnce));
        QCOMPARE(runs, atOnce);
        QTRY_COMPARE(runs, atOnce + 1);
        QTest::qWait(2 * GW::CBurstGate::quietMs);
        QCOMPARE(runs, atOnce + 1);
        QVERIFY2(gate.request(atOnce), "the burst is over");
    }

    void aResetForgetsTheMergedRequests()
    {
        int runs = 0;
        GW::CBurstGate gate([&runs] { ++runs; });
        for (int request = 0; request <= atOnce; ++request)
            gate.request(atOnce);
        gate.reset();
        QTest::qWait(2 * GW::CBurstGate::quietMs);
        QCOMPARE(runs, atOnce);
        QVERIFY(gate.request(atOnce));
    }

    void onlyAddedGrantsAreCounted()
    {
        GW::CPendingGrants pending;
        pending.set(QStringLiteral("b"), {});
        pending.set(QStringLiteral("a"), {});
        pending.set(QStringLiteral("b"), {});
        QCOMPARE(pending.count(), 2);
        QCOMPARE(pending.grants().keys(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
        pending.remove(QStringLiteral("x"));
        QCOMPARE(pending.count(), 2);
        pending.remove(QStringLiteral("a"));
        QCOMPARE(pending.count(), 1);
        QVERIFY(!pending.isAnswered());
    }

    void everyDeliveryOfAnAnswerIsCountedAndTheGrantStays()
    {
        GW::CPendingGrants pending;
        pending.set(QStringLiteral("a"), {});
        pending.answer(QStringLiteral("x"), QStringLiteral("ignored"));
        QCOMPARE(pending.count(), 1);
        for (int deliveries = 0; deliveries < 3; ++deliveries)
            pending.answer(QStringLiteral("a"), QStringLiteral("ref"));
        QCOMPARE(pending.count(), -2);
        QVERIFY(pending.isAnswered());
        QCOMPARE(pending.count(), 0);
        QCOMPARE(pending.grants().value(QStringLiteral("a")).result, QStringLiteral("ref"));
        pending.set(QStringLiteral("b"), {});
        pending.clear();
        QVERIFY(pending.isEmpty());
        QCOMPARE(pending.count(), 0);
    }

    void aSecretIsOverwrittenWhereNobodySharesIt()
    {
        QString secret = QStringLiteral("secret") + QString::number(QTime::currentTime().msec());
        QByteArray bytes = secret.toUtf8();
        const QString shared = secret;
        GW::wipeSecret(secret);
        QVERIFY(secret.isEmpty());
        QVERIFY2(shared.startsWith(QStringLiteral("secret")), "others keep theirs");
        GW::wipeSecret(bytes);
        QVERIFY(bytes.isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<SubUserPartsTest>(argc, argv);
}

#include "SubUserPartsTest.moc"
