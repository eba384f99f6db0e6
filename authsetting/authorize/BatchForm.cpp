#include "authsetting/authorize/BatchForm.h"

#include "authsetting/authorize/BatchAccountsTable.h"
#include "authsetting/authorize/FormRow.h"
#include "authsetting/authorize/GrantButton.h"
#include "authsetting/shell/TableLayouts.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/resources/UiResource.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/MediumNormalButton.h"

namespace GW {

namespace {

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

CBatchForm::CBatchForm(QWidget* parent)
    : CWidgetList(Qt::Vertical, parent),
      m_granteeEditor(new KZ::CComboBox(GRANTEE_EDITOR_ID, this)),
      m_startEditor(new KZ::CSoftCalendarLineEdit(START_EDITOR_ID, this)),
      m_endEditor(new KZ::CSoftCalendarLineEdit(END_EDITOR_ID, this)),
      m_days(m_startEditor, m_endEditor), m_table(new CBatchAccountsTable(this)),
      m_authorizeButton(newGrantButton(AUTHORIZE_BUTTON_ID, this))
{
    const int margin = uiSize("gw_siz_auth_setting_accounts_authorize_margin");
    setMargin(margin, margin, margin, margin);
    setSpacingKey(QStringLiteral("gw_siz_setting_accounts_item_v_space"));

    m_granteeEditor->setObjectName(QStringLiteral("halden_batch_grantee"));
    m_granteeEditor->setEditable(true);
    addField(QStringLiteral("被授权人"), m_granteeEditor);

    m_days.startToday();
    m_days.propose();
    m_startEditor->setObjectName(QStringLiteral("halden_batch_start"));
    addField(QStringLiteral("起始时间"), m_startEditor);

    m_endEditor->setObjectName(QStringLiteral("halden_batch_end"));
    addField(QStringLiteral("终止时间"), m_endEditor);

    restoreTableLayout(m_table);
    addStretchWidget(m_table);

    m_authorizeButton->setObjectName(QStringLiteral("halden_batch_authorize"));
    m_authorizeButton->setAccessibleName(m_authorizeButton->text());
    addFixWidget(m_authorizeButton);
}

CBatchForm::~CBatchForm()
{
    saveTableLayout(m_table);
}

void CBatchForm::addField(const QString& caption, QWidget* editor)
{
    auto* row = new CFormRow(uiSize("gw_siz_kit_list_space"), 0, this);
    row->addField(caption, editor, QStringLiteral("gw_siz_setting_accounts_editor_width"));
    addFixWidget(row);
}

QString CBatchForm::grantee() const
{
    return m_granteeEditor->currentText();
}

void CBatchForm::showPending(int row)
{
    m_table->showPending(row, m_startEditor->date(), m_endEditor->date(), grantee());
}

void CBatchForm::showPendingInSelected()
{
    for (int row = 0; row < m_table->rowCount(); ++row) {
        if (m_table->isSelected(row))
            showPending(row);
    }
}

} // namespace GW
