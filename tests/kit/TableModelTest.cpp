#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QAbstractItemModelTester>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QRandomGenerator>

using namespace KZ;

class TableModelTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sortsByWhatTheTextsAre_data();
    void sortsByWhatTheTextsAre();
    void equalCellsKeepTheirOrder();
    void sortsTicksByState();
    void theThirdClickReturnsToInsertionOrder();
    void identifiersSurviveSorting();
    void changedTextsStayWhereTheyAreUntilTheNextSorting();
    void aReloadKeepsTheSorting();
    void rowsAddedLaterAreSortedIn();
    void typingFilters();
    void allWordsMustBeFound();
    void escapeEndsTheFilterAndOnlyThat();
    void theFilterNeverHidesATickedRow();
    void aRowTickedByTheProgramComesBack();
    void anUntickedRowStaysUntilTheNextFilter();
    void theFilterKeepsTheSelection();
    void aReloadKeepsTheFilter();
    void arrowsLeaveTheFilterForTheRows();
    void composedTextFilters();
    void accessibleTextsTellTheTick();
    void theModelStaysConsistent();
    void costGrowsWithTheRowsOnly();

private:
    static QLineEdit* filter(const TableFixture& f)
    {
        return f.table->findChild<QLineEdit*>(QStringLiteral("halden_table_filter"));
    }
    static QString count(const TableFixture& f)
    {
        return f.table->findChild<QLabel*>(QStringLiteral("halden_table_filter_count"))->text();
    }
    static void fill(TableFixture& f)
    {
        f.addRow({QStringLiteral("临江证券"), QStringLiteral("80010001"), QStringLiteral("zhang")});
        f.addRow({QStringLiteral("临江证券"), QStringLiteral("80010002"), QStringLiteral("Li")});
        f.addRow({QStringLiteral("远山期货"), QStringLiteral("80010003"), QStringLiteral("zhang")});
        f.addRow({QStringLiteral("远山期货"), QStringLiteral("80020001"), QString()});
        for (int row = 0; row < 4; ++row)
            f.table->setItemCheckBox(row, 3, row, false, true, 132);
    }
};

void TableModelTest::sortsByWhatTheTextsAre_data()
{
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QVector<int>>("ascending");
    QTest::addColumn<QVector<int>>("descending");
    const auto row = [](const char* name, const QStringList& texts, const QVector<int>& up,
                        const QVector<int>& down) { QTest::newRow(name) << texts << up << down; };
    row("numbers", {QStringLiteral("10"), QStringLiteral("9"), QStringLiteral("-1.5"), QString()},
        {2, 1, 0, 3}, {0, 1, 2, 3});
    row("separators and percent",
        {QStringLiteral("1,200"), QStringLiteral("300"), QStringLiteral("50.5%")}, {2, 1, 0},
        {0, 1, 2});
    row("dates",
        {QStringLiteral("2024-12-01"), QString(), QStringLiteral("2024-02-03"),
         QStringLiteral("2023-12-31 10:00:00"), QStringLiteral("2023/12/31")},
        {4, 3, 2, 0, 1}, {0, 2, 3, 4, 1});
    row("long identifiers are not numbers",
        {QStringLiteral("12345678901234567892"), QStringLiteral("12345678901234567891"),
         QStringLiteral("A2"), QStringLiteral("A10")},
        {1, 0, 2, 3}, {3, 2, 0, 1});
    row("chinese by sound",
        {QStringLiteral("云岭交易通道"), QStringLiteral("远山期货"), QStringLiteral("临江证券")},
        {2, 1, 0}, {0, 1, 2});
    row("kinds are kept apart",
        {QStringLiteral("abc"), QStringLiteral("2024-01-01"), QStringLiteral("7"), QString()},
        {2, 1, 0, 3}, {0, 1, 2, 3});
    row("no numbers in disguise",
        {QStringLiteral("nan"), QStringLiteral("inf"), QStringLiteral("0x10"), QStringLiteral("5")},
        {3, 2, 1, 0}, {0, 1, 2, 3});
}

void TableModelTest::sortsByWhatTheTextsAre()
{
    QFETCH(QStringList, texts);
    TableFixture f(1);
    for (const QString& text : texts)
        f.addRow({text});
    f.sortBy(0, Qt::AscendingOrder);
    QTEST(f.shownRows(), "ascending");
    f.sortBy(0, Qt::DescendingOrder);
    QTEST(f.shownRows(), "descending");
}

void TableModelTest::equalCellsKeepTheirOrder()
{
    TableFixture f(1);
    for (int i = 0; i < 40; ++i)
        f.addRow({i % 2 ? QStringLiteral("b") : QStringLiteral("a")});
    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        f.sortBy(0, order);
        const QVector<int> rows = f.shownRows();
        QVERIFY(std::is_sorted(rows.cbegin(), rows.cbegin() + 20));
        QVERIFY(std::is_sorted(rows.cbegin() + 20, rows.cend()));
    }
}

void TableModelTest::sortsTicksByState()
{
    TableFixture f(4);
    fill(f);
    f.table->setItemChecked(2, 3, true);
    f.sortBy(3, Qt::DescendingOrder);
    QCOMPARE(f.shownRows(), (QVector<int>{2, 0, 1, 3}));
}

void TableModelTest::theThirdClickReturnsToInsertionOrder()
{
    TableFixture f(1);
    f.showAndWait();
    for (const int number : {2, 3, 1})
        f.addRow({QString::number(number)});
    QHeaderView* const header = f.table->view()->horizontalHeader();
    const auto click = [header] {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
    };
    click();
    QCOMPARE(f.shownRows(), (QVector<int>{2, 0, 1}));
    click();
    QCOMPARE(f.shownRows(), (QVector<int>{1, 0, 2}));
    click();
    QCOMPARE(f.shownRows(), (QVector<int>{0, 1, 2}));
    QVERIFY(f.events.isEmpty());
}

void TableModelTest::identifiersSurviveSorting()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->selectRow(1);
    f.sortBy(1, Qt::DescendingOrder);
    QCOMPARE(f.shownRows(), (QVector<int>{3, 2, 1, 0}));
    QCOMPARE(f.table->selectedRow(), 1);
    QCOMPARE(f.table->itemText(3, 1), QStringLiteral("80020001"));
    f.table->setItemText(0, 0, QStringLiteral("改"));
    QCOMPARE(f.cell(0, 0).row(), 3);
    QCOMPARE(f.cell(0, 0).data().toString(), QStringLiteral("改"));
    f.click(3, 0);
    QCOMPARE(f.eventsOf(EVENT_ROW_SELECTED).constFirst().param1, 3);
}

void TableModelTest::changedTextsStayWhereTheyAreUntilTheNextSorting()
{
    TableFixture f(1);
    for (const int number : {1, 2, 3})
        f.addRow({QString::number(number)});
    f.sortBy(0, Qt::AscendingOrder);
    f.table->setItemInt(0, 0, 9);
    QCOMPARE(f.shownRows(), (QVector<int>{0, 1, 2}));
    f.sortBy(0, Qt::DescendingOrder);
    QCOMPARE(f.shownRows(), (QVector<int>{0, 2, 1}));
}

void TableModelTest::aReloadKeepsTheSorting()
{
    TableFixture f(1);
    f.addRow({QStringLiteral("1")});
    f.sortBy(0, Qt::DescendingOrder);
    f.table->clear();
    for (const int number : {5, 7, 6})
        f.addRow({QString::number(number)});
    QCOMPARE(f.shownRows(), (QVector<int>{1, 2, 0}));
}

void TableModelTest::rowsAddedLaterAreSortedIn()
{
    TableFixture f(1);
    f.addRow({QStringLiteral("5")});
    f.sortBy(0, Qt::AscendingOrder);
    f.addRow({QStringLiteral("9")});
    f.addRow({QStringLiteral("1")});
    QCOMPARE(f.shownRows(), (QVector<int>{2, 0, 1}));
}

void TableModelTest::typingFilters()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->view()->setFocus();
    QVERIFY(!filter(f)->isVisible());
    f.key(Qt::Key_Z);
    QVERIFY(filter(f)->isVisible());
    QTRY_VERIFY(filter(f)->hasFocus());
    QTest::keyClicks(filter(f), QStringLiteral("HANG"));
    QCOMPARE(filter(f)->text(), QStringLiteral("zHANG"));
    QCOMPARE(f.shownRows(), (QVector<int>{0, 2}));
    QCOMPARE(count(f), QStringLiteral("2 / 4"));
    QCOMPARE(filter(f)->placeholderText(), QStringLiteral("输入以筛选"));
    QCOMPARE(f.table->rowCount(), 4);
    QCOMPARE(f.table->itemText(3, 1), QStringLiteral("80020001"));
    QVERIFY(f.events.isEmpty());
}

void TableModelTest::allWordsMustBeFound()
{
    TableFixture f;
    fill(f);
    filter(f)->setText(QStringLiteral("  zhang  远山期货 "));
    QCOMPARE(f.shownRows(), QVector<int>{2});
    filter(f)->setText(QStringLiteral("(.*"));
    QVERIFY(f.shownRows().isEmpty());
    filter(f)->setText(QStringLiteral("   "));
    QCOMPARE(f.shownRows().size(), 4);
}

void TableModelTest::escapeEndsTheFilterAndOnlyThat()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->view()->setFocus();
    f.key(Qt::Key_8);
    QTest::keyClicks(filter(f), QStringLiteral("002"));
    QCOMPARE(f.shownRows(), QVector<int>{3});
    QKeyEvent shortcut(QEvent::ShortcutOverride, Qt::Key_Escape, Qt::NoModifier);
    shortcut.ignore();
    QApplication::sendEvent(filter(f), &shortcut);
    QVERIFY(shortcut.isAccepted());
    QTest::keyClick(filter(f), Qt::Key_Escape);
    QVERIFY(!filter(f)->isVisible());
    QCOMPARE(f.shownRows().size(), 4);
    QTRY_VERIFY(f.table->view()->hasFocus());
    // Without a filter the key belongs to the dialog.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(f.table->view(), &press);
    QVERIFY(!press.isAccepted());
}

void TableModelTest::theFilterNeverHidesATickedRow()
{
    TableFixture f;
    fill(f);
    f.table->setItemChecked(3, 3, true);
    f.table->setItemCheckBox(0, 3, 0, true, false, 132);
    filter(f)->setText(QStringLiteral("li"));
    // The locked tick of row 0 takes part in nothing, so it may go.
    QCOMPARE(f.shownRows(), (QVector<int>{1, 3}));
}

void TableModelTest::aRowTickedByTheProgramComesBack()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->setItemCheckBox(2, 3, 2, true, false, 132);
    filter(f)->setText(QStringLiteral("li"));
    QCOMPARE(f.shownRows(), QVector<int>{1});
    f.table->setItemChecked(3, 3, true);
    QTRY_COMPARE(f.shownRows(), (QVector<int>{1, 3}));
    f.table->setItemCheckEnabled(2, 3, true);
    QCOMPARE(f.shownRows(), (QVector<int>{1, 2, 3}));
    f.table->setItemCheckBox(0, 3, 0, true, true, 132);
    QCOMPARE(f.shownRows(), (QVector<int>{0, 1, 2, 3}));
}

void TableModelTest::anUntickedRowStaysUntilTheNextFilter()
{
    TableFixture f;
    fill(f);
    f.table->setItemChecked(3, 3, true);
    filter(f)->setText(QStringLiteral("li"));
    f.table->setItemChecked(3, 3, false);
    QCOMPARE(f.shownRows(), (QVector<int>{1, 3}));
    filter(f)->setText(QStringLiteral("l"));
    QCOMPARE(f.shownRows(), QVector<int>{1});
}

void TableModelTest::theFilterKeepsTheSelection()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.click(0, 0);
    f.click(2, 0, Qt::ControlModifier);
    f.events.clear();
    filter(f)->setText(QStringLiteral("远山期货"));
    QCOMPARE(f.table->selectedRows(), QVector<int>{2});
    QCOMPARE(f.table->selectedRow(), 2);
    filter(f)->clear();
    QCOMPARE(f.table->selectedRows(), QVector<int>{2});
    QVERIFY(f.events.isEmpty());
}

void TableModelTest::aReloadKeepsTheFilter()
{
    TableFixture f;
    fill(f);
    filter(f)->setText(QStringLiteral("远山期货"));
    QCOMPARE(f.shownRows().size(), 2);
    f.table->clear();
    fill(f);
    fill(f);
    QCOMPARE(f.shownRows(), (QVector<int>{2, 3, 6, 7}));
    QCOMPARE(count(f), QStringLiteral("4 / 8"));
}

void TableModelTest::arrowsLeaveTheFilterForTheRows()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->view()->setFocus();
    f.key(Qt::Key_8);
    QTRY_VERIFY(filter(f)->hasFocus());
    QTest::keyClick(filter(f), Qt::Key_Down);
    QTRY_VERIFY(f.table->view()->hasFocus());
    QVERIFY(f.table->selectedRow() >= 0);
    QVERIFY(filter(f)->isVisible());
}

void TableModelTest::composedTextFilters()
{
    TableFixture f;
    f.showAndWait();
    fill(f);
    f.table->view()->setFocus();
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("远山期货"));
    QApplication::sendEvent(f.table->view(), &composed);
    QCOMPARE(filter(f)->text(), QStringLiteral("远山期货"));
    QCOMPARE(f.shownRows(), (QVector<int>{2, 3}));
}

void TableModelTest::accessibleTextsTellTheTick()
{
    TableFixture f;
    fill(f);
    const auto text = [&f] { return f.cell(0, 3).data(Qt::AccessibleTextRole).toString(); };
    QCOMPARE(text(), QStringLiteral("未勾选"));
    f.table->setItemChecked(0, 3, true);
    QCOMPARE(text(), QStringLiteral("已勾选"));
    QCOMPARE(f.cell(0, 3).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    f.table->setItemCheckEnabled(0, 3, false);
    QCOMPARE(text(), QStringLiteral("已勾选，已锁定"));
    QCOMPARE(f.cell(0, 0).data(Qt::AccessibleTextRole).toString(), QStringLiteral("临江证券"));
    QVERIFY(!f.cell(0, 0).data(Qt::CheckStateRole).isValid());
}

void TableModelTest::theModelStaysConsistent()
{
    TableFixture f;
    f.showAndWait();
    const QAbstractItemModelTester tester(f.table->view()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QRandomGenerator random(20240612);
    for (int step = 0; step < 600; ++step) {
        const int row = int(random.bounded(60)) - 2;
        switch (random.bounded(14)) {
        case 0:
            f.table->clear();
            break;
        case 1:
        case 2:
        case 3:
            for (int i = 0; i < 8; ++i)
                f.addRow({QString::number(random.bounded(20)), QStringLiteral("文本"),
                          QStringLiteral("2024-01-%1").arg(10 + random.bounded(20))});
            break;
        case 4:
            f.sortBy(int(random.bounded(5)) - 1,
                     random.bounded(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
            break;
        case 5:
            filter(f)->setText(random.bounded(3) ? QString::number(random.bounded(20)) : QString());
            break;
        case 6:
            f.table->setItemCheckBox(row, 3, row, random.bounded(2), random.bounded(2), 132);
            break;
        case 7:
            f.table->setItemChecked(row, 3, random.bounded(2));
            break;
        case 8:
            f.table->setItemText(row, 0, QString::number(random.bounded(20)));
            break;
        case 9:
            f.table->selectRow(row);
            break;
        case 10:
            f.table->setInnerEnabled(random.bounded(2));
            break;
        case 11:
            f.table->setColumnEditable(0, random.bounded(2));
            f.key(Qt::Key_Space);
            break;
        case 12:
            f.table->setItemWidget(
                row, 2, [](QWidget* p) { return new QWidget(p); }, 0x3000);
            f.table->itemWidget(row, 2);
            break;
        default:
            QCoreApplication::processEvents();
        }
        const QVector<int> shown = f.shownRows();
        for (int checked = 0; checked < f.table->rowCount(); ++checked) {
            if (f.table->isItemChecked(checked, 3) && f.table->isItemCheckEnabled(checked, 3))
                QVERIFY(shown.contains(checked));
        }
    }
}

void TableModelTest::costGrowsWithTheRowsOnly()
{
    // Generous, for loaded machines: a cost per pair of rows would make the factor about 400.
    const auto cost = [](int rows) {
        TableFixture f;
        f.showAndWait();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < rows; ++i) {
            const int row = f.table->addRowBegin();
            f.table->setItemCheckBox(row, 0, row, true, true, 132);
            f.table->setItemText(row, 1, QString::number(i));
            f.table->setItemWidget(
                row, 2, [](QWidget* p) { return new QWidget(p); }, 0x3000);
            f.table->addRowEnd(true);
        }
        f.sortBy(1, Qt::DescendingOrder);
        filter(f)->setText(QStringLiteral("1"));
        f.key(Qt::Key_A, Qt::ControlModifier);
        f.key(Qt::Key_Space);
        f.table->clear();
        return double(timer.nsecsElapsed());
    };
    const double small = std::max(cost(1000), 1e6);
    QVERIFY(cost(20000) / small < 120);
}

int main(int argc, char** argv)
{
    return runTest<TableModelTest>(argc, argv);
}

#include "TableModelTest.moc"
