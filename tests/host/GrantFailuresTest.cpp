#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "host/client/ClientWindow.h"
#include "host/client/MessageArea.h"
#include "host/demo/DemoAccount.h"
#include "host/demo/DemoData.h"
#include "kit/dates/DateConversions.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/host/DemoFixture.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QSignalSpy>

#include <boost/make_shared.hpp>

using host::ClientWindow;
using host::DemoData;

class GrantFailuresTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusedGrantIsToldWithItsReason();
    void aGrantThatSucceedsIsNotTold();
    void aFileThatIsNotWrittenIsToldOncePerTry();
    void aMissingReasonIsCalledUnknown();

private:
    static QStringList messages(const ClientWindow& window);
    static mbservice::CAccountInfo account() { return host::DemoAccount::find("80010001")->info(); }
    static GW::CAuthLimit days(const DemoFixture& demo);
    /// Sends a grant and returns the reference of the answer.
    static QString grant(const QString& grantee, GW::CAuthLimit limit, bool toServer);
};

/// Level and text, newest first.
QStringList GrantFailuresTest::messages(const ClientWindow& window)
{
    QStringList lines;
    // What comes in one turn of the event loop is drawn at its end.
    QCoreApplication::processEvents();
    const KZ::COddEvenRowTable* table = window.messageArea()->table();
    for (int row = 0; row < table->rowCount(); ++row)
        lines.append(table->itemText(row, 2) + QLatin1Char(' ') + table->itemText(row, 3));
    return lines;
}

GW::CAuthLimit GrantFailuresTest::days(const DemoFixture& demo)
{
    GW::CAuthLimit limit;
    limit.startTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(demo.now().date()));
    limit.endTime = KZ::qDateTimeToSecond(KZ::exchangeDayStart(demo.now().date().addDays(7)));
    return limit;
}

QString GrantFailuresTest::grant(const QString& grantee, GW::CAuthLimit limit, bool toServer)
{
    QSignalSpy answers(GW::getAuthClient(), &GW::CAuthClient::sigAddAuthResult);
    GW::getAuthClient()->addAuth(grantee, account(), limit, {}, toServer);
    [&] { QTRY_COMPARE(answers.size(), 1); }();
    return answers.first().at(3).toString();
}

void GrantFailuresTest::aRefusedGrantIsToldWithItsReason()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    const QString shown = GW::accountDisplayIDQs(account());
    for (const bool toServer : {true, false}) {
        grant(QStringLiteral("没有此人"), days(demo), toServer);
        const QStringList all = messages(*window);
        QCOMPARE(all.size(), toServer ? 1 : 2);
        QCOMPARE(all.first(), QStringLiteral("错误 账户") + shown +
                                  QStringLiteral("授权给没有此人失败。原因：用户不存在"));
    }
}

void GrantFailuresTest::aGrantThatSucceedsIsNotTold()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    QVERIFY(!grant(DemoData::colleague(), days(demo), true).isEmpty());
    QCOMPARE(messages(*window), QStringList());
}

void GrantFailuresTest::aFileThatIsNotWrittenIsToldOncePerTry()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    auto detail = boost::make_shared<GW::CAuthDetail>();
    detail->grantee = DemoData::colleague();
    detail->account = account();
    detail->limit = days(demo);
    detail->grantRef = grant(detail->grantee, detail->limit, false);
    const QString path = QDir(demo.folder()).filePath(QStringLiteral("grant.taa"));
    const auto write = [&](const QString& password) {
        return GW::getAuthClient()->exportAuth(path, password, {detail, nullptr});
    };
    // A page may try twice in a row.
    QVERIFY(write(QString()) != 0);
    QVERIFY(write(QString()) != 0);
    const QString told =
        QStringLiteral("错误 账户") + GW::accountDisplayIDQs(account()) +
        QStringLiteral("授权给%1的授权文件未能写出。原因：授权尚未准备好").arg(detail->grantee);
    QCOMPARE(messages(*window), QStringList(told));
    QVERIFY(write(QString()) != 0);
    QCOMPARE(messages(*window), QStringList({told, told}));

    QCOMPARE(GW::getAuthClient()->exportAuth(path, QStringLiteral("密码"), {detail}), 0);
    QCOMPARE(messages(*window).size(), 2);
}

void GrantFailuresTest::aMissingReasonIsCalledUnknown()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    Q_EMIT GW::getAuthClient()->sigAddAuthResult(DemoData::colleague(), account(), days(demo), {},
                                                 {}, false, {}, true);
    QVERIFY(messages(*window).first().endsWith(QStringLiteral("失败。原因：未知")));
}

int main(int argc, char** argv)
{
    return runTest<GrantFailuresTest>(argc, argv);
}

#include "GrantFailuresTest.moc"
