#include "kit/tips/TipTexts.h"

namespace KZ {

namespace {

constexpr int KIND_HINT = 2;
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

void CTipTexts::add(const QString& text, int kind)
{
    m_all.append(text);
    m_hintsOnly = m_hintsOnly && kind == KIND_HINT;
    if (!m_entries.isEmpty() && m_entries.last().kind == kind && m_entries.last().text == text)
        ++m_entries.last().count;
    else
        m_entries.append({text, kind, 1});
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
