#include "authsetting/authorize/FormRow.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/SimpleTextWidget.h"
#include "kit/widgets/SizeFollower.h"

namespace GW {

CFormRow::CFormRow(int captionGap, int fieldGap, QWidget* parent)
    : CWidgetList(Qt::Horizontal, parent), m_captionGap(captionGap), m_fieldGap(fieldGap)
{
    setSpacing(0);
    takeHeight();
}

CFormRow::CFormRow(int captionGap, const QString& fieldGapKey, QWidget* parent)
    : CWidgetList(Qt::Horizontal, parent), m_captionGap(captionGap), m_fieldGapKey(fieldGapKey)
{
    setSpacing(0);
    takeHeight();
}

void CFormRow::takeHeight()
{
    setFixedHeight(KZ::CUiResource::getSize(
        QStringLiteral("gw_siz_auth_setting_accounts_authorize_row_height")));
}

void CFormRow::onUiResourceChanged()
{
    CWidgetList::onUiResourceChanged();
    takeHeight();
}

void CFormRow::addFieldGap()
{
    if (m_fieldGapKey.isEmpty())
        addFixSpace(m_fieldGap);
    else
        addFixSpace(m_fieldGapKey);
}

KZ::CSimpleTextWidget* CFormRow::addField(const QString& caption, QWidget* editor,
                                          const QString& widthKey, const QString& heightKey)
{
    if (m_hasField)
        addFieldGap();
    m_hasField = true;
    auto* text = new KZ::CSimpleTextWidget(caption, this);
    text->setAccessibleTarget(editor);
    addFixWidget(text);
    addFixSpace(m_captionGap);
    KZ::CSizeFollower::follow(editor, widthKey, heightKey);
    addFixWidget(editor);
    return text;
}

KZ::CSimpleTextWidget* CFormRow::addRemark(const QString& text, int gap)
{
    addFixSpace(gap);
    auto* remark = new KZ::CSimpleTextWidget(text, this);
    addFixWidget(remark);
    return remark;
}

} // namespace GW
