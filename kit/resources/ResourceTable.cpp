#include "kit/resources/ResourceTable.h"

#include "utils/LogCenter.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>

// Q_INIT_RESOURCE has to stand outside of any namespace; a static build of the kit needs it.
static void initResources()
{
    Q_INIT_RESOURCE(kit);
}

namespace KZ {

namespace {

constexpr QLatin1String ROOT(":/kzkit/");

QJsonObject readFile(const QString& name)
{
    QFile file(ROOT + name);
    if (!file.open(QIODevice::ReadOnly)) {
        utils::CLogCenter::error(QStringLiteral("kit resources: no file ") + name);
        return {};
    }
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &problem);
    if (!document.isObject()) {
        utils::CLogCenter::error(
            QStringLiteral("kit resources: %1 is damaged: %2").arg(name, problem.errorString()));
    }
    return document.object();
}

QString textOf(const QJsonObject& entry, const char* field)
{
    return entry.value(QLatin1String(field)).toString();
}

} // namespace

CResourceTable::CResourceTable()
{
    initResources();
    const QJsonObject sizeFile = readFile(QStringLiteral("sizes.json"));
    for (auto it = sizeFile.begin(); it != sizeFile.end(); ++it)
        addSize(it.key(), it.value().toObject());
    const QJsonObject colorFile = readFile(QStringLiteral("colors.json"));
    for (auto it = colorFile.begin(); it != colorFile.end(); ++it)
        addColor(it.key(), it.value().toObject());
    const QJsonObject iconFile = readFile(QStringLiteral("icons.json"));
    for (auto it = iconFile.begin(); it != iconFile.end(); ++it)
        addIcon(it.key(), it.value().toObject());
    const QJsonObject fontFile = readFile(QStringLiteral("fonts.json"));
    for (auto it = fontFile.begin(); it != fontFile.end(); ++it)
        addFont(it.key(), it.value().toObject());
}

const CResourceTable& CResourceTable::instance()
{
    static const CResourceTable table;
    return table;
}

void CResourceTable::addSize(const QString& key, const QJsonObject& entry)
{
    const QJsonValue value = entry.value(QLatin1String("value"));
    if (value.isDouble())
        sizes.insert(key, value.toInt());
    const QJsonValue compact = entry.value(QLatin1String("compact"));
    if (compact.isDouble())
        compactSizes.insert(key, compact.toInt());
}

void CResourceTable::addColor(const QString& key, const QJsonObject& entry)
{
    const ThemedColor color{QColor(textOf(entry, "light")), QColor(textOf(entry, "dark"))};
    if (color.light.isValid() && color.dark.isValid())
        colors.insert(key, color);
}

void CResourceTable::addIcon(const QString& key, const QJsonObject& entry)
{
    const QString folder = ROOT + QStringLiteral("icons/");
    IconEntry icon{{folder + textOf(entry, "light"), folder + textOf(entry, "dark")},
                   textOf(entry, "color")};
    if (QFile::exists(icon.file.light) && QFile::exists(icon.file.dark))
        icons.insert(key, icon);
}

void CResourceTable::addFont(const QString& key, const QJsonObject& entry)
{
    QStringList families;
    const QJsonArray names = entry.value(QLatin1String("families")).toArray();
    for (const QJsonValueConstRef name : names)
        families.append(name.toString());
    const int size = entry.value(QLatin1String("size")).toInt();
    if (families.isEmpty() || size <= 0)
        return;
    QFont font;
    font.setFamilies(families);
    font.setPixelSize(size);
    font.setWeight(QFont::Weight(entry.value(QLatin1String("weight")).toInt(QFont::Normal)));
    fonts.insert(key, font);
}

void CResourceTable::reportMissing(const QString& kind, const QString& key)
{
    static QSet<QString> reported;
    const QString name = kind + QLatin1Char(' ') + key;
    if (reported.contains(name))
        return;
    reported.insert(name);
    utils::CLogCenter::error(QStringLiteral("kit resources: undefined ") + name);
}

} // namespace KZ
