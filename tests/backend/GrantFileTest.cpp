#include "backend/client/GrantFileWriter.h"
#include "backend/sealedfile/GrantPayload.h"
#include "backend/sealedfile/SealedFile.h"
#include "tests/backend/GrantFileFixture.h"
#include "tests/support/TestCase.h"

using namespace backend;

namespace {

// A store beside which something happens between its commit and the file.
class InterferedStore final : public StoreLink
{
public:
    explicit InterferedStore(UserStore& store) : m_store(store) {}
    UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat) override
    {
        UserStore::Exported exported = m_store.commitExport(grants, repeat);
        afterCommit();
        return exported;
    }
    void revertExport(const QStringList& references) override { m_store.revertExport(references); }

    std::function<void()> afterCommit;
    QStringList stateThen;

private:
    UserStore& m_store;
};

} // namespace

/// Writing grants into a file.
class GrantFileTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theOneGrantFormWritesTheSame()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto grant = desks.prepare(1, name::bob);
        QCOMPARE(desks.alice->authClient()->exportAuth(desks.path(QStringLiteral("one.taa")),
                                                       password, grant, false),
                 0);
        QCOMPARE(desks.import(name::bob, QStringLiteral("one.taa")), QStringList(accepted(1)));
    }

    void theOwnersOwnRecordGoesIntoTheFile()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto grant = desks.prepare(2, name::bob);
        grant->grantor = QStringLiteral("mallory");
        grant->account.accountPrivate = "made up";
        grant->account.accountAlias = "made up";
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {grant}), ExportError::None);
        SecretBytes payload;
        QCOMPARE(
            openBytes(contentOf(desks.path(QStringLiteral("a.taa"))), password, true, &payload),
            SealedFileError::None);
        Details records;
        QCOMPARE(decodeGrants(payload.view(), &records), SealedFileError::None);
        QCOMPARE(records.size(), 1);
        QCOMPARE(records[0]->grantor, name::alice);
        QCOMPARE(records[0]->account.accountPrivate, std::string("secret-2"));
        QCOMPARE(records[0]->account.accountAlias, std::string("备用账户"));
    }

    void aFileThatCannotBeMadeLeavesNothing_data()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("no grants") << int(ExportError::NoGrants);
        QTest::newRow("null grant") << int(ExportError::NoReference);
        QTest::newRow("no reference") << int(ExportError::NoReference);
        QTest::newRow("unknown reference") << int(ExportError::UnknownReference);
        QTest::newRow("empty password") << int(ExportError::EmptyPassword);
        QTest::newRow("blank password") << int(ExportError::EmptyPassword);
        QTest::newRow("empty path") << int(ExportError::BadPath);
        QTest::newRow("a folder") << int(ExportError::BadPath);
        QTest::newRow("no such folder") << int(ExportError::Write);
        QTest::newRow("another account") << int(ExportError::Altered);
        QTest::newRow("another grantee") << int(ExportError::Altered);
        QTest::newRow("longer days") << int(ExportError::Altered);
        QTest::newRow("another ratio") << int(ExportError::Altered);
        QTest::newRow("the same grant twice") << int(ExportError::Seal);
        QTest::newRow("replaced by a later preparation") << int(ExportError::UnknownReference);
        QTest::newRow("granted on the server meanwhile") << int(ExportError::Refused);
        QTest::newRow("grantee disabled meanwhile") << int(ExportError::Refused);
        QTest::newRow("days over meanwhile") << int(ExportError::Refused);
    }

    void aFileThatCannotBeMadeLeavesNothing()
    {
        QFETCH(int, error);
        const QString what = QString::fromLatin1(QTest::currentDataTag());
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        auto good = desks.prepare(1, name::dora);
        auto grant = desks.prepare(2, name::dora);
        Details grants{good, grant};
        QString path = desks.path(QStringLiteral("grant.taa"));
        QString typed = password;
        ClientSpy spy(desks.alice->authClient());
        if (what == QStringLiteral("no grants"))
            grants.clear();
        else if (what == QStringLiteral("null grant"))
            grants[1] = nullptr;
        else if (what == QStringLiteral("no reference"))
            grant->grantRef.clear();
        else if (what == QStringLiteral("unknown reference"))
            grant->grantRef = QString(32, u'0');
        else if (what == QStringLiteral("empty password"))
            typed.clear();
        else if (what == QStringLiteral("blank password"))
            typed = QStringLiteral(" \u3000 ");
        else if (what == QStringLiteral("empty path"))
            path.clear();
        else if (what == QStringLiteral("a folder"))
            path = desks.fixture.folder();
        else if (what == QStringLiteral("no such folder"))
            path = desks.path(QStringLiteral("none/grant.taa"));
        else if (what == QStringLiteral("another account"))
            grant->account = StoreFixture::account(3);
        else if (what == QStringLiteral("another grantee"))
            grant->grantee = name::bob;
        else if (what == QStringLiteral("longer days"))
            grant->limit = desks.fixture.days(0, 8);
        else if (what == QStringLiteral("another ratio"))
            grant->limit.availableMarginRatio = 0.5;
        else if (what == QStringLiteral("the same grant twice"))
            grants.append(grant);
        else if (what == QStringLiteral("replaced by a later preparation"))
            desks.prepare(2, name::bob);
        else if (what == QStringLiteral("granted on the server meanwhile"))
            desks.alice->authClient()->addAuth(name::bob, StoreFixture::account(2), grant->limit,
                                               {}, true);
        else if (what == QStringLiteral("grantee disabled meanwhile"))
            desks.alice->authClient()->setSubUser(name::dora, false);
        else if (what == QStringLiteral("days over meanwhile"))
            desks.fixture.setNow(desks.fixture.options().now().addDays(8));
        const QStringList filesBefore = desks.taaFiles();
        const int result = desks.alice->authClient()->exportAuth(path, typed, grants);
        QCOMPARE(result, error);
        QCOMPARE(desks.taaFiles(), filesBefore);
        // All or nothing: the good grant did not become current either.
        QCOMPARE(authType(*desks.alice, 1), 1);
        QCOMPARE(desks.fixture.grantsOf(1), QStringList(QStringLiteral("dora prepared file")));
    }

    void aNameWithoutExtensionIsCompletedAndNeverReplacesAForeignFile()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto first = desks.prepare(1, name::bob);
        QCOMPARE(desks.write(QStringLiteral("vell_auth_2024-03-15_10-00-00"), {first}),
                 ExportError::None);
        const QString path = desks.path(QStringLiteral("vell_auth_2024-03-15_10-00-00.taa"));
        const QByteArray content = contentOf(path);
        QVERIFY(content.size() > 100);
        const auto second = desks.prepare(2, name::bob);
        QCOMPARE(desks.write(QStringLiteral("vell_auth_2024-03-15_10-00-00"), {second}),
                 ExportError::FileExists);
        QCOMPARE(contentOf(path), content);
        QCOMPARE(authType(*desks.alice, 2), 1);
        // With the full name the user was asked about it.
        QCOMPARE(desks.write(QStringLiteral("vell_auth_2024-03-15_10-00-00.taa"), {second}),
                 ExportError::None);
        QVERIFY(contentOf(path) != content);
    }

    void theVeryRequestThatWroteAFileMayWriteItAgain()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const Details grants{desks.prepare(1, name::bob), desks.prepare(2, name::bob)};
        QCOMPARE(desks.write(QStringLiteral("twice"), grants), ExportError::None);
        const QByteArray content = contentOf(desks.path(QStringLiteral("twice.taa")));
        ClientSpy spy(desks.alice->authClient());
        spy.wait(1);
        QCOMPARE(desks.write(QStringLiteral("twice"), grants), ExportError::None);
        QVERIFY(contentOf(desks.path(QStringLiteral("twice.taa"))) != content);
        // Nothing changed for anybody.
        QTest::qWait(200);
        QCOMPARE(spy.lines.size(), 1);
        // Into another file it would exist twice.
        QCOMPARE(desks.write(QStringLiteral("other"), grants), ExportError::NotPrepared);
        QCOMPARE(desks.import(name::bob, QStringLiteral("twice.taa"), 2),
                 QStringList({accepted(1), accepted(2)}));
    }

    void aFileThatCannotTakeItsNameUndoesTheGrant_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<bool>("folderInTheWay");
        QTest::addColumn<int>("error");
        QTest::newRow("a folder of that name")
            << QStringLiteral("late.taa") << true << int(ExportError::Write);
        QTest::newRow("a file of the completed name")
            << QStringLiteral("late") << false << int(ExportError::FileExists);
    }

    void aFileThatCannotTakeItsNameUndoesTheGrant()
    {
        QFETCH(QString, fileName);
        QFETCH(bool, folderInTheWay);
        QFETCH(int, error);
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto grant = desks.prepare(1, name::bob);
        const QString path = desks.path(QStringLiteral("late.taa"));
        const auto store = desks.fixture.storeOf(name::alice);
        InterferedStore link(*store);
        link.afterCommit = [&] {
            link.stateThen = desks.fixture.grantsOf(1);
            if (folderInTheWay)
                QDir().mkpath(path + QStringLiteral("/full"));
            else
                put(path, "somebody else's");
        };
        GrantFileWriter writer(link, name::alice, true);
        QCOMPARE(int(writer.write(desks.path(fileName), password, {grant}, AccountSnapshot())),
                 error);
        // It was current for a moment, and is not any more.
        QCOMPARE(link.stateThen, QStringList(QStringLiteral("bob current file")));
        QCOMPARE(desks.fixture.grantsOf(1), QStringList(QStringLiteral("bob prepared file")));
        QVERIFY(store->model().own[0].grant.isNull());
        if (!folderInTheWay)
            QCOMPARE(contentOf(path), QByteArray("somebody else's"));
        QVERIFY(!desks.taaFiles().join(QLatin1Char(' ')).contains(QStringLiteral("partial")));
        // The user may try again under another name.
        link.afterCommit = [] {};
        QCOMPARE(writer.write(desks.path(QStringLiteral("again.taa")), password, {grant},
                              AccountSnapshot()),
                 ExportError::None);
    }
};

int main(int argc, char** argv)
{
    return runTest<GrantFileTest>(argc, argv);
}

#include "GrantFileTest.moc"
