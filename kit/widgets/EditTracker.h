#pragma once

#include "kit/KitExport.h"

#include <QString>

namespace KZ {

/// Tells an editor whether the user has changed its text since the program set it or the last
/// commit. The editor reports its textEdited and textChanged signals here, in that order.
class KZKIT_EXPORT CEditTracker
{
public:
    /// The user has just changed the text to `text`; a textChanged() with it follows.
    void textEdited(const QString& text);

    /// A change was signalled and the editor's text is `text` now, which a handler may have set
    /// meanwhile; unless it is the edit reported before, the program set it.
    void textChanged(const QString& text);

    /// The present text counts as finished.
    void commit(const QString& text);

    /// Whether losing the focus for `reason` ends the editing: the editor's own list or menu and
    /// another window take it only for a while.
    static bool endsEditing(Qt::FocusReason reason);

    bool isChanged(const QString& text) const { return text != m_base; }

private:
    QString m_base;
    QString m_edited;
    bool m_editing = false;
};

} // namespace KZ
