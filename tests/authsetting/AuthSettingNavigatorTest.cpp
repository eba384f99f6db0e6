#include "authsetting/shell/AuthSettingNavigator.h"

#include "authsetting/shell/AuthNavigateNode.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/resources/UiResource.h"
#include "tests/authsetting/ShellTestTools.h"
#include "tests/support/TestCase.h"

#include <climits>

namespace {

QString authorizeIcon()
{
    return QStringLiteral("gw_img_auth_setting_tree_icon_authorize");
}

QString accountIcon()
{
    return QStringLiteral("gw_img_auth_setting_tree_icon_account");
}

struct NavigatorUnderTest
{
    void fill()
    {
        navigator->addTopNode(QStringLiteral("accounts"), 201, authorizeIcon());
        navigator->addTopNode(QStringLiteral("import"), 202, authorizeIcon());
        navigator->addChildNode(QStringLiteral("a"), 201, 20101, accountIcon(),
                                QStringLiteral("keyA"));
        navigator->addChildNode(QStringLiteral("b"), 201, 20101, accountIcon(),
                                QStringLiteral("keyB"));
        navigator->addChildNode(QStringLiteral("b other"), 201, 20102, accountIcon(),
                                QStringLiteral("keyB"));
        navigator->addChildNode(QStringLiteral("b again"), 201, 20101, accountIcon(),
                                QStringLiteral("keyB"));
        navigator->expandAll();
    }

    EventRecorder dialog;
    GW::CAuthSettingNavigator* navigator = new GW::CAuthSettingNavigator(&dialog);
};

} // namespace

class AuthSettingNavigatorTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void hasNoHeaderAndTakesNoFocus()
    {
        NavigatorUnderTest test;
        QVERIFY(test.navigator->isHeaderHidden());
        QCOMPARE(test.navigator->focusPolicy(), Qt::NoFocus);
        QCOMPARE(test.navigator->topLevelItemCount(), 0);
    }

    void aNodeKeepsWhatItWasMadeWith()
    {
        GW::CAuthNavigateNode node(201, 20101, accountIcon(), QStringLiteral("key"),
                                   {QStringLiteral("text")});
        QCOMPARE(node.type(), 0);
        QCOMPARE(node.pageId(), 201);
        QCOMPARE(node.subPageId(), 20101);
        QCOMPARE(node.key(), QStringLiteral("key"));
        QCOMPARE(node.iconKey(), accountIcon());
        QCOMPARE(node.text(0), QStringLiteral("text"));
        QVERIFY(!node.icon(0).isNull());
    }

    void topNodesAndChildrenStandWhereTheyBelong()
    {
        NavigatorUnderTest test;
        test.fill();
        QCOMPARE(test.navigator->topLevelItemCount(), 2);
        auto* top = dynamic_cast<GW::CAuthNavigateNode*>(test.navigator->topLevelItem(0));
        QVERIFY(top);
        QCOMPARE(top->pageId(), 201);
        QCOMPARE(top->subPageId(), INT_MAX);
        QCOMPARE(top->key(), QString());
        QCOMPARE(top->childCount(), 4);
        auto* child = dynamic_cast<GW::CAuthNavigateNode*>(top->child(0));
        QVERIFY(child);
        QCOMPARE(child->subPageId(), 20101);
        QCOMPARE(child->key(), QStringLiteral("keyA"));
        QCOMPARE(test.navigator->topLevelItem(1)->childCount(), 0);
    }

    void aChildWithoutATopNodeIsNotAdded()
    {
        NavigatorUnderTest test;
        test.navigator->addChildNode(QStringLiteral("a"), 201, 20101, accountIcon(),
                                     QStringLiteral("keyA"));
        QCOMPARE(test.navigator->topLevelItemCount(), 0);
    }

    void aLaterTopNodeOfAPageTakesTheChildren()
    {
        NavigatorUnderTest test;
        test.fill();
        test.navigator->addTopNode(QStringLiteral("again"), 201, authorizeIcon());
        test.navigator->addChildNode(QStringLiteral("c"), 201, 20101, accountIcon(),
                                     QStringLiteral("keyC"));
        QCOMPARE(test.navigator->topLevelItem(0)->childCount(), 4);
        QCOMPARE(test.navigator->topLevelItem(2)->childCount(), 1);
    }

    void activatingOnAnEmptyTreeDoesNothing()
    {
        NavigatorUnderTest test;
        test.navigator->activeNode(201);
        test.navigator->activeNode(201, 20101, QStringLiteral("keyA"));
        QCOMPARE(test.navigator->currentItem(), nullptr);
        QVERIFY(test.dialog.events.isEmpty());
    }

    void activatingATopNodeAsksForItsPage()
    {
        NavigatorUnderTest test;
        test.fill();
        test.navigator->activeNode(202);
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(1));
        QCOMPARE(test.dialog.events.size(), 1);
        QCOMPARE(test.dialog.events[0].id, int(GW::EVENT_SHOW_PAGE));
        QCOMPARE(test.dialog.events[0].param1, 202);
        QCOMPARE(test.dialog.events[0].param2, INT_MAX);
        QCOMPARE(test.dialog.events[0].text, QString());
        QCOMPARE(test.dialog.events[0].data, nullptr);
    }

    void theFirstChildWithTheSubPageAndKeyIsActivated()
    {
        NavigatorUnderTest test;
        test.fill();
        test.navigator->activeNode(201, 20101, QStringLiteral("keyB"));
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(0)->child(1));
        QCOMPARE(test.dialog.events.size(), 1);
        QCOMPARE(test.dialog.events[0].param1, 201);
        QCOMPARE(test.dialog.events[0].param2, 20101);
        QCOMPARE(test.dialog.events[0].text, QStringLiteral("keyB"));
        test.navigator->activeNode(201, 20102, QStringLiteral("keyB"));
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(0)->child(2));
    }

    void withoutAMatchNothingChanges()
    {
        NavigatorUnderTest test;
        test.fill();
        test.navigator->activeNode(202);
        test.dialog.events.clear();
        test.navigator->activeNode(201, 20103, QStringLiteral("keyA"));
        test.navigator->activeNode(201, 20101, QStringLiteral("keyZ"));
        test.navigator->activeNode(203, 20401, QStringLiteral("keyA"));
        test.navigator->activeNode(203);
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(1));
        QVERIFY(test.dialog.events.isEmpty());
    }

    void foreignItemsAreNoPlaces()
    {
        NavigatorUnderTest test;
        test.fill();
        auto* foreign = new QTreeWidgetItem(QStringList(QStringLiteral("foreign")));
        test.navigator->addTopLevelItem(foreign);
        test.navigator->topLevelItem(0)->insertChild(0, new QTreeWidgetItem);
        test.navigator->setCurrentItem(foreign);
        test.navigator->setCurrentItem(nullptr);
        QVERIFY(test.dialog.events.isEmpty());
        test.navigator->activeNode(201, 20101, QStringLiteral("keyA"));
        QCOMPARE(test.dialog.events.size(), 1);
    }

    void aClearedTreeHasNoDeletedNodesToActivate()
    {
        NavigatorUnderTest test;
        test.fill();
        test.navigator->clearNodes();
        QCOMPARE(test.navigator->topLevelItemCount(), 0);
        test.navigator->activeNode(201);
        test.navigator->addChildNode(QStringLiteral("a"), 201, 20101, accountIcon(),
                                     QStringLiteral("keyA"));
        test.navigator->activeNode(201, 20101, QStringLiteral("keyA"));
        QVERIFY(test.dialog.events.isEmpty());
    }

    void stepsGoThroughTheVisibleNodesAndStopAtTheEnds()
    {
        NavigatorUnderTest test;
        test.navigator->stepToNext();
        QCOMPARE(test.navigator->currentItem(), nullptr);
        test.fill();
        test.navigator->stepToNext();
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(0));
        test.navigator->stepToPrevious();
        QCOMPARE(test.navigator->currentItem(), test.navigator->topLevelItem(0));
        QStringList keys;
        for (int step = 0; step < 7; ++step) {
            test.navigator->stepToNext();
            keys.append(test.navigator->currentItem()->text(0));
        }
        QCOMPARE(keys.join(u','), QStringLiteral("a,b,b other,b again,import,import,import"));
        QCOMPARE(test.dialog.of(GW::EVENT_SHOW_PAGE).size(), 6);
        test.navigator->stepToPrevious();
        QCOMPARE(test.navigator->currentItem()->text(0), QStringLiteral("b again"));
    }

    void aHostileNameIsShownAsItIs()
    {
        NavigatorUnderTest test;
        test.fill();
        const QString name = QStringLiteral("<b>x</b><img src='a'>");
        test.navigator->addChildNode(name, 201, 20101, accountIcon(), QStringLiteral("keyX"));
        const QTreeWidgetItem* item = test.navigator->topLevelItem(0)->child(4);
        QCOMPARE(item->text(0), name);
        QVERIFY(!item->toolTip(0).contains(QStringLiteral("<b>")));
        QVERIFY(item->toolTip(0).contains(QStringLiteral("&lt;b&gt;x")));
    }

    void anotherThemeGivesTheNodesTheirIconsAnew()
    {
        NavigatorUnderTest test;
        test.fill();
        const qint64 before = test.navigator->topLevelItem(0)->child(0)->icon(0).cacheKey();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Dark);
        const qint64 after = test.navigator->topLevelItem(0)->child(0)->icon(0).cacheKey();
        KZ::CUiResource::setTheme(KZ::CUiResource::Theme::Light);
        QVERIFY(before != after);
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingNavigatorTest>(argc, argv);
}

#include "AuthSettingNavigatorTest.moc"
