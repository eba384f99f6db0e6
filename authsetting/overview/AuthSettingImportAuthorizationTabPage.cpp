#include "authsetting/overview/AuthSettingImportAuthorizationTabPage.h"

#include "authsetting/authorize/ExpiryHints.h"
#include "authsetting/authorize/GrantFilePrompt.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AccountTexts.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/OnScreen.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/events/EventIds.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/WidgetList.h"

#include <QFileDialog>
#include <QPointer>
#include <QTableView>

#include <array>

namespace GW {

namespace {

constexpr int margin = 8;
constexpr int tableId = 0x400012;
constexpr int importCommand = 0;
constexpr int outcomeKind = 3;

enum Column { Platform, Broker, Account, State, Grantor, FirstDay, LastDay };

} // namespace

CAuthSettingImportAuthorizationTabPage::CAuthSettingImportAuthorizationTabPage(QWidget* parent)
    : IAuthSettingTabPage(ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION, -1,
                          ID_FUTURE_AUTHSETTING_TABPAGE_IMPORT_AUTHORIZATION, parent),
      m_reloads(this), m_outcomes(this)
{
    buildLayout();
    if (const CAuthClient* client = getAuthClient()) {
        connect(client, &CAuthClient::sigValidAuth, this,
                &CAuthSettingImportAuthorizationTabPage::slotValidAuth);
    }
}

CAuthSettingImportAuthorizationTabPage::~CAuthSettingImportAuthorizationTabPage()
{
    saveTableLayout(m_table);
}

void CAuthSettingImportAuthorizationTabPage::buildLayout()
{
    const std::array headers{QStringLiteral("交易平台"), QStringLiteral("经纪公司"),
                             QStringLiteral("账号"),     QStringLiteral("授权状态"),
                             QStringLiteral("授权人"),   QStringLiteral("起始日期"),
                             QStringLiteral("终止日期")};
    auto* list = new KZ::CWidgetList(Qt::Vertical, this);
    list->setMargin(margin, margin, margin, margin);
    list->setSpacing(0);
    m_table = new KZ::COddEvenRowTable(tableId, list, 255);
    m_table->view()->setAccessibleName(QStringLiteral("导入授权"));
    m_table->setFlag(0x11);
    m_table->setColumnCount(static_cast<int>(headers.size()));
    for (int column = 0; column < m_table->columnCount(); ++column)
        m_table->setHeaderText(column, headers[static_cast<std::size_t>(column)]);
    restoreTableLayout(m_table);
    list->addStretchWidget(m_table, 1, 3, false);
    setInnerStretchWidget(list, 0, 0, 0, 0);
}

void CAuthSettingImportAuthorizationTabPage::reloadData()
{
    if (m_table)
        m_reloads.run([this] { fill(); });
}

void CAuthSettingImportAuthorizationTabPage::fill()
{
    m_table->clear();
    const CUserConfig* user = getUserConfig();
    if (!user)
        return;
    const CExpiryHints hints;
    // A copy, because the client may change the list while its reads are under way.
    const QVector<boost::shared_ptr<CAccount>> accounts = user->accounts;
    for (const boost::shared_ptr<CAccount>& account : accounts) {
        if (!account || account->authType != mbservice::AUTH_TYPE_GRANTED_TO_ME)
            continue;
        const QString key = account->key();
        if (user->isSubAccount(key) || user->hasSubAccount(key))
            continue;
        const int row = m_table->appendRow();
        m_table->setRowKey(row, key);
        fillRow(row, *account, hints);
    }
}

void CAuthSettingImportAuthorizationTabPage::fillRow(int row, const CAccount& account,
                                                     const CExpiryHints& hints)
{
    m_table->setItemText(row, Platform, platformName(account, StockRule::AllButFuturesType));
    m_table->setItemText(row, Broker, brokerName(account, StockRule::AllButFuturesType));
    m_table->setItemText(row, Account, accountDisplayIDQs(account));
    m_table->setItemText(row, State, account.authTypeString());
    m_table->setItemTextColorKey(row, State, authTypeToColorKey(account.authType));
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> grant;
    if (!client || !client->getAuthDetail(account.key(), grant) || !grant)
        return;
    m_table->setItemText(row, Grantor, grant->grantor);
    m_table->setItemText(row, FirstDay, grantDayText(grant->limit.startTime));
    m_table->setItemText(row, LastDay, grantDayText(grant->limit.endTime));
    hints.mark(m_table, row, State, grant->limit.endTime);
}

bool CAuthSettingImportAuthorizationTabPage::handleEvent(int eventId, int param1, int param2,
                                                         QString text, void* data)
{
    if (eventId != KZ::EVENT_BUTTON_CLICKED)
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    if (param1 == importCommand)
        chooseFile();
    return true;
}

void CAuthSettingImportAuthorizationTabPage::chooseFile()
{
    const bool wasSeen = isUserLooking(this);
    const QPointer<CAuthSettingImportAuthorizationTabPage> self = this;
    const QString path = QFileDialog::getOpenFileName(
        this, QStringLiteral("导入授权"), QStringLiteral("."), QStringLiteral("Auth Files(*.taa)"));
    if (!self || path.isEmpty() || isLeft(wasSeen))
        return;
    askGrantPassword(this, [this, path, wasSeen](const QString& password) {
        if (!isLeft(wasSeen))
            importFile(path, password);
    });
}

bool CAuthSettingImportAuthorizationTabPage::isLeft(bool wasSeen)
{
    const bool left = wasSeen && !isVisible();
    if (left)
        showChangedTip(m_tipAnchor);
    return left;
}

void CAuthSettingImportAuthorizationTabPage::importFile(const QString& path,
                                                        const QString& password)
{
    CAuthClient* client = getAuthClient();
    if (!client || password.isEmpty() || path.isEmpty())
        return;
    m_import = newRequestNumber();
    beginRequest();
    // Opening the file takes the GUI thread a while; the user must see why nothing moves.
    window()->repaint();
    if (client->importAuth(path, password) == 0)
        return;
    m_outcomes.finish(m_import, [this] { showResult(false, QStringLiteral("授权文件格式错误")); });
    showResultTip(m_tipAnchor, QStringLiteral("导入失败！授权文件解密出错。"), outcomeKind,
                  m_import);
}

void CAuthSettingImportAuthorizationTabPage::slotValidAuth(QString qsKey, QString qsPassword,
                                                           bool bSuccess, QString qsError)
{
    if (CUserConfig* user = bSuccess ? getUserConfig() : nullptr) {
        if (const boost::shared_ptr<CAccount> account = user->getAccountData(qsKey))
            account->accountPrivate = qsPassword.toLocal8Bit().toStdString();
    }
    m_outcomes.finish(m_import, [this, bSuccess, qsError] { showResult(bSuccess, qsError); });
}

void CAuthSettingImportAuthorizationTabPage::showResult(bool success, const QString& error)
{
    if (success)
        reloadData();
    showResultTip(m_tipAnchor,
                  success ? QStringLiteral("导入成功！") : QStringLiteral("导入失败！") + error,
                  outcomeKind, m_import);
}

} // namespace GW
