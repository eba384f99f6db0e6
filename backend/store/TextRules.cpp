#include "backend/store/TextRules.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstddef>

namespace backend {

bool hasHostileCharacter(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t code = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        switch (QChar::category(code)) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return true;
        default:
            break;
        }
    }
    return false;
}

bool isPlainText(const std::string& bytes)
{
    const auto isPrintableAscii = [](char byte) { return byte >= 0x20 && byte < 0x7f; };
    if (bytes.size() <= maxTextLength && std::all_of(bytes.begin(), bytes.end(), isPrintableAscii))
        return true;
    // No character takes more than three bytes per UTF-16 unit.
    if (bytes.size() > std::size_t{3} * maxTextLength)
        return false;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    const QString text =
        decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return !decoder.hasError() && text.size() <= maxTextLength && !hasHostileCharacter(text);
}

QString userNameProblem(const QString& name)
{
    if (name.isEmpty())
        return QStringLiteral("用户名不能为空");
    if (name.size() > maxTextLength)
        return QStringLiteral("用户名过长");
    if (hasHostileCharacter(name))
        return QStringLiteral("用户名含有非法字符");
    return {};
}

QString accountProblem(const mbservice::CAccountInfo& account)
{
    if (account.accountId.empty())
        return QStringLiteral("账号不能为空");
    if (!isPlainText(account.accountId) || !isPlainText(account.brokerId) ||
        !isPlainText(account.accountAlias) || !isPlainText(account.accountPrivate))
        return QStringLiteral("账号信息含有非法字符或过长");
    return {};
}

QString fitted(const QString& text)
{
    return text.left(maxTextLength);
}

} // namespace backend
