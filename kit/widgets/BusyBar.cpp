#include "kit/widgets/BusyBar.h"

#include "kit/resources/KitStyle.h"

#include <QAccessible>
#include <QLocale>

namespace KZ {

CBusyBar::CBusyBar(QWidget* parent) : QProgressBar(parent)
{
    applyKitStyle(this);
    setRange(0, 0);
}

void CBusyBar::setCount(int done, int total)
{
    if (done == m_done && total == m_total)
        return;
    m_done = done;
    m_total = total;
    if (m_total <= 0)
        return;
    QAccessibleValueChangeEvent event(this, m_done);
    QAccessible::updateAccessibility(&event);
}

QString CBusyBar::countText() const
{
    if (m_total <= 0)
        return {};
    const QLocale locale(QLocale::Chinese, QLocale::China);
    return locale.toString(m_done) + QStringLiteral(" / ") + locale.toString(m_total);
}

} // namespace KZ
