#include "backend/store/SignInGuard.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QFile>

using namespace backend;

namespace {

QString attempt(const StoreFixture& fixture, const QString& user, const QString& password)
{
    const SignInResult result = Session::signIn(fixture.options(), user, password);
    return result.session ? QStringLiteral("signed in") : result.error;
}

const QString wrong = QStringLiteral("用户名或密码错误");

} // namespace

// What an embedded store has to do about wrong passwords itself; a server has its own log and its
// own brakes, and lets nobody in who could write there.
class EmbeddedSignInTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void repeatedFailuresHaveToWaitLongerAndLonger_data()
    {
        QTest::addColumn<QString>("user");
        QTest::newRow("a user") << name::alice;
        // Or the wait would tell which names exist.
        QTest::newRow("nobody") << QStringLiteral("zoe");
    }

    void repeatedFailuresHaveToWaitLongerAndLonger()
    {
        QFETCH(QString, user);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        for (int i = 0; i < SignInGuard::freeFailures; ++i)
            QCOMPARE(attempt(fixture, user, QStringLiteral("x")), wrong);
        const auto waitText = [](int seconds) {
            return QStringLiteral("登录失败次数过多，请在%1秒后重试").arg(seconds);
        };
        QCOMPARE(attempt(fixture, user, QStringLiteral("x")), waitText(5));
        // Not even the right password is looked at before.
        QCOMPARE(attempt(fixture, user, QStringLiteral("pw-") + user), waitText(5));
        const QDateTime start = fixture.options().now();
        fixture.setNow(start.addSecs(4));
        QCOMPARE(attempt(fixture, user, QStringLiteral("x")), waitText(1));
        fixture.setNow(start.addSecs(5));
        QCOMPARE(attempt(fixture, user, QStringLiteral("x")), wrong);
        QCOMPARE(attempt(fixture, user, QStringLiteral("x")), waitText(10));
        // Other names go on.
        QCOMPARE(attempt(fixture, name::bob, QStringLiteral("pw-bob")),
                 QStringLiteral("signed in"));
        // Never longer than five minutes.
        QDateTime now = start;
        for (int i = 0; i < 10; ++i) {
            now = now.addSecs(SignInGuard::longestWaitSeconds);
            fixture.setNow(now);
            QCOMPARE(attempt(fixture, user, QStringLiteral("x")), wrong);
        }
        QCOMPARE(attempt(fixture, user, QStringLiteral("x")), waitText(300));
    }

    void aSuccessForgetsTheFailuresBefore()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < SignInGuard::freeFailures - 1; ++i)
                QCOMPARE(attempt(fixture, name::alice, QStringLiteral("x")), wrong);
            QCOMPARE(attempt(fixture, name::alice, QStringLiteral("pw-alice")),
                     QStringLiteral("signed in"));
        }
    }

    void aWrongPasswordIsInTheAuditTrail()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QCOMPARE(attempt(fixture, name::alice, QStringLiteral("x")), wrong);
        const auto alice = fixture.signIn(name::alice);
        QVERIFY(alice);
        const QVector<AuditEntry> trail = alice->auditTrail(100);
        QCOMPARE(trail.size(), 2);
        QVERIFY(trail[0].ok);
        QVERIFY(!trail[1].ok);
        QCOMPARE(trail[1].action, QStringLiteral("sign_in"));
        QCOMPARE(trail[1].error, wrong);
    }

    void noSecretEverReachesTheAuditTrail()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        // A password typed into the name's place.
        attempt(fixture, QStringLiteral("hunter2"), QStringLiteral("x"));
        QFile file(fixture.path());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(!file.readAll().contains("hunter2"));
    }
};

int main(int argc, char** argv)
{
    return runTest<EmbeddedSignInTest>(argc, argv);
}

#include "EmbeddedSignInTest.moc"
