#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/MediumNormalButton.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"
#include "utils/LogCenter.h"

#include <QFile>
#include <QTemporaryDir>

#include <climits>

namespace {

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

class AuthSettingDialogTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    // First, because the instance is never forgotten again.
    void theStaticEntriesDoNothingBeforeADialogExists()
    {
        GW::CAuthSettingDialog::showSettingPage(201);
        GW::CAuthSettingDialog::showSettingPage(201, 20101, QStringLiteral("key"), 0);
        QVERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void isBuiltOfATreeACloseButtonAndAHiddenBusyDisplay()
    {
        DialogUnderTest test;
        QCOMPARE(test.dialog.windowTitle(), QStringLiteral("授权设置"));
        QVERIFY(!test.dialog.testAttribute(Qt::WA_DeleteOnClose));
        QVERIFY(!(test.dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
        QVERIFY(test.navigator());
        QCOMPARE(test.navigator()->topLevelItemCount(), 0);
        const auto* close = qobject_cast<KZ::CMediumNormalButton*>(test.closeButton());
        QVERIFY(close);
        QCOMPARE(close->id(), 102);
        QCOMPARE(close->command(), 1);
        QCOMPARE(close->text(), QStringLiteral("关闭"));
        QCOMPARE(test.closeButton()->size(),
                 QSize(uiSize("gw_siz_setting_inner_bottom_btn_width"),
                       uiSize("gw_siz_setting_inner_bottom_btn_height")));
        QCOMPARE(test.progressText()->text(), QStringLiteral("向服务器确认中……"));
        QVERIFY(test.progressText()->isHidden());
        QVERIFY(test.progressBar()->isHidden());
        QCOMPARE(test.progressBar()->minimum(), 0);
        QCOMPARE(test.progressBar()->maximum(), 0);
        QVERIFY(test.dialog.pages().isEmpty());
    }

    void itsSizeIsTheSumOfItsRegions()
    {
        DialogUnderTest test;
        const int m = uiSize("gw_siz_setting_margin");
        const int f = test.dialog.borderWidth();
        const QSize expected(uiSize("gw_siz_setting_inner_right_width") + 3 * m + 2 * f +
                                 uiSize("gw_siz_setting_inner_left_width"),
                             test.dialog.titleBarHeight() + 2 * f + 3 * m +
                                 uiSize("gw_siz_setting_inner_bottom_height") +
                                 uiSize("gw_siz_setting_inner_top_height"));
        QCOMPARE(test.dialog.minimumSize(), expected);
        QCOMPARE(test.dialog.maximumSize(), expected);
    }

    void theRegionsStandWhereTheGeometrySays()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        const QSize size(1100, 777);
        test.dialog.resetLayout(size);
        const int m = uiSize("gw_siz_setting_margin");
        const int f = test.dialog.borderWidth();
        const int t = test.dialog.titleBarHeight();
        const int l = uiSize("gw_siz_setting_inner_left_width");
        const int r = uiSize("gw_siz_setting_inner_right_width");
        const int top = uiSize("gw_siz_setting_inner_top_height");
        const int b = uiSize("gw_siz_setting_inner_bottom_height");
        const int v = uiSize("gw_siz_setting_inner_bottom_v_space");
        QCOMPARE(test.navigator()->geometry(), QRect(f + m, t + f + m, l, top));
        QCOMPARE(test.dialog.shownPage()->geometry(), QRect(f + 2 * m + l, t + f + m, r, top));
        const int barTop = 777 - f - b - m;
        QCOMPARE(test.closeButton()->pos(),
                 QPoint(1100 - f - m - test.closeButton()->width(),
                        barTop + (b - test.closeButton()->height()) / 2));
        const int barHeight = uiSize("gw_siz_setting_inner_bottom_progress_height");
        const int textHeight = test.progressText()->height();
        const int free = b - barHeight - textHeight - v;
        QCOMPARE(test.progressText()->pos(), QPoint(m, barTop + free / 2));
        QCOMPARE(test.progressBar()->geometry(),
                 QRect(m, barTop + free / 2 + textHeight + v,
                       uiSize("gw_siz_setting_inner_bottom_progress_width"), barHeight));
    }

    void aResizeLaysOutAnew()
    {
        DialogUnderTest test;
        test.dialog.show();
        const QPoint before = test.closeButton()->pos();
        test.dialog.setFixedSize(test.dialog.size() + QSize(30, 20));
        QTRY_COMPARE(test.closeButton()->pos(), before + QPoint(30, 20));
    }

    void theEntryOpensThePageModallyOnItsFirstTab()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        bool seen = false;
        QTimer::singleShot(0, &test.dialog, [&] {
            seen = test.dialog.isVisible() && test.dialog.isModal() && test.looksIdle() &&
                   test.dialog.shownPage()->pageId() == 201 &&
                   test.dialog.shownPage()->tabControl()->currentTabIndex() == 0 &&
                   test.navigator()->currentItem() == test.navigator()->topLevelItem(0);
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(201);
        QVERIFY(seen);
        QVERIFY(test.dialog.isHidden());
    }

    void theEntryOpensASubPageWithItsKeyAndTab()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        QString key;
        QString node;
        QTimer::singleShot(0, &test.dialog, [&] {
            key = test.currentTab()->key();
            node = test.navigator()->currentItem()->text(0);
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(201, 20101, QStringLiteral("keyB"), 0);
        QCOMPARE(key, QStringLiteral("keyB"));
        QCOMPARE(node, QStringLiteral("b"));
    }

    void theEntryOpensATopLevelPageOnAnotherTabAndSelectsItsNode()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        int tab = -1;
        QString node;
        QTimer::singleShot(0, &test.dialog, [&] {
            tab = test.dialog.shownPage()->tabControl()->currentTabIndex();
            node = test.navigator()->currentItem()->text(0);
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(201, INT_MAX, QString(), 1);
        QCOMPARE(tab, 1);
        QCOMPARE(node, QStringLiteral("accounts"));
    }

    void theLastDialogConstructedIsTheOneThatIsShown()
    {
        FakeServices services;
        OpenDialog first;
        OpenDialog second;
        QTimer::singleShot(0, &second, [&] { second.close(); });
        GW::CAuthSettingDialog::showSettingPage(202);
        QVERIFY(first.pages().isEmpty());
        QVERIFY(!second.pages().isEmpty());
    }

    void closingHidesAndTheNextOpeningShowsThePageAnew()
    {
        DialogUnderTest test;
        const auto openAndClose = [&] {
            int rows = -1;
            QTimer::singleShot(0, &test.dialog, [&] {
                rows = test.currentTab()->findChild<KZ::COddEvenRowTable*>()->rowCount();
                test.closeButton()->click();
            });
            GW::CAuthSettingDialog::showSettingPage(201);
            return rows;
        };
        QCOMPARE(openAndClose(), 0);
        QVERIFY(test.dialog.isHidden());
        QVERIFY(test.dialog.shownPage());
        QCOMPARE(test.dialog.shownPage()->pageId(), INT_MAX);
        QCOMPARE(test.dialog.shownPage()->subPageId(), INT_MAX);
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        QCOMPARE(openAndClose(), 1);
        QCOMPARE(test.dialog.pages().size(), 2);
    }

    void escapeHidesTheDialog()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        QTest::keyClick(&test.dialog, Qt::Key_Escape);
        QVERIFY(test.dialog.isHidden());
    }

    void aDisabledDialogRefusesToClose()
    {
        DialogUnderTest test;
        test.dialog.show();
        test.dialog.setEnabled(false);
        QVERIFY(!test.dialog.close());
        QVERIFY(test.dialog.isVisible());
        test.dialog.setEnabled(true);
        QVERIFY(test.dialog.close());
        QVERIFY(test.dialog.isHidden());
    }

    void theWaitingEventShowsAndEndsTheBusyDisplay()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        QVERIFY(test.looksIdle());
        QVERIFY(test.dialog.handleEvent(GW::EVENT_SET_WAITING, 1, 1, QString(), nullptr));
        QVERIFY(test.looksBusy());
        QVERIFY(test.closeButton()->isEnabled());
        QVERIFY(test.dialog.isEnabled());
        QVERIFY(test.dialog.handleEvent(GW::EVENT_SET_WAITING, 1, 0, QString(), nullptr));
        QVERIFY(test.looksIdle());
    }

    void aTabPagesRequestReachesTheDialogThroughTheChain()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        test.currentTab()->beginRequest();
        QVERIFY(test.looksBusy());
        bool shown = false;
        StandingClock later;
        later.now = 1e9;
        test.currentTab()->finishRequest([&] { shown = test.looksIdle(); });
        QVERIFY(shown);
    }

    void everyOpeningIsIdle()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        test.dialog.setDialogEnabled(false);
        test.dialog.close();
        test.dialog.showPage(201);
        test.dialog.show();
        QVERIFY(test.looksIdle());
        QVERIFY(test.currentTab()->isEnabled());
        QCOMPARE(test.dialog.pages().size(), 2);
    }

    void theFocusGoesToTheShownPageAndComesBackAfterARequest()
    {
        DialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QVERIFY(test.currentTab()->isAncestorOf(test.dialog.focusWidget()));
        auto* editor = test.dialog.findChild<QWidget*>(QStringLiteral("halden_batch_start"));
        editor->setFocus();
        test.dialog.setDialogEnabled(false);
        QVERIFY(!editor->hasFocus());
        test.dialog.setDialogEnabled(true);
        QVERIFY(editor->hasFocus());
        // A page that is left takes the focus with it: not to the close button.
        test.dialog.showPage(202);
        QVERIFY(test.currentTab()->isAncestorOf(test.dialog.focusWidget()));
        test.closeButton()->setFocus();
        test.dialog.setDialogEnabled(false);
        QVERIFY(test.closeButton()->hasFocus());
        test.dialog.setDialogEnabled(true);
        QVERIFY(test.closeButton()->hasFocus());
    }

    void aTabShownForTheFirstTimeTakesTheFocus()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&test.dialog));
        QVERIFY(test.currentTab()->isAncestorOf(test.dialog.focusWidget()));
        test.dialog.shownPage()->tabControl()->activateTab(1);
        QCOMPARE(test.dialog.focusWidget()->accessibleName(), QStringLiteral("被授权人"));
        QVERIFY(test.dialog.focusWidget()->hasFocus());
    }

    void aRequestWhileTheDialogIsOpenShowsThePageAndReturns()
    {
        DialogUnderTest test;
        test.dialog.setNavigatorFiller(fillThreePages);
        QStringList shown;
        QTimer::singleShot(0, &test.dialog, [&] {
            GW::CAuthSettingDialog::showSettingPage(202);
            shown.append(QString::number(test.dialog.shownPage()->pageId()));
            shown.append(test.navigator()->currentItem()->text(0));
            GW::CAuthSettingDialog::showSettingPage(201, 20101, QStringLiteral("keyB"), 0);
            shown.append(test.dialog.shownPage()->key());
            shown.append(test.navigator()->currentItem()->text(0));
            // While it waits for the server the page comes up waiting.
            test.dialog.setDialogEnabled(false);
            GW::CAuthSettingDialog::showSettingPage(203);
            shown.append(test.looksBusy() ? QStringLiteral("busy") : QStringLiteral("idle"));
            shown.append(QString::number(test.dialog.shownPage()->pageId()));
            test.dialog.close();
        });
        GW::CAuthSettingDialog::showSettingPage(201);
        QCOMPARE(shown.join(u','), QStringLiteral("202,import,keyB,b,busy,203"));
        QVERIFY(test.dialog.isHidden());
    }

    void aRequestRightAfterClosingOpensTheDialogAgain()
    {
        DialogUnderTest test;
        QVector<int> pages;
        const auto leave = [&] {
            pages.append(test.dialog.shownPage()->pageId());
            test.dialog.close();
        };
        QTimer::singleShot(0, &test.dialog, [&] {
            leave();
            // The loop of the first opening has not ended yet.
            GW::CAuthSettingDialog::showSettingPage(202);
            QTimer::singleShot(0, &test.dialog, leave);
        });
        GW::CAuthSettingDialog::showSettingPage(201);
        QCOMPARE(pages, QVector<int>({201, 202}));
        QVERIFY(test.dialog.isHidden());
    }

    void minimisingNeitherLeavesThePageNorEndsARequest()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        test.dialog.setDialogEnabled(false);
        QHideEvent hide;
        QSpontaneKeyEvent::setSpontaneous(&hide);
        qApp->notify(&test.dialog, &hide);
        QCOMPARE(test.dialog.shownPage()->pageId(), 201);
        QShowEvent show;
        QSpontaneKeyEvent::setSpontaneous(&show);
        qApp->notify(&test.dialog, &show);
        QVERIFY(test.looksBusy());
    }

    void unknownEventsAreNotHandled()
    {
        DialogUnderTest test;
        QVERIFY(!test.dialog.handleEvent(4711, 0, 0, QString(), nullptr));
    }

    void theLogTellsOfAnOpeningOnlyWhenBothSwitchesAreOn()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("debug.log"));
        QVERIFY(utils::CLogCenter::configure(path));
        DialogUnderTest test;
        const auto linesOf = [&](int level, bool debug, bool withSubPage) {
            utils::CLogCenter::setFileLogLevel(level);
            utils::CLogCenter::setDebugEnabled("MBDbgFile", debug);
            QFile file(path);
            const bool opened = file.open(QIODevice::ReadOnly);
            file.seek(file.size());
            QTimer::singleShot(0, &test.dialog, [&] { test.dialog.close(); });
            if (withSubPage)
                GW::CAuthSettingDialog::showSettingPage(201, 20101, QString(), 0);
            else
                GW::CAuthSettingDialog::showSettingPage(201);
            QStringList lines;
            const QStringList texts{QStringLiteral("start show setting page, load"),
                                    QStringLiteral("load finished"),
                                    QStringLiteral("GW::CAuthSettingDialog::showEvent")};
            const QStringList written =
                opened ? QString::fromUtf8(file.readAll()).split(u'\n') : QStringList();
            for (const QString& line : written) {
                for (const QString& text : texts) {
                    if (line.endsWith(text))
                        lines.append(text);
                }
            }
            return lines.join(u'|');
        };
        QCOMPARE(linesOf(15, true, false),
                 QStringLiteral("start show setting page, load|load finished|"
                                "GW::CAuthSettingDialog::showEvent"));
        QCOMPARE(linesOf(15, true, true), QStringLiteral("GW::CAuthSettingDialog::showEvent"));
        QCOMPARE(linesOf(14, true, false), QString());
        QCOMPARE(linesOf(15, false, false), QString());
        utils::CLogCenter::setFileLogLevel(10);
        utils::CLogCenter::configure(QString());
    }

    void theOldNameOfTrStillWorks()
    {
        QCOMPARE(GW::CAuthSettingDialog::trUtf8("授权设置"), QStringLiteral("授权设置"));
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingDialogTest>(argc, argv);
}

#include "AuthSettingDialogTest.moc"
