#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace backend {

/// The file that keeps one user's table layouts between sessions: JSON, versioned, named after a
/// digest of the user's name (a name may hold anything, a file name may not), readable by its
/// owner only.
///
/// A file that cannot be used (damaged, another user's, of a newer version, too large) is left
/// alone with one line in the log, the tables start with their defaults, and the first save puts
/// it aside under its own name with ".unreadable" added, so that nothing is lost silently.
class TableLayoutFile
{
public:
    /// `folder` must exist by the time of saving; an empty one means that nothing is kept.
    TableLayoutFile(const QString& folder, const QString& userName);

    /// The layouts by table identifier; empty without a usable file.
    QMap<int, QString> load();
    /// Writes `layouts`, whole or not at all. False, with a line in the log, when that failed.
    bool save(const QMap<int, QString>& layouts);

    /// Empty when nothing is kept.
    QString path() const { return m_path; }
    /// Where the first save puts a file that cannot be used.
    QString unreadablePath() const;

private:
    std::optional<QMap<int, QString>> parse(const QByteArray& bytes, QString* reason) const;
    QMap<int, QString> refuse(const QString& reason);
    bool failToSave(const QString& reason) const;

    QString m_path;
    QString m_userName;
    bool m_putAside = false;
};

} // namespace backend
