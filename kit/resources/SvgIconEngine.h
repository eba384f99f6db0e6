#pragma once

#include <QIconEngine>
#include <QString>

class QByteArray;

namespace KZ {

/// Draws one icon of the registry from its SVG at whatever size and device pixel ratio is asked
/// for, in the current theme at the moment of drawing. Where the drawing says currentColor it
/// gets the icon's registry colour, or `colorKey` when that is not empty.
class CSvgIconEngine : public QIconEngine
{
public:
    CSvgIconEngine(const QString& iconKey, const QString& colorKey);

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QString key() const override;
    bool isNull() override;
    QIconEngine* clone() const override;

private:
    QString shownColorKey(QIcon::Mode mode) const;

    QString m_iconKey;
    QString m_colorKey;
};

} // namespace KZ
