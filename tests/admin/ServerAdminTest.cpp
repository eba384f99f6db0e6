#include "authsetting/services/UserConfig.h"
#include "backend/client/Session.h"
#include "backend/store/PasswordHash.h"
#include "backend/store/StoreAdmin.h"
#include "backend/store/postgresql/LoginName.h"
#include "tests/admin/AdminProgram.h"
#include "tests/admin/AdminTerminal.h"
#include "tests/support/TestCase.h"

#include <QTemporaryDir>

namespace {

// As the superuser of the test's server.
QString psql(const QString& sql, const QString& database = QStringLiteral("postgres"))
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("psql"),
                  {QStringLiteral("-X"), QStringLiteral("-q"), QStringLiteral("-A"),
                   QStringLiteral("-t"), QStringLiteral("-d"), database, QStringLiteral("-c"),
                   sql});
    process.waitForFinished(60'000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void dropEverything()
{
    psql(QStringLiteral("DROP DATABASE IF EXISTS branch WITH (FORCE)"));
    psql(QStringLiteral("DO $$DECLARE r text; BEGIN FOR r IN SELECT rolname FROM pg_roles WHERE "
                        "rolname LIKE 'as\\_%' LOOP EXECUTE format('DROP ROLE %I', r); END LOOP; "
                        "END$$"));
}

} // namespace

class ServerAdminTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        dropEverything();
        psql(QStringLiteral("CREATE DATABASE branch"));
        m_folder = std::make_unique<QTemporaryDir>();
        m_store = QStringLiteral("postgresql://%1@%2:%3/branch")
                      .arg(qEnvironmentVariable("PGUSER"), qEnvironmentVariable("PGHOST"),
                           qEnvironmentVariable("PGPORT"));
        m_passwordFile =
            writeFile(m_folder->filePath(QStringLiteral("password")), qgetenv("PGPASSWORD") + '\n');
        QCOMPARE(run({QStringLiteral("create")}).code, 0);
    }

    void cleanup()
    {
        dropEverything();
        m_folder.reset();
        TestCase::cleanup();
    }

    void createdTwiceIsCreatedOnce()
    {
        const AdminProgram again = run({QStringLiteral("create")});
        QCOMPARE(again.complaints, QString());
        QCOMPARE(again.code, 0);
        QCOMPARE(run({QStringLiteral("verify")}).code, 0);
    }

    void passwordFilesMustBePrivate()
    {
        QVERIFY(QFile::setPermissions(m_passwordFile,
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther));
        const AdminProgram refused = run({QStringLiteral("verify")});
        QCOMPARE(refused.code, 4);
        QVERIFY(refused.complaints.contains(QStringLiteral("chmod 600")));
    }

    void passwordsAreAskedForWithoutBeingShown()
    {
        const QByteArray password = qgetenv("PGPASSWORD");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("PGPASSWORD"));
        AdminTerminal terminal(
            m_store, {QStringLiteral("--ask-password"), QStringLiteral("verify")}, environment);
        // The last character by mistake, and taken back.
        QVERIFY(terminal.answer("密码", password + "x\x7f\r"));
        const int code = terminal.finish();
        QVERIFY2(code == 0, terminal.shown().constData());
        QVERIFY(terminal.shown().contains("没有问题"));
        QVERIFY(!terminal.shown().contains(password));
    }

    void aWrongPasswordOpensNothing()
    {
        writeFile(m_passwordFile, "wrong\n");
        QCOMPARE(run({QStringLiteral("verify")}).code, 3);
    }

    void goodRowsAreTakenAndRefusedOnesReported()
    {
        QCOMPARE(import("platforms", "kind,platform_id,name\nfutures,1,期货平台\n").code, 0);
        const AdminProgram brokers = import("brokers", "kind,platform_id,broker_id,name\n"
                                                       "futures,1,9999,公司\n"
                                                       "futures,1,9999,公司\n"
                                                       "stock,7,1,公司\n"
                                                       "futures,1,8888,公司\n");
        QCOMPARE(brokers.complaints,
                 QStringLiteral("第 3 行：经纪公司“9999”已存在，或者没有平台 1\n"
                                "第 4 行：经纪公司“1”已存在，或者没有平台 7\n"));
        QCOMPARE(brokers.code, 1);
        const QByteArray longName = QByteArray("\xe5\xbc\xa0").repeated(22);
        const AdminProgram users =
            import("users", "name,password\nalice,pw-alice\n" + longName + ",x\nalice,y\nbob,z\n");
        QCOMPARE(users.output, QStringLiteral("已添加 2 条记录，拒绝 2 条。\n"));
        QCOMPARE(users.complaints, QStringLiteral("第 3 行：用户名过长：服务器上最多 63 字节\n"
                                                  "第 4 行：用户“alice”已存在\n"));
        QVERIFY(signsIn(QStringLiteral("alice"), QStringLiteral("pw-alice")));
        QVERIFY(!signsIn(QStringLiteral("alice"), QStringLiteral("y")));
        QCOMPARE(run({QStringLiteral("verify")}).code, 0);
    }

    void usersAreDisabledEnabledAndGivenPasswords()
    {
        fill();
        const AdminProgram disabled = run({QStringLiteral("disable"), QStringLiteral("alice")});
        QCOMPARE(disabled.complaints, QString());
        QCOMPARE(disabled.output, QStringLiteral("已禁用用户“alice”。\n"));
        QVERIFY(!signsIn(QStringLiteral("alice"), QStringLiteral("pw-alice")));
        QCOMPARE(run({QStringLiteral("enable"), QStringLiteral("alice")}).code, 0);
        const QString file = writeFile(m_folder->filePath(QStringLiteral("new")), "hunter2\n");
        const AdminProgram set = run({QStringLiteral("--new-password-file"), file,
                                      QStringLiteral("password"), QStringLiteral("alice")});
        QCOMPARE(set.complaints, QString());
        QCOMPARE(set.output, QStringLiteral("已设置用户“alice”的新密码。\n"));
        QVERIFY(signsIn(QStringLiteral("alice"), QStringLiteral("hunter2")));
        QVERIFY(!signsIn(QStringLiteral("alice"), QStringLiteral("pw-alice")));
        QCOMPARE(run({QStringLiteral("verify")}).code, 0);
        const AdminProgram unknown = run({QStringLiteral("disable"), QStringLiteral("nobody")});
        QCOMPARE(unknown.complaints, QStringLiteral("用户“nobody”不存在\n"));
        QCOMPARE(unknown.code, 1);
    }

    void onlyTheAdministratorChangesUsers()
    {
        fill();
        writeFile(m_passwordFile, digest("alice").toUtf8() + '\n');
        const QString store =
            QStringLiteral("postgresql://%1@%2:%3/branch")
                .arg(backend::loginName(QStringLiteral("alice")), qEnvironmentVariable("PGHOST"),
                     qEnvironmentVariable("PGPORT"));
        for (const QString& command : {QStringLiteral("disable"), QStringLiteral("password")}) {
            const AdminProgram refused(store, {QStringLiteral("--password-file"), m_passwordFile,
                                               command, QStringLiteral("bob")});
            QVERIFY2(refused.complaints.contains(QStringLiteral("没有写入授权数据库的权限")),
                     qPrintable(refused.complaints));
            QCOMPARE(refused.code, 3);
        }
        QVERIFY(signsIn(QStringLiteral("bob"), QStringLiteral("pw-bob")));
    }

    void whoeverSignsInBeforeTheCommitIsPutOutAfterIt()
    {
        fill();
        backend::StoreOptions options;
        options.location = backend::StoreLocation::parse(m_store);
        options.credential = qEnvironmentVariable("PGPASSWORD");
        QString error;
        const auto admin = backend::StoreAdmin::open(options, &error);
        QVERIFY2(admin, qPrintable(error));
        QVERIFY(admin->setEnabled(QStringLiteral("bob"), false));
        QProcess bob;
        startAs(bob, "bob", {QStringLiteral("SELECT pg_sleep(600)")});
        QTRY_COMPARE_WITH_TIMEOUT(sleeping("bob"), QStringLiteral("1"), 60'000);
        QVERIFY(admin->commit());
        QVERIFY(bob.waitForFinished(60'000));
        QCOMPARE(sleeping("bob"), QStringLiteral("0"));
    }

    void whoeverHoldsALockIsDisabledAllTheSame()
    {
        fill();
        QProcess bob;
        startAs(bob, "bob",
                {QStringLiteral("BEGIN"),
                 QStringLiteral("SELECT authsetting.run_requests(gen_random_uuid(), "
                                "'[{\"kind\": \"cancel\"}]')"),
                 QStringLiteral("SELECT pg_sleep(600)")});
        QTRY_COMPARE_WITH_TIMEOUT(sleeping("bob"), QStringLiteral("1"), 60'000);
        const AdminProgram disabled = run({QStringLiteral("disable"), QStringLiteral("bob")});
        QCOMPARE(disabled.complaints, QString());
        QCOMPARE(disabled.code, 0);
        QVERIFY(bob.waitForFinished(60'000));
        QVERIFY(!signsIn(QStringLiteral("bob"), QStringLiteral("pw-bob")));
    }

    void aStoreOfTheVersionBeforeIsBroughtUpToDate()
    {
        fill();
        psql(QStringLiteral("DROP FUNCTION authsetting.admin_lock_user(text), "
                            "authsetting.admin_note_change(bigint, text, text), "
                            "authsetting.admin_end_connections(text); "
                            "UPDATE authsetting.schema_version SET version = 7"),
             QStringLiteral("branch"));
        QVERIFY(!signsIn(QStringLiteral("bob"), QStringLiteral("pw-bob")));
        QCOMPARE(run({QStringLiteral("create")}).code, 0);
        QVERIFY(signsIn(QStringLiteral("bob"), QStringLiteral("pw-bob")));
        QCOMPARE(run({QStringLiteral("disable"), QStringLiteral("bob")}).code, 0);
        QCOMPARE(run({QStringLiteral("verify")}).code, 0);
    }

    void aBackupBringsTheLoginsBack()
    {
        fill();
        const QString backup = m_folder->filePath(QStringLiteral("branch.backup"));
        const AdminProgram saved = run({QStringLiteral("backup"), backup});
        QCOMPARE(saved.complaints, QString());
        QCOMPARE(saved.code, 0);
        QCOMPARE(QFile::permissions(backup) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(run({QStringLiteral("backup"), backup}).code, 4);
        QStringList before;
        for (const QString& what : kinds())
            before.append(run({QStringLiteral("list"), what}).output);
        // How much of the server's own a login may use.
        const QString rights = QStringLiteral(
            "SELECT (SELECT count(*) FROM pg_proc WHERE pronamespace = 'pg_catalog'::regnamespace "
            "AND has_function_privilege('authsetting_user', oid, 'EXECUTE')), "
            "(SELECT count(*) FROM pg_class WHERE relnamespace = 'pg_catalog'::regnamespace "
            "AND has_table_privilege('authsetting_user', oid, 'UPDATE'))");
        const QString rightsBefore = psql(rights, QStringLiteral("branch"));
        QVERIFY2(rightsBefore.endsWith(QStringLiteral("|0")), qPrintable(rightsBefore));
        // Into the database that is there, and beside logins that are there, nothing is restored.
        QCOMPARE(run({QStringLiteral("restore"), backup}).code, 3);
        psql(QStringLiteral("DROP DATABASE branch WITH (FORCE)"));
        psql(QStringLiteral("CREATE DATABASE branch"));
        const AdminProgram besideLogins = run({QStringLiteral("restore"), backup});
        QCOMPARE(besideLogins.code, 3);
        QVERIFY(besideLogins.complaints.contains(QStringLiteral("服务器上已有登录")));

        dropEverything();
        psql(QStringLiteral("CREATE DATABASE branch"));
        const AdminProgram restored = run({QStringLiteral("restore"), backup});
        QCOMPARE(restored.complaints, QString());
        QCOMPARE(restored.code, 0);
        QStringList after;
        for (const QString& what : kinds())
            after.append(run({QStringLiteral("list"), what}).output);
        QCOMPARE(after, before);
        QCOMPARE(psql(rights, QStringLiteral("branch")), rightsBefore);
        QVERIFY(signsIn(QStringLiteral("alice"), QStringLiteral("pw-alice")));
        QVERIFY(signsIn(QStringLiteral("dora"), QStringLiteral("pw-dora")));
        QVERIFY(!signsIn(QStringLiteral("carl"), QStringLiteral("pw-carl")));
        QCOMPARE(psql(QStringLiteral("SELECT has_database_privilege('public', 'branch', "
                                     "'CONNECT')")),
                 QStringLiteral("f"));
    }

    void aSpoiltBackupRestoresNothing()
    {
        fill();
        const QString backup = m_folder->filePath(QStringLiteral("branch.backup"));
        QCOMPARE(run({QStringLiteral("backup"), backup}).code, 0);
        dropEverything();
        psql(QStringLiteral("CREATE DATABASE branch"));
        QFile file(backup);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray whole = file.readAll();
        file.close();
        QByteArray altered = whole;
        altered.replace("alice", "alicf");
        for (const QByteArray& spoilt : {whole.left(whole.size() / 2), altered, QByteArray()}) {
            writeFile(backup, spoilt);
            QCOMPARE(run({QStringLiteral("restore"), backup}).code, 3);
            QCOMPARE(psql(QStringLiteral("SELECT count(*) FROM pg_namespace WHERE nspname LIKE "
                                         "'authsetting%'"),
                          QStringLiteral("branch")),
                     QStringLiteral("0"));
        }
    }

private:
    static QStringList kinds()
    {
        return {QStringLiteral("users"), QStringLiteral("accounts"), QStringLiteral("grants")};
    }
    AdminProgram run(const QStringList& arguments) const
    {
        return {m_store,
                QStringList{QStringLiteral("--password-file"), m_passwordFile} + arguments};
    }
    AdminProgram import(const char* kind, const QByteArray& csv) const
    {
        const QString path = writeFile(m_folder->filePath(QStringLiteral("import.csv")), csv);
        return run({QStringLiteral("import"), QString::fromLatin1(kind), path});
    }
    void fill() const
    {
        QCOMPARE(import("users", "name,password,enabled\nalice,pw-alice,1\nbob,pw-bob,1\n"
                                 "carl,pw-carl,0\n")
                     .code,
                 0);
        QCOMPARE(import("sub-users", "owner,name,password\nalice,dora,pw-dora\n").code, 0);
        QCOMPARE(import("accounts", "owner,type,platform_id,broker_id,number,secret\n"
                                    "alice,futures,1,9999,880001,s1\n")
                     .code,
                 0);
    }
    static QString digest(const char* user)
    {
        return backend::passwordDigest(QStringLiteral("pw-") + QString::fromLatin1(user));
    }
    // psql in that user's own hands.
    static void startAs(QProcess& process, const char* user, const QStringList& statements)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PGUSER"), backend::loginName(QString::fromLatin1(user)));
        environment.insert(QStringLiteral("PGPASSWORD"), digest(user));
        process.setProcessEnvironment(environment);
        QStringList arguments{QStringLiteral("-X"), QStringLiteral("-d"), QStringLiteral("branch")};
        for (const QString& statement : statements)
            arguments += {QStringLiteral("-c"), statement};
        process.start(QStringLiteral("psql"), arguments);
    }
    static QString sleeping(const char* user)
    {
        return psql(QStringLiteral("SELECT count(*) FROM pg_stat_activity WHERE usename = '%1' "
                                   "AND query LIKE 'SELECT pg_sleep%'")
                        .arg(backend::loginName(QString::fromLatin1(user))));
    }
    bool signsIn(const QString& user, const QString& password) const
    {
        backend::StoreOptions options;
        options.location = backend::StoreLocation::parse(m_store);
        options.dataFolder = m_folder->path();
        return backend::Session::signIn(options, user, password).session != nullptr;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_store;
    QString m_passwordFile;
};

int main(int argc, char** argv)
{
    return runTest<ServerAdminTest>(argc, argv);
}

#include "ServerAdminTest.moc"
