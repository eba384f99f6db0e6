#include "host/client/ClientWindow.h"

#include "authsetting/services/AccountKey.h"
#include "authsetting/services/MsgService.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "host/client/AccountListView.h"
#include "host/client/AccountMessages.h"
#include "host/client/AuditView.h"
#include "host/client/MessageArea.h"
#include "host/demo/DemoAccount.h"
#include "host/demo/DemoData.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "tests/host/DemoFixture.h"
#include "tests/support/TestCase.h"

#include <QClipboard>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTableView>

using host::ClientWindow;
using host::DemoData;

class ClientWindowTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void listsOwnAndReceivedAccountsInTheirOrder();
    void marksGrantsNearTheirEndByIconAndWords();
    void marksMoveOnAtMidnight();
    void aChosenAccountStaysChosenThroughAReload();
    void messagesAppearNewestFirst();
    void messagesOfOneAccountOnly();
    void auditTrailIsFilteredByEveryWord();
    void auditTrailIsCopiedWithCtrlC();
    void subUserMenuNamesTheDisabledOnes();
    void everyColourFollowsTheTheme();
};

/// Row identifier of the account with this number.
static int rowOf(const ClientWindow& window, const char* accountId)
{
    const KZ::COddEvenRowTable* table = window.accountList()->table();
    const host::DemoAccount* account = host::DemoAccount::find(accountId);
    const QString shown = GW::accountDisplayIDQs(account->info());
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->itemText(row, 2) == shown)
            return row;
    }
    return -1;
}

/// What the view shows in a cell under a role.
static QVariant viewData(const KZ::COddEvenRowTable* table, int row, int column, int role)
{
    const QAbstractItemModel* model = table->view()->model();
    for (int i = 0; i < model->rowCount(); ++i) {
        const QModelIndex index = model->index(i, column);
        if (index.data(KZ::COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt() == row)
            return index.data(role);
    }
    return QVariant();
}

void ClientWindowTest::listsOwnAndReceivedAccountsInTheirOrder()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    const KZ::COddEvenRowTable* table = window->accountList()->table();
    const auto& accounts = GW::getUserConfig()->accounts;
    QCOMPARE(table->rowCount(), accounts.size());
    QVERIFY(table->rowCount() > 15);
    for (int row = 0; row < table->rowCount(); ++row)
        QCOMPARE(table->itemText(row, 2), GW::accountDisplayIDQs(*accounts[row]));

    const int granted = rowOf(*window, "60330105");
    QCOMPARE(table->itemText(granted, 0), QStringLiteral("海川极速柜台"));
    QCOMPARE(table->itemText(granted, 1), QStringLiteral("远山期货"));
    QCOMPARE(table->itemText(granted, 4), DemoData::dayTrader());
    QCOMPARE(table->itemText(granted, 5), QStringLiteral("2026-02-27"));
    QCOMPARE(table->itemText(granted, 6), QStringLiteral("2026-03-29"));
    const int received = rowOf(*window, "80011203");
    QCOMPARE(table->itemText(received, 4), DemoData::partner());
    const int stock = rowOf(*window, "0190220075");
    QCOMPARE(table->itemText(stock, 0), QStringLiteral("松涛集中交易"));
    QCOMPARE(table->itemText(stock, 4), QString());
}

void ClientWindowTest::marksGrantsNearTheirEndByIconAndWords()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    const KZ::COddEvenRowTable* table = window->accountList()->table();
    constexpr int mark = 7;
    const auto marked = [&](const char* account) {
        return table->itemText(rowOf(*window, account), mark);
    };
    QCOMPARE(marked("80020017"), QStringLiteral("还有 2 天到期"));
    QCOMPARE(marked("A100200301"), QStringLiteral("今天到期"));
    QCOMPARE(marked("0190220418"), QStringLiteral("还有 3 天到期"));
    QCOMPARE(marked("31007711"), QStringLiteral("尚未开始"));
    QCOMPARE(marked("80010002"), QString());
    QCOMPARE(marked("60330200"), QStringLiteral("有子账号关系，不能授权"));
    QCOMPARE(window->accountList()->nearExpiryCount(), 3);

    const auto icon = [&](const char* account) {
        return viewData(table, rowOf(*window, account), mark, Qt::DecorationRole).value<QIcon>();
    };
    QVERIFY(!icon("80020017").isNull());
    QVERIFY(!icon("31007711").isNull());
    QVERIFY(icon("80010002").isNull());

    const auto hint = [&](const char* account) {
        return viewData(table, rowOf(*window, account), 3, Qt::ToolTipRole).toString();
    };
    QCOMPARE(hint("80020017"), QStringLiteral("还有 2 天到期"));
    QCOMPARE(hint("31007711"), QString());

    bool saidInStatusBar = false;
    const auto texts = window->findChildren<KZ::CSimpleTextWidget*>();
    for (const KZ::CSimpleTextWidget* text : texts)
        saidInStatusBar |= text->text().contains(QStringLiteral("3 个授权将在三天内到期"));
    QVERIFY(saidInStatusBar);
}

void ClientWindowTest::marksMoveOnAtMidnight()
{
    DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    const KZ::COddEvenRowTable* table = window->accountList()->table();
    QCOMPARE(table->itemText(rowOf(*window, "80020017"), 7), QStringLiteral("还有 2 天到期"));
    demo.setNow(demo.now().addDays(1));
    QTRY_COMPARE(table->itemText(rowOf(*window, "80020017"), 7), QStringLiteral("还有 1 天到期"));
    // The grant whose last day is over has ended by itself.
    QTRY_COMPARE(table->itemText(rowOf(*window, "A100200301"), 4), QString());
}

void ClientWindowTest::aChosenAccountStaysChosenThroughAReload()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    host::AccountListView* list = window->accountList();
    list->table()->selectRow(rowOf(*window, "31007711"));
    const QString key = list->currentAccount();
    QVERIFY(!key.isEmpty());
    list->reload();
    QCOMPARE(list->currentAccount(), key);
}

void ClientWindowTest::messagesAppearNewestFirst()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    const QString first = GW::getUserConfig()->accounts[0]->key();
    QCOMPARE(GW::getMsgService()->showAccountMsg(QStringLiteral("第一条"), first, GW::MSG_TYPE_AUTH,
                                                 mbservice::MSG_LEVEL_INFO),
             0);
    GW::getMsgService()->showAccountMsg(QStringLiteral("第二条"), first, GW::MSG_TYPE_AUTH,
                                        mbservice::MSG_LEVEL_ERROR);
    const KZ::COddEvenRowTable* table = window->messageArea()->table();
    QTRY_COMPARE(table->rowCount(), 2);
    QCOMPARE(table->itemText(0, 3), QStringLiteral("第二条"));
    QCOMPARE(table->itemText(0, 2), QStringLiteral("错误"));
    QCOMPARE(table->itemTextColorKey(0, 2), QStringLiteral("clr_danger"));
    QCOMPARE(table->itemText(1, 3), QStringLiteral("第一条"));
    QCOMPARE(table->itemText(1, 1), GW::accountDisplayIDQs(*GW::getUserConfig()->accounts[0]));
    QCOMPARE(table->itemText(1, 0), QStringLiteral("2026-03-02 10:30:00"));
}

void ClientWindowTest::messagesOfOneAccountOnly()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    const QString first = GW::getUserConfig()->accounts[0]->key();
    const QString second = GW::getUserConfig()->accounts[1]->key();
    for (const QString& key : {first, second, second})
        GW::getMsgService()->showAccountMsg(key, key, GW::MSG_TYPE_AUTH, mbservice::MSG_LEVEL_INFO);
    const KZ::COddEvenRowTable* table = window->messageArea()->table();
    QTRY_COMPARE(table->rowCount(), 3);
    auto* only = window->messageArea()->findChild<KZ::CCheckBox*>(
        QStringLiteral("halden_client_only_chosen"));
    QTest::mouseClick(only, Qt::LeftButton, {}, QPoint(8, only->height() / 2));
    QVERIFY(only->isChecked());
    QCOMPARE(table->rowCount(), 0);
    Q_EMIT window->accountList()->accountChosen(second);
    QTRY_COMPARE(table->rowCount(), 2);
    Q_EMIT window->accountList()->accountChosen(first);
    QTRY_COMPARE(table->rowCount(), 1);
}

static backend::AuditEntry entry(qint64 id, const char* action, const char* other, bool ok)
{
    backend::AuditEntry entry;
    entry.id = id;
    entry.when = QDateTime(QDate(2026, 3, 2), QTime(10, static_cast<int>(id)));
    entry.actor = QStringLiteral("lin.yuan");
    entry.action = QString::fromLatin1(action);
    entry.otherUser = QString::fromLatin1(other);
    entry.account = QStringLiteral("80010001");
    entry.ok = ok;
    if (!ok)
        entry.error = QStringLiteral("账号已授权");
    return entry;
}

void ClientWindowTest::auditTrailIsFilteredByEveryWord()
{
    host::AuditView view(nullptr);
    view.setTrail({entry(3, "cancel", "zhao.ke", true), entry(2, "grant", "chen.mu", false),
                   entry(1, "grant", "zhao.ke", true)});
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    QCOMPARE(view.table()->rowCount(), 3);
    QCOMPARE(view.table()->itemText(0, 3), QStringLiteral("zhao.ke"));
    QCOMPARE(view.table()->itemText(1, 5), QStringLiteral("失败"));
    QVERIFY(view.table()->itemText(1, 6).contains(QStringLiteral("账号已授权")));
    const QString grant = entry(1, "grant", "", true).actionText();
    QTest::keyClicks(view.filterEdit(), QStringLiteral("ZHAO"));
    QCOMPARE(view.table()->rowCount(), 2);
    view.filterEdit()->setText(QStringLiteral("zhao ") + grant);
    QCOMPARE(view.table()->rowCount(), 1);
    QCOMPARE(view.table()->itemText(0, 0), QStringLiteral("2026-03-02 10:01:00"));
    view.filterEdit()->setText(QStringLiteral("nobody"));
    QCOMPARE(view.table()->rowCount(), 0);
    view.filterEdit()->clear();
    QCOMPARE(view.table()->rowCount(), 3);
}

void ClientWindowTest::auditTrailIsCopiedWithCtrlC()
{
    host::AuditView view(nullptr);
    view.setTrail({entry(2, "grant", "chen.mu", true), entry(1, "grant", "zhao.ke", true)});
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.table()->selectRow(1);
    view.table()->view()->setFocus();
    QTest::keyClick(view.table()->view(), Qt::Key_C, Qt::ControlModifier);
    const QStringList cells =
        QGuiApplication::clipboard()->text().trimmed().split(QLatin1Char('\t'));
    QVERIFY(cells.size() >= 6);
    QCOMPARE(cells[0], QStringLiteral("2026-03-02 10:01:00"));
    QCOMPARE(cells[3], QStringLiteral("zhao.ke"));
}

void ClientWindowTest::subUserMenuNamesTheDisabledOnes()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    auto* menu = window->findChild<QMenu*>(QStringLiteral("halden_client_sub_user_menu"));
    QVERIFY(menu);
    Q_EMIT menu->aboutToShow();
    QStringList texts;
    const QList<QAction*> actions = menu->actions();
    for (const QAction* action : actions)
        texts.append(action->text());
    texts.sort();
    QCOMPARE(texts, (QStringList{DemoData::dayTrader(),
                                 DemoData::disabledTrader() + QStringLiteral("（已禁用）"),
                                 DemoData::nightTrader()}));
}

void ClientWindowTest::everyColourFollowsTheTheme()
{
    using KZ::CUiResource;
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    const QColor light = window->grab().toImage().pixelColor(3, window->height() / 2);
    QTest::keyClick(window.get(), Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(CUiResource::theme(), CUiResource::Theme::Dark);
    const QColor dark = window->grab().toImage().pixelColor(3, window->height() / 2);
    CUiResource::setTheme(CUiResource::Theme::Light);
    QVERIFY(light.lightness() > 200);
    QVERIFY(dark.lightness() < 60);
}

int main(int argc, char** argv)
{
    return runTest<ClientWindowTest>(argc, argv);
}
#include "ClientWindowTest.moc"
