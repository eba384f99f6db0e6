#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QKeySequence>
#include <QString>
#include <QVector>

namespace KZ {
class CButton;
class CStandardTabControl;
class CWidgetList;
} // namespace KZ

namespace GW {

class IAuthSettingTabPage;

/// The right-hand area of the dialog for one place of the tree: a tab control with its tab pages,
/// and buttons beside the tabs for commands that concern the whole current tab. Owned by the
/// dialog, which keeps it for its own lifetime. GUI thread only.
class CAuthSettingPage : public KZ::CBaseWidget
{
public:
    /// `subPageId` is INT_MAX for a top-level page.
    CAuthSettingPage(int pageId, int subPageId, QWidget* parent);
    ~CAuthSettingPage() override;

    /// Appends a tab; the tab control takes `tab` over.
    void addTabPage(QString title, IAuthSettingTabPage* tab);

    /// Adds a button to the right of the tabs. A click on it, or its shortcut, reaches the current
    /// tab page's handleEvent() as EVENT_BUTTON_CLICKED with param1 = `id`.
    void addCornerButton(int id, const QString& text, const QKeySequence& shortcut,
                         const QString& toolTip);

    /// Sets the key of this page and of every tab page; reloads nothing.
    void setKey(QString key);

    /// Activates the current tab anew, which reloads it.
    void activateCurrentTab();

    int pageId() const { return m_pageId; }
    int subPageId() const { return m_subPageId; }
    QString key() const { return m_key; }
    KZ::CStandardTabControl* tabControl() const { return m_tabControl; }

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;

protected:
    /// Tab walks in reading order; what is hidden or disabled leaves the focus to the window.
    bool focusNextPrevChild(bool next) override;

private:
    IAuthSettingTabPage* tabPageAt(int index) const;
    IAuthSettingTabPage* currentTabPage() const;
    bool isCornerButton(const void* sender) const;
    bool handOverToCurrentTab(int eventId, int param1, int param2, const QString& text, void* data);

    int m_pageId;
    int m_subPageId;
    QString m_key;
    KZ::CStandardTabControl* m_tabControl;
    KZ::CWidgetList* m_corner = nullptr;
    QVector<KZ::CButton*> m_cornerButtons;
    bool m_handingOver = false;
};

} // namespace GW
