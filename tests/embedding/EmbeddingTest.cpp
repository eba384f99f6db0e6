#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "tests/embedding/HostAuthClient.h"
#include "tests/embedding/HostConfig.h"
#include "tests/embedding/HostMsgService.h"
#include "tests/embedding/HostTimeService.h"
#include "tests/embedding/HostUserConfig.h"
#include "tests/embedding/XPointer.h"
#include "tests/support/TestCase.h"

#include <QAbstractItemModel>
#include <QPushButton>
#include <QTableView>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>

#include <boost/make_shared.hpp>

#include <functional>
#include <memory>

namespace {

struct Host
{
    Host() { GW::installServices(&client, &user, &config, &messages, &time); }
    ~Host() { GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    HostAuthClient client;
    HostUserConfig user;
    HostConfig config;
    HostMsgService messages;
    HostTimeService time;
};

/// The texts of all cells of all tables that the dialog shows.
QStringList shownTexts(const QWidget& dialog)
{
    QStringList texts;
    const auto tables = dialog.findChildren<QTableView*>();
    for (const QTableView* table : tables) {
        const QAbstractItemModel* model = table->model();
        if (!table->isVisible() || !model)
            continue;
        for (int row = 0; row < model->rowCount(); ++row) {
            for (int column = 0; column < model->columnCount(); ++column)
                texts.append(model->index(row, column).data().toString());
        }
    }
    return texts;
}

QPushButton* buttonNamed(const QWidget& dialog, const QString& text)
{
    const auto buttons = dialog.findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->text() == text && button->isVisible())
            return button;
    }
    return nullptr;
}

/// Opens the dialog on `pageId` and runs `whileOpen` once its window is up; whether that could
/// happen. The dialog is closed in any case, so that a failing test ends.
bool withOpenDialog(QDialog& dialog, int pageId, const std::function<void()>& whileOpen)
{
    bool ran = false;
    QTimer::singleShot(0, &dialog, [&] {
        if (QTest::qWaitForWindowActive(&dialog)) {
            whileOpen();
            ran = true;
        }
        dialog.close();
    });
    GW::CAuthSettingDialog::showSettingPage(pageId);
    return ran && !dialog.isVisible();
}

} // namespace

/// The module as a client team embeds it: the shared library, its headers, services of their own.
class EmbeddingTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void opensOnAPageAndClosesByAClick();
    void showsWhatItsHostReports();
    void fillsItsTreeForTheHost();
    void opensWithoutAnyService();
    void namesItsPages();
    void carriesResultsFromAnotherThread();
};

void EmbeddingTest::opensOnAPageAndClosesByAClick()
{
    Host host;
    host.user.userName = QStringLiteral("wang.fang");
    host.user.addAccount("80010001", mbservice::AUTH_TYPE_NOT_GRANTED);
    GW::CAuthSettingDialog dialog;
    QStringList texts;
    bool closedByClick = false;
    QVERIFY(withOpenDialog(dialog, 201, [&] {
        texts = shownTexts(dialog);
        const QPushButton* button = buttonNamed(dialog, QStringLiteral("关闭"));
        closedByClick = button && XPointer().click(*button) &&
                        QTest::qWaitFor([&] { return !dialog.isVisible(); });
    }));
    QVERIFY2(texts.contains(QStringLiteral("80010001")), qPrintable(texts.join(u' ')));
    QVERIFY(closedByClick);
}

void EmbeddingTest::showsWhatItsHostReports()
{
    Host host;
    host.user.userName = QStringLiteral("wang.fang");
    const auto first = host.user.addAccount("80010001", mbservice::AUTH_TYPE_NOT_GRANTED);
    GW::CAuthSettingDialog dialog;
    QStringList before;
    bool shown = false;
    QVERIFY(withOpenDialog(dialog, 201, [&] {
        before = shownTexts(dialog);
        auto grant = boost::make_shared<GW::CAuthDetail>();
        grant->grantor = host.user.userName;
        grant->grantee = QStringLiteral("li.wei");
        grant->account = *first;
        host.client.grants.insert(first->key(), grant);
        first->authType = mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
        Q_EMIT host.client.sigUiUpdateAuth();
        shown =
            QTest::qWaitFor([&] { return shownTexts(dialog).contains(QStringLiteral("li.wei")); });
    }));
    QVERIFY(!before.contains(QStringLiteral("li.wei")));
    QVERIFY(shown);
}

void EmbeddingTest::fillsItsTreeForTheHost()
{
    Host host;
    host.user.userName = QStringLiteral("wang.fang");
    host.user.addAccount("80010001", mbservice::AUTH_TYPE_NOT_GRANTED);
    GW::CAuthSettingDialog dialog;
    const auto* tree = dialog.findChild<QTreeWidget*>();
    QVERIFY(tree);
    dialog.load();
    QCOMPARE(tree->topLevelItemCount(), 0);
    dialog.setNavigatorFiller(&GW::fillNavigator);
    dialog.load();
    QCOMPARE(tree->topLevelItemCount(), 3);
    QCOMPARE(tree->topLevelItem(0)->childCount(), 1);
    QCOMPARE(tree->topLevelItem(2)->child(0)->text(0), QStringLiteral("sub1"));
}

void EmbeddingTest::opensWithoutAnyService()
{
    GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
    QVERIFY(!GW::getAuthClient());
    GW::CAuthSettingDialog dialog;
    dialog.setNavigatorFiller(&GW::fillNavigator);
    for (const int page : {201, 202, 203, 999}) {
        QVERIFY(withOpenDialog(dialog, page, [&] {
            QVERIFY(shownTexts(dialog).isEmpty());
            QTest::keyClick(&dialog, Qt::Key_Escape);
            QVERIFY(!dialog.isVisible());
        }));
    }
}

void EmbeddingTest::namesItsPages()
{
    QCOMPARE(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, 201);
    QCOMPARE(GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION, 202);
    QCOMPARE(GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS, 203);
}

void EmbeddingTest::carriesResultsFromAnotherThread()
{
    HostAuthClient client;
    GW::CAuthLimit limit;
    limit.endTime = 1'700'000'000;
    limit.availableMarginRatio = 0.25;
    mbservice::CAccountInfo account;
    account.accountId = "80010001";
    int received = 0;
    connect(
        &client, &GW::CAuthClient::sigAddAuthResult, this,
        [&](const QString& grantee, const mbservice::CAccountInfo& receivedAccount,
            const GW::CAuthLimit& receivedLimit, const QString&, const QVariant& tag, bool ok) {
            QCOMPARE(QThread::currentThread(), thread());
            QCOMPARE(grantee, QStringLiteral("li.wei"));
            QCOMPARE(receivedAccount.accountId, std::string("80010001"));
            QCOMPARE(receivedLimit.endTime, 1'700'000'000);
            QCOMPARE(receivedLimit.availableMarginRatio, 0.25);
            QCOMPARE(tag.toInt(), 7);
            QVERIFY(ok);
            ++received;
        },
        Qt::QueuedConnection);
    const std::unique_ptr<QThread> worker(QThread::create(
        [&] { client.addAuth(QStringLiteral("li.wei"), account, limit, 7, true); }));
    worker->start();
    QTRY_COMPARE(received, 1);
    QVERIFY(worker->wait());
}

int main(int argc, char** argv)
{
    return runTest<EmbeddingTest>(argc, argv);
}

#include "EmbeddingTest.moc"
