#include "authsetting/authorize/BatchAccountsTable.h"

#include "authsetting/authorize/AuthSettingAccountOpWidget.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/shell/AccountTextCache.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "kit/resources/UiResource.h"

#include <QTableView>

namespace GW {

namespace {

constexpr int tableId = 4194320;
constexpr int menuFlags = 255;
constexpr int tableFlags = 0x11;
constexpr int fillCell = 0x3000;
constexpr int centred = 132;

QString dayText(const QDate& day)
{
    return day.toString(QStringLiteral("yyyy-MM-dd"));
}

} // namespace

CBatchAccountsTable::CBatchAccountsTable(QWidget* parent)
    : COddEvenRowTable(tableId, parent, menuFlags)
{
    setObjectName(QStringLiteral("halden_batch_table"));
    view()->setAccessibleName(QStringLiteral("批量授权"));
    setFlag(tableFlags);
    buildColumns();
    setColumnWidgets(OperationColumn, operationWidgets());
}

KZ::CColumnWidgetKind CBatchAccountsTable::operationWidgets()
{
    KZ::CColumnWidgetKind kind;
    kind.make = [](QWidget* parent) -> QWidget* {
        auto* operation = new CAuthSettingAccountOpWidget(-1, parent);
        // No other account has one.
        operation->setAuthType(mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
        return operation;
    };
    kind.bind = [this](QWidget* widget, int row) {
        auto* operation = static_cast<CAuthSettingAccountOpWidget*>(widget);
        operation->setRowId(row);
        operation->setAccountName(itemText(row, AccountColumn));
    };
    kind.alignment = fillCell;
    kind.accessibleName = [this](int row) -> QString {
        return QStringLiteral("取消授权 ") + itemText(row, AccountColumn);
    };
    kind.press = [this](int row) { deliverEvent(EVENT_CANCEL_AUTH, row, 0, QString(), nullptr); };
    return kind;
}

void CBatchAccountsTable::buildColumns()
{
    setColumnCount(ColumnCount);
    setHeaderText(SelectColumn, QStringLiteral("选择"));
    setHeaderText(PlatformColumn, QStringLiteral("交易平台"));
    setHeaderText(BrokerColumn, QStringLiteral("经纪公司"));
    setHeaderText(AccountColumn, QStringLiteral("账号"));
    setHeaderText(StateColumn, QStringLiteral("授权状态"));
    setHeaderText(GranteeColumn, QStringLiteral("被授权人"));
    setHeaderText(StartColumn, QStringLiteral("授权开始时间"));
    setHeaderText(EndColumn, QStringLiteral("授权结束时间"));
    setHeaderText(OperationColumn, QStringLiteral("操作"));
    setHeaderCentered(SelectColumn);
    setHeaderCentered(OperationColumn);
    setColumnWidth(SelectColumn,
                   KZ::CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
    // A grant in the making has a longer text than the states that the column first fits itself to.
    setColumnWidth(StateColumn, KZ::CUiResource::getSize(
                                    QStringLiteral("gw_siz_auth_setting_accounts_state_width")));
}

void CBatchAccountsTable::clearAccounts()
{
    clear();
    m_hints = CExpiryHints();
}

int CBatchAccountsTable::addAccount(const CAccount& account, const CAuthDetail* grant,
                                    CAccountTextCache& texts)
{
    const bool grantable = account.authType == mbservice::AUTH_TYPE_NOT_GRANTED;
    const int row = addRowBegin();
    setItemCheckBox(row, SelectColumn, row, !grantable, grantable, centred);
    setItemText(row, PlatformColumn, texts.platformName(account), false);
    setItemText(row, BrokerColumn, texts.brokerName(account), false);
    setItemText(row, AccountColumn, accountDisplayIDQs(account), false);
    setItemText(row, StateColumn, account.authTypeString(), false);
    setItemTextColorKey(row, StateColumn, authTypeToColorKey(account.authType));
    if (grant) {
        setItemText(row, GranteeColumn, grant->grantee, false);
        setItemText(row, StartColumn, texts.grantDayText(grant->limit.startTime), false);
        setItemText(row, EndColumn, texts.grantDayText(grant->limit.endTime), false);
        m_hints.mark(this, row, StateColumn, grant->limit.endTime);
    }
    if (account.authType == mbservice::AUTH_TYPE_GRANTED_TO_OTHER)
        setItemColumnWidget(row, OperationColumn);
    addRowEnd(true);
    return row;
}

bool CBatchAccountsTable::isSelected(int row) const
{
    return hasItemCheckBox(row, SelectColumn) && isItemChecked(row, SelectColumn) &&
           isItemCheckEnabled(row, SelectColumn);
}

bool CBatchAccountsTable::hasSelectedRow() const
{
    for (int row = 0; row < rowCount(); ++row) {
        if (isSelected(row))
            return true;
    }
    return false;
}

void CBatchAccountsTable::showPending(int row, const QDate& start, const QDate& end,
                                      const QString& grantee)
{
    setItemText(row, StateColumn, QStringLiteral("已修改 未授权"), false);
    setItemText(row, StartColumn, dayText(start), false);
    setItemText(row, EndColumn, dayText(end), false);
    setItemText(row, GranteeColumn, grantee);
}

void CBatchAccountsTable::resetPending(int row)
{
    setItemText(row, StateColumn, authTypeToString(mbservice::AUTH_TYPE_NOT_GRANTED, QString()),
                false);
    setItemText(row, StartColumn, QString(), false);
    setItemText(row, EndColumn, QString(), false);
    setItemText(row, GranteeColumn, QString());
}

} // namespace GW
