#pragma once

#include "tests/monkey/Action.h"

#include <QPoint>
#include <QPointer>
#include <QVector>
#include <QWidget>

#include <functional>

class OpenDialog;

namespace monkey {

/// The user's hands: mouse and keyboard events as the window system sends them, to whatever window
/// is in front.
class Hands
{
public:
    explicit Hands(OpenDialog& dialog) : m_dialog(dialog) {}

    /// The window that gets the user's input: the open popup, else the modal dialog; null when the
    /// dialog is closed.
    QWidget* front() const;
    /// Buttons, editors and boxes of the window in front that can be clicked, in a fixed order.
    QVector<QWidget*> controls() const;

    /// The widget that the action presses, releases or types into, as far as it is known before.
    QWidget* target(const Action& action) const;
    /// Does one of the user's actions.
    void act(const Action& action);
    /// Answers the open file dialog with a path, or cancels it with an empty one.
    void chooseFile(const QString& path);

    bool isPressing() const { return m_button != Qt::NoButton; }

private:
    QPoint placeOf(const Action& action) const;
    QPoint cellPlace(int row, int column) const;
    QPoint nodePlace(int node) const;
    void press(const QPoint& place, Qt::MouseButton button);
    void doubleClick(const QPoint& place);
    /// False when the window in front is not there, or no longer the same afterwards.
    bool moveTo(const QPoint& place);
    void release();
    void wheel(const QPoint& place, int steps);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text);

    OpenDialog& m_dialog;
    Qt::MouseButton m_button = Qt::NoButton;
    QPoint m_pointer;
    QPointer<QWidget> m_pressed;
    /// Counts the actions, because one that opens a dialog ends only after those in the dialog.
    int m_actions = 0;
};

} // namespace monkey
