#include "backend/store/PasswordHash.h"
#include "backend/store/postgresql/LoginName.h"
#include "backend/store/postgresql/PostgresConnection.h"
#include "backend/store/postgresql/ServerProbe.h"
#include "tests/postgresql/DesksFixture.h"
#include "tests/postgresql/ServerGate.h"
#include "tests/postgresql/TcpProxy.h"
#include "tests/support/TestCase.h"

#include <QFile>
#include <QTcpServer>

using backend::Session;
using backend::StoreLocation;
using backend::StoreOptions;

namespace {

const QString alice = QStringLiteral("alice");
const QString right = QStringLiteral("pw-alice");
const QString wrongText = QStringLiteral("用户名或密码错误");
const QString signedIn = QStringLiteral("signed in");

QString attempt(const StoreOptions& options, const QString& user, const QString& password)
{
    const backend::SignInResult result = Session::signIn(options, user, password);
    return result.session ? signedIn : result.error;
}

// The store at another address: `host` is a name or address, `query` what follows the database.
StoreOptions at(const DesksFixture& fixture, const QString& host, const QString& query)
{
    StoreOptions options = fixture.options();
    options.location = StoreLocation::parse(QStringLiteral("postgresql://%1:%2/%3?%4")
                                                .arg(host)
                                                .arg(DesksFixture::serverPort())
                                                .arg(options.location.database, query));
    return options;
}

QString verified(const QString& authority)
{
    return QStringLiteral("sslmode=verify-full&sslrootcert=") + authority;
}

// The rules that the manual gives, for this database.
QByteArray rulesOfTheManual(const QString& database)
{
    QFile manual(QStringLiteral(MANUAL));
    if (!manual.open(QIODevice::ReadOnly))
        return {};
    const QByteArray text = manual.readAll();
    const qsizetype begin = text.indexOf("<<'HBA'\n") + 8;
    return text.mid(begin, text.indexOf("\nHBA\n", begin) + 1 - begin)
        .replace("hostssl authsetting ", QByteArray("hostssl " + database.toUtf8() + ' '));
}

} // namespace

class ServerSignInTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theManualsServerDoesNotTellWhichNamesItKnows()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        fixture.query(QStringLiteral("SELECT authsetting.admin_set_enabled('dora', false)"));
        const ServerGate gate(fixture);
        QVERIFY(gate.encryptAs(QStringLiteral("localhost")));
        QVERIFY(gate.setRules(rulesOfTheManual(fixture.options().location.database)));
        const StoreOptions store =
            at(fixture, QStringLiteral("localhost"), verified(gate.authority()));

        QCOMPARE(attempt(store, alice, right), signedIn);
        QCOMPARE(attempt(store, QStringLiteral("dora"), QStringLiteral("pw-dora")),
                 QStringLiteral("用户已被禁用，请联系管理人"));
        for (const QString& user : {alice, QStringLiteral("dora"), QStringLiteral("nobody")}) {
            QCOMPARE(attempt(store, user, QStringLiteral("wrong")), wrongText);
            // Neither does it to whoever asks by other means.
            StoreOptions login = store;
            login.location.user = backend::loginName(user);
            login.credential = QStringLiteral("wrong");
            QCOMPARE(refusalOf(backend::ServerAddress(login)).sqlState, QStringLiteral("28P01"));
        }
        // Nor does it let in the superuser, or anybody without encryption.
        StoreOptions superuser = store;
        superuser.location.user = qEnvironmentVariable("PGUSER");
        superuser.credential = qEnvironmentVariable("PGPASSWORD");
        QCOMPARE(refusalOf(backend::ServerAddress(superuser)).sqlState, QStringLiteral("28000"));
        QCOMPARE(attempt(fixture.options(), alice, right),
                 QStringLiteral("服务器不允许从这台机器登录，请联系管理人"));
    }

    void aServerThatSpeaksEnglishIsAskedOnce()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        fixture.query(QStringLiteral("SELECT authsetting.admin_set_enabled('dora', false)"));
        const TcpProxy proxy(DesksFixture::serverPort());
        const StoreOptions store = fixture.options(proxy.port());
        QCOMPARE(attempt(store, alice, QStringLiteral("wrong")), wrongText);
        QCOMPARE(proxy.connections(), 1);
        QCOMPARE(attempt(store, QStringLiteral("dora"), QStringLiteral("pw-dora")),
                 QStringLiteral("用户已被禁用，请联系管理人"));
        QCOMPARE(proxy.connections(), 2);
        QCOMPARE(attempt(store, QStringLiteral("dora"), QStringLiteral("wrong")), wrongText);
        QCOMPARE(proxy.connections(), 3);
    }

    void aServerInAnotherLanguageIsAskedForItsCode()
    {
        const QString login = backend::loginName(alice);
        const auto told = [&login](const QString& text) {
            return backend::refusalIn(text, login).has_value();
        };
        QVERIFY(!told(QStringLiteral("FATAL: Passwort-Authentifizierung für Benutzer »%1« "
                                     "fehlgeschlagen")
                          .arg(login)));
        // Neither is it believed about somebody else.
        QVERIFY(!told(QStringLiteral("FATAL: password authentication failed for user \"as_\"")));
        QVERIFY(!told(QStringLiteral("FATAL: sorry, too many clients already")));
    }

    void aServerThatCannotProveItselfGetsNoPassword()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        const ServerGate gate(fixture);
        QVERIFY(gate.encryptAs(QStringLiteral("localhost")));
        const QString untrusted =
            QStringLiteral("无法确认服务器的身份，没有登录：证书不可信或与地址不符");
        const QString name = QStringLiteral("localhost");
        QCOMPARE(attempt(at(fixture, name, verified(gate.authority())), alice, right), signedIn);
        QCOMPARE(attempt(at(fixture, name, verified(gate.otherAuthority())), alice, right),
                 untrusted);
        // The certificate bears the name and not the address.
        const QString address = QStringLiteral("127.0.0.1");
        QCOMPARE(attempt(at(fixture, address, verified(gate.authority())), alice, right),
                 untrusted);
        QCOMPARE(
            attempt(at(fixture, name, verified(QStringLiteral("/nowhere/ca.crt"))), alice, right),
            QStringLiteral("无法读取确认服务器身份所用的证书文件，没有登录"));
    }

    void aServerThatCannotEncryptIsNamedSo()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        const StoreOptions store =
            at(fixture, QStringLiteral("127.0.0.1"), QStringLiteral("sslmode=require"));
        QCOMPARE(attempt(store, alice, right),
                 QStringLiteral("服务器不支持加密连接，没有登录，请联系管理人"));
    }

    void aServerWithoutARuleForThisMachineIsNamedSo()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        const ServerGate gate(fixture);
        QVERIFY(gate.setRules("host all all 192.0.2.1/32 scram-sha-256\n"));
        QCOMPARE(attempt(fixture.options(), alice, right),
                 QStringLiteral("服务器不允许从这台机器登录，请联系管理人"));
    }

    void aServerThatIsNotThereIsNamedSo()
    {
        const DesksFixture fixture;
        quint16 closedPort = 0;
        {
            QTcpServer server;
            QVERIFY(server.listen(QHostAddress::LocalHost));
            closedPort = server.serverPort();
        }
        QCOMPARE(attempt(fixture.options(closedPort), alice, right),
                 QStringLiteral("无法连接服务器，请检查地址和网络后重试"));
        // One that takes the call and stays silent.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        QCOMPARE(attempt(fixture.options(silent.serverPort()), alice, right),
                 QStringLiteral("无法连接服务器，请检查地址和网络后重试"));
    }

    void whatIsWrongWithTheDatabaseIsTold_data()
    {
        QTest::addColumn<QString>("database");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("text");
        const QString unprepared =
            QStringLiteral("服务器上的授权数据库尚未建立或版本过旧，请联系管理人");
        QTest::newRow("none of that name")
            << QStringLiteral("nowhere") << QString() << QStringLiteral("授权数据库不存在");
        QTest::newRow("nothing in it") << QStringLiteral("postgres") << QString() << unprepared;
        QTest::newRow("of an older program")
            << QString() << QStringLiteral("UPDATE authsetting.schema_version SET version = 1")
            << unprepared;
        QTest::newRow("of a newer program")
            << QString() << QStringLiteral("UPDATE authsetting.schema_version SET version = 99")
            << QStringLiteral("授权数据库由更新版本的程序建立，请升级后再打开");
        QTest::newRow("too many connections")
            << QString() << QStringLiteral("ALTER ROLE \"%1\" CONNECTION LIMIT 0")
            << QStringLiteral("服务器的连接数已满，请稍后重试");
    }

    void whatIsWrongWithTheDatabaseIsTold()
    {
        QFETCH(QString, database);
        QFETCH(QString, sql);
        QFETCH(QString, text);
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        if (!sql.isEmpty())
            QCOMPARE(fixture.query(sql.contains(QStringLiteral("%1"))
                                       ? sql.arg(backend::loginName(alice))
                                       : sql),
                     QStringList());
        StoreOptions options = fixture.options();
        if (!database.isEmpty())
            options.location.database = database;
        QCOMPARE(attempt(options, alice, right), text);
        // Logins outlive the database.
        fixture.query(
            QStringLiteral("ALTER ROLE \"%1\" CONNECTION LIMIT -1").arg(backend::loginName(alice)));
    }

    void aLockThatAUserHoldsDoesNotKeepTheAdministratorOut()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        StoreOptions login = fixture.options();
        login.location.user = backend::loginName(alice);
        login.credential = backend::passwordDigest(right);
        backend::PostgresConnection user(login);
        // Not even if a login could take such a lock.
        fixture.query(QStringLiteral("GRANT EXECUTE ON FUNCTION pg_catalog.pg_advisory_lock(bigint)"
                                     " TO PUBLIC"));
        user.open();
        user.call(QStringLiteral("SELECT pg_advisory_lock(hashtext('authsetting migrations'))"), {},
                  std::chrono::seconds(10));
        QVERIFY(fixture.admin());
    }

    void theAdministratorComesThroughTheSocketOfHisMachine()
    {
        DesksFixture fixture;
        QVERIFY(fixture.fill(1));
        StoreOptions options = fixture.adminOptions();
        const QString address =
            QStringLiteral("postgresql:///%1?host=%2")
                .arg(options.location.database, qEnvironmentVariable("AUTHSETTING_TEST_PGSOCKET"));
        options.location = StoreLocation::parse(address);
        QVERIFY(options.location.isValid());
        options.location.port = DesksFixture::serverPort();
        options.location.user = qEnvironmentVariable("PGUSER");
        QString error;
        const auto admin = backend::StoreAdmin::open(options, &error);
        QVERIFY2(admin, qPrintable(error));
        QCOMPARE(admin->users().size(), 3);
    }
};

int main(int argc, char** argv)
{
    return runTest<ServerSignInTest>(argc, argv);
}

#include "ServerSignInTest.moc"
