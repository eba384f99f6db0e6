#pragma once

#include "kit/KitExport.h"
#include "kit/events/EventWidget.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QDateEdit>
#include <QPointer>

#include <functional>

namespace KZ {

class CCalendarPopup;

/// An editor for one calendar day, shown as "yyyy-MM-dd": typed, stepped with the arrow keys, or
/// chosen from a calendar that F4, Alt+Down or the arrow button opens.
///
/// EVENT_DATE_CHANGED goes out once for each change of the date by the user: a typed date counts
/// when Enter is pressed or the editor is left, a step or a day of the calendar at once. A typed
/// date that is no date or lies outside the range is taken back and delivers nothing. What the
/// program sets delivers nothing. GUI thread only.
class KZKIT_EXPORT CSoftCalendarLineEdit : public CEventWidgetT<QDateEdit>,
                                           public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// `id` is the sender identifier of the editor's events.
    explicit CSoftCalendarLineEdit(int id, QWidget* parent = nullptr);
    ~CSoftCalendarLineEdit() override;

    int id() const;

    QDate date() const;
    /// Shows `date`, also one before the minimum date; one after LAST_GRANTABLE_DATE becomes that,
    /// an invalid one changes nothing.
    void setDate(const QDate& date);

    /// The first moment of the date in the exchange time zone.
    QDateTime dateTime() const;
    /// Shows the day that `dateTime` displays.
    void setDateTime(const QDateTime& dateTime);

    /// The first day that the user may enter; 1970-01-01 unless set. The shown date stays as it is.
    void setMinimumDate(const QDate& date);
    QDate minimumDate() const;

    /// Who is asked for today's date each time the calendar opens; unless set, or when it gives no
    /// valid date, the machine's clock read in the exchange time zone.
    void setTodaySource(std::function<QDate()> source);

    /// Opens the calendar below the editor, for as long as the user does not choose or leave.
    void showCalendar();
    /// The open calendar, null while there is none.
    CCalendarPopup* calendar() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    void stepBy(int steps) override;
    void onUiResourceChanged() override;

protected:
    QValidator::State validate(QString& input, int& position) const override;
    StepEnabled stepEnabled() const override;
    /// Year, month and day are no stops of their own.
    bool focusNextPrevChild(bool next) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void onDateChanged();
    void chooseDate(const QDate& date);
    void describeRange();
    QDate today() const;

    const int m_id;
    QDate m_minimum;
    QDate m_reported;
    std::function<QDate()> m_todaySource;
    bool m_quiet = false;
    QPointer<CCalendarPopup> m_calendar;
};

} // namespace KZ
