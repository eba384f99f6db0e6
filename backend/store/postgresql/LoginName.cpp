#include "backend/store/postgresql/LoginName.h"

#include <QCryptographicHash>

namespace backend {

namespace {

constexpr qsizetype digits = 40;

} // namespace

QString loginName(const QString& userName)
{
    const QByteArray bytes = userName.normalized(QString::NormalizationForm_C).toUtf8();
    const QByteArray hex = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    return QStringLiteral("as_") + QString::fromLatin1(hex.left(digits));
}

} // namespace backend
