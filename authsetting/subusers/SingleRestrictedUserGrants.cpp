// How the single restricted user tab grants the accounts that the user prepared in its table.
// The page's second source, because every step reads and changes what the page shows, so that a
// class beside it would only pass each call on and back.

#include "authsetting/authorize/GrantFilePrompt.h"
#include "authsetting/authorize/SecretText.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/MsgService.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"
#include "authsetting/subusers/RestrictedUserTable.h"
#include "kit/widgets/MediumNormalButton.h"

#include <QPointer>

#include <boost/bind/bind.hpp>
#include <boost/make_shared.hpp>

namespace GW {

namespace {

constexpr int noteKind = 1;

using Self = CAuthSettingSingleRestrictedUserGeneralTabPage;

} // namespace

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
    const QPointer<Self> self = this;
    const QString path = chooseGrantFile(this);
    if (!self || path.isEmpty())
        return;
    m_exportPath = path;
    beginGrant();
    const int endedBefore = m_endedGrants;
    const bool accepted = askGrantPassword(
        this, boost::bind(&Self::authPasswordForFile, this, boost::placeholders::_1));
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

void CAuthSettingSingleRestrictedUserGeneralTabPage::endGrant()
{
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
        exportPending();
        return;
    }
    m_grantee = key();
    connect(client, &CAuthClient::sigAddAuthResult, this, &Self::slotAddAuthResult);
    beginRequest();
    CMsgService* messages = getMsgService();
    // A copy, because a client may answer before it returns.
    const QMap<QString, CPendingGrant> grants = m_pending.grants();
    showProgress(0, grants.size());
    for (auto grant = grants.constBegin(); grant != grants.constEnd(); ++grant) {
        CAuthLimit limit = grant->limit;
        client->addAuth(m_grantee, grant->account, limit, requestTag(this), toServer);
        if (messages) {
            messages->showAccountMsg(QStringLiteral("账户") + m_grantee +
                                         QStringLiteral("授权, 撤销所有执行任务"),
                                     grant.key(), MSG_TYPE_AUTH, mbservice::MSG_LEVEL_INFO);
        }
    }
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotAddAuthResult(
    QString, mbservice::CAccountInfo account, CAuthLimit, QString text, QVariant tag, bool ok,
    QString error, bool toServer)
{
    if (!isRequestOf(this, tag))
        return;
    const QString accountKey = genAccountKeyQs(account);
    m_pending.answer(accountKey, text);
    const qsizetype total = m_pending.grants().size();
    showProgress(total - m_pending.count(), total);
    refillRow(m_table->rowOf(accountKey));
    if (toServer && m_grantButton) {
        showResultTip(m_grantButton,
                      ok ? QStringLiteral("授权成功")
                         : QStringLiteral("授权失败！") + QStringLiteral("原因：") + error,
                      noteKind);
    }
    if (m_pending.isAnswered())
        finishRequest([this, toServer] { afterGrant(toServer); });
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::afterGrant(bool toServer)
{
    m_lastToServer = toServer;
    if (toServer)
        endGrant();
    // Sealing a file takes a noticeable moment each time, whatever the table's size.
    constexpr int filesAtOnce = 8;
    // Of a repetition that is put off nobody has to wait for the end.
    if (!m_grantGate.request(toServer ? runsAtOnce() : filesAtOnce))
        endGrant();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::repeatAfterGrant()
{
    if (m_lastToServer) {
        reloadData();
    } else {
        // Twice on purpose: the second writing with its own tip belongs to the tab's behaviour.
        exportPending();
        exportPending();
    }
    reloadNavigator();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::exportPending()
{
    CAuthClient* client = getAuthClient();
    CUserConfig* user = getUserConfig();
    if (!m_pending.isEmpty() && client && user) {
        QVector<boost::shared_ptr<CAuthDetail>> grants;
        const QMap<QString, CPendingGrant>& pending = m_pending.grants();
        for (auto grant = pending.constBegin(); grant != pending.constEnd(); ++grant) {
            const boost::shared_ptr<CAccount> account = user->getAccountData(grant.key());
            auto detail = boost::make_shared<CAuthDetail>();
            detail->grantRef = grant->result;
            detail->grantor = user->userName;
            detail->grantee = m_grantee;
            detail->account = account ? *account : grant->account;
            detail->limit = grant->limit;
            grants.append(detail);
        }
        // Copies, because the client may tell of the change, and so reload this page, meanwhile.
        const QString path = m_exportPath;
        const QString password = m_exportPassword;
        const bool written = client->exportAuth(path, password, grants) == 0;
        showResultTip(m_grantButton,
                      written ? QStringLiteral("生成授权文件成功")
                              : QStringLiteral("生成授权文件失败"),
                      noteKind);
    }
    endGrant();
}

} // namespace GW
