#include "backend/client/AuthClient.h"
#include "tests/backend/GrantFileFixture.h"
#include "tests/support/TestCase.h"

#include <QSignalSpy>

using namespace backend;

/// What the audit trail and the client tell of files that were not written.
class GrantFileAuditTest : public TestCase
{
    Q_OBJECT

    static bool isServer()
    {
        return qEnvironmentVariable("AUTHSETTING_TEST_ENGINE") == QStringLiteral("postgresql");
    }

    /// The entries about files, newest first; reasons in brackets.
    static QStringList fileEntries(const Session& session)
    {
        QStringList lines;
        const QVector<AuditEntry> trail = session.auditTrail(100);
        for (const AuditEntry& entry : trail) {
            if (entry.action == QStringLiteral("export"))
                lines.append(entry.ok ? entry.otherUser + QStringLiteral(" ok")
                                      : entry.otherUser + QStringLiteral(" (%1)").arg(entry.error));
        }
        return lines;
    }

private Q_SLOTS:
    void aFileThatTheStoreRefusesIsInTheTrail()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto good = desks.prepare(1, name::dora);
        const auto late = desks.prepare(2, name::bob);
        desks.fixture.setNow(desks.fixture.options().now().addDays(8));
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {good, late}), ExportError::Refused);
        const QStringList entries = fileEntries(*desks.alice);
        QCOMPARE(entries.size(), 2);
        QVERIFY(entries.contains(QStringLiteral("dora (授权结束时间早于今天)")));
        QVERIFY(entries.at(0).startsWith(QStringLiteral("bob (")) ||
                entries.at(1).startsWith(QStringLiteral("bob (")));
        // Whoever was to get it reads nothing of it.
        QVERIFY(fileEntries(*desks.fixture.signIn(name::bob)).isEmpty());
    }

    void whatIsNotTheUsersLeavesNoTrace()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto foreign = desks.prepare(1, name::bob);
        foreign->account.accountId = "nobody's";
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {foreign}), ExportError::Altered);
        QVERIFY(fileEntries(*desks.alice).isEmpty());
    }

    void aFileThatCannotBeWrittenIsInTheTrailOfALocalStore()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto grant = desks.prepare(1, name::bob);
        QCOMPARE(desks.write(QStringLiteral("none/a.taa"), {grant}), ExportError::Write);
        const QStringList entries = fileEntries(*desks.alice);
        // A server writes down what it has seen itself.
        QCOMPARE(entries.size(), isServer() ? 0 : 1);
        if (!isServer())
            QVERIFY(entries.first().startsWith(QStringLiteral("bob (")));
        QCOMPARE(desks.fixture.grantsOf(1), QStringList(QStringLiteral("bob prepared file")));
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {grant}), ExportError::None);
        QCOMPARE(fileEntries(*desks.alice).first(), QStringLiteral("bob ok"));
    }

    void theClientTellsTheReason_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no password")
            << QStringLiteral("a.taa") << QString() << QStringLiteral("密码为空");
        QTest::newRow("no file") << QString() << password << QStringLiteral("文件路径无效");
        QTest::newRow("another file of the name")
            << QStringLiteral("there") << password << QStringLiteral("同名文件已存在");
    }

    void theClientTellsTheReason()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, typed);
        QFETCH(QString, reason);
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QVERIFY(put(desks.path(QStringLiteral("there.taa")), "somebody else's"));
        const auto grant = desks.prepare(1, name::bob);
        QStringList told;
        Details concerned;
        connect(qobject_cast<AuthClient*>(desks.alice->authClient()), &AuthClient::fileNotWritten,
                this, [&](const Details& grants, const QString& why) {
                    told.append(why);
                    concerned = grants;
                });
        QVERIFY(desks.alice->authClient()->exportAuth(
                    fileName.isEmpty() ? QString() : desks.path(fileName), typed, {grant}) != 0);
        QCOMPARE(told, QStringList(reason));
        QCOMPARE(concerned, Details{grant});
        QCOMPARE(desks.write(QStringLiteral("b.taa"), {grant}), ExportError::None);
        QCOMPARE(told.size(), 1);
    }
};

int main(int argc, char** argv)
{
    return runTest<GrantFileAuditTest>(argc, argv);
}

#include "GrantFileAuditTest.moc"
