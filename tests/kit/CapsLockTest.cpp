#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "tests/support/TestCase.h"

#include <QGuiApplication>
#include <QLibrary>

using namespace KZ;

/// Runs in a real X server, where Caps Lock can be locked and asked for.
class CapsLockTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void theServersLockIsShownWhileTheEditorHasTheFocus();
};

namespace {

/// Locks or unlocks Caps Lock as its key does, through XkbLockModifiers() of libX11.
void setCapsLock(bool on)
{
    using LockModifiers = int (*)(void*, unsigned, unsigned, unsigned);
    using Sync = int (*)(void*, int);
    const auto lock = reinterpret_cast<LockModifiers>(
        QLibrary::resolve(QStringLiteral("X11"), 6, "XkbLockModifiers"));
    const auto sync = reinterpret_cast<Sync>(QLibrary::resolve(QStringLiteral("X11"), 6, "XSync"));
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    QVERIFY(lock && sync && x11);
    constexpr unsigned coreKeyboard = 0x0100;
    constexpr unsigned lockMask = 0x2;
    lock(x11->display(), coreKeyboard, lockMask, on ? lockMask : 0);
    sync(x11->display(), 0);
}

} // namespace

void CapsLockTest::cleanup()
{
    setCapsLock(false);
    TestCase::cleanup();
}

void CapsLockTest::theServersLockIsShownWhileTheEditorHasTheFocus()
{
    QWidget window;
    window.resize(300, 100);
    CSoftKeyboardLineEdit edit(1, &window);
    QLineEdit other(&window);
    other.move(0, 50);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    edit.setFocus();
    QTRY_VERIFY(edit.hasFocus());
    QVERIFY(!edit.capsLockShown());

    other.setFocus();
    setCapsLock(true);
    QVERIFY(!edit.capsLockShown());
    edit.setFocus();
    QVERIFY(edit.capsLockShown());

    setCapsLock(false);
    QTest::keyClick(&edit, Qt::Key_CapsLock);
    QVERIFY(!edit.capsLockShown());
    setCapsLock(true);
    // Asked from the server, a letter cannot mislead: this one is as if typed with Shift.
    QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_A, QStringLiteral("a"), Qt::NoModifier);
    QVERIFY(edit.capsLockShown());
    other.setFocus();
    QVERIFY(!edit.capsLockShown());
}

int main(int argc, char** argv)
{
    return runTest<CapsLockTest>(argc, argv);
}

#include "CapsLockTest.moc"
