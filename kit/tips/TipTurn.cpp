#include "kit/tips/TipTurn.h"

#include "kit/tips/MessageTip.h"

#include <QCoreApplication>

namespace KZ {

CTipTurn::Group& CTipTurn::group(const QString& text, int kind, quint64 topic)
{
    static CTipTurn present;
    // A posted event comes after all that the turn has still to handle and waits for no clock.
    if (present.m_groups.empty())
        QMetaObject::invokeMethod(
            qApp, [] { present.m_groups.clear(); }, Qt::QueuedConnection);
    return present.m_groups[{text, kind, topic}];
}

} // namespace KZ
