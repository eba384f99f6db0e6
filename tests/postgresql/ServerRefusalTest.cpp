#include "authsetting/services/AuthClient.h"
#include "backend/client/ConnectionState.h"
#include "backend/store/PasswordHash.h"
#include "tests/backend/ClientSpy.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/postgresql/TcpProxy.h"
#include "tests/support/TestCase.h"

using backend::ConnectionState;

namespace {

const QString alice = QStringLiteral("alice");
const QString dora = QStringLiteral("dora");
const QString disabledText = QStringLiteral("当前用户已被禁用");

// What a loaded machine may need; nothing but this would end the waiting.
constexpr int patienceMs = 20'000;
// A login that was refused is tried again every half minute.
constexpr int retryMs = 30'000 + patienceMs;

} // namespace

class ServerRefusalTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void whoIsDisabledReadsThatAndIsTakenBackOnceEnabled()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        const auto manager = fixture.signIn(alice);
        const auto session = fixture.signIn(dora);
        QVERIFY(manager && session);
        const ConnectionState& state = *session->connectionState();
        QVERIFY(state.isOnline());
        QCOMPARE(state.refusal(), QString());
        manager->authClient()->setSubUser(dora, false);
        QTRY_COMPARE_WITH_TIMEOUT(state.refusal(), disabledText, patienceMs);
        QVERIFY(!state.isOnline());
        ClientSpy spy(session->authClient());
        session->authClient()->checkAuthuser(alice);
        QCOMPARE(spy.wait(1), QStringList(QStringLiteral("check alice ") + disabledText));
        manager->authClient()->setSubUser(dora, true);
        QTRY_VERIFY_WITH_TIMEOUT(state.isOnline(), retryMs);
        QCOMPARE(state.refusal(), QString());
    }

    void whoHasAnotherPasswordReadsThatWhenHeHasToComeBack()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        TcpProxy proxy(DesksFixture::serverPort());
        const auto manager = fixture.signIn(alice);
        const auto session = fixture.signIn(dora, proxy.port());
        QVERIFY(manager && session);
        const ConnectionState& state = *session->connectionState();
        ClientSpy spy(manager->authClient());
        manager->authClient()->updateSubUser(dora,
                                             backend::passwordDigest(QStringLiteral("another")));
        QVERIFY(spy.wait(1).first().endsWith(QStringLiteral(" ok")));
        QVERIFY(state.isOnline());
        proxy.cut();
        QTRY_COMPARE_WITH_TIMEOUT(state.refusal(), QStringLiteral("密码已被更改，请重新登录"),
                                  patienceMs);
        QVERIFY(!state.isOnline());
    }

    void aServerThatHasNoRoomSaysSoUntilItHas()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        TcpProxy proxy(DesksFixture::serverPort());
        const auto session = fixture.signIn(alice, proxy.port());
        QVERIFY(session);
        const ConnectionState& state = *session->connectionState();
        const QString limit =
            QStringLiteral("DO $$ BEGIN EXECUTE format('ALTER ROLE %I CONNECTION LIMIT %s', "
                           "authsetting.login_name('alice'), %1); END $$");
        fixture.query(limit.arg(0));
        proxy.cut();
        QTRY_COMPARE_WITH_TIMEOUT(state.refusal(), QStringLiteral("服务器的连接数已满，请稍后重试"),
                                  patienceMs);
        fixture.query(limit.arg(-1));
        QTRY_VERIFY_WITH_TIMEOUT(state.isOnline(), patienceMs);
        QCOMPARE(state.refusal(), QString());
    }
};

int main(int argc, char** argv)
{
    return runTest<ServerRefusalTest>(argc, argv);
}

#include "ServerRefusalTest.moc"
