#include "kit/dialogs/BaseDialog.h"

#include "kit/dialogs/CloseGlyph.h"
#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/StylePainter.h"
#include "kit/resources/UiResource.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

namespace KZ {

CBaseDialog::CBaseDialog(QWidget* parent)
    : CEventWidgetT<QDialog>(parent, Qt::Dialog | Qt::FramelessWindowHint),
      m_closeGlyph(new CCloseGlyph(ID_BUTTON_CLOSE, this))
{
    setStyle(kitStyle());
    takeTheme();
    setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
}

CBaseDialog::~CBaseDialog() = default;

void CBaseDialog::setTitle(const QString& title)
{
    setWindowTitle(title);
    update(titleBarRect());
}

int CBaseDialog::titleBarHeight() const
{
    return CUiResource::getSize(QStringLiteral("gw_siz_kit_title_bar_height"));
}

int CBaseDialog::borderWidth() const
{
    return CUiResource::getSize(QStringLiteral("gw_siz_kit_border_width"));
}

QRect CBaseDialog::innerRect() const
{
    const int border = borderWidth();
    return rect().adjusted(border, border + titleBarHeight(), -border, -border);
}

bool CBaseDialog::handleEvent(int eventId, int param1, int param2, QString text, void* data)
{
    if (eventId == EVENT_BUTTON_CLICKED && param1 == ID_BUTTON_CLOSE) {
        close();
        return true;
    }
    return CEventWidgetT<QDialog>::handleEvent(eventId, param1, param2, text, data);
}

void CBaseDialog::onUiResourceChanged()
{
    takeTheme();
    update();
}

void CBaseDialog::takeTheme()
{
    setPalette(CUiResource::palette());
}

QRect CBaseDialog::titleBarRect() const
{
    const int border = borderWidth();
    return {border, border, width() - 2 * border, titleBarHeight()};
}

bool CBaseDialog::event(QEvent* event)
{
    applyKitStyleToPolishedChild(event);
    if (event->type() == QEvent::WindowActivate)
        QMetaObject::invokeMethod(this, &CBaseDialog::syncPosition, Qt::QueuedConnection);
    if (event->type() == QEvent::WindowTitleChange || event->type() == QEvent::WindowIconChange)
        update(titleBarRect());
    return CEventWidgetT<QDialog>::event(event);
}

void CBaseDialog::syncPosition()
{
    // On X11 the first answer of a window manager can leave Qt's window at the corner of the screen
    // while widget and window stand elsewhere; menus would open and drags begin at the wrong place.
    if (windowHandle() && windowHandle()->position() != pos())
        windowHandle()->setPosition(pos());
}

void CBaseDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel)) {
        close();
        return;
    }
    // The base would press the default button, and in an editor Enter only finishes the text.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        return;
    CEventWidgetT<QDialog>::keyPressEvent(event);
}

void CBaseDialog::mousePressEvent(QMouseEvent* event)
{
    const QPoint place = event->position().toPoint();
    if (event->button() != Qt::LeftButton || !titleBarRect().contains(place)) {
        CEventWidgetT<QDialog>::mousePressEvent(event);
        return;
    }
    syncPosition();
    // The window manager moves best; where there is none the dialog moves itself.
    if (windowHandle() && windowHandle()->startSystemMove())
        return;
    m_dragging = true;
    m_dragOffset = place;
}

void CBaseDialog::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        move(event->globalPosition().toPoint() - m_dragOffset);
    else
        CEventWidgetT<QDialog>::mouseMoveEvent(event);
}

void CBaseDialog::mouseReleaseEvent(QMouseEvent* event)
{
    m_dragging = false;
    CEventWidgetT<QDialog>::mouseReleaseEvent(event);
}

void CBaseDialog::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    CStylePainter::fill(&painter, rect(), QStringLiteral("clr_frame"));
    CStylePainter::fill(&painter, innerRect(), QStringLiteral("clr_window"));
    const QRect bar = titleBarRect();
    CStylePainter::fill(&painter, bar, QStringLiteral("clr_title_bar"));

    const int margin = CUiResource::getSize(QStringLiteral("gw_siz_kit_title_bar_margin"));
    QRect text = bar.adjusted(margin, 0, -m_closeGlyph->width() - margin, 0);
    if (testAttribute(Qt::WA_SetWindowIcon) && !windowIcon().isNull()) {
        const int side = CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
        windowIcon().paint(&painter, QRect(text.left(), text.top(), side, text.height()));
        text.setLeft(text.left() + side + margin / 2);
    }
    painter.setFont(CUiResource::getFont(QStringLiteral("fnt_title")));
    painter.setPen(CUiResource::getColor(QStringLiteral("clr_title_text")));
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(windowTitle(), Qt::ElideRight, text.width()));
}

void CBaseDialog::resizeEvent(QResizeEvent* event)
{
    CEventWidgetT<QDialog>::resizeEvent(event);
    const QRect bar = titleBarRect();
    const int side = bar.height() + bar.height() / 4;
    m_closeGlyph->setGeometry(bar.right() + 1 - side, bar.top(), side, bar.height());
}

void CBaseDialog::showEvent(QShowEvent* event)
{
    m_dragging = false;
    CEventWidgetT<QDialog>::showEvent(event);
}

} // namespace KZ
