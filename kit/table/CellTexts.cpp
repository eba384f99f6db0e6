#include "kit/table/CellTexts.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include <limits>

namespace KZ {

namespace {

/// A few pages of a wide table.
constexpr int MOST_TEXTS = 512;

} // namespace

CCellTexts::CCellTexts() : m_texts(MOST_TEXTS) {}

qreal CCellTexts::draw(QPainter* painter, const QPointF& origin, const QString& text,
                       const QFont& font, int width)
{
    if (font != m_font) {
        m_font = font;
        m_texts.clear();
    }
    const SShaped* shown = &shaped(text);
    if (shown->width > width)
        shown = &shaped(QFontMetrics(m_font).elidedText(text, Qt::ElideRight, width));
    for (const QGlyphRun& run : shown->runs)
        painter->drawGlyphRun(origin, run);
    return shown->width;
}

const CCellTexts::SShaped& CCellTexts::shaped(const QString& text)
{
    if (const SShaped* const known = m_texts.object(text))
        return *known;
    QTextLayout layout(text, m_font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    // Only a line that has been given a width is laid out and knows its ascent.
    line.setLineWidth(std::numeric_limits<int>::max());
    line.setPosition(QPointF(0, -line.ascent()));
    layout.endLayout();
    auto* const made = new SShaped{line.glyphRuns(), line.naturalTextWidth()};
    m_texts.insert(text, made);
    return *made; // NOLINT(clang-analyzer-cplusplus.NewDelete): one entry never exceeds the cache
}

} // namespace KZ
