#include "backend/client/Session.h"
#include "tests/admin/AdminProgram.h"
#include "tests/admin/AdminTerminal.h"
#include "tests/support/TestCase.h"

#include <QTemporaryDir>

// What the administrator changes of users of an embedded store.
class AdminUsersTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_store = m_folder->filePath(QStringLiteral("data/store.db"));
        QCOMPARE(run({QStringLiteral("create")}).code, 0);
        const QString users =
            writeFile(m_folder->filePath(QStringLiteral("users.csv")),
                      "name,password,enabled\nalice,pw-alice,1\ncarl,pw-carl,0\n");
        QCOMPARE(run({QStringLiteral("import"), QStringLiteral("users"), users}).code, 0);
        writeFile(users, "owner,name,password\nalice,dora,pw-dora\n");
        QCOMPARE(run({QStringLiteral("import"), QStringLiteral("sub-users"), users}).code, 0);
    }

    void cleanup()
    {
        m_folder.reset();
        TestCase::cleanup();
    }

    void aNewPasswordIsAskedForTwiceAndNotShown()
    {
        AdminTerminal terminal(m_store, {QStringLiteral("password"), QStringLiteral("alice")});
        QVERIFY(terminal.answer("alice 的新密码：", "hunter3\x7f"
                                                    "2\r"));
        QVERIFY(terminal.answer("再次输入：", "hunter2\r"));
        QCOMPARE(terminal.finish(), 0);
        QVERIFY2(terminal.shown().contains("已设置用户“alice”的新密码。"),
                 terminal.shown().constData());
        QVERIFY(!terminal.shown().contains("hunter"));
        QVERIFY(signsIn("alice", "hunter2"));
        QVERIFY(!signsIn("alice", "pw-alice"));
    }

    void differentAnswersChangeNothing()
    {
        AdminTerminal terminal(m_store, {QStringLiteral("password"), QStringLiteral("alice")});
        QVERIFY(terminal.answer("alice 的新密码：", "one\r"));
        QVERIFY(terminal.answer("再次输入：", "two\r"));
        QCOMPARE(terminal.finish(), 4);
        QVERIFY2(terminal.shown().contains("两次输入的密码不同，密码未修改"),
                 terminal.shown().constData());
        QVERIFY(signsIn("alice", "pw-alice"));
    }

    void whoeverGivesUpChangesNothing()
    {
        AdminTerminal terminal(m_store, {QStringLiteral("password"), QStringLiteral("alice")});
        QVERIFY(terminal.answer("alice 的新密码：", "one\r"));
        QVERIFY(terminal.answer("再次输入：", "\x03"));
        QCOMPARE(terminal.finish(), 4);
        QVERIFY(signsIn("alice", "pw-alice"));
    }

    void anUnknownUserIsNotAskedAbout()
    {
        AdminTerminal terminal(m_store, {QStringLiteral("password"), QStringLiteral("nobody")});
        QCOMPARE(terminal.finish(), 1);
        QVERIFY(!terminal.shown().contains("新密码"));
    }

    void aNewPasswordIsReadFromAPrivateFileOrStandardInput()
    {
        const QString file = writeFile(m_folder->filePath(QStringLiteral("new")), "first\r\nx\n");
        const QStringList fromFile{QStringLiteral("--new-password-file"), file,
                                   QStringLiteral("password"), QStringLiteral("alice")};
        const AdminProgram set = run(fromFile);
        QCOMPARE(set.output, QStringLiteral("已设置用户“alice”的新密码。\n"));
        QCOMPARE(set.code, 0);
        QVERIFY(signsIn("alice", "first"));
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadOther));
        const AdminProgram open = run(fromFile);
        QCOMPARE(open.code, 4);
        QVERIFY(open.complaints.contains(QStringLiteral("chmod 600")));
        QCOMPARE(setFromInput("alice", "second 密码\nx\n").code, 0);
        QVERIFY(signsIn("alice", "second 密码"));
    }

    void newPasswordsThatCannotBeAreRefused()
    {
        const auto refused = [&](const QByteArray& input, int code, const char* complaint) {
            const AdminProgram run = setFromInput("alice", input);
            return run.code == code && run.complaints == QString::fromUtf8(complaint);
        };
        QVERIFY(refused("", 4, "标准输入的第一行没有密码\n"));
        QVERIFY(refused("\nx\n", 4, "标准输入的第一行没有密码\n"));
        QVERIFY(refused("\xff\n", 4, "密码不是 UTF-8 编码\n"));
        QVERIFY(refused(QByteArray(5000, 'x'), 4, "标准输入的第一行过长\n"));
        QVERIFY(refused("  \n", 1, "密码不能为空\n"));
        const AdminProgram unasked = run({QStringLiteral("password"), QStringLiteral("alice")});
        QCOMPARE(unasked.complaints,
                 QStringLiteral("没有终端可以输入密码；请用 --new-password-file\n"));
        QCOMPARE(unasked.code, 4);
        QVERIFY(signsIn("alice", "pw-alice"));
    }

    void usersAreDisabledAndEnabled()
    {
        for (const char* user : {"alice", "dora"}) {
            const QString name = QString::fromLatin1(user);
            const QByteArray password = QByteArray("pw-") + user;
            const AdminProgram disabled = run({QStringLiteral("disable"), name});
            QCOMPARE(disabled.output, QStringLiteral("已禁用用户“%1”。\n").arg(name));
            QCOMPARE(disabled.code, 0);
            QVERIFY(!signsIn(user, password));
            const AdminProgram enabled = run({QStringLiteral("enable"), name});
            QCOMPARE(enabled.output, QStringLiteral("已启用用户“%1”。\n").arg(name));
            QCOMPARE(enabled.code, 0);
            QVERIFY(signsIn(user, password));
        }
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("users")}).output,
                 QStringLiteral("owner,name,enabled\n,alice,1\n,carl,0\nalice,dora,1\n"));
    }

    void usersWhoCannotBeChangedAreRefused_data()
    {
        QTest::addColumn<QStringList>("command");
        for (const char* command : {"password", "enable", "disable"})
            QTest::newRow(command) << QStringList(QString::fromLatin1(command));
    }
    void usersWhoCannotBeChangedAreRefused()
    {
        QFETCH(QStringList, command);
        const auto complaint = [&](const QString& store, const QString& user, int code) {
            const AdminProgram run(store, command + QStringList(user));
            return run.code == code && run.output.isEmpty() ? run.complaints : QString();
        };
        QCOMPARE(complaint(m_store, QStringLiteral("nobody"), 1),
                 QStringLiteral("用户“nobody”不存在\n"));
        QCOMPARE(complaint(m_store, QString(256, QLatin1Char('x')), 1),
                 QStringLiteral("用户名过长\n"));
        QCOMPARE(complaint(m_store, QStringLiteral("a\u202eb"), 1),
                 QStringLiteral("用户名含有非法字符\n"));
        QCOMPARE(complaint(m_store, QString(), 1), QStringLiteral("用户名不能为空\n"));
        const QString missing = m_folder->filePath(QStringLiteral("missing.db"));
        QCOMPARE(complaint(missing, QStringLiteral("alice"), 3),
                 QStringLiteral("没有这个存储：%1；请先执行 create\n").arg(missing));
        const QString foreign =
            writeFile(m_folder->filePath(QStringLiteral("foreign.txt")), "no store at all");
        QVERIFY(complaint(foreign, QStringLiteral("alice"), 3)
                    .endsWith(QStringLiteral("所选文件不是授权数据库\n")));
    }

private:
    AdminProgram run(const QStringList& arguments) const { return {m_store, arguments}; }
    AdminProgram setFromInput(const char* user, const QByteArray& input) const
    {
        return {m_store,
                {QStringLiteral("--new-password-file"), QStringLiteral("-"),
                 QStringLiteral("password"), QString::fromLatin1(user)},
                input};
    }
    bool signsIn(const char* user, const QByteArray& password) const
    {
        backend::StoreOptions options;
        options.location = backend::StoreLocation::parse(m_store);
        return backend::Session::signIn(options, QString::fromLatin1(user),
                                        QString::fromUtf8(password))
                   .session != nullptr;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_store;
};

int main(int argc, char** argv)
{
    return runTest<AdminUsersTest>(argc, argv);
}

#include "AdminUsersTest.moc"
