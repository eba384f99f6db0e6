#include "backend/store/StoreLocation.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>

namespace backend {

StoreLocation StoreLocation::parse(const QString& text)
{
    static const QRegularExpression scheme(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]+):"));
    QString path = text.trimmed();
    const QRegularExpressionMatch match = scheme.match(path);
    if (match.hasMatch()) {
        if (match.captured(1).compare(QStringLiteral("sqlite"), Qt::CaseInsensitive) != 0)
            return {};
        path = path.mid(match.capturedLength());
    }
    if (path.isEmpty() || path.contains(QChar(0)))
        return {};
    return {QStringLiteral("sqlite"), QFileInfo(path).absoluteFilePath()};
}

StoreLocation StoreLocation::standard()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    return {QStringLiteral("sqlite"), QDir(folder).filePath(QStringLiteral("authsetting.db"))};
}

} // namespace backend
