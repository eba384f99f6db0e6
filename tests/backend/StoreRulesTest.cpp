#include "backend/store/PasswordHash.h"
#include "backend/store/TextRules.h"
#include "tests/backend/StoreFixture.h"
#include "tests/support/TestCase.h"

#include <limits>

using namespace backend;

namespace {

using Change = std::function<void(StoreRequest&, const StoreFixture&)>;

StoreReply only(UserStore& store, const StoreRequest& request)
{
    return store.run({request}).value(0);
}

} // namespace

Q_DECLARE_METATYPE(Change)

class StoreRulesTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aGrantOnTheServerTakesEffect()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        StoreRequest request = fixture.add(1, name::bob);
        request.limit.availableMarginRatio = 0.505;
        const StoreReply reply = only(*store, request);
        QVERIFY2(reply.ok, qPrintable(reply.error));
        QCOMPARE(reply.reference.size(), 32);

        const CurrentGrant grant = store->model().own[0].grant;
        QCOMPARE(grant.reference, reply.reference);
        QCOMPARE(grant.otherName, name::bob);
        QCOMPARE(grant.firstDay, fixture.today());
        QCOMPARE(grant.lastDay, fixture.today().addDays(7));
        QCOMPARE(grant.ratio, 0.505);
        QCOMPARE(store->takeChanges().own, QVector<int>{0});

        // Exactly so for whoever reads the store next.
        const auto again = fixture.storeOf(name::alice);
        const CurrentGrant stored = again->model().own[0].grant;
        QCOMPARE(stored.reference, grant.reference);
        QCOMPARE(stored.firstDay, grant.firstDay);
        QCOMPARE(stored.lastDay, grant.lastDay);
        QCOMPARE(stored.ratio, grant.ratio);
        const auto received = fixture.storeOf(name::bob);
        QCOMPARE(received->model().received.size(), 1);
        QCOMPARE(received->model().received[0].grant.otherName, name::alice);
        QCOMPARE(received->model().received[0].info.accountPrivate, std::string("secret-1"));
    }

    void referencesAreRandom()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QSet<QString> references;
        for (int i = 0; i < 20; ++i)
            references.insert(only(*store, fixture.add(1, name::bob, false)).reference);
        QCOMPARE(references.size(), 20);
    }

    void aGrantThatBreaksARuleIsRefused_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("error");
        const auto row = [](const char* name, const char* error, Change change) {
            QTest::newRow(name) << change << QString::fromUtf8(error);
        };
        row("another user's account", "账号不存在或不属于当前用户",
            [](auto& request, auto&) { request.account = StoreFixture::account(20); });
        row("no account at all", "账号不存在或不属于当前用户",
            [](auto& request, auto&) { request.account = StoreFixture::account(999); });
        row("a sub-account", "子账户不能授权",
            [](auto& request, auto&) { request.account = StoreFixture::account(7); });
        row("an account with sub-accounts", "含有子账户的账号不能授权",
            [](auto& request, auto&) { request.account = StoreFixture::account(6); });
        row("nobody", "用户不存在",
            [](auto& request, auto&) { request.user = QStringLiteral("zoe"); });
        row("another spelling", "用户不存在",
            [](auto& request, auto&) { request.user = QStringLiteral("Bob"); });
        row("oneself", "不能授权给自己", [](auto& request, auto&) { request.user = name::alice; });
        row("a disabled user", "用户已被禁用",
            [](auto& request, auto&) { request.user = name::carl; });
        row("a disabled sub-user", "用户已被禁用",
            [](auto& request, auto&) { request.user = name::erin; });
        row("start after end", "授权开始时间晚于结束时间",
            [](auto& request, auto& f) { request.limit = f.days(2, 1); });
        row("end in the past", "授权结束时间早于今天",
            [](auto& request, auto& f) { request.limit = f.days(-5, -1); });
        const char* ratio = "可用保证金比例必须大于0且不超过100%";
        const auto withRatio = [](double value) -> Change {
            return
                [value](auto& request, auto& f) { request.limit = f.daysWithRatio(0, 1, value); };
        };
        row("ratio zero", ratio, withRatio(0.0));
        row("ratio below zero", ratio, withRatio(-0.5));
        row("ratio above one", ratio, withRatio(1.0000001));
        row("ratio not a number", ratio, withRatio(std::numeric_limits<double>::quiet_NaN()));
        row("ratio infinite", ratio, withRatio(std::numeric_limits<double>::infinity()));
        row("ratio minus infinite", ratio, withRatio(-std::numeric_limits<double>::infinity()));
    }

    void aGrantThatBreaksARuleIsRefused()
    {
        QFETCH(Change, change);
        QFETCH(QString, error);
        for (const bool toServer : {true, false}) {
            StoreFixture fixture;
            QVERIFY(fixture.fill());
            const auto store = fixture.storeOf(name::alice);
            StoreRequest request = fixture.add(1, name::bob, toServer);
            change(request, fixture);
            const StoreReply reply = only(*store, request);
            QVERIFY(!reply.ok);
            QCOMPARE(reply.error, error);
            QCOMPARE(reply.reference, QString());
            QVERIFY(fixture.admin()->grants().isEmpty());
            QVERIFY(!store->takeChanges().any());
        }
    }

    void whatIsJustAllowedIsAccepted()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        StoreRequest oneDay = fixture.add(1, name::bob);
        oneDay.limit = fixture.days(0, 0);
        StoreRequest long_ago = fixture.add(2, name::dora);
        long_ago.limit = fixture.days(-30, 0);
        StoreRequest future = fixture.add(3, name::bob);
        future.limit = fixture.daysWithRatio(100, 200, 1.0);
        StoreRequest tiny = fixture.add(4, name::bob);
        tiny.limit = fixture.daysWithRatio(0, 1, 1e-9);
        const QVector<StoreReply> replies = store->run({oneDay, long_ago, future, tiny});
        for (const StoreReply& reply : replies)
            QVERIFY2(reply.ok, qPrintable(reply.error));
    }

    void nothingIsGrantedTwice()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        const QVector<StoreReply> replies =
            store->run({fixture.add(1, name::bob), fixture.add(1, name::dora),
                        fixture.add(1, name::bob, false), fixture.add(2, name::bob)});
        QVERIFY(replies[0].ok);
        QCOMPARE(replies[1].error, QStringLiteral("账号已授权，请先取消原有授权"));
        QCOMPARE(replies[2].error, QStringLiteral("账号已授权，请先取消原有授权"));
        QVERIFY(replies[3].ok);
        QCOMPARE(only(*store, fixture.add(1, name::bob)).error,
                 QStringLiteral("账号已授权，请先取消原有授权"));
    }

    void twoDesksOfOneUserCannotGrantTheSameAccount()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto here = fixture.storeOf(name::alice);
        const auto there = fixture.storeOf(name::alice);
        QVERIFY(only(*here, fixture.add(1, name::bob)).ok);
        // This one has not looked since.
        QCOMPARE(only(*there, fixture.add(1, name::dora)).error,
                 QStringLiteral("账号已授权，请先取消原有授权"));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
        QVERIFY(there->takeChanges().any());
        QCOMPARE(there->model().own[0].grant.otherName, name::bob);
    }

    void aReceivedAccountCannotBePassedOn()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        QVERIFY(only(*fixture.storeOf(name::alice), fixture.add(1, name::bob)).ok);
        const auto bob = fixture.storeOf(name::bob);
        QCOMPARE(only(*bob, fixture.add(1, name::dora)).error,
                 QStringLiteral("账号不存在或不属于当前用户"));
        QCOMPARE(only(*bob, fixture.cancel(1, name::bob)).error,
                 QStringLiteral("账号不存在或不属于当前用户"));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob current server")));
    }

    void onlyOnesOwnGrantToThatUserIsCancelled()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QVERIFY(only(*store, fixture.add(1, name::bob)).ok);
        QCOMPARE(only(*store, fixture.cancel(2, name::bob)).error,
                 QStringLiteral("账号没有有效的授权"));
        QCOMPARE(only(*store, fixture.cancel(1, name::dora)).error,
                 QStringLiteral("账号没有授权给该用户"));
        QVERIFY(only(*store, fixture.cancel(1, name::bob)).ok);
        QCOMPARE(only(*store, fixture.cancel(1, name::bob)).error,
                 QStringLiteral("账号没有有效的授权"));
        QVERIFY(store->model().own[0].grant.isNull());
        QVERIFY(fixture.storeOf(name::bob)->model().received.isEmpty());
        QVERIFY(only(*store, fixture.add(1, name::dora)).ok);
        QCOMPARE(fixture.grantsOf(1), QStringList({QStringLiteral("bob cancelled server"),
                                                   QStringLiteral("dora current server")}));
    }

    void aPreparedGrantLeavesTheAccountFree()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        const StoreReply first = only(*store, fixture.add(1, name::bob, false));
        QVERIFY(first.ok);
        QVERIFY(store->model().own[0].grant.isNull());
        QVERIFY(!store->takeChanges().any());
        const StoreReply second = only(*store, fixture.add(1, name::dora, false));
        QVERIFY(second.ok);
        QVERIFY(first.reference != second.reference);
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("dora prepared file")));
        QVERIFY(fixture.storeOf(name::bob)->model().received.isEmpty());
    }

    void oneRefusalDoesNotFailTheOthers()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        const QVector<StoreReply> replies =
            store->run({fixture.add(1, name::bob), fixture.add(7, name::bob),
                        fixture.add(2, QStringLiteral("zoe")), fixture.add(3, name::bob),
                        fixture.cancel(1, name::bob)});
        QVector<bool> ok;
        for (const StoreReply& reply : replies)
            ok.append(reply.ok);
        QCOMPARE(ok, QVector<bool>({true, false, false, true, true}));
        QCOMPARE(fixture.grantsOf(1), QStringList(QStringLiteral("bob cancelled server")));
        QCOMPARE(fixture.grantsOf(3), QStringList(QStringLiteral("bob current server")));
    }

    void hostileTextsAreRefusedAndLeaveNothing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("NUL") << QString(QStringLiteral("bo") + QChar(0) + QStringLiteral("b"));
        QTest::newRow("control") << QStringLiteral("bob\n");
        QTest::newRow("right-to-left override") << QStringLiteral("\u202ebob");
        QTest::newRow("isolate") << QStringLiteral("bob\u2067");
        QTest::newRow("zero width space") << QStringLiteral("bo\u200bb");
        QTest::newRow("byte order mark") << QStringLiteral("\ufeffbob");
        QTest::newRow("half a surrogate pair") << QString(QChar(0xd800));
        QTest::newRow("line separator") << QStringLiteral("bob\u2028");
        QTest::newRow("tag character") << QStringLiteral("bob\U000E0041");
        QTest::newRow("256 characters") << QString(256, u'b');
        QTest::newRow("1 MB") << QString(1 << 20, u'b');
    }

    void hostileTextsAreRefusedAndLeaveNothing()
    {
        QFETCH(QString, text);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        QVector<StoreRequest> requests;
        requests.append(fixture.add(1, text));
        requests.append(fixture.add(1, text, false));
        requests.append(fixture.cancel(1, text));
        StoreRequest account = fixture.add(1, name::bob);
        // Qt would put a question mark in the place of half a pair.
        account.account.accountId =
            text == QString(QChar(0xd800)) ? std::string("\xed\xa0\x80") : text.toStdString();
        requests.append(account);
        StoreRequest check;
        check.user = text;
        requests.append(check);
        StoreRequest state;
        state.kind = StoreRequest::Kind::SetSubUser;
        state.user = text;
        requests.append(state);
        StoreRequest password;
        password.kind = StoreRequest::Kind::SetPassword;
        password.user = text;
        password.digest = passwordDigest(QStringLiteral("x"));
        requests.append(password);

        const auto auditSize = [&] { return fixture.signIn(name::alice)->auditTrail(1000).size(); };
        const qsizetype before = auditSize();
        const QVector<StoreReply> replies = store->run(requests);
        QCOMPARE(replies.size(), requests.size());
        for (const StoreReply& reply : replies) {
            QVERIFY(!reply.ok);
            QVERIFY(!reply.error.isEmpty() && reply.error.size() < 100);
            QVERIFY(text.isEmpty() || !reply.error.contains(text));
        }
        QVERIFY(fixture.admin()->grants().isEmpty());
        // Only the second sign-in was added.
        QCOMPARE(auditSize(), before + 1);
    }

    void bytesThatAreNoTextAreRefused()
    {
        QVERIFY(isPlainText("9999"));
        QVERIFY(isPlainText("中文"));
        QVERIFY(isPlainText(""));
        QVERIFY(!isPlainText("\xff\xfe"));
        QVERIFY(!isPlainText(std::string("a\0b", 3)));
        QVERIFY(!isPlainText(std::string(256, 'a')));
        QVERIFY(isPlainText(std::string(255, 'a')));
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        StoreRequest request = fixture.add(1, name::bob);
        request.account.brokerId = "\xff\xfe";
        QCOMPARE(only(*fixture.storeOf(name::alice), request).error,
                 QStringLiteral("账号信息含有非法字符或过长"));
    }

    void onlyAnEnabledOtherUserCanReceive()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto store = fixture.storeOf(name::alice);
        const auto check = [&](const QString& user) {
            StoreRequest request;
            request.user = user;
            const StoreReply reply = only(*store, request);
            return reply.ok ? QStringLiteral("ok") : reply.error;
        };
        QCOMPARE(check(name::bob), QStringLiteral("ok"));
        QCOMPARE(check(name::dora), QStringLiteral("ok"));
        QCOMPARE(check(name::alice), QStringLiteral("不能授权给自己"));
        QCOMPARE(check(name::erin), QStringLiteral("用户已被禁用"));
        QCOMPARE(check(QStringLiteral("zoe")), QStringLiteral("用户不存在"));
    }

    void aUserManagesOnlyHisOwnSubUsers()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        StoreRequest disable;
        disable.kind = StoreRequest::Kind::SetSubUser;
        disable.user = name::dora;
        const auto bob = fixture.storeOf(name::bob);
        QCOMPARE(only(*bob, disable).error, QStringLiteral("子用户不存在或不属于当前用户"));
        disable.user = name::alice;
        QVERIFY(!only(*fixture.storeOf(name::dora), disable).ok);

        const auto alice = fixture.storeOf(name::alice);
        disable.user = name::dora;
        QVERIFY(only(*alice, disable).ok);
        QCOMPARE(alice->model().subUsers[0].enabled, false);
        QVERIFY(alice->takeChanges().subUsers);
        // Again is fine, and nothing new.
        QVERIFY(only(*alice, disable).ok);
        QVERIFY(!alice->takeChanges().any());
    }

    void aPasswordHasToBeADigest_data()
    {
        QTest::addColumn<QString>("digest");
        QTest::newRow("empty") << QString();
        QTest::newRow("plain text") << QStringLiteral("secret");
        QTest::newRow("39 digits") << QString(39, u'a');
        QTest::newRow("41 digits") << QString(41, u'a');
        QTest::newRow("40 letters") << QString(40, u'z');
        QTest::newRow("full-width digits") << QString(40, QChar(0xff11));
    }

    void aPasswordHasToBeADigest()
    {
        QFETCH(QString, digest);
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        StoreRequest request;
        request.kind = StoreRequest::Kind::SetPassword;
        request.user = name::dora;
        request.digest = digest;
        QCOMPARE(only(*fixture.storeOf(name::alice), request).error,
                 QStringLiteral("密码摘要必须是40位十六进制字符"));
        QVERIFY(fixture.signIn(name::dora));
    }

    void aDisabledUsersRequestsAreRefused()
    {
        StoreFixture fixture;
        QVERIFY(fixture.fill());
        const auto dora = fixture.storeOf(name::dora);
        StoreRequest disable;
        disable.kind = StoreRequest::Kind::SetSubUser;
        disable.user = name::dora;
        QVERIFY(only(*fixture.storeOf(name::alice), disable).ok);
        StoreRequest check;
        check.user = name::bob;
        QCOMPARE(only(*dora, check).error, QStringLiteral("当前用户已被禁用"));
    }
};

int main(int argc, char** argv)
{
    return runTest<StoreRulesTest>(argc, argv);
}

#include "StoreRulesTest.moc"
