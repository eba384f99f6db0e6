#include "backend/config/ExchangeZoneSetting.h"

#include "utils/LogCenter.h"

#include <QSettings>

namespace backend {

namespace {

constexpr char defaultZone[] = "Asia/Shanghai";

} // namespace

QTimeZone readExchangeTimeZone(const QString& settingsPath)
{
    const QString key = QStringLiteral("exchange/timeZone");
    const QTimeZone fallback(defaultZone);
    const QSettings settings(settingsPath, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError) {
        utils::CLogCenter::warning(
            QStringLiteral("settings file %1 cannot be read, the exchange time zone is %2")
                .arg(settingsPath, QString::fromLatin1(defaultZone)));
        return fallback;
    }
    if (!settings.contains(key))
        return fallback;
    const QString name = settings.value(key).toString();
    const QTimeZone zone(name.toUtf8());
    // Some versions of Qt take an empty name for UTC.
    if (name.isEmpty() || !zone.isValid()) {
        utils::CLogCenter::warning(
            QStringLiteral("\"%1\" in %2 is no time zone, the exchange time zone is %3")
                .arg(name, settingsPath, QString::fromLatin1(defaultZone)));
        return fallback;
    }
    return zone;
}

} // namespace backend
