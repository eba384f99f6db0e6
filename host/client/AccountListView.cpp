#include "host/client/AccountListView.h"

#include "authsetting/services/Account.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Config.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/TimeService.h"
#include "authsetting/services/UserConfig.h"
#include "host/client/ExpiryMark.h"
#include "host/client/TableIds.h"
#include "kit/dates/DateConversions.h"
#include "kit/events/EventIds.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/Menu.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTableView>

namespace host {

namespace {

enum Column { Platform, Broker, Number, State, OtherSide, FirstDay, LastDay, Mark, ColumnCount };

constexpr int futuresAccount = 1;

QString platformName(const GW::CAccount& account)
{
    const GW::CConfig& config = *GW::getConfig();
    const mbservice::CPlatformInfo platform =
        account.accountType == futuresAccount ? config.getPlatformSetting(account.platformId)
                                              : config.getStkPlatformSetting(account.platformId);
    return QString::fromStdString(platform.name);
}

QString brokerName(const GW::CAccount& account)
{
    const GW::CUserConfig& config = *GW::getUserConfig();
    const mbservice::CBrokerInfo broker =
        account.accountType == futuresAccount
            ? config.getBrokerSetting(account.platformId, account.brokerId)
            : config.getStkBrokerSetting(account.platformId, account.brokerId);
    return QString::fromStdString(broker.name);
}

} // namespace

AccountListView::AccountListView(QWidget* parent)
    : CBaseWidget(parent), m_table(new KZ::COddEvenRowTable(TABLE_CLIENT_ACCOUNTS, this, 0))
{
    setObjectName(QStringLiteral("halden_client_accounts"));
    m_table->setFlag(0x11);
    m_table->setColumnCount(ColumnCount);
    m_table->setHeaderText(Platform, QStringLiteral("交易平台"));
    m_table->setHeaderText(Broker, QStringLiteral("经纪公司/券商"));
    m_table->setHeaderText(Number, QStringLiteral("账号"));
    m_table->setHeaderText(State, QStringLiteral("授权状态"));
    m_table->setHeaderText(OtherSide, QStringLiteral("对方用户"));
    m_table->setHeaderText(FirstDay, QStringLiteral("起始日期"));
    m_table->setHeaderText(LastDay, QStringLiteral("终止日期"));
    m_table->setHeaderText(Mark, QStringLiteral("提示"));
    setInnerStretchWidget(m_table, 0, 0, 0, 0);

    QTableView* view = m_table->view();
    view->setAccessibleName(QStringLiteral("我的账号"));
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QWidget::customContextMenuRequested, this, &AccountListView::showContextMenu);
    connect(view, &QAbstractItemView::activated, this, &AccountListView::requestSettings);
}

AccountListView::~AccountListView() = default;

QString AccountListView::currentAccount() const
{
    return m_keys.value(m_table->selectedRow());
}

void AccountListView::reload()
{
    const QString chosen = currentAccount();
    m_table->clear();
    m_keys.clear();
    m_nearExpiryCount = 0;
    for (const auto& account : std::as_const(GW::getUserConfig()->accounts)) {
        const int row = m_table->addRowBegin();
        m_keys.append(account->key());
        fillRow(row, *account);
        m_table->addRowEnd(true);
        if (account->key() == chosen)
            m_table->selectRow(row);
    }
}

void AccountListView::fillRow(int row, const GW::CAccount& account)
{
    m_table->setItemText(row, Platform, platformName(account));
    m_table->setItemText(row, Broker, brokerName(account));
    m_table->setItemText(row, Number, GW::accountDisplayIDQs(account));
    m_table->setItemToolTip(row, Number, QString::fromStdString(account.accountId));
    m_table->setItemText(row, State, account.authTypeString());
    m_table->setItemTextColorKey(row, State, GW::authTypeToColorKey(account.authType));
    const GW::CUserConfig& config = *GW::getUserConfig();
    if (config.hasSubAccount(account.key()) || config.isSubAccount(account.key())) {
        m_table->setItemText(row, Mark, QStringLiteral("有子账号关系，不能授权"));
        m_table->setItemTextColorKey(row, Mark, "clr_text_quiet");
    }
    fillGrant(row, account);
}

void AccountListView::fillGrant(int row, const GW::CAccount& account)
{
    boost::shared_ptr<GW::CAuthDetail> grant;
    if (!GW::getAuthClient()->getAuthDetail(account.key(), grant))
        return;
    const bool received = account.authType == mbservice::AUTH_TYPE_GRANTED_TO_ME;
    const QDate first = KZ::secondToQDateTime(grant->limit.startTime).date();
    const QDate last = KZ::secondToQDateTime(grant->limit.endTime).date();
    const QString format = QStringLiteral("yyyy-MM-dd");
    m_table->setItemText(row, OtherSide, received ? grant->grantor : grant->grantee);
    m_table->setItemText(row, FirstDay, first.toString(format));
    m_table->setItemText(row, LastDay, last.toString(format));

    const QDate today = GW::getTimeService()->currentDateTime().date();
    const ExpiryMark mark = ExpiryMark::forGrant(first, last, today);
    if (mark.text.isEmpty())
        return;
    m_table->setItemText(row, Mark, mark.text);
    m_table->setItemIconKey(row, Mark, mark.iconKey);
    m_table->setItemTextColorKey(row, Mark, mark.colorKey);
    if (mark.isNear) {
        m_table->setItemToolTip(row, State, mark.text);
        ++m_nearExpiryCount;
    }
}

bool AccountListView::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    if (eventId != KZ::EVENT_ROW_SELECTED)
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    Q_EMIT accountChosen(m_keys.value(param1));
    return true;
}

void AccountListView::requestSettings()
{
    const QString key = currentAccount();
    if (!key.isEmpty())
        Q_EMIT settingsRequested(key);
}

void AccountListView::showContextMenu(const QPoint& position)
{
    const int row = m_table->selectedRow();
    if (row < 0)
        return;
    auto* menu = new KZ::CMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* settings = menu->addAction(QStringLiteral("授权设置(&A)…"));
    connect(settings, &QAction::triggered, this, &AccountListView::requestSettings);
    const QString number = m_table->itemText(row, Number);
    QAction* copy = menu->addAction(QStringLiteral("复制账号(&C)"));
    connect(copy, &QAction::triggered, this,
            [number] { QGuiApplication::clipboard()->setText(number); });
    menu->popup(m_table->view()->viewport()->mapToGlobal(position));
}

} // namespace host
