#include "kit/dates/SoftCalendarLineEdit.h"

#include "kit/dates/CalendarPopup.h"
#include "kit/dates/DateConversions.h"
#include "kit/events/EventIds.h"
#include "kit/resources/KitStyle.h"
#include "kit/resources/UiResource.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyleOptionComboBox>

#include <algorithm>
#include <utility>

namespace KZ {

namespace {

/// Grants carry signed 32-bit seconds, which begin on 1901-12-13; this is the first whole day.
constexpr QDate EARLIEST_SHOWN_DATE = QDate::fromJulianDay(2415733);
constexpr QDate EARLIEST_ENTERED_DATE = QDate::fromJulianDay(2440588);

QString formatText()
{
    return QStringLiteral("yyyy-MM-dd");
}

bool opensCalendar(const QKeyEvent* event)
{
    const QKeyCombination pressed = event->keyCombination();
    return pressed == QKeyCombination(Qt::Key_F4) || pressed == (Qt::AltModifier | Qt::Key_Down);
}

} // namespace

CSoftCalendarLineEdit::CSoftCalendarLineEdit(int id, QWidget* parent)
    : CEventWidgetT<QDateEdit>(parent), m_id(id), m_minimum(EARLIEST_ENTERED_DATE)
{
    applyKitStyle(this);
    // Only the day counts; in local time a day without midnight would be moved.
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
    setTimeZone(QTimeZone(QTimeZone::UTC));
#else
    setTimeSpec(Qt::UTC);
#endif
    setLocale(QLocale(QLocale::Chinese, QLocale::China));
    setDisplayFormat(formatText());
    setDateRange(EARLIEST_SHOWN_DATE, LAST_GRANTABLE_DATE);
    setCalendarPopup(true);
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    QDateEdit::setDate(exchangeToday());
    m_reported = date();
    describeRange();
    // Whoever keeps a new editor's height gets the usual one; a layout may still change it.
    resize(CSoftCalendarLineEdit::sizeHint());
    setAttribute(Qt::WA_Resized, false);
    connect(this, &QDateEdit::dateChanged, this, &CSoftCalendarLineEdit::onDateChanged);
}

CSoftCalendarLineEdit::~CSoftCalendarLineEdit() = default;

int CSoftCalendarLineEdit::id() const
{
    return m_id;
}

QDate CSoftCalendarLineEdit::date() const
{
    return QDateEdit::date();
}

void CSoftCalendarLineEdit::setDate(const QDate& date)
{
    if (!date.isValid())
        return;
    const QScopedValueRollback<bool> quiet(m_quiet, true);
    QDateEdit::setDate(std::clamp(date, EARLIEST_SHOWN_DATE, LAST_GRANTABLE_DATE));
    m_reported = QDateEdit::date();
}

QDateTime CSoftCalendarLineEdit::dateTime() const
{
    return exchangeDayStart(date());
}

void CSoftCalendarLineEdit::setDateTime(const QDateTime& dateTime)
{
    setDate(dateTime.date());
}

void CSoftCalendarLineEdit::setMinimumDate(const QDate& date)
{
    if (!date.isValid())
        return;
    m_minimum = std::clamp(date, EARLIEST_SHOWN_DATE, LAST_GRANTABLE_DATE);
    describeRange();
}

QDate CSoftCalendarLineEdit::minimumDate() const
{
    return m_minimum;
}

void CSoftCalendarLineEdit::describeRange()
{
    setToolTip(
        QStringLiteral("可选 %1 至 %2，F4 打开日历")
            .arg(m_minimum.toString(Qt::ISODate), LAST_GRANTABLE_DATE.toString(Qt::ISODate)));
    setAccessibleDescription(toolTip());
}

void CSoftCalendarLineEdit::setTodaySource(std::function<QDate()> source)
{
    m_todaySource = std::move(source);
}

QDate CSoftCalendarLineEdit::today() const
{
    const QDate told = m_todaySource ? m_todaySource() : QDate();
    return told.isValid() ? told : exchangeToday();
}

void CSoftCalendarLineEdit::showCalendar()
{
    if (m_calendar || !isEnabled() || isReadOnly() || !isVisible())
        return;
    m_calendar = new CCalendarPopup(date(), m_minimum, LAST_GRANTABLE_DATE, today(), this);
    connect(m_calendar, &CCalendarPopup::dateChosen, this, &CSoftCalendarLineEdit::chooseDate);
    m_calendar->popUp(this);
}

CCalendarPopup* CSoftCalendarLineEdit::calendar() const
{
    return m_calendar;
}

void CSoftCalendarLineEdit::chooseDate(const QDate& date)
{
    QDateEdit::setDate(date);
    // Choosing the date that is shown takes back what was being typed over it.
    lineEdit()->setText(textFromDateTime(QDateEdit::dateTime()));
}

QSize CSoftCalendarLineEdit::sizeHint() const
{
    const QSize least = CSoftCalendarLineEdit::minimumSizeHint();
    return least.expandedTo(
        QSize(CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_width")), 0));
}

QSize CSoftCalendarLineEdit::minimumSizeHint() const
{
    const int height = std::max(CUiResource::getSize(QStringLiteral("gw_siz_kit_editor_height")),
                                fontMetrics().height());
    return QSize(QDateEdit::minimumSizeHint().width(), height);
}

void CSoftCalendarLineEdit::stepBy(int steps)
{
    {
        const QScopedValueRollback<bool> quiet(m_quiet, true);
        QDateEdit::stepBy(steps);
        if (date() < m_minimum)
            QDateEdit::setDate(steps > 0 || m_reported > m_minimum ? m_minimum : m_reported);
    }
    onDateChanged();
}

QAbstractSpinBox::StepEnabled CSoftCalendarLineEdit::stepEnabled() const
{
    StepEnabled enabled = QDateEdit::stepEnabled();
    if (date() <= m_minimum)
        enabled.setFlag(StepDownEnabled, false);
    return enabled;
}

QValidator::State CSoftCalendarLineEdit::validate(QString& input, int& position) const
{
    const QValidator::State state = QDateEdit::validate(input, position);
    if (state != QValidator::Acceptable)
        return state;
    const QDate typed = QDate::fromString(input, formatText());
    return typed < m_minimum && typed != m_reported ? QValidator::Intermediate : state;
}

/// Delivers the change unless the program made it.
void CSoftCalendarLineEdit::onDateChanged()
{
    if (m_quiet || date() == m_reported)
        return;
    m_reported = date();
    deliverEvent(EVENT_DATE_CHANGED, m_id, 0, m_reported.toString(formatText()),
                 static_cast<QWidget*>(this));
}

bool CSoftCalendarLineEdit::focusNextPrevChild(bool next)
{
    return QWidget::focusNextPrevChild(next);
}

bool CSoftCalendarLineEdit::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride &&
        opensCalendar(static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return CEventWidgetT<QDateEdit>::event(event);
}

void CSoftCalendarLineEdit::keyPressEvent(QKeyEvent* event)
{
    const QString shown = textFromDateTime(QDateEdit::dateTime());
    if (opensCalendar(event)) {
        showCalendar();
        event->accept();
    } else if (event->key() == Qt::Key_Escape && lineEdit()->text() != shown) {
        lineEdit()->setText(shown);
        event->accept();
    } else {
        CEventWidgetT<QDateEdit>::keyPressEvent(event);
    }
}

void CSoftCalendarLineEdit::mousePressEvent(QMouseEvent* event)
{
    QStyleOptionComboBox option;
    option.initFrom(this);
    option.editable = true;
    option.frame = hasFrame();
    option.subControls = QStyle::SC_All;
    const QStyle::SubControl hit = style()->hitTestComplexControl(
        QStyle::CC_ComboBox, &option, event->position().toPoint(), this);
    if (hit != QStyle::SC_ComboBoxArrow) {
        CEventWidgetT<QDateEdit>::mousePressEvent(event);
        return;
    }
    event->accept();
    if (event->button() == Qt::LeftButton) {
        setFocus(Qt::MouseFocusReason);
        showCalendar();
    }
}

/// A wheel that scrolls past the editor must not change a date that nobody is looking at.
void CSoftCalendarLineEdit::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        CEventWidgetT<QDateEdit>::wheelEvent(event);
    else
        event->ignore();
}

void CSoftCalendarLineEdit::onUiResourceChanged()
{
    updateGeometry();
    update();
}

} // namespace KZ
