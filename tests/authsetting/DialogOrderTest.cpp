#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"
#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/authsetting/NotingUser.h"
#include "tests/support/TestCase.h"

#include <QMetaMethod>

#include <climits>
#include <memory>

namespace {

/// What a class adds to the signals and slots of its base.
QStringList ownMethods(const QMetaObject& type)
{
    QStringList methods;
    for (int index = type.methodOffset(); index < type.methodCount(); ++index) {
        const QMetaMethod method = type.method(index);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        methods.append(QLatin1String(isSignal ? "signal " : "slot ") +
                       QString::fromLatin1(method.methodSignature()));
    }
    return methods;
}

} // namespace

/// In which order the dialog builds, fills and shows its pages.
class DialogOrderTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPageIsFilledBetweenTheLastOnesHidingAndItsOwnShowing()
    {
        NotedServices services;
        services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        OpenDialog dialog;
        // A new child of a hidden window counts as shown.
        dialog.show();
        dialog.showPage(202);
        int reads = 0;
        int shown = 0;
        services.user.onRead = [&] {
            ++reads;
            for (const GW::CAuthSettingPage* page : dialog.pages())
                shown += page->isHidden() ? 0 : 1;
        };
        dialog.showPage(201);
        QCOMPARE(reads, 1);
        QCOMPARE(shown, 0);
        QCOMPARE(dialog.shownPage()->pageId(), 201);
    }

    void aPageKnowsItsKeyBeforeItIsFilled()
    {
        NotedServices services;
        OpenDialog dialog;
        dialog.showPage(201, 20101, QStringLiteral("keyA"), 0);
        QVERIFY(!services.user.askedKeys.isEmpty());
        QCOMPARE(services.user.askedKeys.count(QStringLiteral("keyA")),
                 services.user.askedKeys.size());
        services.user.askedKeys.clear();
        dialog.showPage(201, 20101, QStringLiteral("keyB"), 0);
        QVERIFY(!services.user.askedKeys.isEmpty());
        QCOMPARE(services.user.askedKeys.count(QStringLiteral("keyB")),
                 services.user.askedKeys.size());
    }

    void bothEntriesBuildTheTreeBeforeTheyShowThePage()
    {
        DialogUnderTest test;
        QVector<int> shownAtFilling;
        test.dialog.setNavigatorFiller([&](GW::CAuthSettingNavigator* navigator) {
            const GW::CAuthSettingPage* shown = test.dialog.shownPage();
            shownAtFilling.append(shown ? shown->pageId() : 0);
            fillThreePages(navigator);
        });
        const auto closeSoon = [&] {
            QTimer::singleShot(0, &test.dialog, [&] { test.dialog.close(); });
        };
        closeSoon();
        GW::CAuthSettingDialog::showSettingPage(201);
        closeSoon();
        GW::CAuthSettingDialog::showSettingPage(201, 20101, QStringLiteral("keyA"), 0);
        QCOMPARE(shownAtFilling, QVector<int>({0, INT_MAX}));
    }

    void everyCreatedPageIsNewAndStaysOutsideThoseThatAreKept()
    {
        DialogUnderTest test;
        test.dialog.show();
        const std::unique_ptr<GW::CAuthSettingPage> early(
            test.dialog.createPage(201, INT_MAX, QStringLiteral("key")));
        QCOMPARE(early->key(), QString());
        QCOMPARE(early->tabControl()->tabCount(), 2);
        test.dialog.showPage(201);
        GW::CAuthSettingPage* kept = test.dialog.shownPage();
        QVERIFY(kept && kept != early.get());
        const std::unique_ptr<GW::CAuthSettingPage> late(
            test.dialog.createPage(201, INT_MAX, QString()));
        QVERIFY(late.get() != kept);
        test.dialog.showPage(202);
        test.dialog.showPage(201);
        QCOMPARE(test.dialog.shownPage(), kept);
    }

    void aShownPageStandsInItsPlaceAtOnce()
    {
        DialogUnderTest test;
        test.dialog.showPage(203);
        const auto size = [](const char* key) {
            return KZ::CUiResource::getSize(QString::fromLatin1(key));
        };
        const int margin = size("gw_siz_setting_margin");
        const int frame = test.dialog.borderWidth();
        QCOMPARE(test.dialog.shownPage()->geometry(),
                 QRect(frame + 2 * margin + size("gw_siz_setting_inner_left_width"),
                       test.dialog.titleBarHeight() + frame + margin,
                       size("gw_siz_setting_inner_right_width"),
                       size("gw_siz_setting_inner_top_height")));
    }

    void theChangeSignalReloadsTheTabInFrontWhicheverItIs()
    {
        DialogUnderTest test;
        test.dialog.showPage(201, INT_MAX, QString(), 1);
        KZ::CStandardTabControl* tabs = test.dialog.shownPage()->tabControl();
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_NOT_GRANTED);
        Q_EMIT test.services.client.sigUiUpdateAuth();
        QCOMPARE(tabs->currentTabIndex(), 1);
        const auto rowsOf = [tabs](int tab) {
            return tabs->getTabWidget(tab)->findChild<KZ::COddEvenRowTable*>()->rowCount();
        };
        QCOMPARE(rowsOf(0), 0);
        QCOMPARE(rowsOf(1), 1);
    }

    void onlyZeroEndsTheWait()
    {
        DialogUnderTest test;
        test.dialog.showPage(201);
        test.dialog.show();
        for (const int waiting : {2, -1}) {
            QVERIFY(test.dialog.handleEvent(GW::EVENT_SET_WAITING, 0, waiting, QString(), nullptr));
            QVERIFY(test.looksBusy());
            QVERIFY(test.dialog.handleEvent(GW::EVENT_SET_WAITING, 9, 0, QString(), nullptr));
            QVERIFY(test.looksIdle());
        }
    }

    void whatTheKitsDialogHandlesIsHandled()
    {
        DialogUnderTest test;
        test.dialog.show();
        QVERIFY(test.dialog.handleEvent(5, 102, 1, QString(), nullptr));
        QVERIFY(test.dialog.isHidden());
    }

    void everyNameOfTheDialogsWidgetsCarriesTheModulesPrefix()
    {
        DialogUnderTest test;
        test.services.user.addAccount(1, 1, "b", "1", mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        const QVector<std::pair<int, int>> places{{201, INT_MAX}, {201, 20101},   {202, INT_MAX},
                                                  {202, 20201},   {203, INT_MAX}, {203, 20401}};
        for (const auto& [page, subPage] : places)
            test.dialog.showPage(page, subPage, QString(), 0);
        int named = 0;
        const QList<QWidget*> widgets = test.dialog.findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            const QString name = widget->objectName();
            // Qt names the inner parts of its own widgets.
            if (name.isEmpty() || name.startsWith(QLatin1String("qt_")) ||
                name.startsWith(QLatin1String("Scroll")))
                continue;
            ++named;
            QVERIFY2(name.startsWith(QLatin1String("halden_")), qPrintable(name));
        }
        QVERIFY(named > 20);
    }

    void theSlotsAreThoseThatOthersConnectToByName()
    {
        QCOMPARE(ownMethods(GW::CAuthSettingDialog::staticMetaObject),
                 QStringList(QStringLiteral("slot slotUiUpdateAuth()")));
        QCOMPARE(ownMethods(GW::CAuthSettingNavigator::staticMetaObject),
                 QStringList(QStringLiteral(
                     "slot onCurrentItemChanged(QTreeWidgetItem*,QTreeWidgetItem*)")));
        QCOMPARE(ownMethods(GW::IAuthSettingTabPage::staticMetaObject),
                 QStringList(QStringLiteral("slot slotTimerEnable()")));
        QCOMPARE(
            ownMethods(GW::CAuthSettingAccountsOverviewTabPage::staticMetaObject),
            QStringList(QStringLiteral("slot slotDelAuthResult(QString,mbservice::CAccountInfo,"
                                       "QVariant,bool,QString)")));
        QCOMPARE(ownMethods(GW::CAuthSettingImportAuthorizationTabPage::staticMetaObject),
                 QStringList(QStringLiteral("slot slotValidAuth(QString,QString,bool,QString)")));
        const QString addResult =
            QStringLiteral("slot slotAddAuthResult(QString,mbservice::CAccountInfo,CAuthLimit,"
                           "QString,QVariant,bool,QString,bool)");
        const QString delResult =
            QStringLiteral("slot slotDelAuthResult(QString,mbservice::CAccountInfo,QVariant,bool,"
                           "QString)");
        const QStringList menu{QStringLiteral("slot onFileAuthTriggered(bool)"),
                               QStringLiteral("slot onServerAuthTriggered(bool)")};
        QCOMPARE(ownMethods(GW::CAuthSettingAccountsAuthorizeTabPage::staticMetaObject),
                 QStringList({addResult, delResult,
                              QStringLiteral("slot slotCheckAuthuserResult(QString,bool,QString)"),
                              QStringLiteral("slot slotAuthPasswordForServer(QString)")}) +
                     menu);
        QCOMPARE(
            ownMethods(GW::CAuthSettingRestrictedUsersManageTabPage::staticMetaObject),
            QStringList(QStringLiteral("slot slotSetsubuserResult(QString,bool,bool,QString)")));
        QCOMPARE(
            ownMethods(GW::CAuthSettingSingleRestrictedUserGeneralTabPage::staticMetaObject),
            QStringList({QStringLiteral("slot slotUpdatesubuserResult(QString,QString,bool,"
                                        "QString)"),
                         QStringLiteral("slot slotSetsubuserResult(QString,bool,bool,QString)"),
                         addResult, delResult,
                         QStringLiteral("slot slotGetAuthPasswordFromServer(QString)")}) +
                menu);
    }
};

int main(int argc, char** argv)
{
    return runTest<DialogOrderTest>(argc, argv);
}

#include "DialogOrderTest.moc"
