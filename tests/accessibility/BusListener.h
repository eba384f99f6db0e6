#pragma once

#include "tests/accessibility/BusObject.h"

#include <QDBusMessage>
#include <QHash>
#include <QObject>

/// Prints, one per line, what a screen reader says by itself while the user waits: a message that
/// appears, a progress bar that appears, and each of its values. Event by event, in the order in
/// which the bus brings them.
class BusListener : public QObject
{
    Q_OBJECT

public:
    explicit BusListener(const QDBusConnection& bus);

    /// Returns when `program` knows that somebody listens.
    void listenTo(const BusObject& program);

private Q_SLOTS:
    void stateChanged(const QDBusMessage& event);
    void propertyChanged(const QDBusMessage& event);

private:
    void say(const QString& line);
    QString roleOf(const BusObject& object);

    QDBusConnection m_bus;
    QHash<QString, QString> m_roles;
};
