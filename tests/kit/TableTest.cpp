#include "kit/resources/UiResource.h"
#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

#include <limits>

using namespace KZ;

class TableTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tellsItsIdentifier();
    void rowsAreNumberedInTheOrderOfAdding();
    void textsCanBeReadBeforeTheViewHasThem();
    void numbersAreReadFromTexts_data();
    void numbersAreReadFromTexts();
    void cellsThatDoNotExistAreEmpty();
    void rowsReachTheViewInOneInsertion();
    void clearEmptiesTheViewAtOnce();
    void aGrabShowsRowsThatWereJustAdded();
    void aRepaintShowsRowsThatWereJustAdded();
    void anEmptyTableIsClean();
    void theColumnCountMayChangeUnderRows();
    void selectionByTheProgramIsSilent();
    void clicksAndArrowsReportTheChosenRow();
    void theReceiverMayReloadWhenARowIsChosen();
    void aReloadKeepsScrollPositionAndCurrentRow();
    void aShorterReloadKeepsWhatItCan();
    void colourKeysFollowTheTheme();
    void innerDisablingLeavesHeaderAndScrollingAlone();
    void copiesTheSelectionInVisibleOrder();
    void copiesHostileTextsSafely();
    void hostileTextsAreShownHarmlessly_data();
    void hostileTextsAreShownHarmlessly();
    void aHugeTextIsDrawnAndKept();
    void toolTipsAreNeverMarkup();
    void aMarkLeavesTheTextsInLine();
    void aHeaderMayStandOverTheMiddle();
    void theHeaderReachesOverTheScrollBar();
    void theViewGoesByTheNameOfTheTable();
    void theContextMenuFollowsTheFlags_data();
    void theContextMenuFollowsTheFlags();
    void theTableMayDieInItsOwnEvent();
};

void TableTest::tellsItsIdentifier()
{
    TableFixture f;
    QCOMPARE(f.table->getID(), TableFixture::TABLE_ID);
    QCOMPARE(f.table->columnCount(), 4);
    QCOMPARE(f.table->headerText(2), QStringLiteral("列2"));
    QCOMPARE(f.table->headerText(9), QString());
}

void TableTest::rowsAreNumberedInTheOrderOfAdding()
{
    TableFixture f;
    QCOMPARE(f.table->addRowBegin(), 0);
    f.table->addRowEnd(true);
    QCOMPARE(f.table->appendRow(), 1);
    QCOMPARE(f.table->rowCount(), 2);
    f.table->clear();
    QCOMPARE(f.table->rowCount(), 0);
    QCOMPARE(f.table->appendRow(), 0);
}

void TableTest::textsCanBeReadBeforeTheViewHasThem()
{
    TableFixture f;
    f.addRow({QStringLiteral("a"), QStringLiteral("b")});
    QCOMPARE(f.table->itemText(0, 1), QStringLiteral("b"));
    f.table->setItemTextColorKey(0, 1, "clr_stock_rise");
    QCOMPARE(f.table->itemTextColorKey(0, 1), QStringLiteral("clr_stock_rise"));
    f.table->setItemTextColorKey(0, 1, nullptr);
    QCOMPARE(f.table->itemTextColorKey(0, 1), QString());
}

void TableTest::numbersAreReadFromTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("whole");
    QTest::addColumn<double>("number");
    QTest::newRow("empty") << QString() << 0 << 0.0;
    QTest::newRow("whole") << QStringLiteral("100") << 100 << 100.0;
    QTest::newRow("decimals") << QStringLiteral("50.50") << 50 << 50.5;
    QTest::newRow("negative") << QStringLiteral("-3.9") << -3 << -3.9;
    QTest::newRow("words") << QStringLiteral("ten") << 0 << 0.0;
    QTest::newRow("not a number") << QStringLiteral("nan") << 0 << 0.0;
    QTest::newRow("infinite") << QStringLiteral("inf") << 0 << 0.0;
    QTest::newRow("too large") << QStringLiteral("1e12") << std::numeric_limits<int>::max() << 1e12;
}

void TableTest::numbersAreReadFromTexts()
{
    QFETCH(QString, text);
    TableFixture f;
    f.addRow({text});
    QTEST(f.table->itemInt(0, 0), "whole");
    QTEST(f.table->itemDouble(0, 0), "number");
    f.table->setItemInt(0, 1, -7);
    QCOMPARE(f.table->itemText(0, 1), QStringLiteral("-7"));
}

void TableTest::cellsThatDoNotExistAreEmpty()
{
    TableFixture f;
    f.addRow({QStringLiteral("a")});
    const QVector<QPair<int, int>> cells{{-1, 0}, {1, 0}, {0, -1}, {0, 4}, {1000000, 1000000}};
    for (const auto& [row, column] : cells) {
        f.table->setItemText(row, column, QStringLiteral("x"));
        f.table->setItemInt(row, column, 1);
        f.table->setItemTextColorKey(row, column, "clr_text");
        f.table->setItemToolTip(row, column, QStringLiteral("x"));
        f.table->setItemIconKey(row, column, QStringLiteral("gw_img_kit_lock"));
        f.table->setItemCheckBox(row, column, 1, true, true, 132);
        f.table->setItemChecked(row, column, true);
        f.table->setItemCheckEnabled(row, column, true);
        f.table->setItemWidget(row, column, new QWidget(f.table), 132);
        f.table->setItemWidget(
            row, column, [](QWidget* p) { return new QWidget(p); }, 132);
        QCOMPARE(f.table->itemText(row, column), QString());
        QCOMPARE(f.table->itemTextColorKey(row, column), QString());
        QCOMPARE(f.table->itemInt(row, column), 0);
        QVERIFY(!f.table->hasItemCheckBox(row, column));
        QVERIFY(!f.table->isItemChecked(row, column));
        QVERIFY(!f.table->itemWidget(row, column));
    }
    f.table->setColumnWidth(9, 50);
    QCOMPARE(f.table->columnWidth(9), 0);
    f.table->setColumnEditable(9, true);
    f.table->setHeaderText(-1, QStringLiteral("x"));
    f.table->selectRow(5);
    QCOMPARE(f.table->selectedRow(), -1);
    QCOMPARE(f.table->itemText(0, 0), QStringLiteral("a"));
    QCOMPARE(f.table->rowCount(), 1);
}

void TableTest::rowsReachTheViewInOneInsertion()
{
    TableFixture f;
    f.showAndWait();
    const QAbstractItemModel* const model = f.table->view()->model();
    QSignalSpy inserted(model, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 500; ++i)
        f.addRow({QString::number(i)});
    QCOMPARE(model->rowCount(), 0);
    QTRY_COMPARE(model->rowCount(), 500);
    QCOMPARE(inserted.count(), 1);
}

void TableTest::clearEmptiesTheViewAtOnce()
{
    TableFixture f;
    f.addRow({QStringLiteral("a")});
    const QAbstractItemModel* const model = f.table->view()->model();
    QCOMPARE(model->rowCount(), 1);
    f.table->clear();
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(f.table->itemText(0, 0), QString());
    QCOMPARE(f.table->selectedRow(), -1);
}

void TableTest::aGrabShowsRowsThatWereJustAdded()
{
    TableFixture f;
    f.showAndWait();
    const QImage empty = f.table->grab().toImage();
    f.addRow({QStringLiteral("甲"), QStringLiteral("乙")});
    const QImage filled = f.table->grab().toImage();
    QVERIFY(empty != filled);
    f.table->clear();
    QCOMPARE(f.table->grab().toImage(), empty);
}

void TableTest::aRepaintShowsRowsThatWereJustAdded()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("甲")});
    const QAbstractItemModel* const model = f.table->findChild<QTableView*>()->model();
    QCOMPARE(model->rowCount(), 0);
    f.table->findChild<QTableView*>()->viewport()->repaint();
    QCOMPARE(model->rowCount(), 1);
}

void TableTest::anEmptyTableIsClean()
{
    TableFixture f;
    f.showAndWait();
    QVERIFY(!f.table->view()->horizontalScrollBar()->isVisible());
    QVERIFY(!f.table->view()->verticalScrollBar()->isVisible());
    QVERIFY(!f.table->view()->verticalHeader()->isVisible());
    QVERIFY(f.table->view()->horizontalHeader()->isVisible());
    const QImage viewport = f.table->view()->viewport()->grab().toImage();
    const QRgb ground = viewport.pixel(viewport.width() / 2, viewport.height() / 2);
    for (int y = 4; y < viewport.height() - 4; y += 7)
        QCOMPARE(viewport.pixel(viewport.width() / 3, y), ground);
}

void TableTest::theColumnCountMayChangeUnderRows()
{
    TableFixture f;
    f.addRow({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    f.table->setItemToolTip(0, 2, QStringLiteral("tip"));
    f.table->setColumnCount(2);
    QCOMPARE(f.table->itemText(0, 1), QStringLiteral("b"));
    QCOMPARE(f.table->itemText(0, 2), QString());
    f.table->setColumnCount(6);
    QCOMPARE(f.table->itemText(0, 0), QStringLiteral("a"));
    QCOMPARE(f.table->itemText(0, 2), QString());
    QVERIFY(!f.cell(0, 2).data(Qt::ToolTipRole).isValid());
    f.table->setColumnCount(-5);
    QCOMPARE(f.table->columnCount(), 6);
}

void TableTest::selectionByTheProgramIsSilent()
{
    TableFixture f;
    f.showAndWait();
    for (int i = 0; i < 5; ++i)
        f.addRow({QString::number(i)});
    f.table->selectRow(3);
    QCOMPARE(f.table->selectedRow(), 3);
    QCOMPARE(f.table->selectedRows(), QVector<int>{3});
    f.table->selectRow(-1);
    QCOMPARE(f.table->selectedRow(), -1);
    QVERIFY(f.eventsOf(EVENT_ROW_SELECTED).isEmpty());
}

void TableTest::clicksAndArrowsReportTheChosenRow()
{
    TableFixture f;
    f.showAndWait();
    for (int i = 0; i < 5; ++i)
        f.addRow({QString::number(i)});
    f.click(2, 1);
    f.click(2, 0);
    f.key(Qt::Key_Down);
    const QVector<TableFixture::Event> expected{
        {EVENT_ROW_SELECTED, 2, TableFixture::TABLE_ID, QString()},
        {EVENT_ROW_SELECTED, 3, TableFixture::TABLE_ID, QString()}};
    QCOMPARE(f.events, expected);
    f.click(0, 0, Qt::ControlModifier);
    QCOMPARE(f.table->selectedRows(), (QVector<int>{0, 3}));
    QCOMPARE(f.table->selectedRow(), 0);
}

void TableTest::theReceiverMayReloadWhenARowIsChosen()
{
    TableFixture f;
    f.showAndWait();
    const auto fill = [&f] {
        f.table->clear();
        for (int i = 0; i < 5; ++i)
            f.addRow({QString::number(i)});
    };
    fill();
    f.onEvent = [&](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_ROW_SELECTED)
            fill();
        return true;
    };
    f.click(2, 0);
    QCoreApplication::processEvents();
    QCOMPARE(f.eventsOf(EVENT_ROW_SELECTED).size(), 1);
    QCOMPARE(f.table->selectedRow(), 2);
}

void TableTest::aReloadKeepsScrollPositionAndCurrentRow()
{
    TableFixture f;
    f.showAndWait();
    const auto fill = [&f](int rows) {
        f.table->clear();
        for (int i = 0; i < rows; ++i)
            f.addRow({QString::number(i)});
    };
    fill(200);
    f.table->selectRow(150);
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    bar->setValue(bar->maximum() / 2);
    const int before = bar->value();
    QVERIFY(before > 0);
    fill(200);
    QTRY_COMPARE(f.shownRows().size(), 200);
    QCOMPARE(bar->value(), before);
    QCOMPARE(f.table->selectedRow(), 150);
    // An empty moment in between does not lose the place either.
    f.table->clear();
    QCoreApplication::processEvents();
    fill(200);
    QCoreApplication::processEvents();
    QCOMPARE(bar->value(), before);
    QVERIFY(f.eventsOf(EVENT_ROW_SELECTED).isEmpty());
}

void TableTest::aShorterReloadKeepsWhatItCan()
{
    TableFixture f;
    f.showAndWait();
    for (int i = 0; i < 200; ++i)
        f.addRow({QString::number(i)});
    f.table->selectRow(150);
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    bar->setValue(bar->maximum());
    f.table->clear();
    for (int i = 0; i < 50; ++i)
        f.addRow({QString::number(i)});
    QCoreApplication::processEvents();
    QCOMPARE(f.table->selectedRow(), -1);
    QCOMPARE(bar->value(), bar->maximum());
}

void TableTest::colourKeysFollowTheTheme()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("已授权")});
    f.table->setItemTextColorKey(0, 0, "clr_stock_rise");
    const QColor light = f.cell(0, 0).data(Qt::ForegroundRole).value<QColor>();
    QCOMPARE(light, CUiResource::getColor(QStringLiteral("clr_stock_rise")));
    const auto back = qScopeGuard([] { CUiResource::setTheme(CUiResource::Theme::Light); });
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QVERIFY(f.cell(0, 0).data(Qt::ForegroundRole).value<QColor>() != light);
}

void TableTest::innerDisablingLeavesHeaderAndScrollingAlone()
{
    TableFixture f;
    f.showAndWait();
    for (int i = 0; i < 200; ++i)
        f.addRow({QString::number(i)});
    f.table->selectRow(1);
    f.table->setInnerEnabled(false);
    QVERIFY(!f.cell(1, 0).flags().testFlag(Qt::ItemIsEnabled));
    QVERIFY(f.table->view()->horizontalHeader()->isEnabled());
    f.click(5, 0);
    QVERIFY(f.events.isEmpty());
    f.sortBy(0, Qt::DescendingOrder);
    QCOMPARE(f.shownRows().constFirst(), 199);
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    const QPoint middle = f.table->view()->viewport()->rect().center();
    QWheelEvent wheel(middle, f.table->view()->viewport()->mapToGlobal(middle), QPoint(),
                      QPoint(0, -240), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(f.table->view()->viewport(), &wheel);
    QVERIFY(bar->value() > 0);
    f.table->setInnerEnabled(true);
    QCOMPARE(f.table->selectedRow(), 1);
    f.click(f.shownRows().at(12), 0);
    QCOMPARE(f.eventsOf(EVENT_ROW_SELECTED).size(), 1);
}

void TableTest::copiesTheSelectionInVisibleOrder()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("b"), QStringLiteral("2")});
    f.addRow({QStringLiteral("a"), QStringLiteral("1")});
    f.addRow({QStringLiteral("c"), QStringLiteral("3")});
    f.table->setItemCheckBox(0, 3, 0, true, true, 132);
    f.table->setItemCheckBox(1, 3, 1, false, true, 132);
    f.table->view()->horizontalHeader()->moveSection(1, 0);
    f.sortBy(0, Qt::AscendingOrder);
    f.click(1, 0);
    f.click(0, 0, Qt::ShiftModifier);
    f.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("1\ta\t\t否\n2\tb\t\t是"));
    f.key(Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(f.table->selectedRows(), (QVector<int>{1, 0, 2}));
    f.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text().count(u'\n'), 2);
}

void TableTest::copiesHostileTextsSafely()
{
    TableFixture f(2);
    f.showAndWait();
    f.addRow({QStringLiteral("a\tb\nc\r\u2028d"), QStringLiteral("x\u202Ey") + QChar(0)});
    f.click(0, 0);
    f.key(Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("a b c  d\tx\uFFFDy\uFFFD"));
    // Nothing selected leaves the clipboard as it is.
    f.table->selectRow(-1);
    f.key(Qt::Key_C, Qt::ControlModifier);
    QVERIFY(!QGuiApplication::clipboard()->text().isEmpty());
}

void TableTest::hostileTextsAreShownHarmlessly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    QTest::newRow("plain") << QStringLiteral("上期 A-1") << QStringLiteral("上期 A-1");
    QTest::newRow("nul") << QString(QStringLiteral("a") + QChar(0) + QStringLiteral("b"))
                         << QStringLiteral("a\uFFFDb");
    QTest::newRow("right-to-left override")
        << QStringLiteral("a\u202Eb") << QStringLiteral("a\uFFFDb");
    QTest::newRow("isolate") << QStringLiteral("\u2066b") << QStringLiteral("\uFFFDb");
    QTest::newRow("zero width") << QStringLiteral("ad\u200Bmin") << QStringLiteral("ad\uFFFDmin");
    QTest::newRow("line end") << QStringLiteral("a\nb") << QStringLiteral("a\uFFFDb");
    QTest::newRow("lone surrogate")
        << QString(QStringLiteral("a") + QChar(0xd83d)) << QStringLiteral("a\uFFFD");
    QTest::newRow("pair") << QStringLiteral("a😀b") << QStringLiteral("a😀b");
    QTest::newRow("tag character")
        << QString(QStringLiteral("a") + QString::fromUcs4(U"\U000E0041", 1))
        << QStringLiteral("a\uFFFD");
}

void TableTest::hostileTextsAreShownHarmlessly()
{
    QFETCH(QString, text);
    TableFixture f;
    f.addRow({text});
    QTEST(f.cell(0, 0).data().toString(), "shown");
    QTEST(f.cell(0, 0).data(Qt::AccessibleTextRole).toString(), "shown");
    QCOMPARE(f.table->itemText(0, 0), text);
}

void TableTest::aHugeTextIsDrawnAndKept()
{
    TableFixture f;
    f.showAndWait();
    const QString huge(qsizetype(1024) * 1024, u'重');
    f.addRow({huge, huge});
    f.table->setItemToolTip(0, 1, huge);
    QVERIFY(!f.table->grab().isNull());
    QCOMPARE(f.table->itemText(0, 0), huge);
    QVERIFY(f.cell(0, 0).data().toString().size() < 1000);
    QVERIFY(f.cell(0, 1).data(Qt::ToolTipRole).toString().size() < 10000);
    QVERIFY(f.table->columnWidth(0) < 400);
    f.sortBy(0, Qt::AscendingOrder);
    QCOMPARE(f.shownRows(), QVector<int>{0});
}

void TableTest::aMarkLeavesTheTextsInLine()
{
    TableFixture f;
    f.table->setColumnWidth(0, 140);
    f.addRow({QStringLiteral("已授权")});
    f.showAndWait();
    const auto cell = [&f] {
        const QRect room = f.table->view()->visualRect(f.table->view()->model()->index(0, 0));
        return f.table->view()->viewport()->grab(room).toImage();
    };
    const QImage plain = cell();
    f.table->setItemIconKey(0, 0, QStringLiteral("gw_img_kit_lock"));
    const QImage marked = cell();
    QVERIFY(plain != marked);
    const int text = f.table->view()->fontMetrics().horizontalAdvance(QStringLiteral("已授权")) + 8;
    const QRect before(0, 0, text, plain.height());
    QCOMPARE(marked.copy(before), plain.copy(before));
}

void TableTest::theHeaderReachesOverTheScrollBar()
{
    TableFixture f;
    for (int row = 0; row < 100; ++row)
        f.addRow({QString::number(row)});
    f.showAndWait();
    const QTableView* const view = f.table->view();
    const QScrollBar* const bar = view->verticalScrollBar();
    QTRY_VERIFY(bar->isVisible());
    const QHeaderView* const header = view->horizontalHeader();
    const auto topOf = [view](const QWidget* widget) { return widget->mapTo(view, QPoint()).y(); };
    QTRY_COMPARE(topOf(bar), topOf(header) + header->height());
    const QImage image = f.table->grab().toImage();
    const int y = topOf(header) + 3;
    QCOMPARE(image.pixelColor(f.table->width() - 4, y),
             CUiResource::getColor(QStringLiteral("clr_table_header")));
}

void TableTest::aHeaderMayStandOverTheMiddle()
{
    TableFixture f;
    const QAbstractItemModel* const model = f.table->view()->model();
    const auto alignment = [model](int column) {
        return model->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt() &
               Qt::AlignHorizontal_Mask;
    };
    f.table->setHeaderCentered(3);
    f.table->setHeaderCentered(7);
    QCOMPARE(alignment(2), int(Qt::AlignLeft));
    QCOMPARE(alignment(3), int(Qt::AlignHCenter));
    f.table->setHeaderCentered(3, false);
    QCOMPARE(alignment(3), int(Qt::AlignLeft));
}

void TableTest::toolTipsAreNeverMarkup()
{
    TableFixture f;
    f.addRow({QStringLiteral("a")});
    f.table->setItemToolTip(0, 0, QStringLiteral("<b>安全</b>"));
    const QString tip = f.cell(0, 0).data(Qt::ToolTipRole).toString();
    QVERIFY(tip.contains(QStringLiteral("&lt;b&gt;安全")));
    f.table->setItemToolTip(0, 0, QString());
    QVERIFY(!f.cell(0, 0).data(Qt::ToolTipRole).isValid());
}

void TableTest::theViewGoesByTheNameOfTheTable()
{
    TableFixture f;
    f.table->setAccessibleName(QStringLiteral("账户列表"));
    f.showAndWait();
    QCOMPARE(f.table->view()->accessibleName(), QStringLiteral("账户列表"));
    TableFixture nameless;
    nameless.showAndWait();
    QVERIFY(!nameless.table->view()->accessibleName().isEmpty());
}

void TableTest::theContextMenuFollowsTheFlags_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<QStringList>("entries");
    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("copy") << int(COddEvenRowTable::MENU_COPY)
                          << QStringList{QStringLiteral("复制\tCtrl+C")};
    QTest::newRow("filter and reset")
        << (COddEvenRowTable::MENU_FILTER | COddEvenRowTable::MENU_RESET_COLUMNS)
        << QStringList{QStringLiteral("筛选…"), QStringLiteral("恢复默认列")};
    QTest::newRow("all") << 255
                         << QStringList{
                                QStringLiteral("复制\tCtrl+C"), QStringLiteral("全选\tCtrl+A"),
                                QStringLiteral("筛选…"),        QStringLiteral("按“H”升序"),
                                QStringLiteral("按“H”降序"),    QStringLiteral("恢复默认列")};
}

void TableTest::theContextMenuFollowsTheFlags()
{
    QFETCH(int, flags);
    CBaseWidget window(nullptr);
    auto* const table = new COddEvenRowTable(1, &window, flags);
    window.setInnerStretchWidget(table, 0, 0, 0, 0);
    table->setColumnCount(1);
    table->setHeaderText(0, QStringLiteral("H"));
    const int row = table->appendRow();
    table->setItemText(row, 0, QStringLiteral("x"));
    window.resize(300, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint at = table->view()->visualRect(table->view()->model()->index(0, 0)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at,
                            table->view()->viewport()->mapToGlobal(at));
    QApplication::sendEvent(table->view()->viewport(), &event);
    QStringList entries;
    const auto* const menu = table->findChild<QMenu*>();
    if (menu) {
        const QList<QAction*> actions = menu->actions();
        for (const QAction* action : actions) {
            if (!action->isSeparator())
                entries.append(action->text());
        }
    }
    QTEST(entries, "entries");
    delete menu;
}

void TableTest::theTableMayDieInItsOwnEvent()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("a")});
    f.table->setItemCheckBox(0, 1, 7, false, true, 132);
    f.onEvent = [&f](const TableFixture::Event&, void*) {
        delete f.table;
        return true;
    };
    f.table->view()->setCurrentIndex(QModelIndex());
    f.table->selectRow(0);
    f.key(Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
}

int main(int argc, char** argv)
{
    return runTest<TableTest>(argc, argv);
}

#include "TableTest.moc"
