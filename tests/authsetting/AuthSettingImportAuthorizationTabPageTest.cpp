#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"

#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <QDir>
#include <QTemporaryDir>

namespace {

/// Notes what the window had painted by the time the file is opened.
class PaintProbe : public EventRecorder
{
public:
    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        if (eventId == GW::EVENT_SET_WAITING)
            m_busy = param2 == 1;
        return EventRecorder::handleEvent(eventId, param1, param2, text, data);
    }

    bool paintedBusy = false;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        paintedBusy = paintedBusy || m_busy;
        EventRecorder::paintEvent(event);
    }

private:
    bool m_busy = false;
};

class SlowClient : public FakeAuthClient
{
public:
    explicit SlowClient(const PaintProbe& probe) : m_probe(probe) {}

    int importAuth(const QString& path, const QString& password) override
    {
        paintedBefore = m_probe.paintedBusy;
        return FakeAuthClient::importAuth(path, password);
    }

    bool paintedBefore = false;

private:
    const PaintProbe& m_probe;
};

/// An import tab under a recorder, with a file that can be chosen.
struct ImportFixture
{
    ImportFixture()
    {
        nameFirms(services);
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write("sealed") != 6)
            QTest::qFail("no file to import", __FILE__, __LINE__);
    }

    QString path() const { return folder.filePath(QStringLiteral("grant.taa")); }

    boost::shared_ptr<GW::CAccount> receive(const std::string& number, int type = 1)
    {
        auto account =
            services.user.addAccount(type, 1, "9000", number, mbservice::AUTH_TYPE_GRANTED_TO_ME);
        return account;
    }

    void import(const QString& password)
    {
        ModalDriver dialogs;
        dialogs.answerFile(path());
        dialogs.answerPassword(password);
        page.handleEvent(5, 0, 0, QString(), nullptr);
    }

    void wait() { clock.now += 1; }

    KZ::COddEvenRowTable* table() const { return page.findChild<KZ::COddEvenRowTable*>(); }

    QTemporaryDir folder;
    FakeServices services;
    StandingClock clock;
    EventRecorder top;
    GW::CAuthSettingImportAuthorizationTabPage page{&top};
};

} // namespace

class AuthSettingImportAuthorizationTabPageTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void standsOnItsPlaceWithAnEmptyTable()
    {
        ImportFixture test;
        QCOMPARE(test.page.pageId(), 202);
        QCOMPARE(test.page.subPageId(), -1);
        QCOMPARE(test.page.tabPageId(), 2020001);
        QVERIFY(test.page.isEnabled());
        QCOMPARE(test.table()->getID(), 4194322);
        QCOMPARE(headerTexts(test.table()),
                 QStringList({QStringLiteral("交易平台"), QStringLiteral("经纪公司"),
                              QStringLiteral("账号"), QStringLiteral("授权状态"),
                              QStringLiteral("授权人"), QStringLiteral("起始日期"),
                              QStringLiteral("终止日期")}));
        test.page.reloadData();
        QCOMPARE(test.table()->rowCount(), 0);
        test.page.resize(600, 400);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        QCOMPARE(test.table()->mapTo(&test.page, QPoint(0, 0)), QPoint(8, 8));
        QCOMPARE(test.table()->size(), QSize(584, 384));
    }

    void keepsTheTablesLayoutBetweenTwoLives()
    {
        FakeServices services;
        EventRecorder top;
        {
            const GW::CAuthSettingImportAuthorizationTabPage page(&top);
            page.findChild<KZ::COddEvenRowTable*>()->setColumnWidth(3, 222);
        }
        QVERIFY(!services.user.tableLayouts.value(4194322).isEmpty());
        const GW::CAuthSettingImportAuthorizationTabPage page(&top);
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->columnWidth(3), 222);
    }

    void listsOnlyReceivedAccountsOutsideSubAccountRelations()
    {
        ImportFixture test;
        for (const int type : {0, 1, 3, 9})
            test.receive("other")->authType = static_cast<mbservice::EAuthType>(type);
        test.services.user.subAccounts.insert(test.receive("sub")->key());
        test.services.user.parentAccounts.insert(test.receive("parent")->key());
        test.receive("b");
        test.services.user.accounts.append(nullptr);
        test.receive("a");
        test.page.reloadData();
        test.page.reloadData();
        QCOMPARE(test.table()->rowCount(), 2);
        QCOMPARE(test.table()->itemText(0, 2), QStringLiteral("b"));
        QCOMPARE(test.table()->itemText(1, 2), QStringLiteral("a"));
    }

    void aRowNamesTheAccountAndItsGrant()
    {
        ImportFixture test;
        const auto account = test.receive("1001");
        test.services.grant(account, QStringLiteral("trader01"), QDate(2026, 3, 1),
                            QDate(2026, 4, 1));
        account->authType = mbservice::AUTH_TYPE_GRANTED_TO_ME;
        test.services.client.grants.value(account->key())->grantor = QStringLiteral("giver");
        test.receive("1002")->accountAlias = "别名";
        test.page.reloadData();
        QCOMPARE(
            rowTexts(test.table(), 0),
            QStringList({QStringLiteral("期货平台"), QStringLiteral("远山期货"),
                         QStringLiteral("1001"), account->authTypeString(), QStringLiteral("giver"),
                         QStringLiteral("2026-03-01"), QStringLiteral("2026-04-01")}));
        QCOMPARE(test.table()->itemTextColorKey(0, 3),
                 QStringLiteral("clr_auth_type_granted_to_me"));
        QCOMPARE(rowTexts(test.table(), 1).mid(2),
                 QStringList({QStringLiteral("别名"), account->authTypeString(), QString(),
                              QString(), QString()}));
    }

    void aGrantNearItsEndIsMarkedBesideItsState()
    {
        ImportFixture test;
        for (const int days : {3, 4}) {
            const auto account = test.receive(std::to_string(days));
            test.services.grant(account, QStringLiteral("trader01"), testToday(),
                                testToday().addDays(days));
            account->authType = mbservice::AUTH_TYPE_GRANTED_TO_ME;
        }
        test.page.reloadData();
        QCOMPARE(expiryMark(test.table(), 0, 3), QStringLiteral("还有 3 天到期"));
        QCOMPARE(expiryMark(test.table(), 1, 3), QString());
    }

    void everyTypeButOneIsStock()
    {
        ImportFixture test;
        test.receive("a", 2);
        test.receive("b", 7);
        test.receive("c", 1)->platformId = 5;
        test.page.reloadData();
        for (const int row : {0, 1}) {
            QCOMPARE(test.table()->itemText(row, 0), QStringLiteral("股票平台"));
            QCOMPARE(test.table()->itemText(row, 1), QStringLiteral("临江证券"));
        }
        QCOMPARE(test.table()->itemText(2, 0), QString());
    }

    void onlyClicksAreItsOwn()
    {
        ImportFixture test;
        QVERIFY(test.page.handleEvent(5, 1, 0, QString(), nullptr));
        QVERIFY(test.page.handleEvent(5, 102, 0, QString(), nullptr));
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(test.page.handleEvent(41, 0, 0, QString(), nullptr));
        QCOMPARE(test.top.ids(), QVector<int>({41}));
    }

    void theCommandAsksForFileAndPassword()
    {
        ImportFixture test;
        ModalDriver dialogs;
        dialogs.answerFile(test.path());
        dialogs.answerPassword(QStringLiteral(" pw "));
        QVERIFY(test.page.handleEvent(5, 0, 0, QString(), nullptr));
        QCOMPARE(dialogs.titles,
                 QStringList({QStringLiteral("导入授权"), QStringLiteral("输入授权密码")}));
        QCOMPARE(dialogs.filters, QStringList(QStringLiteral("Auth Files(*.taa)")));
        QCOMPARE(dialogs.parents, QVector<QWidget*>({&test.page, &test.page}));
        QCOMPARE(dialogs.echoModes, QVector<QLineEdit::EchoMode>({QLineEdit::Password}));
        QCOMPARE(test.services.client.imports.size(), 1);
        QCOMPARE(test.services.client.imports.first().path, test.path());
        QCOMPARE(test.services.client.imports.first().password, QStringLiteral(" pw "));
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING}));
        QCOMPARE(test.top.events.first().param1, 2020001);
        QCOMPARE(test.top.events.first().param2, 1);
        QVERIFY(tipTexts().isEmpty());
    }

    void theFileIsLookedForInTheCurrentFolder()
    {
        ImportFixture test;
        ModalDriver dialogs;
        QString folder;
        QFileDialog::AcceptMode mode = QFileDialog::AcceptSave;
        dialogs.expect([&](QWidget* window) {
            auto* dialog = qobject_cast<QFileDialog*>(window);
            folder = dialog->directory().absolutePath();
            mode = dialog->acceptMode();
            dialog->reject();
        });
        QVERIFY(test.page.handleEvent(5, 0, 0, QString(), nullptr));
        QCOMPARE(folder, QDir::currentPath());
        QCOMPARE(mode, QFileDialog::AcceptOpen);
    }

    void aCancelledDialogImportsNothing()
    {
        ImportFixture test;
        {
            ModalDriver dialogs;
            dialogs.answerFile(QString());
            test.page.handleEvent(5, 0, 0, QString(), nullptr);
        }
        {
            ModalDriver dialogs;
            dialogs.answerFile(test.path());
            dialogs.cancelPassword();
            test.page.handleEvent(5, 0, 0, QString(), nullptr);
        }
        {
            ModalDriver dialogs;
            dialogs.answerFile(test.path());
            dialogs.expect([](QWidget* window) {
                window->findChild<QPushButton*>(QStringLiteral("halden_input_ok"))->click();
                window->findChild<QPushButton*>(QStringLiteral("halden_input_cancel"))->click();
            });
            test.page.handleEvent(5, 0, 0, QString(), nullptr);
        }
        QVERIFY(test.services.client.imports.isEmpty());
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(tipTexts().isEmpty());
    }

    void thePageMayDieUnderThePasswordDialog()
    {
        ImportFixture test;
        auto* page = new GW::CAuthSettingImportAuthorizationTabPage(&test.top);
        ModalDriver dialogs;
        dialogs.answerFile(test.path());
        dialogs.expect([page](QWidget*) { delete page; });
        page->handleEvent(5, 0, 0, QString(), nullptr);
        QVERIFY(test.services.client.imports.isEmpty());
    }

    void theBusyStateIsPaintedBeforeTheFileIsOpened()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("grant.taa"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        PaintProbe top;
        SlowClient client(top);
        GW::installServices(&client, nullptr, nullptr, nullptr, nullptr);
        GW::CAuthSettingImportAuthorizationTabPage page(&top);
        top.resize(600, 400);
        top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&top));
        ModalDriver dialogs;
        dialogs.answerFile(path);
        dialogs.answerPassword(QStringLiteral("pw"));
        page.handleEvent(5, 0, 0, QString(), nullptr);
        QCOMPARE(client.imports.size(), 1);
        QVERIFY(client.paintedBefore);
        GW::installServices(nullptr, nullptr, nullptr, nullptr, nullptr);
    }

    void aFileThatCannotBeOpenedShowsBothTips()
    {
        ImportFixture test;
        test.services.client.importResult = -4;
        test.import(QStringLiteral("pw"));
        VERIFY_TIP(nullptr, QStringLiteral("导入失败！授权文件解密出错。"), 3);
        QCOMPARE(test.top.events.size(), 1);
        QTRY_COMPARE(test.top.events.size(), 2);
        QCOMPARE(test.top.events.last().id, int(GW::EVENT_SET_WAITING));
        QCOMPARE(test.top.events.last().param2, 0);
        VERIFY_TIP(nullptr,
                   QStringList({QStringLiteral("导入失败！授权文件解密出错。"),
                                QStringLiteral("导入失败！授权文件格式错误")}),
                   3);
    }

    void anOpenedFileStaysBusyUntilItsValidation()
    {
        ImportFixture test;
        test.import(QStringLiteral("pw"));
        test.wait();
        QTest::qWait(20);
        QCOMPARE(test.top.events.size(), 1);
        Q_EMIT test.services.client.sigValidAuth(QStringLiteral("k"), {}, false,
                                                 QStringLiteral("授权已过期"));
        QCOMPARE(test.top.events.size(), 2);
        QCOMPARE(test.top.events.last().param2, 0);
        VERIFY_TIP(nullptr, QStringLiteral("导入失败！授权已过期"), 3);
    }

    void aValidationStoresTheSecretAndListsTheAccount()
    {
        ImportFixture test;
        const auto account = test.receive("1001");
        test.page.reloadData();
        const auto imported = test.receive("1002");
        Q_EMIT test.services.client.sigValidAuth(imported->key(), QStringLiteral("密 1"), true, {});
        QCOMPARE(imported->accountPrivate, QStringLiteral("密 1").toLocal8Bit().toStdString());
        QCOMPARE(account->accountPrivate, std::string());
        QCOMPARE(test.table()->rowCount(), 2);
        VERIFY_TIP(nullptr, QStringLiteral("导入成功！"), 3);
        QVERIFY(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).isEmpty());
    }

    void aFailedValidationStoresNothing()
    {
        ImportFixture test;
        const auto account = test.receive("1001");
        account->accountPrivate = "kept";
        Q_EMIT test.services.client.sigValidAuth(account->key(), QStringLiteral("new"), false,
                                                 QStringLiteral("no"));
        QCOMPARE(account->accountPrivate, std::string("kept"));
        QCOMPARE(test.table()->rowCount(), 0);
    }

    void aValidationOfAnUnknownAccountStillReloadsAndTells()
    {
        ImportFixture test;
        const auto account = test.receive("1001");
        Q_EMIT test.services.client.sigValidAuth(QStringLiteral("unknown"), QStringLiteral("s"),
                                                 true, {});
        QCOMPARE(test.table()->rowCount(), 1);
        QCOMPARE(account->accountPrivate, std::string());
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("导入成功！")));
    }

    void ofSeveralValidationsInTheBusyTimeTheLastOneIsShownForEach()
    {
        ImportFixture test;
        test.import(QStringLiteral("pw"));
        test.clock.now += 0.68;
        const auto account = test.receive("1001");
        Q_EMIT test.services.client.sigValidAuth(account->key(), QStringLiteral("s"), true, {});
        Q_EMIT test.services.client.sigValidAuth({}, {}, false, QStringLiteral("1002 已取消"));
        QCOMPARE(account->accountPrivate, std::string("s"));
        QTRY_COMPARE(tipTexts(), QStringList({QStringLiteral("导入失败！1002 已取消"),
                                              QStringLiteral("导入失败！1002 已取消")}));
    }

    void worksWithoutAnyService()
    {
        EventRecorder top;
        GW::CAuthSettingImportAuthorizationTabPage page(&top);
        page.reloadData();
        page.slotValidAuth(QStringLiteral("k"), QStringLiteral("s"), true, {});
        QCOMPARE(tipTexts(), QStringList(QStringLiteral("导入成功！")));
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("grant.taa")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        ModalDriver dialogs;
        dialogs.answerFile(file.fileName());
        dialogs.answerPassword(QStringLiteral("pw"));
        page.handleEvent(5, 0, 0, QString(), nullptr);
        QVERIFY2(top.of(GW::EVENT_SET_WAITING).size() == 1, "only the validation ended a wait");
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingImportAuthorizationTabPageTest>(argc, argv);
}

#include "AuthSettingImportAuthorizationTabPageTest.moc"
