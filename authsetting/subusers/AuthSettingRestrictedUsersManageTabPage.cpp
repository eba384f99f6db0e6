#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/OnScreen.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/SmallNormalButton.h"
#include "kit/widgets/WidgetList.h"

#include <QTableView>

#include <array>

namespace GW {

namespace {

constexpr int margin = 8;
constexpr int tableId = 0x40000f;
constexpr int newColumnWidth = 100;
constexpr int disableButtonWidth = 40;
constexpr int firstRowButton = 100;
constexpr int enableAllCommand = 0;
constexpr int disableAllCommand = 1;
constexpr int noteKind = 1;

enum Column { Name, Grants, State, Operation };

QString stateText(bool active)
{
    return active ? QStringLiteral("已启用") : QStringLiteral("已禁用");
}

QWidget* newDisableButton(QWidget* parent)
{
    auto* button = new KZ::CSmallNormalButton(firstRowButton, parent);
    button->setTextFontKey(QStringLiteral("fnt_default_normal_fix"));
    button->setText(QStringLiteral("禁用"));
    button->resize(disableButtonWidth, button->height());
    return button;
}

} // namespace

CAuthSettingRestrictedUsersManageTabPage::CAuthSettingRestrictedUsersManageTabPage(QWidget* parent)
    : IAuthSettingTabPage(ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS, -1,
                          ID_FUTURE_AUTHSETTING_TABPAGE_RESTRICTEDUSERS_MANAGE, parent),
      m_reloads(this), m_outcomes(this)
{
    buildLayout();
    if (const CAuthClient* client = getAuthClient()) {
        connect(client, &CAuthClient::sigSetSubUserResult, this,
                &CAuthSettingRestrictedUsersManageTabPage::slotSetsubuserResult);
    }
}

CAuthSettingRestrictedUsersManageTabPage::~CAuthSettingRestrictedUsersManageTabPage() = default;

void CAuthSettingRestrictedUsersManageTabPage::buildLayout()
{
    const std::array headers{QStringLiteral("子用户名"), QStringLiteral("账号数量"),
                             QStringLiteral("状态"), QStringLiteral("操作")};
    m_list = new KZ::CWidgetList(Qt::Vertical, this);
    m_list->setMargin(margin, margin, margin, margin);
    m_list->setSpacing(0);
    m_table = new KZ::COddEvenRowTable(tableId, m_list);
    m_table->view()->setAccessibleName(QStringLiteral("子用户管理"));
    m_table->resize(m_table->width() + 1, KZ::CUiResource::getSize(QStringLiteral(
                                              "gw_siz_setting_accounts_table_height")));
    m_table->setColumnCount(static_cast<int>(headers.size()));
    for (int column = 0; column < m_table->columnCount(); ++column) {
        m_table->setHeaderText(column, headers[static_cast<std::size_t>(column)]);
        m_table->setColumnWidth(column, newColumnWidth);
    }
    m_table->setHeaderCentered(Operation);
    m_table->setColumnWidgets(
        Operation, {newDisableButton, [this](QWidget* widget, int row) { bindButton(widget, row); },
                    Qt::AlignCenter, [this](int row) { return buttonName(row); },
                    [this](int row) {
                        m_table->deliverEvent(KZ::EVENT_BUTTON_CLICKED, firstRowButton + row, 0,
                                              QString(), nullptr);
                    }});
    restoreTableLayout(m_table);
    m_list->addStretchWidget(m_table, 1, 3, false);
    setInnerStretchWidget(m_list, 0, 0, 0, 0);
}

void CAuthSettingRestrictedUsersManageTabPage::bindButton(QWidget* widget, int row)
{
    auto* button = static_cast<KZ::CSmallNormalButton*>(widget);
    button->setId(firstRowButton + row);
    button->setAccessibleName(buttonName(row));
}

QString CAuthSettingRestrictedUsersManageTabPage::buttonName(int row) const
{
    return QStringLiteral("禁用 ") + m_table->itemText(row, Name);
}

void CAuthSettingRestrictedUsersManageTabPage::reloadData()
{
    if (m_table)
        m_reloads.run([this] { fill(); });
}

void CAuthSettingRestrictedUsersManageTabPage::fill()
{
    m_table->clear();
    CAuthClient* client = getAuthClient();
    QVector<QString> subUsers;
    if (!client || !client->getSubUserList(subUsers))
        return;
    for (const QString& subUser : std::as_const(subUsers)) {
        const int row = m_table->appendRow();
        m_table->setRowKey(row, subUser);
        fillRow(row, subUser);
    }
}

void CAuthSettingRestrictedUsersManageTabPage::fillRow(int row, const QString& subUser)
{
    CAuthClient* client = getAuthClient();
    if (!client || subUser.isEmpty())
        return;
    // The reads may lead to a reload, which would take the row away.
    const CReloadGate::Hold hold(m_reloads);
    QMap<QString, boost::shared_ptr<CAuthDetail>> grants;
    client->getAuthorizedFromMeInfo(subUser, grants);
    m_table->setItemText(row, Name, subUser);
    m_table->setItemText(row, Grants, QString::number(grants.size()));
    const bool active = client->isSubUserActive(subUser);
    if (active)
        m_table->setItemColumnWidget(row, Operation);
    else
        m_table->setItemWidget(row, Operation, static_cast<QWidget*>(nullptr), Qt::AlignCenter);
    m_table->setItemText(row, State, stateText(active));
    m_table->setItemTextColorKey(row, State,
                                 active ? "clr_sub_user_enabled" : "clr_sub_user_disabled");
}

bool CAuthSettingRestrictedUsersManageTabPage::handleEvent(int eventId, int param1, int param2,
                                                           QString text, void* data)
{
    switch (eventId) {
    case KZ::EVENT_BUTTON_CLICKED:
        onClicked(param1, data);
        return true;
    case KZ::EVENT_ROW_SELECTED:
        return true;
    default:
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    }
}

void CAuthSettingRestrictedUsersManageTabPage::onClicked(int id, void* sender)
{
    if (!m_table || !getAuthClient())
        return;
    if (id >= firstRowButton)
        toggleRow(id - firstRowButton, sender);
    else if (id == enableAllCommand || id == disableAllCommand)
        setAll(id == enableAllCommand, sender);
}

void CAuthSettingRestrictedUsersManageTabPage::toggleRow(int row, void* sender)
{
    if (row >= m_table->rowCount())
        return;
    CAuthClient* client = getAuthClient();
    const QString subUser = m_table->itemText(row, Name);
    const QString shownState = m_table->itemText(row, State);
    const bool active = client->isSubUserActive(subUser);
    if (isUserLooking(this, sender) && shownState != stateText(active)) {
        reloadData();
        const int shownRow = rowOf(subUser);
        QWidget* button = m_table->itemWidget(shownRow, Operation);
        showChangedTip(button ? button : m_table);
        return;
    }
    m_request = newRequestNumber();
    beginRequest();
    client->setSubUser(subUser, !active);
    m_outstanding = 1;
}

void CAuthSettingRestrictedUsersManageTabPage::setAll(bool enable, void* sender)
{
    if (m_table->isFilterHiding()) {
        m_table->clearFilter();
        showChangedTip(sender ? static_cast<QWidget*>(sender) : m_table);
        return;
    }
    CAuthClient* client = getAuthClient();
    QStringList subUsers;
    for (int row = 0; row < m_table->rowCount(); ++row)
        subUsers.append(m_table->itemText(row, Name));
    m_outstanding = 0;
    m_request = newRequestNumber();
    for (const QString& subUser : std::as_const(subUsers)) {
        beginRequest();
        client->setSubUser(subUser, enable);
        ++m_outstanding;
    }
}

void CAuthSettingRestrictedUsersManageTabPage::slotSetsubuserResult(QString qSubuserId, bool,
                                                                    bool bReslt, QString)
{
    --m_outstanding;
    if (m_outstanding != 0)
        return;
    m_outcomes.finish(m_request, [this, qSubuserId, bReslt] { showResult(qSubuserId, bReslt); });
}

void CAuthSettingRestrictedUsersManageTabPage::showResult(const QString& subUser, bool ok)
{
    if (ok)
        fillRow(rowOf(subUser), subUser);
    else
        showResultTip(m_table, QStringLiteral("修改子用户状态失败"), noteKind, m_request);
    deliverEvent(EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
}

int CAuthSettingRestrictedUsersManageTabPage::rowOf(const QString& subUser) const
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->itemText(row, Name) == subUser)
            return row;
    }
    return -1;
}

} // namespace GW
