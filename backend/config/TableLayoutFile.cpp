#include "backend/config/TableLayoutFile.h"

#include "backend/sealedfile/RegularFile.h"
#include "backend/sealedfile/SafeFileWriter.h"
#include "utils/LogCenter.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>
#include <cstdio>

namespace backend {

namespace {

constexpr int fileVersion = 1;
/// A layout is a line of numbers per table; a real file has a few kilobytes.
constexpr qsizetype maxFileSize = qsizetype{1024} * 1024;

QString formatName()
{
    return QStringLiteral("table-layouts");
}

QString pathFor(const QString& folder, const QString& userName)
{
    if (folder.isEmpty())
        return {};
    const QByteArray digest =
        QCryptographicHash::hash(userName.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("%1/layouts-%2.json").arg(folder, QString::fromLatin1(digest.toHex()));
}

} // namespace

TableLayoutFile::TableLayoutFile(const QString& folder, const QString& userName)
    : m_path(pathFor(folder, userName)), m_userName(userName)
{
}

QMap<int, QString> TableLayoutFile::load()
{
    m_putAside = false;
    if (m_path.isEmpty())
        return {};
    QByteArray bytes;
    const int error = readRegularFile(m_path, maxFileSize + 1, &bytes);
    if (error == ENOENT)
        return {};
    if (error != 0)
        return refuse(qt_error_string(error));
    QString reason;
    const auto layouts = parse(bytes, &reason);
    return layouts ? *layouts : refuse(reason);
}

bool TableLayoutFile::save(const QMap<int, QString>& layouts)
{
    if (m_path.isEmpty())
        return true;
    if (m_putAside) {
        const QByteArray from = QFile::encodeName(m_path);
        const QByteArray to = QFile::encodeName(unreadablePath());
        if (::rename(from.constData(), to.constData()) != 0 && errno != ENOENT) {
            return failToSave(qt_error_string(errno));
        }
        m_putAside = false;
    }
    QJsonObject entries;
    for (auto it = layouts.cbegin(); it != layouts.cend(); ++it)
        entries.insert(QString::number(it.key()), it.value());
    const QJsonObject root = {{QStringLiteral("format"), formatName()},
                              {QStringLiteral("version"), fileVersion},
                              {QStringLiteral("user"), m_userName},
                              {QStringLiteral("layouts"), entries}};
    const QByteArray bytes = QJsonDocument(root).toJson();
    if (bytes.size() > maxFileSize)
        return failToSave(QStringLiteral("they take more than %1 bytes").arg(maxFileSize));
    SafeFileWriter writer;
    if (!writer.prepare(m_path, bytes) ||
        writer.publish(SafeFileWriter::Replace::Allowed) != SafeFileWriter::Published::Yes)
        return failToSave(writer.errorText());
    return true;
}

QString TableLayoutFile::unreadablePath() const
{
    return m_path + QStringLiteral(".unreadable");
}

std::optional<QMap<int, QString>> TableLayoutFile::parse(const QByteArray& bytes,
                                                         QString* reason) const
{
    if (bytes.size() > maxFileSize) {
        *reason = QStringLiteral("it has more than %1 bytes").arg(maxFileSize);
        return std::nullopt;
    }
    QJsonParseError jsonError;
    const QJsonObject root = QJsonDocument::fromJson(bytes, &jsonError).object();
    if (jsonError.error != QJsonParseError::NoError) {
        *reason = jsonError.errorString();
        return std::nullopt;
    }
    const QJsonValue version = root.value(QStringLiteral("version"));
    const QJsonValue entries = root.value(QStringLiteral("layouts"));
    if (root.value(QStringLiteral("format")).toString() != formatName() || !version.isDouble()) {
        *reason = QStringLiteral("it keeps no table layouts");
        return std::nullopt;
    }
    if (version.toDouble() != fileVersion) {
        *reason = QStringLiteral("its version is %1").arg(version.toDouble());
        return std::nullopt;
    }
    if (root.value(QStringLiteral("user")).toString() != m_userName) {
        *reason = QStringLiteral("it belongs to another user");
        return std::nullopt;
    }
    QMap<int, QString> layouts;
    const QJsonObject object = entries.toObject();
    bool sound = entries.isObject();
    for (auto it = object.begin(); sound && it != object.end(); ++it) {
        const int table = it.key().toInt(&sound);
        sound = sound && it.value().isString();
        layouts.insert(table, it.value().toString());
    }
    if (!sound) {
        *reason = QStringLiteral("its layouts are no texts by table identifier");
        return std::nullopt;
    }
    return layouts;
}

QMap<int, QString> TableLayoutFile::refuse(const QString& reason)
{
    m_putAside = true;
    utils::CLogCenter::warning(
        QStringLiteral("table layouts in %1 cannot be used, the tables have their defaults: %2")
            .arg(m_path, reason));
    return {};
}

bool TableLayoutFile::failToSave(const QString& reason) const
{
    utils::CLogCenter::warning(
        QStringLiteral("table layouts cannot be saved in %1: %2").arg(m_path, reason));
    return false;
}

} // namespace backend
