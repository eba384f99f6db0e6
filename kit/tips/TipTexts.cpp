#include "kit/tips/TipTexts.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace KZ {

namespace {

constexpr int KIND_HINT = 2;
constexpr int MILLISECONDS_PER_HUNDREDTH = 10;
constexpr int LONGEST_TIME = std::numeric_limits<int>::max();
constexpr char16_t CONTROL_PICTURES = 0x2400;
constexpr char16_t PICTURE_OF_DELETE = 0x2421;

bool isInvisible(QChar character)
{
    const QChar::Category category = character.category();
    return category == QChar::Other_Control || category == QChar::Other_Format;
}

QString visibleForm(const QString& text)
{
    QString shown = text.left(CTipTexts::SHOWN_CHARACTERS);
    const bool cut = shown.size() < text.size();
    if (cut && shown.back().isHighSurrogate())
        shown.chop(1);
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (qsizetype i = 0; i < shown.size(); ++i) {
        const QChar character = shown.at(i);
        if (character.isSurrogate()) {
            const bool isPair = character.isHighSurrogate() && i + 1 < shown.size() &&
                                shown.at(i + 1).isLowSurrogate();
            if (isPair)
                ++i;
            else
                shown[i] = QChar::ReplacementCharacter;
        } else if (character == QChar::LineSeparator || character == QChar::ParagraphSeparator ||
                   character == QLatin1Char('\r')) {
            shown[i] = QLatin1Char('\n');
        } else if (character == QLatin1Char('\n')) {
            continue;
        } else if (character.unicode() < u' ') {
            shown[i] = QChar(static_cast<char16_t>(CONTROL_PICTURES + character.unicode()));
        } else if (character.unicode() == 0x7f) {
            shown[i] = QChar(PICTURE_OF_DELETE);
        } else if (isInvisible(character)) {
            shown[i] = QChar::ReplacementCharacter;
        }
    }
    if (cut)
        shown += QChar(u'…');
    return shown;
}

} // namespace

void CTipTexts::add(const QString& text, int kind, int duration)
{
    take({text, kind, duration, false});
}

void CTipTexts::addEcho(const QString& text, int kind, int duration)
{
    take({text, kind, duration, true});
}

void CTipTexts::withdraw(const QString& text, int kind, int count)
{
    QVector<Text> kept = m_all;
    for (qsizetype i = kept.size() - 1; i >= 0 && count > 0; --i) {
        if (kept.at(i).kind != kind || kept.at(i).text != text)
            continue;
        kept.removeAt(i);
        --count;
    }
    const int withdrawals = m_withdrawals + 1;
    *this = CTipTexts();
    m_withdrawals = withdrawals;
    for (const Text& remaining : std::as_const(kept))
        take(remaining);
}

void CTipTexts::take(const Text& text)
{
    m_all.append(text);
    m_untimed = m_untimed || text.duration <= 0;
    const int time = std::clamp(text.duration, 0, LONGEST_TIME / MILLISECONDS_PER_HUNDREDTH) *
                     MILLISECONDS_PER_HUNDREDTH;
    m_longestTime = std::max(m_longestTime, time);
    if (text.isEcho)
        return;
    m_totalTime = time > LONGEST_TIME - m_totalTime ? LONGEST_TIME : m_totalTime + time;
    m_hintsOnly = m_hintsOnly && text.kind == KIND_HINT;
    ++m_shownCount;
    const bool isRepeated = !m_entries.isEmpty() && m_entries.last().kind == text.kind &&
                            m_entries.last().text == text.text;
    if (isRepeated)
        ++m_entries.last().count;
    else
        m_entries.append({text.text, text.kind, 1});
}

QStringList CTipTexts::all() const
{
    QStringList texts;
    texts.reserve(m_all.size());
    for (const Text& text : m_all)
        texts.append(text.text);
    return texts;
}

QStringList CTipTexts::told() const
{
    QStringList texts;
    for (const Text& text : m_all) {
        if (!text.isEcho)
            texts.append(text.text);
    }
    return texts;
}

bool CTipTexts::areLasting() const
{
    return m_untimed || (entryCount() > 1 && !m_hintsOnly);
}

QString CTipTexts::shownText(int entry) const
{
    const Entry& shown = m_entries.at(entry);
    QString text = visibleForm(shown.text);
    if (shown.count > 1)
        text += QStringLiteral("（%1 次）").arg(shown.count);
    return text;
}

QString CTipTexts::joined() const
{
    QString text;
    for (int entry = 0; entry < entryCount(); ++entry) {
        if (entry > 0)
            text += QLatin1Char('\n');
        text += shownText(entry);
    }
    return text;
}

} // namespace KZ
