#include "authsetting/overview/AuthSettingAccountsOverviewTabPage.h"

#include "authsetting/authorize/AuthSettingAccountOpWidget.h"
#include "authsetting/services/Account.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AccountTextCache.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/table/OddEvenRowTable.h"

#include <QTableView>

namespace GW {

namespace {

enum Column {
    PlatformColumn,
    BrokerColumn,
    AccountColumn,
    StateColumn,
    GranteeColumn,
    StartColumn,
    EndColumn,
    OperationColumn,
    ColumnCount
};

constexpr int tableId = 4194321;
constexpr int menuFlags = 255;
constexpr int tableFlags = 0x11;
constexpr int fillCell = 0x3000;
constexpr int tableMargin = 8;

bool isOverviewState(mbservice::EAuthType type)
{
    return type == mbservice::AUTH_TYPE_NOT_GRANTED ||
           type == mbservice::AUTH_TYPE_GRANTED_TO_OTHER;
}

} // namespace

CAuthSettingAccountsOverviewTabPage::CAuthSettingAccountsOverviewTabPage(QWidget* parent)
    : IAuthSettingTabPage(ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, -1,
                          ID_FUTURE_AUTHSETTING_TABPAGE_ACCOUNTS_OVERVIEW, parent),
      m_reloads(this), m_outcomes(this)
{
    buildTable();
    if (CAuthClient* client = getAuthClient()) {
        connect(client, &CAuthClient::sigDelAuthResult, this,
                &CAuthSettingAccountsOverviewTabPage::slotDelAuthResult);
    }
}

CAuthSettingAccountsOverviewTabPage::~CAuthSettingAccountsOverviewTabPage()
{
    if (m_table)
        saveTableLayout(m_table);
}

void CAuthSettingAccountsOverviewTabPage::buildTable()
{
    m_table = new KZ::COddEvenRowTable(tableId, this, menuFlags);
    m_table->setObjectName(QStringLiteral("halden_overview_table"));
    m_table->view()->setAccessibleName(QStringLiteral("账号总览"));
    m_table->setFlag(tableFlags);
    m_table->setColumnCount(ColumnCount);
    m_table->setHeaderText(PlatformColumn, QStringLiteral("交易平台"));
    m_table->setHeaderText(BrokerColumn, QStringLiteral("经纪公司/券商"));
    m_table->setHeaderText(AccountColumn, QStringLiteral("账号"));
    m_table->setHeaderText(StateColumn, QStringLiteral("授权状态"));
    m_table->setHeaderText(GranteeColumn, QStringLiteral("被授权人"));
    m_table->setHeaderText(StartColumn, QStringLiteral("起始时间"));
    m_table->setHeaderText(EndColumn, QStringLiteral("终止时间"));
    m_table->setHeaderText(OperationColumn, QStringLiteral("操作"));
    m_table->setHeaderCentered(OperationColumn);
    m_table->setColumnWidgets(OperationColumn, operationWidgets());
    restoreTableLayout(m_table);
    setInnerStretchWidget(m_table, tableMargin, tableMargin, tableMargin, tableMargin);
}

KZ::CColumnWidgetKind CAuthSettingAccountsOverviewTabPage::operationWidgets()
{
    KZ::CColumnWidgetKind kind;
    kind.make = [](QWidget* parent) { return new CAuthSettingAccountOpWidget(-1, parent); };
    kind.bind = [this](QWidget* widget, int row) {
        auto* operation = static_cast<CAuthSettingAccountOpWidget*>(widget);
        operation->setRowId(row);
        operation->setAuthType(m_rows.at(row).authType);
        operation->setAccountName(m_table->itemText(row, AccountColumn));
    };
    kind.alignment = fillCell;
    kind.accessibleName = [this](int row) -> QString {
        return m_rows.value(row).authType == mbservice::AUTH_TYPE_GRANTED_TO_OTHER
                   ? QStringLiteral("取消授权 ") + m_table->itemText(row, AccountColumn)
                   : QString();
    };
    kind.press = [this](int row) {
        m_table->deliverEvent(EVENT_CANCEL_AUTH, row, 0, QString(), nullptr);
    };
    return kind;
}

void CAuthSettingAccountsOverviewTabPage::reloadData()
{
    m_reloads.run([this] { fill(); });
}

void CAuthSettingAccountsOverviewTabPage::fill()
{
    if (m_table)
        m_table->clear();
    m_hints = CExpiryHints();
    m_rows.clear();
    m_grantedAccounts.clear();
    CAccountTextCache texts(StockRule::OnlyStockType);
    const CUserConfig* user = getUserConfig();
    const qsizetype most = user ? user->accounts.size() : 0;
    m_rows.reserve(most);
    m_grantedAccounts.reserve(static_cast<std::size_t>(most));
    // The client may change the list while its reads are under way, so it is asked at every step.
    for (qsizetype index = 0; user && index < user->accounts.size(); ++index) {
        const boost::shared_ptr<CAccount> account = user->accounts.at(index);
        if (!account || !isOverviewState(account->authType))
            continue;
        const QString key = account->key();
        if (!user->isSubAccount(key) && !user->hasSubAccount(key))
            addRow(*account, key, texts);
    }
}

void CAuthSettingAccountsOverviewTabPage::addRow(const CAccount& account, const QString& key,
                                                 CAccountTextCache& texts)
{
    if (!m_table)
        return;
    const int row = m_table->addRowBegin();
    m_rows.append({account.authType, -1});
    m_table->setRowKey(row, key);
    m_table->setItemText(row, PlatformColumn, texts.platformName(account), true);
    m_table->setItemText(row, BrokerColumn, texts.brokerName(account));
    m_table->setItemText(row, AccountColumn, accountDisplayIDQs(account));
    m_table->setItemText(row, StateColumn, account.authTypeString());
    m_table->setItemTextColorKey(row, StateColumn, authTypeToColorKey(account.authType));
    m_table->setItemColumnWidget(row, OperationColumn);
    fillGrant(row, key, texts);
    m_table->addRowEnd(true);
}

void CAuthSettingAccountsOverviewTabPage::fillGrant(int row, const QString& key,
                                                    CAccountTextCache& texts)
{
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> detail;
    if (!client || !client->getAuthDetail(key, detail) || !detail)
        return;
    m_table->setItemText(row, GranteeColumn, detail->grantee);
    m_table->setItemText(row, StartColumn, texts.grantDayText(detail->limit.startTime));
    m_table->setItemText(row, EndColumn, texts.grantDayText(detail->limit.endTime));
    m_hints.mark(m_table, row, StateColumn, detail->limit.endTime);
    m_rows[row].grantedAccount = static_cast<int>(m_grantedAccounts.size());
    m_grantedAccounts.push_back(detail->account);
}

bool CAuthSettingAccountsOverviewTabPage::handleEvent(int eventId, int param1, int param2,
                                                      QString text, void* data)
{
    if (eventId != EVENT_CANCEL_AUTH)
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    cancelGrant(param1);
    return true;
}

void CAuthSettingAccountsOverviewTabPage::cancelGrant(int row)
{
    m_pendingRow = row;
    m_pendingKey = m_table ? m_table->rowKey(row) : QString();
    m_pendingRequest = newRequestNumber();
    CAuthClient* client = getAuthClient();
    const int grant = m_rows.value(row, {mbservice::AUTH_TYPE_UNKNOWN, -1}).grantedAccount;
    if (!m_table || grant < 0 || !client)
        return;
    // A copy, because an answer may come at once and fill the rows anew.
    const mbservice::CAccountInfo account = m_grantedAccounts[static_cast<std::size_t>(grant)];
    const QString grantee = m_table->itemText(row, GranteeColumn);
    beginRequest();
    client->delAuth(grantee, account, requestTag(this));
}

void CAuthSettingAccountsOverviewTabPage::slotDelAuthResult(QString, mbservice::CAccountInfo,
                                                            QVariant tag, bool success,
                                                            QString error)
{
    if (isRequestOf(this, tag))
        m_outcomes.finish(m_pendingRequest,
                          [this, success, error] { showCancelResult(success, error); });
}

void CAuthSettingAccountsOverviewTabPage::showCancelResult(bool success, QString error)
{
    if (success) {
        reloadData();
        deliverEvent(EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
        return;
    }
    if (!m_table)
        return;
    // A reload may have moved the account to another row.
    const int row =
        m_table->rowKey(m_pendingRow) == m_pendingKey ? m_pendingRow : rowOf(m_pendingKey);
    showResultTip(m_table->itemWidget(row, OperationColumn),
                  QStringLiteral("取消授权失败。错误信息：") + error, 2, m_pendingRequest);
}

int CAuthSettingAccountsOverviewTabPage::rowOf(const QString& key) const
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->rowKey(row) == key)
            return row;
    }
    return -1;
}

} // namespace GW
