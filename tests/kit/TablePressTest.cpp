#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/TableWidgetsFixture.h"
#include "tests/support/TestCase.h"

#include <QPointer>
#include <QScrollBar>

#include <functional>

using namespace KZ;

namespace {

constexpr int TICKS = 1;
constexpr int OWN = 2;
constexpr int SHARED = 3;

/// A table with a tick, a button of its own and a shared button in every row. Its rows are named
/// by accounts, and so are the buttons and, by their identifiers, the ticks.
class PressFixture : public TableFixture
{
public:
    PressFixture() : TableFixture(4)
    {
        CColumnWidgetKind kind;
        kind.make = [](QWidget* parent) { return new CSmallNormalButton(0, parent); };
        kind.bind = [this](QWidget* widget, int row) {
            static_cast<CSmallNormalButton*>(widget)->setId(accounts.at(row));
        };
        kind.alignment = Qt::AlignCenter;
        table->setColumnWidgets(SHARED, kind);
        showAndWait();
    }

    /// Shows `count` accounts from `first` on.
    void load(int first, int count)
    {
        table->clear();
        accounts.clear();
        for (int account = first; account < first + count; ++account) {
            accounts.append(account);
            const int row = table->addRowBegin();
            table->setItemInt(row, 0, account);
            table->setItemCheckBox(row, TICKS, account, false, true, Qt::AlignCenter);
            table->setItemWidget(
                row, OWN,
                [account](QWidget* parent) { return new CSmallNormalButton(account, parent); },
                Qt::AlignCenter);
            table->setItemColumnWidget(row, SHARED);
            table->addRowEnd(true);
        }
    }

    QAbstractButton* button(int row, int column) const
    {
        QCoreApplication::processEvents();
        QWidget* const viewport = table->view()->viewport();
        return qobject_cast<QAbstractButton*>(viewport->childAt(cellRect(row, column).center()));
    }

    QVector<int> accounts;
};

/// A mouse that is pressed once and then moved and released where the real one would be: at the
/// widget that was pressed as long as that lives, and at whatever stands there now.
class Mouse
{
public:
    Mouse(const PressFixture& fixture, int row, int column)
        : m_fixture(fixture), m_at(fixture.cellRect(row, column).center()),
          m_pressed(fixture.button(row, column))
    {
        QTest::mousePress(m_pressed, Qt::LeftButton);
    }

    bool isOnButton() const { return m_pressed && m_pressed->isDown(); }

    void moveAway() { move(m_pressed, QPoint(-50, -50)); }

    void release()
    {
        QCoreApplication::processEvents();
        const QPointer<QWidget> there = m_fixture.table->view()->viewport()->childAt(m_at);
        if (m_pressed)
            move(m_pressed, m_pressed->rect().center());
        if (m_pressed)
            QTest::mouseRelease(m_pressed, Qt::LeftButton);
        if (there && there != m_pressed) {
            move(there, there->rect().center());
            if (there)
                QTest::mouseRelease(there, Qt::LeftButton);
        }
    }

private:
    static void move(QWidget* widget, const QPoint& at)
    {
        QMouseEvent event(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(widget, &event);
    }

    const PressFixture& m_fixture;
    const QPoint m_at;
    const QPointer<QAbstractButton> m_pressed;
};

} // namespace

class TablePressTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPressActsForTheRowItShowed_data();
    void aPressActsForTheRowItShowed();
    void aLockedTickIsNotPressedForAnotherRow();
    void aKeyActsForTheRowItShowed_data();
    void aKeyActsForTheRowItShowed();
    void aButtonThatWaitsForItsNextRowTakesNoPress_data();
    void aButtonThatWaitsForItsNextRowTakesNoPress();
    void aPressThatNothingDisturbsIsAClick_data();
    void aPressThatNothingDisturbsIsAClick();

private:
    static void addColumns();
    /// What the table's owner heard of accounts.
    static QVector<int> told(const PressFixture& f)
    {
        QVector<int> accounts;
        for (const TableFixture::Event& event : f.events) {
            if (event.id == EVENT_BUTTON_CLICKED || event.id == EVENT_CHECK_TOGGLED)
                accounts.append(event.param1);
        }
        return accounts;
    }
};

void TablePressTest::addColumns()
{
    QTest::addColumn<int>("column");
    QTest::newRow("tick") << TICKS;
    QTest::newRow("own") << OWN;
    QTest::newRow("shared") << SHARED;
}

void TablePressTest::aPressActsForTheRowItShowed_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("meanwhile");
    QTest::addColumn<bool>("movedAway");
    const QStringList events{QStringLiteral("reload"),     QStringLiteral("reload in two turns"),
                             QStringLiteral("sort"),       QStringLiteral("sort and back"),
                             QStringLiteral("scroll"),     QStringLiteral("scroll a little"),
                             QStringLiteral("filter"),     QStringLiteral("scroll and reload"),
                             QStringLiteral("two reloads")};
    for (const int column : {TICKS, OWN, SHARED}) {
        for (const QString& event : events) {
            for (const bool movedAway : {false, true})
                QTest::addRow("%d %s%s", column, qPrintable(event), movedAway ? " moved" : "")
                    << column << event << movedAway;
        }
    }
}

void TablePressTest::aPressActsForTheRowItShowed()
{
    QFETCH(int, column);
    QFETCH(QString, meanwhile);
    QFETCH(bool, movedAway);
    PressFixture f;
    f.load(0, 100);
    Mouse mouse(f, 3, column);
    QVERIFY(mouse.isOnButton());
    if (movedAway)
        mouse.moveAway();
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    if (meanwhile.startsWith(QStringLiteral("scroll")))
        bar->setValue(meanwhile.endsWith(QStringLiteral("little")) ? f.cellRect(0, 0).height()
                                                                   : 1500);
    QCoreApplication::processEvents();
    if (meanwhile.endsWith(QStringLiteral("reload"))) {
        f.load(500, 100);
    } else if (meanwhile.endsWith(QStringLiteral("turns"))) {
        f.table->clear();
        QCoreApplication::processEvents();
        f.load(500, 100);
    } else if (meanwhile.endsWith(QStringLiteral("reloads"))) {
        f.load(500, 100);
        QCoreApplication::processEvents();
        f.load(700, 100);
    } else if (meanwhile.startsWith(QStringLiteral("sort"))) {
        f.sortBy(0, Qt::DescendingOrder);
        QCoreApplication::processEvents();
        if (meanwhile.endsWith(QStringLiteral("back")))
            f.sortBy(0, Qt::AscendingOrder);
    } else if (meanwhile == QStringLiteral("filter")) {
        f.key(Qt::Key_7);
    }
    f.events.removeIf(
        [](const TableFixture::Event& event) { return event.id == EVENT_ROW_SELECTED; });
    mouse.release();
    QCoreApplication::processEvents();
    for (const int account : told(f))
        QCOMPARE(account, 3);
    for (int row = 0; row < f.table->rowCount(); ++row)
        QVERIFY(!f.table->isItemChecked(row, TICKS) || f.accounts.at(row) == 3);
    if (meanwhile.contains(QStringLiteral("reload")))
        QVERIFY(told(f).isEmpty());
}

void TablePressTest::aLockedTickIsNotPressedForAnotherRow()
{
    PressFixture f;
    f.load(0, 100);
    Mouse mouse(f, 3, TICKS);
    f.table->setItemCheckEnabled(3, TICKS, false);
    f.load(500, 100);
    mouse.release();
    QVERIFY(told(f).isEmpty());
    for (int row = 0; row < f.table->rowCount(); ++row)
        QVERIFY(!f.table->isItemChecked(row, TICKS));
}

void TablePressTest::aKeyActsForTheRowItShowed_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("meanwhile");
    for (const int column : {OWN, SHARED}) {
        for (const char* const event : {"reload", "sort", "scroll"})
            QTest::addRow("%d %s", column, event) << column << QString::fromLatin1(event);
    }
}

void TablePressTest::aKeyActsForTheRowItShowed()
{
    QFETCH(int, column);
    QFETCH(QString, meanwhile);
    PressFixture f;
    f.load(0, 100);
    const QPointer<QAbstractButton> pressed = f.button(3, column);
    pressed->setFocus();
    QTest::keyPress(pressed, Qt::Key_Space);
    QVERIFY(pressed->isDown());
    if (meanwhile == QStringLiteral("reload"))
        f.load(500, 100);
    else if (meanwhile == QStringLiteral("sort"))
        f.sortBy(0, Qt::DescendingOrder);
    else
        f.table->view()->verticalScrollBar()->setValue(1500);
    QAbstractButton* const there = f.button(f.shownRows().at(3), column);
    for (QWidget* const at : {QApplication::focusWidget(), static_cast<QWidget*>(pressed),
                              static_cast<QWidget*>(there)}) {
        if (at) {
            QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "),
                            true);
            QApplication::sendEvent(at, &again);
            QTest::keyRelease(at, Qt::Key_Space);
        }
    }
    for (const int account : told(f))
        QCOMPARE(account, 3);
    if (meanwhile == QStringLiteral("reload"))
        QVERIFY(told(f).isEmpty());
}

void TablePressTest::aButtonThatWaitsForItsNextRowTakesNoPress_data()
{
    addColumns();
}

void TablePressTest::aButtonThatWaitsForItsNextRowTakesNoPress()
{
    QFETCH(int, column);
    PressFixture f;
    f.load(0, 100);
    const QPointer<QAbstractButton> left = f.button(3, column);
    f.load(500, 100);
    // The view has not been told of the new rows; the old button may still be seen.
    QTest::mouseClick(left, Qt::LeftButton);
    QVERIFY(told(f).isEmpty());
    QCoreApplication::processEvents();
    QTest::mouseClick(f.button(3, column), Qt::LeftButton);
    QCOMPARE(told(f), QVector<int>{503});
}

void TablePressTest::aPressThatNothingDisturbsIsAClick_data()
{
    addColumns();
}

void TablePressTest::aPressThatNothingDisturbsIsAClick()
{
    QFETCH(int, column);
    PressFixture f;
    f.load(0, 100);
    Mouse mouse(f, 3, column);
    mouse.moveAway();
    mouse.release();
    QCOMPARE(told(f), QVector<int>{3});
    f.load(500, 100);
    QTest::mouseClick(f.button(4, column), Qt::LeftButton);
    QCOMPARE(told(f), (QVector<int>{3, 504}));
}

int main(int argc, char** argv)
{
    return runTest<TablePressTest>(argc, argv);
}

#include "TablePressTest.moc"
