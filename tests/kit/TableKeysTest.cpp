#include "tests/kit/TableWidgetsFixture.h"
#include "tests/support/TestCase.h"

#include <QDialog>
#include <QHelpEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QToolTip>
#include <QVBoxLayout>

using namespace KZ;

namespace {

/// A table of ticks and buttons between two line edits, in the order of focus.
class KeysFixture : public TableWidgetsFixture
{
public:
    KeysFixture() : before(new QLineEdit(this)), after(new QLineEdit(this))
    {
        before->setGeometry(0, 0, 5, 5);
        after->setGeometry(10, 0, 5, 5);
        setTabOrder(before, table->view());
        setTabOrder(table->view(), after);
        showAndWait();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(focusWidget(), key, modifiers);
    }

    int focusedButton() const
    {
        const auto* const button = qobject_cast<CSmallNormalButton*>(focusWidget());
        return button ? button->id() : -1;
    }

    QLineEdit* const before;
    QLineEdit* const after;
};

/// A cell's widget with two buttons and, between them, one that is hidden.
QWidget* twoButtons(int row, QWidget* parent)
{
    auto* const widget = new QWidget(parent);
    auto* const layout = new QHBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    for (const int id : {1000 + row, 2000 + row, 3000 + row}) {
        auto* const button = new CSmallNormalButton(id, widget);
        button->setHidden(id == 2000 + row);
        layout->addWidget(button);
    }
    return widget;
}

} // namespace

class TableKeysTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tabLeavesTheTable();
    void tabLeavesTheTableFromARowsButton();
    void aTickOfTheOwnerIsNoStop();
    void enterAndEscapeLeadToARowsButtonsAndBack();
    void enterReachesARowOutOfSight();
    void enterAndArrowsReachColumnsOutOfSight();
    void escapeInARowIsNotTheDialogs();
    void leftAndRightWalkThroughTheRow();
    void upAndDownLeadBackToTheRows();
    void aButtonThatGoesLeavesTheFocusWithTheTable_data();
    void aButtonThatGoesLeavesTheFocusWithTheTable();
    void spaceTicksTheSelectionWithTheFramedRow();
    void spaceTicksTheFramedRowAlone();
    void spaceHeldDownTicksOnce();
    void spaceWithoutAFramedRowTicksTheSelection();
    void enterReturnsToARefusedEditor_data();
    void enterReturnsToARefusedEditor();
    void theKeysAreTold();
    void anOrdinaryTableTellsNothing();
    void aCellsOwnToolTipWins();
};

void TableKeysTest::tabLeavesTheTable()
{
    KeysFixture f;
    f.fill(30);
    f.before->setFocus();
    f.press(Qt::Key_Tab);
    QCOMPARE(f.focusWidget(), f.table->view());
    f.press(Qt::Key_Tab);
    QCOMPARE(f.focusWidget(), f.after);
    f.press(Qt::Key_Backtab);
    QCOMPARE(f.focusWidget(), f.table->view());
    f.press(Qt::Key_Backtab);
    QCOMPARE(f.focusWidget(), f.before);
    QVERIFY(f.eventsOf(EVENT_BUTTON_CLICKED).isEmpty());
}

void TableKeysTest::tabLeavesTheTableFromARowsButton()
{
    KeysFixture f;
    f.fill(30);
    QCoreApplication::processEvents();
    f.seen(4)->setFocus();
    f.press(Qt::Key_Tab);
    QCOMPARE(f.focusWidget(), f.after);
    f.seen(4)->setFocus();
    f.press(Qt::Key_Backtab);
    QCOMPARE(f.focusWidget(), f.before);
}

void TableKeysTest::aTickOfTheOwnerIsNoStop()
{
    KeysFixture f;
    f.table->appendRow();
    auto* const own = new CCheckBox(5, f.table);
    f.table->setItemWidget(0, 1, own, 132);
    QCoreApplication::processEvents();
    f.before->setFocus();
    f.press(Qt::Key_Tab);
    f.press(Qt::Key_Tab);
    QCOMPARE(f.focusWidget(), f.after);
    QTest::mouseClick(own, Qt::LeftButton);
    QVERIFY(!own->hasFocus());
    QVERIFY(own->isChecked());
}

void TableKeysTest::enterAndEscapeLeadToARowsButtonsAndBack()
{
    KeysFixture f;
    f.fill(30);
    f.table->selectRow(3);
    f.table->view()->setFocus();
    for (const Qt::Key enter : {Qt::Key_Return, Qt::Key_Enter}) {
        f.press(enter);
        QCOMPARE(f.focusedButton(), 3);
        f.press(Qt::Key_Escape);
        QCOMPARE(f.focusWidget(), f.table->view());
        QCOMPARE(f.table->selectedRow(), 3);
    }
}

void TableKeysTest::enterReachesARowOutOfSight()
{
    KeysFixture f;
    f.fill(300);
    f.table->selectRow(250);
    f.table->view()->scrollToTop();
    f.table->view()->setFocus();
    f.press(Qt::Key_Return);
    QCOMPARE(f.focusedButton(), 250);
}

void TableKeysTest::enterAndArrowsReachColumnsOutOfSight()
{
    KeysFixture f;
    f.fill(5);
    f.table->setItemWidget(
        2, 3, [](QWidget* parent) { return twoButtons(2, parent); }, COddEvenRowTable::ALIGN_FILL);
    for (int column = 0; column < 4; ++column)
        f.table->setColumnWidth(column, 600);
    f.table->selectRow(2);
    f.table->view()->setFocus();
    QScrollBar* const sideways = f.table->view()->horizontalScrollBar();
    QCOMPARE(sideways->value(), 0);
    f.press(Qt::Key_Return);
    QCOMPARE(f.focusedButton(), 2);
    QVERIFY(sideways->value() > 0);
    const int before = sideways->value();
    f.press(Qt::Key_Right);
    QCOMPARE(f.focusedButton(), 1002);
    QVERIFY(sideways->value() > before);
    f.press(Qt::Key_Left);
    QCOMPARE(f.focusedButton(), 2);
    // A row without anything to go to does not move the view.
    f.press(Qt::Key_Escape);
    sideways->setValue(0);
    f.table->itemWidget(4, 2)->hide();
    f.table->selectRow(4);
    f.table->view()->setFocus();
    sideways->setValue(0);
    f.press(Qt::Key_Return);
    QCOMPARE(sideways->value(), 0);
    QCOMPARE(f.focusWidget(), f.table->view());
}

void TableKeysTest::escapeInARowIsNotTheDialogs()
{
    QDialog dialog;
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const table = new COddEvenRowTable(1, &dialog);
    layout->addWidget(table);
    table->setColumnCount(2);
    table->appendRow();
    table->setItemWidget(0, 1, new CSmallNormalButton(1, table), 132);
    QShortcut shortcut(QKeySequence(Qt::Key_Escape), &dialog);
    int shortcuts = 0;
    connect(&shortcut, &QShortcut::activated, &dialog, [&shortcuts] { ++shortcuts; });
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.activateWindow();
    QTRY_VERIFY(dialog.isActiveWindow());
    table->selectRow(0);
    table->view()->setFocus();
    QTest::keyClick(table->view(), Qt::Key_Return);
    QVERIFY(table->itemWidget(0, 1)->hasFocus());
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
    QVERIFY(table->view()->hasFocus());
    QVERIFY(dialog.isVisible());
    QCOMPARE(shortcuts, 0);
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
    QCOMPARE(shortcuts, 1);
}

void TableKeysTest::leftAndRightWalkThroughTheRow()
{
    KeysFixture f;
    f.fill(5);
    for (int row = 0; row < 5; ++row)
        f.table->setItemWidget(
            row, 3, [row](QWidget* parent) { return twoButtons(row, parent); },
            COddEvenRowTable::ALIGN_FILL);
    f.table->selectRow(2);
    f.table->view()->setFocus();
    f.press(Qt::Key_Return);
    QCOMPARE(f.focusedButton(), 2);
    for (const int id : {1002, 3002, 3002}) {
        f.press(Qt::Key_Right);
        QCOMPARE(f.focusedButton(), id);
    }
    for (const int id : {1002, 2, 2}) {
        f.press(Qt::Key_Left);
        QCOMPARE(f.focusedButton(), id);
    }
    // The row is the one of the button, also when another one is framed.
    f.seen(4)->setFocus();
    f.press(Qt::Key_Right);
    QCOMPARE(f.focusedButton(), 1004);
    QCOMPARE(f.table->selectedRow(), 2);
}

void TableKeysTest::upAndDownLeadBackToTheRows()
{
    KeysFixture f;
    f.fill(30);
    f.table->selectRow(3);
    f.table->view()->setFocus();
    f.press(Qt::Key_Return);
    f.press(Qt::Key_Down);
    QCOMPARE(f.focusWidget(), f.table->view());
    QCOMPARE(f.table->selectedRow(), 4);
    f.press(Qt::Key_Return);
    QCOMPARE(f.focusedButton(), 4);
    f.press(Qt::Key_Up);
    QCOMPARE(f.focusWidget(), f.table->view());
    QCOMPARE(f.table->selectedRow(), 3);
}

void TableKeysTest::aButtonThatGoesLeavesTheFocusWithTheTable_data()
{
    QTest::addColumn<QString>("how");
    QTest::newRow("hidden") << QStringLiteral("hidden");
    QTest::newRow("disabled") << QStringLiteral("disabled");
    QTest::newRow("rows disabled") << QStringLiteral("rows");
    QTest::newRow("removed") << QStringLiteral("removed");
}

void TableKeysTest::aButtonThatGoesLeavesTheFocusWithTheTable()
{
    QFETCH(QString, how);
    KeysFixture f;
    f.fill(5);
    f.table->selectRow(2);
    f.table->view()->setFocus();
    f.press(Qt::Key_Return);
    QCOMPARE(f.focusedButton(), 2);
    if (how == QStringLiteral("hidden"))
        f.seen(2)->hide();
    else if (how == QStringLiteral("disabled"))
        f.seen(2)->setEnabled(false);
    else if (how == QStringLiteral("rows"))
        f.table->setInnerEnabled(false);
    else
        f.table->setItemWidget(2, 2, nullptr, 132);
    QCOMPARE(f.focusWidget(), f.table->view());
}

void TableKeysTest::spaceTicksTheSelectionWithTheFramedRow()
{
    KeysFixture f;
    f.fill(10);
    f.table->setItemCheckEnabled(3, 1, false);
    f.click(2, 0);
    f.click(4, 0, Qt::ShiftModifier);
    f.events.clear();
    f.press(Qt::Key_Space);
    const QVector<TableFixture::Event> expected{{EVENT_CHECK_TOGGLED, 102, 1, QString()},
                                                {EVENT_CHECK_TOGGLED, 104, 1, QString()}};
    QCOMPARE(f.events, expected);
    QVERIFY(!f.table->isItemChecked(3, 1));
}

void TableKeysTest::spaceTicksTheFramedRowAlone()
{
    KeysFixture f;
    f.fill(10);
    f.click(2, 0);
    f.click(3, 0, Qt::ShiftModifier);
    // Ctrl and arrows move the frame without selecting.
    f.press(Qt::Key_Down, Qt::ControlModifier);
    f.press(Qt::Key_Down, Qt::ControlModifier);
    QCOMPARE(f.table->selectedRows(), (QVector<int>{2, 3}));
    f.events.clear();
    f.press(Qt::Key_Space);
    const QVector<TableFixture::Event> expected{{EVENT_CHECK_TOGGLED, 105, 1, QString()}};
    QCOMPARE(f.events, expected);
    QVERIFY(!f.table->isItemChecked(2, 1));
    f.table->setItemCheckEnabled(5, 1, false);
    f.press(Qt::Key_Space);
    QCOMPARE(f.events, expected);
}

void TableKeysTest::spaceHeldDownTicksOnce()
{
    KeysFixture f;
    f.fill(10);
    f.click(2, 0);
    QTest::keyPress(f.table->view(), Qt::Key_Space);
    for (int i = 0; i < 3; ++i) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
        QApplication::sendEvent(f.table->view(), &again);
    }
    QVERIFY(f.table->isItemChecked(2, 1));
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
}

void TableKeysTest::spaceWithoutAFramedRowTicksTheSelection()
{
    KeysFixture f;
    f.fill(10);
    f.table->view()->setFocus();
    f.click(2, 0);
    f.click(3, 0, Qt::ControlModifier);
    QItemSelectionModel* const selection = f.table->view()->selectionModel();
    selection->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
    f.events.clear();
    f.press(Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 2);
    selection->clear();
    f.events.clear();
    f.press(Qt::Key_Space);
    QVERIFY(f.events.isEmpty());
}

void TableKeysTest::enterReturnsToARefusedEditor_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("row");
    QTest::newRow("same row") << int(Qt::Key_Return) << 1;
    QTest::newRow("other row") << int(Qt::Key_Enter) << 0;
    QTest::newRow("F2") << int(Qt::Key_F2) << 2;
}

void TableKeysTest::enterReturnsToARefusedEditor()
{
    QFETCH(int, key);
    QFETCH(int, row);
    KeysFixture f;
    f.fill(3);
    f.table->setColumnEditable(3, true);
    f.onEvent = [](const TableFixture::Event& event, void* data) {
        if (event.id == EVENT_CELL_EDITED)
            static_cast<CCellEdit*>(data)->accepted = false;
        return true;
    };
    f.click(1, 3);
    f.press(Qt::Key_F2);
    auto* const editor = f.table->view()->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor && editor->hasFocus());
    QTest::keyClicks(editor, QStringLiteral("x"));
    f.click(row, 3);
    f.table->view()->setFocus();
    QVERIFY(!editor->hasFocus());
    QVERIFY(!editor->toolTip().isEmpty());
    // A Qt warning would fail the test.
    f.press(Qt::Key(key));
    QVERIFY(editor->hasFocus());
    QCOMPARE(editor->text(), QStringLiteral("x"));
    f.press(Qt::Key_Escape);
    QVERIFY(f.table->view()->hasFocus());
}

void TableKeysTest::theKeysAreTold()
{
    KeysFixture f;
    f.fill(3);
    const QTableView* const view = f.table->view();
    QVERIFY(view->toolTip().contains(QStringLiteral("空格")));
    QVERIFY(view->toolTip().contains(QStringLiteral("回车进入行内按钮，Esc 返回")));
    QVERIFY(view->toolTip().contains(QStringLiteral("Tab")));
    QCOMPARE(view->accessibleDescription(), view->toolTip());
    // An empty moment does not take it back.
    f.table->clear();
    QCoreApplication::processEvents();
    QVERIFY(!view->accessibleDescription().isEmpty());
    for (int row = 0; row < 3; ++row) {
        f.table->appendRow();
        f.table->setItemCheckBox(row, 1, row, false, true, 132);
    }
    f.table->setColumnEditable(3, true);
    QVERIFY(f.table->view()->toolTip().contains(QStringLiteral("空格")));
    QVERIFY(f.table->view()->toolTip().contains(QStringLiteral("回车编辑")));
    QVERIFY(!f.table->view()->toolTip().contains(QStringLiteral("按钮")));
}

void TableKeysTest::anOrdinaryTableTellsNothing()
{
    KeysFixture f;
    f.addRow({QStringLiteral("a")});
    QVERIFY(f.table->view()->toolTip().isEmpty());
    QVERIFY(f.table->view()->accessibleDescription().isEmpty());
}

void TableKeysTest::aCellsOwnToolTipWins()
{
    KeysFixture f;
    f.fill(3);
    f.table->setItemToolTip(1, 0, QStringLiteral("own"));
    f.table->setColumnWidth(0, 60);
    f.table->setItemText(2, 0, QString(40, u'W'));
    QTableView* const view = f.table->view();
    const auto tip = [&](int row, int column) {
        const QPoint at = f.cellRect(row, column).center();
        QHelpEvent help(QEvent::ToolTip, at, view->viewport()->mapToGlobal(at));
        QApplication::sendEvent(view->viewport(), &help);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        return text;
    };
    QVERIFY(tip(1, 0).contains(QStringLiteral("own")));
    QVERIFY(tip(2, 0).contains(QStringLiteral("WWWW")));
    QCOMPARE(tip(1, 2), view->toolTip());
}

int main(int argc, char** argv)
{
    return runTest<TableKeysTest>(argc, argv);
}

#include "TableKeysTest.moc"
