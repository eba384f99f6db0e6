#include "kit/events/EventIds.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/keyboard/SoftKeyboardPopup.h"
#include "kit/resources/UiResource.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"

#include <QPushButton>
#include <QRandomGenerator>
#include <QToolButton>

#include <algorithm>
#include <memory>

using namespace KZ;

class SoftKeyboardTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void typesWithTheKeyboard();
    void everyPrintableCharacterHasItsKey();
    void theKeysTypeWhatTheyShow();
    void theKeysAreShuffledWithinTheirGroups();
    void theKeysLieElsewhereAtEachOpening();
    void screenKeysDeliverTheEventsOfTyping();
    void shiftBackspaceAndClearWork();
    void enterFinishesTheTextAndClosesTheKeyboard();
    void theFocusStaysInTheEditor();
    void nothingOnTheKeyboardShowsTheText();
    void shortcutsOpenAndCloseIt();
    void theButtonInTheEditorOpensIt();
    void itClosesWithTheFocusAndTheWindow();
    void aDisabledEditorOpensNoKeyboard();
    void itStaysOnTheScreen();
    void capsLockIsToldByTheLetters();
    void theLengthLimitHoldsForScreenKeys();
    void clearingLeavesNothingToUndo();
    void theThemeChangesWhileOpen();

private:
    QPushButton* key(QChar character) const;
    QPushButton* key(const char* name) const;
    void press(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    std::unique_ptr<EventRecorder> m_window;
    CSoftKeyboardLineEdit* m_edit = nullptr;
    QLineEdit* m_other = nullptr;
};

void SoftKeyboardTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    m_window->resize(400, 150);
    m_edit = new CSoftKeyboardLineEdit(1, m_window.get());
    m_edit->setEchoMode(QLineEdit::Password);
    m_edit->setGeometry(10, 10, 200, 28);
    m_other = new QLineEdit(m_window.get());
    m_other->setGeometry(10, 80, 200, 28);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_edit->setFocus();
    QTRY_VERIFY(m_edit->hasFocus());
}

void SoftKeyboardTest::cleanup()
{
    m_window.reset();
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

QPushButton* SoftKeyboardTest::key(QChar character) const
{
    const QList<QPushButton*> keys = m_edit->keyboard()->findChildren<QPushButton*>();
    const auto found = std::find_if(keys.begin(), keys.end(), [character](QPushButton* button) {
        return button->accessibleName() == QString(character);
    });
    return found == keys.end() ? nullptr : *found;
}

QPushButton* SoftKeyboardTest::key(const char* name) const
{
    return m_edit->keyboard()->findChild<QPushButton*>(QLatin1String(name));
}

void SoftKeyboardTest::typesWithTheKeyboard()
{
    QTest::keyClicks(m_edit, QStringLiteral("aB1"));
    QCOMPARE(m_edit->text(), QStringLiteral("aB1"));
    QCOMPARE(m_window->count(EVENT_TEXT_EDITED), 3);
    QCOMPARE(m_window->records.last().param1, 1);
    m_other->setFocus();
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 1);
}

void SoftKeyboardTest::everyPrintableCharacterHasItsKey()
{
    CSoftKeyboardPopup popup(nullptr);
    QString all = popup.characters();
    popup.setShifted(true);
    all += popup.characters();
    std::sort(all.begin(), all.end());
    QString expected;
    for (char16_t character = u'!'; character <= u'~'; ++character)
        expected += QChar(character);
    QCOMPARE(all, expected);
}

void SoftKeyboardTest::theKeysTypeWhatTheyShow()
{
    m_edit->setEchoMode(QLineEdit::Normal);
    m_edit->showKeyboard();
    QString expected;
    for (const bool shifted : {false, true}) {
        m_edit->keyboard()->setShifted(shifted);
        const QString characters = m_edit->keyboard()->characters();
        for (const QChar character : characters) {
            QPushButton* const button = key(character);
            QVERIFY2(button, qPrintable(QString(character)));
            QString shown = button->text();
            shown.replace(QLatin1String("&&"), QLatin1String("&"));
            QCOMPARE(shown, QString(character));
            press(button);
            expected += character;
        }
    }
    press(key("kz_key_space"));
    QCOMPARE(m_edit->text(), QString(expected + QLatin1Char(' ')));
}

void SoftKeyboardTest::theKeysAreShuffledWithinTheirGroups()
{
    CSoftKeyboardPopup popup(nullptr);
    const QString ordered = popup.characters();
    QRandomGenerator random(20261120);
    popup.shuffle(random);
    const QString shuffled = popup.characters();
    QVERIFY(shuffled != ordered);
    const auto sorted = [](QString text) {
        std::sort(text.begin(), text.end());
        return text;
    };
    QCOMPARE(sorted(shuffled.left(10)), sorted(ordered.left(10)));
    QCOMPARE(sorted(shuffled.mid(10, 26)), sorted(ordered.mid(10, 26)));
    QCOMPARE(sorted(shuffled.mid(36)), sorted(ordered.mid(36)));
    QRandomGenerator same(20261120);
    CSoftKeyboardPopup twin(nullptr);
    twin.shuffle(same);
    QCOMPARE(twin.characters(), shuffled);
}

void SoftKeyboardTest::theKeysLieElsewhereAtEachOpening()
{
    // 47 keys have far more orders than three openings could meet twice by chance.
    QStringList orders;
    for (int opening = 0; opening < 3; ++opening) {
        m_edit->showKeyboard();
        orders += m_edit->keyboard()->characters();
        m_edit->hideKeyboard();
    }
    QCOMPARE(orders.removeDuplicates(), 0);
}

void SoftKeyboardTest::screenKeysDeliverTheEventsOfTyping()
{
    m_edit->showKeyboard();
    press(key(QLatin1Char('x')));
    press(key(QLatin1Char('7')));
    QCOMPARE(m_edit->text(), QStringLiteral("x7"));
    QCOMPARE(m_window->count(EVENT_TEXT_EDITED), 2);
    QCOMPARE(m_window->count(EVENT_TEXT_COMMITTED), 0);
    QCOMPARE(m_window->records.last().text, QStringLiteral("x7"));
    QCOMPARE(m_window->count(EVENT_BUTTON_CLICKED), 0);
}

void SoftKeyboardTest::shiftBackspaceAndClearWork()
{
    m_edit->showKeyboard();
    press(key(QLatin1Char('q')));
    press(key("kz_key_shift"));
    press(key(QLatin1Char('Q')));
    press(key(QLatin1Char('&')));
    QCOMPARE(m_edit->text(), QStringLiteral("qQ&"));
    press(key("kz_key_backspace"));
    QCOMPARE(m_edit->text(), QStringLiteral("qQ"));
    press(key("kz_key_clear"));
    QCOMPARE(m_edit->text(), QString());
    QVERIFY(m_edit->keyboard());
    m_edit->hideKeyboard();
    m_edit->showKeyboard();
    QVERIFY(!m_edit->keyboard()->isShifted());
}

void SoftKeyboardTest::enterFinishesTheTextAndClosesTheKeyboard()
{
    m_edit->showKeyboard();
    press(key(QLatin1Char('a')));
    press(key("kz_key_enter"));
    QTRY_COMPARE(m_window->count(EVENT_TEXT_COMMITTED), 1);
    QVERIFY(!m_edit->keyboard());
    QVERIFY(m_edit->hasFocus());
}

void SoftKeyboardTest::theFocusStaysInTheEditor()
{
    m_edit->showKeyboard();
    QVERIFY(m_edit->keyboard()->isVisible());
    press(key(QLatin1Char('m')));
    QTest::mouseClick(m_edit->keyboard(), Qt::LeftButton, {}, QPoint(2, 2));
    QVERIFY(m_edit->hasFocus());
    QVERIFY(m_window->isActiveWindow());
    QCOMPARE(m_window->count(EVENT_FOCUS_LEFT), 0);
}

void SoftKeyboardTest::nothingOnTheKeyboardShowsTheText()
{
    m_edit->showKeyboard();
    const QImage before = m_edit->keyboard()->grab().toImage();
    QTest::keyClicks(m_edit, QStringLiteral("secret"));
    QCOMPARE(m_edit->keyboard()->grab().toImage(), before);
    QCOMPARE(m_edit->displayText().count(QLatin1Char('s')), 0);
}

void SoftKeyboardTest::shortcutsOpenAndCloseIt()
{
    QTest::keyClick(m_edit, Qt::Key_F4);
    QVERIFY(m_edit->keyboard());
    QTest::keyClick(m_edit, Qt::Key_F4);
    QVERIFY(!m_edit->keyboard());
    QTest::keyClick(m_edit, Qt::Key_Down, Qt::AltModifier);
    QVERIFY(m_edit->keyboard());
    QTest::keyClick(m_edit, Qt::Key_Escape);
    QVERIFY(!m_edit->keyboard());
    QVERIFY(m_edit->text().isEmpty());
}

void SoftKeyboardTest::theButtonInTheEditorOpensIt()
{
    const QList<QToolButton*> buttons = m_edit->findChildren<QToolButton*>();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [](QToolButton* button) {
        return button->defaultAction()->toolTip().contains(QStringLiteral("F4"));
    });
    QVERIFY(found != buttons.end());
    QTest::mouseClick(*found, Qt::LeftButton);
    QVERIFY(m_edit->keyboard());
    QTest::mouseClick(*found, Qt::LeftButton);
    QVERIFY(!m_edit->keyboard());
}

void SoftKeyboardTest::itClosesWithTheFocusAndTheWindow()
{
    m_edit->showKeyboard();
    QPointer<CSoftKeyboardPopup> popup = m_edit->keyboard();
    m_other->setFocus();
    QVERIFY(!m_edit->keyboard());
    QTRY_VERIFY(!popup);
    m_edit->showKeyboard();
    QVERIFY(m_edit->hasFocus());
    m_window->hide();
    QVERIFY(!m_edit->keyboard());
    m_window->show();
    m_edit->showKeyboard();
    m_window->move(m_window->pos() + QPoint(5, 5));
    QTRY_VERIFY(!m_edit->keyboard());
    m_edit->showKeyboard();
    m_edit->setEnabled(false);
    QVERIFY(!m_edit->keyboard());
}

void SoftKeyboardTest::aDisabledEditorOpensNoKeyboard()
{
    m_edit->setEnabled(false);
    m_edit->showKeyboard();
    QVERIFY(!m_edit->keyboard());
    m_edit->setEnabled(true);
    m_edit->setReadOnly(true);
    m_edit->showKeyboard();
    QVERIFY(!m_edit->keyboard());
}

void SoftKeyboardTest::itStaysOnTheScreen()
{
    const QRect screen = m_window->screen()->availableGeometry();
    m_window->move(screen.bottomRight() - QPoint(m_window->width(), m_window->height()));
    m_edit->showKeyboard();
    QVERIFY(screen.contains(m_edit->keyboard()->geometry()));
    const QRect edit(m_edit->mapToGlobal(QPoint()), m_edit->size());
    QVERIFY(!m_edit->keyboard()->geometry().intersects(edit));
}

void SoftKeyboardTest::capsLockIsToldByTheLetters()
{
    QVERIFY(!m_edit->capsLockShown());
    QTest::keyClick(m_edit, 'A', Qt::NoModifier);
    QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_A, QStringLiteral("A"), Qt::NoModifier);
    QVERIFY(m_edit->capsLockShown());
    QVERIFY(!m_edit->accessibleDescription().isEmpty());
    QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_A, QStringLiteral("a"), Qt::NoModifier);
    QVERIFY(!m_edit->capsLockShown());
    QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_A, QStringLiteral("a"), Qt::ShiftModifier);
    QVERIFY(m_edit->capsLockShown());
    QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_CapsLock, QString(), Qt::NoModifier);
    QVERIFY(!m_edit->capsLockShown());
    QTest::sendKeyEvent(QTest::Click, m_edit, Qt::Key_A, QStringLiteral("A"), Qt::ShiftModifier);
    QVERIFY(!m_edit->capsLockShown());
    // The screen keyboard's own capital letters say nothing about Caps Lock.
    m_edit->showKeyboard();
    m_edit->keyboard()->setShifted(true);
    press(key(QLatin1Char('Z')));
    QVERIFY(!m_edit->capsLockShown());
}

void SoftKeyboardTest::theLengthLimitHoldsForScreenKeys()
{
    m_edit->setMaxLength(2);
    m_edit->showKeyboard();
    for (int i = 0; i < 4; ++i)
        press(key(QLatin1Char('k')));
    QCOMPARE(m_edit->text(), QStringLiteral("kk"));
}

void SoftKeyboardTest::clearingLeavesNothingToUndo()
{
    m_edit->setEchoMode(QLineEdit::Normal);
    QTest::keyClicks(m_edit, QStringLiteral("secret"));
    const QString kept = m_edit->text();
    m_edit->clear();
    QVERIFY(!m_edit->isUndoAvailable());
    m_edit->undo();
    QCOMPARE(m_edit->text(), QString());
    QCOMPARE(kept, QStringLiteral("secret"));
    m_edit->setText(QStringLiteral("first"));
    m_edit->setText(QStringLiteral("second"));
    QCOMPARE(m_edit->text(), QStringLiteral("second"));
    QVERIFY(!m_edit->isUndoAvailable());
}

void SoftKeyboardTest::theThemeChangesWhileOpen()
{
    m_edit->showKeyboard();
    const QImage light = m_edit->keyboard()->grab().toImage();
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(m_edit->keyboard()->grab().toImage() != light);
}

int main(int argc, char** argv)
{
    return runTest<SoftKeyboardTest>(argc, argv);
}

#include "SoftKeyboardTest.moc"
