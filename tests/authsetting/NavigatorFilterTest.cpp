#include "authsetting/shell/NavigatorFilter.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"

#include <QInputMethodEvent>
#include <QLineEdit>
#include <QSignalSpy>

#include <climits>

namespace {

/// The dialog on the page of all accounts, open and active, over a tree of three pages.
struct TreeUnderTest : DialogUnderTest
{
    explicit TreeUnderTest(int manyNodes = 0)
    {
        dialog.setNavigatorFiller([manyNodes](GW::CAuthSettingNavigator* tree) {
            fillThreePages(tree);
            const QString icon = QStringLiteral("gw_img_auth_setting_tree_icon_account");
            tree->addChildNode(QStringLiteral("ab"), 201, 20101, icon, QStringLiteral("keyAB"));
            tree->addChildNode(QStringLiteral("远山"), 203, 20401, icon, QStringLiteral("u1"));
            for (int number = 0; number < manyNodes; ++number) {
                const QString text = QString::number(100000 + number);
                tree->addChildNode(text, 202, 20201, icon, text);
            }
        });
        dialog.load();
        dialog.showPage(201);
        dialog.activeNode(201);
        dialog.show();
        dialog.activateWindow();
        active = QTest::qWaitForWindowActive(&dialog);
    }

    GW::CNavigatorFilter* filter() { return navigator()->findChild<GW::CNavigatorFilter*>(); }
    QLineEdit* box()
    {
        return navigator()->findChild<QLineEdit*>(QStringLiteral("halden_navigator_filter"));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(dialog.windowHandle(), key, modifiers);
    }
    void find(const QString& text)
    {
        press(Qt::Key_F, Qt::ControlModifier);
        box()->setText(text);
    }
    QString marked() { return filter()->mark() ? filter()->mark()->text(0) : QString(); }
    /// The texts of the nodes that are not hidden, from top to bottom.
    QString shownNodes()
    {
        QStringList texts;
        for (QTreeWidgetItem* item = navigator()->itemAt(1, 1); item;
             item = navigator()->itemBelow(item))
            texts.append(item->text(0));
        return texts.join(u',');
    }

    bool active = false;
};

} // namespace

class NavigatorFilterTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void ctrlFShowsTheBoxInsideTheTreeAboveItsNodes()
    {
        TreeUnderTest test;
        QVERIFY(test.active);
        const QRect tree = test.navigator()->geometry();
        QVERIFY(!test.box()->isVisible());
        test.press(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(test.box()->isVisible());
        QVERIFY(test.box()->hasFocus());
        QCOMPARE(test.box()->placeholderText(), QStringLiteral("输入以查找"));
        QVERIFY(!test.box()->accessibleName().isEmpty());
        QCOMPARE(test.navigator()->focusPolicy(), Qt::NoFocus);
        QCOMPARE(test.navigator()->geometry(), tree);
        const QRect box(test.box()->mapTo(test.navigator(), QPoint()), test.box()->size());
        QVERIFY(test.navigator()->rect().contains(box));
        const QWidget* viewport = test.navigator()->viewport();
        QVERIFY(!viewport->geometry().intersects(box));
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,a,b,ab,import,users,远山"));
    }

    void typingNarrowsToTheMatchesAndMarksTheFirst()
    {
        TreeUnderTest test;
        const QSignalSpy changes(test.navigator(), &QTreeWidget::currentItemChanged);
        test.press(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(test.box(), QStringLiteral("B"));
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,b,ab"));
        QCOMPARE(test.marked(), QStringLiteral("b"));
        QCOMPARE(test.box()->accessibleDescription(), QStringLiteral("b"));
        test.box()->setText(QStringLiteral(" AB "));
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,ab"));
        QCOMPARE(test.marked(), QStringLiteral("ab"));
        test.box()->setText(QStringLiteral("nothing like this"));
        QCOMPARE(test.shownNodes(), QString());
        QCOMPARE(test.marked(), QString());
        test.box()->clear();
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,a,b,ab,import,users,远山"));
        QCOMPARE(test.marked(), QString());
        QCOMPARE(changes.count(), 0);
        QVERIFY(test.dialog.shownPage()->key().isEmpty());
    }

    void whatAnInputMethodCommitsNarrowsAsWell()
    {
        TreeUnderTest test;
        test.press(Qt::Key_F, Qt::ControlModifier);
        QInputMethodEvent composing(QStringLiteral("yuan"), {});
        QCoreApplication::sendEvent(test.box(), &composing);
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,a,b,ab,import,users,远山"));
        QInputMethodEvent done;
        done.setCommitString(QStringLiteral("远"));
        QCoreApplication::sendEvent(test.box(), &done);
        QCOMPARE(test.shownNodes(), QStringLiteral("users,远山"));
        QCOMPARE(test.marked(), QStringLiteral("远山"));
    }

    void upAndDownMoveTheMarkAndEnterShowsOnePage()
    {
        TreeUnderTest test;
        const QSignalSpy changes(test.navigator(), &QTreeWidget::currentItemChanged);
        test.find(QStringLiteral("b"));
        test.press(Qt::Key_Up);
        QCOMPARE(test.marked(), QStringLiteral("b"));
        test.press(Qt::Key_Down);
        QCOMPARE(test.marked(), QStringLiteral("ab"));
        test.press(Qt::Key_Down);
        QCOMPARE(test.marked(), QStringLiteral("ab"));
        test.press(Qt::Key_Up);
        QCOMPARE(test.marked(), QStringLiteral("b"));
        test.press(Qt::Key_Down);
        QCOMPARE(changes.count(), 0);
        test.press(Qt::Key_Return);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("keyAB"));
        QVERIFY(!test.box()->isVisible());
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,a,b,ab,import,users,远山"));
        QVERIFY(test.dialog.shownPage()->isAncestorOf(test.dialog.focusWidget()));
    }

    void theMarkPassesOverParentsThatOnlyHoldMatches()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("a"));
        QStringList marks{test.marked()};
        for (int step = 0; step < 4; ++step) {
            test.press(Qt::Key_Down);
            marks.append(test.marked());
        }
        QCOMPARE(marks.join(u','), QStringLiteral("accounts,a,ab,ab,ab"));
        test.box()->setText(QStringLiteral("远"));
        test.press(Qt::Key_Up);
        QCOMPARE(test.marked(), QStringLiteral("远山"));
    }

    void enterWithoutAMatchDoesNothing()
    {
        TreeUnderTest test;
        for (const char* text : {"", "nothing like this"}) {
            test.find(QString::fromLatin1(text));
            test.press(Qt::Key_Enter);
            QVERIFY(test.box()->hasFocus());
            QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("accounts"));
            QVERIFY(test.dialog.isVisible());
        }
    }

    void enterOnTheShownNodeOnlyClosesTheBox()
    {
        TreeUnderTest test;
        QWidget* before = test.dialog.focusWidget();
        test.find(QStringLiteral("accounts"));
        test.press(Qt::Key_Return);
        QVERIFY(!test.box()->isVisible());
        QCOMPARE(test.dialog.focusWidget(), before);
    }

    void escapeClosesTheBoxBeforeTheDialog()
    {
        TreeUnderTest test;
        QWidget* before = test.dialog.focusWidget();
        test.find(QStringLiteral("b"));
        test.press(Qt::Key_Escape);
        QVERIFY(!test.box()->isVisible());
        QVERIFY(test.dialog.isVisible());
        QCOMPARE(test.dialog.focusWidget(), before);
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,a,b,ab,import,users,远山"));
        test.find(QStringLiteral("b"));
        test.press(Qt::Key_Tab);
        QVERIFY(test.dialog.shownPage()->isAncestorOf(test.dialog.focusWidget()));
        test.press(Qt::Key_Escape);
        QVERIFY(!test.box()->isVisible());
        QVERIFY(test.dialog.isVisible());
        test.press(Qt::Key_Escape);
        QVERIFY(test.dialog.isHidden());
    }

    void tabReachesTheBoxBeforeThePageAndNothingWhileItIsClosed()
    {
        TreeUnderTest test;
        test.closeButton()->setFocus(Qt::TabFocusReason);
        test.press(Qt::Key_Tab);
        QVERIFY(test.dialog.shownPage()->isAncestorOf(test.dialog.focusWidget()));
        const QWidget* first = test.dialog.focusWidget();
        test.press(Qt::Key_F, Qt::ControlModifier);
        test.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(test.dialog.focusWidget(), test.closeButton());
        test.press(Qt::Key_Tab);
        QCOMPARE(test.dialog.focusWidget(), test.box());
        test.press(Qt::Key_Tab);
        QCOMPARE(test.dialog.focusWidget(), first);
    }

    void aReloadOfTheTreeKeepsTextNarrowingAndMark()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("b"));
        test.press(Qt::Key_Down);
        test.dialog.handleEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
        QVERIFY(test.box()->hasFocus());
        QCOMPARE(test.box()->text(), QStringLiteral("b"));
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,b,ab"));
        QCOMPARE(test.marked(), QStringLiteral("ab"));
        // The marked node is gone.
        test.dialog.setNavigatorFiller(fillThreePages);
        test.dialog.handleEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
        QCOMPARE(test.shownNodes(), QStringLiteral("accounts,b"));
        QCOMPARE(test.marked(), QStringLiteral("b"));
        test.dialog.setNavigatorFiller({});
        test.dialog.handleEvent(GW::EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
        QCOMPARE(test.marked(), QString());
        test.press(Qt::Key_Return);
        test.press(Qt::Key_Down);
        QVERIFY(test.box()->hasFocus());
    }

    void aRequestDisablesTheBoxAndLeavesItAsItWas()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("b"));
        test.dialog.setDialogEnabled(false);
        QVERIFY(!test.box()->isEnabled());
        QCOMPARE(test.dialog.focusWidget(), &test.dialog);
        test.dialog.setDialogEnabled(true);
        QVERIFY(test.box()->hasFocus());
        QCOMPARE(test.marked(), QStringLiteral("b"));
        test.press(Qt::Key_Escape);
        test.dialog.setDialogEnabled(false);
        test.press(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(!test.box()->isVisible());
    }

    void theTreeStillStepsThroughTheNodesThatAreLeft()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("b"));
        QStringList nodes;
        for (int step = 0; step < 3; ++step) {
            test.press(Qt::Key_PageDown, Qt::ControlModifier);
            nodes.append(test.navigator()->currentItem()->text(0));
        }
        test.press(Qt::Key_PageUp, Qt::ControlModifier);
        nodes.append(test.navigator()->currentItem()->text(0));
        QCOMPARE(nodes.join(u','), QStringLiteral("b,ab,ab,b"));
        QVERIFY(test.box()->isVisible());
        // Another page is another place to be.
        QVERIFY(test.dialog.shownPage()->isAncestorOf(test.dialog.focusWidget()));
        test.press(Qt::Key_F, Qt::ControlModifier);
        QVERIFY(test.box()->hasFocus());
        QCOMPARE(test.box()->selectedText(), QStringLiteral("b"));
    }

    void keysThatTheBoxDoesNotKnowLeaveTheTreeAlone()
    {
        TreeUnderTest test;
        test.press(Qt::Key_F, Qt::ControlModifier);
        for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_F12})
            test.press(key);
        QCOMPARE(test.navigator()->currentItem()->text(0), QStringLiteral("accounts"));
        QVERIFY(test.box()->hasFocus());
    }

    void closingTheDialogClosesTheBox()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("b"));
        test.dialog.close();
        test.dialog.showPage(202);
        test.dialog.show();
        QVERIFY(!test.box()->isVisible());
        QCOMPARE(test.box()->text(), QString());
        QVERIFY(!test.navigator()->topLevelItem(1)->isHidden());
    }

    void oneOfThreeThousandIsFoundByThreeKeysAndEnter()
    {
        TreeUnderTest test(3000);
        const QSignalSpy changes(test.navigator(), &QTreeWidget::currentItemChanged);
        test.press(Qt::Key_F, Qt::ControlModifier);
        for (const Qt::Key key : {Qt::Key_7, Qt::Key_7, Qt::Key_7})
            test.press(key);
        QVERIFY(test.navigator()->visualItemRect(test.filter()->mark()).isValid());
        QCOMPARE(test.marked(), QStringLiteral("100777"));
        test.press(Qt::Key_Return);
        QCOMPARE(test.dialog.shownPage()->key(), QStringLiteral("100777"));
        QCOMPARE(changes.count(), 1);
        const QRect shown = test.navigator()->visualItemRect(test.navigator()->currentItem());
        QVERIFY(test.navigator()->viewport()->rect().contains(shown.center()));
    }

    void theMarkIsSeenInBothThemes()
    {
        TreeUnderTest test;
        test.find(QStringLiteral("b"));
        for (const auto theme : {KZ::CUiResource::Theme::Dark, KZ::CUiResource::Theme::Light}) {
            KZ::CUiResource::setTheme(theme);
            const QRect row = test.navigator()->visualItemRect(test.filter()->mark());
            const QImage picture = test.navigator()->viewport()->grab(row).toImage();
            const QColor ring = KZ::CUiResource::getColor(QStringLiteral("clr_focus"));
            QCOMPARE(picture.pixelColor(picture.width() / 2, 0), ring);
            const QRect other = test.navigator()->visualItemRect(
                test.navigator()->itemBelow(test.filter()->mark()));
            QVERIFY(test.navigator()->viewport()->grab(other).toImage().pixelColor(
                        picture.width() / 2, 0) != ring);
        }
    }

    void aClickBesideTheNodesKeepsTheHighlight()
    {
        TreeUnderTest test;
        QTreeWidgetItem* current = test.navigator()->currentItem();
        QVERIFY(current->isSelected());
        QWidget* viewport = test.navigator()->viewport();
        const QPoint empty(viewport->width() / 2, viewport->height() - 5);
        QVERIFY(!test.navigator()->itemAt(empty));
        QTest::mouseClick(viewport, Qt::LeftButton, {}, empty);
        QTest::mouseDClick(viewport, Qt::LeftButton, {}, empty);
        QTest::mouseClick(viewport, Qt::RightButton, {}, empty);
        QVERIFY(current->isSelected());
        // A click with Ctrl would take the selection back.
        const QPoint node = test.navigator()->visualItemRect(current).center();
        QTest::mouseClick(viewport, Qt::LeftButton, Qt::ControlModifier, node);
        QCoreApplication::processEvents();
        QVERIFY(current->isSelected());
        QCOMPARE(test.navigator()->currentItem(), current);
    }
};

int main(int argc, char** argv)
{
    return runTest<NavigatorFilterTest>(argc, argv);
}

#include "NavigatorFilterTest.moc"
