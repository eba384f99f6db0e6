#include "kit/resources/UiResource.h"

#include "kit/resources/ResourceTable.h"
#include "kit/resources/SvgIconEngine.h"
#include "kit/resources/UiResourceChangeHandler.h"

namespace KZ {

namespace {

CUiResource::Theme currentTheme = CUiResource::Theme::Light;
CUiResource::SizeSet currentSizes = CUiResource::SizeSet::Standard;

// A tree asks ten thousand times for the same few.
QHash<QString, QIcon>& knownIcons()
{
    static QHash<QString, QIcon> icons;
    return icons;
}

void setForAllGroups(QPalette& palette, QPalette::ColorRole role, const char* key)
{
    palette.setColor(role, CUiResource::getColor(QLatin1String(key)));
}

} // namespace

int CUiResource::getSize(const QString& key)
{
    return getSize(key, currentSizes);
}

int CUiResource::getSize(const QString& key, SizeSet set)
{
    const auto& sizes = CResourceTable::instance().sizes;
    if (set == SizeSet::Compact) {
        const auto& compact = CResourceTable::instance().compactSizes;
        const auto small = compact.constFind(key);
        if (small != compact.constEnd())
            return *small;
    }
    const auto it = sizes.constFind(key);
    if (it != sizes.constEnd())
        return *it;
    CResourceTable::reportMissing(QStringLiteral("size"), key);
    return sizes.value(QStringLiteral("gw_siz_kit_unknown"), 16);
}

CUiResource::SizeSet CUiResource::sizeSet()
{
    return currentSizes;
}

void CUiResource::setSizeSet(SizeSet set)
{
    if (set == currentSizes)
        return;
    currentSizes = set;
    CUiResourceChangeHandler::notifyAll();
}

QColor CUiResource::getColor(const QString& key)
{
    const auto& colors = CResourceTable::instance().colors;
    auto it = colors.constFind(key);
    if (it == colors.constEnd()) {
        CResourceTable::reportMissing(QStringLiteral("colour"), key);
        it = colors.constFind(QStringLiteral("clr_unknown"));
        if (it == colors.constEnd())
            return QColor(Qt::magenta);
    }
    return currentTheme == Theme::Light ? it->light : it->dark;
}

QIcon CUiResource::getIcon(const QString& key)
{
    const auto known = knownIcons().constFind(key);
    if (known != knownIcons().constEnd())
        return *known;
    const QIcon icon = getIcon(key, QString());
    if (CResourceTable::instance().icons.contains(key))
        knownIcons().insert(key, icon);
    return icon;
}

QIcon CUiResource::getIcon(const QString& key, const QString& colorKey)
{
    const auto& icons = CResourceTable::instance().icons;
    if (icons.contains(key))
        return QIcon(new CSvgIconEngine(key, colorKey));
    CResourceTable::reportMissing(QStringLiteral("icon"), key);
    return QIcon(new CSvgIconEngine(QStringLiteral("gw_img_kit_unknown"), QString()));
}

QFont CUiResource::getFont(const QString& key)
{
    const auto& fonts = CResourceTable::instance().fonts;
    const auto it = fonts.constFind(key);
    if (it != fonts.constEnd())
        return *it;
    CResourceTable::reportMissing(QStringLiteral("font"), key);
    return fonts.value(QStringLiteral("fnt_default_normal"));
}

CUiResource::Theme CUiResource::theme()
{
    return currentTheme;
}

void CUiResource::setTheme(Theme theme)
{
    if (theme == currentTheme)
        return;
    currentTheme = theme;
    // Whoever compares the icon that he has with the one he is given sees that it is another.
    knownIcons().clear();
    CUiResourceChangeHandler::notifyAll();
}

bool CUiResource::hasKey(const QString& key)
{
    const CResourceTable& table = CResourceTable::instance();
    return table.sizes.contains(key) || table.colors.contains(key) || table.icons.contains(key) ||
           table.fonts.contains(key);
}

QStringList CUiResource::keys()
{
    const CResourceTable& table = CResourceTable::instance();
    QStringList all(table.sizes.keyBegin(), table.sizes.keyEnd());
    all.append(table.colors.keys());
    all.append(table.icons.keys());
    all.append(table.fonts.keys());
    all.sort();
    return all;
}

QPalette CUiResource::palette()
{
    QPalette palette;
    setForAllGroups(palette, QPalette::Window, "clr_window");
    setForAllGroups(palette, QPalette::WindowText, "clr_text");
    setForAllGroups(palette, QPalette::Base, "clr_panel");
    setForAllGroups(palette, QPalette::AlternateBase, "clr_table_row_even");
    setForAllGroups(palette, QPalette::Text, "clr_text");
    setForAllGroups(palette, QPalette::PlaceholderText, "clr_text_placeholder");
    setForAllGroups(palette, QPalette::Button, "clr_button");
    setForAllGroups(palette, QPalette::ButtonText, "clr_text");
    setForAllGroups(palette, QPalette::BrightText, "clr_text_on_accent");
    // Of text; rows and entries, which have a mark beside, take a fainter ground from the style.
    setForAllGroups(palette, QPalette::Highlight, "clr_accent");
    setForAllGroups(palette, QPalette::HighlightedText, "clr_text_on_accent");
    setForAllGroups(palette, QPalette::Link, "clr_accent_text");
    setForAllGroups(palette, QPalette::LinkVisited, "clr_accent_text");
    setForAllGroups(palette, QPalette::ToolTipBase, "clr_tool_tip");
    setForAllGroups(palette, QPalette::ToolTipText, "clr_tool_tip_text");
    // The bevel roles are what Fusion shades the parts with that the kit leaves to it.
    setForAllGroups(palette, QPalette::Light, "clr_panel");
    setForAllGroups(palette, QPalette::Midlight, "clr_button_hover");
    setForAllGroups(palette, QPalette::Mid, "clr_border");
    setForAllGroups(palette, QPalette::Dark, "clr_border_control");
    setForAllGroups(palette, QPalette::Shadow, "clr_frame");
    const QColor disabledText = getColor(QStringLiteral("clr_text_disabled"));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, disabledText);
    const QColor disabledPanel = getColor(QStringLiteral("clr_panel_disabled"));
    palette.setColor(QPalette::Disabled, QPalette::Base, disabledPanel);
    // The grey of disabled text would not stand out from the selection of the active one.
    palette.setColor(QPalette::Disabled, QPalette::Highlight,
                     getColor(QStringLiteral("clr_hover")));
    palette.setColor(QPalette::Disabled, QPalette::Button,
                     getColor(QStringLiteral("clr_button_disabled")));
    return palette;
}

} // namespace KZ
