#include "authsetting/services/UserConfig.h"
#include "backend/client/GrantFileWriter.h"
#include "backend/sealedfile/GrantPayload.h"
#include "backend/sealedfile/SealedFile.h"
#include "backend/store/Database.h"
#include "backend/store/ExportError.h"
#include "tests/backend/ClientSpy.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <boost/make_shared.hpp>

#include <sys/stat.h>

using namespace backend;

namespace {

using Details = QVector<boost::shared_ptr<GW::CAuthDetail>>;

const QString password = QStringLiteral("文件密码");

int authType(Session& session, int account)
{
    const auto record = session.userConfig()->getAccountData(StoreFixture::key(account));
    return record ? record->authType : -1;
}

bool put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
}

// Two users at their desks, and what passes between them.
class Desks
{
public:
    Desks() : ready(fixture.fill() != nullptr), alice(fixture.signIn(name::alice)) {}

    QString path(const QString& fileName) const
    {
        return QDir(fixture.folder()).filePath(fileName);
    }
    QStringList taaFiles() const
    {
        return QDir(fixture.folder()).entryList(QDir::Files | QDir::Hidden);
    }

    // The grant as a page builds it from the answer to its preparation.
    boost::shared_ptr<GW::CAuthDetail> prepare(int account, const QString& grantee)
    {
        return prepare(account, grantee, fixture.days(0, 7));
    }
    boost::shared_ptr<GW::CAuthDetail> prepare(int account, const QString& grantee,
                                               GW::CAuthLimit limit)
    {
        ClientSpy spy(alice->authClient());
        alice->authClient()->addAuth(grantee, StoreFixture::account(account), limit, {}, false);
        [&] { QTRY_COMPARE(spy.references.size(), 1); }();
        auto detail = boost::make_shared<GW::CAuthDetail>();
        detail->grantRef = spy.references.value(0);
        detail->grantor = name::alice;
        detail->grantee = grantee;
        detail->account = StoreFixture::account(account);
        detail->limit = limit;
        return detail;
    }
    ExportError write(const QString& fileName, const Details& grants)
    {
        return static_cast<ExportError>(
            alice->authClient()->exportAuth(path(fileName), password, grants));
    }

    // The answers to importing a file as `user`.
    QStringList import(const QString& user, const QString& fileName, int answers = 1)
    {
        const auto session = fixture.signIn(user);
        ClientSpy spy(session->authClient());
        const int result = session->authClient()->importAuth(path(fileName), password);
        if (result != 0)
            return {QStringLiteral("not opened: %1").arg(result)};
        QStringList lines = spy.wait(answers);
        lines.removeAll(QStringLiteral("changed"));
        return lines;
    }

    StoreFixture fixture;
    bool ready;
    std::unique_ptr<Session> alice;
};

// A store beside which something happens between its commit and the file.
class InterferedStore final : public StoreLink
{
public:
    explicit InterferedStore(UserStore& store) : m_store(store) {}
    UserStore::Exported commitExport(const QVector<FileGrant>& grants, bool repeat) override
    {
        const UserStore::Exported exported = m_store.commitExport(grants, repeat);
        afterCommit();
        return exported;
    }
    void revertExport(const QStringList& references) override { m_store.revertExport(references); }

    std::function<void()> afterCommit;
    QStringList stateThen;

private:
    UserStore& m_store;
};

QString accepted(int account)
{
    return QStringLiteral("valid %1 secret-%2 ok").arg(StoreFixture::key(account)).arg(account);
}

QString refused(int account, const QString& reason)
{
    return QStringLiteral("valid %1  账号%2：%3")
        .arg(StoreFixture::key(account))
        .arg(880000 + account)
        .arg(reason);
}

} // namespace

class GrantFileTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFileTakesAGrantFromOneDeskToTheOther()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const auto grant = desks.prepare(1, name::bob, desks.fixture.daysWithRatio(0, 7, 0.5));
        QCOMPARE(authType(*desks.alice, 1), 1);
        ClientSpy spy(desks.alice->authClient());
        QCOMPARE(desks.write(QStringLiteral("grant.taa"), {grant}), ExportError::None);

        // The grantor sees it at once, without a turn of the event loop.
        QCOMPARE(authType(*desks.alice, 1), 3);
        boost::shared_ptr<GW::CAuthDetail> detail;
        QVERIFY(desks.alice->authClient()->getAuthDetail(StoreFixture::key(1), detail));
        QCOMPARE(detail->grantRef, grant->grantRef);
        QCOMPARE(spy.wait(1), QStringList(QStringLiteral("changed")));
        struct stat status = {};
        QVERIFY(::stat(QFile::encodeName(desks.path(QStringLiteral("grant.taa"))).constData(),
                       &status) == 0);
        QCOMPARE(int(status.st_mode & 07777), 0600);

        // Until it is redeemed it gives the grantee nothing.
        const auto bob = desks.fixture.signIn(name::bob);
        QVERIFY(bob);
        QCOMPARE(authType(*bob, 1), -1);
        ClientSpy bobSpy(bob->authClient());
        QCOMPARE(bob->authClient()->importAuth(desks.path(QStringLiteral("grant.taa")), password),
                 0);
        QVERIFY(bobSpy.lines.isEmpty());
        int typeInside = 0;
        bobSpy.onLine = [&] { typeInside = authType(*bob, 1); };
        QCOMPARE(bobSpy.wait(2), QStringList({accepted(1), QStringLiteral("changed")}));
        QCOMPARE(typeInside, 2);
        const auto account = bob->userConfig()->getAccountData(StoreFixture::key(1));
        QCOMPARE(account->accountPrivate, std::string("secret-1"));
        QVERIFY(bob->authClient()->getAuthDetail(StoreFixture::key(1), detail));
        QCOMPARE(detail->grantor, name::alice);
        QCOMPARE(detail->limit.availableMarginRatio, 0.5);
        QCOMPARE(desks.fixture.grantsOf(1),
                 QStringList(QStringLiteral("bob current file redeemed")));
    }

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

    void aFileIsOpenedOnlyWithItsPassword_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("result");
        QTest::newRow("wrong password")
            << QByteArray() << QStringLiteral("x") << int(SealedFileError::WrongPassword);
        QTest::newRow("no password")
            << QByteArray() << QString() << int(SealedFileError::WrongPassword);
        QTest::newRow("foreign") << QByteArray(200, 'x') << password
                                 << int(SealedFileError::NotOurs);
        QTest::newRow("empty file") << QByteArray("") << password << int(SealedFileError::NotOurs);
    }

    void aFileIsOpenedOnlyWithItsPassword()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, typed);
        QFETCH(int, result);
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        const QString path = desks.path(QStringLiteral("a.taa"));
        if (!content.isNull())
            QVERIFY(put(path, content));
        const auto bob = desks.fixture.signIn(name::bob);
        QVERIFY(bob);
        ClientSpy spy(bob->authClient());
        const int code = bob->authClient()->importAuth(path, typed);
        QCOMPARE(code, result);
        QTest::qWait(200);
        QVERIFY(spy.lines.isEmpty());
        QCOMPARE(desks.fixture.grantsOf(1), QStringList(QStringLiteral("bob current file")));
    }

    void aMissingFileIsNotOpened()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.import(name::bob, QStringLiteral("none.taa")),
                 QStringList(QStringLiteral("not opened: %1").arg(int(SealedFileError::Io))));
    }

    void aDamagedFileIsNotOpened()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        QByteArray content = contentOf(desks.path(QStringLiteral("a.taa")));
        content.chop(1);
        QVERIFY(put(desks.path(QStringLiteral("a.taa")), content));
        QVERIFY(desks.import(name::bob, QStringLiteral("a.taa"))
                    .value(0)
                    .startsWith(QStringLiteral("not opened")));
    }

    void aFileIsRefusedWithItsReason_data()
    {
        QTest::addColumn<QString>("reason");
        QTest::newRow("redeemed before") << QStringLiteral("授权已导入过");
        QTest::newRow("cancelled") << QStringLiteral("授权已被取消");
        QTest::newRow("expired") << QStringLiteral("授权已过期");
        QTest::newRow("for another user") << QStringLiteral("授权文件不是授予当前用户的");
        QTest::newRow("unknown to the store") << QStringLiteral("授权不存在");
        QTest::newRow("account sold") << QStringLiteral("账号已不属于授权人");
        QTest::newRow("never written") << QStringLiteral("授权尚未生效");
    }

    void aFileIsRefusedWithItsReason()
    {
        QFETCH(QString, reason);
        const QString what = QString::fromLatin1(QTest::currentDataTag());
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        const QString file = QStringLiteral("a.taa");
        QCOMPARE(desks.write(file, {desks.prepare(1, name::bob)}), ExportError::None);
        QString user = name::bob;
        ClientSpy spy(desks.alice->authClient());
        if (what == QStringLiteral("redeemed before")) {
            QCOMPARE(desks.import(name::bob, file), QStringList(accepted(1)));
        } else if (what == QStringLiteral("cancelled")) {
            desks.alice->authClient()->delAuth(name::bob, StoreFixture::account(1), {});
            spy.wait(2);
        } else if (what == QStringLiteral("expired")) {
            desks.fixture.setNow(desks.fixture.options().now().addDays(8));
        } else if (what == QStringLiteral("for another user")) {
            user = name::dora;
        } else {
            Database database(desks.fixture.options());
            database.open(Database::Creation::Forbidden, Database::Inspection::Brief);
            if (what == QStringLiteral("unknown to the store"))
                database.execute(QStringLiteral("DELETE FROM grants"));
            else if (what == QStringLiteral("account sold"))
                database.execute(QStringLiteral("UPDATE accounts SET owner_id = 4 WHERE id = 1"));
            else if (what == QStringLiteral("never written"))
                database.execute(QStringLiteral("UPDATE grants SET state = 1"));
        }
        QCOMPARE(desks.import(user, file), QStringList(refused(1, reason)));
        const auto session = desks.fixture.signIn(user);
        QCOMPARE(authType(*session, 1), what == QStringLiteral("redeemed before") ? 2 : -1);
    }

    void aCancelledFileCannotComeBackWithALaterGrant()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.write(QStringLiteral("old.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        ClientSpy spy(desks.alice->authClient());
        desks.alice->authClient()->delAuth(name::bob, StoreFixture::account(1), {});
        spy.wait(2);
        QCOMPARE(desks.write(QStringLiteral("new.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        QCOMPARE(desks.import(name::bob, QStringLiteral("old.taa")),
                 QStringList(refused(1, QStringLiteral("授权已被取消"))));
        QCOMPARE(desks.import(name::bob, QStringLiteral("new.taa")), QStringList(accepted(1)));
    }

    void theGrantorCancelsAlsoAfterRedeeming()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        const auto bob = desks.fixture.signIn(name::bob);
        ClientSpy bobSpy(bob->authClient());
        QCOMPARE(bob->authClient()->importAuth(desks.path(QStringLiteral("a.taa")), password), 0);
        bobSpy.wait(2);
        desks.alice->authClient()->delAuth(name::bob, StoreFixture::account(1), {});
        QCOMPARE(bobSpy.wait(3).last(), QStringLiteral("changed"));
        QCOMPARE(authType(*bob, 1), -1);
    }

    void oneLastAnswerNamesEveryAccountThatWasRefused()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        Details grants;
        for (int account = 1; account <= 5; ++account)
            grants.append(desks.prepare(account, name::bob));
        QCOMPARE(desks.write(QStringLiteral("a.taa"), grants), ExportError::None);
        ClientSpy spy(desks.alice->authClient());
        desks.alice->authClient()->delAuth(name::bob, StoreFixture::account(2), {});
        desks.alice->authClient()->delAuth(name::bob, StoreFixture::account(4), {});
        spy.wait(3);
        const QString last =
            QStringLiteral("valid %1  账号备用账户：授权已被取消；账号880004：授权已被取消")
                .arg(StoreFixture::key(2));
        QCOMPARE(desks.import(name::bob, QStringLiteral("a.taa"), 5),
                 QStringList({accepted(1), accepted(3), accepted(5), last}));
    }

    void twoDesksThatRedeemAtOnceGetItOnce()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        for (int round = 1; round <= 5; ++round) {
            const QString file = QStringLiteral("round%1.taa").arg(round);
            QCOMPARE(desks.write(file, {desks.prepare(round, name::bob)}), ExportError::None);
            const auto here = desks.fixture.signIn(name::bob);
            const auto there = desks.fixture.signIn(name::bob);
            QVERIFY(here && there);
            ClientSpy hereSpy(here->authClient());
            ClientSpy thereSpy(there->authClient());
            QCOMPARE(here->authClient()->importAuth(desks.path(file), password), 0);
            QCOMPARE(there->authClient()->importAuth(desks.path(file), password), 0);
            const auto answer = [](const QStringList& lines) {
                return lines.filter(QStringLiteral("valid")).value(0);
            };
            QTRY_VERIFY(!answer(hereSpy.lines).isEmpty() && !answer(thereSpy.lines).isEmpty());
            QStringList answers{answer(hereSpy.lines), answer(thereSpy.lines)};
            QVERIFY(answers.removeOne(accepted(round)));
            QVERIFY2(answers[0].endsWith(QStringLiteral("授权已导入过")), qPrintable(answers[0]));
            QTRY_COMPARE(authType(*here, round), 2);
            QTRY_COMPARE(authType(*there, round), 2);
        }
    }

    void aMadeUpFileGivesNothing()
    {
        // Whoever knows the password of no file can still make one; only the store decides.
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        ClientSpy spy(desks.alice->authClient());
        GW::CAuthLimit limit = desks.fixture.days(0, 7);
        desks.alice->authClient()->addAuth(name::bob, StoreFixture::account(3), limit, {}, true);
        spy.wait(2);
        auto madeUp = boost::make_shared<GW::CAuthDetail>();
        madeUp->grantRef = QStringLiteral("x\u202e' OR 1=1");
        madeUp->grantor = name::alice;
        madeUp->grantee = name::bob;
        madeUp->account = StoreFixture::account(1);
        madeUp->account.accountAlias = "\xe2\x80\xae"
                                       "evil";
        madeUp->limit = limit;
        auto borrowed = boost::make_shared<GW::CAuthDetail>(*madeUp);
        borrowed->grantRef = spy.references[0];
        SecretBytes payload;
        QCOMPARE(encodeGrants({madeUp, borrowed}, &payload), SealedFileError::None);
        QByteArray file;
        QCOMPARE(sealToBytes(payload.view(), password, SealProfile::Test, &file),
                 SealedFileError::None);
        QVERIFY(put(desks.path(QStringLiteral("evil.taa")), file));
        QCOMPARE(desks.import(name::bob, QStringLiteral("evil.taa")),
                 QStringList(QStringLiteral("valid %1  账号（无法显示）：授权不存在；"
                                            "账号（无法显示）：授权不是文件授权")
                                 .arg(StoreFixture::key(1))));
    }

    void aTestSealIsRefusedByARealSession()
    {
        Desks desks;
        QVERIFY(desks.ready && desks.alice);
        QCOMPARE(desks.write(QStringLiteral("a.taa"), {desks.prepare(1, name::bob)}),
                 ExportError::None);
        StoreOptions options = desks.fixture.options();
        options.cheapCryptographyForTests = false;
        const SignInResult bob = Session::signIn(options, name::bob, QStringLiteral("pw-bob"));
        QVERIFY(bob.session);
        QCOMPARE(
            bob.session->authClient()->importAuth(desks.path(QStringLiteral("a.taa")), password),
            int(SealedFileError::Unsupported));
    }
};

int main(int argc, char** argv)
{
    return runTest<GrantFileTest>(argc, argv);
}

#include "GrantFileTest.moc"
