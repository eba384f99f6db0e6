#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <unistd.h>

/// One run of authsetting-admin to its end, without a terminal.
class AdminProgram
{
public:
    AdminProgram(const QString& store, const QStringList& arguments, const QByteArray& input = {})
        : AdminProgram(QStringList{QStringLiteral("--store"), store} + arguments, input)
    {
    }
    explicit AdminProgram(const QStringList& arguments, const QByteArray& input = {})
    {
        QProcess process;
        // Away from the terminal that the tests may have been started on.
        process.setChildProcessModifier([] { ::setsid(); });
        process.start(QStringLiteral(ADMIN_PROGRAM), arguments);
        process.write(input);
        process.closeWriteChannel();
        if (!process.waitForFinished(120'000) || process.exitStatus() != QProcess::NormalExit)
            return;
        code = process.exitCode();
        output = QString::fromUtf8(process.readAllStandardOutput());
        complaints = QString::fromUtf8(process.readAllStandardError());
    }

    /// -1 for a run that did not end by itself.
    int code = -1;
    QString output;
    QString complaints;
};

/// Writes a file that only its owner may read, unless `permissions` say otherwise.
inline QString writeFile(const QString& path, const QByteArray& bytes,
                         QFile::Permissions permissions = QFile::ReadOwner | QFile::WriteOwner)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() ||
        !file.setPermissions(permissions))
        return QString();
    return path;
}
