#include "benchmarks/support/StoreDialog.h"

#include "authsetting/services/AuthClient.h"
#include "backend/store/StoreAdmin.h"
#include "benchmarks/support/Painting.h"
#include "kit/table/OddEvenRowTable.h"
#include "utils/Clock.h"

#include <QAction>
#include <QElapsedTimer>

namespace bench {

namespace {

constexpr int platformId = 1;
constexpr char brokerId[] = "8000";

backend::StoreOptions optionsFor(const QTemporaryDir& folder)
{
    backend::StoreOptions options;
    options.location =
        backend::StoreLocation::parse(folder.filePath(QStringLiteral("store/bench.db")));
    // Only the sign-in before the measurement becomes cheap, and sealing, which has its own case.
    options.cheapCryptographyForTests = true;
    return options;
}

void fillStore(const backend::StoreOptions& options, int accounts)
{
    QString error;
    const auto admin = backend::StoreAdmin::open(options, &error);
    if (!admin)
        qFatal("the store cannot be made: %s", qPrintable(error));
    using Kind = backend::StoreAdmin::Kind;
    admin->addPlatform(Kind::Futures, {platformId, "平台"});
    admin->addBroker(Kind::Futures, {platformId, brokerId, "经纪公司"});
    admin->addUser(QStringLiteral("grantor"), QStringLiteral("password"));
    admin->addSubUser(QStringLiteral("grantor"), StoreDialog::grantee(),
                      QStringLiteral("password"));
    for (int number = 0; number < accounts; ++number) {
        mbservice::CAccountInfo account;
        account.accountType = 1;
        account.platformId = platformId;
        account.brokerId = brokerId;
        account.accountId = std::to_string(600000000 + number);
        account.accountPrivate = "secret" + std::to_string(number);
        admin->addAccount(QStringLiteral("grantor"), account);
    }
    if (!admin->commit())
        qFatal("the store cannot be filled: %s", qPrintable(admin->error()));
}

} // namespace

StoreDialog::StoreDialog(int accounts, int pageId, int subPageId, const QString& key, int tabIndex)
{
    constexpr double farAhead = 1000;
    utils::setClockSource([now = 0.0]() mutable { return now += farAhead; });
    const backend::StoreOptions options = optionsFor(m_folder);
    fillStore(options, accounts);
    backend::SignInResult result =
        backend::Session::signIn(options, QStringLiteral("grantor"), QStringLiteral("password"));
    if (!result.session)
        qFatal("nobody can sign in: %s", qPrintable(result.error));
    m_session = std::move(result.session);
    m_session->install(nullptr);
    m_page = std::make_unique<DialogPage>(pageId, subPageId, key, tabIndex);
}

StoreDialog::~StoreDialog()
{
    m_page.reset();
    m_session.reset();
    utils::setClockSource({});
}

QString StoreDialog::grantee()
{
    return QStringLiteral("grantee");
}

void StoreDialog::tickAll(int tickColumn)
{
    KZ::COddEvenRowTable* table = m_page->table();
    for (int row = 0; row < table->rowCount(); ++row)
        table->setItemChecked(row, tickColumn, true);
    settle();
}

double StoreDialog::grantMilliseconds(const QString& menuText, int requests)
{
    QAction* entry = nullptr;
    const auto actions = m_page->tabPage()->findChildren<QAction*>();
    for (QAction* action : actions) {
        if (action->text() == menuText)
            entry = action;
    }
    if (!entry)
        qFatal("the page has no such menu entry");
    int answered = 0;
    const QMetaObject::Connection counting =
        QObject::connect(m_session->authClient(), &GW::CAuthClient::sigAddAuthResult,
                         m_page->tabPage(), [&answered] { ++answered; });
    QElapsedTimer timer;
    timer.start();
    entry->trigger();
    while (answered < requests)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    QObject::disconnect(counting);
    settle();
    return milliseconds;
}

} // namespace bench
