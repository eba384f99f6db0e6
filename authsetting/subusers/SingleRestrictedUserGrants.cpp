// How the single restricted user tab grants the accounts that the user prepared in its table.
// The page's second source, because every step reads and changes what the page shows, so that a
// class beside it would only pass each call on and back.

#include "authsetting/authorize/BatchOffer.h"
#include "authsetting/authorize/SecretText.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/MsgService.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/OnScreen.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "authsetting/subusers/RestrictedUserTable.h"
#include "kit/widgets/MediumNormalButton.h"

#include <QPointer>

#include <boost/make_shared.hpp>

namespace GW {

namespace {

constexpr int noteKind = 1;

using Self = CAuthSettingSingleRestrictedUserGeneralTabPage;

} // namespace

CGrantChoice::Page CAuthSettingSingleRestrictedUserGeneralTabPage::asPage()
{
    return {this, m_reloads,
            [this]() -> CGrantChoice::Check {
                return [this, pending = m_pending] { return stillHolds(pending); };
            },
            [this] { tellChanged(m_grantButton); },
            [this](bool toServer) {
                toServer ? onServerAuthTriggered(false) : onFileAuthTriggered(false);
            }};
}

bool CAuthSettingSingleRestrictedUserGeneralTabPage::stillHolds(const CPendingGrants& pending) const
{
    if (!isVisible() || !isShownStateTrue() || !m_pending.isSameAs(pending))
        return false;
    CAuthClient* client = getAuthClient();
    const QStringList keys = pending.grants().keys();
    for (const QString& accountKey : keys) {
        const int row = m_table->rowOf(accountKey);
        boost::shared_ptr<CAuthDetail> grant;
        if (!m_table->isItemChecked(row, CRestrictedUserTable::Select) ||
            !m_table->isItemCheckEnabled(row, CRestrictedUserTable::Select) ||
            client->getAuthDetail(accountKey, grant))
            return false;
    }
    // A tick that was set since the row was filled is in sight, but nobody prepared it.
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->isItemChecked(row, CRestrictedUserTable::Select) &&
            m_table->isItemCheckEnabled(row, CRestrictedUserTable::Select) &&
            !pending.contains(m_table->key(row)))
            return false;
    }
    return areGrantable(keys);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::tellChanged(QWidget* control)
{
    endGrant(nullptr);
    reloadData();
    showChangedTip(control);
}

bool CAuthSettingSingleRestrictedUserGeneralTabPage::checkSelection()
{
    if (m_table->hasSelection())
        return true;
    showResultTip(m_grantButton, QStringLiteral("至少需要选择一个账号"), noteKind);
    return false;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::onServerAuthTriggered(bool)
{
    if (!checkSelection())
        return;
    beginGrant();
    slotGetAuthPasswordFromServer(QString());
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::onFileAuthTriggered(bool)
{
    if (!checkSelection())
        return;
    CGrantChoice::FilePrompt prompt(m_choice);
    const QPointer<Self> self = this;
    const QString path = prompt.chooseFile();
    if (path.isEmpty())
        return;
    beginGrant();
    const int endedBefore = m_endedGrants;
    const bool accepted = prompt.askPassword([this, path](const QString& password) {
        m_exportPath = path;
        authPasswordForFile(password);
    });
    // A grant that has ended inside the dialog's answer must not be taken for one under way.
    if (self)
        m_granting = accepted && m_endedGrants == endedBefore;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::beginGrant()
{
    m_granting = true;
    // What is left over from the grant before must not end this one.
    m_grantGate.reset();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::endGrant(
    const CGrantRequests::Pointer& request)
{
    // The end of a grant made from an earlier form is none of this one's.
    if (request && request != m_formRequest)
        return;
    m_granting = false;
    ++m_endedGrants;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotGetAuthPasswordFromServer(
    QString qsPassword)
{
    grantPending(qsPassword, true);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::authPasswordForFile(QString password)
{
    grantPending(password, false);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::grantPending(const QString& password,
                                                                  bool toServer)
{
    wipeSecret(m_exportPassword);
    m_exportPassword = password.trimmed();
    CAuthClient* client = getAuthClient();
    if (m_pending.isEmpty() || !client) {
        wipeSecret(m_exportPassword);
        endGrant(nullptr);
        return;
    }
    const QString grantee = key();
    const auto request =
        boost::make_shared<CGrantRequest>(grantee, toServer, m_exportPath, m_exportPassword);
    wipeSecret(m_exportPassword);
    // A copy, because a client may answer before it returns.
    const QMap<QString, CPendingGrant> grants = m_pending.grants();
    for (auto grant = grants.constBegin(); grant != grants.constEnd(); ++grant)
        request->add(grant.key(), grant->account, grant->limit);
    request->due = static_cast<int>(grants.size());
    m_requests.begin(request);
    m_formRequest = request;
    connect(client, &CAuthClient::sigAddAuthResult, this, &Self::slotAddAuthResult);
    beginRequest();
    CMsgService* messages = getMsgService();
    showProgress(0, grants.size());
    for (auto grant = grants.constBegin(); grant != grants.constEnd(); ++grant) {
        CAuthLimit limit = grant->limit;
        client->addAuth(grantee, grant->account, limit, requestTag(this), toServer);
        if (messages) {
            messages->showAccountMsg(QStringLiteral("账户") + grantee +
                                         QStringLiteral("授权, 撤销所有执行任务"),
                                     grant.key(), MSG_TYPE_AUTH, mbservice::MSG_LEVEL_INFO);
        }
    }
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotAddAuthResult(
    QString user, mbservice::CAccountInfo account, CAuthLimit limit, QString text, QVariant tag,
    bool ok, QString error, bool toServer)
{
    if (!isRequestOf(this, tag))
        return;
    const QString accountKey = genAccountKeyQs(account);
    const CGrantRequests::Pointer request = m_requests.takeResult(
        this, accountKey, user, limit, toServer, m_exportPath, m_exportPassword);
    if (!request)
        return;
    if (request->entries().contains(accountKey))
        --request->due;
    request->answer(accountKey, ok ? text : QString());
    const bool isShown = request == m_formRequest || (!m_formRequest && !isHosted(this));
    if (isShown) {
        m_pending.answer(accountKey, text);
        const qsizetype total = request->entries().size();
        showProgress(total - request->due, total);
        refillRow(m_table->rowOf(accountKey));
    } else if (const int row = m_table->rowOf(accountKey); row >= 0) {
        // The form was filled anew since: days and password stay as the user typed them.
        const CReloadGate::Hold hold(m_reloads);
        fillRow(row);
        refreshRow(row);
    }
    if (toServer && m_grantButton) {
        showResultTip(m_grantButton,
                      ok ? QStringLiteral("授权成功")
                         : QStringLiteral("授权失败！") + QStringLiteral("原因：") + error,
                      noteKind, request->number());
    }
    if (request->due >= 1)
        return;
    request->due = 0;
    if (m_requests.isAwaited(request))
        m_outcomes.finish(request->number(),
                          [this, request, toServer] { afterGrant(request, toServer); });
    else
        afterGrant(request, toServer);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::afterGrant(
    const CGrantRequests::Pointer& request, bool toServer)
{
    m_lastRequest = request;
    m_lastToServer = toServer;
    if (request->isAnswered())
        m_requests.end(request);
    if (toServer)
        endGrant(request);
    // Sealing a file takes a noticeable moment each time, whatever the table's size.
    constexpr int filesAtOnce = 8;
    // Of a repetition that is put off nobody has to wait for the end.
    if (!m_grantGate.request(toServer ? runsAtOnce() : filesAtOnce) && request->isAnswered())
        endGrant(request);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::repeatAfterGrant()
{
    const CGrantRequests::Pointer request = m_lastRequest;
    if (m_lastToServer) {
        // A form that was filled anew since keeps what the user has prepared in it.
        if (request == m_formRequest || (request->grantee() == key() && m_pending.isEmpty()))
            reloadData();
    } else {
        // Twice on purpose: the second writing with its own tip belongs to the tab's behaviour.
        exportGrant(request);
        exportGrant(request);
    }
    reloadNavigator();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::exportGrant(
    const CGrantRequests::Pointer& request)
{
    // A file holds whole grants: as long as a result is missing nobody knows which these are.
    if (!request->isAnswered())
        return;
    CAuthClient* client = getAuthClient();
    const CUserConfig* user = getUserConfig();
    if (!request->entries().isEmpty() && client && user) {
        QVector<boost::shared_ptr<CAuthDetail>> grants;
        for (const CGrantRequest::Entry& entry : request->entries()) {
            if (entry.reference.isEmpty())
                continue;
            auto detail = boost::make_shared<CAuthDetail>();
            detail->grantRef = entry.reference;
            detail->grantor = user->userName;
            detail->grantee = request->grantee();
            detail->account = entry.account;
            detail->limit = entry.limit;
            grants.append(detail);
        }
        const bool written = !grants.isEmpty() &&
                             client->exportAuth(request->path(), request->password(), grants) == 0;
        showResultTip(m_grantButton,
                      written ? QStringLiteral("生成授权文件成功")
                              : QStringLiteral("生成授权文件失败"),
                      noteKind, request->number());
    }
    endGrant(request);
}

} // namespace GW
