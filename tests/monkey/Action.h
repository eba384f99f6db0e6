#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace monkey {

/// One thing that happens to the dialog. It means the same whenever it is played again: numbers
/// that choose among things count round what is there at that moment.
struct Action
{
    enum Kind : int {
        // The user's hands. Places in the front window are in thousandths of its size.
        PressAt,     ///< a, b = place, c = Qt::MouseButton
        PressWidget, ///< a = which of the controls in sight, c = Qt::MouseButton
        PressCell,   ///< a, b = row and column of the table in sight, c = Qt::MouseButton
        PressNode,   ///< a = node of the tree
        PressTab,    ///< a = tab
        DoubleClick, ///< a, b = row and column of the table in sight
        MoveTo,      ///< a, b = place
        Release,     ///< where the pointer stands
        Wheel,       ///< a, b = place, c = steps
        Key,         ///< a = Qt::Key, b = Qt::KeyboardModifiers, text
        Type,        ///< text, key by key
        ChooseFile,  ///< in the file dialog; a = number of the file, 0 cancels
        // The host and the surroundings.
        Open,    ///< a = place, b = tab, c = number of the account or sub-user
        Close,   ///< by the program
        Theme,   ///< switch to the other one
        Advance, ///< a = milliseconds
        NextDay, ///< a = days
        // The client. c = 1 tells the change with its signal.
        SetState, ///< a = account, b = 0 free, 1, 2 or 3 granted to one of three users, 4 received
        Add,      ///< a new account; a = type
        Remove,   ///< a = account
        Rename,   ///< a = account, b = number of its new alias
        Hide,     ///< a = account; it becomes a sub-account or an account again
        AddUser,  ///< a new sub-user
        RemoveUser,   ///< a = sub-user
        ToggleUser,   ///< a = sub-user
        Tell,         ///< that something changed
        Answer,       ///< a = open request, b = 1 ok, c = 1 from another thread, 2 changing nothing
        Forget,       ///< a = open request that will never be answered
        FailFiles,    ///< a = 1 from now on
        ReloadInRead, ///< a = how many reads from now, b = 1 drops an account before
        AnswerInside, ///< the next request is answered before it returns; b = 1 ok
        KindCount
    };

    Kind kind = Tell;
    int a = 0;
    int b = 0;
    int c = 0;
    QString text;

    /// Whether the user does it, so that requests may come of it.
    bool isUsers() const { return kind <= ChooseFile; }

    /// One line, and back.
    QString toLine() const;
    static std::optional<Action> fromLine(const QString& line);
};

using Script = QVector<Action>;

/// Empty when the file cannot be read; lines that begin with # are comments.
Script readScript(const QString& path);
bool writeScript(const QString& path, const Script& script);

} // namespace monkey
