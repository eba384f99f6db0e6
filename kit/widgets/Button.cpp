#include "kit/widgets/Button.h"

#include "kit/events/EventIds.h"
#include "kit/events/KeyRepeat.h"
#include "kit/resources/ControlPainter.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"

#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QShortcutEvent>
#include <QStyleOptionButton>

#include <algorithm>

namespace KZ {

CButton::CButton(int id, int command, QWidget* parent)
    : CEventWidgetT<QPushButton>(parent), m_id(id), m_command(command)
{
    setStyle(kitStyle());
    setAutoDefault(false);
    setDefault(false);
    CKeyRepeat::watch();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QPushButton::clicked, this, [this] {
        deliverEvent(EVENT_BUTTON_CLICKED, m_id, m_command, QString(), static_cast<QWidget*>(this));
    });
}

CButton::CButton(int id, QWidget* parent) : CButton(id, 0, parent) {}

CButton::~CButton() = default;

void CButton::setIcon(const QString& iconKey, int state, int gap)
{
    (state == 1 ? m_checkedIconKey : m_iconKey) = iconKey;
    m_iconGap = gap;
    updateGeometry();
    update();
}

void CButton::clearIcon()
{
    m_iconKey.clear();
    m_checkedIconKey.clear();
    updateGeometry();
    update();
}

void CButton::setTextFontKey(const QString& key)
{
    m_fontKey = key;
    setFont(CUiResource::getFont(key));
    updateGeometry();
}

QSize CButton::sizeHint() const
{
    ensurePolished();
    int content = fontMetrics().horizontalAdvance(text());
    if (!m_iconKey.isEmpty())
        content += CUiResource::getSize(QStringLiteral("gw_siz_kit_icon")) +
                   (text().isEmpty() ? 0 : m_iconGap);
    const int height = std::max(CUiResource::getSize(heightKey()), fontMetrics().height());
    return {content + 2 * CUiResource::getSize(paddingKey()), height};
}

QSize CButton::minimumSizeHint() const
{
    return sizeHint();
}

void CButton::onUiResourceChanged()
{
    if (!m_fontKey.isEmpty())
        setFont(CUiResource::getFont(m_fontKey));
    update();
}

CButton::Look CButton::look() const
{
    return Look::Normal;
}

QString CButton::heightKey() const
{
    return QStringLiteral("gw_siz_kit_button_height");
}

QString CButton::paddingKey() const
{
    return QStringLiteral("gw_siz_kit_button_padding");
}

void CButton::takeHintSize()
{
    resize(sizeHint());
    // The hint is not a size that anybody chose: a layout may still ask for another one.
    setAttribute(Qt::WA_Resized, false);
}

bool CButton::event(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange)
        updateGeometry();
    if (event->type() == QEvent::Shortcut) {
        const auto* const pressed = static_cast<QShortcutEvent*>(event);
        if (!pressed->isAmbiguous() && pressed->key() == shortcut()) {
            clickByShortcut();
            return true;
        }
    }
    return CEventWidgetT<QPushButton>::event(event);
}

void CButton::clickByShortcut()
{
    if (CKeyRepeat::isUnderWay() || !isEnabled() || !isVisible())
        return;
    if (isCheckable() && focusPolicy() != Qt::NoFocus)
        setFocus(Qt::ShortcutFocusReason);
    click();
}

void CButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!event->isAutoRepeat())
            click();
        return;
    }
    CEventWidgetT<QPushButton>::keyPressEvent(event);
}

void CButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const Look kind = look();
    if (kind == Look::Flat)
        CControlPainter::drawFlatButton(option, &painter);
    else
        CControlPainter::drawButton(option, &painter, kind == Look::Primary);

    const QString icon = shownIconKey();
    const int iconSide =
        icon.isEmpty() ? 0 : CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
    const int gap = iconSide > 0 && !text().isEmpty() ? m_iconGap : 0;
    const int room = std::max(0, width() - 4 - iconSide - gap);
    QString shown = text();
    int textWidth = fontMetrics().horizontalAdvance(shown);
    if (textWidth > room) {
        shown = fontMetrics().elidedText(shown, Qt::ElideRight, room);
        textWidth = fontMetrics().horizontalAdvance(shown);
    }
    const QRect content = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter,
                                              QSize(iconSide + gap + textWidth, height()), rect());
    if (iconSide > 0) {
        const QRect place(content.left(), 0, iconSide, height());
        CStylePainter::icon(
            &painter, QStyle::visualRect(layoutDirection(), content, place), icon,
            kind == Look::Primary ? QStringLiteral("clr_text_on_accent") : QString(), isEnabled());
    }
    if (!shown.isEmpty()) {
        const QRect place = content.adjusted(iconSide + gap, 0, 1, 0);
        painter.setPen(CUiResource::getColor(contentColorKey()));
        painter.drawText(QStyle::visualRect(layoutDirection(), content, place),
                         Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
    }
    if (hasFocus() && (option.state & QStyle::State_KeyboardFocusChange)) {
        // On the accent colour the ring stands off the edge, or nobody would see it.
        if (kind == Look::Primary)
            CStylePainter::panel(&painter, rect().adjusted(2, 2, -2, -2), QString(),
                                 QStringLiteral("clr_text_on_accent"));
        else
            CStylePainter::focusRing(&painter, rect());
    }
}

QString CButton::shownIconKey() const
{
    return isChecked() && !m_checkedIconKey.isEmpty() ? m_checkedIconKey : m_iconKey;
}

QString CButton::contentColorKey() const
{
    if (!isEnabled())
        return QStringLiteral("clr_text_disabled");
    return look() == Look::Primary ? QStringLiteral("clr_text_on_accent")
                                   : QStringLiteral("clr_text");
}

} // namespace KZ
