#include "benchmarks/support/DialogPage.h"

#include "benchmarks/support/Painting.h"
#include "kit/events/EventDeliverer.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/StandardTabControl.h"

#include <QTableView>

namespace bench {

DialogPage::DialogPage(int pageId, int subPageId, const QString& key, int tabIndex)
{
    m_dialog.load();
    m_dialog.show();
    m_dialog.showPage(pageId, subPageId, key, tabIndex);
    settle();
    const auto controls = m_dialog.findChildren<KZ::CStandardTabControl*>();
    for (KZ::CStandardTabControl* control : controls) {
        if (control->isVisible())
            m_tabs = control;
    }
    if (!m_tabs)
        qFatal("the dialog shows no tabs");
    m_tabPage = m_tabs->getTabWidget(m_tabs->currentTabIndex());
    m_table = m_tabPage->findChild<KZ::COddEvenRowTable*>();
    if (!m_table)
        qFatal("the tab has no table");
}

void DialogPage::reload()
{
    m_tabs->activateTab(m_tabs->currentTabIndex());
}

QWidget* DialogPage::viewport() const
{
    return m_table->view()->viewport();
}

void DialogPage::deliver(int eventId, int param1, int param2)
{
    KZ::castEventDeliverer(m_tabPage)->handleEvent(eventId, param1, param2, QString(), nullptr);
}

} // namespace bench
