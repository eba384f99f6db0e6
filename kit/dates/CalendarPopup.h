#pragma once

#include "kit/KitExport.h"
#include "kit/resources/UiResourceChangeHandler.h"

#include <QDate>
#include <QFrame>

class QCalendarWidget;
class QPushButton;

namespace KZ {

class CMonthView;

/// A calendar month on a pop-up window, from which one day of a range can be chosen by a click or
/// with the arrow keys, PageUp/PageDown and Enter; Esc or a click elsewhere closes it without a
/// choice; a button chooses today. The window destroys itself when it closes. GUI thread only.
class KZKIT_EXPORT CCalendarPopup : public QFrame, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    /// Opens on `shown`, or on the nearest day of the range `first` to `last`.
    CCalendarPopup(const QDate& shown, const QDate& first, const QDate& last, const QDate& today,
                   QWidget* parent);
    ~CCalendarPopup() override;

    QCalendarWidget* calendarWidget() const;

    /// Shows the window beside `editor`, on its screen.
    void popUp(const QWidget* editor);

    void onUiResourceChanged() override;

Q_SIGNALS:
    /// The user has chosen `date`; the window is closing.
    void dateChosen(const QDate& date);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void choose(const QDate& date);
    void takeTheme();

    CMonthView* m_calendar;
    QPushButton* m_today;
    bool m_chosen = false;
};

} // namespace KZ
