#include "tests/monkey/Truth.h"

#include "authsetting/subusers/SubUserPassword.h"
#include "kit/dates/DateConversions.h"
#include "tests/monkey/World.h"

#include <algorithm>
#include <cmath>

namespace monkey {

namespace {

QString dayOf(qint32 seconds)
{
    return KZ::secondToQDateTime(seconds).date().toString(Qt::ISODate);
}

QString fileName(const QString& path)
{
    return path.section(u'/', -1);
}

QString numberOf(const mbservice::CAccountInfo& account)
{
    return QString::fromStdString(account.accountId);
}

QString describe(const Call& call)
{
    return QStringLiteral("%1 for %2 from %3 to %4")
        .arg(numberOf(call.account), call.user, dayOf(call.limit.startTime),
             dayOf(call.limit.endTime));
}

QString namesOf(const QVector<ScreenRow>& rows)
{
    QStringList names;
    for (const ScreenRow& row : rows)
        names.append(row.name);
    return names.join(u',');
}

} // namespace

void Truth::look(const Screen& screen, const Action& action)
{
    m_screen = screen;
    m_action = action;
}

Failure Truth::judge()
{
    QVector<int> grants;
    QVector<int> users;
    for (; m_judged < m_world.client.log.size(); ++m_judged) {
        const Call& call = m_world.client.log.at(m_judged);
        const bool begins = call.kind != Call::Export && call.kind != Call::Check;
        if (begins && !m_action.isUsers()) {
            m_judged = static_cast<int>(m_world.client.log.size());
            return {QStringLiteral("unasked"),
                    QStringLiteral("a request of kind %1 began by itself").arg(call.kind)};
        }
        if (call.kind == Call::Grant)
            grants.append(m_judged);
        else if (call.kind == Call::SetUser)
            users.append(m_judged);
        else if (const Failure failure = judgeCall(call); !failure.isEmpty())
            return failure;
    }
    if (const Failure failure = judgeGrants(grants); !failure.isEmpty())
        return failure;
    return judgeUsers(users);
}

Failure Truth::judgeCall(const Call& call)
{
    switch (call.kind) {
    case Call::Cancel:
        return judgeCancel(call);
    case Call::Password:
        return judgePassword(call);
    case Call::Import:
        return judgeImport(call);
    case Call::Export:
        return judgeExport(call);
    default:
        return {};
    }
}

QVector<ScreenRow> Truth::grantedRows() const
{
    QVector<ScreenRow> rows;
    if (m_menu.page == Screen::SingleAccount || m_menu.page == Screen::Received) {
        ScreenRow row;
        row.name = m_menu.account;
        rows.append(row);
    } else {
        std::copy_if(m_menu.rows.cbegin(), m_menu.rows.cend(), std::back_inserter(rows),
                     [](const ScreenRow& row) { return row.isTicked && !row.isLocked; });
    }
    if (m_menu.page == Screen::SubUser)
        return rows;
    for (ScreenRow& row : rows) {
        row.first = m_menu.first;
        row.last = m_menu.last;
    }
    return rows;
}

Failure Truth::judgeGrants(const QVector<int>& calls)
{
    if (calls.isEmpty())
        return {};
    const QVector<Call>& log = m_world.client.log;
    m_grants += static_cast<int>(calls.size());
    const Call& one = log.at(calls.constFirst());
    if (one.tag != m_screen.tag || m_screen.tab != m_menu.tab)
        return {QStringLiteral("covered"),
                QStringLiteral("a covered page granted ") + describe(one)};
    const QVector<ScreenRow> rows = grantedRows();
    if (calls.size() != rows.size()) {
        QStringList sent;
        for (const int call : calls)
            sent.append(numberOf(log.at(call).account));
        return {QStringLiteral("grant-rows"),
                QStringLiteral("shown ticked %1, granted %2").arg(namesOf(rows), sent.join(u','))};
    }
    for (const int call : calls) {
        const QString number = numberOf(log.at(call).account);
        const auto row =
            std::find_if(rows.cbegin(), rows.cend(),
                         [&number](const ScreenRow& shown) { return shown.name == number; });
        if (row == rows.cend())
            return {QStringLiteral("grant-rows"),
                    QStringLiteral("shown ticked %1, granted %2").arg(namesOf(rows), number)};
        if (const Failure failure = judgeGrant(log.at(call), *row); !failure.isEmpty())
            return failure;
    }
    if (!one.toServer) {
        QString password = m_screen.dialogPassword;
        if (m_screen.page == Screen::SubUser)
            password = password.trimmed();
        m_requests.insert(m_path, {calls, m_path, password});
    }
    return {};
}

Failure Truth::judgeGrant(const Call& call, const ScreenRow& row) const
{
    if (call.user != m_menu.user)
        return {QStringLiteral("grant-user"),
                QStringLiteral("shown for %1, granted %2").arg(m_menu.user, describe(call))};
    if (dayOf(call.limit.startTime) != row.first || dayOf(call.limit.endTime) != row.last)
        return {QStringLiteral("grant-days"), QStringLiteral("shown from %1 to %2, granted %3")
                                                  .arg(row.first, row.last, describe(call))};
    if (m_menu.page != Screen::SingleAccount && m_menu.page != Screen::Received)
        return {};
    if (!call.wasFree)
        return {QStringLiteral("grant-state"),
                QStringLiteral("no longer free, granted ") + describe(call)};
    if (m_menu.conditionIsOpen)
        return {};
    const double percent = call.toServer ? m_menu.threshold : std::trunc(m_menu.threshold);
    const bool isAsShown =
        call.limit.hasMarginRatio() == m_menu.hasCondition &&
        (!m_menu.hasCondition || std::fabs(call.limit.availableMarginRatio - percent / 100) < 1e-9);
    if (isAsShown)
        return {};
    return {QStringLiteral("grant-condition"),
            QStringLiteral("another condition than the one shown: ") + describe(call)};
}

Failure Truth::judgeCancel(const Call& call)
{
    ++m_cancels;
    const QString sent = QStringLiteral("%1 of %2").arg(numberOf(call.account), call.user);
    if (call.tag != m_screen.tag)
        return {QStringLiteral("covered"), QStringLiteral("a covered page cancelled ") + sent};
    const bool isSingle =
        m_screen.page == Screen::SingleAccount || m_screen.page == Screen::Received;
    if (!isSingle && !m_screen.hasTargetRow)
        return {QStringLiteral("cancel-row"), QStringLiteral("no row's button cancelled ") + sent};
    const QString account = isSingle ? m_screen.account : m_screen.targetRow.name;
    const QString grantee = isSingle ? m_screen.user : m_screen.targetRow.grantee;
    if (account != numberOf(call.account) || grantee != call.user)
        return {QStringLiteral("cancel-other"),
                QStringLiteral("shown %1 of %2, cancelled %3").arg(account, grantee, sent)};
    if (isSingle && m_screen.buttonText != QStringLiteral("取消授权"))
        return {QStringLiteral("cancel-state"),
                QStringLiteral("the button read %1, cancelled %2").arg(m_screen.buttonText, sent)};
    return {};
}

Failure Truth::judgeUsers(const QVector<int>& calls)
{
    if (calls.isEmpty())
        return {};
    const QVector<Call>& log = m_world.client.log;
    const Call& one = log.at(calls.constFirst());
    const QString sent = QStringLiteral("%1 %2").arg(
        one.enable ? QStringLiteral("enabled") : QStringLiteral("disabled"), one.user);
    if (m_screen.page == Screen::SubUser) {
        if (calls.size() != 1 || one.user != m_screen.user)
            return {QStringLiteral("user-other"),
                    QStringLiteral("shown %1, %2").arg(m_screen.user, sent)};
        if (one.enable == m_screen.userIsEnabled)
            return {QStringLiteral("user-state"), QStringLiteral("shown in that state, ") + sent};
        if (one.wasEnabled != m_screen.userIsEnabled)
            return {QStringLiteral("user-state"), QStringLiteral("changed unseen, ") + sent};
        return {};
    }
    if (m_screen.page != Screen::Manage)
        return {QStringLiteral("covered"), QStringLiteral("a covered page ") + sent};
    if (m_screen.hasTargetRow) {
        if (calls.size() != 1 || one.user != m_screen.targetRow.name)
            return {QStringLiteral("user-other"),
                    QStringLiteral("shown %1, %2").arg(m_screen.targetRow.name, sent)};
        if (one.enable)
            return {QStringLiteral("user-state"),
                    QStringLiteral("the button read %1, %2").arg(m_screen.targetText, sent)};
        return {};
    }
    QStringList shown;
    for (const ScreenRow& row : m_screen.rows)
        shown.append(row.name);
    QStringList changed;
    for (const int call : calls)
        changed.append(log.at(call).user);
    shown.sort();
    changed.sort();
    const bool enables = m_screen.targetText == QStringLiteral("全部启用");
    if (shown == changed && !m_screen.hidesRows && one.enable == enables)
        return {};
    return {QStringLiteral("user-rows"), QStringLiteral("shown %1, %2 and in all %3")
                                             .arg(shown.join(u','), sent, changed.join(u','))};
}

Failure Truth::judgePassword(const Call& call) const
{
    if (m_screen.page == Screen::SubUser && call.user == m_screen.user &&
        call.password == GW::subUserPasswordDigest(m_screen.userPassword) &&
        !m_screen.userIsEnabled)
        return {};
    return {QStringLiteral("user-password"),
            QStringLiteral("shown %1, password set of %2").arg(m_screen.user, call.user)};
}

Failure Truth::judgeImport(const Call& call) const
{
    if (m_screen.page != Screen::Import)
        return {QStringLiteral("covered"), QStringLiteral("a covered page imports")};
    if (call.path == m_path && call.password == m_screen.dialogPassword)
        return {};
    return {QStringLiteral("import"),
            QStringLiteral("typed %1, imported %2").arg(m_path, call.path)};
}

Failure Truth::judgeExport(const Call& call)
{
    ++m_files;
    const auto request = m_requests.constFind(call.path);
    if (request == m_requests.constEnd())
        return {QStringLiteral("file"), QStringLiteral("nobody asked for ") + fileName(call.path)};
    const QVector<Call>& log = m_world.client.log;
    if (call.password != request->password)
        return {QStringLiteral("file"),
                fileName(call.path) + QStringLiteral(" has another password")};
    QStringList expected;
    for (const int index : request->calls) {
        if (log.at(index).isOpen)
            return {QStringLiteral("file-early"),
                    fileName(call.path) + QStringLiteral(" was written before all answers")};
        if (log.at(index).isGranted)
            expected.append(log.at(index).ref);
    }
    QStringList written;
    for (const auto& grant : call.grants) {
        written.append(grant->grantRef);
        const QString number = numberOf(grant->account);
        const auto asked = std::find_if(
            request->calls.cbegin(), request->calls.cend(), [&log, &grant, &number](int index) {
                const Call& sent = log.at(index);
                return numberOf(sent.account) == number && sent.user == grant->grantee &&
                       sent.limit.startTime == grant->limit.startTime &&
                       sent.limit.endTime == grant->limit.endTime;
            });
        if (asked == request->calls.cend())
            return {QStringLiteral("file-other"),
                    QStringLiteral("%1 holds %2 for %3")
                        .arg(fileName(call.path), number, grant->grantee)};
        if (QString::fromStdString(grant->account.accountPrivate) != World::secretOf(number) &&
            m_world.account(number))
            return {QStringLiteral("file-secret"),
                    QStringLiteral("%1 holds \"%2\" as the secret of %3")
                        .arg(fileName(call.path),
                             QString::fromStdString(grant->account.accountPrivate), number)};
    }
    written.sort();
    expected.sort();
    if (written == expected)
        return {};
    return {QStringLiteral("file-other"),
            QStringLiteral("%1 holds %2 and not %3")
                .arg(fileName(call.path), written.join(u','), expected.join(u','))};
}

} // namespace monkey
