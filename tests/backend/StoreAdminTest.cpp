#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <functional>

using namespace backend;

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
