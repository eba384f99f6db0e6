#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SmallNormalButton.h"
#include "kit/widgets/StandardTabControl.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QTabBar>
#include <QVBoxLayout>

#include <memory>

using namespace KZ;

namespace {

class Page : public CBaseWidget
{
public:
    using CBaseWidget::CBaseWidget;
    void onActive() override { ++activations; }

    int activations = 0;
};

} // namespace

class TabControlTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void addingTabsDeliversNothing();
    void activatingShowsTellsAndDelivers();
    void activatingTheCurrentTabDeliversAgain();
    void anIndexThatDoesNotExistChangesNothing_data();
    void anIndexThatDoesNotExistChangesNothing();
    void aClickActivates();
    void aClickOnTheCurrentTabActivatesItAgain();
    void otherMouseButtonsDoNothing();
    void ctrlTabStepsFromAnyFocus();
    void ctrlTabSleepsWithASingleTab();
    void aHiddenControlTakesNoKeys();
    void arrowsMoveInTheFocusedBar();
    void aHandlerMayDeleteTheControl();
    void foreignWidgetsMayBeTabs();
    void theCornerWidgetStandsAtTheRight();
    void anEmptyControlIsHarmless();

private:
    void click(int index, Qt::MouseButton button = Qt::LeftButton);
    EventRecorder::Record last() const { return m_window->records.last(); }

    std::unique_ptr<EventRecorder> m_window;
    CStandardTabControl* m_tabs = nullptr;
    QVector<Page*> m_pages;
    CLineEdit* m_outside = nullptr;
};

void TabControlTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    m_window->resize(600, 400);
    auto* const layout = new QVBoxLayout(m_window.get());
    m_tabs = new CStandardTabControl(m_window.get());
    layout->addWidget(m_tabs);
    m_outside = new CLineEdit(1, m_window.get());
    layout->addWidget(m_outside);
    m_pages.clear();
    for (const QString& title :
         {QStringLiteral("账号总览"), QStringLiteral("批量授权"), QStringLiteral("导入授权")}) {
        auto* const page = new Page(m_tabs);
        auto* const editor = new CLineEdit(2, page);
        page->setInnerFixWidget(editor);
        QCOMPARE(m_tabs->addTabWidget(title, page), int(m_pages.size()));
        m_pages.append(page);
    }
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void TabControlTest::cleanup()
{
    m_window.reset();
    TestCase::cleanup();
}

void TabControlTest::click(int index, Qt::MouseButton button)
{
    QTest::mouseClick(m_tabs->tabBar(), button, {}, m_tabs->tabBar()->tabRect(index).center());
}

void TabControlTest::addingTabsDeliversNothing()
{
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 0);
    QCOMPARE(m_tabs->tabCount(), 3);
    QCOMPARE(m_tabs->currentTabIndex(), 0);
    QCOMPARE(m_tabs->getTabWidget(2), m_pages.at(2));
    QCOMPARE(m_tabs->getTabWidget(3), nullptr);
    QCOMPARE(m_tabs->getTabWidget(-1), nullptr);
    QCOMPARE(m_pages.at(0)->activations, 0);
    QVERIFY(m_pages.at(0)->isVisible());
}

void TabControlTest::activatingShowsTellsAndDelivers()
{
    QVERIFY(m_tabs->activateTab(1));
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    QCOMPARE(m_tabs->tabBar()->currentIndex(), 1);
    QVERIFY(m_pages.at(1)->isVisible());
    QVERIFY(!m_pages.at(0)->isVisible());
    QCOMPARE(m_pages.at(1)->activations, 1);
    QVERIFY(m_pages.at(1)->isActive());
    QVERIFY(!m_pages.at(0)->isActive());
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 1);
    QCOMPARE(last().param2, 1);
    QCOMPARE(last().data, static_cast<void*>(static_cast<QWidget*>(m_tabs)));
}

void TabControlTest::activatingTheCurrentTabDeliversAgain()
{
    QVERIFY(m_tabs->activateTab(0));
    QVERIFY(m_tabs->activateTab(0));
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 2);
    QCOMPARE(m_pages.at(0)->activations, 2);
}

void TabControlTest::anIndexThatDoesNotExistChangesNothing_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("below") << -1;
    QTest::newRow("above") << 3;
    QTest::newRow("far above") << INT_MAX;
    QTest::newRow("far below") << INT_MIN;
}

void TabControlTest::anIndexThatDoesNotExistChangesNothing()
{
    QFETCH(int, index);
    m_tabs->activateTab(2);
    QVERIFY(!m_tabs->activateTab(index));
    QCOMPARE(m_tabs->currentTabIndex(), 2);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 1);
}

void TabControlTest::aClickActivates()
{
    click(1);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 1);
    QCOMPARE(last().param2, 1);
    QCOMPARE(m_pages.at(1)->activations, 1);
}

void TabControlTest::aClickOnTheCurrentTabActivatesItAgain()
{
    click(0);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 1);
    QCOMPARE(last().param2, 0);
}

void TabControlTest::otherMouseButtonsDoNothing()
{
    click(1, Qt::RightButton);
    click(0, Qt::MiddleButton);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 0);
}

void TabControlTest::ctrlTabStepsFromAnyFocus()
{
    auto* const inside = m_pages.at(0)->findChild<CLineEdit*>();
    inside->setFocus();
    QTest::keyClick(inside, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    m_outside->setFocus();
    QTest::keyClick(m_outside, Qt::Key_Tab, Qt::ControlModifier);
    QTest::keyClick(m_outside, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(m_tabs->currentTabIndex(), 0);
    QTest::keyClick(m_outside, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_tabs->currentTabIndex(), 2);
    QTest::keyClick(m_outside, Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 5);
}

void TabControlTest::ctrlTabSleepsWithASingleTab()
{
    EventRecorder window;
    CStandardTabControl tabs(&window);
    tabs.addTabWidget(QStringLiteral("子用户管理"), new Page(&tabs));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(window.count(EVENT_TAB_ACTIVATED), 0);
}

void TabControlTest::aHiddenControlTakesNoKeys()
{
    CStandardTabControl second(m_window.get());
    second.addTabWidget(QStringLiteral("一"), new Page(&second));
    second.addTabWidget(QStringLiteral("二"), new Page(&second));
    m_outside->setFocus();
    QTest::keyClick(m_outside, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(second.currentTabIndex(), 0);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    m_tabs->hide();
    second.show();
    QTest::keyClick(m_outside, Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(second.currentTabIndex(), 1);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
}

void TabControlTest::arrowsMoveInTheFocusedBar()
{
    m_tabs->tabBar()->setFocus(Qt::TabFocusReason);
    QVERIFY(m_tabs->tabBar()->hasFocus());
    QTest::keyClick(m_tabs->tabBar(), Qt::Key_Right);
    QCOMPARE(m_tabs->currentTabIndex(), 1);
    QCOMPARE(m_window->count(EVENT_TAB_ACTIVATED), 1);
}

void TabControlTest::aHandlerMayDeleteTheControl()
{
    class Killer : public EventRecorder
    {
    public:
        bool handleEvent(int, int, int, QString, void* data) override
        {
            delete static_cast<QWidget*>(data);
            return true;
        }
    };
    Killer window;
    const QPointer<CStandardTabControl> tabs(new CStandardTabControl(&window));
    tabs->addTabWidget(QStringLiteral("一"), new Page(tabs));
    QVERIFY(tabs->activateTab(0));
    QVERIFY(!tabs);
}

void TabControlTest::foreignWidgetsMayBeTabs()
{
    auto* const plain = new QWidget;
    QCOMPARE(m_tabs->addTabWidget(QStringLiteral("其他"), plain), 3);
    QVERIFY(m_tabs->activateTab(3));
    QVERIFY(plain->isVisible());
    QCOMPARE(last().param2, 3);
    QCOMPARE(plain->accessibleName(), QStringLiteral("其他"));
}

void TabControlTest::theCornerWidgetStandsAtTheRight()
{
    QPointer<CSmallNormalButton> first(new CSmallNormalButton(0, nullptr));
    first->setText(QStringLiteral("全部启用"));
    m_tabs->setCornerWidget(first);
    QVERIFY(first->isVisible());
    QCOMPARE(first->parentWidget(), m_tabs);
    QVERIFY(first->geometry().right() < m_tabs->width());
    QVERIFY(first->geometry().left() > m_tabs->tabBar()->tabRect(2).right());
    QVERIFY(first->geometry().bottom() <= m_tabs->tabBar()->geometry().bottom());
    QTest::mouseClick(first.data(), Qt::LeftButton);
    QCOMPARE(m_window->count(EVENT_BUTTON_CLICKED), 1);
    m_tabs->setCornerWidget(nullptr);
    QVERIFY(!first);
}

void TabControlTest::anEmptyControlIsHarmless()
{
    EventRecorder window;
    CStandardTabControl tabs(&window);
    QCOMPARE(tabs.tabCount(), 0);
    QCOMPARE(tabs.currentTabIndex(), -1);
    QCOMPARE(tabs.getTabWidget(0), nullptr);
    QVERIFY(!tabs.activateTab(0));
    QCOMPARE(tabs.tabBar()->focusPolicy(), Qt::NoFocus);
    tabs.resize(100, 60);
    QVERIFY(!tabs.grab().isNull());
}

int main(int argc, char** argv)
{
    return runTest<TabControlTest>(argc, argv);
}

#include "TabControlTest.moc"
