#include "backend/client/Session.h"
#include "tests/admin/AdminProgram.h"
#include "tests/admin/AdminTerminal.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace {

const QByteArray usersCsv = "\xef\xbb\xbfname,password,enabled\r\n"
                            "alice,pw-alice,1\r\n"
                            "bob,\"pw,\"\"bob\"\"\",\r\n"
                            "carl,pw-carl,0\r\n";
const QByteArray accountsCsv = "owner,type,platform_id,broker_id,number,secret,alias\n"
                               "alice,futures,1,9999,880001,s1,\n"
                               "alice,股票,1,9999,880002,s2,备用账户\n"
                               "alice,1,1,9999,880003,s3,\n";

} // namespace

class AdminCommandTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        m_folder = std::make_unique<QTemporaryDir>();
        m_store = m_folder->filePath(QStringLiteral("data/store.db"));
        QCOMPARE(run({QStringLiteral("create")}).code, 0);
    }

    void cleanup()
    {
        m_folder.reset();
        TestCase::cleanup();
    }

    void aStoreIsMadeForItsOwnerAlone()
    {
        QCOMPARE(QFile::permissions(m_store) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        QCOMPARE(run({QStringLiteral("create")}).code, 0);
        QCOMPARE(run({QStringLiteral("verify")}).code, 0);
    }

    void whatIsImportedIsListedAndSignsIn()
    {
        QCOMPARE(import("platforms", "kind,platform_id,name\nfutures,1,期货平台\n").code, 0);
        QCOMPARE(import("brokers", "kind,platform_id,broker_id,name\nfutures,1,9999,公司\n").code,
                 0);
        const AdminProgram users = import("users", usersCsv);
        QCOMPARE(users.output, QStringLiteral("已添加 3 条记录，拒绝 0 条。\n"));
        QCOMPARE(users.code, 0);
        QCOMPARE(import("sub-users", "owner,name,password\nalice,dora,pw-dora\n").code, 0);
        QCOMPARE(import("accounts", accountsCsv).code, 0);
        QCOMPARE(import("sub-accounts", "platform_id,broker_id,number,parent_number\n"
                                        "1,9999,880003,880001\n")
                     .code,
                 0);
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("users")}).output,
                 QStringLiteral("owner,name,enabled\n,alice,1\n,bob,1\n,carl,0\nalice,dora,1\n"));
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("accounts")}).output,
                 QStringLiteral("owner,type,platform_id,broker_id,sub_type,number,alias,"
                                "parent_number\n"
                                "alice,futures,1,9999,0,880001,,\n"
                                "alice,stock,1,9999,0,880002,备用账户,\n"
                                "alice,futures,1,9999,0,880003,,880001\n"));
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("grants")}).output.count(u'\n'), 1);
        backend::StoreOptions options;
        options.location = backend::StoreLocation::parse(m_store);
        QVERIFY(
            backend::Session::signIn(options, QStringLiteral("bob"), QStringLiteral("pw,\"bob\""))
                .session);
        QVERIFY(
            !backend::Session::signIn(options, QStringLiteral("carl"), QStringLiteral("pw-carl"))
                 .session);
    }

    void refusedRowsAreReportedAndTheOthersTaken()
    {
        QCOMPARE(import("users", usersCsv).code, 0);
        const AdminProgram run =
            import("accounts", "owner,type,platform_id,broker_id,number,secret\n"
                               "alice,futures,1,9999,1,s\n"
                               "nobody,futures,1,9999,2,s\n"
                               "alice,bonds,1,9999,3,s\n"
                               "alice,futures,one,9999,4,s\n"
                               "alice,futures,1,9999,5\n"
                               "alice,futures,1,9999,1,again\n"
                               "alice,futures,1,9999,\xff,s\n"
                               "alice,futures,1,9999,,s\n"
                               "alice,futures,1,9999,\"\x1b[31m6\",s\n"
                               "alice,futures,1,9999,7,s\n");
        QCOMPARE(run.code, 1);
        QCOMPARE(run.output, QStringLiteral("已添加 2 条记录，拒绝 8 条。\n"));
        QCOMPARE(run.complaints,
                 QStringLiteral("第 3 行：用户“nobody”不存在\n"
                                "第 4 行：列 type 的值“bonds”应为 futures 或 stock\n"
                                "第 5 行：列 platform_id 的值“one”应为整数\n"
                                "第 6 行：有 5 个字段，应为 6 个\n"
                                "第 7 行：账号“1”已存在\n"
                                "第 8 行：不是 UTF-8 编码\n"
                                "第 9 行：账号不能为空\n"
                                "第 10 行：账号信息含有非法字符或过长\n"));
        QCOMPARE(AdminCommandTest::run({QStringLiteral("list"), QStringLiteral("accounts")})
                     .output.count(u'\n'),
                 3);
    }

    void aTerminalShowsHowFarItIs()
    {
        const QString path = writeFile(m_folder->filePath(QStringLiteral("users.csv")), usersCsv);
        AdminTerminal terminal(m_store, {QStringLiteral("import"), QStringLiteral("users"), path});
        QCOMPARE(terminal.finish(), 0);
        const QString shown = QString::fromUtf8(terminal.shown());
        QVERIFY2(shown.contains(QStringLiteral("添加 [")), qPrintable(shown));
        QVERIFY2(shown.contains(QStringLiteral("] 100%")), qPrintable(shown));
        QVERIFY2(shown.contains(QStringLiteral("已添加 3 条记录")), qPrintable(shown));
    }

    void strictTakesAllOrNone()
    {
        const QByteArray csv = "name,password\nalice,a\n,b\ncarl,c\n";
        const AdminProgram strict = import("users", csv, {QStringLiteral("--strict")});
        QCOMPARE(strict.code, 1);
        QCOMPARE(strict.complaints, QStringLiteral("第 3 行：用户名不能为空\n"));
        QCOMPARE(strict.output, QStringLiteral("已添加 0 条记录，拒绝 1 条。\n"));
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("users")}).output.count(u'\n'), 1);
        QCOMPARE(import("users", csv).code, 1);
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("users")}).output.count(u'\n'), 3);
    }

    void complaintsCannotSteerTheTerminal()
    {
        const AdminProgram run = import("sub-users", "owner,name,password\n\"\x1b[2J\",x,y\n");
        QCOMPARE(run.code, 1);
        QVERIFY(!run.complaints.contains(QChar(0x1b)));
    }

    void filesWithPasswordsMustBePrivate()
    {
        const QString path = writeFile(m_folder->filePath(QStringLiteral("users.csv")), usersCsv,
                                       QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
        const AdminProgram refused = run({QStringLiteral("import"), QStringLiteral("users"), path});
        QCOMPARE(refused.code, 4);
        QVERIFY(refused.complaints.contains(QStringLiteral("chmod 600")));
        QCOMPARE(run({QStringLiteral("list"), QStringLiteral("users")}).output.count(u'\n'), 1);
        // Whoever may read this learns no secret.
        const QString platforms =
            writeFile(m_folder->filePath(QStringLiteral("platforms.csv")),
                      "kind,platform_id,name\nstock,1,x\n",
                      QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        QCOMPARE(run({QStringLiteral("import"), QStringLiteral("platforms"), platforms}).code, 0);
    }

    void filesThatAreNoneAreRefused()
    {
        QCOMPARE(run({QStringLiteral("import"), QStringLiteral("users"),
                      m_folder->filePath(QStringLiteral("missing.csv"))})
                     .code,
                 4);
        QCOMPARE(
            run({QStringLiteral("import"), QStringLiteral("platforms"), m_folder->path()}).code, 4);
        QCOMPARE(import("users", "").code, 4);
        QCOMPARE(import("users", "name\nx\n").code, 4);
        // Nobody writes into the pipe, and the device never ends.
        const QString pipe = m_folder->filePath(QStringLiteral("pipe"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const QString loop = m_folder->filePath(QStringLiteral("loop"));
        QVERIFY(QFile::link(loop, loop));
        for (const QString& path : {pipe, loop, QStringLiteral("/dev/zero")}) {
            const AdminProgram refused =
                run({QStringLiteral("import"), QStringLiteral("platforms"), path});
            QCOMPARE(refused.code, 4);
            QVERIFY2(refused.complaints.contains(path), qPrintable(refused.complaints));
        }
    }

    void hostileFilesAreRefusedInAFewWords_data()
    {
        QTest::addColumn<QByteArray>("csv");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("complaint");
        const QByteArray header = "kind,platform_id,name\n";
        const QByteArray good = "futures,1,x\n";
        constexpr qsizetype million = 1'000'000;
        const QByteArray megabyte = QByteArray("x").repeated(million);
        const auto row = [](const char* name, const QByteArray& csv, int code, const char* text) {
            QTest::newRow(name) << csv << code << QString::fromUtf8(text);
        };
        row("a long field", header + "stock,2," + megabyte + "\n" + good, 1,
            "第 2 行：字段过长，最多 4096 字节\n");
        row("a long field in quotes", header + "stock,2,\"" + megabyte + "\"\n" + good, 1,
            "第 2 行：字段过长，最多 4096 字节\n");
        row("a long word", header + QByteArray("y").repeated(4000) + ",2,z\n" + good, 1,
            "第 2 行：列 kind 的值“yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy…”应为 futures 或 "
            "stock\n");
        row("many fields", header + QByteArray(",").repeated(million) + "\n" + good, 1,
            "第 2 行：字段过多\n");
        row("no end of quotes", header + good + "stock,2,\"" + megabyte, 1,
            "第 3 行：引号没有结束，文件的其余部分都在其中\n");
        row("a null character", header + QByteArray("stock,2,a\0b\n", 12) + good, 1,
            "第 2 行：含有空字符\n");
        row("carriage returns alone", "kind,platform_id,name\rfutures,1,x\r", 4,
            "文件 %1：标题行无法读取：没有加引号的字段中有回车符\n");
        row("UTF-16", QByteArray("\xff\xfek\0i\0n\0d\0", 10), 4,
            "文件 %1 是 UTF-16 编码，应为 UTF-8\n");
        row("UTF-16 the other way round", QByteArray("\xfe\xff\0k\0i\0n\0d", 10), 4,
            "文件 %1 是 UTF-16 编码，应为 UTF-8\n");
        row("a column twice", "kind,name,kind,platform_id\n", 4,
            "文件 %1：标题行中的列“kind”重复\n");
        row("a long column", megabyte + "\n", 4,
            "文件 %1：标题行无法读取：字段过长，最多 4096 字节\n");
        row("a long column that is not known", QByteArray("y").repeated(4000) + "\n", 4,
            "文件 %1：标题行中有不认识的列“yyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyyy…”，可用的列："
            "kind、platform_id、name\n");
        row("only a mark", "\xef\xbb\xbf", 4, "文件 %1 是空的，第一行应为标题行\n");
    }
    void hostileFilesAreRefusedInAFewWords()
    {
        QFETCH(QByteArray, csv);
        QFETCH(int, code);
        QFETCH(QString, complaint);
        const AdminProgram run = import("platforms", csv);
        QCOMPARE(run.complaints,
                 complaint.contains(QStringLiteral("%1"))
                     ? complaint.arg(m_folder->filePath(QStringLiteral("import.csv")))
                     : complaint);
        QCOMPARE(run.code, code);
        QCOMPARE(run.output,
                 code == 1 ? QStringLiteral("已添加 1 条记录，拒绝 1 条。\n") : QString());
    }

    void manyRowsAreTakenAndCounted()
    {
        QByteArray csv = "kind,platform_id,name\n";
        for (int i = 1; i <= 5000; ++i)
            csv += (i % 2 == 0 ? "futures," : "bonds,") + QByteArray::number(i) + ",x\n";
        const AdminProgram run = import("platforms", csv);
        QCOMPARE(run.output, QStringLiteral("已添加 2500 条记录，拒绝 2500 条。\n"));
        QCOMPARE(run.complaints.count(QLatin1Char('\n')), 2500);
    }

    void refusedRowsLeaveTheBarItsLine()
    {
        const QString path = writeFile(m_folder->filePath(QStringLiteral("platforms.csv")),
                                       "kind,platform_id,name\nfutures,1,x\nbonds,2,x\n");
        AdminTerminal terminal(m_store,
                               {QStringLiteral("import"), QStringLiteral("platforms"), path});
        QCOMPARE(terminal.finish(), 1);
        // The bar is erased before the line is written.
        QVERIFY2(terminal.shown().contains("\r\033[K第 3 行："), terminal.shown().constData());
    }

    void wrongCommandLinesAreExplained_data()
    {
        QTest::addColumn<QStringList>("arguments");
        const auto row = [](const char* name, const QString& arguments) {
            QTest::newRow(name) << arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        };
        row("nothing", QString());
        row("no store", QStringLiteral("create"));
        row("no command", QStringLiteral("--store x.db"));
        row("unknown command", QStringLiteral("--store x.db drop"));
        row("unknown option", QStringLiteral("--store x.db --password x create"));
        row("too few arguments", QStringLiteral("--store x.db import users"));
        row("too many arguments", QStringLiteral("--store x.db verify all"));
        row("unknown kind", QStringLiteral("--store x.db list secrets"));
        row("strict listing", QStringLiteral("--store x.db --strict verify"));
        row("no user", QStringLiteral("--store x.db disable"));
        row("a password on the command line", QStringLiteral("--store x.db password alice x"));
        row("a new password for nobody",
            QStringLiteral("--store x.db --new-password-file - enable alice"));
        row("a new password from nowhere",
            QStringLiteral("--store x.db --new-password-file= password alice"));
        row("unknown engine", QStringLiteral("--store mysql://a/b verify"));
        row("a password in the address", QStringLiteral("--store postgresql://a:b@c/d verify"));
        row("a password for a file", QStringLiteral("--store x.db --ask-password verify"));
    }
    void wrongCommandLinesAreExplained()
    {
        QFETCH(QStringList, arguments);
        const AdminProgram run(arguments);
        QCOMPARE(run.code, 2);
        QVERIFY(!run.complaints.isEmpty());
        QCOMPARE(run.output, QString());
    }

    void aBackupBringsEverythingBack()
    {
        QCOMPARE(import("users", usersCsv).code, 0);
        QCOMPARE(import("accounts", accountsCsv).code, 0);
        const QString backup = m_folder->filePath(QStringLiteral("backup.db"));
        QCOMPARE(run({QStringLiteral("backup"), backup}).code, 0);
        QCOMPARE(QFile::permissions(backup) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
        // Neither a backup nor a store is ever written over.
        QCOMPARE(run({QStringLiteral("backup"), backup}).code, 4);
        QCOMPARE(run({QStringLiteral("restore"), backup}).code, 3);
        const QString second = m_folder->filePath(QStringLiteral("new/store.db"));
        QCOMPARE(AdminProgram(second, {QStringLiteral("restore"), backup}).code, 0);
        for (const QString& what :
             {QStringLiteral("users"), QStringLiteral("accounts"), QStringLiteral("grants")}) {
            QCOMPARE(AdminProgram(second, {QStringLiteral("list"), what}).output,
                     run({QStringLiteral("list"), what}).output);
        }
        backend::StoreOptions options;
        options.location = backend::StoreLocation::parse(second);
        QVERIFY(
            backend::Session::signIn(options, QStringLiteral("alice"), QStringLiteral("pw-alice"))
                .session);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList({QStringLiteral("backup.db"), QStringLiteral("import.csv")}));
    }

    void aDamagedBackupRestoresNothing()
    {
        QCOMPARE(import("users", usersCsv).code, 0);
        const QString backup = m_folder->filePath(QStringLiteral("backup.db"));
        QCOMPARE(run({QStringLiteral("backup"), backup}).code, 0);
        QFile file(backup);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(file.size() / 2));
        file.close();
        const QString target = m_folder->filePath(QStringLiteral("other/store.db"));
        QCOMPARE(AdminProgram(target, {QStringLiteral("restore"), backup}).code, 3);
        QVERIFY(!QFile::exists(target));
        QCOMPARE(
            QDir(m_folder->filePath(QStringLiteral("other"))).entryList(QDir::Files | QDir::Hidden),
            QStringList());
    }

    void onlyCreateMakesAStore()
    {
        const QString missing = m_folder->filePath(QStringLiteral("missing.db"));
        QCOMPARE(AdminProgram(missing, {QStringLiteral("verify")}).code, 3);
        QCOMPARE(AdminProgram(missing, {QStringLiteral("backup"), missing + u'2'}).code, 4);
        QVERIFY(!QFile::exists(missing));
        const QString foreign =
            writeFile(m_folder->filePath(QStringLiteral("foreign.txt")), "no store at all");
        QCOMPARE(AdminProgram(foreign, {QStringLiteral("create")}).code, 3);
    }

private:
    AdminProgram run(const QStringList& arguments) const { return {m_store, arguments}; }
    AdminProgram import(const char* kind, const QByteArray& csv,
                        const QStringList& options = {}) const
    {
        const QString path = writeFile(m_folder->filePath(QStringLiteral("import.csv")), csv);
        return {m_store,
                options + QStringList{QStringLiteral("import"), QString::fromLatin1(kind), path}};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_store;
};

int main(int argc, char** argv)
{
    return runTest<AdminCommandTest>(argc, argv);
}

#include "AdminCommandTest.moc"
