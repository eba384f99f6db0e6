#include "host/client/ConnectionView.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>

namespace host {

ConnectionView::ConnectionView(QWidget* parent)
    : CBaseWidget(parent), m_icon(new QLabel(this)),
      m_text(new KZ::CSimpleTextWidget(QString(), this))
{
    setObjectName(QStringLiteral("halden_client_connection"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_tip_gap")));
    layout->addWidget(m_icon);
    layout->addWidget(m_text);
    setOnline(true);
}

void ConnectionView::setOnline(bool isOnline, const QString& refusal)
{
    m_isOnline = isOnline;
    QString text = QStringLiteral("在线");
    if (!isOnline)
        text = QStringLiteral("离线：") +
               (refusal.isEmpty() ? QStringLiteral("正在重新连接…") : refusal);
    m_text->setText(text);
    m_text->setTextColorKey(isOnline ? QStringLiteral("clr_success")
                                     : QStringLiteral("clr_danger"));
    setAccessibleName(m_text->text());
    showIcon();
}

QString ConnectionView::text() const
{
    return m_text->text();
}

void ConnectionView::onUiResourceChanged()
{
    CBaseWidget::onUiResourceChanged();
    showIcon();
}

void ConnectionView::showIcon()
{
    const QIcon icon = KZ::CUiResource::getIcon(m_isOnline ? QStringLiteral("gw_img_kit_online")
                                                           : QStringLiteral("gw_img_kit_offline"));
    const int size = KZ::CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
    m_icon->setPixmap(icon.pixmap(QSize(size, size), devicePixelRatioF()));
}

} // namespace host
