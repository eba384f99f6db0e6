#include "backend/store/postgresql/ServerUrl.h"

#include "backend/store/TextRules.h"

#include <QStringList>
#include <QUrl>
#include <QUrlQuery>

namespace backend {

namespace {

bool isServerName(const QString& name)
{
    return !name.isEmpty() && name.toUtf8().size() <= StoreLocation::maxServerNameLength &&
           !hasHostileCharacter(name);
}

QString readOption(const QString& name, const QString& value, StoreLocation* location)
{
    static const QStringList modes{QStringLiteral("disable"),   QStringLiteral("allow"),
                                   QStringLiteral("prefer"),    QStringLiteral("require"),
                                   QStringLiteral("verify-ca"), QStringLiteral("verify-full")};
    if (name == QStringLiteral("password"))
        return QStringLiteral("地址中不能写密码，密码只在登录时输入。");
    if (name == QStringLiteral("sslmode")) {
        if (!modes.contains(value))
            return QStringLiteral("sslmode 的值“%1”不对。").arg(value);
        location->sslMode = value;
        return {};
    }
    if (name == QStringLiteral("sslrootcert")) {
        // The driver takes a semicolon for the end of an option.
        if (!value.startsWith(QLatin1Char('/')) || value.contains(QLatin1Char(';')) ||
            hasHostileCharacter(value))
            return QStringLiteral("sslrootcert 应为证书文件的绝对路径。");
        location->sslRootCertificate = value;
        return {};
    }
    if (name == QStringLiteral("host") && location->host.isEmpty() &&
        value.startsWith(QLatin1Char('/')) && !hasHostileCharacter(value)) {
        location->host = value;
        return {};
    }
    return QStringLiteral("地址中的参数“%1”不可用。").arg(name);
}

QString readUrl(const QString& text, StoreLocation* location)
{
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.hasFragment())
        return QStringLiteral("应为 postgresql://用户@主机/数据库。");
    if (url.userInfo(QUrl::FullyEncoded).contains(QLatin1Char(':')))
        return QStringLiteral("地址中不能写密码，密码只在登录时输入。");
    location->engine = QStringLiteral("postgresql");
    location->host = url.host(QUrl::FullyDecoded);
    location->port = url.port(location->port);
    location->user = url.userName(QUrl::FullyDecoded);
    location->database = url.path(QUrl::FullyDecoded).mid(1);
    if (!isServerName(location->database) || location->database.contains(QLatin1Char('/')))
        return QStringLiteral("没有写明数据库的名称。");
    if (!location->user.isEmpty() && !isServerName(location->user))
        return QStringLiteral("用户名不可用。");
    if (location->port < 1)
        return QStringLiteral("端口不可用。");
    const auto options = QUrlQuery(url).queryItems(QUrl::FullyDecoded);
    for (const auto& [name, value] : options) {
        QString problem = readOption(name, value, location);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace

StoreLocation parseServerUrl(const QString& text, QString* error)
{
    StoreLocation location;
    const QString problem = readUrl(text, &location);
    if (problem.isEmpty())
        return location;
    if (error)
        *error = problem;
    return {};
}

} // namespace backend
