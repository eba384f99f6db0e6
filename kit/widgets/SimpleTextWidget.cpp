#include "kit/widgets/SimpleTextWidget.h"

#include "kit/accessible/AccessibleName.h"
#include "kit/resources/UiResource.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <QtMath>

#include <algorithm>

namespace KZ {

CSimpleTextWidget::CSimpleTextWidget(const QString& text, QWidget* parent) : CBaseWidget(parent)
{
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setText(text);
}

void CSimpleTextWidget::setText(const QString& text, int maxWidth)
{
    m_text = text;
    m_maxWidth = std::max(0, maxWidth);
    setAccessibleName(text);
    setAccessibleTarget(m_target);
    takeTextSize();
    update();
}

void CSimpleTextWidget::setTextColorKey(const QString& key)
{
    m_colorKey = key;
    update();
}

void CSimpleTextWidget::setTextFontKey(const QString& key)
{
    m_fontKey = key;
    if (!key.isEmpty())
        setFont(CUiResource::getFont(key));
    takeTextSize();
}

void CSimpleTextWidget::setAccessibleTarget(QWidget* target)
{
    m_target = target;
    if (!target)
        return;
    setEditorName(target, spokenName(m_text).remove(u' '));
}

QString CSimpleTextWidget::shownText() const
{
    return fontMetrics().elidedText(m_text, Qt::ElideRight, width());
}

QSize CSimpleTextWidget::sizeHint() const
{
    // Rounded up: a width that falls short by a fraction of a pixel costs two characters.
    const QFontMetricsF metrics(font(), this);
    const int width = qCeil(metrics.horizontalAdvance(m_text));
    return {std::min(width, m_maxWidth), qCeil(metrics.height())};
}

QSize CSimpleTextWidget::minimumSizeHint() const
{
    const QSize hint = sizeHint();
    return {std::min(hint.width(), 2 * hint.height()), hint.height()};
}

void CSimpleTextWidget::onUiResourceChanged()
{
    if (!m_fontKey.isEmpty())
        setFont(CUiResource::getFont(m_fontKey));
    CBaseWidget::onUiResourceChanged();
}

void CSimpleTextWidget::takeTextSize()
{
    resize(CSimpleTextWidget::sizeHint());
    // A layout is to ask for the hint again each time the text changes.
    setAttribute(Qt::WA_Resized, false);
    updateGeometry();
}

void CSimpleTextWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        takeTextSize();
    CBaseWidget::changeEvent(event);
}

bool CSimpleTextWidget::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        if (shownText() == m_text) {
            event->ignore();
        } else {
            // Escaped, because a tool tip takes what looks like markup for markup.
            QToolTip::showText(
                static_cast<QHelpEvent*>(event)->globalPos(),
                QStringLiteral("<qt>") + m_text.toHtmlEscaped() + QStringLiteral("</qt>"), this);
        }
        return true;
    }
    return CBaseWidget::event(event);
}

void CSimpleTextWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!isEnabled())
        painter.setPen(CUiResource::getColor(QStringLiteral("clr_text_disabled")));
    else if (m_colorKey.isEmpty())
        painter.setPen(palette().color(QPalette::WindowText));
    else
        painter.setPen(CUiResource::getColor(m_colorKey));
    painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shownText());
}

} // namespace KZ
