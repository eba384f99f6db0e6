#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "tests/authsetting/DialogTools.h"
#include "tests/support/TipTestCase.h"

#include <QAccessible>

#include <climits>

namespace {

constexpr int accountsPage = 201;
constexpr int batchTab = 1;

/// The dialog open on the batch tab with as many accounts, all ticked, and a grantee.
struct TickedBatch
{
    explicit TickedBatch(int accounts)
    {
        for (int number = 0; number < accounts; ++number)
            test.services.user.addAccount(1, 1, "b", std::to_string(number),
                                          mbservice::AUTH_TYPE_NOT_GRANTED);
        test.dialog.show();
        open();
        page->findChild<KZ::CComboBox*>()->setEditText(QStringLiteral("bob"));
        for (int row = 0; row < accounts; ++row)
            page->findChild<KZ::COddEvenRowTable*>()->setItemChecked(row, 0, true);
    }

    void open()
    {
        test.dialog.showPage(accountsPage, INT_MAX, QString(), batchTab);
        page = qobject_cast<GW::CAuthSettingAccountsAuthorizeTabPage*>(test.currentTab());
    }

    void answer(int grants)
    {
        for (int grant = 0; grant < grants; ++grant)
            test.services.client.answerAdd(true);
    }

    KZ::CSimpleTextWidget* count()
    {
        return test.dialog.findChild<KZ::CSimpleTextWidget*>(
            QStringLiteral("halden_progress_count"));
    }

    StandingClock clock;
    DialogUnderTest test;
    GW::CAuthSettingAccountsAuthorizeTabPage* page = nullptr;
};

/// What a screen reader says of the bar beside its name.
QString spokenCount(QProgressBar* bar)
{
    return QAccessible::queryAccessibleInterface(bar)->text(QAccessible::Description);
}

QStringList tips()
{
    QStringList texts;
    const QList<KZ::CMessageTip*> visible = KZ::CMessageTip::visibleTips();
    for (const KZ::CMessageTip* tip : visible)
        texts += tip->texts();
    return texts;
}

} // namespace

class BatchProgressTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aLargeBatchCountsItsAnswers()
    {
        TickedBatch batch(1500);
        QVERIFY(batch.count()->isHidden());
        batch.page->onServerAuthTriggered(false);
        QVERIFY(batch.test.looksBusy());
        QVERIFY(!batch.count()->isHidden());
        QCOMPARE(batch.count()->text(), QStringLiteral("0 / 1,500"));
        batch.answer(1200);
        QCOMPARE(batch.count()->text(), QStringLiteral("1,200 / 1,500"));
        QCOMPARE(spokenCount(batch.test.progressBar()), batch.count()->text());
        QCOMPARE(batch.test.progressText()->text(), QStringLiteral("向服务器确认中……"));
        QVERIFY(!batch.test.progressText()->geometry().intersects(batch.count()->geometry()));
        QVERIFY(!batch.test.progressBar()->geometry().intersects(batch.count()->geometry()));
        batch.clock.now += 1;
        batch.answer(300);
        QVERIFY(batch.test.looksIdle());
        QVERIFY(batch.count()->isHidden());
        QVERIFY(spokenCount(batch.test.progressBar()).isEmpty());
    }

    void aLargeBatchIsCountedInSteps()
    {
        EventRecorder top;
        FakeServices services;
        GW::CAuthSettingAccountsAuthorizeTabPage page(&top);
        for (int answered = 0; answered <= 10000; ++answered)
            page.showProgress(answered, 10000);
        const auto told = top.of(GW::EVENT_SHOW_PROGRESS);
        QVERIFY(told.size() > 100);
        QVERIFY(told.size() <= 201);
        QCOMPARE(told.first().param1, 0);
        QVERIFY(told.last().param1 > 9900);
        QCOMPARE(told.last().param2, 10000);
    }

    void aSmallBatchIsNotCounted()
    {
        TickedBatch batch(100);
        batch.page->onServerAuthTriggered(false);
        batch.answer(60);
        QVERIFY(batch.test.looksBusy());
        QVERIFY(batch.count()->isHidden());
    }

    void aBatchThatIsClosedHalfWayFinishesInTheBackground()
    {
        TickedBatch batch(300);
        batch.page->onServerAuthTriggered(false);
        batch.answer(120);
        batch.test.dialog.hide();
        batch.answer(100);
        batch.test.dialog.show();
        batch.open();
        // Open again it does not know of the requests still out, as after any closing.
        QVERIFY(batch.test.looksIdle());
        batch.answer(20);
        QVERIFY(batch.count()->isHidden());
        batch.test.dialog.hide();
        batch.clock.now += 1;
        batch.answer(60);
        QCOMPARE(batch.test.services.client.addAuths.size(), 300);
        QCOMPARE(tips(), {QStringLiteral("授权成功")});
        batch.test.dialog.show();
        batch.open();
        QVERIFY(batch.test.looksIdle());
        QVERIFY(batch.page->isEnabled());
    }
};

int main(int argc, char** argv)
{
    return runTest<BatchProgressTest>(argc, argv);
}

#include "BatchProgressTest.moc"
