#include "admin/backup/BackupScript.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRegularExpression>

namespace admin {

namespace {

constexpr char firstLine[] = "-- AuthSetting backup 1\n";
constexpr char lastLineStart[] = "-- sha256 ";

QString failure(const QFile& file)
{
    return QStringLiteral("备份文件 %1：%2").arg(file.fileName(), file.errorString());
}

} // namespace

QString BackupScript::begin(const QString& path, const QStringList& roleStatements)
{
    QFile file(path);
    QByteArray text = firstLine;
    // The verifiers must not get into the log of the server that is restored.
    text += "SET log_statement = 'none';\nSET log_min_duration_statement = -1;\n";
    for (const QString& statement : roleStatements)
        text += statement.toUtf8() + ";\n";
    if (!file.open(QIODevice::WriteOnly | QIODevice::ExistingOnly) ||
        file.write(text) != text.size() || !file.flush())
        return failure(file);
    return {};
}

QString BackupScript::seal(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        return failure(file);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&file))
        return failure(file);
    const QByteArray line = lastLineStart + hash.result().toHex() + '\n';
    if (!file.seek(file.size()) || file.write(line) != line.size() || !file.flush())
        return failure(file);
    return {};
}

QString BackupScript::check(const QString& path, QStringList* logins)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file);
    QByteArray line = file.readLine();
    if (line != firstLine)
        return QStringLiteral("%1 不是服务器存储的备份").arg(path);
    static const QRegularExpression login(QStringLiteral("^CREATE ROLE (as_[0-9a-f]{40});$"));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QByteArray last;
    logins->clear();
    for (; !line.isEmpty(); line = file.readLine()) {
        hash.addData(last);
        last = line;
        const QRegularExpressionMatch match = login.match(QString::fromUtf8(line.trimmed()));
        if (match.hasMatch())
            logins->append(match.captured(1));
    }
    if (last != lastLineStart + hash.result().toHex() + '\n')
        return QStringLiteral("备份 %1 不完整或被改动过").arg(path);
    return {};
}

} // namespace admin
