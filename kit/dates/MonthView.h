#pragma once

#include "kit/resources/UiResourceChangeHandler.h"

#include <QCalendarWidget>

namespace KZ {

/// A calendar of one month in Chinese whose weeks begin on Monday, with today ringed and the days
/// outside the range struck out. GUI thread only.
class CMonthView : public QCalendarWidget, public CUiResourceChangeHandler
{
    Q_OBJECT

public:
    explicit CMonthView(QWidget* parent);
    ~CMonthView() override;

    /// The day to ring; none before the first call.
    void setToday(const QDate& today);

    void onUiResourceChanged() override;

protected:
    void paintCell(QPainter* painter, const QRect& rect, QDate date) const override;

private:
    void takeTheme();
    void arrangeHeader();

    QDate m_today;
};

} // namespace KZ
