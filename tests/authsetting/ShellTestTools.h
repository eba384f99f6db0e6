#pragma once

#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingPage.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/BaseWidget.h"
#include "kit/widgets/StandardTabControl.h"
#include "utils/Clock.h"

#include <QTabBar>

/// The top of an event chain: records what reaches it and says that it is handled.
class EventRecorder : public KZ::CBaseWidget
{
public:
    struct Event
    {
        int id;
        int param1;
        int param2;
        QString text;
        void* data;
    };

    EventRecorder() : CBaseWidget(nullptr) {}

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override
    {
        events.append({eventId, param1, param2, text, data});
        return answer;
    }

    QVector<Event> of(int eventId) const
    {
        QVector<Event> found;
        for (const Event& event : events) {
            if (event.id == eventId)
                found.append(event);
        }
        return found;
    }

    QVector<int> ids() const
    {
        QVector<int> found;
        for (const Event& event : events)
            found.append(event.id);
        return found;
    }

    QVector<Event> events;
    bool answer = true;
};

/// A clock for utils::clock() that stands where the test sets it.
class StandingClock
{
public:
    StandingClock()
    {
        utils::setClockSource([this] { return now; });
    }
    ~StandingClock() { utils::setClockSource({}); }
    StandingClock(const StandingClock&) = delete;
    StandingClock& operator=(const StandingClock&) = delete;

    double now = 100.0;
};

/// The dialog with what its subclasses may use.
class OpenDialog : public GW::CAuthSettingDialog
{
public:
    using CAuthSettingDialog::CAuthSettingDialog;
    using CAuthSettingDialog::createPage;
    using CAuthSettingDialog::handleEvent;
    using CAuthSettingDialog::hidePages;
    using CAuthSettingDialog::reloadNavigator;
    using CAuthSettingDialog::resetLayout;
    using CAuthSettingDialog::setDialogEnabled;
    using CAuthSettingDialog::slotUiUpdateAuth;

    QVector<GW::CAuthSettingPage*> pages() const
    {
        QVector<GW::CAuthSettingPage*> found;
        for (QObject* child : children()) {
            if (auto* page = dynamic_cast<GW::CAuthSettingPage*>(child))
                found.append(page);
        }
        return found;
    }

    /// The one page that is not hidden, null when there is none or more than one.
    GW::CAuthSettingPage* shownPage() const
    {
        GW::CAuthSettingPage* shown = nullptr;
        for (GW::CAuthSettingPage* page : pages()) {
            if (page->isHidden())
                continue;
            if (shown)
                return nullptr;
            shown = page;
        }
        return shown;
    }
};

inline QStringList tabTitles(const GW::CAuthSettingPage* page)
{
    QStringList titles;
    for (int index = 0; index < page->tabControl()->tabCount(); ++index)
        titles.append(page->tabControl()->tabBar()->tabText(index));
    return titles;
}

/// The texts of all tips that are shown, oldest tip first.
inline QStringList tipTexts()
{
    QStringList texts;
    for (const KZ::CMessageTip* tip : KZ::CMessageTip::visibleTips())
        texts.append(tip->texts());
    return texts;
}
