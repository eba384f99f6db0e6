#include "kit/dialogs/CustomDialog.h"

namespace KZ {

CCustomDialog::CCustomDialog(QWidget* parent) : CBaseDialog(parent) {}

void CCustomDialog::setContentWidget(QWidget* widget)
{
    m_content = widget;
    if (!widget)
        return;
    widget->setParent(this);
    widget->show();
    placeContent();
}

QWidget* CCustomDialog::contentWidget() const
{
    return m_content;
}

QSize CCustomDialog::sizeHint() const
{
    if (!m_content)
        return CBaseDialog::sizeHint();
    const int border = 2 * borderWidth();
    return m_content->sizeHint() + QSize(border, border + titleBarHeight());
}

void CCustomDialog::resizeEvent(QResizeEvent* event)
{
    CBaseDialog::resizeEvent(event);
    placeContent();
}

void CCustomDialog::placeContent()
{
    if (m_content)
        m_content->setGeometry(innerRect());
}

} // namespace KZ
