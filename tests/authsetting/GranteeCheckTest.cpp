#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

#include <climits>

namespace {

/// The dialog with the pages that ask whether a grantee exists, all of them made.
struct AskingPages
{
    AskingPages()
    {
        const auto account =
            desk.services.user.addAccount(1, 1, "9000", "1001", mbservice::AUTH_TYPE_NOT_GRANTED);
        key = account->key();
        desk.dialog.show();
        showImported();
        showOwn();
        showBatch();
    }

    void showBatch() { desk.dialog.showPage(201, INT_MAX, QString(), 1); }
    void showOwn() { desk.dialog.showPage(201, 20101, key, 0); }
    void showImported() { desk.dialog.showPage(202, 20201, key, 0); }

    /// Names `user` as the grantee on the page in front, as the user does.
    QWidget* ask(const QString& user)
    {
        GW::IAuthSettingTabPage* page = desk.currentTab();
        auto* box = page->findChild<KZ::CComboBox*>();
        box->setEditText(user);
        page->handleEvent(68, 0, 0, user, static_cast<QWidget*>(box));
        return box;
    }

    void answer(const QString& user, bool ok)
    {
        Q_EMIT desk.services.client.sigCheckAuthuserResult(user, ok, QStringLiteral("没有此人"));
    }

    static QString refusal(const QString& user)
    {
        return QStringLiteral("无法对用户") + user + QStringLiteral("进行授权！错误信息：没有此人");
    }

    DialogUnderTest desk;
    QString key;
};

} // namespace

/// How a refused grantee is told; the answers name the user and no page.
class GranteeCheckTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPageTellsARefusalAndTheUserReadsItOnceWhereHeIs_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("subPage");
        QTest::newRow("batch") << 201 << INT_MAX;
        QTest::newRow("own account") << 201 << 20101;
        QTest::newRow("received account") << 202 << 20201;
    }
    void everyPageTellsARefusalAndTheUserReadsItOnceWhereHeIs()
    {
        QFETCH(int, page);
        QFETCH(int, subPage);
        AskingPages test;
        test.desk.dialog.showPage(page, subPage, subPage == INT_MAX ? QString() : test.key,
                                  subPage == INT_MAX ? 1 : 0);
        QWidget* box = test.ask(QStringLiteral("nobody"));
        QCOMPARE(test.desk.services.client.checkedUsers, QStringList(QStringLiteral("nobody")));
        test.answer(QStringLiteral("nobody"), false);
        const QString refusal = AskingPages::refusal(QStringLiteral("nobody"));
        VERIFY_TIP(box, QStringList({refusal, refusal, refusal}), 3);
        QCOMPARE(onlyTip()->accessibleName(), refusal);
    }

    void aRefusalIsToldWhereverTheUserIsByThen()
    {
        AskingPages test;
        test.ask(QStringLiteral("nobody"));
        test.desk.dialog.showPage(203);
        test.answer(QStringLiteral("nobody"), false);
        QVERIFY(onlyTip());
        QVERIFY(onlyTip()->texts().contains(AskingPages::refusal(QStringLiteral("nobody"))));
    }

    void anAcceptedGranteeIsNotTold()
    {
        AskingPages test;
        test.ask(QStringLiteral("friend"));
        test.answer(QStringLiteral("friend"), true);
        QVERIFY(tipTexts().isEmpty());
    }

    void enterInThePlatformsFieldAsksNothing()
    {
        AskingPages test;
        test.showOwn();
        GW::IAuthSettingTabPage* page = test.desk.currentTab();
        page->findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("friend"));
        auto* platform = byId<KZ::CLineEdit>(page, 0);
        platform->setFocus();
        QTest::keyClick(platform, Qt::Key_Return);
        QVERIFY(test.desk.services.client.checkedUsers.isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<GranteeCheckTest>(argc, argv);
}

#include "GranteeCheckTest.moc"
