#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/authsetting/TabPageTools.h"
#include "tests/support/TipTestCase.h"

namespace {

/// A restricted users tab under a recorder with the users a (enabled), b (disabled), c (enabled).
struct ManageFixture
{
    ManageFixture()
    {
        services.client.subUsers = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
        services.client.activeSubUsers = {QStringLiteral("a"), QStringLiteral("c")};
        for (int number = 0; number < 3; ++number) {
            const auto account = services.user.addAccount(1, 1, "9000", std::to_string(number),
                                                          mbservice::AUTH_TYPE_NOT_GRANTED);
            services.grant(account, number < 2 ? QStringLiteral("a") : QStringLiteral("b"),
                           testToday(), testToday());
        }
    }

    void click(int id) { page.handleEvent(5, id, 0, QString(), nullptr); }

    void answer(const QString& user, bool enabled, bool ok)
    {
        Q_EMIT services.client.sigSetSubUserResult(user, enabled, ok, QStringLiteral("reason"));
    }

    QStringList states() const
    {
        QStringList texts;
        for (int row = 0; row < table()->rowCount(); ++row)
            texts.append(table()->itemText(row, 2));
        return texts;
    }

    QStringList sent() const
    {
        QStringList texts;
        for (const FakeAuthClient::SubUserRequest& request : services.client.setSubUsers)
            texts.append(request.user +
                         (request.enable ? QStringLiteral("+") : QStringLiteral("-")));
        return texts;
    }

    void wait() { clock.now += 1; }

    KZ::COddEvenRowTable* table() const { return page.findChild<KZ::COddEvenRowTable*>(); }

    FakeServices services;
    StandingClock clock;
    EventRecorder top;
    GW::CAuthSettingRestrictedUsersManageTabPage page{&top};
};

const QString on = QStringLiteral("已启用");
const QString off = QStringLiteral("已禁用");

} // namespace

class AuthSettingRestrictedUsersManageTabPageTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void standsOnItsPlaceWithItsTable()
    {
        ManageFixture test;
        QCOMPARE(test.page.pageId(), 203);
        QCOMPARE(test.page.subPageId(), -1);
        QCOMPARE(test.page.tabPageId(), 2030001);
        QVERIFY(test.page.isEnabled());
        QCOMPARE(test.table()->getID(), 0x40000f);
        QCOMPARE(headerTexts(test.table()),
                 QStringList({QStringLiteral("子用户名"), QStringLiteral("账号数量"),
                              QStringLiteral("状态"), QStringLiteral("操作")}));
        for (int column = 0; column < 4; ++column)
            QCOMPARE(test.table()->columnWidth(column), 100);
        test.page.resize(600, 400);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        QCOMPARE(test.table()->mapTo(&test.page, QPoint(0, 0)), QPoint(8, 8));
        QCOMPARE(test.table()->size(), QSize(584, 384));
    }

    void readsItsLayoutAndNeverWritesIt()
    {
        FakeServices services;
        EventRecorder top;
        QString layout;
        {
            const GW::CAuthSettingRestrictedUsersManageTabPage page(&top);
            auto* table = page.findChild<KZ::COddEvenRowTable*>();
            table->setColumnWidth(1, 170);
            layout = table->saveConfigStr();
        }
        QVERIFY(services.user.tableLayouts.isEmpty());
        services.user.tableLayouts.insert(0x40000f, layout);
        const GW::CAuthSettingRestrictedUsersManageTabPage page(&top);
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->columnWidth(1), 170);
    }

    void listsTheUsersWithTheirGrantsAndStates()
    {
        ManageFixture test;
        test.page.reloadData();
        test.page.reloadData();
        QCOMPARE(test.table()->rowCount(), 3);
        QCOMPARE(rowTexts(test.table(), 0),
                 QStringList({QStringLiteral("a"), QStringLiteral("2"), on, QString()}));
        QCOMPARE(rowTexts(test.table(), 1),
                 QStringList({QStringLiteral("b"), QStringLiteral("1"), off, QString()}));
        QCOMPARE(rowTexts(test.table(), 2),
                 QStringList({QStringLiteral("c"), QStringLiteral("0"), on, QString()}));
        QCOMPARE(test.table()->itemTextColorKey(0, 2), QStringLiteral("clr_sub_user_enabled"));
        QCOMPARE(test.table()->itemTextColorKey(1, 2), QStringLiteral("clr_sub_user_disabled"));
    }

    void anEnabledUsersRowHasAButtonAndADisabledOnesHasNone()
    {
        ManageFixture test;
        test.page.reloadData();
        for (const int row : {0, 2}) {
            auto* button = qobject_cast<KZ::CSmallNormalButton*>(test.table()->itemWidget(row, 3));
            QVERIFY(button);
            QCOMPARE(button->id(), row + 100);
            QCOMPARE(button->text(), QStringLiteral("禁用"));
            QCOMPARE(button->width(), 40);
            QCOMPARE(button->textFontKey(), QStringLiteral("fnt_default_normal_fix"));
        }
        QVERIFY(!test.table()->itemWidget(1, 3));
    }

    void anUnnamedUsersRowStaysBlank()
    {
        ManageFixture test;
        test.services.client.subUsers = {QString(), QStringLiteral("a")};
        test.page.reloadData();
        QCOMPARE(test.table()->rowCount(), 2);
        QCOMPARE(rowTexts(test.table(), 0).join(QString()), QString());
        QVERIFY(!test.table()->itemWidget(0, 3));
        QCOMPARE(test.table()->itemText(1, 0), QStringLiteral("a"));
    }

    void aListThatIsNotAvailableShowsNobody()
    {
        ManageFixture test;
        test.page.reloadData();
        test.services.client.subUserListAvailable = false;
        test.page.reloadData();
        QCOMPARE(test.table()->rowCount(), 0);
    }

    void onlyClicksAndChosenRowsAreItsOwn()
    {
        ManageFixture test;
        test.page.reloadData();
        QVERIFY(test.page.handleEvent(41, 0, 0, QString(), nullptr));
        for (const int id : {2, 50, 99})
            QVERIFY(test.page.handleEvent(5, id, 0, QString(), nullptr));
        QVERIFY(test.top.events.isEmpty());
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.page.handleEvent(59, 0, 0, QString(), nullptr));
        QCOMPARE(test.top.ids(), QVector<int>({59}));
    }

    void aRowsButtonDisablesItsUser()
    {
        ManageFixture test;
        test.page.reloadData();
        // The third row's button shares its number with the dialog's button "关闭".
        qobject_cast<KZ::CSmallNormalButton*>(test.table()->itemWidget(2, 3))->click();
        QCOMPARE(test.sent(), QStringList(QStringLiteral("c-")));
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING}));
        QCOMPARE(test.top.events.first().param1, 2030001);
        QCOMPARE(test.top.events.first().param2, 1);

        test.services.client.activeSubUsers.remove(QStringLiteral("c"));
        test.wait();
        test.answer(QStringLiteral("c"), false, true);
        QCOMPARE(test.states(), QStringList({on, off, off}));
        QCOMPARE(test.table()->itemTextColorKey(2, 2), QStringLiteral("clr_sub_user_disabled"));
        QVERIFY(!test.table()->itemWidget(2, 3));
        QCOMPARE(test.top.ids(), QVector<int>({GW::EVENT_SET_WAITING, GW::EVENT_SET_WAITING,
                                               GW::EVENT_RELOAD_NAVIGATOR}));
        QVERIFY(tipTexts().isEmpty());
    }

    void aRowButtonSendsTheOppositeOfTheStateAtTheClick()
    {
        ManageFixture test;
        test.page.reloadData();
        test.services.client.activeSubUsers.remove(QStringLiteral("a"));
        test.click(100);
        QCOMPARE(test.sent(), QStringList(QStringLiteral("a+")));
        test.click(100 + 3);
        QCOMPARE(test.sent().size(), 1);
    }

    void aFailedChangeIsToldWithoutTheServicesText()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(100);
        test.services.client.activeSubUsers.remove(QStringLiteral("a"));
        test.wait();
        test.answer(QStringLiteral("a"), false, false);
        VERIFY_TIP(test.table(), QStringLiteral("修改子用户状态失败"), 1);
        QCOMPARE(test.states(), QStringList({on, off, on}));
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
    }

    void anEarlyResultWaitsForTheBusyBar()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(100);
        test.services.client.activeSubUsers.remove(QStringLiteral("a"));
        test.clock.now += 0.66;
        test.answer(QStringLiteral("a"), false, true);
        QCOMPARE(test.states().first(), on);
        QTRY_COMPARE(test.states().first(), off);
    }

    void ofAllRowsOnlyTheLastResultIsActedUpon()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(1);
        QCOMPARE(test.sent(),
                 QStringList({QStringLiteral("a-"), QStringLiteral("b-"), QStringLiteral("c-")}));
        QCOMPARE(test.top.of(GW::EVENT_SET_WAITING).size(), 3);
        test.services.client.activeSubUsers.clear();
        test.wait();
        test.answer(QStringLiteral("a"), false, true);
        test.answer(QStringLiteral("b"), false, false);
        QVERIFY2(tipTexts().isEmpty(), "a failure before the last result is not told");
        QCOMPARE(test.states(), QStringList({on, off, on}));
        test.answer(QStringLiteral("c"), false, true);
        QCOMPARE(test.states(), QStringList({on, off, off}));
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        test.page.reloadData();
        QCOMPARE(test.states(), QStringList({off, off, off}));
    }

    void allRowsAreEnabledByTheOtherCommand()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(0);
        QCOMPARE(test.sent(),
                 QStringList({QStringLiteral("a+"), QStringLiteral("b+"), QStringLiteral("c+")}));
        test.wait();
        test.answer(QStringLiteral("a"), true, true);
        test.answer(QStringLiteral("c"), true, true);
        test.answer(QStringLiteral("b"), true, false);
        VERIFY_TIP(test.table(), QStringLiteral("修改子用户状态失败"), 1);
    }

    void withoutUsersTheCommandsSendNothingAndNothingWaits()
    {
        ManageFixture test;
        test.services.client.subUsers.clear();
        test.page.reloadData();
        test.click(0);
        test.click(1);
        QVERIFY(test.services.client.calls.isEmpty());
        QVERIFY(test.top.events.isEmpty());
    }

    void aResultNobodyHereAskedForIsCountedToo()
    {
        ManageFixture test;
        test.page.reloadData();
        test.services.client.activeSubUsers.clear();
        test.answer(QStringLiteral("a"), false, true);
        QCOMPARE(test.states().first(), on);
        QVERIFY(test.top.events.isEmpty());
        // The row's request starts the count anew, so its own result is the last one again.
        test.click(100);
        test.wait();
        test.answer(QStringLiteral("a"), true, true);
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
    }

    void theFirstRowOfTheNameIsRefilled()
    {
        ManageFixture test;
        test.services.client.subUsers = {QStringLiteral("a"), QStringLiteral("a")};
        test.page.reloadData();
        test.click(101);
        test.services.client.activeSubUsers.clear();
        test.wait();
        test.answer(QStringLiteral("a"), false, true);
        QCOMPARE(test.states(), QStringList({off, on}));
    }

    void aResultForAUserWhoIsGoneOnlyReloadsTheTree()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(100);
        test.services.client.subUsers.removeFirst();
        test.page.reloadData();
        test.wait();
        test.answer(QStringLiteral("a"), false, true);
        QCOMPARE(test.table()->rowCount(), 2);
        QCOMPARE(test.states(), QStringList({off, on}));
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
        QVERIFY(tipTexts().isEmpty());
    }

    void aStateThatIsReachedBackGivesTheRowItsButtonAgain()
    {
        ManageFixture test;
        test.page.reloadData();
        test.click(0);
        test.services.client.activeSubUsers.insert(QStringLiteral("b"));
        test.wait();
        for (const char* user : {"a", "c", "b"})
            test.answer(QString::fromLatin1(user), true, true);
        QCOMPARE(test.states(), QStringList({on, on, on}));
        auto* button = qobject_cast<KZ::CSmallNormalButton*>(test.table()->itemWidget(1, 3));
        QVERIFY(button);
        QCOMPARE(button->id(), 101);
    }

    void worksWithoutAnyService()
    {
        EventRecorder top;
        GW::CAuthSettingRestrictedUsersManageTabPage page(&top);
        page.reloadData();
        for (const int id : {0, 1, 100})
            QVERIFY(page.handleEvent(5, id, 0, QString(), nullptr));
        QVERIFY(top.events.isEmpty());
        QCOMPARE(page.findChild<KZ::COddEvenRowTable*>()->rowCount(), 0);
    }

    void aButtonNamesItsUserToAssistiveTools()
    {
        ManageFixture test;
        test.page.reloadData();
        QCOMPARE(test.table()->itemWidget(2, 3)->accessibleName(), QStringLiteral("禁用 c"));
    }

    void aCommandForAllCountsFromNothing()
    {
        ManageFixture test;
        test.page.reloadData();
        // Nobody here asked for these two.
        test.answer(QStringLiteral("a"), false, true);
        test.answer(QStringLiteral("a"), false, true);
        test.click(1);
        test.click(0);
        test.wait();
        for (const char* user : {"a", "b"})
            test.answer(QString::fromLatin1(user), true, true);
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 0);
        test.answer(QStringLiteral("c"), true, true);
        QCOMPARE(test.top.of(GW::EVENT_RELOAD_NAVIGATOR).size(), 1);
    }

    void aRowsButtonStandsInTheMiddleInItsOwnHeight()
    {
        ManageFixture test;
        test.page.reloadData();
        test.page.resize(600, 400);
        test.top.resize(600, 400);
        test.top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&test.top));
        QWidget* button = test.table()->itemWidget(0, 3);
        QTRY_VERIFY(qAbs(middleInCell(test.table(), 0, 3, button)) <= 1);
        KZ::CSmallNormalButton plain(0, &test.top);
        QCOMPARE(button->size(), QSize(40, plain.height()));
    }
};

int main(int argc, char** argv)
{
    return runTest<AuthSettingRestrictedUsersManageTabPageTest>(argc, argv);
}

#include "AuthSettingRestrictedUsersManageTabPageTest.moc"
