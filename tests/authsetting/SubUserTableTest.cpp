#include "kit/resources/UiResource.h"
#include "tests/authsetting/NotingUser.h"
#include "tests/authsetting/SubUserFixture.h"
#include "tests/support/TipTestCase.h"

#include <QHideEvent>
#include <QTableView>

namespace {

const QString modified = QStringLiteral("已修改, 未授权");
const QString grantedText = QStringLiteral("已授权");
const QString freeText = QStringLiteral("未授权");

} // namespace

/// What the tab of one restricted user shows, and how accounts become pending.
class SubUserTableTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void standsOnItsPlaceWithTheFixedTexts()
    {
        SubUserFixture test;
        QCOMPARE(test.page->pageId(), 203);
        QCOMPARE(test.page->subPageId(), 20401);
        QCOMPARE(test.page->tabPageId(), 2040101);
        QVERIFY(test.page->isEnabled());
        QStringList captions;
        for (const KZ::CSimpleTextWidget* text : test.page->findChildren<KZ::CSimpleTextWidget*>())
            captions.append(text->text());
        for (const QString& text :
             {QStringLiteral("子用户名"), QStringLiteral("密　　码"), QStringLiteral("确认密码"),
              QStringLiteral("起始时间"), QStringLiteral("终止时间")})
            QVERIFY2(captions.contains(text), qPrintable(text));
        QCOMPARE(test.table()->getID(), 0x400014);
        QCOMPARE(headerTexts(test.table()).mid(1),
                 QStringList({QStringLiteral("交易平台"), QStringLiteral("经纪公司"),
                              QStringLiteral("账号"), QStringLiteral("授权状态"),
                              QStringLiteral("被授权用户"), QStringLiteral("起始时间"),
                              QStringLiteral("终止时间"), QStringLiteral("操作")}));
        QCOMPARE(test.table()->columnWidth(0),
                 KZ::CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
        QCOMPARE(test.grantButton()->text(), QStringLiteral("授权"));
        QCOMPARE(test.grantButton()->iconKey(), QStringLiteral("gw_img_auth_export"));
        QCOMPARE(test.menu()->actions().at(0)->text(), QStringLiteral("文件授权"));
        QCOMPARE(test.menu()->actions().at(1)->text(), QStringLiteral("服务器授权"));
        QCOMPARE(test.password()->echoMode(), QLineEdit::Password);
        QCOMPARE(test.confirm()->echoMode(), QLineEdit::Password);
        QVERIFY(!test.name()->isEnabled());
        QCOMPARE(test.stateButton()->focusPolicy(), Qt::NoFocus);
        QCOMPARE(test.start()->minimumDate(), testToday());
        QCOMPARE(test.end()->minimumDate(), testToday());
    }

    void theStateButtonHangsInTheUpperRightCorner()
    {
        SubUserFixture test;
        test.top.show();
        for (const int width : {900, 700}) {
            test.page->resize(width, 500);
            QCOMPARE(test.stateButton()->pos(), QPoint(width - test.stateButton()->width() - 8, 8));
        }
    }

    void theRegistryGivesTheSizes()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.top.resize(900, 500);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        const auto size = [](const char* key) {
            return KZ::CUiResource::getSize(QString::fromLatin1(key));
        };
        const QSize editor(size("gw_siz_setting_accounts_item_width"),
                           size("gw_siz_setting_accounts_item_height"));
        const int height = size("gw_siz_auth_setting_accounts_authorize_row_height");
        const int pitch = height + size("gw_siz_setting_accounts_item_v_space");
        const QVector<std::pair<QWidget*, QWidget*>> rows{{test.name(), test.state()},
                                                          {test.password(), test.confirm()},
                                                          {test.start(), test.end()}};
        for (int row = 0; row < rows.size(); ++row) {
            const auto& [left, right] = rows[row];
            const QWidget* line = left->parentWidget();
            QCOMPARE(right->parentWidget(), line);
            QCOMPARE(line->mapTo(test.page, QPoint(0, 0)), QPoint(8, 8 + row * pitch));
            QCOMPARE(line->height(), height);
            QCOMPARE(left->size(), editor);
            // A caption, 8 pixels, an editor, 10 pixels, and what stands right of it.
            const QWidget* caption = line->childAt(1, height / 2);
            QVERIFY(qobject_cast<const KZ::CSimpleTextWidget*>(caption));
            QCOMPARE(left->x(), caption->geometry().right() + 1 + 8);
            const QWidget* next = line->childAt(left->geometry().right() + 1 + 10 + 1, height / 2);
            QVERIFY(qobject_cast<const KZ::CSimpleTextWidget*>(next));
            QCOMPARE(next->x(), left->geometry().right() + 1 + 10);
            if (next == right)
                continue;
            QCOMPARE(right->size(), editor);
            QCOMPARE(right->x(), next->geometry().right() + 1 + 8);
        }
        QCOMPARE(test.table()->mapTo(test.page, QPoint(0, 0)), QPoint(8, 8 + 3 * pitch));
    }

    void keepsTheTablesLayoutBetweenTwoLives()
    {
        FakeServices services;
        EventRecorder top;
        {
            const GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&top);
            page.findChild<KZ::COddEvenRowTable*>()->setColumnWidth(3, 222);
        }
        QVERIFY(!services.user.tableLayouts.value(0x400014).isEmpty());
        const GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&top);
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->columnWidth(3), 222);
    }

    void listsTheOwnAccountsOutsideSubAccountRelations()
    {
        SubUserFixture test;
        for (const int type : {0, 2, 9})
            test.services.user.addAccount(1, 1, "9000", "other",
                                          static_cast<mbservice::EAuthType>(type));
        test.services.user.accounts.append(nullptr);
        test.services.user.subAccounts.insert(test.accounts[0]->key());
        test.services.user.parentAccounts.insert(test.accounts[3]->key());
        test.page->reloadData();
        QCOMPARE(test.table()->rowCount(), 2);
        QCOMPARE(test.cell(0, 3), QStringLiteral("1001"));
        QCOMPARE(test.cell(1, 3), QStringLiteral("1002"));
    }

    void anAccountThatGoesDuringAReloadIsStillListed()
    {
        NotedServices services;
        for (const char* number : {"1", "2", "3"})
            services.user.addAccount(1, 1, "b", number, mbservice::AUTH_TYPE_NOT_GRANTED);
        EventRecorder top;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&top);
        page.setKey(QStringLiteral("ops"));
        services.user.onRead = [&] { services.user.accounts.clear(); };
        page.reloadData();
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->rowCount(), 3);
    }

    void withoutAUserTheTableIsEmptied()
    {
        SubUserFixture test;
        test.page->reloadData();
        QCOMPARE(test.table()->rowCount(), 4);
        test.page->setKey(QString());
        test.page->reloadData();
        QCOMPARE(test.table()->rowCount(), 0);
        QCOMPARE(test.name()->text(), QStringLiteral("ops"));
    }

    void rowsTellFreeFromGrantedAccounts()
    {
        SubUserFixture test;
        test.page->reloadData();
        QCOMPARE(rowTexts(test.table(), 0),
                 QStringList({QString(), QStringLiteral("期货平台"), QStringLiteral("远山期货"),
                              QStringLiteral("1000"), freeText, QString(), QString(), QString(),
                              QString()}));
        QCOMPARE(
            rowTexts(test.table(), 2).mid(3),
            QStringList({QStringLiteral("1002"), grantedText, QStringLiteral("ops"),
                         QStringLiteral("2026-01-02"), QStringLiteral("2026-05-06"), QString()}));
        QCOMPARE(rowTexts(test.table(), 3).mid(4, 2),
                 QStringList({grantedText, QStringLiteral("friend")}));
        QCOMPARE(test.table()->itemTextColorKey(0, 4), QStringLiteral("clr_stock_neutral"));
        QCOMPARE(test.table()->itemTextColorKey(2, 4), QStringLiteral("clr_stock_rise"));
        // Only what is granted to this very user is ticked, whatever is granted is locked.
        const QVector<bool> ticks{false, false, true, false};
        const QVector<bool> enabled{true, true, false, false};
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(test.ticked(row), ticks[row]);
            QCOMPARE(test.table()->isItemCheckEnabled(row, 0), enabled[row]);
            auto* box = qobject_cast<KZ::CCheckBox*>(test.table()->itemWidget(row, 0));
            QVERIFY(box);
            QCOMPARE(box->id(), 100 + row);
            auto* cancel = qobject_cast<KZ::CSmallNormalButton*>(test.table()->itemWidget(row, 8));
            QVERIFY(cancel);
            QCOMPARE(cancel->id(), 100000 + row);
            QCOMPARE(cancel->text(), QStringLiteral("取消授权"));
            QCOMPARE(cancel->size(), QSize(KZ::CUiResource::getSize(QStringLiteral(
                                               "gw_siz_auth_setting_account_btn_width")),
                                           KZ::CUiResource::getSize(QStringLiteral(
                                               "gw_siz_auth_setting_account_btn_height"))));
        }
    }

    void onlyGrantedRowsInSightShowTheirButton()
    {
        SubUserFixture test;
        test.top.resize(900, 500);
        test.page->reloadData();
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        const QVector<bool> shown{false, false, true, true};
        for (int row = 0; row < 4; ++row)
            QTRY_COMPARE(test.table()->itemWidget(row, 8)->isVisible(), shown[row]);
        test.services.client.grants.remove(test.accounts[2]->key());
        test.services.grant(test.accounts[0], QStringLiteral("ops"), testToday(), testToday());
        test.table()->selectRow(2);
        test.deliver(41);
        test.table()->selectRow(0);
        test.deliver(41);
        QTRY_VERIFY(test.table()->itemWidget(0, 8)->isVisible());
        QVERIFY(!test.table()->itemWidget(2, 8)->isVisible());
    }

    void aGrantNearItsEndIsMarkedUntilItsRowIsFreeAgain()
    {
        SubUserFixture test;
        test.services.grant(test.accounts[2], QStringLiteral("ops"), testToday(), testToday());
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table(), 2, 4), QStringLiteral("今天到期"));
        QCOMPARE(expiryMark(test.table(), 3, 4), QString());
        QCOMPARE(test.cell(2, 4), grantedText);
        test.services.client.grants.clear();
        test.table()->selectRow(2);
        test.deliver(41);
        QCOMPARE(expiryMark(test.table(), 2, 4), QString());
    }

    void aReloadCountsTheDaysThatAreLeftAnew()
    {
        SubUserFixture test;
        test.services.grant(test.accounts[2], QStringLiteral("ops"), testToday(),
                            testToday().addDays(4));
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table(), 2, 4), QString());
        test.services.time.now = test.services.time.now.addDays(1);
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table(), 2, 4), QStringLiteral("还有 3 天到期"));
    }

    void aPendingRowIsNotMarkedForTheGrantThatItHad()
    {
        SubUserFixture test;
        test.services.grant(test.accounts[2], QStringLiteral("ops"), testToday(), testToday());
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table(), 2, 4), QStringLiteral("今天到期"));
        test.services.client.grants.clear();
        test.table()->selectRow(2);
        test.deliver(41);
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        test.tick(2);
        QCOMPARE(test.cell(2, 4), modified);
        QCOMPARE(test.cell(2, 6), QStringLiteral("2026-03-10"));
        QCOMPARE(expiryMark(test.table(), 2, 4), QString());
    }

    void unknownPlatformsAndBrokersShowTheirIdentifiers()
    {
        SubUserFixture test;
        test.accounts[0]->platformId = 77;
        test.accounts[0]->brokerId = "X9";
        test.accounts[1]->accountType = 5;
        test.accounts[1]->accountAlias = "别名";
        test.page->reloadData();
        QCOMPARE(rowTexts(test.table(), 0).mid(1, 2),
                 QStringList({QStringLiteral("77"), QStringLiteral("X9")}));
        QCOMPARE(rowTexts(test.table(), 1).mid(1, 3),
                 QStringList({QStringLiteral("股票平台"), QStringLiteral("临江证券"),
                              QStringLiteral("别名")}));
    }

    void theEditorsFollowTheLastRowThatWasFilled()
    {
        SubUserFixture test;
        test.page->reloadData();
        QCOMPARE(test.start()->date(), QDate(2026, 2, 3));
        QCOMPARE(test.end()->date(), QDate(2026, 6, 7));
        test.services.user.addAccount(1, 1, "9000", "free", mbservice::AUTH_TYPE_NOT_GRANTED);
        test.page->reloadData();
        QCOMPARE(test.start()->date(), testToday());
        QCOMPARE(test.end()->date(), testToday().addDays(7));
        QCOMPARE(test.start()->minimumDate(), testToday());
        test.services.time.now = test.services.time.now.addDays(1);
        test.page->reloadData();
        QCOMPARE(test.start()->date(), testToday().addDays(1));
        QCOMPARE(test.start()->minimumDate(), testToday().addDays(1));
        QCOMPARE(test.end()->minimumDate(), testToday().addDays(1));
        test.table()->selectRow(2);
        QVERIFY(test.deliver(41));
        QCOMPARE(test.start()->date(), QDate(2026, 1, 2));
        QCOMPARE(test.end()->date(), QDate(2026, 5, 6));
    }

    void anEnabledUserCanBeGrantedTo()
    {
        SubUserFixture test;
        test.page->reloadData();
        QCOMPARE(test.name()->text(), QStringLiteral("ops"));
        QCOMPARE(test.state()->text(), QStringLiteral("已启用"));
        QCOMPARE(test.state()->textColorKey(), QStringLiteral("clr_sub_user_enabled"));
        QCOMPARE(test.stateButton()->imageKey(), QStringLiteral("gw_img_auth_subuser_disable"));
        QCOMPARE(test.stateButton()->toolTip(), QStringLiteral("禁用"));
        for (const QWidget* off :
             {static_cast<QWidget*>(test.password()), static_cast<QWidget*>(test.confirm())})
            QVERIFY(!off->isEnabled());
        for (const QWidget* on :
             {static_cast<QWidget*>(test.start()), static_cast<QWidget*>(test.end()),
              static_cast<QWidget*>(test.table()), static_cast<QWidget*>(test.grantButton())})
            QVERIFY(on->isEnabled());
    }

    void aDisabledUserCanBeGivenAPassword()
    {
        SubUserFixture test;
        test.typePasswords(QStringLiteral("left"), QStringLiteral("over"));
        test.disableUser();
        QCOMPARE(test.state()->text(), QStringLiteral("已禁用"));
        QCOMPARE(test.state()->textColorKey(), QStringLiteral("clr_sub_user_disabled"));
        QCOMPARE(test.stateButton()->imageKey(), QStringLiteral("gw_img_auth_subuser_enable"));
        QCOMPARE(test.stateButton()->toolTip(), QStringLiteral("启用"));
        QCOMPARE(test.password()->text(), QString());
        QCOMPARE(test.confirm()->text(), QString());
        for (const QWidget* on :
             {static_cast<QWidget*>(test.password()), static_cast<QWidget*>(test.confirm())})
            QVERIFY(on->isEnabled());
        for (const QWidget* off :
             {static_cast<QWidget*>(test.start()), static_cast<QWidget*>(test.end()),
              static_cast<QWidget*>(test.table()), static_cast<QWidget*>(test.grantButton())})
            QVERIFY(!off->isEnabled());
    }

    void aPageOutOfSightKeepsNoPassword()
    {
        SubUserFixture test;
        test.disableUser();
        test.top.show();
        test.typePasswords(QStringLiteral("secret"), QStringLiteral("secret"));
        test.page->hide();
        QCOMPARE(test.password()->text(), QString());
        QCOMPARE(test.confirm()->text(), QString());
    }

    void aMinimizedPageKeepsWhatIsTyped()
    {
        SubUserFixture test;
        test.disableUser();
        test.typePasswords(QStringLiteral("secret"), QStringLiteral("secret"));
        QHideEvent hide;
        QSpontaneKeyEvent::setSpontaneous(&hide);
        qApp->notify(test.page, &hide);
        QCOMPARE(test.password()->text(), QStringLiteral("secret"));
    }

    void aTickedAccountBecomesPendingWithTheEditorsDays()
    {
        SubUserFixture test;
        test.makePending(0);
        QCOMPARE(rowTexts(test.table(), 0).mid(4, 4),
                 QStringList({modified, QString(), QStringLiteral("2026-03-10"),
                              QStringLiteral("2026-03-12")}));
        QCOMPARE(test.table()->itemTextColorKey(0, 4), QStringLiteral("clr_stock_neutral"));
        QVERIFY(test.ticked(0));
        QVERIFY(test.table()->isItemCheckEnabled(0, 0));
        QCOMPARE(test.start()->date(), QDate(2026, 3, 10));
        QVERIFY(tipTexts().isEmpty());

        test.tick(0, false);
        QCOMPARE(rowTexts(test.table(), 0).mid(4, 4),
                 QStringList({freeText, QString(), QString(), QString()}));
        QVERIFY(!test.ticked(0));
        QCOMPARE(test.start()->date(), testToday());
        QCOMPARE(test.end()->date(), testToday().addDays(7));
    }

    void anInvertedRangeUnticksAndStops()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.setDays(QDate(2026, 3, 12), QDate(2026, 3, 10));
        test.tick(0);
        VERIFY_TIP(test.end(), QStringLiteral("授权截至日期必须大于起始日期"), 1);
        QVERIFY(!test.ticked(0));
        QCOMPARE(test.cell(0, 4), freeText);
        QVERIFY2(test.start()->date() == QDate(2026, 3, 12), "the row is not filled again");
    }

    void aOneDayRangeIsAnnouncedAndPending()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.setDays(QDate(2026, 3, 12), QDate(2026, 3, 12));
        test.tick(0);
        VERIFY_TIP(test.end(), QStringLiteral("授权日期为1天"), 2);
        QCOMPARE(test.cell(0, 4), modified);
        QVERIFY(test.ticked(0));
    }

    void changedDaysReachTheSelectedPendingRow()
    {
        SubUserFixture test;
        test.makePending(0);
        test.table()->selectRow(0);
        test.setDays(QDate(2026, 3, 11), QDate(2026, 3, 20));
        QVERIFY(test.deliver(87, 3));
        QCOMPARE(rowTexts(test.table(), 0).mid(6, 2),
                 QStringList({QStringLiteral("2026-03-11"), QStringLiteral("2026-03-20")}));
        QVERIFY(test.top.events.isEmpty());
    }

    void anInvertedRangeOfAPendingRowTakesItBack()
    {
        SubUserFixture test;
        test.makePending(0);
        test.table()->selectRow(0);
        test.setDays(QDate(2026, 3, 20), QDate(2026, 3, 12));
        test.deliver(87, 3);
        QVERIFY(!test.ticked(0));
        QCOMPARE(test.cell(0, 4), freeText);
        QCOMPARE(test.cell(0, 6), QString());
        QVERIFY2(test.start()->date() == QDate(2026, 3, 20), "what was typed stays to be mended");
        test.deliver(41);
        QVERIFY(!test.ticked(0));
        test.page->onServerAuthTriggered(false);
        QVERIFY(test.services.client.addAuths.isEmpty());
    }

    void changedDaysOfALockedTickPrepareNothing()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.table()->selectRow(2);
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        QVERIFY(test.deliver(87, 3));
        QCOMPARE(test.cell(2, 4), grantedText);
        // The grant that stands is what the row and the editors go on to show.
        QCOMPARE(test.cell(2, 6), QStringLiteral("2026-01-02"));
        QCOMPARE(test.start()->date(), QDate(2026, 1, 2));
        QVERIFY(test.ticked(2));
        QVERIFY(!test.table()->isItemCheckEnabled(2, 0));
        test.tick(0);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 1);
    }

    void aPendingAccountThatSomebodyElseGrantsIsNoLongerPrepared()
    {
        SubUserFixture test;
        test.makePending(0);
        test.services.grant(test.accounts[0], QStringLiteral("friend"), testToday(), testToday());
        test.table()->selectRow(0);
        test.deliver(41);
        QCOMPARE(test.cell(0, 4), grantedText);
        QVERIFY(!test.ticked(0));
        test.tick(1);
        test.page->onServerAuthTriggered(false);
        QCOMPARE(test.services.client.addAuths.size(), 1);
    }

    void changedDaysOfAnUntickedRowFallBack()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.table()->selectRow(0);
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        test.deliver(87, 4);
        QCOMPARE(test.cell(0, 4), freeText);
        QCOMPARE(test.start()->date(), testToday());
        QCOMPARE(test.end()->date(), testToday().addDays(7));
    }

    void changedDaysWithoutASelectedRowChangeNothing()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        QVERIFY(test.deliver(87, 3));
        QCOMPARE(test.start()->date(), QDate(2026, 3, 10));
        for (int row = 0; row < 2; ++row)
            QCOMPARE(test.cell(row, 4), freeText);
    }

    void identifiersOutsideTheRowsAreIgnored()
    {
        SubUserFixture test;
        test.page->reloadData();
        for (const int id : {0, 99, 104, 99999, 100000, 100001, -1})
            QVERIFY(test.deliver(59, id));
        for (int row = 0; row < 2; ++row)
            QCOMPARE(test.cell(row, 4), freeText);
        QVERIFY(test.top.events.isEmpty());
    }

    void leavingAnEditorIsNeitherHandledNorPassedOn()
    {
        SubUserFixture test;
        QVERIFY(!test.deliver(88, 1));
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(test.deliver(68, 1));
        QVERIFY(test.deliver(67, 1));
        QCOMPARE(test.top.ids(), QVector<int>({68, 67}));
    }

    void aReloadForgetsWhatWasPending()
    {
        SubUserFixture test;
        test.makePending(0);
        test.page->reloadData();
        QCOMPARE(test.cell(0, 4), freeText);
        QVERIFY(!test.ticked(0));
        test.page->slotGetAuthPasswordFromServer(QString());
        QVERIFY(test.services.client.calls.isEmpty());
    }

    void aChosenRowIsFilledAnewAndAllTicksRefreshed()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.services.grant(test.accounts[0], QStringLiteral("ops"), testToday(), testToday());
        test.services.grant(test.accounts[1], QStringLiteral("ops"), testToday(), testToday());
        test.table()->selectRow(0);
        QVERIFY(test.deliver(41));
        QCOMPARE(test.cell(0, 5), QStringLiteral("ops"));
        QVERIFY(test.ticked(0));
        QVERIFY2(test.ticked(1), "the other rows' ticks follow the service as well");
        QCOMPARE(test.cell(1, 4), freeText);
    }

    void withoutAChosenRowTheStateAloneIsRefreshed()
    {
        SubUserFixture test;
        test.page->reloadData();
        test.typePasswords(QStringLiteral("left"), QStringLiteral("over"));
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        test.services.grant(test.accounts[0], QStringLiteral("ops"), testToday(), testToday());
        QVERIFY(test.deliver(41));
        QCOMPARE(test.password()->text(), QString());
        QVERIFY(test.ticked(0));
        QCOMPARE(test.cell(0, 4), freeText);
        QCOMPARE(test.start()->date(), QDate(2026, 3, 10));
    }

    void spaceTicksEverySelectedRowAndEachBecomesPending()
    {
        SubUserFixture test;
        test.services.client.grants.clear();
        for (int number = 0; number < 40; ++number)
            test.services.user.addAccount(1, 1, "9000", "more" + std::to_string(number),
                                          mbservice::AUTH_TYPE_NOT_GRANTED);
        test.top.resize(900, 500);
        test.top.show();
        test.page->reloadData();
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        QWidget* view = test.table()->view();
        QTest::keyClick(view, Qt::Key_A, Qt::ControlModifier);
        test.setDays(QDate(2026, 3, 10), QDate(2026, 3, 12));
        QTest::keyClick(view, Qt::Key_Space);
        for (int row = 0; row < test.table()->rowCount(); ++row) {
            QCOMPARE(test.cell(row, 4), modified);
            QVERIFY(test.ticked(row));
        }
        QTest::keyClick(view, Qt::Key_Space);
        for (int row = 0; row < test.table()->rowCount(); ++row) {
            QCOMPARE(test.cell(row, 4), freeText);
            QVERIFY(!test.ticked(row));
        }
    }

    void worksWithoutAnyService()
    {
        EventRecorder top;
        GW::CAuthSettingSingleRestrictedUserGeneralTabPage page(&top);
        page.setKey(QStringLiteral("ops"));
        page.reloadData();
        for (const int id : {1, 100000})
            QVERIFY(page.handleEvent(5, id, 0, QString(), nullptr));
        for (const int event : {41, 59, 87})
            QVERIFY(page.handleEvent(event, 100, 0, QString(), nullptr));
        page.slotGetAuthPasswordFromServer(QString());
        QVERIFY(top.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<SubUserTableTest>(argc, argv);
}

#include "SubUserTableTest.moc"
