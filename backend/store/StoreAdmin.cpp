#include "backend/store/StoreAdmin.h"

#include "backend/store/AdminStore.h"
#include "backend/store/StoreError.h"
#include "utils/LogCenter.h"

namespace backend {

class StoreAdminPrivate
{
public:
    explicit StoreAdminPrivate(const StoreOptions& options) : store(AdminStore::open(options)) {}

    /// Changes the store by `work`.
    template <class Work>
    bool add(const Work& work)
    {
        return skipsRefused ? allow([&] { store->runAlone(work); }) : attempt(work);
    }

    /// Runs `work`, whose refusal leaves everything else possible.
    template <class Work>
    bool allow(const Work& work)
    {
        bool isRefused = false;
        const bool done = attempt([&] {
            try {
                work();
            } catch (const AdminStore::AdminProblem& problem) {
                error = problem.text;
                isRefused = true;
            }
        });
        return done && !isRefused;
    }

    template <class Work>
    bool attempt(const Work& work)
    {
        if (failed)
            return false;
        try {
            work();
            return true;
        } catch (const StoreError& problem) {
            error = problem.failure().text();
            utils::CLogCenter::error(error + QStringLiteral(" [") + problem.failure().detail +
                                     QStringLiteral("]"));
        } catch (const AdminStore::AdminProblem& problem) {
            error = problem.text;
        }
        failed = true;
        return false;
    }

    std::unique_ptr<AdminStore> store;
    QString error;
    bool skipsRefused = false;
    bool failed = false;
};

std::unique_ptr<StoreAdmin> StoreAdmin::open(const StoreOptions& options, QString* error)
{
    try {
        return std::unique_ptr<StoreAdmin>(
            new StoreAdmin(std::make_unique<StoreAdminPrivate>(options)));
    } catch (const StoreError& problem) {
        *error = problem.failure().text();
        utils::CLogCenter::error(*error + QStringLiteral(" [") + problem.failure().detail +
                                 QStringLiteral("]"));
    }
    return nullptr;
}

StoreAdmin::StoreAdmin(std::unique_ptr<StoreAdminPrivate> d) : d(std::move(d)) {}

StoreAdmin::~StoreAdmin() = default;

void StoreAdmin::skipRefusedRecords()
{
    d->skipsRefused = true;
}

bool StoreAdmin::hasFailed() const
{
    return d->failed;
}

bool StoreAdmin::addPlatform(Kind kind, const mbservice::CPlatformInfo& platform)
{
    return d->add([&] { d->store->addPlatform(static_cast<int>(kind), platform); });
}

bool StoreAdmin::addBroker(Kind kind, const mbservice::CBrokerInfo& broker)
{
    return d->add([&] { d->store->addBroker(static_cast<int>(kind), broker); });
}

bool StoreAdmin::addUser(const QString& name, const QString& password, bool enabled)
{
    return d->add([&] { d->store->addUser(QString(), name, password, enabled); });
}

bool StoreAdmin::addSubUser(const QString& owner, const QString& name, const QString& password,
                            bool enabled)
{
    // A null owner would make an ordinary user.
    const QString manager = owner.isNull() ? QStringLiteral("") : owner;
    return d->add([&] { d->store->addUser(manager, name, password, enabled); });
}

bool StoreAdmin::addAccount(const QString& owner, const mbservice::CAccountInfo& account)
{
    return d->add([&] { d->store->addAccount(owner, account); });
}

bool StoreAdmin::addSubAccount(const mbservice::CAccountInfo& parent,
                               const mbservice::CAccountInfo& child)
{
    return d->add([&] { d->store->addSubAccount(parent, child); });
}

bool StoreAdmin::setPassword(const QString& name, const QString& password)
{
    return d->add([&] { d->store->setPassword(name, password); });
}

bool StoreAdmin::setEnabled(const QString& name, bool enabled)
{
    return d->add([&] { d->store->setEnabled(name, enabled); });
}

bool StoreAdmin::requireUser(const QString& name) const
{
    return d->allow([&] { d->store->requireUser(name); });
}

bool StoreAdmin::addGrant(const GrantRecord& grant)
{
    return d->add([&] { d->store->addGrant(grant); });
}

bool StoreAdmin::commit()
{
    const bool committed = d->attempt([&] { d->store->commit(); });
    if (!committed)
        d->store->rollback();
    return committed;
}

QVector<GrantRecord> StoreAdmin::grants() const
{
    QVector<GrantRecord> grants;
    d->attempt([&] { grants = d->store->grants(); });
    return grants;
}

QVector<AdminUser> StoreAdmin::users() const
{
    QVector<AdminUser> users;
    d->attempt([&] { users = d->store->users(); });
    return users;
}

QVector<AdminAccount> StoreAdmin::accounts() const
{
    QVector<AdminAccount> accounts;
    d->attempt([&] { accounts = d->store->accounts(); });
    return accounts;
}

QString StoreAdmin::verify() const
{
    QString problem;
    return d->attempt([&] { problem = d->store->verify(); }) ? problem : d->error;
}

QString StoreAdmin::error() const
{
    return d->error;
}

} // namespace backend
