#include "host/HostApplication.h"

#include "authsetting/shell/AuthSettingDialog.h"
#include "backend/client/Session.h"
#include "backend/store/StoreAdmin.h"
#include "host/client/ClientWindow.h"
#include "host/client/ThemeSwitch.h"
#include "host/demo/DemoData.h"
#include "host/demo/DemoStore.h"
#include "host/signin/SignInDialog.h"

#include <QFileInfo>
#include <QTimer>

#include <utility>

namespace host {

HostApplication::HostApplication(HostOptions options, backend::StoreOptions storeOptions,
                                 QString demoFolder)
    : m_options(std::move(options)), m_storeOptions(std::move(storeOptions)),
      m_demoFolder(std::move(demoFolder))
{
}

HostApplication::~HostApplication() = default;

QString HostApplication::start()
{
    QString error = openStore();
    if (error.isEmpty())
        showSignIn(m_options.user);
    return error;
}

QString HostApplication::openStore()
{
    m_isDemo = !m_storeOptions.location.isValid();
    if (m_isDemo) {
        QString error = DemoStore::ensure(m_demoFolder, m_storeOptions);
        if (!error.isEmpty())
            return error;
        m_storeOptions.location = backend::StoreLocation::parse(DemoStore::filePath(m_demoFolder));
    } else if (m_storeOptions.location.isServer()) {
        // A server lets nobody in before he has signed in.
        return QString();
    } else if (!QFileInfo::exists(m_storeOptions.location.path)) {
        return QStringLiteral("没有这个存储：%1").arg(m_storeOptions.location.path);
    }
    // Opened once before anybody types a password into a client that cannot work.
    QString error;
    if (!backend::StoreAdmin::open(m_storeOptions, &error))
        return QStringLiteral("无法打开存储 %1：%2").arg(m_storeOptions.location.path, error);
    return QString();
}

void HostApplication::showSignIn(const QString& user)
{
    m_signIn = std::make_unique<SignInDialog>([this](const QString& name, const QString& password) {
        return backend::Session::signIn(m_storeOptions, name, password);
    });
    addThemeShortcut(m_signIn.get());
    if (m_isDemo) {
        const QVector<QString> users = DemoData::users();
        m_signIn->setUsers(QStringList(users.begin(), users.end()));
        m_signIn->setHint(QStringLiteral("演示存储，所有用户的密码：%1").arg(DemoData::password()));
    } else if (m_storeOptions.location.isServer()) {
        // Who types a password has to see where it goes.
        m_signIn->setHint(QStringLiteral("服务器：%1").arg(m_storeOptions.location.displayName()));
    }
    const QString proposed = m_isDemo ? DemoData::mainUser() : m_storeOptions.location.user;
    m_signIn->setUser(user.isEmpty() ? proposed : user);
    // Queued, because the window that sends them is destroyed in turn.
    connect(m_signIn.get(), &QDialog::accepted, this, &HostApplication::onSignedIn,
            Qt::QueuedConnection);
    connect(m_signIn.get(), &QDialog::rejected, this, &HostApplication::finished,
            Qt::QueuedConnection);
    m_signIn->show();
}

void HostApplication::onSignedIn()
{
    std::unique_ptr<backend::Session> session = m_signIn->takeSession();
    m_signIn.reset();
    const QString storeName =
        m_isDemo ? QStringLiteral("演示存储") : m_storeOptions.location.displayName();
    m_window = std::make_unique<ClientWindow>(std::move(session), storeName);
    connect(m_window.get(), &ClientWindow::signOutRequested, this, &HostApplication::signOut,
            Qt::QueuedConnection);
    connect(m_window.get(), &ClientWindow::closed, this, &HostApplication::finished,
            Qt::QueuedConnection);
    m_window->show();
    if (m_options.pageId == 0)
        return;
    // Asked for on the command line, so only for the first who signs in.
    const HostOptions wanted = std::exchange(m_options, HostOptions());
    ClientWindow* window = m_window.get();
    QTimer::singleShot(0, window, [window, wanted] {
        if (wanted.subPageId == INT_MAX && wanted.tab == 0)
            window->openSettings(wanted.pageId);
        else
            window->openSettings(wanted.pageId, wanted.subPageId, wanted.key, wanted.tab);
    });
}

void HostApplication::signOut()
{
    // The dialog's event loop runs inside the window, so it has to end first.
    if (!m_window || m_window->settingsDialog()->isVisible())
        return;
    m_window.reset();
    showSignIn(QString());
}

} // namespace host
