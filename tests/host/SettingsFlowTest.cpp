#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AuthSettingDialog.h"
#include "backend/store/StoreAdmin.h"
#include "host/client/AccountListView.h"
#include "host/client/ClientWindow.h"
#include "host/client/MessageArea.h"
#include "host/demo/DemoAccount.h"
#include "host/demo/DemoData.h"
#include "host/signin/SignInDialog.h"
#include "kit/dates/DateConversions.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/Menu.h"
#include "kit/widgets/StandardTabControl.h"
#include "tests/host/DemoFixture.h"
#include "tests/support/TestCase.h"

#include <QLineEdit>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTableView>
#include <QTimeZone>
#include <QTimer>
#include <QTreeWidget>

#include <string>
#include <utility>

using host::ClientWindow;
using host::DemoData;

class SettingsFlowTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theMenuOpensTheOverviewWithAFilledTree();
    void anAccountsMenuOpensItsOwnPage();
    void aSubUsersEntryOpensHisPage();
    void closingWhileARequestIsOutLosesNothing();
    void aRefusedGrantGetsASecondMessage();
    void aLargeBatchThatIsClosedHalfWayArrivesWhole();
    void signingOutWhileARequestIsOutFinishesIt();
    void aGrantFromElsewhereGrowsTheTree();
    void theThemeChangesWhileTheDialogIsOpen();
    void signingOutWaitsForTheDialog();
};

void SettingsFlowTest::cleanup()
{
    KZ::CMessageTip::closeAll();
    KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
    TestCase::cleanup();
}

/// Runs `open`, which blocks while the dialog is open, and meanwhile `inside`, after which the
/// dialog is closed if it still is open.
template <class Open, class Inside>
static void withDialog(ClientWindow& window, Open open, Inside inside)
{
    bool ran = false;
    QTimer::singleShot(0, &window, [&] {
        ran = true;
        QVERIFY(window.settingsDialog()->isVisible());
        inside();
        window.settingsDialog()->close();
    });
    open();
    QVERIFY(ran);
}

template <class Widget>
static Widget* visibleChild(const QWidget* parent, const QString& name = QString())
{
    const auto children = parent->findChildren<Widget*>(name);
    for (Widget* child : children) {
        if (child->isVisible())
            return child;
    }
    return nullptr;
}

static QString shown(const char* accountId)
{
    return GW::accountDisplayIDQs(host::DemoAccount::find(accountId)->info());
}

static int rowWith(const KZ::COddEvenRowTable* table, int column, const QString& text)
{
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->itemText(row, column) == text)
            return row;
    }
    return -1;
}

/// Sends a server grant of the accounts, as they are shown, from the open dialog's batch tab.
static void sendBatchGrant(const QWidget* dialog, const QStringList& accounts,
                           const QString& grantee)
{
    auto* tabs = visibleChild<KZ::CStandardTabControl>(dialog);
    QVERIFY(tabs);
    QVERIFY(tabs->activateTab(1));
    auto* table = visibleChild<KZ::COddEvenRowTable>(dialog);
    for (const QString& account : accounts) {
        const int row = rowWith(table, 3, account);
        QVERIFY(row >= 0);
        auto* tick = qobject_cast<KZ::CCheckBox*>(table->itemWidget(row, 0));
        QVERIFY(tick);
        tick->click();
        QVERIFY(table->isItemChecked(row, 0));
    }
    auto* box = dialog->findChild<KZ::CComboBox*>(QStringLiteral("halden_batch_grantee"));
    QVERIFY(box);
    box->setEditText(grantee);
    const auto* menu = dialog->findChild<KZ::CMenu*>(QStringLiteral("halden_batch_menu"));
    QVERIFY(menu);
    menu->actions().at(1)->trigger();
    QVERIFY(visibleChild<QProgressBar>(dialog));
}

static QString tipTexts()
{
    QStringList texts;
    const auto tips = KZ::CMessageTip::visibleTips();
    for (const KZ::CMessageTip* tip : tips)
        texts += tip->texts();
    return texts.join(QLatin1Char('\n'));
}

void SettingsFlowTest::theMenuOpensTheOverviewWithAFilledTree()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            const QWidget* dialog = window->settingsDialog();
            QCOMPARE(visibleChild<QTabBar>(dialog)->tabText(0), QStringLiteral("账号总览"));
            const auto* tree = dialog->findChild<QTreeWidget*>();
            QCOMPARE(tree->topLevelItemCount(), 3);
            // Without the parent account and its two sub-accounts.
            QCOMPARE(tree->topLevelItem(0)->childCount(), 12);
            QCOMPARE(tree->topLevelItem(1)->childCount(), 3);
            QCOMPARE(tree->topLevelItem(2)->childCount(), 3);
            QCOMPARE(tree->currentItem(), tree->topLevelItem(0));
        });
    QVERIFY(!window->settingsDialog()->isVisible());
}

void SettingsFlowTest::anAccountsMenuOpensItsOwnPage()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    KZ::COddEvenRowTable* table = window->accountList()->table();
    const auto openFromMenu = [&](const char* account) {
        table->selectRow(rowWith(table, 2, shown(account)));
        Q_EMIT table->view()->customContextMenuRequested(QPoint(5, 5));
        auto* menu = qobject_cast<KZ::CMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QAction* settings = menu->actions().at(0);
        menu->close();
        settings->trigger();
    };
    withDialog(
        *window, [&] { openFromMenu("80020017"); },
        [&] {
            const QWidget* dialog = window->settingsDialog();
            QCOMPARE(visibleChild<QTabBar>(dialog)->tabText(0), QStringLiteral("账号授权"));
            QCOMPARE(dialog->findChild<QTreeWidget*>()->currentItem()->text(0), shown("80020017"));
        });
    withDialog(
        *window, [&] { openFromMenu("80011203"); },
        [&] {
            const QWidget* dialog = window->settingsDialog();
            QCOMPARE(visibleChild<QTabBar>(dialog)->tabText(0), QStringLiteral("基本信息"));
            QCOMPARE(dialog->findChild<QTreeWidget*>()->currentItem()->text(0), shown("80011203"));
        });
}

void SettingsFlowTest::aSubUsersEntryOpensHisPage()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    auto* menu = window->findChild<QMenu*>(QStringLiteral("halden_client_sub_user_menu"));
    Q_EMIT menu->aboutToShow();
    QAction* entry = menu->actions().at(0);
    withDialog(
        *window, [&] { entry->trigger(); },
        [&] {
            const QWidget* dialog = window->settingsDialog();
            QCOMPARE(visibleChild<QTabBar>(dialog)->tabText(0), QStringLiteral("子用户设置"));
            QVERIFY(entry->text().startsWith(
                dialog->findChild<QTreeWidget*>()->currentItem()->text(0)));
        });
}

void SettingsFlowTest::closingWhileARequestIsOutLosesNothing()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            sendBatchGrant(window->settingsDialog(), {shown("80010001")}, DemoData::colleague());
        });
    QVERIFY(!window->settingsDialog()->isVisible());
    // The result arrives and is told over the client's window.
    QTRY_VERIFY(tipTexts().contains(QStringLiteral("授权成功")));
    const KZ::CMessageTip* tip = KZ::CMessageTip::visibleTips().constFirst();
    QVERIFY(
        window->frameGeometry().contains(QRect(tip->mapToGlobal(QPoint()), tip->size()).center()));
    const KZ::COddEvenRowTable* table = window->accountList()->table();
    QTRY_COMPARE(table->itemText(rowWith(table, 2, shown("80010001")), 4), DemoData::colleague());
    QCOMPARE(window->messageArea()->table()->rowCount(), 1);
    // The next opening starts idle.
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            const QWidget* dialog = window->settingsDialog();
            QVERIFY(!visibleChild<QProgressBar>(dialog));
            QVERIFY(visibleChild<KZ::COddEvenRowTable>(dialog)->isEnabled());
        });
}

void SettingsFlowTest::aRefusedGrantGetsASecondMessage()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            sendBatchGrant(window->settingsDialog(), {shown("80010001")},
                           QStringLiteral("没有此人"));
        });
    QTRY_VERIFY(tipTexts().contains(QStringLiteral("用户不存在")));
    const KZ::COddEvenRowTable* table = window->messageArea()->table();
    QTRY_COMPARE(table->rowCount(), 2);
    // Newest first: the page's announcement, and above it what became of it.
    QVERIFY(table->itemText(1, 3).endsWith(QStringLiteral("授权, 撤销所有执行任务")));
    QCOMPARE(table->itemText(0, 3), QStringLiteral("账户") + shown("80010001") +
                                        QStringLiteral("授权给没有此人失败。原因：用户不存在"));
}

void SettingsFlowTest::aLargeBatchThatIsClosedHalfWayArrivesWhole()
{
    constexpr int batch = 300;
    QStringList accounts;
    const DemoFixture demo;
    QString error;
    auto store = backend::StoreAdmin::open(demo.storeOptions(), &error);
    QVERIFY2(store, qPrintable(error));
    mbservice::CAccountInfo account = host::DemoAccount::find("80010001")->info();
    account.accountAlias.clear();
    for (int number = 0; number < batch; ++number) {
        account.accountId = "large" + std::to_string(number);
        accounts.append(QString::fromStdString(account.accountId));
        QVERIFY(store->addAccount(DemoData::mainUser(), account));
    }
    QVERIFY2(store->commit(), qPrintable(store->error()));
    const qsizetype grantsBefore = store->grants().size();
    store.reset();

    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QSignalSpy answers(GW::getAuthClient(), &GW::CAuthClient::sigAddAuthResult);
    connect(GW::getAuthClient(), &GW::CAuthClient::sigAddAuthResult, window.get(), [&] {
        if (answers.size() == batch / 2)
            window->settingsDialog()->close();
    });
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            sendBatchGrant(window->settingsDialog(), accounts, DemoData::colleague());
            QTRY_VERIFY(!window->settingsDialog()->isVisible());
        });
    QVERIFY(!window->settingsDialog()->isVisible());
    QTRY_COMPARE(answers.size(), batch);
    for (const QVariantList& answer : std::as_const(answers))
        QVERIFY(answer.at(5).toBool());
    QTRY_VERIFY(tipTexts().contains(QStringLiteral("授权成功")));
    store = backend::StoreAdmin::open(demo.storeOptions(), &error);
    QVERIFY2(store, qPrintable(error));
    const auto grants = store->grants();
    QCOMPARE(grants.size(), grantsBefore + batch);
    for (qsizetype index = grantsBefore; index < grants.size(); ++index) {
        QCOMPARE(grants.at(index).grantee, DemoData::colleague());
        QCOMPARE(grants.at(index).state, backend::GrantState::Current);
    }
    store.reset();
    // The next opening starts idle and shows what was granted.
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            QVERIFY(!visibleChild<QProgressBar>(window->settingsDialog()));
            auto* table = visibleChild<KZ::COddEvenRowTable>(window->settingsDialog());
            QVERIFY(table->isEnabled());
            const int last = rowWith(table, 2, QStringLiteral("large%1").arg(batch - 1));
            QCOMPARE(table->itemText(last, 4), DemoData::colleague());
        });
}

void SettingsFlowTest::signingOutWhileARequestIsOutFinishesIt()
{
    const DemoFixture demo;
    auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            sendBatchGrant(window->settingsDialog(), {shown("80010001")}, DemoData::colleague());
        });
    window.reset();
    QString error;
    const auto store = backend::StoreAdmin::open(demo.storeOptions(), &error);
    QVERIFY2(store, qPrintable(error));
    const backend::GrantRecord newest = store->grants().constLast();
    QCOMPARE(newest.account.accountId, std::string("80010001"));
    QCOMPARE(newest.grantee, DemoData::colleague());
    QCOMPARE(newest.state, backend::GrantState::Current);
}

void SettingsFlowTest::aGrantFromElsewhereGrowsTheTree()
{
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    const auto partner = demo.signIn(DemoData::partner());
    withDialog(
        *window, [&] { window->openSettings(202); },
        [&] {
            const auto* tree = window->settingsDialog()->findChild<QTreeWidget*>();
            QCOMPARE(tree->topLevelItem(1)->childCount(), 3);
            GW::CAuthLimit limit;
            limit.startTime = KZ::qDateTimeToSecond(
                QDateTime(demo.now().date(), QTime(0, 0), demo.now().timeZone()));
            limit.endTime = limit.startTime;
            partner->authClient()->addAuth(DemoData::mainUser(),
                                           host::DemoAccount::find("31009902")->info(), limit,
                                           QVariant(1), true);
            QTRY_COMPARE(tree->topLevelItem(1)->childCount(), 4);
            QCOMPARE(tree->currentItem(), tree->topLevelItem(1));
        });
}

void SettingsFlowTest::theThemeChangesWhileTheDialogIsOpen()
{
    using KZ::CUiResource;
    const DemoFixture demo;
    const auto window = demo.clientWindow(DemoData::mainUser());
    window->show();
    withDialog(
        *window, [&] { window->openSettings(201); },
        [&] {
            QWidget* dialog = window->settingsDialog();
            QVERIFY(QTest::qWaitForWindowActive(dialog));
            QTest::keyClick(dialog, Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(CUiResource::theme(), CUiResource::Theme::Dark);
            QCOMPARE(dialog->palette().color(QPalette::Window),
                     CUiResource::palette().color(QPalette::Window));
            QCOMPARE(window->palette().color(QPalette::Window),
                     CUiResource::palette().color(QPalette::Window));
            QTest::keyClick(dialog, Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
            QCOMPARE(CUiResource::theme(), CUiResource::Theme::Light);
        });
}

void SettingsFlowTest::signingOutWaitsForTheDialog()
{
    const DemoFixture demo;
    host::HostOptions options;
    options.pageId = 201;
    host::HostApplication client(options, demo.options(), demo.folder());
    QCOMPARE(client.start(), QString());
    // Through the sign-in window, so that the page asked for by option opens as well.
    auto* password = client.signInDialog()->findChild<QLineEdit*>(
        QStringLiteral("halden_client_sign_in_password"));
    password->setText(DemoData::password());
    QTest::keyClick(password, Qt::Key_Return);
    bool opened = false;
    QTimer poll;
    connect(&poll, &QTimer::timeout, &client, [&] {
        if (!client.clientWindow() || !client.clientWindow()->settingsDialog()->isVisible())
            return;
        poll.stop();
        opened = true;
        client.signOut();
        QVERIFY(client.clientWindow());
        client.clientWindow()->settingsDialog()->close();
    });
    poll.start(10);
    QTRY_VERIFY(opened);
    client.signOut();
    QVERIFY(!client.clientWindow());
    QVERIFY(client.signInDialog());
}

int main(int argc, char** argv)
{
    return runTest<SettingsFlowTest>(argc, argv);
}
#include "SettingsFlowTest.moc"
