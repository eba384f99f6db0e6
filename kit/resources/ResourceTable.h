#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QMap>
#include <QString>

class QJsonObject;

namespace KZ {

/// The contents of the registry's resource files. Loaded once, constant afterwards.
class CResourceTable
{
public:
    struct ThemedText
    {
        QString light;
        QString dark;
    };
    struct ThemedColor
    {
        QColor light;
        QColor dark;
    };
    struct IconEntry
    {
        ThemedText file;
        QString colorKey;
    };

    /// Reads the files on first call; a broken file is logged and leaves its keys undefined.
    static const CResourceTable& instance();

    QHash<QString, int> sizes;
    /// The sizes that differ in the compact set.
    QHash<QString, int> compactSizes;
    QHash<QString, ThemedColor> colors;
    QHash<QString, IconEntry> icons;
    QHash<QString, QFont> fonts;

    /// Logs, once per key, that a `kind` is missing.
    static void reportMissing(const QString& kind, const QString& key);

private:
    CResourceTable();

    void addSize(const QString& key, const QJsonObject& entry);
    void addColor(const QString& key, const QJsonObject& entry);
    void addIcon(const QString& key, const QJsonObject& entry);
    void addFont(const QString& key, const QJsonObject& entry);
};

} // namespace KZ
