#include "authsetting/subusers/RestrictedUserForm.h"

#include "authsetting/authorize/FormRow.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/keyboard/SoftKeyboardLineEdit.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/SimpleTextWidget.h"

namespace GW {

namespace {

constexpr int margin = 8;
constexpr int captionGap = 8;
constexpr int fieldGap = 10;

constexpr int nameId = 0;
constexpr int passwordId = 1;
constexpr int confirmId = 2;
constexpr int startId = 3;
constexpr int endId = 4;

} // namespace

CRestrictedUserForm::CRestrictedUserForm(QWidget* parent)
    : CWidgetList(Qt::Vertical, parent), m_name(new KZ::CLineEdit(nameId, this)),
      m_password(new KZ::CSoftKeyboardLineEdit(passwordId, this)),
      m_confirm(new KZ::CSoftKeyboardLineEdit(confirmId, this)),
      m_start(new KZ::CSoftCalendarLineEdit(startId, this)),
      m_end(new KZ::CSoftCalendarLineEdit(endId, this)), m_days(m_start, m_end)
{
    setMargin(margin, margin, margin, margin);
    setSpacingKey(QStringLiteral("gw_siz_setting_accounts_item_v_space"));
    const QString width = QStringLiteral("gw_siz_setting_accounts_item_width");
    const QString height = QStringLiteral("gw_siz_setting_accounts_item_height");
    const auto addRow = [this](CFormRow* row) {
        row->addStretch();
        addFixWidget(row);
    };

    auto* user = new CFormRow(captionGap, fieldGap, this);
    m_name->setEnabled(false);
    user->addField(QStringLiteral("子用户名"), m_name, width, height);
    m_state = user->addRemark(QString(), fieldGap);
    m_state->setObjectName(QStringLiteral("halden_sub_user_state"));
    addRow(user);

    auto* passwords = new CFormRow(captionGap, fieldGap, this);
    m_password->setEchoMode(QLineEdit::Password);
    m_confirm->setEchoMode(QLineEdit::Password);
    passwords->addField(QStringLiteral("密　　码"), m_password, width, height);
    passwords->addField(QStringLiteral("确认密码"), m_confirm, width, height);
    addRow(passwords);

    auto* days = new CFormRow(captionGap, fieldGap, this);
    days->addField(QStringLiteral("起始时间"), m_start, width, height);
    days->addField(QStringLiteral("终止时间"), m_end, width, height);
    addRow(days);
    m_days.startToday();
    m_days.propose();
}

void CRestrictedUserForm::showUser(const QString& name, bool enabled)
{
    m_name->setText(name);
    clearPasswords();
    m_state->setText(enabled ? QStringLiteral("已启用") : QStringLiteral("已禁用"));
    m_state->setTextColorKey(enabled ? QStringLiteral("clr_sub_user_enabled")
                                     : QStringLiteral("clr_sub_user_disabled"));
    m_password->setEnabled(!enabled);
    m_confirm->setEnabled(!enabled);
    m_start->setEnabled(enabled);
    m_end->setEnabled(enabled);
}

void CRestrictedUserForm::setStateHint(const QString& hint)
{
    m_state->setToolTip(hint);
}

void CRestrictedUserForm::clearPasswords()
{
    m_password->clear();
    m_confirm->clear();
}

} // namespace GW
