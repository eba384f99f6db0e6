#include "kit/table/CellParking.h"

#include <QApplication>
#include <QPointer>
#include <QWidget>

namespace KZ {

CCellParking::CCellParking(QWidget* view, QWidget* table)
    : m_view(view), m_parking(new QWidget(table))
{
    m_parking->hide();
}

void CCellParking::setEnabled(bool enabled) const
{
    m_parking->setEnabled(enabled);
}

void CCellParking::park(QWidget* widget) const
{
    park(QList<QWidget*>{widget});
}

void CCellParking::park(const QList<QWidget*>& widgets) const
{
    const QPointer<QWidget> parking(m_parking);
    const QList<QPointer<QWidget>> parked(widgets.cbegin(), widgets.cend());
    for (const QPointer<QWidget>& widget : parked) {
        if (parking && widget && widget->parentWidget() != parking)
            takeFocusFrom(widget);
        if (parking && widget && widget->parentWidget() != parking)
            widget->setParent(parking);
    }
}

void CCellParking::discard(QWidget* widget) const
{
    const QPointer<QWidget> gone(widget);
    if (gone)
        takeFocusFrom(gone);
    if (gone)
        gone->hide();
    if (gone)
        gone->setEnabled(false);
    if (gone)
        gone->deleteLater();
}

void CCellParking::takeFocusFrom(const QWidget* widget) const
{
    if (const QWidget* const focus = QApplication::focusWidget();
        focus && (focus == widget || widget->isAncestorOf(focus)))
        m_view->setFocus(Qt::OtherFocusReason);
}

} // namespace KZ
