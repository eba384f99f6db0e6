#pragma once

#include "authsetting/shell/AuthSettingDialog.h"

#include <QString>

namespace KZ {
class CStandardTabControl;
class COddEvenRowTable;
} // namespace KZ

namespace bench {

/// One page of a dialog of its own, shown as a user sees it, reached through what the library
/// exports. Construct it with the services installed.
class DialogPage
{
public:
    DialogPage(int pageId, int subPageId, const QString& key, int tabIndex);

    /// Reloads the current tab as the client's change signal does.
    void reload();
    KZ::COddEvenRowTable* table() const { return m_table; }
    /// What is painted when the table is.
    QWidget* viewport() const;
    /// The tab page itself.
    QWidget* tabPage() const { return m_tabPage; }
    /// Sends an event to the tab page as its widgets do.
    void deliver(int eventId, int param1, int param2);
    GW::CAuthSettingDialog& dialog() { return m_dialog; }

private:
    GW::CAuthSettingDialog m_dialog;
    KZ::CStandardTabControl* m_tabs = nullptr;
    QWidget* m_tabPage = nullptr;
    KZ::COddEvenRowTable* m_table = nullptr;
};

} // namespace bench
