#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/PushButton.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/authsetting/TruthDesk.h"
#include "tests/support/TipTestCase.h"

#include <QTemporaryDir>

namespace {

QString changed()
{
    return TruthDesk::changed();
}

/// Names a file in the file dialog and accepts it.
void acceptFile(QWidget* window)
{
    window->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
        ->setText(QStringLiteral("/tmp/truth.taa"));
    static_cast<QDialog*>(qobject_cast<QFileDialog*>(window))->accept();
}

/// Types a password into the password dialog and accepts it.
void acceptPassword(const QWidget* window)
{
    window->findChild<QLineEdit*>(QStringLiteral("halden_input_edit"))
        ->setText(QStringLiteral("pw"));
    window->findChild<QPushButton*>(QStringLiteral("halden_input_ok"))->click();
}

/// The batch tab with the first two accounts ticked for "carol".
struct BatchDesk : TruthDesk
{
    BatchDesk()
    {
        desk.dialog.show();
        showBatch();
        tick(0);
        tick(1);
        grantee()->setEditText(QStringLiteral("carol"));
    }
};

/// The page of the account 1000 with a grant to "carol" typed into it.
struct AccountDesk : TruthDesk
{
    AccountDesk()
    {
        desk.dialog.show();
        showAccount(0);
        grantee()->setEditText(QStringLiteral("carol"));
        byId<KZ::CSoftCalendarLineEdit>(page(), 5)->setDate(testToday().addDays(2));
        table()->setItemChecked(0, 0, true);
        table()->setItemText(0, 2, QStringLiteral("50.00"));
    }
};

/// The page of "u1" with the first account prepared.
struct SubUserDesk : TruthDesk
{
    SubUserDesk()
    {
        desk.dialog.show();
        showSubUser(QStringLiteral("u1"));
        tick(0);
    }

    KZ::CPushButton* stateButton() { return byId<KZ::CPushButton>(page(), 1); }
    QString state()
    {
        return page()
            ->findChild<KZ::CSimpleTextWidget*>(QStringLiteral("halden_sub_user_state"))
            ->text();
    }
};

} // namespace

/// What a user's action sends is what the page showed him at that moment, or nothing.
class ScreenTruthTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theBatchMenuSendsWhatTheFormShowed()
    {
        BatchDesk test;
        test.openMenu();
        test.chooseServer();
        QCOMPARE(test.client().addAuths.size(), 2);
        QCOMPARE(test.client().addAuths[0].grantee, QStringLiteral("carol"));
        QVERIFY(tipTexts().isEmpty());
    }

    void theBatchMenuSendsNothingForAnAccountThatWasGrantedMeanwhile_data()
    {
        QTest::addColumn<bool>("heard");
        QTest::newRow("without a signal") << false;
        QTest::newRow("with the change signal") << true;
    }
    void theBatchMenuSendsNothingForAnAccountThatWasGrantedMeanwhile()
    {
        QFETCH(bool, heard);
        BatchDesk test;
        test.openMenu();
        test.grantElsewhere(1, QStringLiteral("dave"), heard);
        test.chooseServer();
        QVERIFY(test.client().addAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QTRY_COMPARE(test.table()->itemText(1, 5), QStringLiteral("dave"));
    }

    void aChangeOfOtherAccountsBehindTheBatchMenuCostsNothing()
    {
        BatchDesk test;
        test.openMenu();
        test.grantElsewhere(2, QStringLiteral("dave"), true);
        QVERIFY2(test.table()->isItemChecked(0, 0), "the reload waits for the menu");
        test.chooseServer();
        QCOMPARE(test.client().addAuths.size(), 2);
        QCOMPARE(test.client().addAuths[0].grantee, QStringLiteral("carol"));
        QTRY_COMPARE(test.table()->itemText(2, 5), QStringLiteral("dave"));
    }

    void aClosedMenuLetsTheReloadFollow()
    {
        BatchDesk test;
        test.openMenu();
        test.grantElsewhere(2, QStringLiteral("dave"), true);
        QCOMPARE(test.table()->itemText(2, 5), QString());
        test.menu()->close();
        QTRY_COMPARE(test.table()->itemText(2, 5), QStringLiteral("dave"));
        QVERIFY(test.client().addAuths.isEmpty());
    }

    void noMenuActsForAPageThatAnotherCovers()
    {
        BatchDesk test;
        GW::CGrantMenu* menu = test.menu();
        test.openMenu();
        test.showSubUsers();
        QTest::mouseClick(menu, Qt::LeftButton, {},
                          menu->actionGeometry(menu->serverAction()).center());
        QVERIFY(test.client().addAuths.isEmpty());
        QCOMPARE(tipTexts(), QStringList(changed()));
    }

    void aChangeOfOtherAccountsBehindTheDialogsCostsNothing_data()
    {
        QTest::addColumn<bool>("batch");
        QTest::newRow("batch") << true;
        QTest::newRow("single account") << false;
    }
    void aChangeOfOtherAccountsBehindTheDialogsCostsNothing()
    {
        QFETCH(bool, batch);
        AccountDesk test;
        if (batch) {
            test.showBatch();
            test.tick(0);
            test.grantee()->setEditText(QStringLiteral("carol"));
        }
        ModalDriver dialogs(&test.desk.dialog);
        dialogs.expect([&](QWidget* window) {
            test.grantElsewhere(2, QStringLiteral("dave"), true);
            acceptFile(window);
        });
        dialogs.expect([&](QWidget* window) {
            test.grantElsewhere(1, QStringLiteral("dave"), true);
            acceptPassword(window);
        });
        test.openMenu();
        test.chooseFile();
        QCOMPARE(test.client().addAuths.size(), 1);
        const FakeAuthClient::AddAuth& sent = test.client().addAuths.first();
        QCOMPARE(sent.grantee, QStringLiteral("carol"));
        if (!batch) {
            QCOMPARE(sent.limit.endTime, secondsOf(testToday().addDays(2)));
            QCOMPARE(sent.limit.availableMarginRatio, 0.5);
        }
    }

    void anAccountThatIsGrantedBehindTheFileDialogIsToldBeforeAPassword()
    {
        AccountDesk test;
        ModalDriver dialogs(&test.desk.dialog);
        dialogs.expect([&](QWidget* window) {
            test.grantElsewhere(0, QStringLiteral("dave"), true);
            acceptFile(window);
        });
        test.openMenu();
        test.chooseFile();
        QVERIFY(test.client().addAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QTRY_COMPARE(test.grantee()->currentText(), QStringLiteral("dave"));
    }

    void anOpenMenuSendsNothingForAnAccountThatWasGranted()
    {
        AccountDesk test;
        test.openMenu();
        test.grantElsewhere(0, QStringLiteral("dave"), true);
        test.chooseServer();
        QVERIFY(test.client().addAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
    }

    void aGrantButtonWhoseAccountChangedWithoutASignalSendsNothing()
    {
        AccountDesk test;
        test.grantElsewhere(0, QStringLiteral("dave"), false);
        test.openMenu();
        QVERIFY(!test.menu()->isVisible());
        QVERIFY(test.client().delAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QCOMPARE(test.grantButton()->text(), QStringLiteral("取消授权"));
        QVERIFY2(test.grantButton()->isEnabled(), "the next click acts on what is seen now");
        test.grantButton()->click();
        QCOMPARE(test.client().delAuths.size(), 1);
    }

    void aGrantShownAsBobsIsNotCancelledAsDaves()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showAccount(3);
        test.grantElsewhere(3, QStringLiteral("dave"), false);
        test.grantButton()->click();
        QVERIFY(test.client().delAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("dave"));
    }

    void cancellingAGrantThatTheServiceDoesNotKnowStillDoesNothing()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showAccount(3);
        test.client().grants.clear();
        test.grantButton()->click();
        QVERIFY(test.client().delAuths.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }

    void aRowWhoseUserWasDisabledMeanwhileEnablesNobody()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showSubUsers();
        test.client().activeSubUsers.remove(QStringLiteral("u1"));
        qobject_cast<QPushButton*>(test.table()->itemWidget(0, 3))->click();
        QVERIFY(test.client().setSubUsers.isEmpty());
        QCOMPARE(tipTexts(), QStringList(changed()));
        QCOMPARE(test.table()->itemText(0, 2), QStringLiteral("已禁用"));
    }

    void aCommandForAllDoesNotReachRowsThatAFilterHides()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.showSubUsers();
        auto* disableAll = test.desk.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_1"));
        QTest::keyClicks(test.table()->view(), QStringLiteral("u2"));
        QVERIFY(test.table()->isFilterHiding());
        disableAll->click();
        QVERIFY(test.client().setSubUsers.isEmpty());
        VERIFY_TIP(disableAll, changed(), 2);
        QVERIFY(!test.table()->isFilterHiding());
        disableAll->click();
        QCOMPARE(test.client().setSubUsers.size(), 2);
    }

    void theStateButtonActsOnTheStateThatItShows_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("click") << false;
        QTest::newRow("F8") << true;
    }
    void theStateButtonActsOnTheStateThatItShows()
    {
        QFETCH(bool, byKey);
        SubUserDesk test;
        QVERIFY(QTest::qWaitForWindowActive(&test.desk.dialog));
        test.client().activeSubUsers.remove(QStringLiteral("u1"));
        if (byKey)
            QTest::keyClick(&test.desk.dialog, Qt::Key_F8);
        else
            test.stateButton()->click();
        QVERIFY(test.client().setSubUsers.isEmpty());
        QVERIFY(test.client().updateSubUsers.isEmpty());
        VERIFY_TIP(test.stateButton(), changed(), 2);
        QCOMPARE(test.state(), QStringLiteral("已禁用"));
    }

    void aKeyAndAChangeOfPageRightAfterItMeetTheUserWhoWasShown()
    {
        SubUserDesk test;
        QVERIFY(QTest::qWaitForWindowActive(&test.desk.dialog));
        QTest::keyClick(&test.desk.dialog, Qt::Key_F8);
        test.showSubUser(QStringLiteral("u2"));
        QCOMPARE(test.client().setSubUsers.size(), 1);
        QCOMPARE(test.client().setSubUsers.first().user, QStringLiteral("u1"));
    }

    void nothingIsImportedForAPageThatAnotherCovers()
    {
        TruthDesk test;
        test.desk.dialog.show();
        test.desk.dialog.showPage(202);
        auto* import = test.desk.dialog.shownPage()->findChild<QPushButton*>(
            QStringLiteral("halden_corner_button_0"));
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("a.taa")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        ModalDriver dialogs(&test.desk.dialog);
        dialogs.answerFile(file.fileName());
        dialogs.expect([&](QWidget* window) {
            test.showOverview();
            acceptPassword(window);
        });
        import->click();
        QVERIFY(test.client().imports.isEmpty());
        QCOMPARE(tipTexts(), QStringList(changed()));
    }

    void aPageWithoutAUserActsOnNobody()
    {
        SubUserDesk test;
        test.showSubUser(QString());
        test.stateButton()->click();
        QVERIFY(test.client().setSubUsers.isEmpty());
        VERIFY_TIP(test.stateButton(), changed(), 2);
    }

    void aPreparedAccountThatWasGrantedMeanwhileIsNotSent()
    {
        SubUserDesk test;
        test.openMenu();
        test.grantElsewhere(0, QStringLiteral("dave"), true);
        QVERIFY(test.table()->isItemChecked(0, 0));
        test.chooseServer();
        QVERIFY(test.client().addAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QTRY_COMPARE(test.table()->itemText(0, 5), QStringLiteral("dave"));
    }

    void aTickThatNobodyPreparedIsNotPassedOver()
    {
        SubUserDesk test;
        // Another desk grants to this user; the next refresh ticks the row without a reload.
        test.grantElsewhere(1, QStringLiteral("u1"), false);
        test.tick(2);
        QVERIFY(test.table()->isItemChecked(1, 0));
        test.openMenu();
        test.chooseServer();
        QVERIFY(test.client().addAuths.isEmpty());
        VERIFY_TIP(test.grantButton(), changed(), 2);
        QTRY_VERIFY(!test.table()->isItemCheckEnabled(1, 0));
    }

    void whatIsPreparedOutlivesAChangeOfOtherAccountsBehindTheDialogs()
    {
        SubUserDesk test;
        ModalDriver dialogs(&test.desk.dialog);
        dialogs.expect([&](QWidget* window) {
            test.grantElsewhere(2, QStringLiteral("dave"), true);
            acceptFile(window);
        });
        dialogs.answerPassword(QStringLiteral("pw"));
        test.openMenu();
        test.chooseFile();
        QCOMPARE(test.client().addAuths.size(), 1);
        QCOMPARE(test.client().addAuths.first().grantee, QStringLiteral("u1"));
    }

    void aFormThatWasEmptiedBehindTheFileDialogAsksForNoPassword()
    {
        SubUserDesk test;
        ModalDriver dialogs(&test.desk.dialog);
        dialogs.expect([&](QWidget* window) {
            test.showSubUser(QStringLiteral("u2"));
            acceptFile(window);
        });
        test.openMenu();
        test.chooseFile();
        QVERIFY(test.client().addAuths.isEmpty());
        QCOMPARE(tipTexts(), QStringList(changed()));
        // Nothing of it keeps the page from following changes.
        test.grantElsewhere(2, QStringLiteral("dave"), true);
        QTRY_COMPARE(test.table()->itemText(2, 5), QStringLiteral("dave"));
    }

    void leavingABoxThatTheUserWasPutIntoIsNoMistake()
    {
        TruthDesk test;
        test.desk.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.desk.dialog));
        test.showAccount(0);
        QVERIFY(test.grantee()->hasFocus());
        QTest::keyClick(test.grantee(), Qt::Key_Tab);
        QVERIFY(tipTexts().isEmpty());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QVERIFY(test.grantee()->hasFocus());
        QTest::keyClick(test.grantee(), Qt::Key_Tab);
        VERIFY_TIP(test.grantee(), QStringLiteral("被授权人不能为空"), 3);
    }

    void aReloadKeepsTheUserWithHisAccount()
    {
        SubUserDesk test;
        test.table()->selectRow(1);
        test.services().user.accounts.removeFirst();
        Q_EMIT test.client().sigUiUpdateAuth();
        QCOMPARE(test.table()->itemText(test.table()->selectedRow(), 3), QStringLiteral("1001"));
        test.services().user.accounts.removeFirst();
        Q_EMIT test.client().sigUiUpdateAuth();
        QCOMPARE(test.table()->selectedRow(), -1);
    }
};

int main(int argc, char** argv)
{
    return runTest<ScreenTruthTest>(argc, argv);
}

#include "ScreenTruthTest.moc"
