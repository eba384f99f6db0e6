#include "tests/host/DemoFixture.h"

#include "host/client/ClientWindow.h"
#include "host/demo/DemoData.h"
#include "host/demo/DemoStore.h"
#include "utils/ExchangeTimeZone.h"

DemoFixture::DemoFixture()
    : m_now(
          std::make_shared<QDateTime>(QDate(2026, 3, 2), QTime(10, 30), utils::exchangeTimeZone()))
{
}

backend::StoreOptions DemoFixture::options() const
{
    backend::StoreOptions options;
    options.clock = [now = m_now] { return *now; };
    options.cheapCryptographyForTests = true;
    return options;
}

backend::StoreOptions DemoFixture::storeOptions() const
{
    backend::StoreOptions result = options();
    const QString error = host::DemoStore::ensure(folder(), result);
    if (!error.isEmpty())
        qFatal("%s", qPrintable(error));
    result.location = backend::StoreLocation::parse(host::DemoStore::filePath(folder()));
    return result;
}

std::unique_ptr<backend::Session> DemoFixture::signIn(const QString& user) const
{
    backend::SignInResult result =
        backend::Session::signIn(storeOptions(), user, host::DemoData::password());
    if (!result.session)
        qFatal("%s", qPrintable(result.error));
    return std::move(result.session);
}

std::unique_ptr<host::ClientWindow> DemoFixture::clientWindow(const QString& user) const
{
    return std::make_unique<host::ClientWindow>(signIn(user), QStringLiteral("演示存储"));
}
