#include "kit/widgets/EditTracker.h"

namespace KZ {

void CEditTracker::textEdited(const QString& text)
{
    m_editing = true;
    m_edited = text;
}

void CEditTracker::textChanged(const QString& text)
{
    // A handler of the edit may have set another text meanwhile; that one is the program's.
    if (!m_editing || text != m_edited)
        m_base = text;
    m_editing = false;
}

void CEditTracker::commit(const QString& text)
{
    m_base = text;
}

} // namespace KZ
