#pragma once

#include <QByteArray>
#include <QString>

namespace admin {

/// A file that is written under a name of its own beside its target (0600) and gets the target's
/// name only once it is whole; otherwise the destructor removes it.
class StagedFile
{
public:
    explicit StagedFile(const QString& target);
    ~StagedFile();
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    /// Makes the empty file. Why that failed, in Chinese, or empty; a target that exists is left
    /// alone.
    QString create();
    /// Where to write.
    QString path() const { return m_path; }
    /// Waits until the disk has it and gives it its name. Why that failed, in Chinese, or empty.
    QString publish();

private:
    QString failure(int error) const;
    QString taken() const;

    QString m_target;
    QString m_path;
};

} // namespace admin
