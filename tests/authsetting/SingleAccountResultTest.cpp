#include "authsetting/services/AccountKey.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "tests/authsetting/SingleAccountFixture.h"
#include "tests/support/TipTestCase.h"

/// What the single account tab makes of a click or a result when the account, or the one that is
/// shown, has changed since.
class SingleAccountResultTest : public TipTestCase
{
    Q_OBJECT

    static void sendFileGrant(SingleAccountFixture& test, const QString& path)
    {
        ModalDriver dialogs;
        dialogs.answerFile(path);
        if (!path.isEmpty())
            dialogs.answerPassword(QStringLiteral("pw"));
        test.page->onFileAuthTriggered(false);
    }

private Q_SLOTS:
    void theStateIsReadAtTheClick()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        // Granted and freed again from elsewhere; no reload has told the button.
        test.services.grant(test.own, QStringLiteral("friend"), testToday(), testToday());
        QVERIFY(test.deliver(5, 1));
        QVERIFY(!test.menu()->isVisible());
        QCOMPARE(test.services.client.delAuths.size(), 1);
        test.own->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        QVERIFY(test.deliver(5, 1));
        QVERIFY(test.menu()->isVisible());
        QCOMPARE(test.services.client.delAuths.size(), 1);
        test.menu()->close();
    }

    void aResultBelongsToItsAccountWhicheverIsShown()
    {
        SingleAccountFixture test;
        test.granted->accountPrivate = "secret of 1002";
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        sendFileGrant(test, QStringLiteral("/tmp/grant.taa"));
        test.wait();
        test.show(test.granted);
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref-1"));
        QCOMPARE(test.services.client.exports.size(), 1);
        const GW::CAuthDetail& grant = *test.services.client.exports.first().grants.first();
        QCOMPARE(GW::genAccountKeyQs(grant.account), test.own->key());
        QCOMPARE(grant.account.accountPrivate, std::string("secret of 1001"));
        // The reload that follows shows the account that the user looks at by now.
        QCOMPARE(test.field(2)->text(), QStringLiteral("1002"));
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("friend"));
    }

    void anAccountThatIsGoneKeepsTheSecretOfTheResult()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        sendFileGrant(test, QStringLiteral("/tmp/grant.taa"));
        test.wait();
        test.services.client.addAuths.first().account.accountPrivate = "echoed";
        test.services.user.accounts.removeFirst();
        test.services.client.answerAdd(true);
        QCOMPARE(test.services.client.exports.first().grants.first()->account.accountPrivate,
                 std::string("echoed"));
    }

    void aCancelledFileDialogLeavesAGrantThatIsStillOutItsPath()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        sendFileGrant(test, QStringLiteral("/tmp/grant.taa"));
        sendFileGrant(test, QString());
        test.wait();
        test.services.client.answerAdd(true);
        QCOMPARE(test.services.client.exports.size(), 1);
        QCOMPARE(test.services.client.exports.first().path, QStringLiteral("/tmp/grant.taa"));
    }

    void aResultThatComesTwiceIsShownTwice()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        sendFileGrant(test, QStringLiteral("/tmp/grant.taa"));
        test.wait();
        const FakeAuthClient::AddAuth request = test.services.client.addAuths.first();
        for (int times = 0; times < 2; ++times)
            Q_EMIT test.services.client.sigAddAuthResult(request.grantee, request.account,
                                                         request.limit, QStringLiteral("ref"),
                                                         request.tag, true, {}, false);
        QCOMPARE(test.services.client.exports.size(), 2);
        QCOMPARE(test.services.client.exports.last().password, QStringLiteral("pw"));
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 2);
        QCOMPARE(tipTexts().size(), 2);
    }

    void aResultAfterThePageDiedIsHarmless()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        test.page->onServerAuthTriggered(false);
        test.clock.now += 0.69;
        const FakeAuthClient::AddAuth request = test.services.client.addAuths.first();
        const auto answer = [&] {
            Q_EMIT test.services.client.sigAddAuthResult(request.grantee, request.account,
                                                         request.limit, QStringLiteral("ref"),
                                                         request.tag, true, {}, true);
        };
        answer();
        delete test.page;
        answer();
        QTest::qWait(40);
        QVERIFY(tipTexts().isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<SingleAccountResultTest>(argc, argv);
}

#include "SingleAccountResultTest.moc"
