#include "host/demo/DemoStore.h"

#include "backend/store/StoreAdmin.h"
#include "host/demo/DemoData.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace host {

namespace {

constexpr QLatin1String fileName("authsetting.db");

QString cannotMake()
{
    return QStringLiteral("无法建立演示存储：%1");
}

QString fillStore(const backend::StoreOptions& options)
{
    QString error;
    const std::unique_ptr<backend::StoreAdmin> store = backend::StoreAdmin::open(options, &error);
    if (!store)
        return error;
    const bool isEmpty = store->users().isEmpty();
    if (store->hasFailed())
        return store->error();
    if (!isEmpty)
        return QStringLiteral("存储中已有用户，只填入空的存储。");
    if (!DemoData::fill(*store, options.now().date()) || !store->commit())
        return store->error();
    return QString();
}

} // namespace

QString DemoStore::standardFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/demo");
}

QString DemoStore::filePath(const QString& folder)
{
    return folder + QLatin1Char('/') + fileName;
}

QString DemoStore::ensure(const QString& folder, backend::StoreOptions options)
{
    const QString target = filePath(folder);
    if (QFileInfo::exists(target))
        return QString();
    if (!QDir().mkpath(folder))
        return cannotMake().arg(QStringLiteral("不能建立文件夹 %1").arg(folder));
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);

    // Filled beside its place and moved there, so that nobody ever opens a half-filled store.
    const QTemporaryDir workshop(folder + QStringLiteral("/making-XXXXXX"));
    if (!workshop.isValid())
        return cannotMake().arg(workshop.errorString());
    options.location.engine = QStringLiteral("sqlite");
    options.location.path = workshop.filePath(fileName);
    const QString error = fillStore(options);
    if (!error.isEmpty())
        return cannotMake().arg(error);
    QFile file(options.location.path);
    if (!file.rename(target) && !QFileInfo::exists(target))
        return cannotMake().arg(file.errorString());
    return QString();
}

QString DemoStore::fillServer(const backend::StoreOptions& options)
{
    const QString error = fillStore(options);
    return error.isEmpty() ? QString() : cannotMake().arg(error);
}

} // namespace host
