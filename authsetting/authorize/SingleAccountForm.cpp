#include "authsetting/authorize/SingleAccountForm.h"

#include "authsetting/authorize/FormRow.h"
#include "authsetting/authorize/GrantButton.h"
#include "authsetting/authorize/GranteeList.h"
#include "authsetting/authorize/PlatformSetting.h"
#include "authsetting/services/Account.h"
#include "authsetting/services/AccountKey.h"
#include "authsetting/services/AuthDetail.h"
#include "authsetting/shell/AccountTexts.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/resources/UiResource.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/LineEdit.h"
#include "kit/widgets/MediumNormalButton.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QTableView>

namespace GW {

namespace {

constexpr int margin = 8;
constexpr int conditionsTableId = 0x400013;
constexpr int marginRow = 0;
constexpr int enabledColumn = 0;
constexpr int conditionColumn = 1;
constexpr int thresholdColumn = 2;
constexpr int fullThreshold = 100;

int sizeOf(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

// A ratio comes from another machine, so it is kept within what an int can hold.
int percentOf(double ratio)
{
    constexpr double most = 1e9;
    return static_cast<int>(qBound(-most, ratio * 100, most));
}

// The account's own fields can be read and copied, not changed.
KZ::CLineEdit* newDisplay(int id, QWidget* parent)
{
    auto* edit = new KZ::CLineEdit(id, parent);
    edit->setReadOnly(true);
    edit->setFocusPolicy(Qt::ClickFocus);
    return edit;
}

} // namespace

CSingleAccountForm::CSingleAccountForm(QWidget* parent)
    : CWidgetList(Qt::Vertical, parent), m_start(new KZ::CSoftCalendarLineEdit(ID_START, this)),
      m_end(new KZ::CSoftCalendarLineEdit(ID_END, this)), m_days(m_start, m_end)
{
    setMargin(margin, margin, margin, margin);
    setSpacingKey(QStringLiteral("gw_siz_setting_accounts_item_v_space"));
    addRows();
    addTable();
    addGrantButton();
    setTabOrder(m_grantee, m_start);
    setTabOrder(m_start, m_end);
    setTabOrder(m_end, m_conditions->view());
    setTabOrder(m_conditions->view(), m_grantButton);
}

CSingleAccountForm::~CSingleAccountForm()
{
    saveTableLayout(m_conditions);
}

void CSingleAccountForm::addRows()
{
    const int gap = sizeOf("gw_siz_kit_list_space");
    const QString space = QStringLiteral("gw_siz_auth_setting_single_account_row_inner_space");
    const QString width = QStringLiteral("gw_siz_setting_accounts_editor_width");
    const auto addRow = [this](CFormRow* row) {
        row->addStretch();
        addFixWidget(row);
    };

    auto* names = new CFormRow(gap, space, this);
    m_platform = newDisplay(ID_PLATFORM, names);
    m_broker = newDisplay(ID_BROKER, names);
    names->addField(QStringLiteral("交易平台"), m_platform, width);
    m_brokerCaption = names->addField(QStringLiteral("经纪公司"), m_broker, width);
    addRow(names);

    auto* users = new CFormRow(gap, space, this);
    m_account = newDisplay(ID_ACCOUNT, users);
    m_grantee = new KZ::CComboBox(ID_GRANTEE, users);
    m_grantee->setEditable(true);
    users->addField(QStringLiteral("账　　号"), m_account, width);
    users->addField(QStringLiteral("被授权人"), m_grantee, width);
    m_state = users->addRemark(QStringLiteral("未授权"), gap);
    m_state->setObjectName(QStringLiteral("halden_account_state"));
    addRow(users);

    auto* days = new CFormRow(gap, space, this);
    days->addField(QStringLiteral("起始时间"), m_start, width);
    days->addField(QStringLiteral("终止时间"), m_end, width);
    addRow(days);
}

void CSingleAccountForm::addTable()
{
    m_conditions = new KZ::COddEvenRowTable(conditionsTableId, this, 255);
    m_conditions->view()->setAccessibleName(QStringLiteral("限制条件"));
    m_conditions->setFlag(0x11);
    m_conditions->setColumnCount(3);
    m_conditions->setHeaderText(enabledColumn, QStringLiteral("启用"));
    m_conditions->setHeaderCentered(enabledColumn);
    m_conditions->setHeaderText(conditionColumn, QStringLiteral("限制条件"));
    m_conditions->setHeaderText(thresholdColumn, QStringLiteral("条件阈值"));
    m_conditions->setColumnWidth(enabledColumn, sizeOf("gw_siz_table_column_select"));
    m_conditions->setColumnWidth(conditionColumn,
                                 sizeOf("gw_siz_auth_setting_auth_advanced_key_width"));
    m_conditions->setColumnWidth(thresholdColumn,
                                 sizeOf("gw_siz_auth_setting_auth_advanced_value_width"));
    m_conditions->setColumnEditable(thresholdColumn, true);
    const int row = m_conditions->appendRow();
    m_conditions->setItemCheckBox(row, enabledColumn, row, false, true, 0x84);
    m_conditions->setItemText(row, conditionColumn, QStringLiteral("可用保证金比例(%)"));
    m_conditions->setItemInt(row, thresholdColumn, fullThreshold);
    restoreTableLayout(m_conditions);
    addStretchWidget(m_conditions, 1, 3, false);
}

void CSingleAccountForm::addGrantButton()
{
    m_grantButton = newGrantButton(ID_GRANT_BUTTON, this);
    addFixWidget(m_grantButton);
}

void CSingleAccountForm::reset()
{
    m_days.startToday();
    m_days.propose();
    m_grantee->clear();
    m_grantee->clearEditText();
    // What stands open there was typed for the form as it was.
    m_conditions->view()->closePersistentEditor(thresholdCell());
    for (int row = 0; row < m_conditions->rowCount(); ++row)
        m_conditions->setItemInt(row, thresholdColumn, fullThreshold);
}

void CSingleAccountForm::fillGrantees()
{
    fillGranteeBox(m_grantee);
}

void CSingleAccountForm::setGrantable(bool grantable)
{
    m_start->setEnabled(grantable);
    m_end->setEnabled(grantable);
    m_grantee->setEnabled(grantable);
    m_conditions->setInnerEnabled(grantable);
}

void CSingleAccountForm::showAccount(const CAccount* account)
{
    const bool stock = account && isStockAccount(*account, StockRule::OnlyStockType);
    m_brokerCaption->setText(stock ? QStringLiteral("证券公司") : QStringLiteral("经纪公司"));
    if (!account) {
        m_state->setTextColorKey(QString());
        m_state->setText(QStringLiteral("未授权"));
        m_platform->clear();
        m_broker->clear();
        m_account->clear();
        return;
    }
    m_state->setText(account->authTypeString(), 100000);
    m_state->setTextColorKey(QString::fromLatin1(authTypeToColorKey(account->authType)));
    m_platform->setText(platformSettingName(*account, StockRule::OnlyStockType));
    m_broker->setText(brokerName(*account, StockRule::OnlyStockType));
    m_account->setText(accountDisplayIDQs(*account));
}

void CSingleAccountForm::showGrant(const CAuthDetail& grant)
{
    const bool conditional = grant.limit.hasMarginRatio();
    m_days.show(grant.limit);
    m_grantee->setEditText(grant.grantee);
    setConditionTicked(conditional);
    m_conditions->setItemInt(marginRow, thresholdColumn,
                             conditional ? percentOf(grant.limit.availableMarginRatio)
                                         : fullThreshold);
}

void CSingleAccountForm::setConditionTicked(bool ticked)
{
    m_conditions->setItemChecked(marginRow, enabledColumn, ticked);
}

bool CSingleAccountForm::returnToOpenThreshold()
{
    QWidget* editor = m_conditions->view()->indexWidget(thresholdCell());
    if (!editor || !m_conditions->isItemChecked(marginRow, enabledColumn))
        return false;
    editor->setFocus();
    return true;
}

QModelIndex CSingleAccountForm::thresholdCell() const
{
    return m_conditions->view()->model()->index(marginRow, thresholdColumn);
}

CAuthLimit CSingleAccountForm::limit(bool wholePercent) const
{
    CAuthLimit limit = m_days.limit();
    if (m_conditions->isItemChecked(marginRow, enabledColumn)) {
        const double percent = wholePercent ? m_conditions->itemInt(marginRow, thresholdColumn)
                                            : m_conditions->itemDouble(marginRow, thresholdColumn);
        limit.availableMarginRatio = percent / 100.0;
    }
    return limit;
}

} // namespace GW
