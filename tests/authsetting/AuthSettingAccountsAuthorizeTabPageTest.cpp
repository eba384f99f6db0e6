#include "authsetting/authorize/AuthSettingAccountOpWidget.h"
#include "kit/dates/CalendarPopup.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/BatchPageTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QPushButton>

class AuthSettingAccountsAuthorizeTabPageTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theCalendarKnowsTheClientsToday()
    {
        BatchUnderTest test;
        test.open({});
        test.services.time.now = test.services.time.now.addDays(3);
        for (KZ::CSoftCalendarLineEdit* editor : {test.start, test.end}) {
            editor->showCalendar();
            auto* today = editor->calendar()->findChild<QPushButton*>();
            QCOMPARE(today->text(), QStringLiteral("今天 2026-03-05"));
            QTest::mouseClick(today, Qt::LeftButton);
            QCOMPARE(editor->date(), QDate(2026, 3, 5));
        }
    }

    void isBornDisabledWithEditorsFromTodayForAWeek()
    {
        BatchUnderTest test;
        QVERIFY(!test.page->isEnabled());
        QCOMPARE(test.page->pageId(), 201);
        QCOMPARE(test.page->subPageId(), -1);
        QCOMPARE(test.page->tabPageId(), 2020001);
        QCOMPARE(test.start->date(), QDate(2026, 3, 2));
        QCOMPARE(test.end->date(), QDate(2026, 3, 9));
        QCOMPARE(test.start->minimumDate(), QDate(2026, 3, 2));
        QCOMPARE(test.end->minimumDate(), QDate(2026, 3, 2));
        QVERIFY(test.grantee->isEditable());
        QCOMPARE(test.grantee->id(), 0);
        QCOMPARE(test.start->id(), 1);
        QCOMPARE(test.end->id(), 2);
        QCOMPARE(test.button->id(), 0);
        QCOMPARE(test.button->text(), QStringLiteral("授权"));
        QCOMPARE(test.button->iconKey(), QStringLiteral("gw_img_auth_export"));
        const QList<QAction*> actions = test.menu->actions();
        QCOMPARE(actions.size(), 2);
        QCOMPARE(actions[0]->text(), QStringLiteral("文件授权"));
        QCOMPARE(actions[1]->text(), QStringLiteral("服务器授权"));
    }

    void theTableHasNineColumns()
    {
        BatchUnderTest test;
        QCOMPARE(test.table->getID(), 4194320);
        QStringList headers;
        for (int column = 0; column < test.table->columnCount(); ++column)
            headers.append(test.table->headerText(column));
        QCOMPARE(headers.join(u'|'), QStringLiteral("选择|交易平台|经纪公司|账号|授权状态|被授权人|"
                                                    "授权开始时间|授权结束时间|操作"));
        QCOMPARE(test.table->columnWidth(0),
                 KZ::CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
    }

    void theRegistryGivesTheSizes()
    {
        BatchUnderTest test;
        test.show();
        const auto size = [](const char* key) {
            return KZ::CUiResource::getSize(QString::fromLatin1(key));
        };
        const int width = size("gw_siz_setting_accounts_editor_width");
        QCOMPARE(test.grantee->width(), width);
        QCOMPARE(test.start->width(), width);
        QCOMPARE(test.end->width(), width);
        QCOMPARE(test.grantee->parentWidget()->height(),
                 size("gw_siz_auth_setting_accounts_authorize_row_height"));
        QCOMPARE(test.button->size(),
                 QSize(size("gw_siz_auth_setting_accounts_authorize_btn_authorize_width"),
                       size("gw_siz_auth_setting_accounts_authorize_btn_height")));
        const int gap = size("gw_siz_setting_accounts_item_v_space");
        const QWidget* first = test.grantee->parentWidget();
        const QWidget* second = test.start->parentWidget();
        QCOMPARE(second->y() - first->y() - first->height(), gap);
        QCOMPARE(test.start->x(), test.end->x());
        QCOMPARE(test.start->x(), test.grantee->x());
    }

    void everyControlHasAnAccessibleName()
    {
        BatchUnderTest test;
        QCOMPARE(test.grantee->accessibleName(), QStringLiteral("被授权人"));
        QCOMPARE(test.start->accessibleName(), QStringLiteral("起始时间"));
        QCOMPARE(test.end->accessibleName(), QStringLiteral("终止时间"));
        QCOMPARE(test.button->accessibleName(), QStringLiteral("授权"));
    }

    void accountsOfEveryStateAreListedButSubAccountsAreNot()
    {
        BatchUnderTest test;
        test.add("10");
        test.add("11", 1, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        test.add("12", 1, mbservice::AUTH_TYPE_UNKNOWN);
        test.services.user.accounts.append(nullptr);
        test.addGranted("13", QStringLiteral("bob"));
        test.services.user.subAccounts.insert(test.add("14")->key());
        test.services.user.parentAccounts.insert(test.add("15")->key());
        test.page->reloadData();
        QCOMPARE(test.table->rowCount(), 4);
        for (int row = 0; row < 4; ++row) {
            QCOMPARE(test.table->itemText(row, 3), QString::number(10 + row));
            QVERIFY(test.table->hasItemCheckBox(row, 0));
            QCOMPARE(test.table->isItemChecked(row, 0), row != 0);
            QCOMPARE(test.table->isItemCheckEnabled(row, 0), row == 0);
        }
        auto* box = qobject_cast<KZ::CCheckBox*>(test.table->itemWidget(3, 0));
        QVERIFY(box);
        QCOMPARE(box->id(), 3);
        QVERIFY(box->isChecked());
        QVERIFY(!box->isEnabled());
    }

    void aRowShowsTheAccountAndItsGrant()
    {
        BatchUnderTest test;
        test.add("10", 2)->accountAlias = "我的账号";
        test.addGranted("11", QStringLiteral("bob"));
        test.add("12", 7)->platformId = 9;
        test.page->reloadData();
        QCOMPARE(test.row(0).join(u'|'), QStringLiteral("股票一|证券公司|我的账号|未授权|||"));
        QCOMPARE(test.row(1).join(u'|'),
                 QStringLiteral("期货一|期货公司|11|已授权|bob|2026-03-04|2026-03-09"));
        QCOMPARE(test.row(2).join(u'|'), QStringLiteral("||12|未授权|||"));
        QCOMPARE(test.table->itemTextColorKey(0, 4), QStringLiteral("clr_auth_type_not_granted"));
        QCOMPARE(test.table->itemTextColorKey(1, 4),
                 QStringLiteral("clr_auth_type_granted_to_other"));
    }

    void aGrantNearItsEndIsMarkedBesideItsState()
    {
        BatchUnderTest test;
        for (const int days : {1, 4}) {
            test.services.grant(test.add(std::to_string(days).c_str()), QStringLiteral("bob"),
                                testToday(), testToday().addDays(days));
        }
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table, 0, 4), QStringLiteral("还有 1 天到期"));
        QCOMPARE(expiryMark(test.table, 1, 4), QString());
        QCOMPARE(test.table->itemText(0, 4), QStringLiteral("已授权"));
        test.services.time.now = test.services.time.now.addDays(1);
        test.page->reloadData();
        QCOMPARE(expiryMark(test.table, 1, 4), QStringLiteral("还有 3 天到期"));
    }

    void everyTypeButFuturesIsStock()
    {
        BatchUnderTest test;
        test.add("1", 1);
        test.add("2", 2);
        test.add("3", 0);
        test.page->reloadData();
        QCOMPARE(test.table->itemText(0, 1), QStringLiteral("期货一"));
        QCOMPARE(test.table->itemText(1, 1), QStringLiteral("股票一"));
        QCOMPARE(test.table->itemText(2, 1), QStringLiteral("股票一"));
        QCOMPARE(test.table->itemText(2, 2), QStringLiteral("证券公司"));
    }

    void onlyRowsGrantedToOthersHaveACancelButton()
    {
        BatchUnderTest test;
        test.add("10");
        test.add("11", 1, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        test.addGranted("12", QStringLiteral("bob"));
        test.page->reloadData();
        QCOMPARE(test.table->itemWidget(0, 8), nullptr);
        QCOMPARE(test.table->itemWidget(1, 8), nullptr);
        auto* widget = qobject_cast<GW::CAuthSettingAccountOpWidget*>(test.table->itemWidget(2, 8));
        QVERIFY(widget);
        QVERIFY(!widget->findChild<QPushButton*>()->isHidden());
    }

    void theGranteeListHoldsTheEnabledSubUsersAndNoText()
    {
        BatchUnderTest test;
        test.services.client.subUsers = {QStringLiteral("s1"), QStringLiteral("s2"),
                                         QStringLiteral("s3")};
        test.services.client.activeSubUsers = {QStringLiteral("s3"), QStringLiteral("s1")};
        test.grantee->setEditText(QStringLiteral("typed"));
        test.page->reloadData();
        QCOMPARE(test.grantee->count(), 2);
        QCOMPARE(test.grantee->itemText(0), QStringLiteral("s1"));
        QCOMPARE(test.grantee->itemText(1), QStringLiteral("s3"));
        QCOMPARE(test.grantee->currentText(), QString());
        // Without a list everything stays as it is.
        test.grantee->setEditText(QStringLiteral("typed"));
        test.services.client.subUserListAvailable = false;
        test.page->reloadData();
        QCOMPARE(test.grantee->count(), 2);
        QCOMPARE(test.grantee->currentText(), QStringLiteral("typed"));
        QVERIFY(test.services.client.checkedUsers.isEmpty());
    }

    void aReloadKeepsTheDaysAndWhatTheyAllow()
    {
        BatchUnderTest test;
        test.show();
        test.start->setDate(QDate(2026, 4, 5));
        test.end->setDate(QDate(2026, 4, 1));
        test.page->handleEvent(87, 1, 0, QString(), nullptr);
        test.services.time.now = test.services.time.now.addDays(1);
        test.page->reloadData();
        QCOMPARE(test.start->date(), QDate(2026, 4, 5));
        QCOMPARE(test.end->date(), QDate(2026, 4, 1));
        QVERIFY(!test.button->isEnabled());
    }

    void aTickShowsTheGrantInTheMakingAndTakesItBack()
    {
        BatchUnderTest test;
        test.add("10");
        test.add("11");
        test.page->reloadData();
        test.show();
        test.grantee->setEditText(QStringLiteral("bob"));
        test.tick(1, true);
        QCOMPARE(test.row(1).mid(2).join(u'|'),
                 QStringLiteral("11|已修改 未授权|bob|2026-03-02|2026-03-09"));
        QCOMPARE(test.row(0).mid(2).join(u'|'), QStringLiteral("10|未授权|||"));
        test.tick(1, false);
        QCOMPARE(test.row(1).mid(2).join(u'|'), QStringLiteral("11|未授权|||"));
        QVERIFY(test.dialog.of(59).isEmpty());
    }

    void committingTheGranteeChecksHimAndRefreshesTheSelectedRows()
    {
        BatchUnderTest test;
        test.add("10");
        test.add("11");
        test.addGranted("12", QStringLiteral("amy"));
        test.page->reloadData();
        test.show();
        test.tick(0, true);
        test.grantee->setEditText(QStringLiteral(" bob"));
        QVERIFY(test.page->handleEvent(68, 0, 0, QStringLiteral("bob"), test.grantee));
        QCOMPARE(test.services.client.checkedUsers, QStringList(QStringLiteral(" bob")));
        QCOMPARE(test.table->itemText(0, 5), QStringLiteral(" bob"));
        QCOMPARE(test.table->itemText(1, 5), QString());
        QCOMPARE(test.table->itemText(2, 5), QStringLiteral("amy"));
        test.grantee->setEditText(QString());
        QVERIFY(test.page->handleEvent(68, 0, 0, QString(), test.grantee));
        QCOMPARE(test.services.client.checkedUsers.size(), 1);
        QCOMPARE(test.table->itemText(0, 5), QString());
    }

    void aRefusedGranteeIsTold()
    {
        BatchUnderTest test;
        test.show();
        Q_EMIT test.services.client.sigCheckAuthuserResult(QStringLiteral("bob"), true, QString());
        QVERIFY(tipTexts().isEmpty());
        Q_EMIT test.services.client.sigCheckAuthuserResult(QStringLiteral("bob"), false,
                                                           QStringLiteral("不存在"));
        QCOMPARE(tipTexts(),
                 QStringList(QStringLiteral("无法对用户bob进行授权！错误信息：不存在")));
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.grantee);
        QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 3);
    }

    void theDatesAreCheckedWhenTheyChange_data()
    {
        QTest::addColumn<int>("sender");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QDate>("end");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<bool>("enabled");
        const QString none;
        const QString oneDay = QStringLiteral("授权日期为1天");
        const QString inverted = QStringLiteral("授权开始时间晚于结束时间");
        const QDate day(2026, 3, 5);
        QTest::newRow("one day") << 2 << day << day << oneDay << true;
        QTest::newRow("two days") << 1 << day << day.addDays(1) << none << true;
        QTest::newRow("one day inverted") << 1 << day << day.addDays(-1) << inverted << false;
        QTest::newRow("a month inverted") << 2 << day << day.addMonths(-1) << inverted << false;
    }

    void theDatesAreCheckedWhenTheyChange()
    {
        QFETCH(int, sender);
        QFETCH(QDate, start);
        QFETCH(QDate, end);
        QFETCH(QString, tip);
        QFETCH(bool, enabled);
        BatchUnderTest test;
        test.add("10");
        test.page->reloadData();
        test.show();
        test.tick(0, true);
        test.start->setDate(start);
        test.end->setDate(end);
        QVERIFY(tipTexts().isEmpty());
        QVERIFY(test.page->handleEvent(87, sender, 0, QString(), nullptr));
        QCOMPARE(tipTexts().join(u'|'), tip);
        if (!tip.isEmpty()) {
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->kind(), 2);
            QCOMPARE(KZ::CMessageTip::visibleTips().at(0)->anchor(), test.end);
        }
        QCOMPARE(test.button->isEnabled(), enabled);
        QCOMPARE(test.table->itemText(0, 6), start.toString(QStringLiteral("yyyy-MM-dd")));
        QCOMPARE(test.table->itemText(0, 7), end.toString(QStringLiteral("yyyy-MM-dd")));
        test.end->setDate(start.addDays(1));
        test.page->handleEvent(87, sender, 0, QString(), nullptr);
        QVERIFY(test.button->isEnabled());
    }

    void dateChangesOfOthersAndKeystrokesAreSwallowed()
    {
        BatchUnderTest test;
        test.show();
        test.end->setDate(QDate(2026, 2, 1));
        test.dialog.answer = false;
        for (const int sender : {0, 3, 77})
            QVERIFY(test.page->handleEvent(87, sender, 0, QString(), nullptr));
        for (const int sender : {0, 1, 5})
            QVERIFY(test.page->handleEvent(67, sender, 0, QStringLiteral("b"), nullptr));
        QVERIFY(test.button->isEnabled());
        QVERIFY(tipTexts().isEmpty());
        QVERIFY(test.dialog.events.isEmpty());
        QVERIFY(test.services.client.checkedUsers.isEmpty());
    }

    void otherEventsPass()
    {
        BatchUnderTest test;
        test.dialog.answer = false;
        QVERIFY(!test.page->handleEvent(5, 1, 0, QString(), nullptr));
        QVERIFY(!test.page->handleEvent(68, 1, 0, QString(), nullptr));
        QVERIFY(!test.page->handleEvent(41, 0, 0, QString(), nullptr));
        QCOMPARE(test.dialog.ids(), QVector<int>({5, 68, 41}));
    }

    void theButtonOpensItsMenuBelowItself()
    {
        BatchUnderTest test;
        test.show();
        // Room below the button for the whole menu.
        test.page->resize(700, 400);
        QCoreApplication::processEvents();
        test.button->click();
        QTRY_VERIFY(test.menu->isVisible());
        QCOMPARE(test.menu->pos(), test.button->mapToGlobal(QPoint(0, test.button->height())));
        test.menu->hide();
    }

    void theLayoutSurvivesThePage()
    {
        BatchUnderTest test;
        test.table->setColumnWidth(3, 151);
        const QString layout = test.table->saveConfigStr();
        delete test.page;
        QCOMPARE(test.services.user.tableLayouts.value(4194320), layout);
        test.create();
        QCOMPARE(test.table->columnWidth(3), 151);
    }

    void everyGrantTheServiceKnowsIsShownWhateverTheState()
    {
        BatchUnderTest test;
        for (const mbservice::EAuthType state :
             {mbservice::AUTH_TYPE_NOT_GRANTED, mbservice::AUTH_TYPE_GRANTED_TO_ME}) {
            const auto account = test.addGranted(state == 1 ? "10" : "11", QStringLiteral("bob"));
            account->authType = state;
        }
        test.page->reloadData();
        for (const int row : {0, 1}) {
            QCOMPARE(test.row(row).mid(4).join(u'|'), QStringLiteral("bob|2026-03-04|2026-03-09"));
            QCOMPARE(test.table->itemWidget(row, 8), nullptr);
        }
    }

    void ticksStandInTheMiddleAndOperationsFillTheirCells()
    {
        BatchUnderTest test;
        test.addGranted("10", QStringLiteral("bob"));
        test.page->reloadData();
        test.show();
        // Far wider than what stands in them; the other columns give way.
        for (int column = 0; column < 9; ++column)
            test.table->setColumnWidth(column, column == 0 || column == 8 ? 260 : 40);
        QVERIFY(QTest::qWaitForWindowExposed(&test.dialog));
        QWidget* box = test.table->itemWidget(0, 0);
        QTRY_VERIFY(qAbs(middleInCell(test.table, 0, 0, box)) <= 1);
        QVERIFY(box->width() < 130);
        QTRY_VERIFY(test.table->itemWidget(0, 8)->width() > 240);
    }

    void aSortedRowIsStillItsAccount()
    {
        BatchUnderTest test;
        for (const char* id : {"10", "11", "12"})
            test.add(id);
        test.addGranted("13", QStringLiteral("amy"));
        test.page->reloadData();
        test.show();
        test.table->view()->sortByColumn(3, Qt::DescendingOrder);
        test.tick(0, true);
        test.tick(2, true);
        test.grantee->setEditText(QStringLiteral("bob"));
        test.page->onServerAuthTriggered(false);
        const auto& requests = test.services.client.addAuths;
        QCOMPARE(requests.size(), 2);
        QCOMPARE(requests[0].account.accountId, std::string("10"));
        QCOMPARE(requests[1].account.accountId, std::string("12"));
        test.table->itemWidget(3, 8)->findChild<QPushButton*>()->click();
        QCOMPARE(test.services.client.delAuths[0].account.accountId, std::string("13"));
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingAccountsAuthorizeTabPageTest>(argc, argv);
}

#include "AuthSettingAccountsAuthorizeTabPageTest.moc"
