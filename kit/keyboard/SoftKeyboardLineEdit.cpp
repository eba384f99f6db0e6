#include "kit/keyboard/SoftKeyboardLineEdit.h"

#include "kit/keyboard/CapsLock.h"
#include "kit/keyboard/SoftKeyboardPopup.h"
#include "kit/resources/UiResource.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QRandomGenerator>

namespace KZ {

namespace {

bool opensKeyboard(const QKeyEvent* event)
{
    const QKeyCombination pressed = event->keyCombination();
    return pressed == QKeyCombination(Qt::Key_F4) || pressed == (Qt::AltModifier | Qt::Key_Down);
}

bool isEscape(const QKeyEvent* event)
{
    return event->keyCombination() == QKeyCombination(Qt::Key_Escape);
}

/// What the case of a typed letter says about Caps Lock; nothing when it is no cased letter.
std::optional<bool> capsLockByLetter(const QKeyEvent* event)
{
    const QString text = event->text();
    if (text.size() != 1 || text.front().unicode() > 0x7f || !text.front().isLetter())
        return std::nullopt;
    return text.front().isUpper() != event->modifiers().testFlag(Qt::ShiftModifier);
}

/// Overwrites the memory of `text`, unless others still hold the same text. The compiler must not
/// leave the writing out because nobody reads it.
void overwrite(QString& text)
{
    if (text.isEmpty() || !text.isDetached())
        return;
    auto* const characters = reinterpret_cast<volatile char16_t*>(text.data());
    for (qsizetype i = 0; i < text.size(); ++i)
        characters[i] = 0;
}

} // namespace

CSoftKeyboardLineEdit::CSoftKeyboardLineEdit(int id, QWidget* parent)
    : CLineEdit(id, parent), m_keyboardAction(new QAction(this)),
      m_capsLockAction(new QAction(this))
{
    const QString hint = QStringLiteral("软键盘（F4）");
    m_keyboardAction->setText(hint);
    m_keyboardAction->setToolTip(hint);
    addAction(m_keyboardAction, QLineEdit::TrailingPosition);
    m_capsLockAction->setText(QStringLiteral("大写锁定已打开"));
    m_capsLockAction->setToolTip(m_capsLockAction->text());
    m_capsLockAction->setVisible(false);
    addAction(m_capsLockAction, QLineEdit::TrailingPosition);
    connect(m_keyboardAction, &QAction::triggered, this, [this] {
        if (m_keyboard)
            hideKeyboard();
        else
            showKeyboard();
    });
    takeIcons();
}

CSoftKeyboardLineEdit::~CSoftKeyboardLineEdit()
{
    wipe();
}

void CSoftKeyboardLineEdit::wipe()
{
    QString held = text();
    // Unlike clear(), setting a text also drops what could be undone.
    QLineEdit::setText(QString());
    overwrite(held);
}

void CSoftKeyboardLineEdit::clear()
{
    wipe();
}

void CSoftKeyboardLineEdit::setText(const QString& text)
{
    wipe();
    QLineEdit::setText(text);
}

QLineEdit* CSoftKeyboardLineEdit::lineEdit()
{
    return this;
}

void CSoftKeyboardLineEdit::showKeyboard()
{
    if (m_keyboard || !isEnabled() || isReadOnly() || !isVisible())
        return;
    setFocus(Qt::OtherFocusReason);
    m_keyboard = new CSoftKeyboardPopup(this);
    m_keyboard->shuffle(*QRandomGenerator::system());
    connect(m_keyboard, &CSoftKeyboardPopup::characterTyped, this,
            [this](QChar character) { type(Qt::Key_unknown, QString(character)); });
    connect(m_keyboard, &CSoftKeyboardPopup::backspaceTyped, this,
            [this] { type(Qt::Key_Backspace, QString()); });
    connect(m_keyboard, &CSoftKeyboardPopup::clearTyped, this, [this] {
        selectAll();
        type(Qt::Key_Backspace, QString());
    });
    connect(
        m_keyboard, &CSoftKeyboardPopup::enterTyped, this,
        [this] {
            hideKeyboard();
            type(Qt::Key_Return, QStringLiteral("\r"));
        },
        Qt::QueuedConnection);
    window()->installEventFilter(this);
    m_keyboard->popUp(this);
}

void CSoftKeyboardLineEdit::hideKeyboard()
{
    if (!m_keyboard)
        return;
    if (window() != this)
        window()->removeEventFilter(this);
    m_keyboard->hide();
    m_keyboard->deleteLater();
    m_keyboard.clear();
}

CSoftKeyboardPopup* CSoftKeyboardLineEdit::keyboard() const
{
    return m_keyboard;
}

/// Types like a key of the physical keyboard, so that validator, length limit and events are the
/// same. The receivers may destroy this editor.
void CSoftKeyboardLineEdit::type(int key, const QString& text)
{
    const QPointer<CSoftKeyboardLineEdit> self(this);
    m_typesOnScreen = true;
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(this, &press);
    if (!self)
        return;
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(this, &release);
    if (self)
        m_typesOnScreen = false;
}

bool CSoftKeyboardLineEdit::capsLockShown() const
{
    return m_capsLockAction->isVisible();
}

void CSoftKeyboardLineEdit::showCapsLock(std::optional<bool> on)
{
    if (!on)
        return;
    m_capsLockAction->setVisible(*on && hasFocus());
    setAccessibleDescription(capsLockShown() ? m_capsLockAction->text() : QString());
}

void CSoftKeyboardLineEdit::onUiResourceChanged()
{
    CLineEdit::onUiResourceChanged();
    takeIcons();
}

void CSoftKeyboardLineEdit::takeIcons()
{
    m_keyboardAction->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_keyboard")));
    m_capsLockAction->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_caps_lock")));
}

bool CSoftKeyboardLineEdit::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (opensKeyboard(key) || (m_keyboard && isEscape(key))) {
            event->accept();
            return true;
        }
    }
    return CLineEdit::event(event);
}

bool CSoftKeyboardLineEdit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == window()) {
        switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Hide:
        case QEvent::WindowDeactivate:
            hideKeyboard();
            break;
        default:
            break;
        }
    }
    return CLineEdit::eventFilter(watched, event);
}

void CSoftKeyboardLineEdit::keyPressEvent(QKeyEvent* event)
{
    if (!m_typesOnScreen) {
        if (const std::optional<bool> on = queryCapsLock())
            showCapsLock(on);
        else if (event->key() == Qt::Key_CapsLock)
            showCapsLock(!capsLockShown());
        else
            showCapsLock(capsLockByLetter(event));
    }
    if (opensKeyboard(event)) {
        m_keyboardAction->trigger();
        event->accept();
    } else if (m_keyboard && isEscape(event)) {
        hideKeyboard();
        event->accept();
    } else {
        CLineEdit::keyPressEvent(event);
    }
}

void CSoftKeyboardLineEdit::keyReleaseEvent(QKeyEvent* event)
{
    // X11 switches the lock off only when the key is let go.
    showCapsLock(queryCapsLock());
    CLineEdit::keyReleaseEvent(event);
}

void CSoftKeyboardLineEdit::focusInEvent(QFocusEvent* event)
{
    CLineEdit::focusInEvent(event);
    showCapsLock(queryCapsLock());
}

void CSoftKeyboardLineEdit::focusOutEvent(QFocusEvent* event)
{
    hideKeyboard();
    showCapsLock(false);
    CLineEdit::focusOutEvent(event);
}

void CSoftKeyboardLineEdit::hideEvent(QHideEvent* event)
{
    hideKeyboard();
    CLineEdit::hideEvent(event);
}

void CSoftKeyboardLineEdit::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::EnabledChange) {
        m_keyboardAction->setEnabled(isEnabled());
        if (!isEnabled())
            hideKeyboard();
    }
    CLineEdit::changeEvent(event);
}

} // namespace KZ
