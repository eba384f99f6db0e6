#include "kit/tips/MessageTip.h"

#include "kit/accessible/Announcer.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"
#include "kit/tips/TipBody.h"
#include "kit/tips/TipKeys.h"
#include "kit/tips/TipTurn.h"

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

namespace KZ {

namespace {

constexpr int KIND_HINT = 2;
constexpr int KIND_OUTCOME = 3;
constexpr int LOUD_LEVEL = 2;

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

} // namespace

void CMessageTip::showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                          int duration, quint64 topic)
{
    CTipTurn::Group& equal = CTipTurn::group(text, kind, topic);
    CMessageTip* const shown = openTips().contains(equal.tip) ? equal.tip.data() : nullptr;
    if (!shown)
        equal.calls.clear();
    const bool isElsewhere = shown && !shown->takes(anchor, topic);
    if (isElsewhere && (CTipPlace::isSeen(shown->m_anchor) || !CTipPlace::isSeen(anchor))) {
        shown->addEcho(text, kind, level, duration);
    } else {
        if (isElsewhere)
            shown->withdraw(text, kind, static_cast<int>(equal.calls.size()));
        equal.tip = tipFor(anchor, alignment, topic);
        equal.tip->add(text, kind, level, duration);
        if (isElsewhere) {
            for (const CTipTurn::Call& call : std::as_const(equal.calls))
                equal.tip->addEcho(text, kind, call.level, call.duration);
        }
    }
    equal.calls.append({level, duration});
}

void CMessageTip::showTip(QWidget* anchor, int alignment, const QString& text, int kind, int level,
                          int duration)
{
    showTip(anchor, alignment, text, kind, level, duration, 0);
}

CMessageTip* CMessageTip::tipFor(QWidget* anchor, int alignment, quint64 topic)
{
    for (CMessageTip* const tip : std::as_const(openTips())) {
        if (tip->takes(anchor, topic))
            return tip;
    }
    return new CMessageTip(CTipPlace::windowFor(anchor), anchor, alignment, topic);
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
CMessageTip::CMessageTip(QWidget* window, QWidget* anchor, int alignment, quint64 topic)
    : QFrame(window, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      m_window(window), m_anchor(anchor), m_anchored(anchor), m_alignment(alignment),
      m_topic(topic), m_body(new CTipBody(this)), m_count(new QLabel(this)),
      m_close(new QToolButton(this)), m_keys(new CTipKeys(window, this)),
      m_announcer(new CAnnouncer(this))
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
    m_body->setAccessibleName(QStringLiteral("提示内容"));
    m_close->setAccessibleName(QStringLiteral("关闭"));
    m_close->setToolTip(
        QStringLiteral("关闭（Esc）\nAlt+PageUp / Alt+PageDown 翻页，Ctrl+Shift+C 复制全部"));
    applyKitStyle(this);
    takeTheme();

    connect(m_close, &QToolButton::clicked, this, &CMessageTip::dismiss);
    connect(m_keys, &CTipKeys::dismissed, this, &CMessageTip::dismiss);
    connect(m_keys, &CTipKeys::copyRequested, this, &CMessageTip::copyTexts);
    connect(m_keys, &CTipKeys::scrolled, m_body, &CTipBody::scrollPages);
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

bool CMessageTip::takes(QWidget* anchor, quint64 topic) const
{
    if (m_topic != topic || m_anchored != (anchor != nullptr) || m_anchor != anchor)
        return false;
    // Within a burst nothing has moved, and finding the window for thousands of texts takes time.
    return m_refreshTimer.isActive() || m_window == CTipPlace::windowFor(anchor);
}

void CMessageTip::add(const QString& text, int kind, int level, int duration)
{
    m_texts.add(text, kind, duration);
    m_loud = m_loud || level >= LOUD_LEVEL;
    m_keys->setActive(isLasting());
    if (m_texts.shownCount() == 1)
        refresh();
    else
        m_refreshTimer.start();
}

void CMessageTip::addEcho(const QString& text, int kind, int level, int duration)
{
    m_texts.addEcho(text, kind, duration);
    const bool wasQuiet = !m_loud;
    m_loud = m_loud || level >= LOUD_LEVEL;
    m_keys->setActive(isLasting());
    if (wasQuiet && m_loud)
        m_refreshTimer.start();
    else
        runClock();
}

/// Takes back the latest `count` of the texts that equal `text`.
void CMessageTip::withdraw(const QString& text, int kind, int count)
{
    m_texts.withdraw(text, kind, count);
    m_keys->setActive(isLasting());
    if (m_texts.entryCount() == 0)
        dismiss();
    else
        m_refreshTimer.start();
}

QStringList CMessageTip::texts() const
{
    return m_texts.all();
}

bool CMessageTip::isLasting() const
{
    return m_texts.areLasting();
}

void CMessageTip::dismiss()
{
    if (!openTips().removeOne(this))
        return;
    m_keys->setActive(false);
    for (QObject* const watched : std::initializer_list<QObject*>{m_window, m_anchor}) {
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
    QGuiApplication::clipboard()->setText(m_texts.told().join(QLatin1Char('\n')));
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
            .arg(QLocale(QLocale::Chinese, QLocale::China).toString(m_texts.shownCount())));
    m_count->setVisible(isList);
    m_close->setVisible(isList || isLasting());
    setAccessibleName(m_texts.joined());
    m_announcer->setTexts(m_texts.told());
    arrange();
    updateAway(QGuiApplication::applicationState());
    // Not before the turn ends, because the text may still move to another anchor.
    if (m_loud)
        QMetaObject::invokeMethod(this, &CMessageTip::announce, Qt::QueuedConnection);
}

void CMessageTip::announce()
{
    if (!openTips().contains(this))
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
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
    const QColor kindColor = CUiResource::getColor(colorKey(kind()));
    QPainter painter(this);
    painter.setPen(kindColor);
    painter.setBrush(palette().window());
    painter.drawPolygon(m_place.outline());
    const QRect frame = m_place.box();
    painter.fillRect(frame.left(), frame.top(), registrySize("gw_siz_kit_tip_stripe"),
                     frame.height(), kindColor);
    CUiResource::getIcon(iconKey(kind()), colorKey(kind()))
        .paint(&painter, frame.left() + padding, m_iconTop, icon, icon);
}

void CMessageTip::runClock()
{
    if (isLasting() || m_hovered || m_away)
        m_closeTimer.stop();
    else
        m_closeTimer.start(m_texts.time());
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

} // namespace KZ
