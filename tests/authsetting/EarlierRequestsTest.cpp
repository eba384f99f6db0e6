#include "kit/widgets/LineEdit.h"
#include "tests/authsetting/TruthDesk.h"
#include "tests/support/TipTestCase.h"

#include <QTemporaryDir>

#include <tuple>

namespace {

const QString firstFile = QStringLiteral("/tmp/first.taa");
const QString secondFile = QStringLiteral("/tmp/second.taa");
const QString written = QStringLiteral("生成授权文件成功");

/// The exports into one file.
QVector<FakeAuthClient::Export> into(const TruthDesk& test, const QString& path)
{
    QVector<FakeAuthClient::Export> found;
    for (const FakeAuthClient::Export& file : test.desk.services.client.exports) {
        if (file.path == path)
            found.append(file);
    }
    return found;
}

} // namespace

/// Requests that are still out when the dialog was closed and opened again, and another was made.
class EarlierRequestsTest : public TipTestCase
{
    Q_OBJECT

    static void grantOneIntoAFile(TruthDesk& test, int row, const QString& user,
                                  const QString& path, const QString& password)
    {
        test.showBatch();
        test.tick(row);
        test.grantee()->setEditText(user);
        test.grantIntoFile(path, password);
    }

private Q_SLOTS:
    void eachBatchFileHoldsItsOwnAccountsUnderItsOwnPassword()
    {
        TruthDesk test;
        test.desk.dialog.show();
        grantOneIntoAFile(test, 0, QStringLiteral("carol"), firstFile, QStringLiteral("one"));
        test.reopen();
        grantOneIntoAFile(test, 1, QStringLiteral("erin"), secondFile, QStringLiteral("two"));
        QCOMPARE(test.client().addAuths.size(), 2);
        test.wait();
        // The first grant's answer comes while the second one is out.
        test.answer(0);
        test.answer(1);
        for (const auto& [path, password, account, user] :
             {std::tuple(firstFile, QStringLiteral("one"), 0, QStringLiteral("carol")),
              std::tuple(secondFile, QStringLiteral("two"), 1, QStringLiteral("erin"))}) {
            const QVector<FakeAuthClient::Export> files = into(test, path);
            QCOMPARE(files.size(), 1);
            QCOMPARE(files[0].password, password);
            QCOMPARE(files[0].grants.size(), 1);
            QCOMPARE(files[0].grants[0]->grantee, user);
            QVERIFY(mbservice::isSameAccount(files[0].grants[0]->account, *test.accounts[account]));
        }
        QCOMPARE(tipTexts().count(written), 2);
    }

    void anEarlierRequestsFailureIsToldApartFromTheLaterOnes()
    {
        TruthDesk test;
        test.desk.dialog.show();
        grantOneIntoAFile(test, 0, QStringLiteral("carol"), firstFile, QStringLiteral("one"));
        test.reopen();
        grantOneIntoAFile(test, 1, QStringLiteral("erin"), secondFile, QStringLiteral("two"));
        test.wait();
        test.answer(0, false);
        test.answer(1);
        QVERIFY(into(test, firstFile).isEmpty());
        QCOMPARE(into(test, secondFile).size(), 1);
        QCOMPARE(into(test, secondFile)[0].grants.size(), 1);
        QCOMPARE(KZ::CMessageTip::visibleTips().size(), 2);
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("权限出错！错误信息：no"), written}));
    }

    void anAnswerToAnEarlierRequestDoesNotEndTheWaitForALaterOne()
    {
        TruthDesk test;
        test.desk.dialog.show();
        grantOneIntoAFile(test, 0, QStringLiteral("carol"), firstFile, QStringLiteral("one"));
        test.reopen();
        grantOneIntoAFile(test, 1, QStringLiteral("erin"), secondFile, QStringLiteral("two"));
        test.wait();
        test.answer(0);
        QVERIFY(test.desk.looksBusy());
        test.answer(1);
        QVERIFY(test.desk.looksIdle());
    }

    void oneAccountIsNotWrittenUnderAnothersPassword()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showAccount(0);
        test.grantee()->setEditText(QStringLiteral("carol"));
        test.grantIntoFile(firstFile, QStringLiteral("one"));
        test.reopen();
        test.showAccount(1);
        test.grantee()->setEditText(QStringLiteral("carol"));
        test.grantIntoFile(secondFile, QStringLiteral("two"));
        test.wait();
        // One record serves every grant of the tab, so each file is looked at when it is written.
        test.answer(1);
        QCOMPARE(test.client().exports.size(), 1);
        QCOMPARE(into(test, secondFile)[0].password, QStringLiteral("two"));
        QVERIFY(mbservice::isSameAccount(into(test, secondFile)[0].grants[0]->account,
                                         *test.accounts[1]));
        test.answer(0);
        QCOMPARE(test.client().exports.size(), 2);
        QCOMPARE(into(test, firstFile)[0].password, QStringLiteral("one"));
        QVERIFY(mbservice::isSameAccount(into(test, firstFile)[0].grants[0]->account,
                                         *test.accounts[0]));
    }

    void aPageOpenedForAnotherUserShowsHimAndForgetsWhatWasPrepared()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showSubUser(QStringLiteral("u1"));
        test.tick(0);
        test.openMenu();
        test.chooseServer();
        QVERIFY(test.desk.looksBusy());
        test.reopen();
        test.showSubUser(QStringLiteral("u2"));
        QCOMPARE(byId<KZ::CLineEdit>(test.page(), 0)->text(), QStringLiteral("u2"));
        QVERIFY(!test.table()->isItemChecked(0, 0));
        test.tick(1);
        test.wait();
        test.answer(0);
        QVERIFY2(test.table()->isItemChecked(1, 0), "the late answer leaves his form alone");
        test.openMenu();
        test.chooseServer();
        QCOMPARE(test.client().addAuths.size(), 2);
        QCOMPARE(test.client().addAuths[1].grantee, QStringLiteral("u2"));
        QVERIFY(mbservice::isSameAccount(test.client().addAuths[1].account, *test.accounts[1]));
    }

    void aFileForOneUserIsWrittenWhileThePageShowsAnother()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showSubUser(QStringLiteral("u1"));
        test.tick(0);
        test.grantIntoFile(firstFile, QStringLiteral("one"));
        test.reopen();
        test.showSubUser(QStringLiteral("u2"));
        test.tick(1);
        test.wait();
        test.answer(0);
        QVERIFY(!into(test, firstFile).isEmpty());
        const FakeAuthClient::Export file = into(test, firstFile).first();
        QCOMPARE(file.password, QStringLiteral("one"));
        QCOMPARE(file.grants[0]->grantee, QStringLiteral("u1"));
        QVERIFY(mbservice::isSameAccount(file.grants[0]->account, *test.accounts[0]));
        QVERIFY(tipTexts().contains(written));
        QVERIFY(test.table()->isItemChecked(1, 0));
    }

    void aGrantEndsThoughAnotherOutcomeTookItsPlace()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showSubUser(QStringLiteral("u1"));
        test.tick(0);
        test.openMenu();
        test.chooseServer();
        test.clock.now += 0.68;
        test.answer(0);
        // A result of another page's request comes within the busy time.
        Q_EMIT test.client().sigUpdatesubuserResult(QStringLiteral("u1"), QString(), true, {});
        QTRY_VERIFY(test.desk.looksIdle());
        test.grantElsewhere(2, QStringLiteral("dave"), true);
        QTRY_COMPARE(test.table()->itemText(2, 5), QStringLiteral("dave"));
    }

    void anImportsFailureListTakesNoLaterSuccess()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.desk.dialog.showPage(202);
        auto* import = test.desk.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_0"));
        for (const int result : {1, 0}) {
            test.client().importResult = result;
            ModalDriver dialogs(&test.desk.dialog);
            QTemporaryDir folder;
            QFile file(folder.filePath(QStringLiteral("a.taa")));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.close();
            dialogs.answerFile(file.fileName());
            dialogs.answerPassword(QStringLiteral("pw"));
            import->click();
            test.wait();
            if (result == 0)
                Q_EMIT test.client().sigValidAuth(QString(), QString(), true, QString());
            QTRY_VERIFY(test.desk.looksIdle());
        }
        QTRY_COMPARE(KZ::CMessageTip::visibleTips().size(), 2);
        QCOMPARE(KZ::CMessageTip::visibleTips()[0]->texts().size(), 2);
        QCOMPARE(KZ::CMessageTip::visibleTips()[1]->texts(),
                 QStringList(QStringLiteral("导入成功！")));
    }
};

int main(int argc, char** argv)
{
    return runTest<EarlierRequestsTest>(argc, argv);
}

#include "EarlierRequestsTest.moc"
