#include "authsetting/shell/AuthSettingEvents.h"
#include "tests/authsetting/BatchPageTools.h"
#include "tests/support/TestCase.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>

namespace {

/// Answers the two questions of a file grant from within their event loops.
class Answers : public QObject
{
public:
    explicit Answers(std::function<void(QFileDialog*)> onFile,
                     std::function<void(QDialog*)> onPassword = {})
        : m_onFile(std::move(onFile)), m_onPassword(std::move(onPassword))
    {
        m_timer = startTimer(5);
    }

    int files = 0;
    int passwords = 0;

protected:
    void timerEvent(QTimerEvent*) override
    {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!dialog || dialog == m_last)
            return;
        m_last = dialog;
        if (auto* file = qobject_cast<QFileDialog*>(dialog)) {
            ++files;
            m_onFile(file);
        } else {
            ++passwords;
            m_onPassword(dialog);
        }
    }

private:
    std::function<void(QFileDialog*)> m_onFile;
    std::function<void(QDialog*)> m_onPassword;
    QPointer<QDialog> m_last;
    int m_timer;
};

QLineEdit* passwordEdit(QDialog* dialog)
{
    return dialog->findChild<QLineEdit*>(QString(), Qt::FindChildrenRecursively);
}

void type(QDialog* dialog, const QString& password)
{
    QTest::keyClicks(passwordEdit(dialog), password);
    QTest::keyClick(passwordEdit(dialog), Qt::Key_Return);
}

void choose(QFileDialog* dialog, const QString& path)
{
    dialog->selectFile(path);
    // done() would not fill in the chosen file.
    QMetaObject::invokeMethod(dialog, "accept");
}

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
        const QString file = path;
        Answers answers([file](QFileDialog* dialog) { choose(dialog, file); },
                        [password](QDialog* dialog) { type(dialog, password); });
        test.page->onFileAuthTriggered(false);
        QCOMPARE(answers.files, 1);
        QCOMPARE(answers.passwords, 1);
    }

    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("grant.taa"));
    BatchUnderTest test;
    boost::shared_ptr<GW::CAccount> first;
    boost::shared_ptr<GW::CAccount> second;
};

} // namespace

class BatchFileGrantTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void cleanup()
    {
        KZ::CMessageTip::closeAll();
        TestCase::cleanup();
    }

    void theFileDialogProposesANameWithTheTime()
    {
        FileGrant grant;
        QString title;
        QString name;
        QString directory;
        QStringList filters;
        QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
        Answers answers([&](QFileDialog* dialog) {
            title = dialog->windowTitle();
            mode = dialog->acceptMode();
            filters = dialog->nameFilters();
            directory = dialog->directory().absolutePath();
            name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
            dialog->reject();
        });
        const QDateTime before = QDateTime::currentDateTime();
        grant.test.page->onFileAuthTriggered(false);
        QCOMPARE(title, QStringLiteral("选择保存路径"));
        QCOMPARE(mode, QFileDialog::AcceptSave);
        QCOMPARE(filters, QStringList(QStringLiteral("Auth Files(*.taa)")));
        QCOMPARE(directory, QDir::currentPath());
        const QString prefix = QStringLiteral("vell_auth_");
        QVERIFY(name.startsWith(prefix));
        const QDateTime time =
            QDateTime::fromString(name.mid(prefix.size()), QStringLiteral("yyyy-MM-dd_hh-mm-ss"));
        QVERIFY(time.isValid());
        QVERIFY(before.secsTo(time) >= -1);
        QVERIFY(time <= QDateTime::currentDateTime());
        // Cancelled: no password is asked for and nothing is requested.
        QCOMPARE(answers.passwords, 0);
        QVERIFY(grant.test.services.client.calls.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
    }

    void thePasswordIsAskedForUnreadably()
    {
        FileGrant grant;
        QString title;
        QLineEdit::EchoMode mode = QLineEdit::Normal;
        Answers answers([&](QFileDialog* dialog) { choose(dialog, grant.path); },
                        [&](QDialog* dialog) {
                            title = dialog->windowTitle();
                            mode = passwordEdit(dialog)->echoMode();
                            dialog->reject();
                        });
        grant.test.page->onFileAuthTriggered(false);
        QCOMPARE(answers.passwords, 1);
        QCOMPARE(title, QStringLiteral("输入授权密码"));
        QCOMPARE(mode, QLineEdit::Password);
        QVERIFY(grant.test.services.client.calls.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
    }

    void theGrantsAreAskedForWithoutTheServerAndThenWritten()
    {
        FileGrant grant;
        StandingClock clock;
        grant.grant(QStringLiteral("geheim 1"));
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
        QCOMPARE(written.password, QStringLiteral("geheim 1"));
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
        Answers answers([&](QFileDialog* dialog) { choose(dialog, grant.path); },
                        [&](QDialog* dialog) {
                            grant.test.page->reloadData();
                            type(dialog, QStringLiteral("p"));
                        });
        grant.test.page->onFileAuthTriggered(false);
        QVERIFY(grant.test.services.client.addAuths.isEmpty());
        QVERIFY(grant.test.dialog.events.isEmpty());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("至少需选择一个账号")));
    }

    void thePageMayDieInsideThePasswordDialog()
    {
        FileGrant grant;
        Answers answers([&](QFileDialog* dialog) { choose(dialog, grant.path); },
                        [&](QDialog*) { delete grant.test.page; });
        grant.test.page->onFileAuthTriggered(false);
        QCOMPARE(answers.passwords, 1);
        QVERIFY(grant.test.services.client.addAuths.isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<BatchFileGrantTest>(argc, argv);
}

#include "BatchFileGrantTest.moc"
