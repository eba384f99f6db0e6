#include "tests/support/TestCase.h"
#include "utils/Clock.h"
#include "utils/Digest.h"
#include "utils/ExchangeTimeZone.h"
#include "utils/LogCenter.h"

#include <QFile>
#include <QTemporaryDir>

class UtilsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void clockNeverRunsBackwards();
    void clockCanBeReplacedAndRestored();
    void checksumOfKnownText();
    void hexlifyWritesLowerCasePairs();
    void exchangeZoneIsShanghaiUnlessSet();
    void anInvalidZoneIsRefused();
    void debugLineNeedsLevelAndLogger();
    void anUnwritableLogFileIsReported();
};

void UtilsTest::clockNeverRunsBackwards()
{
    const double before = utils::clock();
    QVERIFY(utils::clock() >= before);
}

void UtilsTest::clockCanBeReplacedAndRestored()
{
    utils::setClockSource([] { return 12.5; });
    QCOMPARE(utils::clock(), 12.5);
    utils::setClockSource({});
    const double first = utils::clock();
    QTRY_VERIFY(utils::clock() > first);
}

void UtilsTest::checksumOfKnownText()
{
    // The one-block test vector of FIPS 180-2.
    QCOMPARE(utils::hexlify(utils::sha1_checksum("abc")),
             QByteArray("a9993e364706816aba3e25717850c26c9cd0d89d"));
    QCOMPARE(utils::sha1_checksum(QByteArray()).size(), 20);
}

void UtilsTest::hexlifyWritesLowerCasePairs()
{
    QCOMPARE(utils::hexlify(QByteArray("\x00\xab\x0f", 3)), QByteArray("00ab0f"));
    QVERIFY(utils::hexlify(QByteArray()).isEmpty());
}

void UtilsTest::exchangeZoneIsShanghaiUnlessSet()
{
    QCOMPARE(utils::exchangeTimeZone().id(), QByteArray("Asia/Shanghai"));
    QVERIFY(utils::setExchangeTimeZone(QTimeZone("Europe/London")));
    QCOMPARE(utils::exchangeTimeZone().id(), QByteArray("Europe/London"));
    QVERIFY(utils::setExchangeTimeZone(QTimeZone("Asia/Shanghai")));
}

void UtilsTest::anInvalidZoneIsRefused()
{
    QVERIFY(!utils::setExchangeTimeZone(QTimeZone("Nowhere/Never")));
    QCOMPARE(utils::exchangeTimeZone().id(), QByteArray("Asia/Shanghai"));
}

void UtilsTest::debugLineNeedsLevelAndLogger()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("client.log"));
    QVERIFY(utils::CLogCenter::configure(path));

    utils::CLogCenter::setFileLogLevel(14);
    utils::CLogCenter::setDebugEnabled("MBDbgFile", true);
    QVERIFY(!utils::CLogCenter::fileLogEnabled(15));
    mbDbgLogNew(15, QStringLiteral("below the level"));

    utils::CLogCenter::setFileLogLevel(15);
    QVERIFY(utils::CLogCenter::fileLogEnabled(15));
    utils::CLogCenter::setDebugEnabled("MBDbgFile", false);
    QVERIFY(!utils::CLogCenter::debugEnabled("MBDbgFile"));
    mbDbgLogNew(15, QStringLiteral("logger off"));

    utils::CLogCenter::setDebugEnabled("MBDbgFile", true);
    mbDbgLogNew(15, QStringLiteral("写入一行"));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(!text.contains(QStringLiteral("below the level")));
    QVERIFY(!text.contains(QStringLiteral("logger off")));
    QCOMPARE(text.count(QStringLiteral("写入一行")), 1);
}

void UtilsTest::anUnwritableLogFileIsReported()
{
    QVERIFY(!utils::CLogCenter::configure(QStringLiteral("/nonexistent/folder/client.log")));
    QVERIFY(!utils::CLogCenter::configure(QString()));
}

int main(int argc, char** argv)
{
    return runTest<UtilsTest>(argc, argv);
}

#include "UtilsTest.moc"
