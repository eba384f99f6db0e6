#include "backend/store/StoreLocation.h"

#include "backend/store/postgresql/ServerUrl.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

namespace backend {

namespace {

StoreLocation fileAt(const QString& path)
{
    StoreLocation location;
    location.engine = QStringLiteral("sqlite");
    location.path = path;
    return location;
}

} // namespace

bool StoreLocation::isServer() const
{
    return engine == QStringLiteral("postgresql");
}

QString StoreLocation::displayName() const
{
    if (!isServer())
        return QFileInfo(path).fileName();
    return QStringLiteral("%1 · %2").arg(host.isEmpty() ? QStringLiteral("localhost") : host,
                                         database);
}

QString StoreLocation::standardSslMode() const
{
    const bool isHere = host.isEmpty() || host.startsWith(QLatin1Char('/')) ||
                        host == QStringLiteral("localhost") || host == QStringLiteral("::1") ||
                        host.startsWith(QStringLiteral("127."));
    return isHere ? QStringLiteral("prefer") : QStringLiteral("verify-full");
}

StoreLocation StoreLocation::parse(const QString& text, QString* error)
{
    static const QRegularExpression scheme(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]+):"));
    QString path = text.trimmed();
    const QRegularExpressionMatch match = scheme.match(path);
    if (match.hasMatch()) {
        const QString engine = match.captured(1).toLower();
        if (engine == QStringLiteral("postgresql"))
            return parseServerUrl(path, error);
        if (engine != QStringLiteral("sqlite"))
            path.clear();
        path = path.mid(match.capturedLength());
    }
    if (path.isEmpty() || path.contains(QChar(0))) {
        if (error)
            *error = QStringLiteral("应为文件路径、sqlite:路径或 postgresql://用户@主机/数据库。");
        return {};
    }
    return fileAt(QFileInfo(path).absoluteFilePath());
}

StoreLocation StoreLocation::standard()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return fileAt(QDir(folder).filePath(QStringLiteral("authsetting.db")));
}

} // namespace backend
