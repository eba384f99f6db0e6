#include "kit/widgets/SizeFollower.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/WidgetList.h"

#include <QWidget>

namespace KZ {

CSizeFollower::CSizeFollower(QWidget* widget, const QString& widthKey, const QString& heightKey)
    : QObject(widget), m_widget(widget), m_widthKey(widthKey), m_heightKey(heightKey)
{
}

void CSizeFollower::follow(QWidget* widget, const QString& widthKey, const QString& heightKey)
{
    auto* follower = new CSizeFollower(widget, widthKey, heightKey);
    follower->onUiResourceChanged();
}

void CSizeFollower::onUiResourceChanged()
{
    const int height =
        m_heightKey.isEmpty() ? m_widget->sizeHint().height() : CUiResource::getSize(m_heightKey);
    m_widget->resize(CUiResource::getSize(m_widthKey), height);
    if (auto* const list = dynamic_cast<CWidgetList*>(m_widget->parentWidget()))
        list->keepSizeOf(m_widget);
}

} // namespace KZ
