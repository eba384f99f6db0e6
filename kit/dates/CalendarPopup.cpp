#include "kit/dates/CalendarPopup.h"

#include "kit/dates/MonthView.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace KZ {

namespace {

/// Where a window of `size` stands below `editor`, or above it when there is no room below.
QRect placeBeside(const QWidget* editor, const QSize& size)
{
    const QRect target(editor->mapToGlobal(QPoint()), editor->size());
    const QRect screen = editor->screen()->availableGeometry();
    QRect place(target.bottomLeft() + QPoint(0, 1), size);
    if (place.bottom() > screen.bottom() && target.top() - size.height() >= screen.top())
        place.moveBottom(target.top() - 1);
    place.moveLeft(std::clamp(place.left(), screen.left(),
                              std::max(screen.left(), screen.right() + 1 - place.width())));
    place.moveTop(std::clamp(place.top(), screen.top(),
                             std::max(screen.top(), screen.bottom() + 1 - place.height())));
    return place;
}

} // namespace

CCalendarPopup::CCalendarPopup(const QDate& shown, const QDate& first, const QDate& last,
                               const QDate& today, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_calendar(new CMonthView(this)), m_today(new QPushButton(this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("kz_calendar_popup"));
    setAccessibleName(QStringLiteral("日历"));

    m_calendar->setDateRange(first, last);
    m_calendar->setSelectedDate(std::clamp(shown, first, last));

    m_calendar->setToday(today);
    m_today->setText(QStringLiteral("今天 %1").arg(today.toString(Qt::ISODate)));
    m_today->setAutoDefault(false);
    m_today->setEnabled(first <= today && today <= last);

    auto* const column = new QVBoxLayout(this);
    const int margin = CUiResource::getSize(QStringLiteral("gw_siz_kit_calendar_margin"));
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(margin);
    column->addWidget(m_calendar);
    column->addWidget(m_today);
    applyKitStyle(this);
    takeTheme();
    setFocusProxy(m_calendar);

    connect(m_calendar, &QCalendarWidget::clicked, this, &CCalendarPopup::choose);
    connect(m_calendar, &QCalendarWidget::activated, this, &CCalendarPopup::choose);
    connect(m_today, &QPushButton::clicked, this, [this, today] { choose(today); });
}

CCalendarPopup::~CCalendarPopup() = default;

QCalendarWidget* CCalendarPopup::calendarWidget() const
{
    return m_calendar;
}

void CCalendarPopup::popUp(const QWidget* editor)
{
    setGeometry(placeBeside(editor, sizeHint()));
    show();
    m_calendar->setFocus(Qt::PopupFocusReason);
}

void CCalendarPopup::onUiResourceChanged()
{
    takeTheme();
}

void CCalendarPopup::takeTheme()
{
    QPalette palette = CUiResource::palette();
    palette.setColor(QPalette::Base, CUiResource::getColor(QStringLiteral("clr_menu")));
    setPalette(palette);
    setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
}

void CCalendarPopup::choose(const QDate& date)
{
    // One click makes QCalendarWidget report both a click and an activation.
    if (m_chosen || date < m_calendar->minimumDate() || date > m_calendar->maximumDate())
        return;
    m_chosen = true;
    close();
    Q_EMIT dateChosen(date);
}

void CCalendarPopup::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_F4)
        close();
    else
        QFrame::keyPressEvent(event);
}

void CCalendarPopup::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CUiResource::getColor(QStringLiteral("clr_menu")));
    painter.setPen(CUiResource::getColor(QStringLiteral("clr_border_control")));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace KZ
