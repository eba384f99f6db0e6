#include "tests/authsetting/SingleAccountFixture.h"
#include "tests/support/TipTestCase.h"

namespace {

/// The tab as the user sees it, with the threshold's cell open for typing.
struct OpenThreshold
{
    OpenThreshold()
    {
        test.top.resize(900, 500);
        test.top.show();
        test.top.activateWindow();
        isActive = QTest::qWaitForWindowActive(&test.top);
        test.activate(test.own);
        test.grantee()->setEditText(QStringLiteral("friend"));
    }

    void type(const QString& text)
    {
        QTableView* view = test.table()->view();
        if (!editor()) {
            view->setFocus();
            view->setCurrentIndex(view->model()->index(0, 2));
            QTest::keyClick(view, Qt::Key_F2);
        }
        editor()->selectAll();
        QTest::keyClicks(editor(), text);
    }

    QLineEdit* editor() const { return test.table()->view()->findChild<QLineEdit*>(); }

    /// Clicks the grant button as the user does, which takes the focus first.
    void clickGrant() { QTest::mouseClick(test.button(), Qt::LeftButton); }

    SingleAccountFixture test;
    bool isActive = false;
};

} // namespace

/// What becomes of a threshold that was refused when the user goes on to grant.
class SingleAccountThresholdTest : public TipTestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRefusedThresholdIsNotPassedOver()
    {
        OpenThreshold open;
        QVERIFY(open.isActive);
        open.test.table()->setItemChecked(0, 0, true);
        open.type(QStringLiteral("150"));
        open.clickGrant();
        QVERIFY2(!open.test.menu()->isVisible(),
                 "another limit than the one in sight would be sent");
        QVERIFY(open.editor() && open.editor()->hasFocus());
        QCOMPARE(open.editor()->text(), QStringLiteral("150"));
        QVERIFY(open.test.services.client.calls.isEmpty());
        QVERIFY(tipTexts().isEmpty());

        open.type(QStringLiteral("15"));
        open.clickGrant();
        QVERIFY(open.test.menu()->isVisible());
        open.test.menu()->close();
        open.test.page->onServerAuthTriggered(false);
        QCOMPARE(open.test.services.client.addAuths.first().limit.availableMarginRatio, 0.15);
    }

    void aRefusedThresholdMayBeGivenUp()
    {
        OpenThreshold open;
        QVERIFY(open.isActive);
        open.test.table()->setItemChecked(0, 0, true);
        open.type(QStringLiteral("none"));
        open.clickGrant();
        QVERIFY(!open.test.menu()->isVisible());
        QTest::keyClick(open.editor(), Qt::Key_Escape);
        QTRY_VERIFY(!open.editor());
        QCOMPARE(open.test.table()->itemText(0, 2), QStringLiteral("100"));
        open.clickGrant();
        QVERIFY(open.test.menu()->isVisible());
        open.test.menu()->close();
    }

    void anotherAccountDoesNotShowWhatWasTypedForThisOne()
    {
        for (const QString& typed : {QStringLiteral("150"), QStringLiteral("15")}) {
            OpenThreshold open;
            QVERIFY(open.isActive);
            const auto other = open.test.services.user.addAccount(1, 1, "9000", "1004",
                                                                  mbservice::AUTH_TYPE_NOT_GRANTED);
            open.type(typed);
            open.test.activate(other);
            QTRY_VERIFY(!open.editor());
            QCOMPARE(open.test.table()->itemText(0, 2), QStringLiteral("100"));
        }
    }

    void aThresholdThatIsNotSentHoldsNobodyUp()
    {
        OpenThreshold open;
        QVERIFY(open.isActive);
        open.type(QStringLiteral("150"));
        open.clickGrant();
        QVERIFY(open.test.menu()->isVisible());
        open.test.menu()->close();
    }
};

int main(int argc, char** argv)
{
    return runTest<SingleAccountThresholdTest>(argc, argv);
}

#include "SingleAccountThresholdTest.moc"
