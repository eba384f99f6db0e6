#pragma once

#include "backend/store/SqlEngine.h"

namespace backend {

/// The embedded engine: one file, a rollback journal beside it, every commit on the disk before it
/// counts.
class SqliteEngine final : public SqlEngine
{
public:
    explicit SqliteEngine(const StoreOptions& options);

    QString driver() const override;
    StoreFailure prepare(bool createMissing) override;
    void configure(QSqlDatabase& database) const override;
    QStringList sessionSetup() const override;
    QString countTablesSql() const override;
    QString beginWriteSql() const override;
    QString changeMarkerSql() const override;
    QString checkSql(bool thorough) const override;
    QString migrationSuffix() const override;
    StoreFailure::Kind classify(const QSqlError& error) const override;
    void rememberIdentity() override;
    bool isSameStore() const override;

private:
    StoreFailure createFile() const;

    QString m_path;
    int m_busyTimeoutMs;
    quint64 m_device = 0;
    quint64 m_inode = 0;
};

} // namespace backend
