#include "authsetting/subusers/AuthSettingSingleRestrictedUserGeneralTabPage.h"

#include "authsetting/authorize/GrantButton.h"
#include "authsetting/authorize/SecretText.h"
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
#include "authsetting/subusers/RestrictedUserForm.h"
#include "authsetting/subusers/RestrictedUserTable.h"
#include "authsetting/subusers/SubUserPassword.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/events/EventIds.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/PushButton.h"

#include <QHideEvent>
#include <QResizeEvent>

namespace GW {

namespace {

constexpr int margin = 8;
constexpr int stateButtonId = 1;
constexpr int grantButtonId = 2;
constexpr int noteKind = 1;
constexpr int hintKind = 2;

using Self = CAuthSettingSingleRestrictedUserGeneralTabPage;

} // namespace

CAuthSettingSingleRestrictedUserGeneralTabPage::CAuthSettingSingleRestrictedUserGeneralTabPage(
    QWidget* parent)
    : IAuthSettingTabPage(ID_FUTURE_AUTHSETTING_PAGE_RESTRICTEDUSERS,
                          ID_FUTURE_AUTHSETTING_SUBPAGE_SINGLE_RESTRICTEDUSER,
                          ID_FUTURE_AUTHSETTING_TABPAGE_SINGLE_RESTRICTEDUSER_GENERAL, parent),
      m_choice(asPage()), m_reloads(this), m_outcomes(this),
      m_refreshGate([this] { refreshRows(); }), m_grantGate([this] { repeatAfterGrant(); }),
      m_stateGate([this] { reloadEverything(); })
{
    buildLayout();
    if (const CAuthClient* client = getAuthClient()) {
        connect(client, &CAuthClient::sigUpdatesubuserResult, this, &Self::slotUpdatesubuserResult);
        connect(client, &CAuthClient::sigAddAuthResult, this, &Self::slotAddAuthResult);
        connect(client, &CAuthClient::sigSetSubUserResult, this, &Self::slotSetsubuserResult);
    }
}

CAuthSettingSingleRestrictedUserGeneralTabPage::~CAuthSettingSingleRestrictedUserGeneralTabPage()
{
    wipeSecret(m_exportPassword);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::buildLayout()
{
    m_form = new CRestrictedUserForm(this);
    m_table = new CRestrictedUserTable(m_form);
    m_form->addStretchWidget(m_table, 1, 3, false);

    m_grantButton = newGrantButton(grantButtonId, m_form);
    m_form->addFixWidget(m_grantButton);
    setInnerStretchWidget(m_form, 0, 0, 0, 0);

    m_stateButton = new KZ::CPushButton(stateButtonId, this);
    m_stateButton->setFocusPolicy(Qt::NoFocus);
    // Its tool tip is a fixed word, so the key is told elsewhere.
    m_stateButton->setShortcut(QKeySequence(Qt::Key_F8));
    const QString keys = m_stateButton->shortcut().toString(QKeySequence::NativeText);
    m_stateButton->setAccessibleDescription(keys);
    m_form->setStateHint(QStringLiteral("启用或禁用 (%1)").arg(keys));
    m_stateButton->raise();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::resizeEvent(QResizeEvent* event)
{
    IAuthSettingTabPage::resizeEvent(event);
    m_stateButton->move(width() - m_stateButton->width() - margin, margin);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::hideEvent(QHideEvent* event)
{
    // What nobody looks at any more has no need to keep a password.
    if (!event->spontaneous())
        m_form->clearPasswords();
    IAuthSettingTabPage::hideEvent(event);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::reloadData()
{
    const auto fillNow = [this] { fill(); };
    if (m_shownKey != key())
        m_reloads.runAnyway(fillNow);
    else if (!m_granting)
        m_reloads.run(fillNow);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::fill()
{
    m_shownKey = key();
    m_granting = false;
    m_formRequest.reset();
    m_table->clearAccounts();
    m_pending.clear();
    wipeSecret(m_exportPassword);
    m_form->days().startToday();
    if (key().isEmpty())
        return;
    const CUserConfig* user = getUserConfig();
    const auto accounts = user ? user->accounts : QVector<boost::shared_ptr<CAccount>>();
    CAuthLimit lastDays;
    for (const boost::shared_ptr<CAccount>& account : accounts) {
        if (!account || (account->authType != mbservice::AUTH_TYPE_NOT_GRANTED &&
                         account->authType != mbservice::AUTH_TYPE_GRANTED_TO_OTHER))
            continue;
        const QString accountKey = account->key();
        if (user->isSubAccount(accountKey) || user->hasSubAccount(accountKey))
            continue;
        const int row = m_table->addAccount(account);
        // A place in one user's table is none in another's.
        m_table->setRowKey(row, key() + u'\n' + accountKey);
        lastDays = fillRow(row);
    }
    // Every filled row sets the editors; only the last one's days are ever seen.
    if (m_table->rowCount() > 0)
        m_form->days().show(lastDays);
    showState();
    refreshRows();
}

CAuthLimit CAuthSettingSingleRestrictedUserGeneralTabPage::fillRow(int row)
{
    const QString accountKey = m_table->key(row);
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> grant;
    if (client && client->getAuthDetail(accountKey, grant) && grant) {
        // What somebody else has granted meanwhile is no longer the user's to prepare.
        if (!m_granting && !m_requests.present())
            m_pending.remove(accountKey);
        m_table->showGranted(row, *grant);
        return grant->limit;
    }
    const auto pending = m_pending.grants().constFind(accountKey);
    if (pending != m_pending.grants().constEnd()) {
        m_table->showPending(row, *pending);
        return pending->limit;
    }
    m_table->showFree(row);
    return CGrantDays::proposal();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::refillRow(int row)
{
    // The reads may lead to a reload, which would take the row away.
    const CReloadGate::Hold hold(m_reloads);
    if (m_table->account(row))
        m_form->days().show(fillRow(row));
    showState();
    // In a burst the other rows follow shortly after, this one has to be right at once.
    if (!m_refreshGate.request(runsAtOnce()))
        refreshRow(row);
}

int CAuthSettingSingleRestrictedUserGeneralTabPage::runsAtOnce() const
{
    // A walk over a table of a few screens costs nothing that anybody notices.
    constexpr int smallTable = 200;
    constexpr int runsOfSmallTable = 32;
    constexpr int runsOfLargeTable = 4;
    return m_table->rowCount() <= smallTable ? runsOfSmallTable : runsOfLargeTable;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::showState()
{
    CAuthClient* client = getAuthClient();
    const bool enabled = client && client->isSubUserActive(key());
    m_namedUser = key();
    m_shownEnabled = enabled;
    m_form->showUser(key(), enabled);
    m_stateButton->setImageKey(enabled ? QStringLiteral("gw_img_auth_subuser_disable")
                                       : QStringLiteral("gw_img_auth_subuser_enable"));
    showStateToolTip(enabled);
    m_table->setEnabled(enabled);
    m_grantButton->setEnabled(enabled);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::showStateToolTip(bool enabled)
{
    m_stateButton->setToolTip(enabled ? QStringLiteral("禁用") : QStringLiteral("启用"));
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::refreshRows()
{
    QMap<QString, boost::shared_ptr<CAuthDetail>> granted;
    if (CAuthClient* client = getAuthClient())
        client->getAuthorizedFromMeInfo(key(), granted);
    for (int row = 0; row < m_table->rowCount(); ++row)
        markRow(row, granted.contains(m_table->key(row)));
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::refreshRow(int row)
{
    if (!m_table->account(row))
        return;
    CAuthClient* client = getAuthClient();
    boost::shared_ptr<CAuthDetail> grant;
    const bool granted = client && client->getAuthDetail(m_table->key(row), grant) && grant &&
                         grant->grantee == key();
    markRow(row, granted);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::markRow(int row, bool granted)
{
    const bool pending = m_pending.contains(m_table->key(row));
    m_table->setTicked(row, granted || pending);
    if (pending)
        m_table->markModified(row);
}

bool CAuthSettingSingleRestrictedUserGeneralTabPage::handleEvent(int eventId, int param1,
                                                                 int param2, QString text,
                                                                 void* data)
{
    switch (eventId) {
    case KZ::EVENT_BUTTON_CLICKED:
        onClicked(param1, data);
        return true;
    case KZ::EVENT_ROW_SELECTED:
        refillRow(m_table->selectedRow());
        return true;
    case KZ::EVENT_CHECK_TOGGLED:
        onRowToggled(param1);
        return true;
    case KZ::EVENT_DATE_CHANGED:
        if (const int row = m_table->selectedRow(); row >= 0)
            onRowToggled(CRestrictedUserTable::firstCheckBoxId + row);
        return true;
    case KZ::EVENT_FOCUS_LEFT:
        return false;
    default:
        return CBaseWidget::handleEvent(eventId, param1, param2, text, data);
    }
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::onClicked(int id, void* sender)
{
    if (id >= CRestrictedUserTable::firstCancelButtonId)
        cancelRow(id - CRestrictedUserTable::firstCancelButtonId);
    else if (id == stateButtonId)
        onStateButton(sender);
    else if (id == grantButtonId)
        m_choice.popUpBelow(m_grantButton, 1, sender);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::onRowToggled(int id)
{
    if (id < CRestrictedUserTable::firstCheckBoxId || id > CRestrictedUserTable::lastCheckBoxId)
        return;
    const int row = id - CRestrictedUserTable::firstCheckBoxId;
    const boost::shared_ptr<CAccount> account = m_table->account(row);
    if (!account)
        return;
    // The tick of a grant that stands says nothing about one to be made.
    const bool wanted = m_table->isItemChecked(row, CRestrictedUserTable::Select) &&
                        m_table->isItemCheckEnabled(row, CRestrictedUserTable::Select);
    if (wanted) {
        const CAuthLimit days = m_form->days().limit();
        if (days.startTime > days.endTime) {
            showResultTip(m_form->endEdit(), QStringLiteral("授权截至日期必须大于起始日期"),
                          noteKind);
            dropPending(row);
            return;
        }
        if (m_form->days().count() == 1)
            showResultTip(m_form->endEdit(), QStringLiteral("授权日期为1天"), hintKind);
        m_pending.set(m_table->key(row), {*account, days, QString()});
    } else {
        m_pending.remove(m_table->key(row));
    }
    refillRow(row);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::dropPending(int row)
{
    // The days stay as typed, so that the user can put them right.
    const CReloadGate::Hold hold(m_reloads);
    m_pending.remove(m_table->key(row));
    fillRow(row);
    m_table->setTicked(row, false);
}

bool CAuthSettingSingleRestrictedUserGeneralTabPage::isShownStateTrue() const
{
    CAuthClient* client = getAuthClient();
    return client && !key().isEmpty() && m_shownKey == key() && m_namedUser == key() &&
           client->isSubUserActive(key()) == m_shownEnabled;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::onStateButton(const void* sender)
{
    if (isUserLooking(this, sender) && !isShownStateTrue()) {
        tellChanged(m_stateButton);
        return;
    }
    CAuthClient* client = getAuthClient();
    if (!client || (!client->isSubUserActive(key()) && !sendPassword()))
        return;
    connect(client, &CAuthClient::sigSetSubUserResult, this, &Self::slotSetsubuserResult);
    m_stateRequest = newRequestNumber();
    beginRequest();
    client->setSubUser(key(), !client->isSubUserActive(key()));
}

bool CAuthSettingSingleRestrictedUserGeneralTabPage::sendPassword()
{
    QString password = m_form->passwordEdit()->text().trimmed();
    QString confirmation = m_form->confirmEdit()->text().trimmed();
    const bool equal = password == confirmation;
    const bool usable = equal && !password.isEmpty();
    if (!equal)
        showResultTip(m_form->confirmEdit(), QStringLiteral("子用户密码2次输入必须相同"), noteKind);
    else if (!usable)
        showResultTip(m_form->passwordEdit(), QStringLiteral("密码不能为空"), noteKind);
    else
        getAuthClient()->updateSubUser(key(), subUserPasswordDigest(password));
    wipeSecret(password);
    wipeSecret(confirmation);
    return usable;
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotUpdatesubuserResult(QString, QString,
                                                                             bool bresult, QString)
{
    // The state's outcome, asked for together with it, says more and takes its place.
    m_outcomes.finish(COutcomes::unkept, [this, bresult] {
        showResultTip(m_form->confirmEdit(),
                      bresult ? QStringLiteral("更改子用户密码成功")
                              : QStringLiteral("更改子用户密码失败"),
                      noteKind, m_stateRequest);
    });
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotSetsubuserResult(QString, bool bEnabled,
                                                                          bool bReslt,
                                                                          QString qsError)
{
    m_outcomes.finish(m_stateRequest, [this, bEnabled, bReslt, qsError] {
        if (bReslt) {
            showStateToolTip(bEnabled);
            m_stateGate.request(runsAtOnce());
            return;
        }
        showResultTip(m_stateButton,
                      QStringLiteral("修改子用户状态失败") + QStringLiteral("失败原因：") + qsError,
                      noteKind, m_stateRequest);
    });
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::reloadEverything()
{
    reloadData();
    reloadNavigator();
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::reloadNavigator()
{
    deliverEvent(EVENT_RELOAD_NAVIGATOR, 0, 0, QString(), nullptr);
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::cancelRow(int row)
{
    CAuthClient* client = getAuthClient();
    if (!client || !m_table->account(row))
        return;
    connect(client, &CAuthClient::sigDelAuthResult, this, &Self::slotDelAuthResult);
    const QString grantee = m_table->itemText(row, CRestrictedUserTable::Grantee);
    const mbservice::CAccountInfo account = keyToAccountInfo(m_table->key(row));
    m_cancelRequest = newRequestNumber();
    beginRequest();
    client->delAuth(grantee, account, requestTag(this));
}

void CAuthSettingSingleRestrictedUserGeneralTabPage::slotDelAuthResult(
    QString, mbservice::CAccountInfo account, QVariant tag, bool ok, QString)
{
    if (!isRequestOf(this, tag))
        return;
    m_outcomes.finish(m_cancelRequest, [this, accountKey = genAccountKeyQs(account), ok] {
        const int row = m_table->rowOf(accountKey);
        refillRow(row);
        reloadNavigator();
        QWidget* button = m_table->cancelButton(row);
        showResultTip(button ? button : m_table,
                      ok ? QStringLiteral("取消授权成功") : QStringLiteral("取消授权失败"),
                      noteKind, m_cancelRequest);
    });
}

} // namespace GW
