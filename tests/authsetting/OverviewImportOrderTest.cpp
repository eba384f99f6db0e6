#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"
#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/RequestTag.h"
#include "tests/authsetting/NotingUser.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <memory>

namespace {

constexpr int operationColumn = 7;

/// Stands in the dialog's place and notes the busy state among the client's calls.
class NotingDialog : public EventRecorder
{
public:
    explicit NotingDialog(QStringList& calls) : m_calls(calls) {}

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        if (eventId == GW::EVENT_SET_WAITING)
            m_calls.append(param2 == 1 ? QStringLiteral("busy") : QStringLiteral("idle"));
        if (eventId == GW::EVENT_RELOAD_NAVIGATOR && onTree)
            onTree();
        return EventRecorder::handleEvent(eventId, param1, param2, text, data);
    }

    std::function<void()> onTree;

private:
    QStringList& m_calls;
};

/// Opens a file so slowly that the shortest busy time is over when it is done.
class SlowClient : public FakeAuthClient
{
public:
    int importAuth(const QString& path, const QString& password) override
    {
        clock.now += 1;
        FakeAuthClient::importAuth(path, password);
        return 1;
    }

    StandingClock clock;
};

struct OverviewUnderTest
{
    boost::shared_ptr<GW::CAccount> add(const char* number, mbservice::EAuthType state)
    {
        return services.user.addAccount(1, 1, "b", number, state);
    }

    void addGranted(const char* number)
    {
        services.fakes.grant(add(number, mbservice::AUTH_TYPE_NOT_GRANTED), QStringLiteral("bob"),
                             testToday(), testToday().addDays(9));
    }

    void show()
    {
        dialog.resize(1000, 400);
        page.resize(1000, 400);
        dialog.show();
    }

    bool cancel(int row)
    {
        return page.handleEvent(GW::EVENT_CANCEL_AUTH, row, 0, QString(), nullptr);
    }

    NotedServices services;
    StandingClock clock;
    NotingDialog dialog{services.fakes.client.calls};
    GW::CAuthSettingAccountsOverviewTabPage page{&dialog};
    KZ::COddEvenRowTable* table = page.findChild<KZ::COddEvenRowTable*>();
};

/// How many entries a table's context menu has.
qsizetype menuEntries(const KZ::COddEvenRowTable* table)
{
    QWidget* viewport = table->view()->viewport();
    const QPoint place(5, 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
    const std::unique_ptr<const QMenu> menu(table->findChild<QMenu*>());
    if (!menu)
        return 0;
    const QList<QAction*> actions = menu->actions();
    return std::count_if(actions.cbegin(), actions.cend(),
                         [](const QAction* action) { return !action->isSeparator(); });
}

} // namespace

/// In which order the overview and the import tab act, and what their tables offer.
class OverviewImportOrderTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aCancellationBeginsBusyAndReloadsBeforeTheTree()
    {
        OverviewUnderTest test;
        test.addGranted("1");
        test.page.reloadData();
        QVERIFY(test.cancel(0));
        test.clock.now += 1;
        test.services.user.accounts.clear();
        int rowsAtTree = -1;
        test.dialog.onTree = [&] { rowsAtTree = test.table->rowCount(); };
        test.services.fakes.client.answerDel(true);
        QCOMPARE(test.services.fakes.client.calls,
                 QStringList(
                     {QStringLiteral("busy"), QStringLiteral("delAuth"), QStringLiteral("idle")}));
        QCOMPARE(rowsAtTree, 0);
    }

    void theAccountsAreAskedForAtEveryStepOfAReload()
    {
        OverviewUnderTest test;
        for (const char* number : {"1", "2", "3"})
            test.add(number, mbservice::AUTH_TYPE_NOT_GRANTED);
        test.services.user.onRead = [&] {
            test.services.user.onRead = nullptr;
            test.services.user.accounts.removeLast();
        };
        test.page.reloadData();
        QCOMPARE(test.table->rowCount(), 2);
        test.services.user.onRead = [&] {
            test.services.user.onRead = nullptr;
            test.add("4", mbservice::AUTH_TYPE_NOT_GRANTED);
        };
        test.page.reloadData();
        QCOMPARE(test.table->rowCount(), 3);
        QCOMPARE(test.table->itemText(2, 2), QStringLiteral("4"));
    }

    void anAccountThatGoesDuringAReloadIsStillListedByTheImportTab()
    {
        NotedServices services;
        for (const char* number : {"1", "2", "3"})
            services.user.addAccount(1, 1, "b", number, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        EventRecorder dialog;
        GW::CAuthSettingImportAuthorizationTabPage page(&dialog);
        services.user.onRead = [&] { services.user.accounts.clear(); };
        page.reloadData();
        const auto* table = page.findChild<KZ::COddEvenRowTable*>();
        QCOMPARE(table->rowCount(), 3);
        QCOMPARE(table->itemText(2, 2), QStringLiteral("3"));
        page.reloadData();
        QCOMPARE(table->rowCount(), 0);
    }

    void aFailureIsToldAtTheRowPressedLastAlsoWhenItHasNoGrant()
    {
        OverviewUnderTest test;
        test.add("1", mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        test.addGranted("2");
        test.page.reloadData();
        test.show();
        QVERIFY(test.cancel(1));
        QVERIFY(test.cancel(0));
        QCOMPARE(test.services.fakes.client.delAuths.size(), 1);
        test.clock.now += 1;
        test.services.fakes.client.answerDel(false, QStringLiteral("x"));
        VERIFY_TIP(test.table->itemWidget(0, operationColumn),
                   QStringLiteral("取消授权失败。错误信息：x"), 2);
    }

    void aFailureBeforeAnyPressBelongsToNoRow()
    {
        OverviewUnderTest test;
        test.addGranted("1");
        test.page.reloadData();
        test.show();
        test.page.slotDelAuthResult(QString(), {}, GW::requestTag(&test.page), false,
                                    QStringLiteral("x"));
        VERIFY_TIP(nullptr, QStringLiteral("取消授权失败。错误信息：x"), 2);
    }

    void theGrantOfAnAccountWhoseStateLagsBehindCanBeCancelled()
    {
        OverviewUnderTest test;
        test.addGranted("1");
        test.services.user.accounts.first()->authType = mbservice::AUTH_TYPE_NOT_GRANTED;
        test.page.reloadData();
        QCOMPARE(test.table->itemText(0, 4), QStringLiteral("bob"));
        QVERIFY(test.cancel(0));
        QCOMPARE(test.services.fakes.client.delAuths.size(), 1);
    }

    void theButtonsWidgetFillsItsCell()
    {
        OverviewUnderTest test;
        test.addGranted("1");
        test.page.reloadData();
        test.show();
        test.table->setColumnWidth(operationColumn, 400);
        const QWidget* operation = test.table->itemWidget(0, operationColumn);
        QTRY_VERIFY2(operation->width() > 350, qPrintable(QString::number(operation->width())));
    }

    void bothTablesAlternateSelectRowsAndOfferAllCommands()
    {
        OverviewUnderTest test;
        GW::CAuthSettingImportAuthorizationTabPage import(&test.dialog);
        test.show();
        for (const auto* table : {test.table, import.findChild<KZ::COddEvenRowTable*>()}) {
            QVERIFY(table->view()->alternatingRowColors());
            QCOMPARE(table->view()->selectionBehavior(), QAbstractItemView::SelectRows);
            // Copying, selecting all, filtering and the default columns at least.
            QVERIFY(menuEntries(table) >= 4);
        }
    }

    void anImportReloadsBeforeItTellsTheSuccess()
    {
        NotedServices services;
        services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_GRANTED_TO_ME);
        EventRecorder dialog;
        GW::CAuthSettingImportAuthorizationTabPage page(&dialog);
        QStringList tipsAtReload{QStringLiteral("never reloaded")};
        services.user.onRead = [&] { tipsAtReload = tipTexts(); };
        Q_EMIT services.fakes.client.sigValidAuth({}, {}, true, {});
        QCOMPARE(tipsAtReload, QStringList());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("导入成功！")));
    }

    void aValidationFromAnotherThreadArrivesInTheGuiThread()
    {
        NotedServices services;
        const auto account =
            services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_GRANTED_TO_ME);
        EventRecorder dialog;
        const GW::CAuthSettingImportAuthorizationTabPage page(&dialog);
        const std::unique_ptr<QThread> thread(QThread::create([&] {
            Q_EMIT services.fakes.client.sigValidAuth(account->key(), QStringLiteral("s"), true,
                                                      {});
        }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(account->accountPrivate, std::string());
        QTRY_COMPARE(account->accountPrivate, std::string("s"));
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->rowCount(), 1);
    }

    void aFileThatTakesLongToRefuseShowsTheResultFirst()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("grant.taa")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        SlowClient client;
        GW::installServices(&client, nullptr, nullptr, nullptr, nullptr);
        EventRecorder dialog;
        GW::CAuthSettingImportAuthorizationTabPage page(&dialog);
        {
            ModalDriver dialogs;
            dialogs.answerFile(file.fileName());
            dialogs.answerPassword(QStringLiteral("pw"));
            page.handleEvent(5, 0, 0, QString(), nullptr);
        }
        QCOMPARE(tipTexts(), QStringList({QStringLiteral("导入失败！授权文件格式错误"),
                                          QStringLiteral("导入失败！授权文件解密出错。")}));
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
    }
};

int main(int argc, char** argv)
{
    return runTest<OverviewImportOrderTest>(argc, argv);
}

#include "OverviewImportOrderTest.moc"
