#include "kit/widgets/StandardTabControl.h"

#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>

#include <algorithm>

namespace KZ {

CStandardTabControl::CStandardTabControl(QWidget* parent)
    : CBaseWidget(parent), m_tabBar(new QTabBar(this)), m_stack(new QStackedWidget(this))
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_tabBar->setStyle(kitStyle());
    m_tabBar->setDrawBase(false);
    m_tabBar->setExpanding(false);
    m_tabBar->setElideMode(Qt::ElideRight);
    m_tabBar->setFocusPolicy(Qt::NoFocus);
    m_tabBar->setAccessibleName(QStringLiteral("标签页"));
    m_tabBar->installEventFilter(this);
    connect(m_tabBar, &QTabBar::currentChanged, this, [this](int index) {
        if (!m_switching)
            activateTab(index);
    });
    addStepShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), 1);
    addStepShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab), -1);
    addStepShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab), -1);
}

int CStandardTabControl::addTabWidget(const QString& title, QWidget* widget)
{
    // The bar selects its first tab by itself, which nobody asked for.
    m_switching = true;
    const int index = m_tabBar->addTab(title);
    m_stack->insertWidget(index, widget);
    m_switching = false;
    // Without a tab there would be nothing to see where the focus is.
    m_tabBar->setFocusPolicy(Qt::TabFocus);
    m_tabBar->setTabToolTip(index, title + QStringLiteral(" (Ctrl+Tab)"));
    if (widget->accessibleName().isEmpty())
        widget->setAccessibleName(title);
    place();
    return index;
}

QWidget* CStandardTabControl::getTabWidget(int index) const
{
    return m_stack->widget(index);
}

int CStandardTabControl::tabCount() const
{
    return m_stack->count();
}

int CStandardTabControl::currentTabIndex() const
{
    return m_stack->currentIndex();
}

bool CStandardTabControl::activateTab(int index)
{
    if (index < 0 || index >= tabCount())
        return false;
    const QPointer<CStandardTabControl> guard(this);
    const int previous = currentTabIndex();
    m_switching = true;
    m_tabBar->setCurrentIndex(index);
    m_stack->setCurrentIndex(index);
    m_switching = false;
    if (previous != index) {
        if (auto* const left = dynamic_cast<CBaseWidget*>(getTabWidget(previous)))
            left->setActive(false, false);
    }
    if (guard) {
        if (auto* const shown = dynamic_cast<CBaseWidget*>(getTabWidget(index)))
            shown->setActive(true, false);
    }
    if (guard)
        deliverEvent(EVENT_TAB_ACTIVATED, 0, index, QString(), static_cast<QWidget*>(this));
    return true;
}

void CStandardTabControl::setCornerWidget(QWidget* widget)
{
    if (m_corner && m_corner != widget)
        delete m_corner;
    m_corner = widget;
    if (!widget)
        return;
    widget->setParent(this);
    widget->show();
    place();
}

QSize CStandardTabControl::sizeHint() const
{
    const QSize inner = m_stack->sizeHint();
    return {std::max(inner.width(), m_tabBar->sizeHint().width()) + 2,
            inner.height() + rowHeight() + 2};
}

QSize CStandardTabControl::minimumSizeHint() const
{
    const QSize inner = m_stack->minimumSizeHint();
    return {inner.width() + 2, inner.height() + rowHeight() + 2};
}

void CStandardTabControl::onUiResourceChanged()
{
    CBaseWidget::onUiResourceChanged();
    m_tabBar->update();
}

bool CStandardTabControl::event(QEvent* event)
{
    const bool done = CBaseWidget::event(event);
    if (event->type() == QEvent::LayoutRequest)
        place();
    return done;
}

bool CStandardTabControl::eventFilter(QObject* watched, QEvent* event)
{
    // A click on the current tab changes nothing in the bar but asks for the tab all the same.
    if (watched == m_tabBar && event->type() == QEvent::MouseButtonPress) {
        const auto* const press = static_cast<QMouseEvent*>(event);
        const int index = m_tabBar->tabAt(press->position().toPoint());
        if (press->button() == Qt::LeftButton && index >= 0 && index == currentTabIndex()) {
            activateTab(index);
            return true;
        }
    }
    return CBaseWidget::eventFilter(watched, event);
}

void CStandardTabControl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    CStylePainter::panel(&painter, rect(), QStringLiteral("clr_panel"),
                         QStringLiteral("clr_border"));
    CStylePainter::fill(&painter, QRect(1, rowHeight(), width() - 2, 1),
                        QStringLiteral("clr_border"));
}

void CStandardTabControl::resizeEvent(QResizeEvent* event)
{
    CBaseWidget::resizeEvent(event);
    place();
}

void CStandardTabControl::addStepShortcut(const QKeySequence& keys, int step)
{
    // Over the whole window, because the focus may be beside the tabs, on a dialog's close button;
    // a hidden tab control's shortcuts are asleep.
    auto* const shortcut = new QShortcut(keys, this);
    shortcut->setContext(Qt::WindowShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, step] { this->step(step); });
    connect(shortcut, &QShortcut::activatedAmbiguously, this, [this, step] {
        if (isAncestorOf(window()->focusWidget()))
            this->step(step);
    });
}

void CStandardTabControl::step(int by)
{
    const int count = tabCount();
    if (count > 1)
        activateTab((currentTabIndex() + by + count) % count);
}

void CStandardTabControl::place()
{
    const int top = rowHeight();
    int right = width() - 1;
    if (m_corner) {
        const QSize wanted = m_corner->sizeHint().boundedTo(QSize(right, top - 2));
        const int margin = CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
        m_corner->setGeometry(right - margin - wanted.width(), (top - wanted.height()) / 2 + 1,
                              wanted.width(), wanted.height());
        right = m_corner->x() - margin;
    }
    m_tabBar->setGeometry(1, 1, std::max(0, right - 1), top);
    m_stack->setGeometry(1, top + 1, width() - 2, height() - top - 2);
}

int CStandardTabControl::rowHeight() const
{
    return CUiResource::getSize(QStringLiteral("gw_siz_kit_tab_height"));
}

} // namespace KZ
