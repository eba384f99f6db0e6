#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/BatchPageTools.h"
#include "tests/authsetting/ModalDriver.h"
#include "tests/support/TipTestCase.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimeZone>

#include <ctime>

namespace {

struct FileGrant
{
    FileGrant()
    {
        first = test.add("10");
        second = test.add("11");
        test.page->reloadData();
        test.show();
        test.tickAllAndName(QStringLiteral("bob"));
    }

    void grant(const QString& password)
    {
        ModalDriver user;
        user.answerFile(path);
        user.answerPassword(password);
        test.page->onFileAuthTriggered(false);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("grant.taa"));
    BatchUnderTest test;
    boost::shared_ptr<GW::CAccount> first;
    boost::shared_ptr<GW::CAccount> second;
};

} // namespace

class BatchFileGrantTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theFileDialogProposesANameWithTheTime()
    {
        FileGrant grant;
        QString directory;
        QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
        ModalDriver user;
        user.expect([&](QWidget* window) {
            auto* dialog = qobject_cast<QFileDialog*>(window);
            mode = dialog->acceptMode();
            directory = dialog->directory().absolutePath();
            user.titles.append(dialog->windowTitle());
            user.filters = dialog->nameFilters();
            user.proposals.append(
                dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text());
            user.parents.append(dialog->parentWidget());
            dialog->reject();
        });
        const QDateTime before = QDateTime::currentDateTime();
        grant.test.page->onFileAuthTriggered(false);
        QCOMPARE(user.titles, QStringList(QStringLiteral("选择保存路径")));
        QCOMPARE(user.parents, QVector<QWidget*>{grant.test.page});
        QCOMPARE(mode, QFileDialog::AcceptSave);
        QCOMPARE(user.filters, QStringList(QStringLiteral("Auth Files(*.taa)")));
        QCOMPARE(directory, QDir::currentPath());
        const QString prefix = QStringLiteral("vell_auth_");
        QVERIFY(user.proposals[0].startsWith(prefix));
        const QDateTime time = QDateTime::fromString(user.proposals[0].mid(prefix.size()),
                                                     QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
        QVERIFY(time.isValid());
        QVERIFY(before.secsTo(time) >= -1);
        QVERIFY(time <= QDateTime::currentDateTime());
        // Cancelled: nothing further is asked and nothing requested.
        QVERIFY(grant.test.services.client.calls.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
    }

    void thePasswordIsAskedForUnreadably()
    {
        FileGrant grant;
        QLineEdit::EchoMode mode = QLineEdit::Normal;
        ModalDriver user;
        user.answerFile(grant.path);
        user.expect([&](QWidget* window) {
            user.titles.append(window->windowTitle());
            mode = window->findChild<QLineEdit*>(QStringLiteral("halden_input_edit"))->echoMode();
            window->close();
        });
        grant.test.page->onFileAuthTriggered(false);
        QCOMPARE(user.titles.last(), QStringLiteral("输入授权密码"));
        QCOMPARE(mode, QLineEdit::Password);
        QVERIFY(grant.test.services.client.calls.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
    }

    void theGrantsAreAskedForWithoutTheServerAndThenWritten()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral(" secret 1 "));
        FakeAuthClient& client = grant.test.services.client;
        QCOMPARE(client.addAuths.size(), 2);
        QVERIFY(!client.addAuths[0].toServer);
        QVERIFY(!client.addAuths[1].toServer);
        QCOMPARE(grant.test.services.messages.messages.size(), 2);
        QVERIFY(client.exports.isEmpty());
        clock.now += 1;
        client.answerAdd(true, QString(), QStringLiteral("ref1"));
        QVERIFY(client.exports.isEmpty());
        client.answerAdd(true, QString(), QStringLiteral("ref2"));
        QCOMPARE(client.exports.size(), 1);
        const FakeAuthClient::Export& written = client.exports[0];
        QCOMPARE(written.path, grant.path);
        QCOMPARE(written.password, QStringLiteral(" secret 1 "));
        QVERIFY(!written.oneGrantForm);
        QCOMPARE(written.grants.size(), 2);
        const auto detail = written.grants[0];
        QCOMPARE(detail->grantRef, QStringLiteral("ref1"));
        QCOMPARE(detail->grantor, QStringLiteral("trader01"));
        QCOMPARE(detail->grantee, QStringLiteral("bob"));
        QCOMPARE(GW::genAccountKeyQs(detail->account), grant.first->key());
        QCOMPARE(detail->limit.startTime, client.addAuths[0].limit.startTime);
        QCOMPARE(detail->limit.endTime, client.addAuths[0].limit.endTime);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("生成授权文件成功")));
        QCOMPARE(KZ::CMessageTip::visibleTips()[0]->anchor(), grant.test.button);
        QCOMPARE(KZ::CMessageTip::visibleTips()[0]->kind(), 3);
        QCOMPARE(grant.test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        // Reloaded: the ticks are gone.
        QVERIFY(!grant.test.table->isItemChecked(0, 0));
    }

    void theOwnersSecretGoesIntoTheFileNotTheEchoedOne()
    {
        FileGrant grant;
        StandingClock clock;
        grant.second->accountPrivate = "the owner's";
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        FakeAuthClient& client = grant.test.services.client;
        const QVariant tag = client.addAuths[0].tag;
        mbservice::CAccountInfo echoed = *grant.second;
        echoed.accountPrivate = "echoed";
        mbservice::CAccountInfo unknown = *grant.first;
        unknown.accountSubType = 77;
        unknown.accountPrivate = "of nobody";
        const auto answer = [&](const mbservice::CAccountInfo& account) {
            Q_EMIT client.sigAddAuthResult(QStringLiteral("bob"), account, {}, QString(), tag, true,
                                           QString(), false);
        };
        answer(echoed);
        answer(unknown);
        answer(*grant.first);
        QCOMPARE(client.exports.size(), 1);
        QCOMPARE(client.exports[0].grants.size(), 3);
        QCOMPARE(client.exports[0].grants[0]->account.accountPrivate, std::string("the owner's"));
        QCOMPARE(client.exports[0].grants[1]->account.accountPrivate, std::string("of nobody"));
    }

    void theFileTellsTheGranteeAndTheConditionsThatWereConfirmed()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        FakeAuthClient& client = grant.test.services.client;
        GW::CAuthLimit confirmed;
        confirmed.startTime = 86400;
        confirmed.endTime = 2 * 86400;
        confirmed.availableMarginRatio = 0.25;
        const QVariant tag = client.addAuths[0].tag;
        // Of an account that the configuration no longer knows the page has what it shows.
        grant.test.services.user.accounts.clear();
        for (const auto& account : {grant.first, grant.second}) {
            mbservice::CAccountInfo echoed = *account;
            echoed.accountPrivate.clear();
            Q_EMIT client.sigAddAuthResult(QStringLiteral("Bob"), echoed, confirmed, QString(), tag,
                                           true, QString(), false);
        }
        QCOMPARE(client.exports.size(), 1);
        for (const auto& written : std::as_const(client.exports[0].grants)) {
            QCOMPARE(written->grantee, QStringLiteral("Bob"));
            QCOMPARE(written->limit.startTime, confirmed.startTime);
            QCOMPARE(written->limit.endTime, confirmed.endTime);
            QCOMPARE(written->limit.availableMarginRatio, 0.25);
            QVERIFY(written->account.accountPrivate.starts_with("secret of 1"));
        }
    }

    void aServerGrantKeepsThePasswordItWasGiven()
    {
        FileGrant grant;
        StandingClock clock;
        grant.test.page->slotAuthPasswordForServer(QStringLiteral(" pw "));
        clock.now += 1;
        FakeAuthClient& client = grant.test.services.client;
        QVERIFY(client.addAuths[0].toServer);
        for (FakeAuthClient::AddAuth& request : client.addAuths)
            request.toServer = false;
        client.answerAdd(true);
        client.answerAdd(true);
        QCOMPARE(client.exports.size(), 1);
        QCOMPARE(client.exports[0].password, QStringLiteral(" pw "));
    }

    void theProposedNameTellsTheTimeOfTheMachinesZone()
    {
        const QByteArray before = qgetenv("TZ");
        const bool wasSet = qEnvironmentVariableIsSet("TZ");
        const auto restore = qScopeGuard([&] {
            wasSet ? qputenv("TZ", before) : qunsetenv("TZ");
            ::tzset();
        });
        for (const char* zone : {"Pacific/Kiritimati", "America/New_York"}) {
            qputenv("TZ", zone);
            ::tzset();
            const auto now = [zone]() -> QString {
                const QDateTime local = QDateTime::currentDateTimeUtc().toTimeZone(QTimeZone(zone));
                return QStringLiteral("vell_auth_") +
                       local.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
            };
            FileGrant grant;
            ModalDriver user;
            user.answerFile(QString());
            const QString earliest = now();
            grant.test.page->onFileAuthTriggered(false);
            const QString latest = now();
            // Names sort as their times do.
            QVERIFY2(user.proposals[0] >= earliest, qPrintable(user.proposals[0]));
            QVERIFY2(user.proposals[0] <= latest, qPrintable(user.proposals[0]));
        }
    }

    void theFirstOfTwoRecordsOfOneAccountGivesTheSecret()
    {
        BatchUnderTest test;
        StandingClock clock;
        test.add("10")->accountPrivate = "first";
        test.add("10")->accountPrivate = "second";
        test.page->reloadData();
        test.show();
        QCOMPARE(test.table->rowCount(), 2);
        test.tickAllAndName(QStringLiteral("bob"));
        test.page->authPasswordForFile(QStringLiteral("p"));
        QCOMPARE(test.services.client.addAuths.size(), 2);
        clock.now += 1;
        // Both rows wait under one key, so the first answer is the last one.
        test.services.client.answerAdd(true);
        QCOMPARE(test.services.client.exports.size(), 1);
        QCOMPARE(test.services.client.exports[0].grants[0]->account.accountPrivate,
                 std::string("first"));
    }

    void onlyConfirmedGrantsAreWritten()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        grant.test.services.client.answerAdd(false, QStringLiteral("x"));
        grant.test.services.client.answerAdd(true);
        QCOMPARE(grant.test.services.client.exports.size(), 1);
        QCOMPARE(grant.test.services.client.exports[0].grants.size(), 1);
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("权限出错！错误信息：x"),
                                          QStringLiteral("生成授权文件成功")}));
    }

    void whenAllFailNoFileIsWritten()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        grant.test.services.client.answerAdd(false, QStringLiteral("x"));
        grant.test.services.client.answerAdd(false, QStringLiteral("y"));
        QVERIFY(grant.test.services.client.exports.isEmpty());
        QCOMPARE(tipTexts().size(), 2);
    }

    void aFileThatCannotBeWrittenIsToldAndNothingReloads()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        grant.test.services.client.exportResult = 3;
        clock.now += 1;
        grant.test.services.client.answerAdd(true);
        grant.test.services.client.answerAdd(true);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("生成授权文件失败")));
        QVERIFY(grant.test.dialog.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
        QVERIFY(grant.test.table->isItemChecked(0, 0));
        QCOMPARE(grant.test.dialog.of(GW::EVENT_SET_WAITING).last().param2, 0);
    }

    void withoutAClientAtTheEndTheFileFails()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
        clock.now += 1;
        grant.test.services.client.answerAdd(true);
        grant.test.services.client.answerAdd(true);
        QVERIFY(grant.test.services.client.exports.isEmpty());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("生成授权文件失败")));
    }

    void aServerGrantAfterAFileGrantWritesNothing()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        grant.test.services.client.answerAdd(true);
        grant.test.services.client.answerAdd(true);
        KZ::CMessageTip::closeAll();
        grant.test.tickAllAndName(QStringLiteral("bob"));
        grant.test.page->onServerAuthTriggered(false);
        clock.now += 1;
        grant.test.services.client.answerAdd(true);
        grant.test.services.client.answerAdd(true);
        QCOMPARE(grant.test.services.client.exports.size(), 1);
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void ticksThatGoWhileTheDialogsAskLeaveNothingToWaitFor()
    {
        FileGrant grant;
        ModalDriver user;
        user.expect([&](QWidget* window) {
            grant.test.page->reloadData();
            window->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(grant.path);
            static_cast<QDialog*>(qobject_cast<QFileDialog*>(window))->accept();
        });
        user.answerPassword(QStringLiteral("p"));
        grant.test.page->onFileAuthTriggered(false);
        QVERIFY(grant.test.services.client.addAuths.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("至少需选择一个账号")));
    }

    void thePageMayDieInsideThePasswordDialog()
    {
        FileGrant grant;
        ModalDriver user;
        user.answerFile(grant.path);
        user.expect([&](QWidget*) { delete grant.test.page; });
        grant.test.page->onFileAuthTriggered(false);
        QVERIFY(grant.test.services.client.addAuths.isEmpty());
    }

    void afterAReloadTheSecretIsStillThatOfTheSameAccount()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        FakeAuthClient& client = grant.test.services.client;
        client.answerAdd(true);
        grant.test.services.user.accounts.move(0, 1);
        grant.first->accountPrivate = "renewed first";
        grant.second->accountPrivate = "renewed second";
        grant.test.page->reloadData();
        client.answerAdd(true);
        QCOMPARE(client.exports.size(), 1);
        QCOMPARE(client.exports[0].grants[0]->account.accountPrivate, std::string("secret of 10"));
        QCOMPARE(client.exports[0].grants[1]->account.accountPrivate,
                 std::string("renewed second"));
    }

    void theLastAnswerSaysWhetherAFileIsWritten()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        clock.now += 1;
        FakeAuthClient& client = grant.test.services.client;
        client.answerAdd(true);
        client.addAuths[1].toServer = true;
        client.answerAdd(true);
        QVERIFY(client.exports.isEmpty());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("授权成功")));
    }

    void aCancelledFileDialogLeavesAGrantThatIsStillOutItsPath()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("p"));
        {
            ModalDriver user;
            user.answerFile(QString());
            grant.test.page->onFileAuthTriggered(false);
        }
        clock.now += 1;
        grant.test.services.client.answerAdd(true);
        grant.test.services.client.answerAdd(true);
        QCOMPARE(grant.test.services.client.exports.size(), 1);
        QCOMPARE(grant.test.services.client.exports[0].path, grant.path);
    }

    void thePasswordDialogAsksForItsIconByName()
    {
        FileGrant grant;
        const QString name = QStringLiteral("Tarnwell.png");
        QIcon icon;
        ModalDriver user;
        user.answerFile(grant.path);
        user.expect([&](QWidget* window) {
            icon = window->windowIcon();
            window->close();
        });
        grant.test.page->onFileAuthTriggered(false);
        QVERIFY(KZ::CUiResource::hasKey(name));
        QCOMPARE(icon.pixmap(32).toImage(), KZ::CUiResource::getIcon(name).pixmap(32).toImage());
        QVERIFY(icon.pixmap(32).toImage() !=
                KZ::CUiResource::getIcon(QStringLiteral("gw_img_kit_lock")).pixmap(32).toImage());
    }
};

int main(int argc, char** argv)
{
    return runTest<BatchFileGrantTest>(argc, argv);
}

#include "BatchFileGrantTest.moc"
