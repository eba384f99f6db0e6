#include "kit/dates/CalendarPopup.h"
#include "kit/table/OddEvenRowTable.h"
#include "kit/widgets/ComboBox.h"
#include "kit/widgets/Menu.h"
#include "kit/widgets/SmallNormalButton.h"
#include "kit/widgets/StandardTabControl.h"
#include "tests/kit/PaintedWindow.h"
#include "tests/support/TestCase.h"

#include <QCalendarWidget>
#include <QHeaderView>
#include <QTabBar>
#include <QTableView>
#include <QTreeWidget>

using namespace KZ;

/// The same for what is made of rows, entries and days.
class PaintedViewsContrastTest : public TestCase, private PaintedWindow
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void controlsInRows_data() { addThemes(); }
    void controlsInRows();
    void aSelectedRow_data() { addThemes(); }
    void aSelectedRow();
    void theCurrentCell_data() { addThemes(); }
    void theCurrentCell();
    void theSortMark_data() { addThemes(); }
    void theSortMark();
    void aTree_data() { addThemes(); }
    void aTree();
    void tabs_data() { addThemes(); }
    void tabs();
    void aMenu_data() { addThemes(); }
    void aMenu();
    void aDropDownList_data() { addThemes(); }
    void aDropDownList();
    void aCalendar_data() { addThemes(); }
    void aCalendar();

private:
    COddEvenRowTable* addTable();
    QRect rowOf(const COddEvenRowTable* table, int row) const;
};

void PaintedViewsContrastTest::cleanup()
{
    close();
    TestCase::cleanup();
}

COddEvenRowTable* PaintedViewsContrastTest::addTable()
{
    auto* const table = new COddEvenRowTable(1, m_window.get());
    table->setColumnCount(3);
    for (int column = 0; column < 3; ++column)
        table->setHeaderText(column, QStringLiteral("列"));
    for (int row = 0; row < 4; ++row) {
        table->appendRow();
        table->setItemCheckBox(row, 0, 100 + row, row % 2, row != 3, Qt::AlignCenter);
        table->setItemText(row, 1, QStringLiteral("文字"));
        auto* const button = new CSmallNormalButton(row, table);
        button->setText(QStringLiteral("取消"));
        table->setItemWidget(row, 2, button, Qt::AlignCenter);
    }
    table->setGeometry(10, 10, 380, 260);
    return table;
}

/// The whole row in coordinates of the window.
QRect PaintedViewsContrastTest::rowOf(const COddEvenRowTable* table, int row) const
{
    QTableView* const view = table->view();
    const QRect cell = view->visualRect(view->model()->index(row, 0));
    return QRect(view->viewport()->mapTo(m_window.get(), QPoint(0, cell.top())),
                 QSize(view->viewport()->width(), cell.height()));
}

void PaintedViewsContrastTest::controlsInRows()
{
    open();
    COddEvenRowTable* const table = addTable();
    show();
    for (const bool selected : {false, true}) {
        if (selected)
            table->view()->selectAll();
        for (int row = 0; row < 4; ++row) {
            // Unticked, ticked and, in the last row, ticked and locked.
            VERIFY_CONTRAST(edge(placeOf(table->itemWidget(row, 0))));
            VERIFY_CONTRAST(edge(placeOf(table->itemWidget(row, 2))));
        }
    }
}

void PaintedViewsContrastTest::aSelectedRow()
{
    open();
    COddEvenRowTable* const table = addTable();
    show();
    table->selectRow(1);
    const QImage image = picture();
    const QRect selected = rowOf(table, 1);
    const QRect other = rowOf(table, 2);
    const QColor mark = image.pixelColor(selected.left() + 1, selected.center().y());
    VERIFY_CONTRAST(
        contrast::ratio(mark, image.pixelColor(selected.left() + 6, selected.top() + 3)));
    VERIFY_CONTRAST(contrast::ratio(mark, image.pixelColor(other.left() + 1, other.center().y())));
}

void PaintedViewsContrastTest::theCurrentCell()
{
    open();
    COddEvenRowTable* const table = addTable();
    show();
    table->view()->setFocus(Qt::TabFocusReason);
    table->view()->setCurrentIndex(table->view()->model()->index(1, 1));
    const QImage image = picture();
    const QRect cell = table->view()->visualRect(table->view()->currentIndex());
    const QPoint corner = table->view()->viewport()->mapTo(m_window.get(), cell.topLeft());
    VERIFY_CONTRAST(contrast::ratio(image.pixelColor(corner + QPoint(cell.width() / 2, 0)),
                                    image.pixelColor(corner + QPoint(cell.width() / 2, 3))));
}

void PaintedViewsContrastTest::theSortMark()
{
    open();
    COddEvenRowTable* const table = addTable();
    show();
    QHeaderView* const header = table->view()->horizontalHeader();
    const auto pictureOfHeader = [&] { return header->viewport()->grab().toImage(); };
    const QImage without = pictureOfHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      QPoint(header->sectionViewportPosition(1) + 30, header->height() / 2));
    QTRY_VERIFY(pictureOfHeader() != without);
    const int end = header->sectionViewportPosition(1) + header->sectionSize(1);
    QCOMPARE(header->sortIndicatorSection(), 1);
    VERIFY_CONTRAST(contrast::strongest(pictureOfHeader(), QRect(end - 24, 4, 20, 16),
                                        color("clr_table_header")));
}

void PaintedViewsContrastTest::aTree()
{
    open();
    QTreeWidget tree(m_window.get());
    tree.setHeaderHidden(true);
    tree.setGeometry(10, 10, 200, 200);
    auto* const top = new QTreeWidgetItem(&tree, {QStringLiteral("上")});
    new QTreeWidgetItem(top, {QStringLiteral("下")});
    applyKitStyle(&tree);
    show();
    tree.expandAll();
    tree.setCurrentItem(top->child(0));
    const QImage image = picture();
    const QRect rowRect = tree.visualItemRect(top->child(0));
    const QPoint row = tree.viewport()->mapTo(m_window.get(), QPoint(0, rowRect.center().y()));
    VERIFY_CONTRAST(contrast::ratio(image.pixelColor(row + QPoint(1, 0)),
                                    image.pixelColor(row + QPoint(8, 0))));
    VERIFY_CONTRAST(contrast::ratio(image.pixelColor(row + QPoint(1, 0)), color("clr_panel")));
    const QRect topRect = tree.visualItemRect(top);
    const QPoint branch = tree.viewport()->mapTo(m_window.get(), QPoint(0, topRect.top()));
    VERIFY_CONTRAST(contrast::strongest(
        image, QRect(branch, QSize(topRect.left(), topRect.height())), color("clr_panel")));
}

void PaintedViewsContrastTest::tabs()
{
    open();
    auto* const tabs = new CStandardTabControl(m_window.get());
    tabs->addTabWidget(QStringLiteral("一"), new QWidget);
    tabs->addTabWidget(QStringLiteral("二"), new QWidget);
    tabs->setGeometry(0, 0, 400, 300);
    show();
    QTabBar* const bar = tabs->tabBar();
    const QRect current = bar->tabRect(0);
    const QImage image = bar->grab().toImage();
    const QColor ground = image.pixelColor(current.left() + 2, current.top() + 2);
    VERIFY_CONTRAST(
        contrast::ratio(image.pixelColor(current.center().x(), current.bottom()), ground));
}

void PaintedViewsContrastTest::aMenu()
{
    open();
    show();
    CMenu menu(m_window.get());
    QAction* const first = menu.addAction(QStringLiteral("一"));
    QAction* const second = menu.addAction(QStringLiteral("二"));
    second->setCheckable(true);
    second->setChecked(true);
    menu.popup(m_window->mapToGlobal(QPoint(20, 20)));
    menu.setActiveAction(first);
    const QImage image = menu.grab().toImage();
    const QRect chosen = menu.actionGeometry(first);
    const QRect ticked = menu.actionGeometry(second);
    const QColor mark = image.pixelColor(chosen.left() + 1, chosen.center().y());
    VERIFY_CONTRAST(
        contrast::ratio(mark, image.pixelColor(chosen.right() - 5, chosen.center().y())));
    VERIFY_CONTRAST(contrast::ratio(mark, color("clr_menu")));
    VERIFY_CONTRAST(contrast::strongest(
        image, QRect(ticked.left(), ticked.top(), 30, ticked.height()), color("clr_menu")));
    // Its edge.
    VERIFY_CONTRAST(
        contrast::strongest(image, QRect(0, image.height() / 2, 2, 1), color("clr_menu")));
}

void PaintedViewsContrastTest::aDropDownList()
{
    open();
    CComboBox combo(1, m_window.get());
    combo.setGeometry(20, 20, 120, 28);
    combo.addItems({QStringLiteral("一"), QStringLiteral("二")});
    combo.setCurrentIndex(1);
    show();
    combo.showPopup();
    QAbstractItemView* const list = combo.view();
    QTRY_VERIFY(list->isVisible());
    const QRect current = list->visualRect(list->model()->index(1, 0));
    const QImage image = list->viewport()->grab().toImage();
    const QColor mark = image.pixelColor(current.left() + 1, current.center().y());
    VERIFY_CONTRAST(
        contrast::ratio(mark, image.pixelColor(current.right() - 5, current.center().y())));
    VERIFY_CONTRAST(contrast::ratio(mark, color("clr_menu")));
    combo.hidePopup();
}

void PaintedViewsContrastTest::aCalendar()
{
    open();
    show();
    const QDate day(2026, 11, 18);
    CCalendarPopup popup(day, day.addDays(-10), day.addDays(10), day.addDays(1), m_window.get());
    popup.show();
    QVERIFY(QTest::qWaitForWindowExposed(&popup));
    auto* const days = popup.calendarWidget()->findChild<QTableView*>();
    const QImage image = days->viewport()->grab().toImage();
    const auto edgeOf = [&](const QDate& date) {
        // The row of the week days comes first.
        const int away = int(QDate(2026, 10, 26).daysTo(date));
        const QRect cell = days->visualRect(days->model()->index(1 + away / 7, away % 7));
        return contrast::strongest(image, QRect(cell.left(), cell.center().y(), 5, 1),
                                   color("clr_menu"));
    };
    VERIFY_CONTRAST(edgeOf(day));
    VERIFY_CONTRAST(edgeOf(day.addDays(1)));
    QVERIFY(edgeOf(day.addDays(2)) < contrast::CONTROL);
}

int main(int argc, char** argv)
{
    return runTest<PaintedViewsContrastTest>(argc, argv);
}

#include "PaintedViewsContrastTest.moc"
