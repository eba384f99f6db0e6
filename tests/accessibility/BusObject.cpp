#include "tests/accessibility/BusObject.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>

#include <array>
#include <utility>

QDBusArgument& operator<<(QDBusArgument& argument, const BusAddress& address)
{
    argument.beginStructure();
    argument << address.service << QDBusObjectPath(address.path);
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, BusAddress& address)
{
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> address.service >> path;
    argument.endStructure();
    address.path = path.path();
    return argument;
}

namespace {

struct StateName
{
    int bit;
    const char* name;
};

// The numbers of the bus's own list of states.
constexpr std::array STATES{
    StateName{3, "busy"},        StateName{4, "checked"},    StateName{7, "editable"},
    StateName{8, "enabled"},     StateName{9, "expandable"}, StateName{10, "expanded"},
    StateName{11, "focusable"},  StateName{12, "focused"},   StateName{16, "modal"},
    StateName{22, "selectable"}, StateName{23, "selected"},  StateName{25, "showing"},
    StateName{30, "visible"},    StateName{41, "checkable"}, StateName{43, "read-only"}};

void registerTypes()
{
    static const bool done = [] {
        qDBusRegisterMetaType<BusAddress>();
        qDBusRegisterMetaType<QList<BusAddress>>();
        return true;
    }();
    static_cast<void>(done);
}

const QString ACCESSIBLE = QStringLiteral("org.a11y.atspi.Accessible");
const QString ACTION = QStringLiteral("org.a11y.atspi.Action");
const QString TEXT = QStringLiteral("org.a11y.atspi.Text");
const QString VALUE = QStringLiteral("org.a11y.atspi.Value");

} // namespace

BusObject::BusObject(const QDBusConnection& bus, BusAddress address)
    : m_bus(bus), m_address(std::move(address))
{
    registerTypes();
}

BusObject BusObject::desktop(const QDBusConnection& bus)
{
    return {bus,
            {QStringLiteral("org.a11y.atspi.Registry"),
             QStringLiteral("/org/a11y/atspi/accessible/root")}};
}

QDBusMessage BusObject::call(const QString& interface, const QString& method,
                             const QVariantList& arguments) const
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(m_address.service, m_address.path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message);
}

QVariant BusObject::property(const QString& interface, const QString& name) const
{
    const QDBusMessage reply = call(QStringLiteral("org.freedesktop.DBus.Properties"),
                                    QStringLiteral("Get"), {interface, name});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

bool BusObject::has(const QString& interface) const
{
    const QDBusMessage reply = call(ACCESSIBLE, QStringLiteral("GetInterfaces"));
    return reply.arguments().value(0).toStringList().contains(interface);
}

QString BusObject::roleName() const
{
    return call(ACCESSIBLE, QStringLiteral("GetRoleName")).arguments().value(0).toString();
}

QString BusObject::name() const
{
    return property(ACCESSIBLE, QStringLiteral("Name")).toString();
}

QStringList BusObject::states() const
{
    const QDBusMessage reply = call(ACCESSIBLE, QStringLiteral("GetState"));
    const auto words = qdbus_cast<QList<uint>>(reply.arguments().value(0));
    QStringList names;
    for (const StateName& state : STATES) {
        const int word = state.bit / 32;
        if (word < words.size() && (words.at(word) >> (state.bit % 32)) % 2 == 1)
            names.append(QString::fromLatin1(state.name));
    }
    return names;
}

QList<BusObject> BusObject::children() const
{
    const QDBusMessage reply = call(ACCESSIBLE, QStringLiteral("GetChildren"));
    QList<BusObject> objects;
    const auto addresses = qdbus_cast<QList<BusAddress>>(reply.arguments().value(0));
    for (const BusAddress& address : addresses)
        objects.append(BusObject(m_bus, address));
    return objects;
}

QString BusObject::content() const
{
    if (!has(TEXT))
        return {};
    constexpr int start = 0;
    constexpr int end = -1;
    return call(TEXT, QStringLiteral("GetText"), {start, end}).arguments().value(0).toString();
}

QStringList BusObject::actions() const
{
    if (!has(ACTION))
        return {};
    QStringList names;
    const int count = property(ACTION, QStringLiteral("NActions")).toInt();
    for (int index = 0; index < count; ++index)
        names.append(
            call(ACTION, QStringLiteral("GetName"), {index}).arguments().value(0).toString());
    return names;
}

bool BusObject::doAction(int index) const
{
    return call(ACTION, QStringLiteral("DoAction"), {index}).arguments().value(0).toBool();
}

QString BusObject::value() const
{
    if (!has(VALUE))
        return {};
    QStringList numbers;
    for (const char* name : {"CurrentValue", "MinimumValue", "MaximumValue"})
        numbers.append(property(VALUE, QString::fromLatin1(name)).toString());
    return numbers.join(u' ');
}
