#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QLineEdit>
#include <QScrollBar>

using namespace KZ;

namespace {

/// A table whose rows are named by their keys.
class PlaceFixture : public TableFixture
{
public:
    PlaceFixture() : TableFixture(2) { showAndWait(); }

    static QStringList keys(int from, int to)
    {
        QStringList keys;
        for (int i = from; i < to; ++i)
            keys.append(QStringLiteral("K%1").arg(i, 4, 10, QLatin1Char('0')));
        return keys;
    }

    void append(const QStringList& keys)
    {
        for (const QString& key : keys) {
            const int row = table->addRowBegin();
            table->setRowKey(row, key);
            table->setItemText(row, 0, key);
            table->addRowEnd(true);
        }
    }

    void reload(const QStringList& keys)
    {
        table->clear();
        append(keys);
        QCoreApplication::processEvents();
    }

    QString currentKey() const
    {
        const QModelIndex current = table->view()->currentIndex();
        return current.isValid() ? table->rowKey(rowOf(current)) : QString();
    }

    QStringList selectedKeys() const
    {
        QStringList keys;
        const QVector<int> rows = table->selectedRows();
        for (const int row : rows)
            keys.append(table->rowKey(row));
        return keys;
    }

    /// Where the row of a key stands in the viewport.
    int top(const QString& key) const
    {
        for (int row = 0; row < table->rowCount(); ++row) {
            if (table->rowKey(row) == key)
                return cellRect(row, 0).top();
        }
        return -1;
    }

    QString topmostKey() const
    {
        return table->rowKey(rowOf(table->view()->indexAt(QPoint(1, 1))));
    }

    QScrollBar* bar() const { return table->view()->verticalScrollBar(); }

private:
    static int rowOf(const QModelIndex& index)
    {
        return index.data(COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt();
    }
};

} // namespace

class TablePlaceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRowTellsItsKey();
    void selectionAndFrameFollowTheirKeys();
    void rowsInsertedAboveDoNotShiftTheSight();
    void theFramedRowStaysWhereItIsSeen();
    void withoutTheFirstRowsTheNextOnesKeepTheirPlace();
    void whenTheFramedRowIsGoneNothingIsSelected();
    void aSelectedRowThatIsGoneLeavesTheOthersSelected();
    void severalClearsAndEmptyMomentsLoseNothing();
    void rowsMayComeInPortions();
    void whatTheUserChoosesMeanwhileCounts();
    void aSortedTableFindsItsRows();
    void aFilteredTableFindsItsRows();
    void aFramedRowThatTheFilterNowHidesIsGone();
    void rowsWithoutKeysAreFoundByNumber();
    void aKeylessRowIsNotTakenForOneWithAKey();
    void ofEqualKeysTheFirstCounts();
    void theSidewaysPositionStays();
    void disabledRowsKeepTheSelectionToo();
    void restoringIsSilent();
    void aFilterThatHidesIsTold();
    void clearingTheFilterKeepsTheSelection();
    void clearingTheFilterMovesTheFocusOnlyFromItsBar();
};

void TablePlaceTest::aRowTellsItsKey()
{
    PlaceFixture f;
    f.append({QStringLiteral("a"), QString(), QStringLiteral("c")});
    QCOMPARE(f.table->rowKey(0), QStringLiteral("a"));
    QCOMPARE(f.table->rowKey(1), QString());
    QCOMPARE(f.table->rowKey(2), QStringLiteral("c"));
    f.table->setRowKey(2, QStringLiteral("d"));
    f.table->setRowKey(3, QStringLiteral("x"));
    f.table->setRowKey(-1, QStringLiteral("x"));
    QCOMPARE(f.table->rowKey(2), QStringLiteral("d"));
    QCOMPARE(f.table->rowKey(3), QString());
    QCOMPARE(f.table->rowKey(-1), QString());
    f.table->clear();
    f.table->appendRow();
    QCOMPARE(f.table->rowKey(0), QString());
}

void TablePlaceTest::selectionAndFrameFollowTheirKeys()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.click(3, 0);
    f.click(5, 0, Qt::ControlModifier);
    f.click(9, 1, Qt::ControlModifier);
    f.reload(f.keys(900, 902) + f.keys(4, 20) + f.keys(0, 4));
    QCOMPARE(f.currentKey(), QStringLiteral("K0009"));
    QCOMPARE(f.table->view()->currentIndex().column(), 1);
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0005"), QStringLiteral("K0009"),
                                            QStringLiteral("K0003")}));
}

void TablePlaceTest::rowsInsertedAboveDoNotShiftTheSight()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.bar()->setValue(1003);
    const QString topmost = f.topmostKey();
    const int before = f.top(topmost);
    f.reload(f.keys(500, 507) + f.keys(0, 200));
    QCOMPARE(f.topmostKey(), topmost);
    QCOMPARE(f.top(topmost), before);
    f.reload(f.keys(10, 200));
    QCOMPARE(f.topmostKey(), topmost);
    QCOMPARE(f.top(topmost), before);
}

void TablePlaceTest::theFramedRowStaysWhereItIsSeen()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.bar()->setValue(1000);
    const QString framed =
        f.keys(0, 200).at(f.shownRows().indexOf(f.table->view()->indexAt(QPoint(5, 150)).row()));
    f.click(int(f.keys(0, 200).indexOf(framed)), 0);
    const int before = f.top(framed);
    // A row between the topmost one and the framed one is new.
    QStringList keys = f.keys(0, 200);
    keys.insert(keys.indexOf(framed) - 1, QStringLiteral("new"));
    f.reload(keys);
    QCOMPARE(f.currentKey(), framed);
    QCOMPARE(f.top(framed), before);
}

void TablePlaceTest::withoutTheFirstRowsTheNextOnesKeepTheirPlace()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.bar()->setValue(1000);
    const qsizetype topmost = f.keys(0, 200).indexOf(f.topmostKey());
    const QString third = f.keys(0, 200).at(topmost + 2);
    const int before = f.top(third);
    QStringList keys = f.keys(0, 200);
    keys.removeAt(topmost);
    keys.removeAt(topmost);
    f.reload(keys);
    QCOMPARE(f.top(third), before);
}

void TablePlaceTest::whenTheFramedRowIsGoneNothingIsSelected()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.table->setItemCheckBox(5, 1, 1, false, true, 132);
    f.table->view()->setFocus();
    f.click(3, 0);
    f.click(4, 0, Qt::ControlModifier);
    f.events.clear();
    QStringList keys = f.keys(0, 20);
    keys.removeAt(4);
    f.table->clear();
    f.append(keys);
    for (int row = 0; row < keys.size(); ++row)
        f.table->setItemCheckBox(row, 1, row, false, true, 132);
    QCoreApplication::processEvents();
    QVERIFY(!f.table->view()->currentIndex().isValid());
    QVERIFY(f.table->selectedRows().isEmpty());
    QCOMPARE(f.table->selectedRow(), -1);
    f.key(Qt::Key_Space);
    QVERIFY(f.events.isEmpty());
    // It does not come back by itself either.
    f.reload(f.keys(0, 20));
    QVERIFY(f.table->selectedRows().isEmpty());
}

void TablePlaceTest::aSelectedRowThatIsGoneLeavesTheOthersSelected()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.click(3, 0);
    f.click(4, 0, Qt::ControlModifier);
    f.click(7, 0, Qt::ControlModifier);
    QStringList keys = f.keys(0, 20);
    keys.removeAt(4);
    f.reload(keys);
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0003"), QStringLiteral("K0007")}));
}

void TablePlaceTest::severalClearsAndEmptyMomentsLoseNothing()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.bar()->setValue(1000);
    f.click(int(f.keys(0, 200).indexOf(f.topmostKey())) + 3, 0);
    const QString framed = f.currentKey();
    const int before = f.top(framed);
    f.table->clear();
    f.append(f.keys(300, 303));
    f.table->clear();
    f.table->clear();
    for (int turn = 0; turn < 3; ++turn)
        QCoreApplication::processEvents();
    f.append(f.keys(0, 2));
    // Somebody looks before all rows are there.
    QVERIFY(f.table->selectedRows().isEmpty());
    f.table->clear();
    f.append(f.keys(400, 410) + f.keys(0, 200));
    QCoreApplication::processEvents();
    QCOMPARE(f.currentKey(), framed);
    QCOMPARE(f.selectedKeys(), QStringList{framed});
    QCOMPARE(f.top(framed), before);
}

void TablePlaceTest::rowsMayComeInPortions()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.click(2, 0);
    f.click(5, 0, Qt::ControlModifier);
    f.table->clear();
    for (const QString& key : f.keys(0, 200)) {
        f.append({key});
        if (key.endsWith(u'3'))
            QVERIFY(f.table->isRowShown(f.table->rowCount() - 1));
    }
    QCoreApplication::processEvents();
    QCOMPARE(f.currentKey(), QStringLiteral("K0005"));
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0002"), QStringLiteral("K0005")}));
}

void TablePlaceTest::whatTheUserChoosesMeanwhileCounts()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.click(2, 0);
    f.table->clear();
    f.append(f.keys(0, 10));
    f.click(7, 0);
    f.append(f.keys(10, 20));
    QCoreApplication::processEvents();
    QCOMPARE(f.currentKey(), QStringLiteral("K0007"));
    f.table->clear();
    f.append(f.keys(0, 10));
    f.table->selectRow(1);
    f.table->clear();
    f.append(f.keys(0, 20));
    QCOMPARE(f.selectedKeys(), QStringList{QStringLiteral("K0001")});
}

void TablePlaceTest::aSortedTableFindsItsRows()
{
    PlaceFixture f;
    f.sortBy(0, Qt::DescendingOrder);
    f.reload(f.keys(0, 200));
    f.bar()->setValue(1000);
    f.click(int(f.keys(0, 200).indexOf(f.topmostKey())) - 2, 0);
    const QString framed = f.currentKey();
    QVERIFY(!framed.isEmpty());
    const int before = f.top(framed);
    f.reload(f.keys(50, 260) + f.keys(0, 50));
    QCOMPARE(f.currentKey(), framed);
    QCOMPARE(f.selectedKeys(), QStringList{framed});
    QCOMPARE(f.top(framed), before);
}

void TablePlaceTest::aFilteredTableFindsItsRows()
{
    PlaceFixture f;
    f.reload(f.keys(0, 200));
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    QCoreApplication::processEvents();
    f.click(17, 0);
    f.click(27, 0, Qt::ControlModifier);
    f.reload(f.keys(300, 309) + f.keys(10, 200));
    QCOMPARE(f.currentKey(), QStringLiteral("K0027"));
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0017"), QStringLiteral("K0027")}));
}

void TablePlaceTest::aFramedRowThatTheFilterNowHidesIsGone()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    f.click(7, 0);
    f.click(17, 0, Qt::ControlModifier);
    f.table->clear();
    f.append(f.keys(0, 20));
    f.table->setItemText(17, 0, QStringLiteral("changed"));
    QCoreApplication::processEvents();
    QVERIFY(!f.table->isRowShown(17));
    QVERIFY(f.table->selectedRows().isEmpty());
    QVERIFY(!f.table->view()->currentIndex().isValid());
}

void TablePlaceTest::rowsWithoutKeysAreFoundByNumber()
{
    PlaceFixture f;
    const QStringList keyless(200, QString());
    f.reload(keyless);
    f.bar()->setValue(1000);
    f.table->selectRow(60);
    f.bar()->setValue(1000);
    f.reload(keyless);
    QCOMPARE(f.bar()->value(), 1000);
    QCOMPARE(f.table->selectedRow(), 60);
    QCOMPARE(f.table->view()->currentIndex().row(), 60);
    f.reload(keyless.mid(0, 50));
    QCOMPARE(f.table->selectedRow(), -1);
}

void TablePlaceTest::aKeylessRowIsNotTakenForOneWithAKey()
{
    PlaceFixture f;
    f.reload({QString(), QString()});
    f.table->selectRow(1);
    f.reload(f.keys(0, 2));
    QCOMPARE(f.table->selectedRow(), -1);
    f.table->selectRow(1);
    f.reload({QString(), QString()});
    QCOMPARE(f.table->selectedRow(), -1);
}

void TablePlaceTest::ofEqualKeysTheFirstCounts()
{
    PlaceFixture f;
    const QString twice = QStringLiteral("twice");
    f.reload({twice, QStringLiteral("a"), twice});
    f.click(2, 0);
    f.reload({QStringLiteral("a"), twice, QStringLiteral("b"), twice});
    QCOMPARE(f.table->selectedRows(), QVector<int>{1});
}

void TablePlaceTest::theSidewaysPositionStays()
{
    PlaceFixture f;
    f.table->setColumnWidth(0, 900);
    f.table->setColumnWidth(1, 900);
    f.reload(f.keys(0, 20));
    QScrollBar* const sideways = f.table->view()->horizontalScrollBar();
    sideways->setValue(321);
    f.reload(f.keys(5, 25));
    QCOMPARE(sideways->value(), 321);
}

void TablePlaceTest::disabledRowsKeepTheSelectionToo()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.click(3, 0);
    f.click(5, 0, Qt::ControlModifier);
    f.table->setInnerEnabled(false);
    f.reload(f.keys(50, 52) + f.keys(0, 20));
    f.table->setInnerEnabled(true);
    QCOMPARE(f.currentKey(), QStringLiteral("K0005"));
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0003"), QStringLiteral("K0005")}));
}

void TablePlaceTest::restoringIsSilent()
{
    PlaceFixture f;
    f.reload(f.keys(0, 50));
    f.click(7, 0);
    f.events.clear();
    f.reload(f.keys(3, 50));
    f.reload(f.keys(20, 50));
    f.reload(f.keys(0, 50));
    QVERIFY(f.events.isEmpty());
    f.click(7, 0);
    QCOMPARE(f.eventsOf(EVENT_ROW_SELECTED).size(), 1);
}

void TablePlaceTest::aFilterThatHidesIsTold()
{
    PlaceFixture f;
    f.append(f.keys(0, 20));
    QVERIFY(!f.table->isFilterHiding());
    QVERIFY(f.table->isRowShown(4));
    QVERIFY(!f.table->isRowShown(20));
    f.table->view()->setFocus();
    f.key(Qt::Key_K);
    QVERIFY(!f.table->isFilterHiding());
    f.table->findChild<QLineEdit*>()->setText(QStringLiteral("K0005"));
    QVERIFY(f.table->isFilterHiding());
    QVERIFY(f.table->isRowShown(5));
    QVERIFY(!f.table->isRowShown(4));
    f.append({QStringLiteral("K00055")});
    QVERIFY(f.table->isRowShown(20));
    f.table->clear();
    QVERIFY(!f.table->isFilterHiding());
    f.append({QStringLiteral("other")});
    QVERIFY(f.table->isFilterHiding());
    QVERIFY(!f.table->isRowShown(0));
    f.table->clearFilter();
    QVERIFY(!f.table->isFilterHiding());
    QVERIFY(f.table->isRowShown(0));
    QVERIFY(!f.table->findChild<QLineEdit*>()->isVisible());
}

void TablePlaceTest::clearingTheFilterKeepsTheSelection()
{
    PlaceFixture f;
    f.reload(f.keys(0, 20));
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    f.click(7, 0);
    f.click(17, 0, Qt::ControlModifier);
    f.events.clear();
    f.table->clearFilter();
    QCOMPARE(f.currentKey(), QStringLiteral("K0017"));
    QCOMPARE(f.selectedKeys(), (QStringList{QStringLiteral("K0007"), QStringLiteral("K0017")}));
    QCOMPARE(f.shownRows().size(), 20);
    QVERIFY(f.events.isEmpty());
    // Without a filter there is nothing to do.
    f.table->clearFilter();
    QCOMPARE(f.table->selectedRows().size(), 2);
}

void TablePlaceTest::clearingTheFilterMovesTheFocusOnlyFromItsBar()
{
    PlaceFixture f;
    auto* const other = new QLineEdit(&f);
    other->show();
    f.reload(f.keys(0, 20));
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    other->setFocus();
    f.table->clearFilter();
    QVERIFY(other->hasFocus());
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    QVERIFY(!f.table->view()->hasFocus());
    f.table->clearFilter();
    QVERIFY(f.table->view()->hasFocus());
}

int main(int argc, char** argv)
{
    return runTest<TablePlaceTest>(argc, argv);
}

#include "TablePlaceTest.moc"
