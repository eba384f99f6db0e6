#include "backend/config/TimeService.h"

#include "backend/config/ExchangeZoneSetting.h"
#include "tests/backend/LogLines.h"
#include "tests/support/TestCase.h"
#include "utils/ExchangeTimeZone.h"

#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

using backend::readExchangeTimeZone;
using backend::SystemTimeService;

namespace {

qint64 utc(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toMSecsSinceEpoch();
}

QTimeZone shanghai()
{
    return QTimeZone("Asia/Shanghai");
}

} // namespace

class TimeServiceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tellsTheDayOfTheExchange();
    void ignoresTheZoneOfTheMachine();
    void addsTheOffsetOfTheServer();
    void followsTheMachineByDefault();
    void readsTheZoneSetting_data();
    void readsTheZoneSetting();
    void fallsBackWithoutAFile();
};

void TimeServiceTest::tellsTheDayOfTheExchange()
{
    qint64 now = utc("2024-02-28T15:59:59Z");
    const SystemTimeService service([&now] { return now; });
    QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 28));
    QCOMPARE(service.currentDateTime().time(), QTime(23, 59, 59));
    now += 1000;
    QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 29));
    QCOMPARE(service.currentDateTime().timeZone(), shanghai());

    const auto restore = qScopeGuard([] { utils::setExchangeTimeZone(shanghai()); });
    QVERIFY(utils::setExchangeTimeZone(QTimeZone("America/Chicago")));
    QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 28));
    QCOMPARE(service.currentDateTime().time(), QTime(10, 0));
}

void TimeServiceTest::ignoresTheZoneOfTheMachine()
{
    const QByteArray before = qgetenv("TZ");
    const auto restore = qScopeGuard([before] { qputenv("TZ", before); });
    const SystemTimeService service([] { return utc("2024-02-28T16:30:00Z"); });
    for (const char* zone : {"UTC", "Pacific/Kiritimati", "Pacific/Pago_Pago"}) {
        qputenv("TZ", zone);
        QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 29));
        QCOMPARE(service.currentDateTime().time(), QTime(0, 30));
    }
}

void TimeServiceTest::addsTheOffsetOfTheServer()
{
    SystemTimeService service([] { return utc("2024-02-28T15:59:00Z"); });
    QCOMPARE(service.offset(), 0);
    service.setOffset(60'000);
    QCOMPARE(service.offset(), 60'000);
    QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 29));
    service.setOffset(-24 * 3600 * 1000);
    QCOMPARE(service.currentDateTime().date(), QDate(2024, 2, 27));
}

void TimeServiceTest::followsTheMachineByDefault()
{
    const SystemTimeService service;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const qint64 told = service.currentDateTime().toMSecsSinceEpoch();
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    QVERIFY(before <= told && told <= after);
}

void TimeServiceTest::readsTheZoneSetting_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<int>("warnings");
    QTest::newRow("set") << QByteArray("[exchange]\ntimeZone=Europe/London\n")
                         << QByteArray("Europe/London") << 0;
    QTest::newRow("quoted") << QByteArray("[exchange]\ntimeZone=\"Asia/Tokyo\"\n")
                            << QByteArray("Asia/Tokyo") << 0;
    QTest::newRow("empty file") << QByteArray() << QByteArray("Asia/Shanghai") << 0;
    QTest::newRow("other settings")
        << QByteArray("[other]\ntimeZone=Asia/Tokyo\n") << QByteArray("Asia/Shanghai") << 0;
    QTest::newRow("unknown zone") << QByteArray("[exchange]\ntimeZone=Asia/Nowhere\n")
                                  << QByteArray("Asia/Shanghai") << 1;
    QTest::newRow("empty zone") << QByteArray("[exchange]\ntimeZone=\n")
                                << QByteArray("Asia/Shanghai") << 1;
    QTest::newRow("several zones") << QByteArray("[exchange]\ntimeZone=Asia/Tokyo, Asia/Seoul\n")
                                   << QByteArray("Asia/Shanghai") << 1;
    QTest::newRow("path") << QByteArray("[exchange]\ntimeZone=../../../etc/passwd\n")
                          << QByteArray("Asia/Shanghai") << 1;
    QTest::newRow("no settings file")
        << QByteArray("[exchange\nnothing here\n") << QByteArray("Asia/Shanghai") << 1;
}

void TimeServiceTest::readsTheZoneSetting()
{
    QFETCH(QByteArray, settings);
    QFETCH(QByteArray, zone);
    QFETCH(int, warnings);
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("settings.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(settings), settings.size());
    file.close();
    LogLines log;
    QCOMPARE(readExchangeTimeZone(file.fileName()).id(), zone);
    QCOMPARE(log.lines().size(), warnings);
}

void TimeServiceTest::fallsBackWithoutAFile()
{
    const QTemporaryDir folder;
    LogLines log;
    QCOMPARE(readExchangeTimeZone(folder.filePath(QStringLiteral("missing.ini"))), shanghai());
    QVERIFY(log.lines().isEmpty());
}

int main(int argc, char** argv)
{
    return runTest<TimeServiceTest>(argc, argv);
}

#include "TimeServiceTest.moc"
