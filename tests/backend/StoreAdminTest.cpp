#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <functional>

using namespace backend;

namespace {

// Whether that is the password of that user.
bool signsIn(const StoreFixture& fixture, const QString& user, const char* password)
{
    return Session::signIn(fixture.options(), user, QString::fromUtf8(password)).session != nullptr;
}

// What the administrator did, as that user reads it.
QStringList administratorsDeeds(const StoreFixture& fixture, const QString& user)
{
    const std::unique_ptr<Session> session = fixture.signIn(user);
    QStringList deeds;
    if (!session)
        return deeds;
    const QVector<AuditEntry> entries = session->auditTrail(100);
    for (const AuditEntry& entry : entries) {
        if (entry.action.startsWith(QStringLiteral("admin_")))
            deeds.append(QStringList{entry.actor, entry.actionText(), entry.otherUser,
                                     entry.detail + entry.error}
                             .join(QLatin1Char('|')));
    }
    return deeds;
}

} // namespace

class StoreAdminTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anAdministratorsMistakeUndoesAllOfHisWork()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        {
            const std::unique_ptr<StoreAdmin> admin = fixture.admin();
            QVERIFY(admin->addUser(QStringLiteral("frank"), QStringLiteral("x")));
            QVERIFY(!admin->addUser(name::bob, QStringLiteral("x")));
            QCOMPARE(admin->error(), QStringLiteral("用户“bob”已存在"));
            QVERIFY(!admin->commit());
        }
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->addUser(QStringLiteral("frank"), QStringLiteral("x")));
        QVERIFY(admin->commit());
    }

    void recordsThatCannotBeAreRefused()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto refused = [&](const std::function<bool(StoreAdmin&)>& work) {
            const std::unique_ptr<StoreAdmin> admin = fixture.admin();
            return !work(*admin) && !admin->error().isEmpty();
        };
        QVERIFY(refused([](StoreAdmin& admin) {
            return admin.addUser(QStringLiteral("a\u202eb"), QStringLiteral("x"));
        }));
        QVERIFY(refused([](StoreAdmin& admin) {
            return admin.addUser(QStringLiteral("frank"), QStringLiteral("  "));
        }));
        QVERIFY(refused([](StoreAdmin& admin) {
            return admin.addSubUser(QString(), QStringLiteral("frank"), QStringLiteral("x"));
        }));
        QVERIFY(refused([](StoreAdmin& admin) {
            return admin.addAccount(name::bob, StoreFixture::account(1));
        }));
        QVERIFY(refused([](StoreAdmin& admin) {
            return admin.addSubAccount(StoreFixture::account(1), StoreFixture::account(20));
        }));
        QVERIFY(refused([&](StoreAdmin& admin) {
            GrantRecord grant;
            grant.grantor = name::alice;
            grant.grantee = name::alice;
            grant.account = StoreFixture::account(1);
            grant.limit = fixture.days(0, 1);
            return admin.addGrant(grant);
        }));
    }

    void aNewPasswordReplacesTheOldOneAndForgetsFailures()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        // More often than an embedded store lets anybody try without a wait.
        for (int i = 0; i < 6; ++i)
            QVERIFY(!signsIn(fixture, name::dora, "x"));
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->setPassword(name::dora, QStringLiteral("新密码")));
        QVERIFY(admin->setPassword(name::bob, QStringLiteral("pw-2")));
        QVERIFY(admin->commit());
        QVERIFY(signsIn(fixture, name::dora, "新密码"));
        QVERIFY(signsIn(fixture, name::bob, "pw-2"));
        QVERIFY(!signsIn(fixture, name::bob, "pw-bob"));
        QCOMPARE(fixture.admin()->verify(), QString());
    }

    void aNewPasswordLeavesWhoeverIsSignedIn()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<UserStore> bob = fixture.storeOf(name::bob);
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->setPassword(name::bob, QStringLiteral("new")));
        QVERIFY(admin->commit());
        QCOMPARE(bob->run({fixture.add(20, name::alice)})[0].error, QString());
    }

    void aDisabledUserIsOutAtOnce()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<UserStore> bob = fixture.storeOf(name::bob);
        QCOMPARE(bob->model().own.size(), 1);
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->setEnabled(name::bob, false));
        QVERIFY(admin->addAccount(name::bob, StoreFixture::account(21)));
        QVERIFY(admin->commit());
        QVERIFY(!signsIn(fixture, name::bob, "pw-bob"));
        // A server has ended his connection, and says why once he tries to come back.
        const auto refusal = [&] {
            bob->poll();
            return bob->run({fixture.add(20, name::alice)})[0].error;
        };
        QTRY_COMPARE_WITH_TIMEOUT(refusal(), QStringLiteral("当前用户已被禁用"), 20'000);
        QVERIFY(fixture.grantsOf(20).isEmpty());
        // He keeps what he has seen, and sees nothing more.
        QCOMPARE(bob->model().own.size(), 1);

        QVERIFY(admin->setEnabled(name::bob, true));
        QVERIFY(admin->commit());
        QVERIFY(signsIn(fixture, name::bob, "pw-bob"));
        QCOMPARE(fixture.storeOf(name::bob)->model().own.size(), 2);
        QCOMPARE(fixture.admin()->verify(), QString());
    }

    void openDialogsShowWhatTheAdministratorChanged()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<UserStore> alice = fixture.storeOf(name::alice);
        const std::unique_ptr<UserStore> dora = fixture.storeOf(name::dora);
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        const auto sees = [](UserStore& user, qint64 versionBefore) {
            user.poll();
            return user.model().version > versionBefore;
        };
        qint64 aliceBefore = alice->model().version;
        const qint64 doraBefore = dora->model().version;
        QVERIFY(admin->setPassword(name::dora, QStringLiteral("new")));
        QVERIFY(admin->commit());
        QTRY_VERIFY(sees(*alice, aliceBefore));
        QTRY_VERIFY(sees(*dora, doraBefore));

        aliceBefore = alice->model().version;
        QVERIFY(admin->setEnabled(name::dora, false));
        QVERIFY(admin->setEnabled(name::erin, true));
        QVERIFY(admin->commit());
        QTRY_VERIFY(sees(*alice, aliceBefore));
        QVERIFY(!alice->model().subUsers[0].enabled);
        QVERIFY(alice->model().subUsers[1].enabled);
    }

    void theAuditTrailTellsWhatTheAdministratorDid()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->setEnabled(name::dora, false));
        QVERIFY(admin->setEnabled(name::dora, true));
        QVERIFY(admin->setPassword(name::dora, QStringLiteral("pw-dora")));
        QVERIFY(admin->setPassword(name::bob, QStringLiteral("pw-bob")));
        QVERIFY(admin->commit());
        const auto deeds = [](const QString& other) {
            return QStringList({QStringLiteral("|管理员修改密码|%1|").arg(other),
                                QStringLiteral("|管理员修改用户状态|%1|启用").arg(other),
                                QStringLiteral("|管理员修改用户状态|%1|禁用").arg(other)});
        };
        QCOMPARE(administratorsDeeds(fixture, name::alice), deeds(name::dora));
        QCOMPARE(administratorsDeeds(fixture, name::dora), deeds(name::alice));
        QCOMPARE(administratorsDeeds(fixture, name::bob),
                 QStringList(QStringLiteral("|管理员修改密码||")));
    }

    void whatIsNotCommittedChangesNobody()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        {
            const std::unique_ptr<StoreAdmin> admin = fixture.admin();
            QVERIFY(admin->setPassword(name::bob, QStringLiteral("new")));
            QVERIFY(admin->setEnabled(name::alice, false));
        }
        QVERIFY(signsIn(fixture, name::bob, "pw-bob"));
        QVERIFY(signsIn(fixture, name::alice, "pw-alice"));
        QCOMPARE(administratorsDeeds(fixture, name::bob), QStringList());
    }

    void usersWhoCannotBeChangedAreRefused()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        admin->skipRefusedRecords();
        const auto refusals = [&](const QString& user) {
            QStringList texts;
            if (!admin->requireUser(user))
                texts.append(admin->error());
            if (!admin->setPassword(user, QStringLiteral("x")))
                texts.append(admin->error());
            if (!admin->setEnabled(user, true))
                texts.append(admin->error());
            return texts;
        };
        const auto thrice = [](const QString& text) { return QStringList({text, text, text}); };
        QCOMPARE(refusals(QStringLiteral("nobody")), thrice(QStringLiteral("用户“nobody”不存在")));
        QCOMPARE(refusals(QString(256, QLatin1Char('x'))), thrice(QStringLiteral("用户名过长")));
        QCOMPARE(refusals(QStringLiteral("a\nb")), thrice(QStringLiteral("用户名含有非法字符")));
        QCOMPARE(refusals(QString(22, QChar(u'张'))),
                 thrice(ServerFixture::isWanted()
                            ? QStringLiteral("用户名过长：服务器上最多 63 字节")
                            : QStringLiteral("用户“%1”不存在").arg(QString(22, QChar(u'张')))));
        QVERIFY(!admin->setPassword(name::bob, QStringLiteral("  ")));
        QCOMPARE(admin->error(), QStringLiteral("密码不能为空"));
        // None of that kept the rest from being done.
        QVERIFY(!admin->hasFailed());
        QVERIFY(admin->setPassword(name::bob, QStringLiteral("new")));
        QVERIFY(admin->commit());
        QVERIFY(signsIn(fixture, name::bob, "new"));
    }

    void aNameIsTheSameHoweverItsAccentsAreWritten()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const std::unique_ptr<StoreAdmin> admin = fixture.admin();
        QVERIFY(admin->addUser(QStringLiteral("ren\u00e9"), QStringLiteral("old")));
        QVERIFY(admin->setPassword(QStringLiteral("rene\u0301"), QStringLiteral("new")));
        QVERIFY(admin->commit());
        QVERIFY(signsIn(fixture, QStringLiteral("ren\u00e9"), "new"));
    }

    void anAccountHasOneCurrentGrantAtMost()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        GrantRecord grant;
        grant.grantor = name::alice;
        grant.grantee = name::bob;
        grant.account = StoreFixture::account(1);
        grant.limit = fixture.days(0, 1);
        QVERIFY(fixture.addGrant(grant));
        QVERIFY(!fixture.addGrant(grant));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
    }

    void verifyingFindsWhatTheTablesCannotForbid()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QCOMPARE(fixture.admin()->verify(), QString());
        GrantRecord grant;
        grant.grantor = name::bob;
        grant.grantee = name::dora;
        grant.account = StoreFixture::account(1);
        grant.limit = fixture.days(0, 1);
        QVERIFY(fixture.addGrant(grant));
        const QString problem = fixture.admin()->verify();
        QVERIFY2(problem.startsWith(QStringLiteral("存在授权人不是账号所有者的有效授权")),
                 qPrintable(problem));
    }
};

int main(int argc, char** argv)
{
    return runTest<StoreAdminTest>(argc, argv);
}

#include "StoreAdminTest.moc"
