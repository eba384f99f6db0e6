#include "authsetting/authorize/AuthSettingAccountsAuthorizeTabPage.h"

#include "authsetting/authorize/BatchAccountsTable.h"
#include "authsetting/authorize/BatchForm.h"
#include "authsetting/authorize/GrantMenu.h"
#include "authsetting/authorize/GranteeList.h"
#include "authsetting/authorize/SecretText.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/MsgService.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AccountTextCache.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/OnScreen.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/events/EventIds.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace GW {

namespace {

constexpr int outcomeTip = 3;
constexpr int hintTip = 2;

} // namespace

CAuthSettingAccountsAuthorizeTabPage::CAuthSettingAccountsAuthorizeTabPage(QWidget* parent)
    : IAuthSettingTabPage(ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE, -1,
                          ID_FUTURE_AUTHSETTING_TABPAGE_ACCOUNTS_AUTHORIZE, parent),
      m_form(new CBatchForm(this)), m_choice(asPage()), m_reloads(this), m_outcomes(this)
{
    setInnerStretchWidget(m_form, 0, 0, 0, 0);
    m_choice.menu()->setObjectName(QStringLiteral("halden_batch_menu"));
    connectClient();
    setDisabled(true);
}

CAuthSettingAccountsAuthorizeTabPage::~CAuthSettingAccountsAuthorizeTabPage()
{
    wipeSecret(m_exportPassword);
}

CGrantChoice::Page CAuthSettingAccountsAuthorizeTabPage::asPage()
{
    return {this, m_reloads,
            [this]() -> CGrantChoice::Check {
                return [this, offer = shownOffer()] { return stillHolds(offer); };
            },
            [this] { tellChanged(); },
            [this](bool toServer) {
                toServer ? onServerAuthTriggered(false) : onFileAuthTriggered(false);
            }};
}

void CAuthSettingAccountsAuthorizeTabPage::connectClient()
{
    using Page = CAuthSettingAccountsAuthorizeTabPage;
    CAuthClient* client = getAuthClient();
    if (!client)
        return;
    connect(client, &CAuthClient::sigAddAuthResult, this, &Page::slotAddAuthResult);
    connect(client, &CAuthClient::sigDelAuthResult, this, &Page::slotDelAuthResult);
    connect(client, &CAuthClient::sigCheckAuthuserResult, this, &Page::slotCheckAuthuserResult);
}

void CAuthSettingAccountsAuthorizeTabPage::reloadData()
{
    m_reloads.run([this] { fill(); });
}

void CAuthSettingAccountsAuthorizeTabPage::fill()
{
    m_accounts.clear();
    m_accountIndex.clear();
    fillTable();
    fillGranteeBox(m_form->granteeEditor());
}

void CAuthSettingAccountsAuthorizeTabPage::fillTable()
{
    m_form->table()->clearAccounts();
    CAccountTextCache texts(StockRule::AllButFuturesType);
    const CUserConfig* user = getUserConfig();
    CAuthClient* client = getAuthClient();
    m_accounts.reserve(user ? user->accounts.size() : 0);
    for (qsizetype index = 0; user && index < user->accounts.size(); ++index) {
        boost::shared_ptr<CAccount> account = user->accounts.at(index);
        if (!account)
            continue;
        QString key = account->key();
        if (user->isSubAccount(key) || user->hasSubAccount(key))
            continue;
        boost::shared_ptr<CAuthDetail> grant;
        const bool granted = client && client->getAuthDetail(key, grant);
        const int row =
            m_form->table()->addAccount(*account, granted ? grant.get() : nullptr, texts);
        m_form->table()->setRowKey(row, key);
        m_accounts.append(std::move(account));
    }
}

bool CAuthSettingAccountsAuthorizeTabPage::isReadyToGrant()
{
    if (!m_form->table()->hasSelectedRow()) {
        showResultTip(m_form->authorizeButton(), QStringLiteral("至少需选择一个账号"), outcomeTip);
        return false;
    }
    if (m_form->grantee().isEmpty()) {
        showResultTip(m_form->granteeEditor(), QStringLiteral("被授权人不能为空"), outcomeTip);
        return false;
    }
    return true;
}

CBatchOffer CAuthSettingAccountsAuthorizeTabPage::shownOffer() const
{
    CBatchOffer offer{m_form->grantee(), m_form->days().limit(), {}};
    for (qsizetype row = 0; row < m_accounts.size(); ++row) {
        if (m_form->table()->isSelected(static_cast<int>(row)))
            offer.keys.append(m_accounts.at(row)->key());
    }
    return offer;
}

bool CAuthSettingAccountsAuthorizeTabPage::stillHolds(const CBatchOffer& offer) const
{
    return isVisible() && shownOffer() == offer && areGrantable(offer.keys);
}

void CAuthSettingAccountsAuthorizeTabPage::tellChanged()
{
    reloadData();
    showChangedTip(m_form->authorizeButton());
}

void CAuthSettingAccountsAuthorizeTabPage::onServerAuthTriggered(bool)
{
    if (isReadyToGrant())
        slotAuthPasswordForServer(QString());
}

void CAuthSettingAccountsAuthorizeTabPage::slotAuthPasswordForServer(QString password)
{
    grantSelected(password, true);
}

void CAuthSettingAccountsAuthorizeTabPage::onFileAuthTriggered(bool)
{
    if (!isReadyToGrant())
        return;
    CGrantChoice::FilePrompt prompt(m_choice);
    const QString path = prompt.chooseFile();
    if (path.isEmpty())
        return;
    prompt.askPassword([this, path](const QString& password) {
        m_exportPath = path;
        authPasswordForFile(password);
    });
}

void CAuthSettingAccountsAuthorizeTabPage::authPasswordForFile(QString password)
{
    grantSelected(password, false);
}

void CAuthSettingAccountsAuthorizeTabPage::grantSelected(const QString& password, bool toServer)
{
    wipeSecret(m_exportPassword);
    m_exportPassword = password;
    CAuthClient* client = getAuthClient();
    // The ticks may have gone while a dialog asked for file and password.
    if (!client || !isReadyToGrant())
        return;

    // Read once: the form turns its dates into moments each time.
    const QString grantee = m_form->grantee();
    CAuthLimit days = m_form->days().limit();
    const auto request =
        boost::make_shared<CGrantRequest>(grantee, toServer, m_exportPath, m_exportPassword);
    wipeSecret(m_exportPassword);
    QVector<mbservice::CAccountInfo> accounts;
    for (qsizetype row = 0; row < m_accounts.size(); ++row) {
        if (!m_form->table()->isSelected(static_cast<int>(row)))
            continue;
        accounts.append(*m_accounts.at(row));
        request->add(m_accounts.at(row)->key(), accounts.last(), days);
    }
    m_requests.begin(request);
    beginRequest();
    showProgress(0, request->entries().size());
    for (const mbservice::CAccountInfo& account : std::as_const(accounts)) {
        CAuthLimit limit = days;
        client->addAuth(grantee, account, limit, requestTag(this), toServer);
        announceGrant(account);
    }
}

void CAuthSettingAccountsAuthorizeTabPage::announceGrant(const mbservice::CAccountInfo& account)
{
    CUserConfig* user = getUserConfig();
    CMsgService* messages = getMsgService();
    if (!user || !messages)
        return;
    const QString key = genAccountKeyQs(account);
    const boost::shared_ptr<CAccount> known = user->getAccountData(key);
    if (!known)
        return;
    const QString text = QStringLiteral("账户") + accountDisplayIDQs(*known) +
                         QStringLiteral("授权, 撤销所有执行任务");
    messages->showAccountMsg(text, key, MSG_TYPE_AUTH, mbservice::MSG_LEVEL_INFO);
}

void CAuthSettingAccountsAuthorizeTabPage::slotAddAuthResult(QString grantee,
                                                             mbservice::CAccountInfo account,
                                                             CAuthLimit limit, QString grantRef,
                                                             QVariant tag, bool ok, QString error,
                                                             bool toServer)
{
    if (!isRequestOf(this, tag))
        return;
    const QString key = genAccountKeyQs(account);
    const CGrantRequests::Pointer request =
        m_requests.takeResult(this, key, grantee, limit, toServer, m_exportPath, m_exportPassword);
    if (!request)
        return;
    if (ok) {
        const CUserConfig* user = getUserConfig();
        auto grant = boost::make_shared<CAuthDetail>();
        grant->grantRef = grantRef;
        grant->grantor = user ? user->userName : QString();
        grant->grantee = grantee;
        grant->account = account;
        grant->limit = limit;
        // The service does not echo the owner's secret; of an account that a reload has taken off
        // the page the request still has it.
        const auto asked = request->entries().constFind(key);
        if (const boost::shared_ptr<CAccount> own = accountOf(key))
            grant->account.accountPrivate = own->accountPrivate;
        else if (asked != request->entries().constEnd())
            grant->account.accountPrivate = asked->account.accountPrivate;
        request->granted.append(grant);
    } else {
        showResultTip(m_form->authorizeButton(), QStringLiteral("权限出错！错误信息：") + error,
                      outcomeTip, request->number());
    }
    request->answer(key, grantRef);
    if (request == m_requests.present())
        showProgress(request->answered(), request->entries().size());
    if (!request->isAnswered())
        return;
    if (m_requests.isAwaited(request))
        m_outcomes.finish(request->number(),
                          [this, request, toServer] { finishGrant(request, toServer); });
    else
        finishGrant(request, toServer);
}

boost::shared_ptr<CAccount> CAuthSettingAccountsAuthorizeTabPage::accountOf(const QString& key)
{
    return m_accounts.value(rowOf(key));
}

int CAuthSettingAccountsAuthorizeTabPage::rowOf(const QString& key)
{
    if (m_accountIndex.isEmpty()) {
        m_accountIndex.reserve(m_accounts.size());
        // Backwards, so that of two accounts with one key the first stays.
        for (qsizetype index = m_accounts.size(); index-- > 0;)
            m_accountIndex.insert(m_accounts.at(index)->key(), index);
    }
    return static_cast<int>(m_accountIndex.value(key, -1));
}

void CAuthSettingAccountsAuthorizeTabPage::finishGrant(const CGrantRequests::Pointer& request,
                                                       bool toServer)
{
    m_requests.end(request);
    if (request->granted.isEmpty())
        return;
    bool ok = true;
    if (!toServer) {
        CAuthClient* client = getAuthClient();
        ok = client &&
             client->exportAuth(request->path(), request->password(), request->granted) == 0;
    }
    if (ok)
        reloadEverything();
    const QString fileOutcome =
        ok ? QStringLiteral("生成授权文件成功") : QStringLiteral("生成授权文件失败");
    showResultTip(m_form->authorizeButton(), toServer ? QStringLiteral("授权成功") : fileOutcome,
                  outcomeTip, request->number());
}

void CAuthSettingAccountsAuthorizeTabPage::reloadEverything()
{
    reloadData();
    deliverEvent(EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
}

void CAuthSettingAccountsAuthorizeTabPage::cancelGrant(int row)
{
    m_cancelRow = row;
    const boost::shared_ptr<CAccount> shown = m_accounts.value(row);
    m_cancelKey = shown ? shown->key() : QString();
    CAuthClient* client = getAuthClient();
    if (!shown || !client)
        return;
    const mbservice::CAccountInfo account = *shown;
    const QString grantee = m_form->table()->itemText(row, CBatchAccountsTable::GranteeColumn);
    m_cancelRequest = newRequestNumber();
    beginRequest();
    client->delAuth(grantee, account, requestTag(this));
}

void CAuthSettingAccountsAuthorizeTabPage::slotDelAuthResult(QString, mbservice::CAccountInfo,
                                                             QVariant tag, bool ok, QString error)
{
    if (isRequestOf(this, tag))
        m_outcomes.finish(m_cancelRequest, [this, ok, error] { showCancelResult(ok, error); });
}

void CAuthSettingAccountsAuthorizeTabPage::showCancelResult(bool ok, QString error)
{
    if (ok) {
        reloadEverything();
        return;
    }
    CBatchAccountsTable* table = m_form->table();
    // A reload may have moved the account to another row.
    const int row = table->rowKey(m_cancelRow) == m_cancelKey ? m_cancelRow : rowOf(m_cancelKey);
    showResultTip(table->itemWidget(row, CBatchAccountsTable::OperationColumn),
                  QStringLiteral("取消授权失败。错误信息：") + error, hintTip, m_cancelRequest);
}

void CAuthSettingAccountsAuthorizeTabPage::slotCheckAuthuserResult(QString user, bool ok,
                                                                   QString error)
{
    if (ok)
        return;
    showResultTip(m_form->granteeEditor(),
                  QStringLiteral("无法对用户") + user + QStringLiteral("进行授权！错误信息：") +
                      error,
                  outcomeTip);
}

void CAuthSettingAccountsAuthorizeTabPage::onTicked(int row, bool ticked)
{
    if (ticked)
        m_form->showPending(row);
    else
        m_form->table()->resetPending(row);
}

void CAuthSettingAccountsAuthorizeTabPage::checkGrantee()
{
    CAuthClient* client = getAuthClient();
    if (client && !m_form->grantee().isEmpty())
        client->checkAuthuser(m_form->grantee());
    m_form->showPendingInSelected();
}

void CAuthSettingAccountsAuthorizeTabPage::checkDates()
{
    if (const QString hint = m_form->days().hint(); !hint.isEmpty())
        showResultTip(m_form->endEditor(), hint, hintTip);
    m_form->authorizeButton()->setEnabled(m_form->days().count() > 0);
    m_form->showPendingInSelected();
}

bool CAuthSettingAccountsAuthorizeTabPage::handleEvent(int eventId, int param1, int param2,
                                                       QString text, void* data)
{
    switch (eventId) {
    case KZ::EVENT_BUTTON_CLICKED:
        if (param1 != CBatchForm::AUTHORIZE_BUTTON_ID)
            break;
        m_choice.popUpBelow(m_form->authorizeButton(), 0, data);
        return true;
    case KZ::EVENT_CHECK_TOGGLED:
        onTicked(param1, param2 != 0);
        return true;
    case KZ::EVENT_TEXT_COMMITTED:
        if (param1 != CBatchForm::GRANTEE_EDITOR_ID)
            break;
        checkGrantee();
        return true;
    case KZ::EVENT_DATE_CHANGED:
        if (param1 == CBatchForm::START_EDITOR_ID || param1 == CBatchForm::END_EDITOR_ID)
            checkDates();
        return true;
    case KZ::EVENT_TEXT_EDITED:
        return true;
    case EVENT_CANCEL_AUTH:
        cancelGrant(param1);
        return true;
    default:
        break;
    }
    return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
}

} // namespace GW
