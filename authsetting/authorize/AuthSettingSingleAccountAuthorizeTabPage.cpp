#include "authsetting/authorize/AuthSettingSingleAccountAuthorizeTabPage.h"

#include "authsetting/authorize/MarginThreshold.h"
#include "authsetting/authorize/SecretText.h"
#include "authsetting/authorize/SingleAccountForm.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthClient.h"
#include "authsetting/services/MsgService.h"
#include "authsetting/services/Services.h"
#include "authsetting/services/UserConfig.h"
#include "authsetting/shell/AuthSettingEvents.h"
#include "authsetting/shell/AuthSettingIds.h"
#include "authsetting/shell/OnScreen.h"
#include "authsetting/shell/RequestTag.h"
#include "authsetting/shell/ResultTip.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/events/EventIds.h"
#include "kit/table/CellEdit.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"

#include <QHideEvent>
#include <QScopedValueRollback>
#include <QShowEvent>

#include <boost/make_shared.hpp>

#include <utility>

namespace GW {

namespace {

constexpr int hintKind = 2;
constexpr int outcomeKind = 3;

int pageOf(bool single)
{
    return single ? ID_FUTURE_AUTHSETTING_PAGE_ACCOUNTS_AUTHORIZE
                  : ID_FUTURE_AUTHSETTING_PAGE_IMPORT_AUTHORIZATION;
}

int subPageOf(bool single)
{
    return single ? ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_ACCOUNT
                  : ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_AUTHORIZATION;
}

int tabPageOf(bool single)
{
    return single ? ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_ACCOUNT_AUTHORIZE
                  : ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_AUTHORIZATION_AUTHORIZE;
}

void judgeThreshold(void* data)
{
    auto* edit = static_cast<KZ::CCellEdit*>(data);
    if (edit && !normalizeMarginThreshold(edit->text))
        edit->accepted = false;
}

} // namespace

CAuthSettingSingleAccountAuthorizeTabPage::CAuthSettingSingleAccountAuthorizeTabPage(
    bool single, QWidget* parent)
    : IAuthSettingTabPage(pageOf(single), subPageOf(single), tabPageOf(single), parent),
      m_form(new CSingleAccountForm(this)), m_granted(boost::make_shared<CAuthDetail>()),
      m_choice(asPage()), m_reloads(this), m_outcomes(this)
{
    setInnerStretchWidget(m_form, 0, 0, 0, 0);
    connectClient();
    setDisabled(true);
}

CAuthSettingSingleAccountAuthorizeTabPage::~CAuthSettingSingleAccountAuthorizeTabPage()
{
    wipeSecret(m_exportPassword);
}

CGrantChoice::Page CAuthSettingSingleAccountAuthorizeTabPage::asPage()
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

void CAuthSettingSingleAccountAuthorizeTabPage::connectClient()
{
    const CAuthClient* client = getAuthClient();
    if (!client)
        return;
    using Self = CAuthSettingSingleAccountAuthorizeTabPage;
    connect(client, &CAuthClient::sigAddAuthResult, this, &Self::slotAddAuthResult);
    connect(client, &CAuthClient::sigDelAuthResult, this, &Self::slotDelAuthResult);
    connect(client, &CAuthClient::sigCheckAuthuserResult, this, &Self::slotCheckAuthuserResult);
}

boost::shared_ptr<CAccount> CAuthSettingSingleAccountAuthorizeTabPage::account() const
{
    CUserConfig* user = getUserConfig();
    return user ? user->getAccountData(key()) : boost::shared_ptr<CAccount>();
}

mbservice::EAuthType CAuthSettingSingleAccountAuthorizeTabPage::authType() const
{
    const boost::shared_ptr<CAccount> shown = account();
    return shown ? shown->authType : mbservice::AUTH_TYPE_UNKNOWN;
}

void CAuthSettingSingleAccountAuthorizeTabPage::reloadData()
{
    const auto fillNow = [this] { fill(); };
    if (m_shown.key == key())
        m_reloads.run(fillNow);
    else
        m_reloads.runAnyway(fillNow);
}

void CAuthSettingSingleAccountAuthorizeTabPage::fill()
{
    const QScopedValueRollback<bool> leaving(m_leavingByProgram, true);
    m_form->reset();
    // A condition is not carried over to another account.
    if (m_shown.key != key())
        m_form->setConditionTicked(false);
    m_shown = CShownAccount{};
    m_shown.key = key();
    m_form->fillGrantees();

    const boost::shared_ptr<CAccount> shown = account();
    const mbservice::EAuthType type = shown ? shown->authType : mbservice::AUTH_TYPE_UNKNOWN;
    m_shown.type = type;
    m_form->setGrantable(type == mbservice::AUTH_TYPE_NOT_GRANTED);

    KZ::CMediumNormalButton* button = m_form->grantButton();
    if (type == mbservice::AUTH_TYPE_GRANTED_TO_OTHER) {
        button->setText(QStringLiteral("取消授权"));
        button->clearIcon();
    } else {
        button->setText(QStringLiteral("授权"));
        button->setIcon(QStringLiteral("gw_img_auth_export"), 0, 6);
    }
    button->setEnabled(false);

    m_form->showAccount(shown.get());
    boost::shared_ptr<CAuthDetail> grant;
    CAuthClient* client = getAuthClient();
    if (client && client->getAuthDetail(key(), grant) && grant) {
        m_shown.takeGrant(*grant);
        m_form->showGrant(*grant);
    }
}

void CAuthSettingSingleAccountAuthorizeTabPage::onActive()
{
    // The reload left the button disabled; who looks at the page must be able to act.
    const mbservice::EAuthType type = authType();
    const bool grantable = type == mbservice::AUTH_TYPE_NOT_GRANTED && m_form->days().count() >= 1;
    m_form->grantButton()->setEnabled(grantable || type == mbservice::AUTH_TYPE_GRANTED_TO_OTHER);
}

bool CAuthSettingSingleAccountAuthorizeTabPage::handleEvent(int eventId, int param1, int param2,
                                                            QString text, void* data)
{
    // The platform's field shares the number but says nothing about the grantee.
    const bool fromPlatform = data == static_cast<QWidget*>(m_form->platformEdit());
    const bool fromGrantee = param1 == CSingleAccountForm::ID_GRANTEE;
    switch (eventId) {
    case KZ::EVENT_BUTTON_CLICKED:
        if (param1 != CSingleAccountForm::ID_GRANT_BUTTON)
            break;
        onGrantButton(data);
        return true;
    case KZ::EVENT_CELL_EDITED:
        judgeThreshold(data);
        return true;
    case KZ::EVENT_TEXT_COMMITTED:
        if (!fromGrantee)
            break;
        if (CAuthClient* client = fromPlatform ? nullptr : getAuthClient()) {
            if (const QString user = m_form->granteeBox()->currentText(); !user.isEmpty())
                client->checkAuthuser(user);
        }
        return true;
    case KZ::EVENT_DATE_CHANGED:
        if (param1 != CSingleAccountForm::ID_START && param1 != CSingleAccountForm::ID_END)
            break;
        checkDates();
        return true;
    case KZ::EVENT_TEXT_EDITED:
        m_enteredByProgram = m_enteredByProgram && !fromGrantee;
        break;
    case KZ::EVENT_FOCUS_LEFT:
        if (!fromGrantee)
            break;
        if (!fromPlatform && !m_leavingByProgram && !std::exchange(m_enteredByProgram, false))
            checkGrantee();
        return true;
    default:
        break;
    }
    return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
}

void CAuthSettingSingleAccountAuthorizeTabPage::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        m_leavingByProgram = false;
        m_enteredByProgram = isHosted(this);
    }
    IAuthSettingTabPage::showEvent(event);
}

void CAuthSettingSingleAccountAuthorizeTabPage::hideEvent(QHideEvent* event)
{
    // Closing the dialog takes the focus from an empty grantee, which is no mistake of the user.
    if (!event->spontaneous())
        m_leavingByProgram = true;
    IAuthSettingTabPage::hideEvent(event);
}

bool CAuthSettingSingleAccountAuthorizeTabPage::checkGrantee()
{
    if (!m_form->granteeBox()->currentText().isEmpty())
        return true;
    showResultTip(m_form->granteeBox(), QStringLiteral("被授权人不能为空"), outcomeKind);
    return false;
}

void CAuthSettingSingleAccountAuthorizeTabPage::checkDates()
{
    QWidget* end = m_form->endEdit();
    if (!m_form->startEdit()->isEnabled() || !end->isEnabled())
        return;
    if (const QString hint = m_form->days().hint(); !hint.isEmpty())
        showResultTip(end, hint, hintKind);
    m_form->grantButton()->setEnabled(m_form->days().count() >= 1);
}

void CAuthSettingSingleAccountAuthorizeTabPage::onGrantButton(const void* sender)
{
    if (isUserLooking(this, sender) && (m_shown.key != key() || !m_shown.isTrue()))
        tellChanged();
    else if (authType() == mbservice::AUTH_TYPE_GRANTED_TO_OTHER)
        cancelGrant();
    else if (!m_form->returnToOpenThreshold())
        m_choice.popUpBelow(m_form->grantButton(), 1, sender);
}

CSingleAccountOffer CAuthSettingSingleAccountAuthorizeTabPage::shownOffer() const
{
    return {m_shown.key, m_form->granteeBox()->currentText(), m_form->limit(false)};
}

bool CAuthSettingSingleAccountAuthorizeTabPage::stillHolds(const CSingleAccountOffer& offer) const
{
    return isVisible() && key() == offer.accountKey && shownOffer() == offer && m_shown.isTrue();
}

void CAuthSettingSingleAccountAuthorizeTabPage::tellChanged()
{
    reloadData();
    onActive();
    showChangedTip(m_form->grantButton());
}

void CAuthSettingSingleAccountAuthorizeTabPage::onServerAuthTriggered(bool)
{
    if (checkGrantee())
        slotAuthPasswordForServer(QString());
}

void CAuthSettingSingleAccountAuthorizeTabPage::slotAuthPasswordForServer(QString password)
{
    wipeSecret(m_exportPassword);
    m_exportPassword = password.trimmed();
    grant(m_form->limit(false), true);
}

void CAuthSettingSingleAccountAuthorizeTabPage::onFileAuthTriggered(bool)
{
    if (!checkGrantee())
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

void CAuthSettingSingleAccountAuthorizeTabPage::authPasswordForFile(QString password)
{
    wipeSecret(m_exportPassword);
    m_exportPassword = password;
    // A file names whole percents only, unlike a grant on the server.
    grant(m_form->limit(true), false);
}

void CAuthSettingSingleAccountAuthorizeTabPage::grant(const CAuthLimit& limit, bool toServer)
{
    const boost::shared_ptr<CAccount> granted = account();
    CAuthClient* client = getAuthClient();
    if (!granted || !client)
        return;
    const QString grantee = m_form->granteeBox()->currentText();
    CAuthLimit sent = limit;
    const auto request =
        boost::make_shared<CGrantRequest>(grantee, toServer, m_exportPath, m_exportPassword);
    wipeSecret(m_exportPassword);
    request->add(genAccountKeyQs(*granted), *granted, limit);
    m_requests.begin(request);
    beginRequest();
    client->addAuth(grantee, *granted, sent, requestTag(this), toServer);
    if (CMsgService* messages = getMsgService()) {
        messages->showAccountMsg(tr("账户") + grantee + QStringLiteral("授权, 撤销所有执行任务"),
                                 genAccountKeyQs(*granted), MSG_TYPE_AUTH,
                                 mbservice::MSG_LEVEL_INFO);
    }
}

void CAuthSettingSingleAccountAuthorizeTabPage::slotAddAuthResult(
    QString grantee, mbservice::CAccountInfo account, CAuthLimit limit, QString grantRef,
    QVariant tag, bool ok, QString error, bool toServer)
{
    if (!isRequestOf(this, tag))
        return;
    const QString accountKey = genAccountKeyQs(account);
    const CGrantRequests::Pointer request = m_requests.takeResult(
        this, accountKey, grantee, limit, toServer, m_exportPath, m_exportPassword);
    if (!request)
        return;
    request->answer(accountKey, grantRef);
    CAuthDetail confirmed;
    confirmed.grantRef = grantRef;
    confirmed.grantee = grantee;
    confirmed.account = account;
    confirmed.limit = limit;
    const auto show = [this, request, confirmed, ok, error, toServer] {
        m_requests.end(request);
        if (ok)
            finishGrant(request, confirmed, toServer);
        else
            showResultTip(m_form->grantButton(), QStringLiteral("授权失败！原因：") + error,
                          outcomeKind, request->number());
    };
    if (m_requests.isAwaited(request))
        m_outcomes.finish(request->number(), show);
    else
        show();
}

void CAuthSettingSingleAccountAuthorizeTabPage::finishGrant(const CGrantRequests::Pointer& request,
                                                            const CAuthDetail& confirmed,
                                                            bool toServer)
{
    CUserConfig* user = getUserConfig();
    const QString grantor = user ? user->userName : m_granted->grantor;
    *m_granted = confirmed;
    m_granted->grantor = grantor;
    // The service does not echo the owner's secret.
    if (const auto own = user ? user->getAccountData(genAccountKeyQs(confirmed.account))
                              : boost::shared_ptr<CAccount>())
        m_granted->account.accountPrivate = own->accountPrivate;

    CAuthClient* client = getAuthClient();
    const bool done =
        toServer ||
        (client && client->exportAuth(request->path(), request->password(), m_granted, false) == 0);
    if (done)
        reloadEverything();
    const QString text = toServer ? QStringLiteral("授权成功")
                         : done   ? QStringLiteral("生成授权文件成功")
                                  : QStringLiteral("生成授权文件失败");
    showResultTip(m_form->grantButton(), text, outcomeKind, request->number());
}

void CAuthSettingSingleAccountAuthorizeTabPage::cancelGrant()
{
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> grant;
    if (!client || !client->getAuthDetail(key(), grant) || !grant)
        return;
    m_cancelRequest = newRequestNumber();
    beginRequest();
    client->delAuth(grant->grantee, grant->account, requestTag(this));
}

void CAuthSettingSingleAccountAuthorizeTabPage::slotDelAuthResult(QString, mbservice::CAccountInfo,
                                                                  QVariant tag, bool ok,
                                                                  QString error)
{
    if (!isRequestOf(this, tag))
        return;
    m_outcomes.finish(m_cancelRequest, [this, ok, error] {
        if (ok)
            reloadEverything();
        else
            showResultTip(m_form->grantButton(), QStringLiteral("取消授权失败。错误信息：") + error,
                          hintKind, m_cancelRequest);
    });
}

void CAuthSettingSingleAccountAuthorizeTabPage::reloadEverything()
{
    reloadData();
    deliverEvent(EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
}

void CAuthSettingSingleAccountAuthorizeTabPage::slotCheckAuthuserResult(QString user, bool ok,
                                                                        QString error)
{
    if (ok)
        return;
    showResultTip(m_form->granteeBox(),
                  QStringLiteral("无法对用户") + user + QStringLiteral("进行授权！错误信息：") +
                      error,
                  outcomeKind);
}

} // namespace GW
