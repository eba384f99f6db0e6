#include "host/tour/TourClient.h"

#include "host/HostApplication.h"
#include "host/client/ClientWindow.h"
#include "host/demo/DemoStore.h"
#include "host/signin/SignInDialog.h"
#include "host/tour/TourFailure.h"
#include "host/tour/TourScene.h"

#include <utility>

namespace host {

TourClient::TourClient(TourScene& scene, HostOptions options, backend::StoreOptions storeOptions,
                       QString folder)
    : m_scene(scene), m_options(std::move(options)), m_storeOptions(std::move(storeOptions)),
      m_folder(std::move(folder))
{
    const QString error = DemoStore::ensure(m_folder, m_storeOptions);
    if (!error.isEmpty())
        throw TourFailure(error);
    m_storeOptions.location = backend::StoreLocation::parse(DemoStore::filePath(m_folder));
}

TourClient::~TourClient()
{
    stop();
}

void TourClient::start()
{
    const QString error = TourScene::onGui([this] {
        // Without a location, so that the client shows the demonstration's users and password.
        backend::StoreOptions options = m_storeOptions;
        options.location = backend::StoreLocation();
        m_host = std::make_unique<HostApplication>(m_options, options, m_folder);
        return m_host->start();
    });
    if (!error.isEmpty())
        throw TourFailure(error);
}

void TourClient::stop()
{
    TourScene::onGui([this] { m_host.reset(); });
}

void TourClient::restart()
{
    stop();
    start();
}

void TourClient::signIn(const QString& user, const QString& password)
{
    m_scene.await(QStringLiteral("登录窗口"), [this] {
        const SignInDialog* dialog = m_host->signInDialog();
        return dialog && dialog->isVisible() && dialog->isActiveWindow();
    });
    m_scene.typeInto(QStringLiteral("halden_client_sign_in_user"), user);
    m_scene.typeInto(QStringLiteral("halden_client_sign_in_password"), password);
    m_scene.press({XHands::KeyReturn});
    m_scene.await(QStringLiteral("%1 的客户端窗口").arg(user), [this, user] {
        const ClientWindow* window = m_host->clientWindow();
        return window && window->isActiveWindow() && window->windowTitle().endsWith(user);
    });
}

void TourClient::signOut()
{
    m_scene.clickMenuBarItem(QStringLiteral("用户"));
    m_scene.clickMenuItem(QStringLiteral("注销"));
    m_scene.await(QStringLiteral("注销后的登录窗口"),
                  [this] { return m_host->signInDialog() && !m_host->clientWindow(); });
}

} // namespace host
