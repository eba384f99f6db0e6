// A listener's side of the accessibility bus, as a program of its own: what it prints is what a
// screen reader could say about another program.
//
//   accessibility_walker tree PROGRAM         what the program shows: role, name and states
//   accessibility_walker press PROGRAM NAME   presses or ticks the control called NAME
//   accessibility_walker listen PROGRAM       what is said by itself, until it is ended

#include "tests/accessibility/BusListener.h"
#include "tests/accessibility/BusObject.h"

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int PATIENCE_MS = 20000;
constexpr int NOT_FOUND = 1;

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

QDBusConnection accessibilityBus()
{
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
        QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
    const QDBusMessage reply = QDBusConnection::sessionBus().call(question);
    return QDBusConnection::connectToBus(reply.arguments().value(0).toString(),
                                         QStringLiteral("accessibility"));
}

BusObject findProgram(const QDBusConnection& bus, const QString& name)
{
    const QList<BusObject> programs = BusObject::desktop(bus).children();
    for (const BusObject& program : programs) {
        if (program.name() == name)
            return program;
    }
    return {};
}

/// Boxes that only hold others are passed over, as readers do; what they hold takes their place.
bool isMereBox(const BusObject& object)
{
    const QString role = object.roleName();
    const bool isBox = role == QLatin1String("filler") || role == QLatin1String("panel") ||
                       role == QLatin1String("layered pane");
    return isBox && object.name().isEmpty();
}

void print(const BusObject& object, int depth)
{
    QStringList states = object.states();
    if (!states.contains(QLatin1String("showing")))
        return;
    if (!isMereBox(object)) {
        QStringList told;
        for (const char* state : {"busy", "checked", "expandable", "expanded"}) {
            if (states.contains(QLatin1String(state)))
                told.append(QLatin1String(state));
        }
        if (!states.contains(QLatin1String("enabled")))
            told.append(QStringLiteral("disabled"));
        out() << QString(2 * depth, u' ') << object.roleName() << " \"" << object.name() << '"';
        if (!told.isEmpty())
            out() << ' ' << told.join(u' ');
        const QString content = object.content();
        if (!content.isEmpty() && content != object.name())
            out() << " reads \"" << content << '"';
        if (!object.value().isEmpty())
            out() << " value " << object.value();
        out() << '\n';
        ++depth;
    }
    const QList<BusObject> children = object.children();
    for (const BusObject& child : children)
        print(child, depth);
}

bool press(const BusObject& object, const QString& name)
{
    if (object.name() == name && !object.actions().isEmpty())
        return object.doAction(0);
    const QList<BusObject> children = object.children();
    for (const BusObject& child : children) {
        if (press(child, name))
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    const QDBusConnection bus = accessibilityBus();
    BusListener listener(bus);
    // A program announces itself on the bus some time after its start.
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &application, [&] {
        const BusObject program = findProgram(bus, arguments.value(2));
        if (!program.isValid())
            return;
        timer.stop();
        if (command == QLatin1String("listen")) {
            listener.listenTo(program);
            return;
        }
        if (command == QLatin1String("press")) {
            QCoreApplication::exit(press(program, arguments.value(3)) ? 0 : NOT_FOUND);
            return;
        }
        const QList<BusObject> windows = program.children();
        for (const BusObject& window : windows)
            print(window, 0);
        out().flush();
        QCoreApplication::exit(0);
    });
    timer.start();
    QTimer::singleShot(PATIENCE_MS, &application, [&] {
        if (timer.isActive())
            QCoreApplication::exit(NOT_FOUND);
    });
    return QCoreApplication::exec();
}
