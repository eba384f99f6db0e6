#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QString>
#include <QStringList>

/// Where an object lives on the accessibility bus.
struct BusAddress
{
    QString service;
    QString path;
};

QDBusArgument& operator<<(QDBusArgument& argument, const BusAddress& address);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusAddress& address);

/// One accessible object of another program, asked over the accessibility bus as a screen reader
/// asks. Each call goes to that program; an object that is gone answers with nothing.
class BusObject
{
public:
    BusObject() = default;
    BusObject(const QDBusConnection& bus, BusAddress address);

    /// The object under which the bus lists the programs on it.
    static BusObject desktop(const QDBusConnection& bus);

    const BusAddress& address() const { return m_address; }
    bool isValid() const { return !m_address.path.isEmpty(); }
    QString roleName() const;
    QString name() const;
    /// Those states that a listener is told or that decide what he can do, by name.
    QStringList states() const;
    QList<BusObject> children() const;
    QStringList actions() const;
    /// What stands in it to be read character by character; empty without that.
    QString content() const;
    bool doAction(int index) const;
    /// The value as a number with its range, "value minimum maximum"; empty without one.
    QString value() const;

private:
    QVariant property(const QString& interface, const QString& name) const;
    QDBusMessage call(const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;
    bool has(const QString& interface) const;

    QDBusConnection m_bus{QString()};
    BusAddress m_address;
};
