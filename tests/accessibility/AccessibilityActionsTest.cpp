#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/ComboBox.h"
#include "tests/accessibility/AccessibleDesk.h"
#include "tests/accessibility/Walker.h"
#include "tests/support/TipTestCase.h"

#include <QAccessible>

namespace {

constexpr int accountsPage = 201;
constexpr int subUsersPage = 203;
constexpr int singleSubUser = 20401;
constexpr int batchTab = 1;

/// The number that the next accessible object gets.
QAccessible::Id nextId(QWidget* parent)
{
    QWidget probe(parent);
    return QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&probe));
}

} // namespace

/// What a user does through a screen reader, and what he hears of it by himself.
class AccessibilityActionsTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRowsButtonIsPressedThroughTheBus()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage));
        QVERIFY(Walker::press(QStringLiteral("取消授权 1001")));
        QCOMPARE(desk.test.services.client.delAuths.size(), 1);
        QCOMPARE(desk.test.services.client.delAuths.first().grantee, QStringLiteral("bob"));
        desk.test.dialog.close();
    }

    void aFreeRowHasNoButtonToPress()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage));
        QVERIFY(!Walker::press(QStringLiteral("取消授权 1000")));
        QVERIFY(desk.test.services.client.calls.isEmpty());
    }

    void aBusyPagesButtonCannotBePressed()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(accountsPage));
        desk.test.dialog.setDialogEnabled(false);
        QVERIFY(!Walker::press(QStringLiteral("取消授权 1001")));
        QVERIFY(desk.test.services.client.calls.isEmpty());
        desk.test.dialog.setDialogEnabled(true);
    }

    void aSubUsersButtonIsPressedThroughTheBus()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(subUsersPage));
        QVERIFY(Walker::press(QStringLiteral("禁用 ops")));
        QCOMPARE(desk.test.services.client.setSubUsers.size(), 1);
        QVERIFY(!desk.test.services.client.setSubUsers.first().enable);
        desk.test.dialog.close();
    }

    void aGrantOfASubUserIsCancelledThroughTheBus()
    {
        AccessibleDesk desk;
        QVERIFY(desk.show(subUsersPage, singleSubUser, QStringLiteral("ops")));
        QVERIFY(Walker::press(QStringLiteral("取消授权 1002")));
        QCOMPARE(desk.test.services.client.delAuths.size(), 1);
        desk.test.dialog.close();
    }

    void aReloadOfTenThousandRowsMakesNoObjectsForAListener()
    {
        constexpr int many = 10000;
        AccessibleDesk desk;
        for (int number = 0; number < many; ++number) {
            desk.test.services.user.addAccount(1, 1, "9000", std::to_string(5000 + number),
                                               mbservice::AUTH_TYPE_NOT_GRANTED);
        }
        QVERIFY(desk.show(accountsPage));
        Walker walker;
        QVERIFY(walker.listen());
        const QAccessible::Id before = nextId(&desk.test.dialog);
        desk.test.dialog.slotUiUpdateAuth();
        auto* const table = desk.test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        QTRY_COMPARE(table->view()->model()->rowCount(), many + 3);
        QVERIFY2(nextId(&desk.test.dialog) - before < QAccessible::Id(many / 10),
                 "objects were made for rows that nobody asked for");
    }

    void aWholeGrantIsSaidOnceAndInOrder()
    {
        constexpr int more = 100;
        AccessibleDesk desk;
        for (int number = 0; number < more; ++number) {
            desk.test.services.user.addAccount(1, 1, "9000", std::to_string(5000 + number),
                                               mbservice::AUTH_TYPE_NOT_GRANTED);
        }
        StandingClock clock;
        QVERIFY(desk.show(accountsPage, INT_MAX, QString(), batchTab));
        desk.test.currentTab()->findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        auto* const table = desk.test.currentTab()->findChild<KZ::COddEvenRowTable*>();
        for (int row = 0; row < table->rowCount(); ++row) {
            if (table->isItemCheckEnabled(row, 0))
                table->setItemChecked(row, 0, true);
        }
        Walker walker;
        QVERIFY(walker.listen());
        auto* const page =
            qobject_cast<GW::CAuthSettingAccountsAuthorizeTabPage*>(desk.test.currentTab());
        page->onServerAuthTriggered(false);
        const int grants = int(desk.test.services.client.addAuths.size());
        QCOMPARE(grants, more + 1);
        QStringList expected{QStringLiteral("progress bar \"向服务器确认中……\"")};
        for (int answer = 0; answer < grants; ++answer) {
            expected.append(QStringLiteral("progress bar %1 0 %2").arg(answer).arg(grants));
            QCOMPARE(walker.said(expected.last()).join(u'\n'), expected.join(u'\n'));
            clock.now += 1;
            desk.test.services.client.answerAdd(true);
        }
        expected.append(QStringLiteral("notification \"授权成功\""));
        QCOMPARE(walker.said(expected.last()).join(u'\n'), expected.join(u'\n'));
    }
};

int main(int argc, char** argv)
{
    return runTest<AccessibilityActionsTest>(argc, argv);
}

#include "AccessibilityActionsTest.moc"
