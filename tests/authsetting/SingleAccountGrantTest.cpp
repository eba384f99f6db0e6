#include "authsetting/shell/AuthSettingEvents.h"
#include "tests/authsetting/SingleAccountFixture.h"
#include "tests/support/TipTestCase.h"

#include <QRegularExpression>

#include <climits>

/// How the single account tab checks, grants and cancels.
class SingleAccountGrantTest : public TipTestCase
{
    Q_OBJECT

    static void typeGrant(SingleAccountFixture& test)
    {
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
        test.start()->setDate(QDate(2026, 3, 5));
        test.end()->setDate(QDate(2026, 3, 9));
    }

    /// Grants into a file up to the answer of the client.
    static void sendFileGrant(SingleAccountFixture& test, const QString& password)
    {
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/grant.taa"));
        dialogs.answerPassword(password);
        test.page->onFileAuthTriggered(false);
    }

private Q_SLOTS:
    void theButtonOpensTheMenuBelowItself()
    {
        SingleAccountFixture test;
        test.top.show();
        test.activate(test.own);
        QVERIFY(test.deliver(5, 1));
        QVERIFY(test.menu()->isVisible());
        const KZ::CMediumNormalButton* button = test.button();
        QCOMPARE(test.menu()->pos(), button->mapToGlobal(QPoint(0, button->height() + 1)));
        test.menu()->close();
        QVERIFY(test.top.events.isEmpty());
    }

    void otherClicksAreNotItsOwn()
    {
        SingleAccountFixture test;
        QVERIFY(test.deliver(5, 0));
        QVERIFY(test.deliver(5, 2));
        QCOMPARE(test.top.ids(), QVector<int>({5, 5}));
        QVERIFY(!test.menu()->isVisible());
    }

    void aFinishedGranteeIsCheckedUnlessEmpty()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        QVERIFY(test.deliver(68, 0));
        QVERIFY(test.services.client.checkedUsers.isEmpty());
        test.grantee()->setEditText(QStringLiteral("friend"));
        QVERIFY(test.deliver(68, 0));
        QCOMPARE(test.services.client.checkedUsers, QStringList(QStringLiteral("friend")));
        QVERIFY(test.deliver(68, 2));
        QCOMPARE(test.top.ids(), QVector<int>({68}));
    }

    void aFailedCheckIsToldAndBlocksNothing()
    {
        SingleAccountFixture test;
        typeGrant(test);
        Q_EMIT test.services.client.sigCheckAuthuserResult(QStringLiteral("friend"), true,
                                                           QStringLiteral("unused"));
        QVERIFY(tipTexts().isEmpty());
        Q_EMIT test.services.client.sigCheckAuthuserResult(QStringLiteral("friend"), false,
                                                           QStringLiteral("没有此人"));
        VERIFY_TIP(test.grantee(), QStringLiteral("无法对用户friend进行授权！错误信息：没有此人"),
                   3);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 1);
    }

    void leavingAnEmptyGranteeIsHinted()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        QVERIFY(test.deliver(88, 0));
        VERIFY_TIP(test.grantee(), QStringLiteral("被授权人不能为空"), 3);
        KZ::CMessageTip::closeAll();
        test.grantee()->setEditText(QStringLiteral("friend"));
        QVERIFY(test.deliver(88, 0));
        QVERIFY(tipTexts().isEmpty());
        QVERIFY(test.deliver(88, 1));
        QCOMPARE(test.top.ids(), QVector<int>({88}));
    }

    void onlyTheUserLeavesTheGrantee()
    {
        SingleAccountFixture test;
        test.top.resize(900, 500);
        test.top.show();
        test.top.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&test.top));
        test.activate(test.own);
        test.grantee()->setFocus();
        test.own->authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
        test.show(test.own);
        QVERIFY(!test.grantee()->isEnabled());
        QVERIFY2(tipTexts().isEmpty(), "a reload took the focus");
        test.own->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        test.show(test.own);
        test.grantee()->setFocus();
        test.page->hide();
        QVERIFY2(tipTexts().isEmpty(), "the page went out of sight");
        test.page->show();
        test.grantee()->setFocus();
        test.start()->setFocus();
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("被授权人不能为空")));
    }

    void leavingThePlatformsFieldSaysNothingAboutTheGrantee()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        QVERIFY(test.deliver(88, 0, static_cast<QWidget*>(test.field(0))));
        QVERIFY(tipTexts().isEmpty());
    }

    void daysAreCheckedWhenTheUserChangesThem_data()
    {
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("two") << 1 << QString() << true;
        QTest::newRow("one") << 0 << QStringLiteral("授权日期为1天") << true;
        QTest::newRow("inverted") << -1 << QStringLiteral("授权开始时间晚于结束时间") << false;
    }
    void daysAreCheckedWhenTheUserChangesThem()
    {
        QFETCH(int, days);
        QFETCH(QString, tip);
        for (const int editor : {4, 5}) {
            SingleAccountFixture test;
            test.page->setEnabled(true);
            test.show(test.own);
            test.start()->setDate(QDate(2026, 3, 5));
            test.end()->setDate(QDate(2026, 3, 5).addDays(days));
            QVERIFY(test.deliver(87, editor));
            if (tip.isEmpty())
                QVERIFY(tipTexts().isEmpty());
            else
                VERIFY_TIP(test.end(), tip, 2);
            QTEST(test.button()->isEnabled(), "enabled");
            KZ::CMessageTip::closeAll();
        }
    }

    void daysThatCannotBeEditedAreNotChecked()
    {
        SingleAccountFixture test;
        test.page->setEnabled(true);
        test.show(test.granted);
        test.end()->setDate(QDate(2026, 1, 1));
        QVERIFY(test.deliver(87, 4));
        QVERIFY(tipTexts().isEmpty());
        QVERIFY(!test.button()->isEnabled());
        QVERIFY(test.deliver(87, 3));
        QCOMPARE(test.top.ids(), QVector<int>({87}));
    }

    void becomingActiveDoesNotOfferAnInvertedRange()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        QVERIFY(test.button()->isEnabled());
        test.end()->setDate(testToday().addDays(-1));
        test.page->onActive();
        QVERIFY(!test.button()->isEnabled());
        QVERIFY(tipTexts().isEmpty());
    }

    void aServerGrantSendsOneRequestAndThenOneMessage()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->onServerAuthTriggered(false);

        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING}));
        QCOMPARE(test.top.events.first().param1, 2010101);
        QCOMPARE(test.top.events.first().param2, 1);
        QCOMPARE(test.services.client.calls.last(), QStringLiteral("addAuth"));
        QCOMPARE(test.services.client.addAuths.size(), 1);
        const FakeAuthClient::AddAuth& sent = test.services.client.addAuths.first();
        QCOMPARE(sent.grantee, QStringLiteral("friend"));
        QVERIFY(mbservice::isSameAccount(sent.account, *test.own));
        QCOMPARE(sent.limit.startTime, secondsOf(QDate(2026, 3, 5)));
        QCOMPARE(sent.limit.endTime, secondsOf(QDate(2026, 3, 9)));
        QCOMPARE(sent.limit.availableMarginRatio, GW::CAuthLimit::noMarginRatio);
        QCOMPARE(sent.tag, GW::requestTag(test.page));
        QVERIFY(sent.toServer);

        QCOMPARE(test.services.messages.messages.size(), 1);
        const FakeMsgService::Message& message = test.services.messages.messages.first();
        QCOMPARE(message.text, QStringLiteral("账户friend授权, 撤销所有执行任务"));
        QCOMPARE(message.accountKey, test.own->key());
        QCOMPARE(int(message.type), 0);
        QCOMPARE(int(message.level), 1);
    }

    void aServerGrantNeedsAGranteeAndAnAccount()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.page->onServerAuthTriggered(false);
        VERIFY_TIP(test.grantee(), QStringLiteral("被授权人不能为空"), 3);
        test.page->setKey(QStringLiteral("nobody"));
        test.grantee()->setEditText(QStringLiteral("friend"));
        test.page->onServerAuthTriggered(false);
        QVERIFY(test.services.client.addAuths.isEmpty());
        QVERIFY(test.services.messages.messages.isEmpty());
        QVERIFY(test.top.events.isEmpty());
    }

    void aServerGrantKeepsTheFractionOfThePercentageAndAFileDropsIt()
    {
        SingleAccountFixture test;
        typeGrant(test);
        QVERIFY(test.typeThreshold(QStringLiteral("50.5")).accepted);
        test.table()->setItemChecked(0, 0, true);
        test.page->onServerAuthTriggered(false);
        sendFileGrant(test, QStringLiteral("pw"));
        QCOMPARE(test.services.client.addAuths.size(), 2);
        QCOMPARE(test.services.client.addAuths.at(0).limit.availableMarginRatio, 0.505);
        QCOMPARE(test.services.client.addAuths.at(1).limit.availableMarginRatio, 0.5);
        QVERIFY(!test.services.client.addAuths.at(1).toServer);
        QCOMPARE(test.services.messages.messages.size(), 2);
    }

    void theServersPasswordIsTrimmedAndTheFilesIsNot()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->slotAuthPasswordForServer(QStringLiteral("  pass word "));
        test.wait();
        const GW::CAuthLimit limit;
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("friend"), *test.own, limit,
                                                     QStringLiteral("ref"),
                                                     GW::requestTag(test.page), true, {}, false);
        QCOMPARE(test.services.client.exports.last().password, QStringLiteral("pass word"));
        typeGrant(test);
        sendFileGrant(test, QStringLiteral("  pass word "));
        test.wait();
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("friend"), *test.own, limit,
                                                     QStringLiteral("ref"),
                                                     GW::requestTag(test.page), true, {}, false);
        QCOMPARE(test.services.client.exports.last().password, QStringLiteral("  pass word "));
    }

    void aFileGrantAsksForPathAndPassword()
    {
        SingleAccountFixture test;
        typeGrant(test);
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/grant.taa"));
        dialogs.answerPassword(QStringLiteral("pw"));
        const QDateTime before = QDateTime::currentDateTime();
        test.page->onFileAuthTriggered(false);
        QCOMPARE(dialogs.titles,
                 QStringList({QStringLiteral("选择保存路径"), QStringLiteral("输入授权密码")}));
        QCOMPARE(dialogs.filters, QStringList(QStringLiteral("Auth Files(*.taa)")));
        QCOMPARE(dialogs.parents, QVector<QWidget*>({test.page, test.page}));
        QCOMPARE(dialogs.echoModes, QVector<QLineEdit::EchoMode>({QLineEdit::Password}));
        static const QRegularExpression name(
            QStringLiteral("^vell_auth_(\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d)$"));
        const QRegularExpressionMatch match = name.match(dialogs.proposals.first());
        QVERIFY2(match.hasMatch(), qPrintable(dialogs.proposals.first()));
        const QDateTime proposed =
            QDateTime::fromString(match.captured(1), QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
        QVERIFY(qAbs(before.secsTo(proposed)) < 60);
        QCOMPARE(test.services.client.addAuths.size(), 1);
    }

    void cancellingEitherDialogSendsNothing()
    {
        SingleAccountFixture test;
        typeGrant(test);
        {
            ModalDriver dialogs;
            dialogs.answerFile(QString());
            test.page->onFileAuthTriggered(false);
        }
        {
            ModalDriver dialogs;
            dialogs.answerFile(QStringLiteral("/tmp/grant.taa"));
            dialogs.cancelPassword();
            test.page->onFileAuthTriggered(false);
        }
        QVERIFY(test.services.client.addAuths.isEmpty());
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }

    void aFileGrantWithoutGranteeOpensNoDialog()
    {
        SingleAccountFixture test;
        test.activate(test.own);
        test.page->onFileAuthTriggered(false);
        VERIFY_TIP(test.grantee(), QStringLiteral("被授权人不能为空"), 3);
    }

    void thePageMayDieUnderThePasswordDialog()
    {
        SingleAccountFixture test;
        typeGrant(test);
        ModalDriver dialogs;
        dialogs.answerFile(QStringLiteral("/tmp/grant.taa"));
        dialogs.expect([&test](QWidget*) { delete test.page; });
        test.page->onFileAuthTriggered(false);
        QVERIFY(test.services.client.addAuths.isEmpty());
    }

    void aSuccessfulServerGrantReloadsAndTells()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref-1"));
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                               GW::EVENT_RELOAD_NAVIGATOR}));
        QCOMPARE(test.top.events.at(1).param2, 0);
        const EventRecorder::Event& reload = test.top.events.at(2);
        QCOMPARE(reload.param1, 0);
        QCOMPARE(reload.param2, 0);
        QCOMPARE(reload.text, QString());
        QVERIFY(!reload.data);
        QCOMPARE(test.grantee()->currentText(), QString());
        QVERIFY(test.services.client.exports.isEmpty());
        VERIFY_TIP(test.button(), QStringLiteral("授权成功"), 3);
    }

    void anEarlyAnswerWaitsForTheBusyBar()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->onServerAuthTriggered(false);
        test.clock.now += 0.65;
        test.services.client.answerAdd(true);
        QCOMPARE(test.top.events.size(), 1);
        QVERIFY(tipTexts().isEmpty());
        QTRY_COMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void aRefusedGrantTellsWhyAndKeepsWhatWasTyped()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        test.services.client.answerAdd(false, QStringLiteral("对方已停用"));
        VERIFY_TIP(test.button(), QStringLiteral("授权失败！原因：对方已停用"), 3);
        QVERIFY(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("friend"));
    }

    void aFileGrantIsWrittenWhenItsAnswerComes()
    {
        SingleAccountFixture test;
        typeGrant(test);
        sendFileGrant(test, QStringLiteral("pw"));
        QVERIFY(test.services.client.exports.isEmpty());
        test.wait();
        mbservice::CAccountInfo echoed = test.services.client.addAuths.first().account;
        echoed.accountPrivate = "not the owner's";
        GW::CAuthLimit limit;
        limit.startTime = 1;
        limit.endTime = 2;
        limit.availableMarginRatio = 0.25;
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("echoed friend"), echoed, limit,
                                                     QStringLiteral("ref-1"),
                                                     GW::requestTag(test.page), true, {}, false);
        QCOMPARE(test.services.client.exports.size(), 1);
        const FakeAuthClient::Export& written = test.services.client.exports.first();
        QVERIFY(written.oneGrantForm);
        QVERIFY(!written.flag);
        QCOMPARE(written.path, QStringLiteral("/tmp/grant.taa"));
        QCOMPARE(written.password, QStringLiteral("pw"));
        const GW::CAuthDetail& grant = *written.grants.first();
        QCOMPARE(grant.grantRef, QStringLiteral("ref-1"));
        QCOMPARE(grant.grantor, QStringLiteral("trader01"));
        QCOMPARE(grant.grantee, QStringLiteral("echoed friend"));
        QVERIFY(mbservice::isSameAccount(grant.account, *test.own));
        QCOMPARE(grant.account.accountPrivate, std::string("secret of 1001"));
        QCOMPARE(grant.limit.startTime, 1);
        QCOMPARE(grant.limit.endTime, 2);
        QCOMPARE(grant.limit.availableMarginRatio, 0.25);
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        VERIFY_TIP(test.button(), QStringLiteral("生成授权文件成功"), 3);
    }

    void oneRecordServesEveryGrantOfTheTab()
    {
        SingleAccountFixture test;
        for (const QString& ref : {QStringLiteral("ref-1"), QStringLiteral("ref-2")}) {
            typeGrant(test);
            sendFileGrant(test, QStringLiteral("pw"));
            test.wait();
            test.services.client.answerAdd(true, QString(), ref);
        }
        const QVector<FakeAuthClient::Export>& written = test.services.client.exports;
        QCOMPARE(written.size(), 2);
        QCOMPARE(written[0].grants.first().get(), written[1].grants.first().get());
        QCOMPARE(written[1].grants.first()->grantRef, QStringLiteral("ref-2"));
    }

    void twoAnswersWithinTheBusyTimeWriteTheLaterGrantTwice()
    {
        SingleAccountFixture test;
        typeGrant(test);
        sendFileGrant(test, QStringLiteral("pw"));
        // The dialog was closed and opened again while the first answer was still out.
        sendFileGrant(test, QStringLiteral("other pw"));
        test.clock.now += 0.68;
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref-1"));
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref-2"));
        QTRY_COMPARE(test.services.client.exports.size(), 2);
        for (const FakeAuthClient::Export& written : test.services.client.exports) {
            QCOMPARE(written.password, QStringLiteral("other pw"));
            QCOMPARE(written.grants.first()->grantRef, QStringLiteral("ref-2"));
        }
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("生成授权文件成功"),
                                          QStringLiteral("生成授权文件成功")}));
    }

    void aFileThatCannotBeWrittenReloadsNothing()
    {
        SingleAccountFixture test;
        typeGrant(test);
        sendFileGrant(test, QStringLiteral("pw"));
        test.services.client.exportResult = 3;
        test.wait();
        test.services.client.answerAdd(true, QString(), QStringLiteral("ref-1"));
        VERIFY_TIP(test.button(), QStringLiteral("生成授权文件失败"), 3);
        QVERIFY(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("friend"));
    }

    void otherPagesResultsChangeNothing()
    {
        SingleAccountFixture test;
        typeGrant(test);
        test.page->onServerAuthTriggered(false);
        test.wait();
        const QVariant other(GW::requestTag(&test.top));
        Q_EMIT test.services.client.sigAddAuthResult(QStringLiteral("friend"), *test.own, {}, {},
                                                     other, true, {}, true);
        Q_EMIT test.services.client.sigDelAuthResult(QStringLiteral("friend"), *test.own, other,
                                                     false, QStringLiteral("no"));
        QCOMPARE(test.top.events.size(), 1);
        QVERIFY(tipTexts().isEmpty());
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("friend"));
    }

    void aGrantedAccountIsCancelledByTheSameButton()
    {
        SingleAccountFixture test;
        test.activate(test.granted);
        test.grantee()->setEditText(QStringLiteral("somebody else"));
        test.button()->click();
        QVERIFY(!test.menu()->isVisible());
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING}));
        QCOMPARE(test.services.client.delAuths.size(), 1);
        const FakeAuthClient::DelAuth& sent = test.services.client.delAuths.first();
        QCOMPARE(sent.grantee, QStringLiteral("friend"));
        QVERIFY(mbservice::isSameAccount(sent.account, *test.granted));
        QCOMPARE(sent.tag, GW::requestTag(test.page));
    }

    void cancellingWhereTheServiceHasNoGrantDoesNothing()
    {
        SingleAccountFixture test;
        test.activate(test.granted);
        test.services.client.grants.clear();
        QVERIFY(test.deliver(5, 1));
        QVERIFY(test.services.client.delAuths.isEmpty());
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(!test.menu()->isVisible());
    }

    void aCancelledGrantReloadsWithoutATip()
    {
        SingleAccountFixture test;
        test.activate(test.granted);
        test.button()->click();
        test.services.client.grants.clear();
        test.granted->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        test.wait();
        test.services.client.answerDel(true);
        QCOMPARE(test.button()->text(), QStringLiteral("授权"));
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        QVERIFY(tipTexts().isEmpty());
    }

    void aRefusedCancelTellsWhy()
    {
        SingleAccountFixture test;
        test.activate(test.granted);
        test.button()->click();
        test.wait();
        test.services.client.answerDel(false, QStringLiteral("已过期"));
        VERIFY_TIP(test.button(), QStringLiteral("取消授权失败。错误信息：已过期"), 2);
        QVERIFY(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
    }

    void theButtonIsReadyAgainAfterWhatAResultBrought()
    {
        FakeServices services;
        StandingClock clock;
        EventRecorder top;
        const auto account =
            services.user.addAccount(1, 1, "9000", "1001", mbservice::AUTH_TYPE_NOT_GRANTED);
        GW::CAuthSettingPage page(201, 20101, &top);
        auto* tab = new GW::CAuthSettingSingleAccountAuthorizeTabPage(true, &page);
        page.addTabPage(QStringLiteral("账号授权"), tab);
        page.setKey(account->key());
        QVERIFY(!tab->isEnabled());
        page.activateCurrentTab();
        QVERIFY(tab->isEnabled());
        auto* button = byId<KZ::CMediumNormalButton>(tab, 1);
        QVERIFY2(button->isEnabled(), "without touching a date");

        tab->findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("friend"));
        tab->onServerAuthTriggered(false);
        services.grant(account, QStringLiteral("friend"), testToday(), testToday().addDays(7));
        clock.now += 1;
        services.client.answerAdd(true);
        QCOMPARE(button->text(), QStringLiteral("取消授权"));
        QVERIFY2(button->isEnabled(), "the grant can be taken back at once");

        button->click();
        services.client.grants.clear();
        account->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        clock.now += 1;
        services.client.answerDel(true);
        QCOMPARE(button->text(), QStringLiteral("授权"));
        QVERIFY2(button->isEnabled(), "the account can be granted again at once");
    }
};

int main(int argc, char** argv)
{
    return runTest<SingleAccountGrantTest>(argc, argv);
}

#include "SingleAccountGrantTest.moc"
