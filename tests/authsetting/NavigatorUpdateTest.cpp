#include "authsetting/shell/NavigatorUpdate.h"

#include "authsetting/services/AccountKey.h"
#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingNavigator.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "authsetting/shell/NavigatorNodes.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"
#include "tests/support/fakes/FakeServices.h"

#include <algorithm>

namespace {

/// A navigator over three accounts of the user's own, filled once.
struct FilledNavigator
{
    FilledNavigator()
    {
        for (const char* number : {"1", "2", "3"})
            services.user.addAccount(1, 1, "b", number, mbservice::AUTH_TYPE_NOT_GRANTED);
        services.client.subUsers = {QStringLiteral("u1"), QStringLiteral("u2")};
        GW::fillNavigator(&navigator);
        navigator.expandAll();
    }

    void reload()
    {
        navigator.clearNodes();
        QCOMPARE(navigator.topLevelItemCount(), 0);
        GW::fillNavigator(&navigator);
    }

    QTreeWidgetItem* accounts() { return navigator.topLevelItem(0); }
    QTreeWidgetItem* subUsers() { return navigator.topLevelItem(2); }

    QStringList names(const QTreeWidgetItem* top)
    {
        QStringList names;
        for (int child = 0; child < top->childCount(); ++child)
            names.append(top->child(child)->text(0));
        return names;
    }

    FakeServices services;
    EventRecorder dialog;
    GW::CAuthSettingNavigator navigator{&dialog};
};

QVector<QTreeWidgetItem*> childrenOf(const QTreeWidgetItem* top)
{
    QVector<QTreeWidgetItem*> children;
    for (int child = 0; child < top->childCount(); ++child)
        children.append(top->child(child));
    return children;
}

} // namespace

/// What a reload of the tree keeps of the nodes that were there.
class NavigatorUpdateTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aReloadThatChangesNothingMakesNoNode()
    {
        FilledNavigator test;
        const auto accounts = childrenOf(test.accounts());
        QTreeWidgetItem* top = test.accounts();
        test.reload();
        QCOMPARE(test.navigator.topLevelItemCount(), 3);
        QCOMPARE(test.accounts(), top);
        QCOMPARE(childrenOf(test.accounts()), accounts);
        test.navigator.activeNode(201, 20101, test.services.user.accounts.at(1)->key());
        QCOMPARE(test.navigator.currentItem(), accounts.at(1));
    }

    void aNodeTakesItsNewNameAndIcon()
    {
        FilledNavigator test;
        test.services.client.activeSubUsers = {QStringLiteral("u2")};
        test.services.user.accounts.at(0)->accountAlias = "<new>";
        auto* account = test.accounts()->child(0);
        auto* subUser = dynamic_cast<GW::CAuthNavigateNode*>(test.subUsers()->child(1));
        const qint64 icon = subUser->icon(0).cacheKey();
        test.reload();
        QCOMPARE(test.accounts()->child(0), account);
        QCOMPARE(account->text(0), QStringLiteral("<new>"));
        QCOMPARE(account->toolTip(0), QStringLiteral("<qt>&lt;new&gt;</qt>"));
        QCOMPARE(test.subUsers()->child(1), subUser);
        QCOMPARE(subUser->iconKey(), QStringLiteral("gw_img_auth_setting_tree_icon_sub_user"));
        QVERIFY(subUser->icon(0).cacheKey() != icon);
    }

    void accountsThatComeGoAndMoveStandInTheirOrder_data()
    {
        QTest::addColumn<QString>("order");
        QTest::newRow("first gone") << "2,3";
        QTest::newRow("middle gone") << "1,3";
        QTest::newRow("last gone") << "1,2";
        QTest::newRow("all gone") << "";
        QTest::newRow("new in front") << "9,1,2,3";
        QTest::newRow("new inside") << "1,9,2,3";
        QTest::newRow("new behind") << "1,2,3,9";
        QTest::newRow("turned round") << "3,2,1";
        QTest::newRow("one twice") << "1,2,2,3";
        QTest::newRow("others") << "7,8,9";
    }

    void accountsThatComeGoAndMoveStandInTheirOrder()
    {
        QFETCH(QString, order);
        FilledNavigator test;
        const auto before = childrenOf(test.accounts());
        const QStringList numbers = order.split(u',', Qt::SkipEmptyParts);
        test.services.user.accounts.clear();
        for (const QString& number : numbers) {
            test.services.user.addAccount(1, 1, "b", number.toStdString(),
                                          mbservice::AUTH_TYPE_NOT_GRANTED);
        }
        test.reload();
        QCOMPARE(test.names(test.accounts()), numbers);
        // Who is still there is still the same node.
        QVector<QTreeWidgetItem*> kept;
        for (QTreeWidgetItem* node : childrenOf(test.accounts())) {
            if (before.contains(node))
                kept.append(node);
        }
        const auto known = std::count_if(numbers.begin(), numbers.end(),
                                         [](const QString& number) { return number.toInt() <= 3; });
        QCOMPARE(kept.size(), order == QLatin1String("1,2,2,3") ? known - 1 : known);
        test.reload();
        QCOMPARE(test.names(test.accounts()), numbers);
    }

    void whatSomebodyChangedInATreeIsMadeAnew()
    {
        FilledNavigator test;
        test.accounts()->child(1)->setForeground(0, Qt::red);
        test.reload();
        QCOMPARE(test.names(test.accounts()), QStringList({"1", "2", "3"}));
        QVERIFY(!test.accounts()->child(1)->data(0, Qt::ForegroundRole).isValid());
    }

    void whatSomebodyAddedIsGoneUnlessHeAddsItAgain()
    {
        FilledNavigator test;
        test.accounts()->insertChild(0, new QTreeWidgetItem);
        test.navigator.addChildNode(QStringLiteral("extra"), 203, 20401,
                                    QStringLiteral("gw_img_auth_setting_tree_icon_account"),
                                    QStringLiteral("extra"));
        test.navigator.addTopNode(QStringLiteral("own"), 300,
                                  QStringLiteral("gw_img_auth_setting_tree_icon_account"));
        test.reload();
        QCOMPARE(test.navigator.topLevelItemCount(), 3);
        QCOMPARE(test.names(test.accounts()), QStringList({"1", "2", "3"}));
        QCOMPARE(test.names(test.subUsers()), QStringList({"u1", "u2"}));
        test.navigator.activeNode(300);
        QCOMPARE(test.navigator.currentItem(), nullptr);
    }

    void anotherThemeDoesNotCountAsAChange()
    {
        FilledNavigator test;
        const auto accounts = childrenOf(test.accounts());
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Dark);
        test.reload();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
        QCOMPARE(childrenOf(test.accounts()), accounts);
    }

    void aFillerThatNamesItsNodesOneByOneGetsFreshOnes()
    {
        FilledNavigator test;
        test.navigator.clearNodes();
        test.navigator.addTopNode(QStringLiteral("own"), 201,
                                  QStringLiteral("gw_img_auth_setting_tree_icon_account"));
        test.navigator.addChildNode(QStringLiteral("a"), 201, 20101,
                                    QStringLiteral("gw_img_auth_setting_tree_icon_account"),
                                    QStringLiteral("keyA"));
        test.navigator.activeNode(201, 20101, QStringLiteral("keyA"));
        QCOMPARE(test.navigator.currentItem(), test.accounts()->child(0));
        test.navigator.nodes().dropEarlier();
        QCOMPARE(test.names(test.accounts()), QStringList(QStringLiteral("a")));
    }

    void nodesOfOneKindShareTheirIcon()
    {
        FilledNavigator test;
        QCOMPARE(test.accounts()->child(0)->icon(0).cacheKey(),
                 test.accounts()->child(2)->icon(0).cacheKey());
    }

    void noNodeIsCurrentInAnEmptiedTree()
    {
        FilledNavigator test;
        test.navigator.activeNode(203);
        test.dialog.events.clear();
        test.navigator.clearNodes();
        QCOMPARE(test.navigator.currentItem(), nullptr);
        QVERIFY(test.dialog.events.isEmpty());
    }
};

int main(int argc, char** argv)
{
    return runTest<NavigatorUpdateTest>(argc, argv);
}

#include "NavigatorUpdateTest.moc"
