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
    const bool isOnServer = m_storeOptions.location.isServer();
    if (isOnServer)
        m_storeOptions.dataFolder = m_folder;
    const QString error = isOnServer ? DemoStore::fillServer(m_storeOptions)
                                     : DemoStore::ensure(m_folder, m_storeOptions);
    if (!error.isEmpty())
        throw TourFailure(error);
    if (!isOnServer)
        m_storeOptions.location = backend::StoreLocation::parse(DemoStore::filePath(m_folder));
}

TourClient::~TourClient()
{
    stop();
}

void TourClient::start()
{
    const QString error = TourScene::onGui([this] {
        m_host = std::make_unique<HostApplication>(m_options, clientOptions(), m_folder);
        return m_host->start();
    });
    if (!error.isEmpty())
        throw TourFailure(error);
}

backend::StoreOptions TourClient::clientOptions() const
{
    backend::StoreOptions options = m_storeOptions;
    if (options.location.isServer()) {
        // The administrator is nobody whom a desk's sign-in window would propose.
        options.location.user.clear();
    } else {
        // Without one, the client shows the demonstration's users and password.
        options.location = backend::StoreLocation();
    }
    return options;
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
