#include "tests/accessibility/Walker.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int PATIENCE_MS = 20000;

void start(QProcess& process, const QString& command, const QStringList& arguments)
{
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(ACCESSIBILITY_WALKER),
                  QStringList{command, QCoreApplication::applicationName()} + arguments);
}

/// Whether the walker did what it was told.
bool run(QProcess& process, const QString& command, const QStringList& arguments)
{
    QSignalSpy finished(&process, &QProcess::finished);
    start(process, command, arguments);
    if (process.state() != QProcess::NotRunning && !finished.wait(PATIENCE_MS)) {
        process.kill();
        process.waitForFinished();
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

Walker::~Walker()
{
    m_listener.kill();
    m_listener.waitForFinished();
}

QStringList Walker::heard()
{
    QProcess process;
    if (!run(process, QStringLiteral("tree"), {}))
        return {};
    return QString::fromUtf8(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

bool Walker::press(const QString& name)
{
    QProcess process;
    return run(process, QStringLiteral("press"), {name});
}

bool Walker::await(const QString& line)
{
    const auto read = [this] {
        while (m_listener.canReadLine())
            m_lines.append(QString::fromUtf8(m_listener.readLine()).trimmed());
    };
    return QTest::qWaitFor(
        [&] {
            read();
            return m_lines.contains(line);
        },
        PATIENCE_MS);
}

bool Walker::listen()
{
    start(m_listener, QStringLiteral("listen"), {});
    const bool isListening = await(QStringLiteral("listening"));
    m_lines.clear();
    return isListening;
}

QStringList Walker::said(const QString& last)
{
    await(last);
    return m_lines;
}
