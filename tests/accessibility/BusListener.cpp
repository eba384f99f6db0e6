#include "tests/accessibility/BusListener.h"

#include <QTextStream>

#include <cstdio>

namespace {

const QString EVENTS = QStringLiteral("org.a11y.atspi.Event.Object");

/// An event tells its kind and then numbers.
constexpr qsizetype KIND = 0;
constexpr qsizetype FIRST_NUMBER = 1;

} // namespace

BusListener::BusListener(const QDBusConnection& bus) : m_bus(bus)
{
    m_bus.connect(QString(), QString(), EVENTS, QStringLiteral("StateChanged"), this,
                  SLOT(stateChanged(QDBusMessage)));
    m_bus.connect(QString(), QString(), EVENTS, QStringLiteral("PropertyChange"), this,
                  SLOT(propertyChanged(QDBusMessage)));
}

void BusListener::listenTo(const BusObject& program)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/registry"),
        QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("RegisterEvent"));
    message.setArguments({QStringLiteral("object:")});
    m_bus.call(message);
    // The program hears of the listener, asks the registry what he wants, and has the answer: each
    // question here comes after one of these steps.
    program.name();
    BusObject::desktop(m_bus).name();
    program.name();
    say(QStringLiteral("listening"));
}

void BusListener::say(const QString& line)
{
    QTextStream(stdout) << line << '\n' << Qt::flush;
}

/// Asked once per object, so that no message is gone before its turn.
QString BusListener::roleOf(const BusObject& object)
{
    const QString path = object.address().path;
    const auto found = m_roles.constFind(path);
    return found == m_roles.cend() ? *m_roles.insert(path, object.roleName()) : *found;
}

void BusListener::stateChanged(const QDBusMessage& event)
{
    const QVariantList arguments = event.arguments();
    if (arguments.value(KIND).toString() != QLatin1String("showing") ||
        arguments.value(FIRST_NUMBER).toInt() == 0)
        return;
    const BusObject object(m_bus, {event.service(), event.path()});
    const QString role = roleOf(object);
    if (role == QLatin1String("notification") || role == QLatin1String("progress bar"))
        say(role + QStringLiteral(" \"") + object.name() + u'"');
}

void BusListener::propertyChanged(const QDBusMessage& event)
{
    if (event.arguments().value(KIND).toString() != QLatin1String("accessible-value"))
        return;
    const BusObject object(m_bus, {event.service(), event.path()});
    if (roleOf(object) != QLatin1String("progress bar"))
        return;
    // The event does not tell the value, and the work may be over when it is asked for.
    const QString value = object.value();
    if (!value.isEmpty())
        say(QStringLiteral("progress bar ") + value);
}
