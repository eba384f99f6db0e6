#include "kit/resources/UiResource.h"
#include "tests/authsetting/SingleAccountFixture.h"
#include "tests/support/TipTestCase.h"

#include <QTableView>

namespace {

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

/// What the single account tab shows of an account, and what it lets the user enter.
class SingleAccountFormTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void carriesThePlaceOfItsConstruction_data()
    {
        QTest::addColumn<bool>("single");
        QTest::addColumn<int>("pageId");
        QTest::addColumn<int>("subPageId");
        QTest::addColumn<int>("tabPageId");
        QTest::newRow("own account") << true << 201 << 20101 << 2010101;
        QTest::newRow("received account") << false << 202 << 20201 << 2020101;
    }
    void carriesThePlaceOfItsConstruction()
    {
        QFETCH(bool, single);
        const SingleAccountFixture test(single);
        QTEST(test.page->pageId(), "pageId");
        QTEST(test.page->subPageId(), "subPageId");
        QTEST(test.page->tabPageId(), "tabPageId");
    }

    void endsConstructionDisabledWithTheFixedTexts()
    {
        const SingleAccountFixture test;
        QVERIFY(!test.page->isEnabled());
        for (const QString& text :
             {QStringLiteral("交易平台"), QStringLiteral("经纪公司"), QStringLiteral("账　　号"),
              QStringLiteral("被授权人"), QStringLiteral("起始时间"), QStringLiteral("终止时间")})
            QVERIFY2(test.captions().contains(text), qPrintable(text));
        QCOMPARE(test.state()->text(), QStringLiteral("未授权"));
        QCOMPARE(test.button()->text(), QStringLiteral("授权"));
        QCOMPARE(test.button()->iconKey(), QStringLiteral("gw_img_auth_export"));
        QVERIFY(test.grantee()->isEditable());
        QCOMPARE(test.menu()->actions().size(), 2);
        QCOMPARE(test.menu()->actions().at(0)->text(), QStringLiteral("文件授权"));
        QCOMPARE(test.menu()->actions().at(1)->text(), QStringLiteral("服务器授权"));
    }

    void hasOneConditionInATableOfItsOwn()
    {
        const SingleAccountFixture test;
        KZ::COddEvenRowTable* table = test.table();
        QCOMPARE(table->getID(), 4194323);
        QCOMPARE(headerTexts(table),
                 QStringList({QStringLiteral("启用"), QStringLiteral("限制条件"),
                              QStringLiteral("条件阈值")}));
        QVERIFY(table->view()->alternatingRowColors());
        QCOMPARE(table->view()->selectionBehavior(), QAbstractItemView::SelectRows);
        QCOMPARE(table->rowCount(), 1);
        QVERIFY(table->hasItemCheckBox(0, 0));
        QVERIFY(!table->isItemChecked(0, 0));
        QVERIFY(table->isItemCheckEnabled(0, 0));
        QCOMPARE(qobject_cast<KZ::CCheckBox*>(table->itemWidget(0, 0))->text(), QString());
        QCOMPARE(table->itemText(0, 1), QStringLiteral("可用保证金比例(%)"));
        QCOMPARE(table->itemText(0, 2), QStringLiteral("100"));
        QCOMPARE(table->columnWidth(0),
                 KZ::CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
        QCOMPARE(table->columnWidth(1), KZ::CUiResource::getSize(QStringLiteral(
                                            "gw_siz_auth_setting_auth_advanced_key_width")));
        QCOMPARE(table->columnWidth(2), KZ::CUiResource::getSize(QStringLiteral(
                                            "gw_siz_auth_setting_auth_advanced_value_width")));
    }

    void theRegistryGivesTheSizes()
    {
        SingleAccountFixture test;
        test.top.resize(900, 500);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        const int height = uiSize("gw_siz_auth_setting_accounts_authorize_row_height");
        const int pitch = height + uiSize("gw_siz_setting_accounts_item_v_space");
        const int width = uiSize("gw_siz_setting_accounts_editor_width");
        const QVector<std::pair<QWidget*, QWidget*>> rows{{test.field(0), test.field(1)},
                                                          {test.field(2), test.grantee()},
                                                          {test.start(), test.end()}};
        for (int row = 0; row < rows.size(); ++row) {
            const auto& [left, right] = rows[row];
            const QWidget* line = left->parentWidget();
            QCOMPARE(right->parentWidget(), line);
            QCOMPARE(line->mapTo(test.page, QPoint(0, 0)), QPoint(8, 8 + row * pitch));
            QCOMPARE(line->height(), height);
            QCOMPARE(left->width(), width);
            QCOMPARE(right->width(), width);
            const QWidget* caption =
                line->childAt(left->geometry().right() + 1 +
                                  uiSize("gw_siz_auth_setting_single_account_row_inner_space"),
                              line->height() / 2);
            QVERIFY(qobject_cast<const KZ::CSimpleTextWidget*>(caption));
            QCOMPARE(caption->x(),
                     left->geometry().right() + 1 +
                         uiSize("gw_siz_auth_setting_single_account_row_inner_space"));
        }
        QVERIFY(test.state()->x() > test.grantee()->geometry().right());
        QCOMPARE(test.state()->parentWidget(), test.grantee()->parentWidget());
        QCOMPARE(test.table()->mapTo(test.page, QPoint(0, 0)), QPoint(8, 8 + 3 * pitch));
        test.table()->setColumnWidth(0, 300);
        QWidget* box = test.table()->itemWidget(0, 0);
        QTRY_VERIFY(qAbs(middleInCell(test.table(), 0, 0, box)) <= 1);
        QVERIFY(box->width() < 150);
        QCOMPARE(test.button()->size(),
                 QSize(uiSize("gw_siz_auth_setting_accounts_authorize_btn_authorize_width"),
                       uiSize("gw_siz_auth_setting_accounts_authorize_btn_height")));
        QCOMPARE(test.button()->mapTo(test.page, QPoint(0, test.button()->height())).y(), 500 - 8);
    }

    void keepsTheTablesLayoutBetweenTwoLives()
    {
        FakeServices services;
        {
            EventRecorder top;
            const GW::CAuthSettingSingleAccountAuthorizeTabPage page(true, &top);
            page.findChild<KZ::COddEvenRowTable*>()->setColumnWidth(1, 333);
        }
        QVERIFY(!services.user.tableLayouts.value(4194323).isEmpty());
        EventRecorder top;
        const GW::CAuthSettingSingleAccountAuthorizeTabPage page(true, &top);
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->columnWidth(1), 333);
    }

    void reloadProposesAWeekFromTheClientsTodayToNobody()
    {
        SingleAccountFixture test;
        test.show(test.own);
        test.start()->setDate(QDate(2027, 1, 1));
        test.end()->setDate(QDate(2027, 1, 1));
        test.grantee()->setEditText(QStringLiteral("half-typed"));
        test.table()->setItemText(0, 2, QStringLiteral("50.50"));
        test.services.time.now = test.services.time.now.addDays(1);
        test.show(test.own);
        QCOMPARE(test.start()->date(), QDate(2026, 3, 3));
        QCOMPARE(test.end()->date(), QDate(2026, 3, 10));
        QCOMPARE(test.start()->minimumDate(), QDate(2026, 3, 3));
        QCOMPARE(test.end()->minimumDate(), QDate(2026, 3, 3));
        QCOMPARE(test.grantee()->currentText(), QString());
        QCOMPARE(test.table()->itemText(0, 2), QStringLiteral("100"));
    }

    void offersTheEnabledSubUsersInTheClientsOrder()
    {
        SingleAccountFixture test;
        test.show(test.own);
        QCOMPARE(test.grantee()->count(), 2);
        QCOMPARE(test.grantee()->itemText(0), QStringLiteral("ops1"));
        QCOMPARE(test.grantee()->itemText(1), QStringLiteral("ops3"));
        QCOMPARE(test.grantee()->currentText(), QString());
        test.services.client.subUserListAvailable = false;
        test.show(test.own);
        QCOMPARE(test.grantee()->count(), 0);
    }

    void theStateDecidesWhatCanBeDone_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("editable");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("icon");
        QTest::addColumn<bool>("enabledWhenActive");
        const QString grant = QStringLiteral("授权");
        const QString icon = QStringLiteral("gw_img_auth_export");
        QTest::newRow("unknown") << 0 << false << grant << icon << false;
        QTest::newRow("not granted") << 1 << true << grant << icon << true;
        QTest::newRow("received") << 2 << false << grant << icon << false;
        QTest::newRow("granted") << 3 << false << QStringLiteral("取消授权") << QString() << true;
        QTest::newRow("foreign value") << 9 << false << grant << icon << false;
    }
    void theStateDecidesWhatCanBeDone()
    {
        QFETCH(int, type);
        QFETCH(bool, editable);
        SingleAccountFixture test;
        test.own->authType = static_cast<mbservice::EAuthType>(type);
        test.page->setEnabled(true);
        test.show(test.own);
        QCOMPARE(test.start()->isEnabled(), editable);
        QCOMPARE(test.end()->isEnabled(), editable);
        QCOMPARE(test.grantee()->isEnabled(), editable);
        QCOMPARE(test.table()->itemWidget(0, 0)->isEnabled(), editable);
        QVERIFY2(test.table()->isEnabled(), "the header stays usable");
        QTEST(test.button()->text(), "text");
        QTEST(test.button()->iconKey(), "icon");
        QVERIFY2(!test.button()->isEnabled(), "a reload alone leaves the button disabled");
        test.page->onActive();
        QTEST(test.button()->isEnabled(), "enabledWhenActive");
    }

    void anUnknownAccountShowsAnEmptyForm()
    {
        SingleAccountFixture test;
        test.show(test.granted);
        test.show(nullptr);
        for (int id = 0; id <= 2; ++id)
            QCOMPARE(test.field(id)->text(), QString());
        QCOMPARE(test.state()->text(), QStringLiteral("未授权"));
        QVERIFY(!test.start()->isEnabled());
        test.page->setEnabled(true);
        test.page->onActive();
        QVERIFY(!test.button()->isEnabled());
    }

    void namesTheAccountByTheRuleThatOnlyTypeTwoIsStock_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("platform");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("broker");
        const QString futuresBroker = QStringLiteral("远山期货");
        QTest::newRow("futures") << 1 << QStringLiteral("期货平台") << QStringLiteral("经纪公司")
                                 << futuresBroker;
        QTest::newRow("stock") << 2 << QStringLiteral("股票平台") << QStringLiteral("证券公司")
                               << QStringLiteral("临江证券");
        QTest::newRow("other") << 7 << QStringLiteral("期货平台") << QStringLiteral("经纪公司")
                               << futuresBroker;
    }
    void namesTheAccountByTheRuleThatOnlyTypeTwoIsStock()
    {
        QFETCH(int, type);
        SingleAccountFixture test;
        test.own->accountType = type;
        test.show(test.own);
        QTEST(test.field(0)->text(), "platform");
        QTEST(test.field(1)->text(), "broker");
        QCOMPARE(test.field(2)->text(), QStringLiteral("1001"));
        QFETCH(QString, caption);
        QVERIFY(test.captions().contains(caption));
        QCOMPARE(test.state()->text(), test.own->authTypeString());
        QCOMPARE(test.state()->textColorKey(), QStringLiteral("clr_auth_type_not_granted"));
    }

    void theAliasStandsInForTheNumber()
    {
        SingleAccountFixture test;
        test.own->accountAlias = "主账户";
        test.show(test.own);
        QCOMPARE(test.field(2)->text(), QStringLiteral("主账户"));
    }

    void theAccountsOwnFieldsCannotBeTypedInto()
    {
        const SingleAccountFixture test;
        for (int id = 0; id <= 2; ++id)
            QVERIFY(test.field(id)->isReadOnly());
    }

    void aGrantShowsItsDaysItsGranteeAndNoCondition()
    {
        SingleAccountFixture test;
        test.show(test.granted);
        QCOMPARE(test.start()->date(), QDate(2026, 1, 5));
        QCOMPARE(test.end()->date(), QDate(2026, 4, 6));
        QCOMPARE(test.grantee()->currentText(), QStringLiteral("friend"));
        QVERIFY(!test.table()->isItemChecked(0, 0));
        QCOMPARE(test.table()->itemText(0, 2), QStringLiteral("100"));
    }

    void aGrantsConditionIsShownInWholePercentCutOff_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<QString>("threshold");
        QTest::newRow("half") << 0.5 << QStringLiteral("50");
        QTest::newRow("fraction") << 0.509 << QStringLiteral("50");
        QTest::newRow("just below in binary") << 0.57 << QStringLiteral("56");
        QTest::newRow("full") << 1.0 << QStringLiteral("100");
        QTest::newRow("absurd") << 1e300 << QStringLiteral("1000000000");
    }
    void aGrantsConditionIsShownInWholePercentCutOff()
    {
        QFETCH(double, ratio);
        SingleAccountFixture test;
        test.services.client.grants.value(test.granted->key())->limit.availableMarginRatio = ratio;
        test.show(test.granted);
        QVERIFY(test.table()->isItemChecked(0, 0));
        QTEST(test.table()->itemText(0, 2), "threshold");
    }

    void theTickOfAConditionStaysWithItsAccount()
    {
        SingleAccountFixture test;
        test.services.client.grants.value(test.granted->key())->limit.availableMarginRatio = 0.5;
        test.show(test.granted);
        test.services.client.grants.clear();
        test.show(test.granted);
        QVERIFY2(test.table()->isItemChecked(0, 0), "the same account keeps its tick");
        test.show(test.own);
        QVERIFY2(!test.table()->isItemChecked(0, 0), "another account must not inherit it");
    }

    void aThresholdIsTakenAboveZeroAndUpToAHundred_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("text");
        const auto good = [](const char* typed, const char* text) {
            QTest::newRow(typed) << QString::fromLatin1(typed) << true << QString::fromLatin1(text);
        };
        const auto bad = [](const char* name, const QString& typed) {
            QTest::newRow(name) << typed << false << typed;
        };
        good("100", "100.00");
        good("50.5", "50.50");
        good("1e1", "10.00");
        good("0.00002", "0.00");
        good("99.999", "100.00");
        good("100.00000999", "100.00");
        bad("nothing", QString());
        bad("zero", QStringLiteral("0"));
        bad("within tolerance of zero", QStringLiteral("0.00001"));
        bad("above", QStringLiteral("100.1"));
        bad("just above", QStringLiteral("100.0001"));
        bad("negative", QStringLiteral("-5"));
        bad("word", QStringLiteral("half"));
        bad("with sign", QStringLiteral("50%"));
        bad("not a number", QStringLiteral("nan"));
        bad("infinity", QStringLiteral("inf"));
    }
    void aThresholdIsTakenAboveZeroAndUpToAHundred()
    {
        QFETCH(QString, typed);
        SingleAccountFixture test;
        test.activate(test.own);
        KZ::CCellEdit edit{typed, true};
        QVERIFY(test.deliver(45, 0, &edit));
        QTEST(edit.accepted, "accepted");
        QTEST(edit.text, "text");
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }

    void aThresholdIsEditedByKeyboardAndARefusedTextStays()
    {
        SingleAccountFixture test;
        test.top.resize(900, 500);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        test.activate(test.own);
        QTableView* view = test.table()->view();
        view->setFocus();
        view->setCurrentIndex(view->model()->index(0, 2));
        QTest::keyClick(view, Qt::Key_F2);
        auto* editor = view->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->selectAll();
        QTest::keyClicks(editor, QStringLiteral("150"));
        QTest::keyClick(editor, Qt::Key_Return);
        QCoreApplication::processEvents();
        editor = view->findChild<QLineEdit*>();
        QVERIFY2(editor && editor->isVisible(), "a refused text stays open");
        QCOMPARE(editor->text(), QStringLiteral("150"));
        QCOMPARE(test.table()->itemText(0, 2), QStringLiteral("100"));
        editor->selectAll();
        QTest::keyClicks(editor, QStringLiteral("30.5"));
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(test.table()->itemText(0, 2), QStringLiteral("30.50"));
    }

    void worksWithoutAnyService()
    {
        EventRecorder top;
        GW::CAuthSettingSingleAccountAuthorizeTabPage page(true, &top);
        page.setKey(QStringLiteral("1|9000|0|1001"));
        page.reloadData();
        page.onActive();
        QVERIFY(!byId<KZ::CMediumNormalButton>(&page, 1)->isEnabled());
        page.findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("friend"));
        QVERIFY(page.handleEvent(68, 0, 0, QString(), nullptr));
        page.onServerAuthTriggered(false);
        QVERIFY(top.events.isEmpty());
    }

    void captionsNameTheirEditors()
    {
        const SingleAccountFixture test;
        QCOMPARE(test.grantee()->accessibleName(), QStringLiteral("被授权人"));
        QCOMPARE(test.start()->accessibleName(), QStringLiteral("起始时间"));
        QCOMPARE(test.end()->accessibleName(), QStringLiteral("终止时间"));
        QCOMPARE(test.field(0)->accessibleName(), QStringLiteral("交易平台"));
        QCOMPARE(test.field(2)->accessibleName(), QStringLiteral("账号"));
    }
};

int main(int argc, char** argv)
{
    return runTest<SingleAccountFormTest>(argc, argv);
}

#include "SingleAccountFormTest.moc"
