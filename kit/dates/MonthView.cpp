#include "kit/dates/MonthView.h"

#include "kit/resources/UiResource.h"

#include <QBoxLayout>
#include <QPainter>
#include <QTextCharFormat>
#include <QToolButton>

namespace KZ {

namespace {

constexpr QLatin1String previousMonthName("qt_calendar_prevmonth");
constexpr QLatin1String nextMonthName("qt_calendar_nextmonth");
constexpr QLatin1String monthName("qt_calendar_monthbutton");
constexpr QLatin1String yearName("qt_calendar_yearbutton");
constexpr QLatin1String headerName("qt_calendar_navigationbar");

bool isWeekend(const QDate& date)
{
    return date.dayOfWeek() >= Qt::Saturday;
}

QColor color(const char* key)
{
    return CUiResource::getColor(QLatin1String(key));
}

} // namespace

CMonthView::CMonthView(QWidget* parent) : QCalendarWidget(parent)
{
    setLocale(QLocale(QLocale::Chinese, QLocale::China));
    setFirstDayOfWeek(Qt::Monday);
    setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
    // Typing belongs to the editor; here it would open a second, unlabelled one.
    setDateEditEnabled(false);
    setAccessibleName(QStringLiteral("日历"));
    arrangeHeader();
    takeTheme();
}

CMonthView::~CMonthView() = default;

void CMonthView::setToday(const QDate& today)
{
    m_today = today;
    updateCells();
}

/// Names the buttons of the header and puts the year before the month, as Chinese dates have it.
void CMonthView::arrangeHeader()
{
    const std::pair<QLatin1String, QString> names[] = {
        {previousMonthName, QStringLiteral("上个月（PageUp）")},
        {nextMonthName, QStringLiteral("下个月（PageDown）")},
        {monthName, QStringLiteral("选择月份")},
        {yearName, QStringLiteral("选择年份")}};
    for (const auto& [name, text] : names) {
        if (auto* const button = findChild<QToolButton*>(name)) {
            button->setAccessibleName(text);
            button->setToolTip(text);
        }
    }
    auto* const month = findChild<QToolButton*>(monthName);
    auto* const year = findChild<QToolButton*>(yearName);
    auto* const row = month ? qobject_cast<QBoxLayout*>(month->parentWidget()->layout()) : nullptr;
    if (!row || !year)
        return;
    row->removeWidget(year);
    row->insertWidget(row->indexOf(month), year);
}

void CMonthView::onUiResourceChanged()
{
    takeTheme();
}

void CMonthView::takeTheme()
{
    QTextCharFormat weekDay;
    weekDay.setForeground(color("clr_text_quiet"));
    QTextCharFormat weekend;
    weekend.setForeground(color("clr_calendar_weekend"));
    setHeaderTextFormat(weekDay);
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day)
        setWeekdayTextFormat(static_cast<Qt::DayOfWeek>(day),
                             day >= Qt::Saturday ? weekend : weekDay);
    // The base draws the header as if it were selected.
    if (auto* const header = findChild<QWidget*>(headerName)) {
        QPalette palette = header->palette();
        palette.setColor(QPalette::Highlight, color("clr_menu"));
        for (const QPalette::ColorRole role : {QPalette::HighlightedText, QPalette::ButtonText})
            palette.setColor(role, color("clr_text"));
        header->setPalette(palette);
    }
    if (auto* const button = findChild<QToolButton*>(previousMonthName))
        button->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_chevron_left")));
    if (auto* const button = findChild<QToolButton*>(nextMonthName))
        button->setIcon(CUiResource::getIcon(QStringLiteral("gw_img_kit_chevron_right")));
    // The arrow of its menu stands beside the name, not on it.
    if (auto* const button = findChild<QToolButton*>(monthName))
        button->setMinimumWidth(
            button->fontMetrics().horizontalAdvance(QStringLiteral("十二月")) +
            4 * CUiResource::getSize(QStringLiteral("gw_siz_kit_calendar_margin")) +
            2 * CUiResource::getSize(QStringLiteral("gw_siz_kit_icon")));
    updateCells();
}

void CMonthView::paintCell(QPainter* painter, const QRect& rect, QDate date) const
{
    const bool isInRange = minimumDate() <= date && date <= maximumDate();
    const bool isSelected = date == selectedDate();
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const qreal radius = CUiResource::getSize(QStringLiteral("gw_siz_kit_corner_radius"));
    const QRectF day = QRectF(rect).adjusted(1.5, 1.5, -1.5, -1.5);
    painter->fillRect(rect, color("clr_menu"));
    if (isSelected) {
        painter->setPen(color("clr_accent_text"));
        painter->setBrush(color("clr_accent"));
        painter->drawRoundedRect(day, radius, radius);
    }
    if (date == m_today) {
        painter->setPen(color(isSelected ? "clr_text_on_accent" : "clr_accent_text"));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(isSelected ? day.adjusted(2, 2, -2, -2) : day, radius, radius);
    }
    const char* text = "clr_text";
    if (isSelected)
        text = "clr_text_on_accent";
    else if (!isInRange)
        text = "clr_icon_disabled";
    else if (date.month() != monthShown())
        text = "clr_text_disabled";
    else if (isWeekend(date))
        text = "clr_calendar_weekend";
    QFont font = painter->font();
    font.setBold(date == m_today);
    font.setStrikeOut(!isInRange);
    painter->setFont(font);
    painter->setPen(color(text));
    painter->drawText(rect, Qt::AlignCenter, QString::number(date.day()));
    painter->restore();
}

} // namespace KZ
