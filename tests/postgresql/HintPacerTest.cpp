#include "backend/store/postgresql/HintPacer.h"

#include "tests/support/TestCase.h"

using backend::HintPacer;
using namespace std::chrono_literals;

namespace {

// A pacer whose clock stands still until the test moves it.
class PacedReads
{
public:
    PacedReads() : pacer([this] { return m_now; }) {}

    void pass(HintPacer::Milliseconds time) { m_now += time; }
    void read(bool foundChange)
    {
        pacer.beginRead();
        pacer.endRead(foundChange);
    }
    /// A hint, the time until its read, and that read.
    HintPacer::Milliseconds readInVain()
    {
        pacer.note();
        const HintPacer::Milliseconds waited = pacer.wait().value_or(-1ms);
        pass(waited);
        read(false);
        return waited;
    }

    HintPacer pacer;

private:
    HintPacer::Milliseconds m_now = 17min;
};

} // namespace

class HintPacerTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void nobodyWaitsForAReadWithoutAHint()
    {
        PacedReads reads;
        QVERIFY(!reads.pacer.wait());
        QVERIFY(!reads.pacer.isDue());
        reads.readInVain();
        reads.pass(1h);
        QVERIFY(!reads.pacer.wait());
    }

    void theFirstHintAfterQuietIsServedAtOnce()
    {
        PacedReads reads;
        reads.pacer.note();
        QVERIFY(reads.pacer.isDue());
        reads.read(true);
        reads.pass(HintPacer::busyInterval);
        reads.pacer.note();
        QVERIFY(reads.pacer.isDue());
        reads.read(false);
        reads.pass(HintPacer::firstInterval);
        reads.pacer.note();
        QVERIFY(reads.pacer.isDue());
    }

    void furtherHintsAreServedTogetherAtTheEndOfTheInterval()
    {
        PacedReads reads;
        reads.readInVain();
        reads.pass(50ms);
        reads.pacer.note();
        QCOMPARE(reads.pacer.wait(), HintPacer::firstInterval - 50ms);
        reads.pass(100ms);
        reads.pacer.note();
        QCOMPARE(reads.pacer.wait(), HintPacer::firstInterval - 150ms);
        QVERIFY(!reads.pacer.isDue());
        reads.pass(HintPacer::firstInterval - 150ms);
        QVERIFY(reads.pacer.isDue());
        reads.read(false);
        QVERIFY(!reads.pacer.wait());
    }

    void theIntervalGrowsWithReadsInVainUpToASecond()
    {
        PacedReads reads;
        QList<HintPacer::Milliseconds> waited;
        for (int i = 0; i < 6; ++i)
            waited.append(reads.readInVain());
        QCOMPARE(waited,
                 QList<HintPacer::Milliseconds>({0ms, 200ms, 400ms, 800ms, 1000ms, 1000ms}));
    }

    void aChangeThatIsFoundMakesTheIntervalShortAgain()
    {
        PacedReads reads;
        for (int i = 0; i < 6; ++i)
            reads.readInVain();
        reads.pacer.note();
        reads.pass(HintPacer::longestInterval);
        reads.read(true);
        reads.pacer.note();
        QCOMPARE(reads.pacer.wait(), HintPacer::busyInterval);
        reads.pass(HintPacer::busyInterval);
        reads.read(false);
        reads.pacer.note();
        QCOMPARE(reads.pacer.wait(), HintPacer::firstInterval);
    }

    void quietMakesTheIntervalShortAgain()
    {
        PacedReads reads;
        for (int i = 0; i < 6; ++i)
            reads.readInVain();
        reads.pass(HintPacer::quiet);
        QCOMPARE(reads.readInVain(), 0ms);
        QCOMPARE(reads.readInVain(), HintPacer::firstInterval);
    }

    void aHintThatComesDuringAReadIsServedByTheNext()
    {
        PacedReads reads;
        reads.pacer.note();
        reads.pacer.beginRead();
        reads.pass(30ms);
        reads.pacer.note();
        reads.pacer.endRead(true);
        QCOMPARE(reads.pacer.wait(), HintPacer::busyInterval);
        // Also by one that has another cause.
        reads.pacer.beginRead();
        QVERIFY(!reads.pacer.wait());
    }
};

int main(int argc, char** argv)
{
    return runTest<HintPacerTest>(argc, argv);
}

#include "HintPacerTest.moc"
