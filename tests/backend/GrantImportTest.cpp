#include "backend/sealedfile/GrantPayload.h"
#include "backend/sealedfile/SealedFile.h"
#include "tests/backend/GrantFileFixture.h"
#include "tests/support/TestCase.h"

#include <sys/stat.h>

using namespace backend;

namespace {

QString refused(int account, const QString& reason)
{
    return QStringLiteral("valid %1  账号%2：%3")
        .arg(StoreFixture::key(account))
        .arg(880000 + account)
        .arg(reason);
}

} // namespace

/// Importing a file at the other desk.
class GrantImportTest : public TestCase
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
            if (what == QStringLiteral("unknown to the store"))
                desks.fixture.meddle(QStringLiteral("DELETE FROM grants"));
            else if (what == QStringLiteral("account sold"))
                desks.fixture.meddle(
                    QStringLiteral("UPDATE accounts SET owner_id = (SELECT id FROM users WHERE "
                                   "name = 'dora') WHERE account_number = '880001'"));
            else if (what == QStringLiteral("never written"))
                desks.fixture.meddle(QStringLiteral("UPDATE grants SET state = 1"));
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
        QCOMPARE(bobSpy.wait(3).constLast(), QStringLiteral("changed"));
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
    return runTest<GrantImportTest>(argc, argv);
}

#include "GrantImportTest.moc"
