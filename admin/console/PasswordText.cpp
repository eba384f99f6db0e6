#include "admin/console/PasswordText.h"

#include <QStringDecoder>

namespace admin {

std::optional<QString> passwordText(const QByteArray& bytes, QString* error)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        *error = QStringLiteral("密码不是 UTF-8 编码");
        return std::nullopt;
    }
    return text;
}

} // namespace admin
