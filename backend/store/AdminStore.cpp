#include "backend/store/AdminStore.h"

#include "backend/store/PasswordHash.h"
#include "backend/store/StoreFiller.h"
#include "backend/store/TextRules.h"
#include "backend/store/postgresql/PostgresAdmin.h"

#include <algorithm>

namespace backend {

namespace {

void requirePlain(const std::string& bytes, const QString& problem)
{
    if (bytes.empty() || !isPlainText(bytes))
        throw AdminStore::AdminProblem{problem};
}

} // namespace

AdminStore::~AdminStore() = default;

std::unique_ptr<AdminStore> AdminStore::open(const StoreOptions& options)
{
    if (options.location.isServer())
        return std::make_unique<PostgresAdmin>(options);
    return std::make_unique<StoreFiller>(options);
}

void AdminStore::requireUser(const QString& name)
{
    const QString stored = checkedName(name);
    const QVector<AdminUser> all = users();
    if (std::none_of(all.cbegin(), all.cend(),
                     [&](const AdminUser& user) { return user.name == stored; }))
        refuseUnknown(name);
}

void AdminStore::refuseUnknown(const QString& name)
{
    throw AdminProblem{QStringLiteral("用户“%1”不存在").arg(name)};
}

QString AdminStore::checkedName(const QString& name) const
{
    const QString problem = userNameProblem(name);
    if (!problem.isEmpty())
        throw AdminProblem{problem};
    return name.normalized(QString::NormalizationForm_C);
}

QString AdminStore::checkedDigest(const QString& password)
{
    QString digest = passwordDigest(password);
    if (digest.isEmpty())
        throw AdminProblem{QStringLiteral("密码不能为空")};
    return digest;
}

void AdminStore::check(const mbservice::CPlatformInfo& platform)
{
    requirePlain(platform.name, QStringLiteral("平台名称不可用"));
}

void AdminStore::check(const mbservice::CBrokerInfo& broker)
{
    requirePlain(broker.brokerId, QStringLiteral("经纪公司编号不可用"));
    requirePlain(broker.name, QStringLiteral("经纪公司名称不可用"));
}

void AdminStore::check(const mbservice::CAccountInfo& account)
{
    const QString problem = accountProblem(account);
    if (!problem.isEmpty())
        throw AdminProblem{problem};
}

} // namespace backend
