#pragma once

#include <QStringList>

/// Acts like the one who sits before a client: clicks where he sees a thing, types where the cursor
/// is. All of it reaches the window that he works in, as from the window system.
class DeskHands
{
public:
    DeskHands() = delete;

    /// Does what `order` says:
    ///   click <button>      tab <title>      menu <entry>
    ///   cell <row text> <column>             type <editor> <text>            press <key>
    /// False when the thing is not there, moves or is covered; then nothing has happened.
    static bool act(const QStringList& order);
};
