#include "kit/events/EventIds.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QAccessible>
#include <QDialog>
#include <QLineEdit>
#include <QStackedWidget>

#include <memory>

using namespace KZ;

class ButtonShortcutTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aShortcutClicksAtOnce();
    void aMnemonicClicksAtOnce();
    void anAnimatedClickClicksAtOnce();
    void aDisabledButtonIsNotClicked();
    void aHiddenButtonIsNotClicked();
    void aHeldKeyClicksOnce();
    void aHeldKeyDoesNotClickTheNextPagesButton();
    void anAmbiguousShortcutClicksNone();
    void aPressByAssistiveToolsClicksAtOnceOrNotAtAll();

private:
    int clicks() const { return m_window->count(EVENT_BUTTON_CLICKED); }
    void press(Qt::Key key, bool repeats = false)
    {
        QTest::simulateEvent(m_edit, true, key, Qt::NoModifier, QString(), repeats);
    }
    void release(Qt::Key key)
    {
        QTest::simulateEvent(m_edit, false, key, Qt::NoModifier, QString(), false);
    }
    CMediumNormalButton* addButton(int id, QWidget* parent)
    {
        auto* const button = new CMediumNormalButton(id, parent);
        button->setShortcut(QKeySequence(Qt::Key_F8));
        return button;
    }

    std::unique_ptr<EventRecorder> m_window;
    QLineEdit* m_edit = nullptr;
};

void ButtonShortcutTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    m_window->resize(400, 200);
    m_edit = new QLineEdit(m_window.get());
    m_edit->setGeometry(0, 100, 100, 30);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_edit->setFocus();
}

void ButtonShortcutTest::cleanup()
{
    m_window.reset();
    TestCase::cleanup();
}

void ButtonShortcutTest::aShortcutClicksAtOnce()
{
    addButton(5, m_window.get())->show();
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 1);
    QCOMPARE(m_window->records.first().param1, 5);
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 2);
    QVERIFY(m_edit->hasFocus());
}

void ButtonShortcutTest::aMnemonicClicksAtOnce()
{
    CSmallNormalButton button(6, m_window.get());
    button.setText(QStringLiteral("授权(&G)"));
    button.show();
    QTest::keyClick(m_edit, Qt::Key_G, Qt::AltModifier);
    QCOMPARE(clicks(), 1);
}

void ButtonShortcutTest::anAnimatedClickClicksAtOnce()
{
    CMediumNormalButton button(7, m_window.get());
    button.show();
    button.animateClick();
    QCOMPARE(clicks(), 1);
    button.setEnabled(false);
    button.animateClick();
    QCOMPARE(clicks(), 1);
}

void ButtonShortcutTest::aDisabledButtonIsNotClicked()
{
    QWidget page(m_window.get());
    addButton(5, &page);
    page.show();
    page.setEnabled(false);
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 0);
    page.setEnabled(true);
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 1);
}

void ButtonShortcutTest::aHiddenButtonIsNotClicked()
{
    QStackedWidget pages(m_window.get());
    pages.addWidget(new QWidget);
    auto* const page = new QWidget;
    addButton(5, page);
    pages.addWidget(page);
    pages.show();
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 0);
    pages.setCurrentWidget(page);
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 1);
}

void ButtonShortcutTest::aHeldKeyClicksOnce()
{
    addButton(5, m_window.get())->show();
    press(Qt::Key_F8);
    press(Qt::Key_F8, true);
    press(Qt::Key_F8, true);
    release(Qt::Key_F8);
    QCOMPARE(clicks(), 1);
    press(Qt::Key_F8);
    QCOMPARE(clicks(), 2);
    release(Qt::Key_F8);
}

void ButtonShortcutTest::aHeldKeyDoesNotClickTheNextPagesButton()
{
    CMediumNormalButton* const first = addButton(5, m_window.get());
    CMediumNormalButton* const second = addButton(6, m_window.get());
    first->show();
    second->hide();
    press(Qt::Key_F8);
    first->hide();
    second->show();
    press(Qt::Key_F8, true);
    release(Qt::Key_F8);
    QCOMPARE(clicks(), 1);
    QCOMPARE(m_window->records.first().param1, 5);
}

void ButtonShortcutTest::anAmbiguousShortcutClicksNone()
{
    addButton(5, m_window.get())->show();
    CMediumNormalButton* const second = addButton(6, m_window.get());
    second->move(150, 0);
    second->show();
    QTest::keyClick(m_edit, Qt::Key_F8);
    QCOMPARE(clicks(), 0);
    QVERIFY(!m_edit->hasFocus());
}

void ButtonShortcutTest::aPressByAssistiveToolsClicksAtOnceOrNotAtAll()
{
    CMediumNormalButton button(5, m_window.get());
    button.show();
    const auto pressFromOutside = [&button] {
        QAccessible::queryAccessibleInterface(&button)->actionInterface()->doAction(
            QAccessibleActionInterface::pressAction());
    };
    pressFromOutside();
    QCOMPARE(clicks(), 1);
    button.setEnabled(false);
    pressFromOutside();
    QCOMPARE(clicks(), 1);
    button.setEnabled(true);
    QDialog inFront(m_window.get());
    inFront.open();
    pressFromOutside();
    QCOMPARE(clicks(), 1);
    inFront.close();
    pressFromOutside();
    QCOMPARE(clicks(), 2);
}

int main(int argc, char** argv)
{
    return runTest<ButtonShortcutTest>(argc, argv);
}

#include "ButtonShortcutTest.moc"
