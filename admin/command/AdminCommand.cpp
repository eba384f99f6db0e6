#include "admin/command/AdminCommand.h"

#include "admin/backup/EmbeddedBackup.h"
#include "admin/backup/ServerBackup.h"
#include "admin/command/StoreListing.h"
#include "admin/console/Console.h"
#include "admin/console/PrivateFile.h"
#include "admin/console/ProgressBar.h"
#include "admin/import/FileImport.h"

#include <QFileInfo>

#include <utility>

namespace admin {

AdminCommand::AdminCommand(AdminOptions options) : m_options(std::move(options)) {}

ExitCode AdminCommand::fail(ExitCode code, const QString& reason)
{
    complain(reason);
    return code;
}

ExitCode AdminCommand::run()
{
    QString error;
    m_store.location = backend::StoreLocation::parse(m_options.store, &error);
    if (!m_store.location.isValid())
        return fail(ExitBadOptions, error);
    const ExitCode code = readPassword();
    if (code != ExitSuccess)
        return code;
    if (m_options.command == QStringLiteral("create"))
        return create();
    if (m_options.command == QStringLiteral("import"))
        return import();
    if (m_options.command == QStringLiteral("list"))
        return list();
    if (m_options.command == QStringLiteral("password"))
        return setPassword();
    if (m_options.command == QStringLiteral("enable"))
        return setEnabled(true);
    if (m_options.command == QStringLiteral("disable"))
        return setEnabled(false);
    if (m_options.command == QStringLiteral("verify"))
        return verify();
    if (m_options.command == QStringLiteral("backup"))
        return backUp();
    return restore();
}

ExitCode AdminCommand::readPassword()
{
    if (m_options.passwordFile.isEmpty() && !m_options.asksPassword)
        return ExitSuccess;
    if (!m_store.location.isServer())
        return fail(ExitBadOptions, QStringLiteral("本地存储没有登录密码。"));
    QString error;
    const std::optional<QString> password =
        m_options.asksPassword
            ? askPassword(QStringLiteral("%1 的密码：").arg(m_store.location.user),
                          QStringLiteral("--password-file"), &error)
            : readPasswordFile(m_options.passwordFile, &error);
    if (!password)
        return fail(ExitFileFailed, error);
    m_store.credential = *password;
    return ExitSuccess;
}

std::unique_ptr<backend::StoreAdmin> AdminCommand::openStore(bool mayCreate)
{
    const QString& path = m_store.location.path;
    if (!mayCreate && !m_store.location.isServer() && !QFileInfo::exists(path)) {
        complain(QStringLiteral("没有这个存储：%1；请先执行 create").arg(path));
        return nullptr;
    }
    QString error;
    auto store = backend::StoreAdmin::open(m_store, &error);
    if (!store)
        complain(QStringLiteral("无法打开存储 %1：%2").arg(m_store.location.displayName(), error));
    return store;
}

ExitCode AdminCommand::create()
{
    if (!openStore(true))
        return ExitStoreFailed;
    say(QStringLiteral("存储 %1 已就绪。").arg(m_store.location.displayName()));
    return ExitSuccess;
}

ExitCode AdminCommand::import()
{
    const auto store = openStore(false);
    if (!store)
        return ExitStoreFailed;
    FileImport records(*RecordAdder::kindOf(m_options.arguments[0]),
                       m_options.isStrict ? FileImport::Mode::AllOrNone
                                          : FileImport::Mode::TakeGood);
    QString error;
    {
        ProgressBar bar(QStringLiteral("添加"));
        error = records.run(m_options.arguments[1], *store,
                            {[&bar](qint64 done, qint64 total) { bar.show(done, total); },
                             [&bar](const QString& line) {
                                 bar.hide();
                                 complain(line);
                             }});
    }
    if (!error.isEmpty())
        return fail(store->hasFailed() ? ExitStoreFailed : ExitFileFailed, error);
    say(QStringLiteral("已添加 %1 条记录，拒绝 %2 条。")
            .arg(records.taken())
            .arg(records.refused()));
    return records.refused() == 0 ? ExitSuccess : ExitRecordsRefused;
}

ExitCode AdminCommand::list()
{
    const auto store = openStore(false);
    if (!store)
        return ExitStoreFailed;
    const QStringList lines = listing(m_options.arguments[0], *store);
    if (store->hasFailed())
        return fail(ExitStoreFailed, store->error());
    for (const QString& line : lines)
        say(line);
    return ExitSuccess;
}

ExitCode AdminCommand::refused(const backend::StoreAdmin& store)
{
    return fail(store.hasFailed() ? ExitStoreFailed : ExitRecordsRefused, store.error());
}

std::optional<QString> AdminCommand::newPassword(QString* error) const
{
    const QString& file = m_options.newPasswordFile;
    if (file.isEmpty()) {
        return askNewPassword(QStringLiteral("%1 的新密码：").arg(m_options.arguments[0]),
                              QStringLiteral("--new-password-file"), error);
    }
    return file == QStringLiteral("-") ? readPasswordInput(error) : readPasswordFile(file, error);
}

ExitCode AdminCommand::setPassword()
{
    const QString& user = m_options.arguments[0];
    const auto store = openStore(false);
    if (!store)
        return ExitStoreFailed;
    store->skipRefusedRecords();
    // Before the question, whose answer may take a while.
    if (!store->requireUser(user))
        return refused(*store);
    QString error;
    const std::optional<QString> password = newPassword(&error);
    if (!password)
        return fail(ExitFileFailed, error);
    if (!store->setPassword(user, *password) || !store->commit())
        return refused(*store);
    say(QStringLiteral("已设置用户“%1”的新密码。").arg(user));
    return ExitSuccess;
}

ExitCode AdminCommand::setEnabled(bool enabled)
{
    const QString& user = m_options.arguments[0];
    const auto store = openStore(false);
    if (!store)
        return ExitStoreFailed;
    store->skipRefusedRecords();
    if (!store->setEnabled(user, enabled) || !store->commit())
        return refused(*store);
    say((enabled ? QStringLiteral("已启用用户“%1”。") : QStringLiteral("已禁用用户“%1”。"))
            .arg(user));
    return ExitSuccess;
}

ExitCode AdminCommand::verify()
{
    const auto store = openStore(false);
    if (!store)
        return ExitStoreFailed;
    const QString problem = store->verify();
    if (store->hasFailed())
        return fail(ExitStoreFailed, problem);
    if (!problem.isEmpty())
        return fail(ExitNotSound, problem);
    say(QStringLiteral("存储 %1 没有问题。").arg(m_store.location.displayName()));
    return ExitSuccess;
}

ExitCode AdminCommand::backUp()
{
    const QString& file = m_options.arguments[0];
    const QString problem = m_store.location.isServer() ? ServerBackup(m_store).save(file)
                                                        : EmbeddedBackup(m_store).save(file);
    if (!problem.isEmpty())
        return fail(ExitFileFailed, problem);
    say(QStringLiteral("已备份到 %1。").arg(file));
    return ExitSuccess;
}

ExitCode AdminCommand::restore()
{
    const QString& file = m_options.arguments[0];
    const QString problem = m_store.location.isServer() ? ServerBackup(m_store).restore(file)
                                                        : EmbeddedBackup(m_store).restore(file);
    if (!problem.isEmpty())
        return fail(ExitStoreFailed, problem);
    say(QStringLiteral("已由 %1 恢复。").arg(file));
    return verify();
}

} // namespace admin
