#include "kit/resources/UiResource.h"
#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QContextMenuEvent>
#include <QJsonDocument>
#include <QMenu>
#include <QRandomGenerator>
#include <QScrollBar>

#include <algorithm>
#include <numeric>

using namespace KZ;

class TableLayoutTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void keepsOrderWidthsAndSorting();
    void canBeLoadedBeforeTheColumns();
    void widthsOfTheProgramHoldUntilTheUserResizes();
    void foreignTextsAreIgnored_data();
    void foreignTextsAreIgnored();
    void damagedTextsNeverCrash();
    void anEmptyTableSavesNothing();
    void columnsFitThePage();
    void headersAreNeverClipped();
    void columnsMakeRoomForTheirTexts();
    void numbersAndDaysStayWholeWhereTheTableScrolls();
    void aTextBesideAnIconStaysWholeAsWell();
    void widgetsOutOfSightKeepTheirRoomWhenTheThemeChanges();
    void columnsFollowTheSizeOfTheTable();
    void aResizeByTheUserIsFinal();
    void columnsReturnToTheirDefaults();
    void automaticColumnsStayAutomatic();

private:
    static QString good() { return change(QString(), QString()); }
    /// A valid layout of four columns with one piece of it replaced.
    static QString change(const QString& piece, const QString& by)
    {
        QString text = QStringLiteral(
            R"({"version":1,"order":[3,1,0,2],"widths":[50,60,70,80],"automatic":[],"sort":1,"descending":true})");
        if (!piece.isEmpty())
            text.replace(piece, by);
        return text;
    }
    static QVector<int> widths(const TableFixture& f)
    {
        QVector<int> all;
        for (int column = 0; column < f.table->columnCount(); ++column)
            all.append(f.table->columnWidth(column));
        return all;
    }
    static int sum(const TableFixture& f)
    {
        const QVector<int> all = widths(f);
        return std::accumulate(all.cbegin(), all.cend(), 0);
    }
};

void TableLayoutTest::keepsOrderWidthsAndSorting()
{
    TableFixture first;
    first.showAndWait();
    first.addRow({QStringLiteral("1")});
    first.addRow({QStringLiteral("2")});
    QHeaderView* const header = first.table->view()->horizontalHeader();
    header->moveSection(3, 0);
    header->resizeSection(1, 123);
    first.sortBy(0, Qt::DescendingOrder);
    const QString saved = first.table->saveConfigStr();

    TableFixture second;
    second.table->loadConfigStr(saved);
    second.showAndWait();
    second.addRow({QStringLiteral("1")});
    second.addRow({QStringLiteral("2")});
    QCOMPARE(second.shownRows(), (QVector<int>{1, 0}));
    QCOMPARE(second.table->view()->horizontalHeader()->logicalIndex(0), 3);
    QCOMPARE(widths(second), widths(first));
    QCOMPARE(second.table->columnWidth(1), 123);
    QCOMPARE(second.table->saveConfigStr(), saved);
}

void TableLayoutTest::canBeLoadedBeforeTheColumns()
{
    CBaseWidget window(nullptr);
    COddEvenRowTable table(1, &window);
    table.loadConfigStr(good());
    QVERIFY(!table.saveConfigStr().isEmpty());
    table.setColumnCount(4);
    for (int column = 0; column < 4; ++column) {
        table.setHeaderText(column, QStringLiteral("h"));
        table.setColumnWidth(column, 100);
    }
    table.appendRow();
    QCOMPARE(table.view()->horizontalHeader()->logicalIndex(0), 3);
    QCOMPARE(table.columnWidth(0), 50);
    QCOMPARE(table.columnWidth(3), 80);
    table.setColumnWidth(0, 44);
    QCOMPARE(table.columnWidth(0), 44);
    QCOMPARE(table.saveConfigStr().contains(QStringLiteral("\"sort\":1")), true);
}

void TableLayoutTest::widthsOfTheProgramHoldUntilTheUserResizes()
{
    TableFixture f;
    for (int column = 0; column < 4; ++column)
        f.table->setColumnWidth(column, 100);
    f.showAndWait();
    f.addRow({QString(200, u'x')});
    QCoreApplication::processEvents();
    QCOMPARE(widths(f), (QVector<int>{100, 100, 100, 100}));
    f.table->setColumnWidth(0, 0);
    f.table->setColumnWidth(0, -4);
    QCOMPARE(f.table->columnWidth(0), 100);
    f.table->setColumnWidth(0, 1000000);
    QVERIFY(f.table->columnWidth(0) <= 4000);
}

void TableLayoutTest::foreignTextsAreIgnored_data()
{
    QTest::addColumn<QString>("text");
    const auto changed = [](const char* name, const char* piece, const char* by) {
        QTest::newRow(name) << change(QString::fromLatin1(piece), QString::fromLatin1(by));
    };
    QTest::newRow("empty") << QString();
    QTest::newRow("words") << QStringLiteral("col0=100;col1=50");
    QTest::newRow("binary") << QString(QChar(0) + QStringLiteral("\u0001\uFFFF"));
    QTest::newRow("array") << QStringLiteral("[1,2,3]");
    QTest::newRow("number") << QStringLiteral("12");
    QTest::newRow("cut off") << good().chopped(1);
    QTest::newRow("huge") << QString(qsizetype(10) * 1024 * 1024, u'[');
    changed("no version", "\"version\":1,", "");
    changed("newer version", "\"version\":1", "\"version\":2");
    changed("version in words", "\"version\":1", "\"version\":\"1\"");
    changed("fewer columns", "50,60,70,80", "50,60,70");
    changed("more columns", "50,60,70,80", "50,60,70,80,90");
    changed("no order", "\"order\":[3,1,0,2],", "");
    changed("repeated column", "3,1,0,2", "3,1,1,2");
    changed("unknown column", "3,1,0,2", "3,1,0,4");
    changed("negative column", "3,1,0,2", "3,1,0,-1");
    changed("fraction", "3,1,0,2", "3,1,0.5,2");
    changed("zero width", "50,60", "0,60");
    changed("negative width", "50,60", "-50,60");
    changed("absurd width", "50,60", "1e9,60");
    changed("endless width", "50,60", "1e999,60");
    changed("width in words", "50,60", "\"50\",60");
    changed("null width", "50,60", "null,60");
    changed("unknown sort column", "\"sort\":1", "\"sort\":4");
    changed("sort below none", "\"sort\":1", "\"sort\":-2");
    changed("direction in numbers", "\"descending\":true", "\"descending\":1");
    changed("unknown automatic column", "\"automatic\":[]", "\"automatic\":[9]");
    changed("repeated automatic column", "\"automatic\":[]", "\"automatic\":[1,1]");
}

void TableLayoutTest::foreignTextsAreIgnored()
{
    QFETCH(QString, text);
    TableFixture f;
    f.showAndWait();
    f.table->loadConfigStr(good());
    const QString before = f.table->saveConfigStr();
    f.table->loadConfigStr(text);
    QCOMPARE(f.table->saveConfigStr(), before);
    TableFixture fresh;
    fresh.showAndWait();
    const QVector<int> defaults = widths(fresh);
    fresh.table->loadConfigStr(text);
    QCOMPARE(widths(fresh), defaults);
}

void TableLayoutTest::damagedTextsNeverCrash()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("1"), QStringLiteral("2")});
    QRandomGenerator random(7);
    const QString alphabet = QStringLiteral("{}[]\",:0123456789-+.eEtruefalsn \u0000\uFFFFabc");
    for (int round = 0; round < 3000; ++round) {
        QString text = good();
        const int changes = 1 + int(random.bounded(4));
        for (int i = 0; i < changes && !text.isEmpty(); ++i) {
            const int at = int(random.bounded(int(text.size())));
            switch (random.bounded(3)) {
            case 0:
                text[at] = alphabet[random.bounded(int(alphabet.size()))];
                break;
            case 1:
                text.remove(at, 1 + int(random.bounded(5)));
                break;
            default:
                text.insert(at, alphabet[random.bounded(int(alphabet.size()))]);
            }
        }
        f.table->loadConfigStr(text);
        // Whatever was taken is a layout of this table.
        const QHeaderView* const header = f.table->view()->horizontalHeader();
        QVector<int> order;
        for (int column = 0; column < 4; ++column) {
            order.append(header->logicalIndex(column));
            QVERIFY(f.table->columnWidth(column) >= 16);
            QVERIFY(f.table->columnWidth(column) <= 4000);
        }
        std::sort(order.begin(), order.end());
        QCOMPARE(order, (QVector<int>{0, 1, 2, 3}));
    }
    f.table->loadConfigStr(good());
    QCOMPARE(widths(f), (QVector<int>{50, 60, 70, 80}));
}

void TableLayoutTest::anEmptyTableSavesNothing()
{
    CBaseWidget window(nullptr);
    COddEvenRowTable table(1, &window);
    QCOMPARE(table.saveConfigStr(), QString());
    table.setColumnCount(2);
    const QJsonDocument saved = QJsonDocument::fromJson(table.saveConfigStr().toUtf8());
    QVERIFY(saved.isObject());
}

void TableLayoutTest::columnsFitThePage()
{
    TableFixture f(9);
    const QStringList headers{
        QStringLiteral("选择"),         QStringLiteral("交易平台"),     QStringLiteral("经纪公司"),
        QStringLiteral("账号"),         QStringLiteral("授权状态"),     QStringLiteral("被授权人"),
        QStringLiteral("授权开始时间"), QStringLiteral("授权结束时间"), QStringLiteral("操作")};
    f.setFont(CUiResource::getFont(QStringLiteral("fnt_default_normal")));
    for (int column = 0; column < 9; ++column)
        f.table->setHeaderText(column, headers[column]);
    f.table->setColumnWidth(0, CUiResource::getSize(QStringLiteral("gw_siz_table_column_select")));
    f.resize(924, 400);
    f.showAndWait();
    for (int i = 0; i < 100; ++i) {
        f.addRow({QString(), QStringLiteral("云岭交易通道"), QStringLiteral("临江证券"),
                  QStringLiteral("800100023"), QStringLiteral("已授权"), QStringLiteral("trader07"),
                  QStringLiteral("2024-10-10"), QStringLiteral("2024-12-12")});
        f.table->setItemCheckBox(i, 0, i, false, true, 132);
    }
    QCoreApplication::processEvents();
    QVERIFY(!f.table->view()->horizontalScrollBar()->isVisible());
    QCOMPARE(sum(f), f.table->view()->viewport()->width());
    for (int column = 1; column < 8; ++column) {
        const QString text = f.cell(0, column).data().toString();
        QVERIFY2(f.table->columnWidth(column) >
                     f.table->view()->fontMetrics().horizontalAdvance(text) + 8,
                 qPrintable(headers[column]));
    }
}

void TableLayoutTest::headersAreNeverClipped()
{
    TableFixture f(3);
    f.table->setHeaderText(1, QStringLiteral("一个相当长的列标题"));
    f.resize(120, 200);
    f.showAndWait();
    const QFontMetrics metrics = f.table->view()->horizontalHeader()->fontMetrics();
    for (int column = 0; column < 3; ++column)
        QVERIFY(f.table->columnWidth(column) >
                metrics.horizontalAdvance(f.table->headerText(column)));
    f.sortBy(1, Qt::AscendingOrder);
    QVERIFY(f.table->columnWidth(1) >= f.table->view()->horizontalHeader()->sectionSizeHint(1));
}

void TableLayoutTest::columnsMakeRoomForTheirTexts()
{
    TableFixture f(2);
    f.showAndWait();
    f.addRow({QStringLiteral("a"), QStringLiteral("一段比标题长得多的文字内容")});
    QCoreApplication::processEvents();
    QVERIFY(f.table->columnWidth(1) > f.table->columnWidth(0));
    const int wide = f.table->columnWidth(1);
    // A reload with short texts does not make the columns jump.
    f.table->clear();
    f.addRow({QStringLiteral("a"), QStringLiteral("b")});
    QCoreApplication::processEvents();
    QCOMPARE(f.table->columnWidth(1), wide);
}

void TableLayoutTest::numbersAndDaysStayWholeWhereTheTableScrolls()
{
    TableFixture f(3);
    f.resize(200, 200);
    f.showAndWait();
    f.addRow({QStringLiteral("800100023"), QStringLiteral("2024-10-10"), QString(60, u'x')});
    QCoreApplication::processEvents();
    const QFontMetrics metrics = f.table->view()->fontMetrics();
    for (const int column : {0, 1})
        QVERIFY(f.table->columnWidth(column) >
                metrics.horizontalAdvance(f.cell(0, column).data().toString()));
    QVERIFY(f.table->view()->horizontalScrollBar()->maximum() > 0);
    // A long text gives way first.
    f.resize(400, 200);
    QCoreApplication::processEvents();
    QCOMPARE(f.table->view()->horizontalScrollBar()->maximum(), 0);
    QVERIFY(f.table->columnWidth(2) < metrics.horizontalAdvance(f.cell(0, 2).data().toString()));
}

void TableLayoutTest::aTextBesideAnIconStaysWholeAsWell()
{
    TableFixture f(3);
    f.resize(200, 200);
    f.showAndWait();
    for (int row = 0; row < 2; ++row)
        f.addRow({QStringLiteral("已授权")});
    f.table->setItemIconKey(1, 0, QStringLiteral("gw_img_kit_near_expiry"));
    QCoreApplication::processEvents();
    const int padding = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
    const int icon = CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
    QVERIFY(f.table->columnWidth(0) >=
            f.table->view()->fontMetrics().horizontalAdvance(QStringLiteral("已授权")) + icon +
                3 * padding);
}

void TableLayoutTest::widgetsOutOfSightKeepTheirRoomWhenTheThemeChanges()
{
    TableFixture f(6);
    f.resize(200, 200);
    f.showAndWait();
    for (int row = 0; row < 2; ++row) {
        f.addRow({QStringLiteral("800100023"), QStringLiteral("800100023")});
        f.table->setItemWidget(
            row, 5,
            [](QWidget* parent) -> QWidget* {
                auto* button = new QWidget(parent);
                button->resize(90, 20);
                return button;
            },
            Qt::AlignCenter);
    }
    QScrollBar* bar = f.table->view()->horizontalScrollBar();
    QCoreApplication::processEvents();
    bar->setValue(bar->maximum());
    QCoreApplication::processEvents();
    const int wide = f.table->columnWidth(5);
    QVERIFY(wide > 90);
    bar->setValue(0);
    QCoreApplication::processEvents();
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QCoreApplication::processEvents();
    CUiResource::setTheme(CUiResource::Theme::Light);
    QCOMPARE(f.table->columnWidth(5), wide);
}

void TableLayoutTest::columnsFollowTheSizeOfTheTable()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("a")});
    QCoreApplication::processEvents();
    QCOMPARE(sum(f), f.table->view()->viewport()->width());
    f.resize(800, 400);
    QCoreApplication::processEvents();
    QCOMPARE(sum(f), f.table->view()->viewport()->width());
}

void TableLayoutTest::aResizeByTheUserIsFinal()
{
    TableFixture f;
    f.showAndWait();
    f.table->view()->horizontalHeader()->resizeSection(0, 77);
    const QVector<int> before = widths(f);
    f.resize(900, 400);
    f.addRow({QString(100, u'x')});
    QCoreApplication::processEvents();
    QCOMPARE(widths(f), before);
}

void TableLayoutTest::columnsReturnToTheirDefaults()
{
    TableFixture f;
    f.table->setColumnWidth(0, 90);
    f.showAndWait();
    const QVector<int> defaults = widths(f);
    f.table->loadConfigStr(good());
    QVERIFY(widths(f) != defaults);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), f.mapToGlobal(QPoint(5, 50)));
    QApplication::sendEvent(f.table->view()->viewport(), &event);
    auto* const menu = f.table->findChild<QMenu*>();
    QVERIFY(menu);
    menu->actions().constLast()->trigger();
    delete menu;
    QCOMPARE(widths(f), defaults);
    QCOMPARE(f.table->view()->horizontalHeader()->logicalIndex(0), 0);
    QCOMPARE(f.table->view()->horizontalHeader()->sortIndicatorSection(), -1);
}

void TableLayoutTest::automaticColumnsStayAutomatic()
{
    TableFixture first;
    first.table->setColumnWidth(0, 90);
    first.showAndWait();
    TableFixture second;
    second.table->loadConfigStr(first.table->saveConfigStr());
    second.resize(900, 300);
    second.showAndWait();
    QCOMPARE(second.table->columnWidth(0), 90);
    QCOMPARE(sum(second), second.table->view()->viewport()->width());
}

int main(int argc, char** argv)
{
    return runTest<TableLayoutTest>(argc, argv);
}

#include "TableLayoutTest.moc"
