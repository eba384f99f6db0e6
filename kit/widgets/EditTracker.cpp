#include "kit/widgets/EditTracker.h"

#include <QApplication>

namespace KZ {

void CEditTracker::textEdited(const QString& text)
{
    m_editing = true;
    m_edited = text;
}

void CEditTracker::textChanged(const QString& text)
{
    if (!m_editing || text != m_edited)
        m_base = text;
    m_editing = false;
}

void CEditTracker::commit(const QString& text)
{
    m_base = text;
}

bool CEditTracker::endsEditing(Qt::FocusReason reason)
{
    return reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
           !QApplication::activePopupWidget();
}

} // namespace KZ
