#include "backend/store/StoreAdmin.h"

#include "backend/store/StoreError.h"
#include "backend/store/StoreFiller.h"
#include "utils/LogCenter.h"

namespace backend {

class StoreAdminPrivate
{
public:
    explicit StoreAdminPrivate(const StoreOptions& options) : filler(options) {}

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
        } catch (const StoreFiller::AdminProblem& problem) {
            error = problem.text;
        }
        failed = true;
        return false;
    }

    StoreFiller filler;
    QString error;
    bool failed = false;
};

std::unique_ptr<StoreAdmin> StoreAdmin::open(const StoreOptions& options, QString* error)
{
    try {
        return std::unique_ptr<StoreAdmin>(
            new StoreAdmin(std::make_unique<StoreAdminPrivate>(options)));
    } catch (const StoreError& problem) {
        *error = problem.failure().text();
    }
    return nullptr;
}

StoreAdmin::StoreAdmin(std::unique_ptr<StoreAdminPrivate> d) : d(std::move(d)) {}

StoreAdmin::~StoreAdmin() = default;

bool StoreAdmin::addPlatform(Kind kind, const mbservice::CPlatformInfo& platform)
{
    return d->attempt([&] { d->filler.addPlatform(static_cast<int>(kind), platform); });
}

bool StoreAdmin::addBroker(Kind kind, const mbservice::CBrokerInfo& broker)
{
    return d->attempt([&] { d->filler.addBroker(static_cast<int>(kind), broker); });
}

bool StoreAdmin::addUser(const QString& name, const QString& password, bool enabled)
{
    return d->attempt([&] { d->filler.addUser(QString(), name, password, enabled); });
}

bool StoreAdmin::addSubUser(const QString& owner, const QString& name, const QString& password,
                            bool enabled)
{
    // A null owner would make an ordinary user.
    const QString manager = owner.isNull() ? QStringLiteral("") : owner;
    return d->attempt([&] { d->filler.addUser(manager, name, password, enabled); });
}

bool StoreAdmin::addAccount(const QString& owner, const mbservice::CAccountInfo& account)
{
    return d->attempt([&] { d->filler.addAccount(owner, account); });
}

bool StoreAdmin::addSubAccount(const mbservice::CAccountInfo& parent,
                               const mbservice::CAccountInfo& child)
{
    return d->attempt([&] { d->filler.addSubAccount(parent, child); });
}

bool StoreAdmin::addGrant(const GrantRecord& grant)
{
    return d->attempt([&] { d->filler.addGrant(grant); });
}

bool StoreAdmin::commit()
{
    const bool committed = d->attempt([&] { d->filler.commit(); });
    if (!committed)
        d->filler.rollback();
    return committed;
}

QVector<GrantRecord> StoreAdmin::grants() const
{
    QVector<GrantRecord> grants;
    d->attempt([&] { grants = d->filler.grants(); });
    return grants;
}

QString StoreAdmin::verify() const
{
    QString problem;
    return d->attempt([&] { problem = d->filler.verify(); }) ? problem : d->error;
}

QString StoreAdmin::error() const
{
    return d->error;
}

} // namespace backend
