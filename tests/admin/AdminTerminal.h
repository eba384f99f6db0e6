#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/// A run of authsetting-admin on a terminal of its own, on which the test types.
class AdminTerminal
{
public:
    AdminTerminal(const QString& store, const QStringList& arguments,
                  const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        m_terminal.setProcessEnvironment(environment);
        QString command =
            QStringLiteral("'%1' --store '%2'").arg(QStringLiteral(ADMIN_PROGRAM), store);
        for (const QString& argument : arguments)
            command += QStringLiteral(" '%1'").arg(argument);
        m_terminal.start(QStringLiteral("script"),
                         {QStringLiteral("-qec"), command, QStringLiteral("/dev/null")});
    }

    /// Types `keys` once `question` stands there for the first time after what was typed before.
    bool answer(const QByteArray& question, const QByteArray& keys)
    {
        while (m_shown.indexOf(question, m_answered) < 0) {
            if (!m_terminal.waitForReadyRead(60'000))
                return false;
            m_shown += m_terminal.readAllStandardOutput();
        }
        m_answered = m_shown.size();
        m_terminal.write(keys);
        return true;
    }
    /// The exit code; -1 for a run that did not end by itself.
    int finish()
    {
        if (!m_terminal.waitForFinished(60'000) || m_terminal.exitStatus() != QProcess::NormalExit)
            return -1;
        m_shown += m_terminal.readAllStandardOutput();
        return m_terminal.exitCode();
    }
    const QByteArray& shown() const { return m_shown; }

private:
    QProcess m_terminal;
    QByteArray m_shown;
    qsizetype m_answered = 0;
};
