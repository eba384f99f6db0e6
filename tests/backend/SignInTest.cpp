#include "authsetting/services/Config.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/TimeService.h"
#include "authsetting/services/UserConfig.h"
#include "backend/store/PasswordHash.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"
#include "utils/ExchangeTimeZone.h"

using namespace backend;

namespace {

QString attempt(const StoreFixture& fixture, const QString& user, const QString& password)
{
    const SignInResult result = Session::signIn(fixture.options(), user, password);
    return result.session ? QStringLiteral("signed in") : result.error;
}

QString wrongText()
{
    return QStringLiteral("用户名或密码错误");
}

QStringList texts(const QVector<AuditEntry>& entries)
{
    QStringList lines;
    for (const AuditEntry& entry : entries) {
        lines.append(QStringList{entry.actor, entry.actionText(), entry.otherUser, entry.account,
                                 entry.detail, entry.ok ? QStringLiteral("ok") : entry.error}
                         .join(QLatin1Char('|')));
    }
    return lines;
}

} // namespace

class SignInTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyKindOfUserSignsInWithHisPassword()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        for (const QString& user : {name::alice, name::bob, name::dora}) {
            const auto session = fixture.signIn(user);
            QVERIFY(session);
            QCOMPARE(session->userName(), user);
            QCOMPARE(session->userConfig()->userName, user);
        }
    }

    void aDigestStandsForThePasswordItWasMadeOf()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const QString digest = passwordDigest(QStringLiteral("pw-alice"));
        QCOMPARE(attempt(fixture, name::alice, digest.toUpper()), QStringLiteral("signed in"));
        QCOMPARE(attempt(fixture, name::alice, QStringLiteral("  pw-alice ")),
                 QStringLiteral("signed in"));
    }

    void theReasonDoesNotTellANameFromAPassword_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::newRow("wrong password") << name::alice << QStringLiteral("x");
        QTest::newRow("wrong name") << QStringLiteral("zoe") << QStringLiteral("pw-alice");
        QTest::newRow("other case") << QStringLiteral("Alice") << QStringLiteral("pw-alice");
        QTest::newRow("no password") << name::alice << QString();
        QTest::newRow("no name") << QString() << QStringLiteral("pw-alice");
        QTest::newRow("disabled, wrong password") << name::erin << QStringLiteral("x");
        QTest::newRow("hostile name")
            << QStringLiteral("alice\u202e") << QStringLiteral("pw-alice");
        QTest::newRow("1 MB of name") << QString(1 << 20, u'a') << QStringLiteral("x");
        QTest::newRow("1 MB of password") << name::alice << QString(1 << 20, u'a');
        QTest::newRow("SQL") << QStringLiteral("alice' OR 1=1 --") << QStringLiteral("x");
    }

    void theReasonDoesNotTellANameFromAPassword()
    {
        QFETCH(QString, user);
        QFETCH(QString, password);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QCOMPARE(attempt(fixture, user, password), wrongText());
    }

    void aDisabledUserIsToldSoOnceHisPasswordIsRight()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const QString text = QStringLiteral("用户已被禁用，请联系管理人");
        QCOMPARE(attempt(fixture, name::erin, QStringLiteral("pw-erin")), text);
        QCOMPARE(attempt(fixture, name::carl, QStringLiteral("pw-carl")), text);
    }

    void theServicesAreInstalledForTheDialogAndTakenBack()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        auto session = fixture.signIn(name::alice);
        QVERIFY(session);
        QVERIFY(!GW::getAuthClient());
        session->install(nullptr);
        QCOMPARE(GW::getAuthClient(), session->authClient());
        QCOMPARE(GW::getUserConfig(), session->userConfig());
        QCOMPARE(GW::getConfig(), session->config());
        QCOMPARE(GW::getTimeService(), session->timeService());
        QCOMPARE(GW::getTimeService()->currentDateTime(), fixture.options().now());
        QCOMPARE(GW::getConfig()->getPlatformSetting(1).name, std::string("期货平台"));
        QCOMPARE(GW::getConfig()->getStkPlatformSetting(1).name, std::string("股票平台"));
        QCOMPARE(GW::getUserConfig()->getBrokerSetting(1, "9999").name, std::string("期货公司"));
        QCOMPARE(GW::getUserConfig()->getStkBrokerSetting(1, "9999").name, std::string("证券公司"));
        session.reset();
        QVERIFY(!GW::getAuthClient());
        QVERIFY(!GW::getTimeService());
    }

    void tableLayoutsSurviveTheSession()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        {
            const auto session = fixture.signIn(name::alice);
            QVERIFY(session);
            session->userConfig()->tableLayouts.insert(4194321, QStringLiteral("layout"));
        }
        QCOMPARE(fixture.signIn(name::alice)->userConfig()->tableLayouts.value(4194321),
                 QStringLiteral("layout"));
        QVERIFY(fixture.signIn(name::bob)->userConfig()->tableLayouts.isEmpty());
    }

    void theAuditTrailTellsWhatConcernsTheUser()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto alice = fixture.signIn(name::alice);
        QVERIFY(alice);
        ClientSpy spy(alice->authClient());
        GW::CAuthClient* client = alice->authClient();
        GW::CAuthLimit limit = fixture.daysWithRatio(0, 7, 0.5);
        client->addAuth(name::bob, StoreFixture::account(2), limit, {}, true);
        client->addAuth(name::bob, StoreFixture::account(7), limit, {}, true);
        client->addAuth(name::bob, StoreFixture::account(3), limit, {}, false);
        client->delAuth(name::bob, StoreFixture::account(2), {});
        client->setSubUser(name::dora, false);
        client->updateSubUser(name::erin, passwordDigest(QStringLiteral("another")));
        spy.wait(7);

        const QString days = QStringLiteral("2024-03-15 至 2024-03-22，可用保证金比例 50.00%");
        QCOMPARE(texts(alice->auditTrail(100)),
                 QStringList({QStringLiteral("alice|修改子用户密码|erin|||ok"),
                              QStringLiteral("alice|修改子用户状态|dora||禁用|ok"),
                              QStringLiteral("alice|取消授权|bob|备用账户|%1|ok").arg(days),
                              QStringLiteral("alice|准备文件授权|bob|880003|%1|ok").arg(days),
                              QStringLiteral("alice|服务器授权|bob|880007||子账户不能授权"),
                              QStringLiteral("alice|服务器授权|bob|备用账户|%1|ok").arg(days),
                              QStringLiteral("alice|登录||||ok")}));
        QCOMPARE(alice->auditTrail(2).size(), 2);
        QCOMPARE(alice->auditTrail(100)[0].when, fixture.options().now());

        // The other side reads what was done to him, not what failed or was only prepared.
        const auto bob = fixture.signIn(name::bob);
        QCOMPARE(texts(bob->auditTrail(100)),
                 QStringList({QStringLiteral("bob|登录||||ok"),
                              QStringLiteral("alice|取消授权|alice|备用账户|%1|ok").arg(days),
                              QStringLiteral("alice|服务器授权|alice|备用账户|%1|ok").arg(days)}));
    }
};

int main(int argc, char** argv)
{
    return runTest<SignInTest>(argc, argv);
}

#include "SignInTest.moc"
