#pragma once

#include "kit/KitExport.h"

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QString>
#include <QStringList>

namespace KZ {

/// The registry of every size, colour, icon and font that the kit and its users draw with, looked
/// up by key each time one is needed, because theme and sizes may change while windows are open.
///
/// The entries come from kit/resources/*.json, compiled into the library. An unknown key is logged
/// as an error once and answered with something visible: 16 px, magenta, a question mark, the
/// standard font. GUI thread only.
class KZKIT_EXPORT CUiResource
{
public:
    enum class Theme { Light, Dark };
    /// The usual sizes, or those with which the settings dialog fits a small screen.
    enum class SizeSet { Standard, Compact };

    CUiResource() = delete;

    /// A length in device-independent pixels; the same in both themes.
    static int getSize(const QString& key);

    /// The same length in one set of sizes, whichever is chosen.
    static int getSize(const QString& key, SizeSet set);

    static SizeSet sizeSet();

    /// Chooses the set of sizes that getSize() answers from and tells every
    /// CUiResourceChangeHandler; nothing when it is chosen. A size that has no compact value is the
    /// same in both sets.
    static void setSizeSet(SizeSet set);

    static QColor getColor(const QString& key);

    /// An icon that stays crisp at every scale and follows the theme by itself once repainted.
    static QIcon getIcon(const QString& key);

    /// The same icon drawn in the colour `colorKey` instead of its own, for coloured grounds.
    static QIcon getIcon(const QString& key, const QString& colorKey);

    /// A font with its size in device-independent pixels and Chinese families first.
    static QFont getFont(const QString& key);

    static Theme theme();

    /// Switches the theme and tells every CUiResourceChangeHandler; nothing when it is current.
    static void setTheme(Theme theme);

    /// Whether `key` is defined, with a value for both themes.
    static bool hasKey(const QString& key);

    /// Every defined key, sorted.
    static QStringList keys();

    /// Palette of the current theme. The kit's windows set it on themselves, never on the program.
    static QPalette palette();
};

} // namespace KZ
