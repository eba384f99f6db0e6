#include "kit/resources/SvgIconEngine.h"

#include "kit/resources/ResourceTable.h"
#include "kit/resources/UiResource.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <algorithm>

namespace KZ {

namespace {

QByteArray coloredSvg(const QString& path, const QColor& color)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll().replace("currentColor", color.name().toLatin1());
}

} // namespace

CSvgIconEngine::CSvgIconEngine(const QString& iconKey, const QString& colorKey)
    : m_iconKey(iconKey), m_colorKey(colorKey)
{
}

void CSvgIconEngine::paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
                           QIcon::State state)
{
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    QPixmap drawn = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
    drawn.setDevicePixelRatio(ratio);
    painter->drawPixmap(QRectF(rect).toAlignedRect(), drawn);
}

QPixmap CSvgIconEngine::pixmap(const QSize& size, QIcon::Mode mode, QIcon::State)
{
    const auto& icons = CResourceTable::instance().icons;
    const auto entry = icons.constFind(m_iconKey);
    if (entry == icons.constEnd() || size.isEmpty())
        return {};
    const bool light = CUiResource::theme() == CUiResource::Theme::Light;
    const QString path = light ? entry->file.light : entry->file.dark;
    const QColor color = CUiResource::getColor(shownColorKey(mode));
    const QString cacheKey = QStringLiteral("kzkit:%1:%2:%3x%4")
                                 .arg(path, color.name())
                                 .arg(size.width())
                                 .arg(size.height());
    QPixmap drawn;
    if (QPixmapCache::find(cacheKey, &drawn))
        return drawn;
    drawn = QPixmap(size);
    drawn.fill(Qt::transparent);
    QSvgRenderer renderer(coloredSvg(path, color));
    QPainter painter(&drawn);
    const int side = std::min(size.width(), size.height());
    renderer.render(&painter,
                    QRectF((size.width() - side) / 2.0, (size.height() - side) / 2.0, side, side));
    painter.end();
    QPixmapCache::insert(cacheKey, drawn);
    return drawn;
}

QSize CSvgIconEngine::actualSize(const QSize& size, QIcon::Mode, QIcon::State)
{
    const int side = std::min(size.width(), size.height());
    return {side, side};
}

QString CSvgIconEngine::key() const
{
    return QStringLiteral("kzkit-svg");
}

bool CSvgIconEngine::isNull()
{
    return false;
}

QIconEngine* CSvgIconEngine::clone() const
{
    return new CSvgIconEngine(*this);
}

QString CSvgIconEngine::shownColorKey(QIcon::Mode mode) const
{
    if (mode == QIcon::Disabled)
        return QStringLiteral("clr_icon_disabled");
    if (!m_colorKey.isEmpty())
        return m_colorKey;
    const QString own = CResourceTable::instance().icons.value(m_iconKey).colorKey;
    return own.isEmpty() ? QStringLiteral("clr_icon") : own;
}

} // namespace KZ
