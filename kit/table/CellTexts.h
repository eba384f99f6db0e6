#pragma once

#include <QCache>
#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <QString>

class QPainter;
class QPointF;

namespace KZ {

/// The shaped glyphs of the texts that a table drew last. Shaping is most of the cost of drawing a
/// short text, and neighbouring pages and reloads show mostly the same texts.
class CCellTexts
{
public:
    CCellTexts();

    /// Draws `text` in one line with its baseline beginning at `origin`, cut off with an ellipsis
    /// where it is wider than `width` pixels. Returns the width of what it drew.
    qreal draw(QPainter* painter, const QPointF& origin, const QString& text, const QFont& font,
               int width);

private:
    struct SShaped
    {
        QList<QGlyphRun> runs;
        qreal width = 0;
    };

    const SShaped& shaped(const QString& text);

    QFont m_font;
    QCache<QString, SShaped> m_texts;
};

} // namespace KZ
