#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/ModalDriver.h"
#include "tests/support/TipTestCase.h"

#include <QComboBox>
#include <QTableView>

#include <climits>

namespace {

/// The dialog with two own accounts and the sub-users "s1" (enabled) and "s2", open and active.
struct OpenDialogUnderTest : DialogUnderTest
{
    OpenDialogUnderTest()
    {
        services.client.subUsers = {QStringLiteral("s1"), QStringLiteral("s2")};
        services.client.activeSubUsers = {QStringLiteral("s1")};
        for (const char* number : {"1", "2"}) {
            accounts.append(
                services.user.addAccount(1, 1, "9000", number, mbservice::AUTH_TYPE_NOT_GRANTED));
        }
        dialog.show();
        dialog.activateWindow();
        active = QTest::qWaitForWindowActive(&dialog);
    }

    QWidget* focus() { return dialog.focusWidget(); }
    /// The named control of the tab in front.
    QWidget* inTab(const char* name)
    {
        return currentTab()->findChild<QWidget*>(QString::fromLatin1(name));
    }
    bool isSeen(const QWidget* widget)
    {
        return widget && widget != currentTab() && widget->isVisible() && widget->isEnabled() &&
               dialog.shownPage()->isAncestorOf(widget);
    }
    /// Whether the focus is where it belongs once everything has settled.
    bool settlesInThePage()
    {
        QCoreApplication::processEvents();
        return isSeen(focus());
    }

    QVector<boost::shared_ptr<GW::CAccount>> accounts;
    bool active = false;
};

void pressTab(OpenDialogUnderTest& test)
{
    QTest::keyClick(test.focus(), Qt::Key_Tab);
}

} // namespace

/// Where the keyboard focus is while pages, tabs and requests come and go.
class DialogFocusTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyShownPageHasTheFocusInItsFirstControl_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("tab");
        QTest::newRow("overview") << 201 << INT_MAX << QString() << 0;
        QTest::newRow("batch") << 201 << INT_MAX << QString() << 1;
        QTest::newRow("account") << 201 << 20101 << QStringLiteral("own") << 0;
        QTest::newRow("import") << 202 << INT_MAX << QString() << 0;
        QTest::newRow("imported account") << 202 << 20201 << QStringLiteral("own") << 0;
        QTest::newRow("sub-users") << 203 << INT_MAX << QString() << 0;
        QTest::newRow("sub-user") << 203 << 20401 << QStringLiteral("s1") << 0;
        QTest::newRow("disabled sub-user") << 203 << 20401 << QStringLiteral("s2") << 0;
        QTest::newRow("account that is gone") << 201 << 20101 << QStringLiteral("gone") << 0;
    }

    void everyShownPageHasTheFocusInItsFirstControl()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        QFETCH(QString, key);
        QFETCH(int, tab);
        OpenDialogUnderTest test;
        QVERIFY(test.active);
        if (key == QStringLiteral("own"))
            key = test.accounts[0]->key();
        test.dialog.showPage(page, subPage, key, tab);
        // At once, because a key may come before the event loop turns.
        QVERIFY(test.focus() != test.closeButton());
        if (key == QStringLiteral("gone")) {
            // Nothing in there takes input.
            QVERIFY(test.focus()->isVisible() && test.focus()->isEnabled());
            return;
        }
        QVERIFY(test.isSeen(test.focus()));
        QVERIFY(test.currentTab()->isAncestorOf(test.focus()));
        const QWidget* first = test.focus();
        QVERIFY(test.settlesInThePage());
        QCOMPARE(test.focus(), first);
    }

    void aTabThatComesToTheFrontTakesTheFocusOver()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201);
        const QWidget* overview = test.currentTab();
        test.dialog.shownPage()->tabControl()->activateTab(1);
        QVERIFY(test.isSeen(test.focus()));
        QVERIFY(test.currentTab()->isAncestorOf(test.focus()));
        QTest::keyClick(test.focus(), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(test.currentTab(), overview);
        QVERIFY(test.isSeen(test.focus()));
        QVERIFY(test.currentTab()->isAncestorOf(test.focus()));
        QVERIFY(test.settlesInThePage());
    }

    void aRequestGivesTheFocusToTheDialogAndBack()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* editor = test.inTab("halden_batch_start");
        editor->setFocus();
        test.dialog.setDialogEnabled(false);
        QCOMPARE(test.focus(), &test.dialog);
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), &test.dialog);
        test.dialog.setDialogEnabled(true);
        QCOMPARE(test.focus(), editor);
    }

    void comingBackToAPageAfterARequestNeverReachesItsHiddenTab()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* hidden = test.inTab("halden_batch_grantee");
        hidden->setFocus();
        test.dialog.setDialogEnabled(false);
        test.dialog.setDialogEnabled(true);
        test.dialog.showPage(202);
        test.dialog.showPage(201, INT_MAX, QString(), 0);
        QVERIFY(!hidden->isVisible());
        QVERIFY(test.isSeen(test.focus()));
        QVERIFY(test.settlesInThePage());
    }

    void aPageShownWhileBusyTakesTheFocusWhenTheRequestEnds()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.setDialogEnabled(false);
        test.dialog.showPage(202);
        QCOMPARE(test.focus(), &test.dialog);
        test.dialog.setDialogEnabled(true);
        QVERIFY(test.isSeen(test.focus()));
    }

    void theEmptyPageLeavesTheFocusToTheDialog()
    {
        OpenDialogUnderTest test;
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), &test.dialog);
        test.dialog.showPage(201);
        QVERIFY(test.isSeen(test.focus()));
        test.dialog.hidePages();
        QCOMPARE(test.focus(), &test.dialog);
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), &test.dialog);
    }

    void theCloseButtonHasTheFocusOnlyWhenTheUserPutItThere()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.setDialogEnabled(false);
        pressTab(test);
        QCOMPARE(test.focus(), test.closeButton());
        pressTab(test);
        QCOMPARE(test.focus(), test.closeButton());
        test.dialog.setDialogEnabled(true);
        QCOMPARE(test.focus(), test.closeButton());
        // Another page is another work.
        test.dialog.showPage(202);
        QVERIFY(test.isSeen(test.focus()));
    }

    void aControlThatIsDisabledOrHiddenHandsTheFocusOnInsideThePage()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        for (const char* name : {"halden_batch_end", "halden_batch_authorize", "halden_batch_start",
                                 "halden_batch_grantee", "halden_table_view"}) {
            QWidget* control = test.inTab(name);
            QVERIFY2(control, name);
            control->setFocus();
            QCOMPARE(test.focus(), control);
            control->setEnabled(false);
            QVERIFY2(test.focus() != test.closeButton(), name);
            QVERIFY2(test.settlesInThePage(), name);
            control->setEnabled(true);
            control->setFocus();
            control->hide();
            QVERIFY2(test.focus() != test.closeButton(), name);
            QVERIFY2(test.settlesInThePage(), name);
            control->show();
        }
    }

    void aControlThatVanishesBehindAnotherWindowIsNotWhereTheUserComesBack()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* editor = test.inTab("halden_batch_end");
        editor->setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        editor->hide();
        test.dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QVERIFY(test.settlesInThePage());
    }

    void aControlThatIsDisabledForAMomentKeepsTheFocus()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* button = test.inTab("halden_batch_authorize");
        button->setFocus();
        button->setEnabled(false);
        button->setEnabled(true);
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), button);
    }

    void aSubUserThatIsDisabledElsewhereTakesNoFocusWithHim()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(203, 20401, QStringLiteral("s1"), 0);
        QWidget* table = test.inTab("halden_table_view");
        table->setFocus();
        test.services.client.activeSubUsers.clear();
        Q_EMIT test.services.client.sigUiUpdateAuth();
        QVERIFY(!table->isEnabled());
        QVERIFY(test.settlesInThePage());
    }

    void aFileGrantBringsTheFocusBackIntoThePage()
    {
        StandingClock clock;
        OpenDialogUnderTest test;
        test.dialog.showPage(201, 20101, test.accounts[0]->key(), 0);
        auto* grantee = test.currentTab()->findChild<QComboBox*>();
        grantee->setEditText(QStringLiteral("bob"));
        ModalDriver user(&test.dialog);
        user.answerFile(QStringLiteral("/nowhere/grant.taa"));
        user.answerPassword(QStringLiteral("secret"));
        QVERIFY(QMetaObject::invokeMethod(test.currentTab(), "onFileAuthTriggered",
                                          Q_ARG(bool, false)));
        QVERIFY(test.looksBusy());
        QCOMPARE(test.focus(), &test.dialog);
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), &test.dialog);
        test.accounts[0]->authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
        clock.now += 1;
        test.services.client.answerAdd(true);
        QVERIFY(test.looksIdle());
        QVERIFY(test.settlesInThePage());
    }

    void anotherOpeningBeginsInThePage()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.setDialogEnabled(false);
        pressTab(test);
        QCOMPARE(test.focus(), test.closeButton());
        test.dialog.close();
        QVERIFY(test.focus() != test.closeButton());
        test.dialog.showPage(202);
        test.dialog.show();
        QVERIFY(test.isSeen(test.focus()));
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QVERIFY(test.settlesInThePage());
    }

    void aWindowThatIsActiveAgainHasTheFocusWhereItWas()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* editor = test.inTab("halden_batch_end");
        editor->setFocus();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        editor->setEnabled(false);
        editor->setEnabled(true);
        test.dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QCoreApplication::processEvents();
        QCOMPARE(test.focus(), editor);
    }

    void aTabPageWithoutControlsOfItsOwnKeepsTheFocusItself()
    {
        struct EmptyTabPage : GW::IAuthSettingTabPage
        {
            explicit EmptyTabPage(QWidget* parent) : IAuthSettingTabPage(202, -1, 1, parent) {}
            void reloadData() override {}
        };
        OpenDialogUnderTest test;
        test.dialog.showPage(INT_MAX - 1);
        auto* tab = new EmptyTabPage(test.dialog.shownPage());
        test.dialog.shownPage()->addTabPage(QStringLiteral("empty"), tab);
        test.dialog.shownPage()->tabControl()->activateTab(0);
        QCOMPARE(test.focus(), tab);
    }

    void aClickOnThePagesGroundLeavesTheUserWhereHeWas()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        QWidget* editor = test.inTab("halden_batch_end");
        editor->setFocus();
        QTest::mouseClick(test.currentTab(), Qt::LeftButton, {},
                          QPoint(test.currentTab()->width() - 3, 3));
        QCOMPARE(test.focus(), editor);
    }

    void whatReachesATabPageGoesOnToItsFirstOrLastControl()
    {
        OpenDialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.inTab("halden_batch_end")->setFocus();
        test.currentTab()->setFocus(Qt::TabFocusReason);
        QCOMPARE(test.focus(), test.inTab("halden_batch_grantee"));
        test.currentTab()->setFocus(Qt::BacktabFocusReason);
        QCOMPARE(test.focus(), test.inTab("halden_batch_authorize"));
        test.currentTab()->setFocus();
        QCOMPARE(test.focus(), test.inTab("halden_batch_grantee"));
    }
};

int main(int argc, char** argv)
{
    return runTest<DialogFocusTest>(argc, argv);
}

#include "DialogFocusTest.moc"
