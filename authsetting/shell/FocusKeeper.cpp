#include "authsetting/shell/FocusKeeper.h"

#include "authsetting/shell/AuthSettingPage.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/TabOrder.h"
#include "kit/widgets/StandardTabControl.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace GW {

CFocusKeeper::CFocusKeeper(QWidget* dialog, QWidget* closeButton)
    : QObject(dialog), m_dialog(dialog), m_closeButton(closeButton)
{
    dialog->installEventFilter(this);
    closeButton->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &CFocusKeeper::onFocusChanged);
}

void CFocusKeeper::setPage(CAuthSettingPage* page)
{
    m_page = page;
    for (int index = 0; index < page->tabControl()->tabCount(); ++index)
        page->tabControl()->getTabWidget(index)->installEventFilter(this);
    m_place = nullptr;
    m_placeTable = nullptr;
    m_closeChosen = false;
    m_atExtra = false;
    QWidget* first = firstPlace();
    if (first)
        setPlace(first);
    (first ? first : m_dialog)->setFocus(Qt::OtherFocusReason);
}

void CFocusKeeper::setExtraControl(QWidget* control)
{
    m_extra = control;
    control->installEventFilter(this);
}

void CFocusKeeper::remember()
{
    QWidget* focused = m_dialog->focusWidget();
    if (isPlace(focused))
        setPlace(focused);
}

void CFocusKeeper::check()
{
    if (m_checking)
        return;
    const QScopedValueRollback<bool> checking(m_checking, true);
    QWidget* focused = m_dialog->focusWidget();
    if (isPlace(focused)) {
        setPlace(focused);
        return;
    }
    QWidget* target = m_dialog;
    if (m_atExtra && isPlace(m_extra))
        target = m_extra;
    else if (isPlace(m_place))
        target = m_place;
    else if (isPlace(m_placeTable))
        target = m_placeTable;
    else if (QWidget* first = firstPlace())
        target = first;
    if (target != focused)
        target->setFocus(Qt::OtherFocusReason);
    if (target != m_dialog)
        setPlace(target);
}

bool CFocusKeeper::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool back = static_cast<QKeyEvent*>(event)->modifiers() & Qt::ShiftModifier;
        // Inside the page the page itself does this.
        if ((key == Qt::Key_Tab || key == Qt::Key_Backtab) && watched == m_dialog->focusWidget() &&
            (watched == m_dialog || watched == m_closeButton || watched == m_extra))
            return CTabOrder::step(m_dialog, key == Qt::Key_Tab && !back);
        break;
    }
    case QEvent::WindowActivate:
        if (watched == m_dialog)
            checkSoon();
        break;
    case QEvent::Hide:
    case QEvent::EnabledChange:
        if (watched == m_watched)
            checkSoon();
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        if (watched == m_closeButton)
            noteCloseButton(*event);
        else if (event->type() == QEvent::FocusIn && qobject_cast<IAuthSettingTabPage*>(watched))
            passOn(static_cast<QWidget*>(watched), static_cast<QFocusEvent*>(event)->reason());
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void CFocusKeeper::checkSoon()
{
    if (m_checkPosted)
        return;
    m_checkPosted = true;
    const auto mend = [this] {
        m_checkPosted = false;
        check();
    };
    QMetaObject::invokeMethod(this, mend, Qt::QueuedConnection);
}

void CFocusKeeper::onFocusChanged(const QWidget*, QWidget* now)
{
    if (now && now->window() != m_dialog)
        return;
    if (isPlace(now))
        setPlace(now);
    else if (now || m_dialog->isActiveWindow())
        checkSoon();
}

void CFocusKeeper::noteCloseButton(const QEvent& event)
{
    const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
    // A window that becomes active hands the focus to whatever takes it.
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
        m_closeChosen = event.type() == QEvent::FocusIn;
}

void CFocusKeeper::passOn(QWidget* tab, Qt::FocusReason reason)
{
    const QList<QWidget*> stops = CTabOrder::stopsOf(tab);
    if (stops.isEmpty())
        return;
    // A click beside the controls ends what is being edited and otherwise leaves the user there.
    if (reason == Qt::MouseFocusReason && isPlace(m_place) && tab->isAncestorOf(m_place))
        m_place->setFocus(reason);
    else
        (reason == Qt::BacktabFocusReason ? stops.last() : stops.first())->setFocus(reason);
}

bool CFocusKeeper::isPlace(const QWidget* widget) const
{
    if (!widget || widget == m_dialog || !widget->isVisibleTo(m_dialog) || !widget->isEnabled())
        return false;
    if (widget == m_closeButton)
        return m_closeChosen;
    if (widget == m_extra)
        return true;
    if (!m_page || !m_page->isAncestorOf(widget))
        return false;
    return !qobject_cast<const IAuthSettingTabPage*>(widget) ||
           CTabOrder::stopsOf(widget).isEmpty();
}

void CFocusKeeper::setPlace(QWidget* place)
{
    m_atExtra = place == m_extra;
    // What the user left for the other control is where he comes back to.
    if (m_atExtra)
        return;
    m_place = place;
    watch(place);
    m_placeTable = nullptr;
    for (QWidget* at = place->parentWidget(); at && !m_placeTable; at = at->parentWidget())
        m_placeTable = qobject_cast<QAbstractItemView*>(at);
}

void CFocusKeeper::watch(QWidget* place)
{
    if (place == m_watched)
        return;
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = nullptr;
    // The others are looked after for good.
    if (place == m_closeButton || qobject_cast<IAuthSettingTabPage*>(place))
        return;
    m_watched = place;
    place->installEventFilter(this);
}

QWidget* CFocusKeeper::firstPlace() const
{
    if (!m_page)
        return nullptr;
    const KZ::CStandardTabControl* tabs = m_page->tabControl();
    QWidget* tab = tabs->getTabWidget(tabs->currentTabIndex());
    if (tab) {
        const QList<QWidget*> inTab = CTabOrder::stopsOf(tab);
        if (!inTab.isEmpty() && isPlace(inTab.first()))
            return inTab.first();
        if (isPlace(tab))
            return tab;
    }
    const QList<QWidget*> inPage = CTabOrder::stopsOf(m_page);
    return !inPage.isEmpty() && isPlace(inPage.first()) ? inPage.first() : nullptr;
}

} // namespace GW
