#include "authsetting/shell/AuthSettingPage.h"

#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingTabPage.h"
#include "authsetting/shell/TabOrder.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/SmallNormalButton.h"
#include "kit/widgets/StandardTabControl.h"
#include "kit/widgets/WidgetList.h"

#include <QPointer>

#include <utility>

namespace GW {

CAuthSettingPage::CAuthSettingPage(int pageId, int subPageId, QWidget* parent)
    : CBaseWidget(parent), m_pageId(pageId), m_subPageId(subPageId),
      m_tabControl(new KZ::CStandardTabControl(this))
{
    setObjectName(QStringLiteral("halden_i_settingpage"));
    setInnerStretchWidget(m_tabControl, 0, 0, 0, 0);
}

CAuthSettingPage::~CAuthSettingPage() = default;

void CAuthSettingPage::addTabPage(QString title, IAuthSettingTabPage* tab)
{
    if (m_tabControl)
        m_tabControl->addTabWidget(title, tab);
}

void CAuthSettingPage::addCornerButton(int id, const QString& text, const QKeySequence& shortcut,
                                       const QString& toolTip)
{
    if (!m_tabControl)
        return;
    if (!m_corner) {
        m_corner = new KZ::CWidgetList(Qt::Horizontal, nullptr);
        m_tabControl->setCornerWidget(m_corner);
    }
    auto* button = new KZ::CSmallNormalButton(id, m_corner);
    button->setObjectName(QStringLiteral("halden_corner_button_%1").arg(id));
    button->setText(text);
    button->setAccessibleName(text);
    button->setAccessibleDescription(toolTip);
    button->setShortcut(shortcut);
    const QString keys = shortcut.toString(QKeySequence::NativeText);
    button->setToolTip(keys.isEmpty() ? toolTip : QStringLiteral("%1 (%2)").arg(toolTip, keys));
    const int space = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
    button->resize(button->sizeHint() + QSize(space, 0));
    m_corner->addFixWidget(button);
    m_corner->resize(m_corner->sizeHint());
    m_cornerButtons.append(button);
}

void CAuthSettingPage::setKey(QString key)
{
    m_key = std::move(key);
    if (!m_tabControl)
        return;
    for (int index = 0; index < m_tabControl->tabCount(); ++index) {
        if (IAuthSettingTabPage* tab = tabPageAt(index))
            tab->setKey(m_key);
    }
}

void CAuthSettingPage::activateCurrentTab()
{
    if (m_tabControl)
        m_tabControl->activateTab(m_tabControl->currentTabIndex());
}

bool CAuthSettingPage::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    switch (eventId) {
    case KZ::EVENT_TAB_ACTIVATED:
        if (IAuthSettingTabPage* tab = tabPageAt(param2)) {
            // Some tab pages are born disabled and wait for their first activation.
            tab->setEnabled(true);
            tab->reloadData();
            tab->onActive();
            deliverEvent(EVENT_TAB_SHOWN, 0, param2, QString(), nullptr);
        }
        return true;
    case EVENT_SET_PAGE_KEY:
        m_key = text;
        return true;
    case EVENT_RELOAD_NAVIGATOR: {
        const bool handled = CBaseWidget::handleEvent(eventId, param1, param2, text, data);
        if (IAuthSettingTabPage* tab = currentTabPage())
            tab->onActive();
        return handled;
    }
    case KZ::EVENT_BUTTON_CLICKED:
        if (isCornerButton(data) && !m_handingOver)
            return handOverToCurrentTab(eventId, param1, param2, text, data);
        break;
    default:
        break;
    }
    return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
}

bool CAuthSettingPage::focusNextPrevChild(bool next)
{
    const QWidget* focused = window()->focusWidget();
    // Qt looks for a successor of what is being hidden or disabled; nobody has chosen the one that
    // it would find.
    if (focused && isAncestorOf(focused) &&
        !(focused->isVisibleTo(window()) && focused->isEnabled())) {
        window()->setFocus(Qt::OtherFocusReason);
        return true;
    }
    return CTabOrder::step(window(), next);
}

IAuthSettingTabPage* CAuthSettingPage::tabPageAt(int index) const
{
    return m_tabControl ? qobject_cast<IAuthSettingTabPage*>(m_tabControl->getTabWidget(index))
                        : nullptr;
}

IAuthSettingTabPage* CAuthSettingPage::currentTabPage() const
{
    return m_tabControl ? tabPageAt(m_tabControl->currentTabIndex()) : nullptr;
}

bool CAuthSettingPage::isCornerButton(const void* sender) const
{
    for (const QWidget* button : m_cornerButtons) {
        if (button == sender)
            return true;
    }
    return false;
}

bool CAuthSettingPage::handOverToCurrentTab(int eventId, int param1, int param2,
                                            const QString& text, void* data)
{
    IAuthSettingTabPage* tab = currentTabPage();
    if (!tab)
        return false;
    // A tab page that does not know the command passes it up, and so back to here. One that does
    // may run a dialog, during which this page can die.
    const QPointer<QWidget> self(this);
    m_handingOver = true;
    const bool handled = tab->handleEvent(eventId, param1, param2, text, data);
    if (self)
        m_handingOver = false;
    return handled;
}

} // namespace GW
