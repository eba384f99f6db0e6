#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"
#include "kit/widgets/LineEdit.h"

#include <QPointer>

#include <optional>

class QAction;

namespace KZ {

class CSoftKeyboardPopup;

/// A line edit that is typed into with the keyboard or, against recorded keystrokes, with the mouse
/// on a keyboard on the screen, whose keys lie elsewhere each time it is opened.
///
/// The button in the editor, F4 and Alt+Down open and close the screen keyboard; Esc closes it. It
/// never takes the focus and never shows what was typed. Events as CLineEdit: 67 for each key of
/// either keyboard, 68 when the text is finished, 88 when the focus leaves.
///
/// Clearing and destroying overwrite the text's memory where this editor is its last owner. What Qt
/// does not allow: copies that QLineEdit made while typing (each reallocation, the undo history)
/// are released but not overwritten. GUI thread only.
class KZKIT_EXPORT CSoftKeyboardLineEdit : public CLineEdit
{
    Q_OBJECT

public:
    /// `id` is the sender identifier of the editor's events.
    explicit CSoftKeyboardLineEdit(int id, QWidget* parent = nullptr);
    ~CSoftKeyboardLineEdit() override;

    /// Empties the editor, forgets what could be undone and overwrites the text.
    void clear();
    /// Replaces the text; the old one is overwritten as by clear(). Delivers nothing.
    void setText(const QString& text);

    /// The editor that is typed into: this one.
    QLineEdit* lineEdit();

    /// Opens the screen keyboard with its keys shuffled anew; nothing while the editor is disabled,
    /// read-only or hidden.
    void showKeyboard();
    void hideKeyboard();
    /// The screen keyboard, null unless it is open.
    CSoftKeyboardPopup* keyboard() const;

    /// Whether the editor says that Caps Lock is on. It is asked from the X server; elsewhere it is
    /// taken from the case of the last typed letter.
    bool capsLockShown() const;

    void onUiResourceChanged() override;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void wipe();
    void type(int key, const QString& text);
    void showCapsLock(std::optional<bool> on);
    void takeIcons();

    QAction* m_keyboardAction;
    QAction* m_capsLockAction;
    QPointer<CSoftKeyboardPopup> m_keyboard;
    bool m_typesOnScreen = false;
};

} // namespace KZ
