#include "admin/backup/EmbeddedBackup.h"

#include "admin/backup/StagedFile.h"
#include "backend/store/StoreAdmin.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include <sys/stat.h>
#include <utility>

namespace admin {

EmbeddedBackup::EmbeddedBackup(backend::StoreOptions store) : m_store(std::move(store)) {}

QString EmbeddedBackup::copy(const QString& from, const QString& to)
{
    const QString connection = QStringLiteral("authsetting-backup");
    QString problem;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        database.setDatabaseName(from);
        database.setConnectOptions(
            QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=10000"));
        if (!database.open()) {
            problem = database.lastError().text();
        } else {
            QSqlQuery query(database);
            // A consistent copy without what was deleted; it accepts an empty file as its target.
            QString quoted = to;
            quoted.replace(QLatin1Char('\''), QStringLiteral("''"));
            if (!query.exec(QStringLiteral("VACUUM INTO '%1'").arg(quoted)))
                problem = query.lastError().text();
        }
    }
    QSqlDatabase::removeDatabase(connection);
    return problem.isEmpty() ? QString() : QStringLiteral("无法复制 %1：%2").arg(from, problem);
}

QString EmbeddedBackup::problemAt(const QString& path) const
{
    backend::StoreOptions options = m_store;
    options.location.path = path;
    QString error;
    const auto store = backend::StoreAdmin::open(options, &error);
    return store ? store->verify() : error;
}

QString EmbeddedBackup::save(const QString& file) const
{
    const QString& path = m_store.location.path;
    if (!QFileInfo::exists(path))
        return QStringLiteral("没有这个存储：%1").arg(path);
    QString problem = problemAt(path);
    if (!problem.isEmpty())
        return QStringLiteral("没有备份：%1").arg(problem);
    StagedFile staged(file);
    problem = staged.create();
    if (problem.isEmpty())
        problem = copy(path, staged.path());
    if (problem.isEmpty())
        problem = problemAt(staged.path());
    return problem.isEmpty() ? staged.publish() : problem;
}

QString EmbeddedBackup::restore(const QString& file) const
{
    const QString& path = m_store.location.path;
    if (!QFileInfo::exists(file))
        return QStringLiteral("没有这个备份：%1").arg(file);
    if (QFileInfo::exists(path))
        return QStringLiteral("目标 %1 已存在，不会覆盖").arg(path);
    const QString folder = QFileInfo(path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        QDir().mkpath(QFileInfo(folder).absolutePath());
        ::mkdir(QFile::encodeName(folder).constData(), 0700);
    }
    StagedFile staged(path);
    QString problem = staged.create();
    if (problem.isEmpty())
        problem = copy(file, staged.path());
    if (problem.isEmpty())
        problem = problemAt(staged.path());
    return problem.isEmpty() ? staged.publish() : problem;
}

} // namespace admin
