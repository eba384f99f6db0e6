#include "kit/widgets/PushButton.h"

#include <QEvent>

namespace KZ {

CPushButton::CPushButton(int id, int command, QWidget* parent) : CButton(id, command, parent)
{
    setIcon(QString(), 0, 0);
    takeHintSize();
}

CPushButton::CPushButton(int id, QWidget* parent) : CPushButton(id, 0, parent) {}

void CPushButton::setImageKey(const QString& key)
{
    setIcon(key, 0, 0);
    if (!testAttribute(Qt::WA_Resized))
        takeHintSize();
}

CButton::Look CPushButton::look() const
{
    return Look::Flat;
}

QString CPushButton::paddingKey() const
{
    return QStringLiteral("gw_siz_kit_image_button_padding");
}

bool CPushButton::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTipChange && accessibleName() == m_toolTipName) {
        m_toolTipName = toolTip();
        setAccessibleName(m_toolTipName);
    }
    return CButton::event(event);
}

} // namespace KZ
