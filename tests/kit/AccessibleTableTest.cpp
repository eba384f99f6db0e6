#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/AccessibleEvents.h"
#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QDialog>

using namespace KZ;

namespace {

constexpr int nameColumn = 0;
constexpr int tickColumn = 1;
constexpr int stateColumn = 2;
constexpr int buttonColumn = 3;

/// A table whose even rows have a button and all of whose rows have a tick.
struct HeardTable : TableFixture
{
    HeardTable()
    {
        CColumnWidgetKind kind;
        kind.make = [this](QWidget* parent) {
            ++made;
            return new CSmallNormalButton(0, parent);
        };
        kind.bind = [](QWidget* widget, int row) {
            static_cast<CSmallNormalButton*>(widget)->setId(row);
        };
        kind.accessibleName = [this](int row) -> QString {
            return QStringLiteral("取消 ") + table->itemText(row, nameColumn);
        };
        kind.press = [this](int row) { pressed.append(row); };
        table->setColumnWidgets(buttonColumn, kind);
    }

    void fill(int rows)
    {
        for (int row = 0; row < rows; ++row) {
            addRow({QStringLiteral("账户%1").arg(row)});
            table->setItemCheckBox(row, tickColumn, 100 + row, false, true, 132);
            if (row % 2 == 0)
                table->setItemColumnWidget(row, buttonColumn);
        }
        table->view()->model()->rowCount();
        QCoreApplication::processEvents();
    }

    QAccessibleInterface* heard() const
    {
        return QAccessible::queryAccessibleInterface(table->view());
    }

    /// By the place in the view.
    QAccessibleInterface* heardCell(int viewRow, int column) const
    {
        return heard()->tableInterface()->cellAt(viewRow, column);
    }

    static QString name(QAccessibleInterface* object) { return object->text(QAccessible::Name); }

    static void press(QAccessibleInterface* object)
    {
        object->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    static void toggle(QAccessibleInterface* object)
    {
        object->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    }

    int made = 0;
    QVector<int> pressed;
};

/// The number that the next accessible object gets.
QAccessible::Id nextId(QWidget* parent)
{
    QWidget probe(parent);
    return QAccessible::uniqueId(QAccessible::queryAccessibleInterface(&probe));
}

} // namespace

class AccessibleTableTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRowsButtonIsAChildOfItsCell()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        QAccessibleInterface* const cell = f.heardCell(2, buttonColumn);
        QCOMPARE(cell->childCount(), 1);
        QCOMPARE(cell->child(0)->role(), QAccessible::Button);
        QCOMPARE(f.name(cell->child(0)), QStringLiteral("取消 账户2"));
        QCOMPARE(cell->child(0)->parent(), cell);
        QCOMPARE(cell->indexOfChild(cell->child(0)), 0);
        QVERIFY(!cell->child(0)->state().disabled);
        QCOMPARE(f.heardCell(1, buttonColumn)->childCount(), 0);
    }

    void aRowOutOfSightIsPressedWithoutAWidget()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(1000);
        const int made = f.made;
        QWidget* const focus = QApplication::focusWidget();
        QAccessibleInterface* const button = f.heardCell(900, buttonColumn)->child(0);
        QVERIFY(button->state().invisible);
        f.press(button);
        QCOMPARE(f.pressed, QVector<int>{900});
        QCOMPARE(f.made, made);
        QCOMPARE(QApplication::focusWidget(), focus);
    }

    void aButtonThatExistsIsClicked()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        QVERIFY(f.made > 0);
        f.press(f.heardCell(2, buttonColumn)->child(0));
        QVERIFY(f.pressed.isEmpty());
        QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).size(), 1);
        QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).first().param1, 2);
    }

    void onlyWhatAClickReachesIsPressed()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(1000);
        QAccessibleInterface* const seen = f.heardCell(0, buttonColumn)->child(0);
        QAccessibleInterface* const unseen = f.heardCell(900, buttonColumn)->child(0);
        const auto pressBoth = [&] {
            f.press(seen);
            f.press(unseen);
            return f.pressed.size() + f.eventsOf(EVENT_BUTTON_CLICKED).size();
        };
        f.setEnabled(false);
        QVERIFY(seen->state().disabled);
        QCOMPARE(pressBoth(), 0);
        f.setEnabled(true);
        f.table->setInnerEnabled(false);
        QCOMPARE(pressBoth(), 0);
        f.table->setInnerEnabled(true);
        {
            QDialog other;
            other.setModal(true);
            other.show();
            QCOMPARE(pressBoth(), 0);
        }
        f.hide();
        QCOMPARE(pressBoth(), 0);
        f.show();
        QCOMPARE(pressBoth(), 2);
    }

    void aButtonThatItsOwnerHidIsGone()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        f.table->itemWidget(2, buttonColumn)->hide();
        QCOMPARE(f.heardCell(2, buttonColumn)->childCount(), 0);
        QCOMPARE(f.name(f.heardCell(2, buttonColumn)), QStringLiteral("空"));
    }

    void aTickIsToggledThroughItsCell()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(1000);
        QAccessibleInterface* const box = f.heardCell(900, tickColumn)->child(0);
        QCOMPARE(box->role(), QAccessible::CheckBox);
        QVERIFY(f.name(box).contains(QStringLiteral("账户900")));
        QVERIFY(box->state().checkable);
        QVERIFY(!box->state().checked);
        f.toggle(box);
        QVERIFY(f.table->isItemChecked(900, tickColumn));
        QVERIFY(box->state().checked);
        QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
        f.table->setItemCheckEnabled(900, tickColumn, false);
        f.toggle(box);
        QVERIFY(f.table->isItemChecked(900, tickColumn));
        QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    }

    void aMarksWordsAreTheCells()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(2);
        f.table->setItemText(0, stateColumn, QStringLiteral("已授权"));
        f.table->setItemToolTip(0, stateColumn, QStringLiteral("还有 2 天到期"));
        QCOMPARE(f.name(f.heardCell(0, stateColumn)), QStringLiteral("已授权，还有 2 天到期"));
        QCOMPARE(f.name(f.heardCell(1, stateColumn)), QStringLiteral("空"));
    }

    void aCellIsFoundWhereTheUserSortedIt()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        QCOMPARE(f.name(f.heardCell(0, nameColumn)), QStringLiteral("账户0"));
        f.table->view()->model()->sort(nameColumn, Qt::DescendingOrder);
        QAccessibleInterface* const cell = f.heardCell(2, nameColumn);
        QCOMPARE(f.name(cell), QStringLiteral("账户0"));
        QCOMPARE(cell->tableCellInterface()->rowIndex(), 2);
        QCOMPARE(f.name(f.heardCell(2, buttonColumn)->child(0)), QStringLiteral("取消 账户0"));
    }

    void childrenAreNumberedAsTheViewReportsThem()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        QAccessibleInterface* const table = f.heard();
        QCOMPARE(table->role(), QAccessible::Table);
        QCOMPARE(table->childCount(), 4 * 5);
        QCOMPARE(f.name(table->child(1)), QStringLiteral("列0"));
        QCOMPARE(table->child(1)->role(), QAccessible::ColumnHeader);
        QCOMPARE(f.name(table->child(2 * 5 + 1)), QStringLiteral("账户1"));
        for (int child = 0; child < table->childCount(); ++child)
            QCOMPARE(table->indexOfChild(table->child(child)), child);
    }

    void theFrameIsTheFocusOfTheTable()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(3);
        QAccessibleInterface* const cell = f.heardCell(1, nameColumn);
        QVERIFY(!cell->state().focused);
        cell->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QCOMPARE(f.table->view()->currentIndex(), f.cell(1, nameColumn));
        QVERIFY(cell->state().focused);
        QVERIFY(cell->state().selected);
        QCOMPARE(f.heard()->focusChild(), cell);
        QCOMPARE(f.heard()->tableInterface()->selectedRows(), QList<int>{1});
    }

    void aReloadOfTenThousandRowsMakesNoObjects()
    {
        HeardTable f;
        f.showAndWait();
        f.fill(100);
        QVERIFY(f.heardCell(50, nameColumn));
        QTRY_VERIFY(QAccessible::isActive());
        const AccessibleEvents events;
        const QAccessible::Id before = nextId(&f);
        f.table->clear();
        f.fill(10000);
        const int widgets = f.made;
        QVERIFY2(nextId(&f) - before < QAccessible::Id(100 + 2 * widgets), "one object per row");
        QVERIFY2(events.count() < 500, "one event per row");
        QCOMPARE(f.name(f.heardCell(50, nameColumn)), QStringLiteral("账户50"));
    }
};

int main(int argc, char** argv)
{
    return runTest<AccessibleTableTest>(argc, argv);
}

#include "AccessibleTableTest.moc"
