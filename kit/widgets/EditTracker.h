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

    /// The text is `text` now; unless the user's edit was reported before, the program set it.
    void textChanged(const QString& text);

    /// The present text counts as finished.
    void commit(const QString& text);

    bool isChanged(const QString& text) const { return text != m_base; }

private:
    QString m_base;
    QString m_edited;
    bool m_editing = false;
};

} // namespace KZ
