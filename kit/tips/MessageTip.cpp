#include "kit/tips/MessageTip.h"

#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/tips/TipBody.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QToolButton>

#include <algorithm>
#include <initializer_list>
#include <limits>

namespace KZ {

namespace {

constexpr int KIND_HINT = 2;
constexpr int KIND_OUTCOME = 3;
constexpr int LOUD_LEVEL = 2;
constexpr int MILLISECONDS_PER_HUNDREDTH = 10;

QList<CMessageTip*>& openTips()
{
    static QList<CMessageTip*> tips;
    return tips;
}

/// Whether the program has ever had the focus: only then does its loss mean that the user left.
bool& hasBeenActive()
{
    static bool active = false;
    return active;
}

int registrySize(const char* key)
{
    return CUiResource::getSize(QLatin1String(key));
}

QString colorKey(int kind)
{
    if (kind == KIND_HINT)
        return QStringLiteral("clr_warning");
    return kind == KIND_OUTCOME ? QStringLiteral("clr_outcome") : QStringLiteral("clr_info");
}

QString iconKey(int kind)
{
    if (kind == KIND_HINT)
        return QStringLiteral("gw_img_kit_warning");
    return kind == KIND_OUTCOME ? QStringLiteral("gw_img_kit_outcome")
                                : QStringLiteral("gw_img_kit_info");
}

int addedTime(int time, int more)
{
    return more > std::numeric_limits<int>::max() - time ? std::numeric_limits<int>::max()
                                                         : time + more;
}

} // namespace

void CMessageTip::showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                          int duration)
{
    const auto found =
        std::find_if(openTips().begin(), openTips().end(),
                     [anchor](const CMessageTip* tip) { return tip->takes(anchor); });
    CMessageTip* const tip = found == openTips().end()
                                 ? new CMessageTip(CTipPlace::windowFor(anchor), anchor, alignment)
                                 : *found;
    tip->add(text, kind, level, duration);
}

QList<CMessageTip*> CMessageTip::visibleTips()
{
    return openTips();
}

void CMessageTip::closeAll()
{
    const QList<CMessageTip*> tips = openTips();
    for (CMessageTip* const tip : tips)
        tip->dismiss();
}

// A tool tip window never becomes the active one on any platform, and as a child of the anchor's
// window it still takes the mouse while that window is modal.
CMessageTip::CMessageTip(QWidget* window, QWidget* anchor, int alignment)
    : QFrame(window, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_window(window), m_anchor(anchor), m_anchored(anchor), m_alignment(alignment),
      m_body(new CTipBody(this)), m_count(new QLabel(this)), m_close(new QToolButton(this))
{
    openTips().append(this);
    setObjectName(QStringLiteral("kz_message_tip"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setFocusPolicy(Qt::NoFocus);

    m_count->setTextFormat(Qt::PlainText);
    m_close->setFocusPolicy(Qt::NoFocus);
    m_close->setAutoRaise(true);
    m_close->setAccessibleName(QStringLiteral("关闭"));
    m_close->setToolTip(
        QStringLiteral("关闭（Esc）\nAlt+PageUp / Alt+PageDown 翻页，Ctrl+Shift+C 复制全部"));
    applyKitStyle(this);
    takeTheme();

    connect(m_close, &QToolButton::clicked, this, &CMessageTip::dismiss);
    connect(m_body, &CTipBody::clicked, this, &CMessageTip::onTextClicked);
    connect(m_body, &CTipBody::copyRequested, this, &CMessageTip::copyTexts);
    for (QTimer* const timer : {&m_refreshTimer, &m_arrangeTimer, &m_closeTimer})
        timer->setSingleShot(true);
    // A coarse timer may run out a twentieth too early, and the texts are promised their time.
    m_closeTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_refreshTimer, &QTimer::timeout, this, &CMessageTip::refresh);
    connect(&m_arrangeTimer, &QTimer::timeout, this, &CMessageTip::arrange);
    connect(&m_closeTimer, &QTimer::timeout, this, &CMessageTip::onClockRunOut);
    connect(qApp, &QGuiApplication::applicationStateChanged, this, &CMessageTip::updateAway);

    if (window)
        window->installEventFilter(this);
    if (anchor && anchor != window)
        anchor->installEventFilter(this);
}

CMessageTip::~CMessageTip()
{
    openTips().removeOne(this);
}

bool CMessageTip::takes(QWidget* anchor) const
{
    if (m_anchored != (anchor != nullptr) || m_anchor != anchor)
        return false;
    // Within a burst nothing has moved, and finding the window for thousands of texts takes time.
    return m_refreshTimer.isActive() || m_window == CTipPlace::windowFor(anchor);
}

void CMessageTip::add(const QString& text, int kind, int level, int duration)
{
    m_texts.add(text, kind);
    m_kind = kind;
    m_loud = m_loud || level >= LOUD_LEVEL;
    m_untimed = m_untimed || duration <= 0;
    const int time = std::min(std::max(duration, 0),
                              std::numeric_limits<int>::max() / MILLISECONDS_PER_HUNDREDTH) *
                     MILLISECONDS_PER_HUNDREDTH;
    m_longest = std::max(m_longest, time);
    m_total = addedTime(m_total, time);
    const bool lasting = m_untimed || (m_texts.entryCount() > 1 && !m_texts.areHintsOnly());
    if (lasting && !m_lasting)
        qApp->installEventFilter(this);
    m_lasting = lasting;
    if (m_texts.all().size() == 1)
        refresh();
    else
        m_refreshTimer.start();
}

QStringList CMessageTip::texts() const
{
    return m_texts.all();
}

void CMessageTip::dismiss()
{
    if (!openTips().removeOne(this))
        return;
    for (QObject* const watched : std::initializer_list<QObject*>{qApp, m_window, m_anchor}) {
        if (watched)
            watched->removeEventFilter(this);
    }
    for (QTimer* const timer : {&m_refreshTimer, &m_arrangeTimer, &m_closeTimer})
        timer->stop();
    hide();
    deleteLater();
}

void CMessageTip::copyTexts() const
{
    QGuiApplication::clipboard()->setText(m_texts.all().join(QLatin1Char('\n')));
}

void CMessageTip::onUiResourceChanged()
{
    takeTheme();
    arrange();
    update();
}

void CMessageTip::takeTheme()
{
    QPalette palette = CUiResource::palette();
    const QColor ground = CUiResource::getColor(QStringLiteral("clr_menu"));
    const QColor text = CUiResource::getColor(QStringLiteral("clr_text"));
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base})
        palette.setColor(role, ground);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text})
        palette.setColor(role, text);
    setPalette(palette);
    setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    m_count->setFont(CUiResource::getFont(QStringLiteral("fnt_default_bold")));
    m_close->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_close")));
}

/// Shows all texts that have come since the last call.
void CMessageTip::refresh()
{
    m_body->showTexts(m_texts);
    const bool isList = m_texts.entryCount() > 1;
    m_count->setText(
        QStringLiteral("共 %1 条")
            .arg(QLocale(QLocale::Chinese, QLocale::China).toString(m_texts.all().size())));
    m_count->setVisible(isList);
    m_close->setVisible(isList || m_lasting);
    const QString name = m_texts.joined();
    setAccessibleName(name);
    m_body->setAccessibleName(name);
    arrange();
    updateAway(QGuiApplication::applicationState());
    if (m_loud) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void CMessageTip::arrange()
{
    const int padding = registrySize("gw_siz_kit_tip_padding");
    const int gap = registrySize("gw_siz_kit_tip_gap");
    const int icon = registrySize("gw_siz_kit_tip_icon");
    const int bodyLeft = padding + icon + gap;
    // A list has a line of its own for its count and the close button; a single text shares the
    // line with the button.
    const bool isList = !m_count->isHidden();
    const QSize close = m_close->isHidden() ? QSize(0, 0) : m_close->sizeHint();
    const QSize count = isList ? m_count->sizeHint() : QSize(0, 0);
    const int closeRoom = close.isEmpty() ? 0 : gap + close.width();
    m_body->resizeWithin(registrySize("gw_siz_kit_tip_width") - bodyLeft - padding -
                             (isList ? 0 : closeRoom),
                         registrySize("gw_siz_kit_tip_list_height"));
    const QSize body = m_body->size();
    const int width =
        isList ? std::max(body.width(), count.width() + closeRoom) : body.width() + closeRoom;
    const int line = std::max(icon, isList ? count.height() : m_body->fontMetrics().height());
    const int bodyTop = isList ? line + gap / 2 : (line - m_body->fontMetrics().height()) / 2;
    const QSize content(bodyLeft + width + padding,
                        2 * padding + std::max(line, bodyTop + body.height()));

    QList<QRect> taken;
    bool isLater = false;
    for (CMessageTip* const tip : std::as_const(openTips())) {
        // Later tips give way to this one, never the other way round.
        if (tip == this)
            isLater = true;
        else if (isLater)
            tip->m_arrangeTimer.start();
        else if (tip->isVisible())
            taken.append(tip->geometry());
    }
    // The tip stays where it is when its anchor has gone, so that it does not jump while read.
    const bool isLost = m_anchored && !m_anchor;
    const QPoint position = pos();
    m_place.find(m_anchor, m_window, m_alignment, content, taken);
    setGeometry(isLost ? QRect(position, m_place.geometry().size()) : m_place.geometry());

    const QRect inner = m_place.box().adjusted(padding, padding, -padding, -padding);
    m_iconTop = inner.top() + (line - icon) / 2;
    m_body->move(inner.left() + icon + gap, inner.top() + bodyTop);
    m_count->setGeometry(
        QRect(QPoint(inner.left() + icon + gap, inner.top()), QSize(count.width(), line)));
    m_close->setGeometry(QRect(QPoint(inner.right() + 1 - close.width() + padding / 2,
                                      inner.top() + (line - close.height()) / 2),
                               close));
    setMask(m_place.shape());
    update();
}

void CMessageTip::paintEvent(QPaintEvent*)
{
    const int padding = registrySize("gw_siz_kit_tip_padding");
    const int icon = registrySize("gw_siz_kit_tip_icon");
    const QColor kindColor = CUiResource::getColor(colorKey(m_kind));
    QPainter painter(this);
    painter.setPen(kindColor);
    painter.setBrush(palette().window());
    painter.drawPolygon(m_place.outline());
    const QRect frame = m_place.box();
    painter.fillRect(frame.left(), frame.top(), registrySize("gw_siz_kit_tip_stripe"),
                     frame.height(), kindColor);
    CUiResource::getIcon(iconKey(m_kind), colorKey(m_kind))
        .paint(&painter, frame.left() + padding, m_iconTop, icon, icon);
}

void CMessageTip::runClock()
{
    if (m_lasting || m_hovered || m_away)
        m_closeTimer.stop();
    else
        m_closeTimer.start(m_texts.entryCount() > 1 ? m_total : m_longest);
}

void CMessageTip::onClockRunOut()
{
    const QWidget* const popup = QApplication::activePopupWidget();
    if (popup && isAncestorOf(popup))
        runClock();
    else
        dismiss();
}

/// Tool tip windows lie above every program's windows, so they have to leave with the user.
void CMessageTip::updateAway(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationActive)
        hasBeenActive() = true;
    const bool hasLeft = hasBeenActive() && state != Qt::ApplicationActive;
    m_away = m_window && (hasLeft || m_window->isMinimized());
    setVisible(!m_away);
    runClock();
}

void CMessageTip::onTextClicked()
{
    if (m_texts.entryCount() == 1)
        dismiss();
}

bool CMessageTip::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        m_hovered = true;
        runClock();
        break;
    case QEvent::Leave:
        m_hovered = false;
        runClock();
        break;
    case QEvent::MouseButtonRelease:
        onTextClicked();
        return true;
    case QEvent::Close:
        dismiss();
        break;
    default:
        break;
    }
    return QFrame::event(event);
}

bool CMessageTip::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        return m_lasting && handleWindowKey(event, watched);
    case QEvent::Hide:
        // A minimised window hides spontaneously and will be back.
        if (watched == m_window && !event->spontaneous()) {
            dismiss();
            break;
        }
        [[fallthrough]];
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
        if (watched == m_window || watched == m_anchor)
            m_arrangeTimer.start();
        break;
    case QEvent::WindowStateChange:
        if (watched == m_window)
            updateAway(QGuiApplication::applicationState());
        break;
    default:
        break;
    }
    return false;
}

/// The keys of a lasting list, taken from whatever has the focus in the tip's window.
bool CMessageTip::handleWindowKey(QEvent* event, QObject* receiver)
{
    const auto* const widget = qobject_cast<QWidget*>(receiver);
    if (!widget || (m_window && widget->window() != m_window))
        return false;
    const QKeyCombination pressed = static_cast<QKeyEvent*>(event)->keyCombination();
    const bool isEscape = pressed == QKeyCombination(Qt::Key_Escape);
    const bool isUp = pressed == (Qt::AltModifier | Qt::Key_PageUp);
    const bool isDown = pressed == (Qt::AltModifier | Qt::Key_PageDown);
    const bool isCopy = pressed == (Qt::ControlModifier | Qt::ShiftModifier | Qt::Key_C);
    if (!isEscape && !isUp && !isDown && !isCopy)
        return false;
    event->accept();
    if (event->type() == QEvent::ShortcutOverride)
        return true;
    if (isEscape)
        dismiss();
    else if (isCopy)
        copyTexts();
    else
        m_body->scrollPages(isUp ? -1 : 1);
    return true;
}

} // namespace KZ
