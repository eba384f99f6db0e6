#include "kit/dates/CalendarPopup.h"
#include "kit/dates/DateConversions.h"
#include "kit/dates/SoftCalendarLineEdit.h"
#include "kit/events/EventIds.h"
#include "kit/resources/UiResource.h"
#include "tests/kit/EventRecorder.h"
#include "tests/support/TestCase.h"
#include "utils/ExchangeTimeZone.h"

#include <QCalendarWidget>
#include <QClipboard>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

#include <memory>

using namespace KZ;

class CalendarLineEditTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsTheDayInIsoForm();
    void theProgramDeliversNothing();
    void aDateTimeIsItsDayInTheExchangeZone();
    void datesBeforeTheMinimumCanBeShown();
    void datesAfterTheLastGrantableOneAreCut();
    void aTypedDateCountsOnEnter();
    void aTypedDateCountsWhenTheEditorIsLeft();
    void aHalfTypedDateIsTakenBack();
    void aTypedDateBeforeTheMinimumIsTakenBack();
    void noDateAfterTheLastGrantableOneCanBeTyped();
    void escapeTakesBackWhatWasTyped();
    void arrowKeysChangeAtOnce();
    void steppingFromAHalfTypedDateStaysInTheRange();
    void aDateCanBePasted();
    void steppingStopsAtTheMinimum();
    void steppingUpFromAPastDateReachesTheMinimum();
    void theWheelNeedsTheFocus();
    void aShownPastDateSurvivesPassingThrough();
    void theCalendarIsChineseAndRestricted();
    void theCalendarChoosesByKeyboard();
    void theCalendarChoosesByMouse();
    void theCalendarClosesWithoutAChoice();
    void theArrowButtonOpensTheCalendar();
    void aDisabledEditorOpensNoCalendar();
    void todayHasItsButton();
    void itsOwnerMaySayWhichDayIsToday();
    void theThemeChangesWhileTheCalendarIsOpen();

private:
    void type(const QString& digits);
    QLineEdit* text() { return m_editor->findChild<QLineEdit*>(); }

    std::unique_ptr<EventRecorder> m_window;
    CSoftCalendarLineEdit* m_editor = nullptr;
    QLineEdit* m_other = nullptr;
};

void CalendarLineEditTest::init()
{
    TestCase::init();
    m_window = std::make_unique<EventRecorder>();
    m_editor = new CSoftCalendarLineEdit(4, m_window.get());
    m_other = new QLineEdit(m_window.get());
    m_other->move(0, 100);
    m_window->resize(300, 150);
    m_editor->setMinimumDate(QDate(2026, 11, 20));
    m_editor->setDate(QDate(2026, 11, 27));
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_editor->setFocus();
    QTRY_VERIFY(m_editor->hasFocus());
}

void CalendarLineEditTest::cleanup()
{
    m_window.reset();
    CUiResource::setTheme(CUiResource::Theme::Light);
    TestCase::cleanup();
}

/// Types over the whole date, as a user does who enters it from the left.
void CalendarLineEditTest::type(const QString& digits)
{
    m_editor->setCurrentSection(QDateTimeEdit::YearSection);
    m_editor->setSelectedSection(QDateTimeEdit::YearSection);
    QTest::keyClicks(m_editor, digits);
}

void CalendarLineEditTest::showsTheDayInIsoForm()
{
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    QCOMPARE(m_editor->id(), 4);
    QVERIFY(m_editor->toolTip().contains(QStringLiteral("2026-11-20")));
    QVERIFY(m_editor->toolTip().contains(QStringLiteral("F4")));
}

void CalendarLineEditTest::theProgramDeliversNothing()
{
    m_editor->setDate(QDate(2027, 1, 1));
    m_editor->setDateTime(secondToQDateTime(0));
    m_editor->setMinimumDate(QDate(2030, 1, 1));
    m_editor->setDate(QDate());
    QCOMPARE(m_editor->date(), QDate(1970, 1, 1));
    QVERIFY(m_window->records.isEmpty());
}

void CalendarLineEditTest::aDateTimeIsItsDayInTheExchangeZone()
{
    QCOMPARE(m_editor->dateTime().toSecsSinceEpoch(),
             QDateTime(QDate(2026, 11, 26), QTime(16, 0), QTimeZone::utc()).toSecsSinceEpoch());
    const int halfPastMidnight =
        int(QDateTime(QDate(2026, 11, 30), QTime(16, 30), QTimeZone::utc()).toSecsSinceEpoch());
    m_editor->setDateTime(secondToQDateTime(halfPastMidnight));
    QCOMPARE(m_editor->date(), QDate(2026, 12, 1));
    QCOMPARE(qDateTimeToSecond(m_editor->dateTime()), halfPastMidnight - 1800);
}

void CalendarLineEditTest::datesBeforeTheMinimumCanBeShown()
{
    m_editor->setDate(QDate(2020, 2, 29));
    QCOMPARE(m_editor->date(), QDate(2020, 2, 29));
    QCOMPARE(m_editor->text(), QStringLiteral("2020-02-29"));
    m_editor->setMinimumDate(QDate(2027, 1, 1));
    QCOMPARE(m_editor->date(), QDate(2020, 2, 29));
    QCOMPARE(m_editor->minimumDate(), QDate(2027, 1, 1));
}

void CalendarLineEditTest::datesAfterTheLastGrantableOneAreCut()
{
    m_editor->setDate(QDate(2038, 1, 19));
    QCOMPARE(m_editor->date(), QDate(2038, 1, 18));
    m_editor->setDate(QDate(9999, 12, 31));
    QCOMPARE(m_editor->date(), QDate(2038, 1, 18));
}

void CalendarLineEditTest::aTypedDateCountsOnEnter()
{
    type(QStringLiteral("20270305"));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 0);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_editor->date(), QDate(2027, 3, 5));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
    QCOMPARE(m_window->records.last().param1, 4);
    QCOMPARE(m_window->records.last().text, QStringLiteral("2027-03-05"));
    QCOMPARE(m_window->records.last().data, static_cast<void*>(static_cast<QWidget*>(m_editor)));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::aTypedDateCountsWhenTheEditorIsLeft()
{
    type(QStringLiteral("20261231"));
    m_other->setFocus();
    QCOMPARE(m_editor->date(), QDate(2026, 12, 31));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::aHalfTypedDateIsTakenBack()
{
    type(QStringLiteral("20"));
    m_other->setFocus();
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 0);

    m_editor->setFocus();
    QTest::keyClick(m_editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_editor, Qt::Key_Delete);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 0);
}

void CalendarLineEditTest::aTypedDateBeforeTheMinimumIsTakenBack()
{
    type(QStringLiteral("20261119"));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    QCOMPARE(m_editor->date(), QDate(2026, 11, 27));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 0);

    type(QStringLiteral("20251201"));
    m_other->setFocus();
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 0);
}

void CalendarLineEditTest::noDateAfterTheLastGrantableOneCanBeTyped()
{
    m_editor->setDate(QDate(2038, 1, 10));
    type(QStringLiteral("20390101"));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QVERIFY(m_editor->date() <= LAST_GRANTABLE_DATE);
    for (const EventRecorder::Record& record : std::as_const(m_window->records))
        QVERIFY(record.text <= QStringLiteral("2038-01-18"));
}

void CalendarLineEditTest::escapeTakesBackWhatWasTyped()
{
    type(QStringLiteral("2030"));
    QVERIFY(m_editor->text() != QStringLiteral("2026-11-27"));
    QTest::keyClick(m_editor, Qt::Key_Escape);
    QCOMPARE(m_editor->text(), QStringLiteral("2026-11-27"));
    m_other->setFocus();
    QCOMPARE(m_editor->date(), QDate(2026, 11, 27));
    QVERIFY(m_window->records.isEmpty());
}

void CalendarLineEditTest::arrowKeysChangeAtOnce()
{
    m_editor->setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(m_editor, Qt::Key_Up);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 28));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
    QTest::keyClick(m_editor, Qt::Key_Down);
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 2);
    m_editor->setCurrentSection(QDateTimeEdit::MonthSection);
    QTest::keyClick(m_editor, Qt::Key_Up);
    QCOMPARE(m_editor->date(), QDate(2026, 12, 27));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 3);
}

void CalendarLineEditTest::steppingFromAHalfTypedDateStaysInTheRange()
{
    type(QStringLiteral("20"));
    QTest::keyClick(m_editor, Qt::Key_Up);
    QCOMPARE(m_editor->date(), QDate(2027, 11, 27));
    // A year typed in full leads on to the month, which the arrow then changes.
    type(QStringLiteral("2030"));
    QTest::keyClick(m_editor, Qt::Key_Up);
    QCOMPARE(m_editor->date(), QDate(2030, 12, 27));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 2);
    type(QStringLiteral("2019"));
    QTest::keyClick(m_editor, Qt::Key_Down);
    type(QStringLiteral("2"));
    QTest::keyClick(m_editor, Qt::Key_Down);
    for (const EventRecorder::Record& record : std::as_const(m_window->records))
        QVERIFY2(record.text >= QStringLiteral("2026-11-20"), qPrintable(record.text));
}

void CalendarLineEditTest::aDateCanBePasted()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("2027-01-05"));
    QTest::keyClick(m_editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_editor, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_editor->date(), QDate(2027, 1, 5));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
    QGuiApplication::clipboard()->setText(QStringLiteral("nonsense"));
    QTest::keyClick(m_editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(m_editor, Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(m_editor->text(), QStringLiteral("2027-01-05"));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
    QGuiApplication::clipboard()->clear();
}

void CalendarLineEditTest::steppingStopsAtTheMinimum()
{
    m_editor->setDate(QDate(2026, 12, 5));
    m_editor->setCurrentSection(QDateTimeEdit::MonthSection);
    QTest::keyClick(m_editor, Qt::Key_Down);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 20));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
    QTest::keyClick(m_editor, Qt::Key_Down);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 20));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::steppingUpFromAPastDateReachesTheMinimum()
{
    m_editor->setDate(QDate(2025, 3, 1));
    m_editor->setCurrentSection(QDateTimeEdit::DaySection);
    QTest::keyClick(m_editor, Qt::Key_Down);
    QCOMPARE(m_editor->date(), QDate(2025, 3, 1));
    QVERIFY(m_window->records.isEmpty());
    QTest::keyClick(m_editor, Qt::Key_Up);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 20));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::theWheelNeedsTheFocus()
{
    const auto turn = [this] {
        const QPointF place = QRectF(m_editor->rect()).center();
        QWheelEvent wheel(place, m_editor->mapToGlobal(place), QPoint(), QPoint(0, 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(m_editor, &wheel);
    };
    m_other->setFocus();
    turn();
    QCOMPARE(m_editor->date(), QDate(2026, 11, 27));
    m_editor->setFocus();
    turn();
    QVERIFY(m_editor->date() > QDate(2026, 11, 27));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::aShownPastDateSurvivesPassingThrough()
{
    m_editor->setDate(QDate(2025, 3, 1));
    QTest::keyClick(m_editor, Qt::Key_Return);
    m_other->setFocus();
    m_editor->setFocus();
    m_other->setFocus();
    QCOMPARE(m_editor->date(), QDate(2025, 3, 1));
    QVERIFY(m_window->records.isEmpty());
}

void CalendarLineEditTest::theCalendarIsChineseAndRestricted()
{
    QTest::keyClick(m_editor, Qt::Key_F4);
    QVERIFY(m_editor->calendar());
    const QCalendarWidget* const calendar = m_editor->calendar()->calendarWidget();
    QCOMPARE(calendar->minimumDate(), QDate(2026, 11, 20));
    QCOMPARE(calendar->maximumDate(), QDate(2038, 1, 18));
    QCOMPARE(calendar->selectedDate(), QDate(2026, 11, 27));
    QCOMPARE(calendar->firstDayOfWeek(), Qt::Monday);
    const auto* const days = calendar->findChild<QTableView*>();
    QVERIFY(days);
    QStringList names;
    for (int column = 0; column < days->model()->columnCount(); ++column)
        names += days->model()->index(0, column).data().toString();
    QVERIFY2(names.contains(QStringLiteral("周一")), qPrintable(names.join(u' ')));
    m_editor->calendar()->close();
    QVERIFY(m_window->records.isEmpty());
}

void CalendarLineEditTest::theCalendarChoosesByKeyboard()
{
    QTest::keyClick(m_editor, Qt::Key_Down, Qt::AltModifier);
    QPointer<CCalendarPopup> popup = m_editor->calendar();
    QVERIFY(popup);
    QWidget* const days = popup->calendarWidget()->findChild<QTableView*>();
    QTest::keyClick(days, Qt::Key_Right);
    QTest::keyClick(days, Qt::Key_Right);
    QVERIFY(m_window->records.isEmpty());
    QTest::keyClick(days, Qt::Key_Return);
    QTRY_VERIFY(!popup);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 29));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::theCalendarChoosesByMouse()
{
    m_editor->showCalendar();
    QPointer<CCalendarPopup> popup = m_editor->calendar();
    auto* const days = popup->calendarWidget()->findChild<QTableView*>();
    const QAbstractItemModel* const model = days->model();
    QModelIndex wanted;
    for (int row = 1; row < model->rowCount(); ++row) {
        for (int column = 0; column < model->columnCount(); ++column) {
            if (model->index(row, column).data().toInt() == 24)
                wanted = model->index(row, column);
        }
    }
    QVERIFY(wanted.isValid());
    QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(wanted).center());
    QTRY_VERIFY(!popup);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 24));
    QCOMPARE(m_window->count(EVENT_DATE_CHANGED), 1);
}

void CalendarLineEditTest::theCalendarClosesWithoutAChoice()
{
    m_editor->showCalendar();
    QPointer<CCalendarPopup> popup = m_editor->calendar();
    QWidget* const days = popup->calendarWidget()->findChild<QTableView*>();
    QTest::keyClick(days, Qt::Key_Right);
    QTest::keyClick(days, Qt::Key_Escape);
    QTRY_VERIFY(!popup);
    QCOMPARE(m_editor->date(), QDate(2026, 11, 27));
    QVERIFY(m_window->records.isEmpty());
    QVERIFY(m_window->isVisible());
}

void CalendarLineEditTest::theArrowButtonOpensTheCalendar()
{
    QTest::mouseClick(m_editor, Qt::LeftButton, {},
                      QPoint(m_editor->width() - 8, m_editor->height() / 2));
    QVERIFY(m_editor->calendar());
    QVERIFY(m_editor->calendar()->isVisible());
    QVERIFY(m_editor->screen()->availableGeometry().contains(m_editor->calendar()->geometry()));
    m_editor->calendar()->close();
}

void CalendarLineEditTest::aDisabledEditorOpensNoCalendar()
{
    m_editor->setEnabled(false);
    m_editor->showCalendar();
    QVERIFY(!m_editor->calendar());
}

void CalendarLineEditTest::todayHasItsButton()
{
    m_editor->setMinimumDate(exchangeToday());
    m_editor->setDate(exchangeToday().addDays(9));
    m_editor->showCalendar();
    QPointer<CCalendarPopup> popup = m_editor->calendar();
    auto* const today = popup->findChild<QPushButton*>();
    QVERIFY(today->isEnabled());
    QTest::mouseClick(today, Qt::LeftButton);
    QTRY_VERIFY(!popup);
    QCOMPARE(m_editor->date(), exchangeToday());

    m_editor->setMinimumDate(exchangeToday().addDays(1));
    m_editor->showCalendar();
    QVERIFY(!m_editor->calendar()->findChild<QPushButton*>()->isEnabled());
    m_editor->calendar()->close();
}

void CalendarLineEditTest::itsOwnerMaySayWhichDayIsToday()
{
    QDate today(2026, 12, 3);
    m_editor->setTodaySource([&today] { return today; });
    const auto shownToday = [this] {
        m_editor->showCalendar();
        const QString text = m_editor->calendar()->findChild<QPushButton*>()->text();
        m_editor->calendar()->close();
        [this] { QTRY_VERIFY(!m_editor->calendar()); }();
        return text;
    };
    QCOMPARE(shownToday(), QStringLiteral("今天 2026-12-03"));
    // A day later, and a clock that has failed.
    today = today.addDays(1);
    QCOMPARE(shownToday(), QStringLiteral("今天 2026-12-04"));
    today = QDate();
    QCOMPARE(shownToday(), QStringLiteral("今天 ") + exchangeToday().toString(Qt::ISODate));
}

void CalendarLineEditTest::theThemeChangesWhileTheCalendarIsOpen()
{
    m_editor->showCalendar();
    const QColor light = m_editor->calendar()->palette().color(QPalette::Base);
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(m_editor->calendar()->palette().color(QPalette::Base) != light);
    m_editor->calendar()->close();
}

int main(int argc, char** argv)
{
    return runTest<CalendarLineEditTest>(argc, argv);
}

#include "CalendarLineEditTest.moc"
