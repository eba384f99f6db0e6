#pragma once

#include "kit/widgets/BaseWidget.h"

#include <QString>

#include <boost/function.hpp>

namespace GW {

/// Base of every tab page: who it is, what it shows, and how it waits for the server.
///
/// Its hosting CAuthSettingPage activates it (on showing the page, on a click on the tab, on the
/// client's change signal): that enables it, calls reloadData() and then the kit's onActive(),
/// which a tab page may override for what has to follow a reload made for the user. onActive()
/// follows likewise after every EVENT_RELOAD_NAVIGATOR that the tab page delivers; the kit may call
/// it more often. Owned by its page through the Qt parent chain. GUI thread only.
class IAuthSettingTabPage : public KZ::CBaseWidget
{
    Q_OBJECT

public:
    /// `subPageId` is -1 for the tabs of a top-level page.
    IAuthSettingTabPage(int pageId, int subPageId, int tabPageId, QWidget* parent);
    ~IAuthSettingTabPage() override;

    /// Refills the tab page from the services.
    virtual void reloadData() = 0;

    int pageId() const { return m_pageId; }
    int subPageId() const { return m_subPageId; }
    int tabPageId() const { return m_tabPageId; }

    /// The account key or sub-user identifier that the tab shows; setting it reloads nothing.
    QString key() const { return m_key; }
    void setKey(QString key);

    /// Makes the dialog busy and notes the time; call it right before a request to the client.
    void beginRequest();

    /// Tells the user how many requests of a large batch are answered, after beginRequest() and
    /// then after each answer. Batches that are over in a moment show nothing.
    void showProgress(qsizetype answered, qsizetype total);

    /// Makes the dialog idle and then runs `completion`: at once, or when 0.7 s have passed since
    /// beginRequest(), so that the busy bar never only flashes. Of several completions handed over
    /// within that time the last one runs, once for each. Never pass an empty function: running it
    /// throws boost::bad_function_call.
    void finishRequest(boost::function<void()> completion);

public Q_SLOTS:
    /// Ends the wait that finishRequest() began.
    void slotTimerEnable();

private:
    void setWaiting(bool waiting);

    int m_pageId;
    int m_subPageId;
    int m_tabPageId;
    QString m_key;
    double m_requestStart;
    boost::function<void()> m_pendingCompletion;
};

} // namespace GW
