#include "host/client/OfflineNotice.h"

#include "kit/resources/UiResource.h"
#include "kit/widgets/SimpleTextWidget.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>

namespace host {

namespace {

int uiSize(const char* key)
{
    return KZ::CUiResource::getSize(QString::fromLatin1(key));
}

} // namespace

OfflineNotice::OfflineNotice(QWidget* parent)
    : CBaseWidget(parent), m_icon(new QLabel(this)),
      m_title(new KZ::CSimpleTextWidget(QString(), this)),
      m_explanation(new KZ::CSimpleTextWidget(
          QStringLiteral("下面是断开前的数据，可以照常查看；授权、取消授权、导入授权和子用户设置"
                         "要等连接恢复后才能进行。"),
          this))
{
    setObjectName(QStringLiteral("halden_client_offline_notice"));
    m_title->setTextFontKey(QStringLiteral("fnt_default_bold"));
    m_title->setTextColorKey(QStringLiteral("clr_danger"));
    const int padding = uiSize("gw_siz_kit_tip_padding");
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(padding + uiSize("gw_siz_kit_tip_stripe"), padding, padding,
                               padding);
    layout->setHorizontalSpacing(uiSize("gw_siz_kit_tip_gap"));
    layout->setVerticalSpacing(uiSize("gw_siz_kit_list_space") / 2);
    layout->addWidget(m_icon, 0, 0, Qt::AlignCenter);
    layout->addWidget(m_title, 0, 1, Qt::AlignLeft | Qt::AlignVCenter);
    layout->addWidget(m_explanation, 1, 1, Qt::AlignLeft | Qt::AlignVCenter);
    layout->setColumnStretch(1, 1);
    showIcon();
    hide();
}

void OfflineNotice::showSince(const QDateTime& when, const QString& refusal)
{
    if (isHidden())
        m_since = when;
    m_title->setText(QStringLiteral("离线：%1 起与服务器的连接断开，%2")
                         .arg(m_since.toString(QStringLiteral("HH:mm:ss")),
                              refusal.isEmpty() ? QStringLiteral("正在自动重新连接") : refusal));
    setAccessibleName(m_title->text());
    setAccessibleDescription(m_explanation->text());
    show();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void OfflineNotice::onUiResourceChanged()
{
    CBaseWidget::onUiResourceChanged();
    showIcon();
}

void OfflineNotice::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), KZ::CUiResource::getColor(QStringLiteral("clr_offline_ground")));
    painter.fillRect(0, 0, uiSize("gw_siz_kit_tip_stripe"), height(),
                     KZ::CUiResource::getColor(QStringLiteral("clr_danger")));
}

void OfflineNotice::showIcon()
{
    const int size = uiSize("gw_siz_kit_tip_icon");
    m_icon->setPixmap(KZ::CUiResource::getIcon(QStringLiteral("gw_img_kit_offline"))
                          .pixmap(QSize(size, size), devicePixelRatioF()));
}

} // namespace host
