#pragma once

#include <QProcess>
#include <QStringList>
#include <QTest>

/// A running store_helper with what it has said so far.
class HelperProcess
{
public:
    explicit HelperProcess(const QStringList& arguments)
    {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(STORE_HELPER), arguments);
    }
    ~HelperProcess()
    {
        if (m_process.state() != QProcess::NotRunning)
            kill();
    }

    /// Waits until it has said `count` lines; false when it ends or 30 s pass before.
    bool waitForLines(qsizetype count)
    {
        QElapsedTimer timer;
        timer.start();
        // Lines can be here already, and nothing would announce them again.
        read();
        while (lines.size() < count && !timer.hasExpired(30'000)) {
            if (!m_process.waitForReadyRead(1000) && m_process.state() == QProcess::NotRunning) {
                read();
                break;
            }
            read();
        }
        return lines.size() >= count;
    }
    bool waitForEnd()
    {
        const bool ended = m_process.waitForFinished(60'000);
        read();
        return ended && m_process.exitStatus() == QProcess::NormalExit;
    }
    /// Ends it as a power cut would end its process: at once, without any clean-up.
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
        read();
    }

    QStringList lines;

private:
    void read()
    {
        m_rest += m_process.readAllStandardOutput();
        const qsizetype end = m_rest.lastIndexOf('\n');
        if (end < 0)
            return;
        lines += QString::fromUtf8(m_rest.left(end)).split(QLatin1Char('\n'));
        m_rest.remove(0, end + 1);
    }

    QProcess m_process;
    QByteArray m_rest;
};
