#pragma once

#include <QAccessible>
#include <QList>

#include <algorithm>

/// Takes down what assistive tools would be told while it lives, in the place of the platform.
/// Nothing comes before QAccessible::isActive().
class AccessibleEvents
{
public:
    AccessibleEvents()
    {
        events().clear();
        QAccessible::installUpdateHandler(note);
    }
    ~AccessibleEvents() { QAccessible::installUpdateHandler(nullptr); }
    AccessibleEvents(const AccessibleEvents&) = delete;
    AccessibleEvents& operator=(const AccessibleEvents&) = delete;

    int count(QAccessible::Event type, const QObject* object) const
    {
        const auto isIt = [type, object](const Event& event) {
            return event.type == type && event.object == object;
        };
        return int(std::count_if(events().cbegin(), events().cend(), isIt));
    }
    int count() const { return int(events().size()); }

private:
    struct Event
    {
        QAccessible::Event type;
        const QObject* object;
    };

    static QList<Event>& events()
    {
        static QList<Event> list;
        return list;
    }
    static void note(QAccessibleEvent* event) { events().append({event->type(), event->object()}); }
};
