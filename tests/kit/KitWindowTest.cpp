#include "kit/dialogs/CommonDialog.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/StandardTabControl.h"
#include "tests/support/TestCase.h"

#include <QProcess>

#include <memory>

using namespace KZ;

/// The dialog under a real X server and window manager, with real mouse and key events.
class KitWindowTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void draggingTheTitleBarMovesTheWindow();
    void escHidesTheWindow();
    void ctrlTabAndBackStepThroughTheTabs();
    void enterInAnEditorKeepsTheWindow();

private:
    bool act(const QStringList& arguments);

    std::unique_ptr<CCommonDialog> m_dialog;
    CStandardTabControl* m_tabs = nullptr;
    CLineEdit* m_edit = nullptr;
};

void KitWindowTest::init()
{
    TestCase::init();
    m_dialog = std::make_unique<CCommonDialog>(nullptr);
    m_dialog->resize(500, 300);
    m_tabs = new CStandardTabControl(m_dialog.get());
    m_tabs->setGeometry(10, 50, 480, 200);
    auto* const page = new CBaseWidget(m_tabs);
    m_edit = new CLineEdit(1, page);
    page->setInnerFixWidget(m_edit);
    m_tabs->addTabWidget(QStringLiteral("账号总览"), page);
    m_tabs->addTabWidget(QStringLiteral("批量授权"), new CBaseWidget(m_tabs));
    m_tabs->addTabWidget(QStringLiteral("导入授权"), new CBaseWidget(m_tabs));
    m_dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(m_dialog.get()));
    QTRY_COMPARE(m_dialog->mapToGlobal(QPoint()), m_dialog->pos());
}

void KitWindowTest::cleanup()
{
    m_dialog.reset();
    TestCase::cleanup();
}

bool KitWindowTest::act(const QStringList& arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    // The events have to be taken while the tool runs, or it waits for them in vain.
    return QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, 10000) &&
           process.exitCode() == 0;
}

void KitWindowTest::draggingTheTitleBarMovesTheWindow()
{
    const QPoint before = m_dialog->pos();
    const QPoint grip = m_dialog->mapToGlobal(QPoint(120, 15));
    const QPoint goal = grip + QPoint(90, 60);
    QVERIFY(act({QStringLiteral("mousemove"), QString::number(grip.x()), QString::number(grip.y()),
                 QStringLiteral("mousedown"), QStringLiteral("1")}));
    // The window manager takes over with the first motion.
    for (const int step : {1, 2, 3}) {
        const QPoint way = grip + QPoint(30, 20) * step;
        QVERIFY(
            act({QStringLiteral("mousemove"), QString::number(way.x()), QString::number(way.y())}));
    }
    QVERIFY(act({QStringLiteral("mousemove"), QString::number(goal.x()), QString::number(goal.y()),
                 QStringLiteral("mouseup"), QStringLiteral("1")}));
    QTRY_VERIFY(m_dialog->pos().x() >= before.x() + 60);
    QTRY_VERIFY(m_dialog->pos().y() >= before.y() + 40);
    QVERIFY(m_dialog->isVisible());
}

void KitWindowTest::escHidesTheWindow()
{
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("Escape")}));
    QTRY_VERIFY(!m_dialog->isVisible());
}

void KitWindowTest::ctrlTabAndBackStepThroughTheTabs()
{
    m_edit->setFocus();
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("ctrl+Tab")}));
    QTRY_COMPARE(m_tabs->currentTabIndex(), 1);
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("ctrl+shift+Tab")}));
    QTRY_COMPARE(m_tabs->currentTabIndex(), 0);
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("ctrl+shift+Tab")}));
    QTRY_COMPARE(m_tabs->currentTabIndex(), 2);
}

void KitWindowTest::enterInAnEditorKeepsTheWindow()
{
    m_edit->setFocus();
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("a"), QStringLiteral("Return")}));
    QTRY_COMPARE(m_edit->text(), QStringLiteral("a"));
    QVERIFY(act({QStringLiteral("key"), QStringLiteral("b")}));
    QTRY_COMPARE(m_edit->text(), QStringLiteral("ab"));
    QVERIFY(m_dialog->isVisible());
}

int main(int argc, char** argv)
{
    return runTest<KitWindowTest>(argc, argv);
}

#include "KitWindowTest.moc"
