#include "authsetting/subusers/AuthSettingRestrictedUsersManageTabPage.h"

#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingIds.h"
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
                          ID_FUTURE_AUTHSETTING_TABPAGE_RESTRICTEDUSERS_MANAGE, parent)
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
                    Qt::AlignCenter});
    restoreTableLayout(m_table);
    m_list->addStretchWidget(m_table, 1, 3, false);
    setInnerStretchWidget(m_list, 0, 0, 0, 0);
}

void CAuthSettingRestrictedUsersManageTabPage::bindButton(QWidget* widget, int row)
{
    auto* button = static_cast<KZ::CSmallNormalButton*>(widget);
    button->setId(firstRowButton + row);
    button->setAccessibleName(QStringLiteral("禁用 ") + m_table->itemText(row, Name));
}

void CAuthSettingRestrictedUsersManageTabPage::reloadData()
{
    if (!m_table)
        return;
    m_table->clear();
    CAuthClient* client = getAuthClient();
    QVector<QString> subUsers;
    if (!client || !client->getSubUserList(subUsers))
        return;
    for (const QString& subUser : std::as_const(subUsers))
        fillRow(m_table->appendRow(), subUser);
}

void CAuthSettingRestrictedUsersManageTabPage::fillRow(int row, const QString& subUser)
{
    CAuthClient* client = getAuthClient();
    if (!client || subUser.isEmpty())
        return;
    QMap<QString, boost::shared_ptr<CAuthDetail>> grants;
    client->getAuthorizedFromMeInfo(subUser, grants);
    m_table->setItemText(row, Name, subUser);
    m_table->setItemText(row, Grants, QString::number(grants.size()));
    const bool active = client->isSubUserActive(subUser);
    if (active)
        m_table->setItemColumnWidget(row, Operation);
    else
        m_table->setItemWidget(row, Operation, static_cast<QWidget*>(nullptr), Qt::AlignCenter);
    m_table->setItemText(row, State, active ? QStringLiteral("已启用") : QStringLiteral("已禁用"));
    m_table->setItemTextColorKey(row, State,
                                 active ? "clr_sub_user_enabled" : "clr_sub_user_disabled");
}

bool CAuthSettingRestrictedUsersManageTabPage::handleEvent(int eventId, int param1, int param2,
                                                           QString text, void* data)
{
    switch (eventId) {
    case KZ::EVENT_BUTTON_CLICKED:
        onClicked(param1);
        return true;
    case KZ::EVENT_ROW_SELECTED:
        return true;
    default:
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    }
}

void CAuthSettingRestrictedUsersManageTabPage::onClicked(int id)
{
    if (!m_table || !getAuthClient())
        return;
    if (id >= firstRowButton)
        toggleRow(id - firstRowButton);
    else if (id == enableAllCommand || id == disableAllCommand)
        setAll(id == enableAllCommand);
}

void CAuthSettingRestrictedUsersManageTabPage::toggleRow(int row)
{
    if (row >= m_table->rowCount())
        return;
    CAuthClient* client = getAuthClient();
    const QString subUser = m_table->itemText(row, Name);
    const bool active = client->isSubUserActive(subUser);
    beginRequest();
    client->setSubUser(subUser, !active);
    m_outstanding = 1;
}

void CAuthSettingRestrictedUsersManageTabPage::setAll(bool enable)
{
    CAuthClient* client = getAuthClient();
    m_outstanding = 0;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QString subUser = m_table->itemText(row, Name);
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
    finishRequest([this, qSubuserId, bReslt] { showResult(qSubuserId, bReslt); });
}

void CAuthSettingRestrictedUsersManageTabPage::showResult(const QString& subUser, bool ok)
{
    if (ok)
        fillRow(rowOf(subUser), subUser);
    else
        showResultTip(m_table, QStringLiteral("修改子用户状态失败"), noteKind);
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
