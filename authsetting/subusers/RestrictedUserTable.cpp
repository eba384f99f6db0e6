#include "authsetting/subusers/RestrictedUserTable.h"

#include "authsetting/authorize/PlatformSetting.h"
#include "authsetting/services/Account.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/shell/AccountTexts.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/SmallNormalButton.h"

#include <QTableView>

#include <array>

namespace GW {

namespace {

constexpr int tableId = 0x400014;
constexpr auto riseColor = "clr_stock_rise";
constexpr auto neutralColor = "clr_stock_neutral";

int sizeOf(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

QString textOr(const QString& text, const QString& fallback)
{
    return text.isEmpty() ? fallback : text;
}

} // namespace

CRestrictedUserTable::CRestrictedUserTable(QWidget* parent) : COddEvenRowTable(tableId, parent)
{
    const std::array<QString, ColumnCount> headers{
        QStringLiteral("选择"),     QStringLiteral("交易平台"), QStringLiteral("经纪公司"),
        QStringLiteral("账号"),     QStringLiteral("授权状态"), QStringLiteral("被授权用户"),
        QStringLiteral("起始时间"), QStringLiteral("终止时间"), QStringLiteral("操作")};
    view()->setAccessibleName(QStringLiteral("子用户设置"));
    setColumnCount(ColumnCount);
    for (int column = 0; column < ColumnCount; ++column)
        setHeaderText(column, headers[static_cast<std::size_t>(column)]);
    setHeaderCentered(Select);
    setHeaderCentered(Operation);
    setColumnWidth(Select, KZ::CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
    describeCancelButtons();
    restoreTableLayout(this);
}

CRestrictedUserTable::~CRestrictedUserTable()
{
    saveTableLayout(this);
}

void CRestrictedUserTable::clearAccounts()
{
    clear();
    m_rows.clear();
    m_rowOfKey.clear();
    m_hints = CExpiryHints();
}

int CRestrictedUserTable::addAccount(const boost::shared_ptr<CAccount>& account)
{
    const int row = appendRow();
    const QString key = genAccountKeyQs(keyToAccountInfo(account->key()));
    m_rows.append({account, key, false, {}});
    m_rowOfKey.insert(key, row);
    offerCancelButton(row);
    return row;
}

void CRestrictedUserTable::describeCancelButtons()
{
    KZ::CColumnWidgetKind kind;
    kind.accessibleName = [this](int row) -> QString {
        return m_rows.value(row).cancellable ? cancelButtonName(row) : QString();
    };
    kind.press = [this](int row) {
        deliverEvent(KZ::EVENT_BUTTON_CLICKED, firstCancelButtonId + row, 0, QString(), nullptr);
    };
    setColumnWidgets(Operation, kind);
}

QString CRestrictedUserTable::cancelButtonName(int row) const
{
    return QStringLiteral("取消授权 ") + itemText(row, Account);
}

void CRestrictedUserTable::offerCancelButton(int row)
{
    setItemWidget(
        row, Operation, [this, row](QWidget* parent) { return newCancelButton(row, parent); },
        Qt::AlignCenter);
}

QWidget* CRestrictedUserTable::newCancelButton(int row, QWidget* parent)
{
    auto* button = new KZ::CSmallNormalButton(firstCancelButtonId + row, parent);
    button->setText(QStringLiteral("取消授权"));
    button->setAccessibleName(cancelButtonName(row));
    button->resize(sizeOf("gw_siz_auth_setting_account_btn_width"),
                   sizeOf("gw_siz_auth_setting_account_btn_height"));
    if (!m_rows.at(row).cancellable)
        button->hide();
    m_rows[row].cancelButton = button;
    return button;
}

boost::shared_ptr<CAccount> CRestrictedUserTable::account(int row) const
{
    return m_rows.value(row).account;
}

QString CRestrictedUserTable::key(int row) const
{
    return m_rows.value(row).key;
}

int CRestrictedUserTable::rowOf(const QString& key) const
{
    return m_rowOfKey.value(key, -1);
}

void CRestrictedUserTable::showGranted(int row, const CAuthDetail& grant)
{
    showAccount(row, true, true);
    showState(row, authTypeToString(mbservice::AUTH_TYPE_GRANTED_TO_OTHER, QString()), riseColor);
    setItemText(row, Grantee, grant.grantee);
    showDays(row, grant.limit);
    m_hints.mark(this, row, State, grant.limit.endTime);
}

void CRestrictedUserTable::showPending(int row, const CPendingGrant& grant)
{
    showAccount(row, false, false);
    showState(row, authTypeToString(mbservice::AUTH_TYPE_GRANTED_TO_OTHER, QString()), riseColor);
    setItemText(row, Grantee, grant.result);
    showDays(row, grant.limit);
    CExpiryHints::unmark(this, row, State);
}

void CRestrictedUserTable::showFree(int row)
{
    showAccount(row, false, false);
    showState(row, authTypeToString(mbservice::AUTH_TYPE_NOT_GRANTED, QString()), neutralColor);
    for (const int column : {Grantee, FirstDay, LastDay})
        setItemText(row, column, QString());
    CExpiryHints::unmark(this, row, State);
}

void CRestrictedUserTable::showAccount(int row, bool locked, bool cancellable)
{
    const CAccount& account = *m_rows.at(row).account;
    // A box that is there already may be the one whose click led here: it stays.
    if (!hasItemCheckBox(row, Select))
        setItemCheckBox(row, Select, firstCheckBoxId + row, false, !locked, Qt::AlignCenter);
    setItemCheckEnabled(row, Select, !locked);
    setItemText(row, Platform,
                textOr(platformSettingName(account, StockRule::AllButFuturesType),
                       QString::number(account.platformId)));
    setItemText(row, Broker,
                textOr(brokerName(account, StockRule::AllButFuturesType),
                       QString::fromStdString(account.brokerId)));
    setItemText(row, Account, accountDisplayIDQs(account));
    Row& shown = m_rows[row];
    if (shown.cancellable == cancellable)
        return;
    shown.cancellable = cancellable;
    // The table alone shows a button, in its cell: one that was hidden is made anew for that.
    if (cancellable && shown.cancelButton)
        offerCancelButton(row);
    else if (shown.cancelButton)
        shown.cancelButton->hide();
}

void CRestrictedUserTable::showState(int row, const QString& text, const char* colorKey)
{
    setItemText(row, State, text);
    setItemTextColorKey(row, State, colorKey);
}

void CRestrictedUserTable::showDays(int row, const CAuthLimit& limit)
{
    setItemText(row, FirstDay, grantDayText(limit.startTime));
    setItemText(row, LastDay, grantDayText(limit.endTime));
}

void CRestrictedUserTable::setTicked(int row, bool ticked)
{
    if (hasItemCheckBox(row, Select) && isItemChecked(row, Select) != ticked)
        setItemChecked(row, Select, ticked);
}

void CRestrictedUserTable::markModified(int row)
{
    const QString text = QStringLiteral("已修改, 未授权");
    if (itemText(row, State) != text)
        showState(row, text, neutralColor);
}

bool CRestrictedUserTable::hasSelection() const
{
    for (int row = 0; row < m_rows.size(); ++row) {
        if (isItemChecked(row, Select) && isItemCheckEnabled(row, Select))
            return true;
    }
    return false;
}

QWidget* CRestrictedUserTable::cancelButton(int row)
{
    return itemWidget(row, Operation);
}

} // namespace GW
