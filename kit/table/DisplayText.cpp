#include "kit/table/DisplayText.h"

#include <QTextDocument>

#include <algorithm>

namespace KZ {

namespace {

constexpr qsizetype TOOL_TIP_LENGTH = 2000;

bool isPlain(char16_t unit)
{
    return (unit >= 0x20 && unit < 0x7f) || (unit >= 0x3000 && unit < 0xa000);
}

bool isDisguise(char32_t code)
{
    switch (QChar::category(code)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return QChar::isNonCharacter(code);
    }
}

bool isBlankControl(char32_t code)
{
    return code == u'\t' || code == u'\n' || code == u'\r' || code == 0x2028 || code == 0x2029;
}

/// Copies `text`, replacing what would disguise it.
QString replaced(QStringView text, bool blanksAsSpaces)
{
    QString safe;
    safe.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        char32_t code = unit.unicode();
        const bool pair =
            unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            code = QChar::surrogateToUcs4(unit, text[i + 1]);
        if (blanksAsSpaces && isBlankControl(code))
            safe += u' ';
        else if (isDisguise(code))
            safe += QChar(QChar::ReplacementCharacter);
        else if (pair)
            safe.append(unit).append(text[i + 1]);
        else
            safe += unit;
        i += pair ? 1 : 0;
    }
    return safe;
}

bool isPlainText(const QString& text)
{
    const char16_t* const units = reinterpret_cast<const char16_t*>(text.utf16());
    return std::all_of(units, units + text.size(), isPlain);
}

} // namespace

QString safeText(const QString& text, qsizetype maxLength)
{
    if (text.size() <= maxLength)
        return isPlainText(text) ? text : replaced(text, false);
    return QString(replaced(QStringView(text).left(maxLength), false) + QChar(0x2026));
}

QString clipboardText(const QString& text)
{
    return isPlainText(text) ? text : replaced(text, true);
}

QString toolTipText(const QString& text)
{
    QString shown = safeText(text, TOOL_TIP_LENGTH);
    if (!Qt::mightBeRichText(shown))
        return shown;
    return QString(QStringLiteral("<span>") + shown.toHtmlEscaped() + QStringLiteral("</span>"));
}

} // namespace KZ
