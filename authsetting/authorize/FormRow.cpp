#include "authsetting/authorize/FormRow.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/SimpleTextWidget.h"

namespace GW {

namespace {

int usualGap()
{
    return KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_list_space"));
}

} // namespace

CFormRow::CFormRow(QWidget* parent) : CFormRow(usualGap(), usualGap(), parent) {}

CFormRow::CFormRow(int captionGap, int fieldGap, QWidget* parent)
    : CWidgetList(Qt::Horizontal, parent), m_captionGap(captionGap), m_fieldGap(fieldGap)
{
    setSpacing(0);
    setFixedHeight(KZ::CUiResource::getSize(
        QStringLiteral("gw_siz_auth_setting_accounts_authorize_row_height")));
}

KZ::CSimpleTextWidget* CFormRow::addField(const QString& caption, QWidget* editor,
                                          const QSize& size)
{
    if (m_hasField)
        addFixSpace(m_fieldGap);
    m_hasField = true;
    auto* text = new KZ::CSimpleTextWidget(caption, this);
    text->setAccessibleTarget(editor);
    addFixWidget(text);
    addFixSpace(m_captionGap);
    editor->resize(size);
    addFixWidget(editor);
    return text;
}

KZ::CSimpleTextWidget* CFormRow::addField(const QString& caption, QWidget* editor, int width)
{
    return addField(caption, editor, QSize(width, editor->sizeHint().height()));
}

KZ::CSimpleTextWidget* CFormRow::addRemark(const QString& text, int gap)
{
    addFixSpace(gap);
    auto* remark = new KZ::CSimpleTextWidget(text, this);
    addFixWidget(remark);
    return remark;
}

} // namespace GW
