#include "host/client/ClientWindow.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/TimeService.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AuthSettingDialog.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/NavigatorFiller.h"
#include "backend/client/ConnectionState.h"
#include "backend/client/Session.h"
#include "host/client/AccountListView.h"
#include "host/client/AccountMessages.h"
#include "host/client/AuditView.h"
#include "host/client/ConnectionView.h"
#include "host/client/FirstPlace.h"
#include "host/client/GrantFailures.h"
#include "host/client/MessageArea.h"
#include "host/client/OfflineNotice.h"
#include "host/client/ThemeSwitch.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/tips/MessageTip.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/Menu.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/StandardTabControl.h"
#include "kit/widgets/WidgetList.h"

#include <QCloseEvent>
#include <QMenuBar>
#include <QSplitter>
#include <QStatusBar>

namespace host {

namespace {

constexpr int clockIntervalMs = 1000;
constexpr int auditTab = 1;

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

ClientWindow::ClientWindow(std::unique_ptr<backend::Session> session, const QString& storeName)
    : m_session(std::move(session))
{
    setObjectName(QStringLiteral("halden_client_window"));
    setWindowTitle(QStringLiteral("交易客户端 - %1").arg(m_session->userName()));
    const GW::CTimeService* time = m_session->timeService();
    m_messages = std::make_unique<AccountMessages>([time] { return time->currentDateTime(); });
    m_grantFailures = std::make_unique<GrantFailures>(*m_session, *m_messages);
    m_session->install(m_messages.get());
    m_dialog = new GW::CAuthSettingDialog(this);
    m_dialog->setNavigatorFiller(&GW::fillNavigator);
    addThemeShortcut(m_dialog);

    buildCentre();
    buildMenus();
    buildStatusBar(storeName);
    resize(uiSize("gw_siz_client_window_width"), uiSize("gw_siz_client_window_height"));
    new FirstPlace(this);
    takeTheme();

    connect(m_session->authClient(), &GW::CAuthClient::sigUiUpdateAuth, this,
            &ClientWindow::reload);
    connect(&m_clockTimer, &QTimer::timeout, this, &ClientWindow::tick);
    m_clockTimer.start(clockIntervalMs);
    reload();
    tick();
}

ClientWindow::~ClientWindow()
{
    m_clockTimer.stop();
    delete m_dialog;
    m_session.reset();
}

void ClientWindow::buildCentre()
{
    auto* centre = new KZ::CBaseWidget(this);
    auto* list = new KZ::CWidgetList(Qt::Vertical, centre);
    m_offlineNotice = new OfflineNotice(list);
    list->addFixWidget(m_offlineNotice);
    m_tabs = new KZ::CStandardTabControl(list);
    auto* splitter = new QSplitter(Qt::Vertical, m_tabs);
    splitter->setChildrenCollapsible(false);
    m_accounts = new AccountListView(splitter);
    m_messageArea = new MessageArea(*m_messages, splitter);
    splitter->addWidget(m_accounts);
    splitter->addWidget(m_messageArea);
    splitter->setStretchFactor(0, 1);
    const int messageHeight = uiSize("gw_siz_client_message_height");
    splitter->setSizes({uiSize("gw_siz_client_window_height") - messageHeight, messageHeight});
    m_tabs->addTabWidget(QStringLiteral("账号"), splitter);
    m_audit = new AuditView(m_tabs);
    m_tabs->addTabWidget(QStringLiteral("操作记录"), m_audit);

    auto* settings = new KZ::CMediumNormalButton(0, m_tabs);
    settings->setObjectName(QStringLiteral("halden_client_settings_button"));
    settings->setText(QStringLiteral("授权设置"));
    settings->setToolTip(QStringLiteral("打开授权设置 (F2)"));
    settings->adjustSize();
    connect(settings, &QAbstractButton::clicked, this,
            [this] { openSettings(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE); });
    m_tabs->setCornerWidget(settings);

    const int margin = uiSize("gw_siz_setting_margin");
    list->addStretchWidget(m_tabs);
    centre->setInnerStretchWidget(list, margin, 0, margin, 0);
    setCentralWidget(centre);

    connect(m_accounts, &AccountListView::accountChosen, m_messageArea, &MessageArea::setAccount);
    connect(m_accounts, &AccountListView::settingsRequested, this, &ClientWindow::openAccount);
}

void ClientWindow::buildMenus()
{
    buildSettingsMenu();
    buildViewMenu();

    auto* user = new KZ::CMenu(this);
    user->setTitle(QStringLiteral("用户(&U)"));
    user->addAction(QStringLiteral("注销(&O)"), QKeySequence(QStringLiteral("Ctrl+Shift+L")), this,
                    &ClientWindow::signOutRequested);
    user->addAction(QStringLiteral("退出(&X)"), QKeySequence(QStringLiteral("Ctrl+Q")), this,
                    &QWidget::close);
    menuBar()->addMenu(user);
}

void ClientWindow::buildSettingsMenu()
{
    auto* menu = new KZ::CMenu(this);
    menu->setTitle(QStringLiteral("授权设置(&A)"));
    const auto addPage = [this, menu](const QString& text, const QKeySequence& keys, int pageId) {
        menu->addAction(text, keys, this, [this, pageId] { openSettings(pageId); });
    };
    addPage(QStringLiteral("账号授权(&A)…"), QKeySequence(Qt::Key_F2),
            GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE);
    addPage(QStringLiteral("导入授权(&I)…"), QKeySequence(Qt::Key_F3),
            GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION);
    addPage(QStringLiteral("子用户管理(&S)…"), QKeySequence(Qt::Key_F4),
            GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS);
    menu->addSeparator();
    m_subUserMenu = new KZ::CMenu(menu);
    m_subUserMenu->setObjectName(QStringLiteral("halden_client_sub_user_menu"));
    m_subUserMenu->setTitle(QStringLiteral("子用户(&U)"));
    connect(m_subUserMenu, &QMenu::aboutToShow, this, &ClientWindow::fillSubUserMenu);
    menu->addMenu(m_subUserMenu);
    menuBar()->addMenu(menu);
}

void ClientWindow::buildViewMenu()
{
    auto* menu = new KZ::CMenu(this);
    menu->setTitle(QStringLiteral("查看(&V)"));
    menu->addAction(QStringLiteral("操作记录(&R)"), QKeySequence(QStringLiteral("Ctrl+R")), this,
                    &ClientWindow::showAuditTrail);
    menu->addAction(QStringLiteral("浅色/深色主题(&T)"),
                    QKeySequence(QStringLiteral("Ctrl+Shift+T")), this, &switchTheme);
    menuBar()->addMenu(menu);
}

void ClientWindow::buildStatusBar(const QString& storeName)
{
    auto* who = new KZ::CSimpleTextWidget(
        QStringLiteral("用户：%1　　%2").arg(m_session->userName(), storeName), statusBar());
    m_nearExpiry = new KZ::CSimpleTextWidget(QString(), statusBar());
    m_nearExpiry->setTextColorKey(QStringLiteral("clr_warning"));
    m_clock = new KZ::CSimpleTextWidget(QString(), statusBar());
    const int margin = uiSize("gw_siz_setting_margin");
    statusBar()->setSizeGripEnabled(false);
    statusBar()->setContentsMargins(margin, 0, margin, 0);
    statusBar()->addWidget(who);
    statusBar()->addWidget(m_nearExpiry);
    // Nobody loses a store on his own disk.
    const backend::ConnectionState* connection = m_session->connectionState();
    if (connection->isRemote()) {
        m_connection = new ConnectionView(statusBar());
        statusBar()->addPermanentWidget(m_connection);
        connect(connection, &backend::ConnectionState::changed, this,
                &ClientWindow::onConnectionChanged);
        if (!connection->isOnline())
            onConnectionChanged(false);
    }
    statusBar()->addPermanentWidget(m_clock);
}

void ClientWindow::fillSubUserMenu()
{
    m_subUserMenu->clear();
    GW::CAuthClient* client = m_session->authClient();
    QVector<QString> users;
    client->getSubUserList(users);
    for (const QString& user : std::as_const(users)) {
        const bool enabled = client->isSubUserActive(user);
        const QString icon = enabled ? QStringLiteral("gw_img_auth_setting_tree_icon_sub_user")
                                     : QStringLiteral("gw_img_auth_setting_tree_icon_sub_user_d");
        // An ampersand in a name is no mnemonic.
        QString text = QString(user).replace(QLatin1Char('&'), QStringLiteral("&&"));
        if (!enabled)
            text += QStringLiteral("（已禁用）");
        m_subUserMenu->addAction(KZ::CUiResource::getIcon(icon), text, this, [this, user] {
            openSettings(GW::ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                         GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER, user, 0);
        });
    }
    if (users.isEmpty())
        m_subUserMenu->addAction(QStringLiteral("没有子用户"))->setEnabled(false);
}

void ClientWindow::openSettings(int pageId)
{
    GW::CAuthSettingDialog::showSettingPage(pageId);
}

void ClientWindow::openSettings(int pageId, int subPageId, const QString& key, int tab)
{
    QString accountKey = key;
    for (const auto& account : std::as_const(m_session->userConfig()->accounts)) {
        if (QString::fromStdString(account->accountId) == key)
            accountKey = account->key();
    }
    GW::CAuthSettingDialog::showSettingPage(pageId, subPageId, accountKey, tab);
}

void ClientWindow::openAccount(const QString& key)
{
    const boost::shared_ptr<GW::CAccount> account = m_session->userConfig()->getAccountData(key);
    if (!account)
        return;
    if (account->authType == mbservice::AUTH_TYPE_GRANTED_TO_ME)
        openSettings(GW::ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION,
                     GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_AUTHORIZATION, key, 0);
    else
        openSettings(GW::ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE,
                     GW::ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_ACCOUNT, key, 0);
}

void ClientWindow::showAuditTrail()
{
    m_audit->setTrail(m_session->auditTrail(AuditView::capacity));
    m_tabs->activateTab(auditTab);
}

void ClientWindow::reload()
{
    m_accounts->reload();
    m_audit->setTrail(m_session->auditTrail(AuditView::capacity));
    const int count = m_accounts->nearExpiryCount();
    m_nearExpiry->setText(count == 0 ? QString()
                                     : QStringLiteral("⚠ %1 个授权将在三天内到期").arg(count));
    // An import shows a new account without asking for a new tree.
    if (m_dialog->isVisible())
        m_dialog->load();
}

void ClientWindow::tick()
{
    const QDateTime now = m_session->timeService()->currentDateTime();
    m_clock->setText(
        QStringLiteral("交易所时间 %1").arg(now.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
    // At midnight other grants come near their end.
    if (m_shownDay.isValid() && m_shownDay != now.date())
        reload();
    m_shownDay = now.date();
}

void ClientWindow::onConnectionChanged(bool isOnline)
{
    const QString refusal = m_session->connectionState()->refusal();
    m_connection->setOnline(isOnline, refusal);
    if (isOnline)
        m_offlineNotice->hide();
    else
        m_offlineNotice->showSince(m_session->timeService()->currentDateTime(), refusal);
    // The dialog covers the status bar, and blocks the way to it.
    m_dialog->setTitle(isOnline ? QStringLiteral("授权设置")
                                : QStringLiteral("授权设置（离线，只能查看）"));
    QString text = QStringLiteral("与服务器的连接已断开，正在重新连接；现在只能查看");
    if (isOnline)
        text = QStringLiteral("与服务器的连接已恢复，显示的数据已更新");
    else if (!refusal.isEmpty())
        text = QStringLiteral("与服务器的连接已断开，%1；现在只能查看").arg(refusal);
    m_messages->showAccountMsg(text, QString(), GW::MSG_TYPE_SYSTEM,
                               isOnline ? mbservice::MSG_LEVEL_INFO : mbservice::MSG_LEVEL_WARNING);
    constexpr int note = 1;
    constexpr int hint = 2;
    constexpr int hundredths = 500;
    KZ::CMessageTip::showTip(m_connection, Qt::AlignTop | Qt::AlignRight, text,
                             isOnline ? note : hint, 2, hundredths);
}

void ClientWindow::onUiResourceChanged()
{
    takeTheme();
}

void ClientWindow::takeTheme()
{
    setFont(KZ::CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    setPalette(KZ::CUiResource::palette());
    KZ::applyKitStyle(this);
}

void ClientWindow::closeEvent(QCloseEvent* event)
{
    QMainWindow::closeEvent(event);
    if (event->isAccepted())
        Q_EMIT closed();
}

} // namespace host
