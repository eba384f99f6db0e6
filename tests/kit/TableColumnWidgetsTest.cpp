#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QScrollBar>

#include <algorithm>

using namespace KZ;

namespace {

constexpr int BUTTONS = 1;

/// A table whose second column shows one kind of button.
class ColumnWidgetsFixture : public TableFixture
{
public:
    ColumnWidgetsFixture() : TableFixture(2)
    {
        CColumnWidgetKind kind;
        kind.make = [this](QWidget* parent) {
            ++made;
            return new CSmallNormalButton(0, parent);
        };
        kind.bind = [this](QWidget* widget, int row) {
            auto* const button = static_cast<CSmallNormalButton*>(widget);
            button->setId(row);
            button->setText(table->itemText(row, 0));
        };
        kind.alignment = Qt::AlignCenter;
        table->setColumnWidgets(BUTTONS, kind);
        showAndWait();
    }

    void fill(int rows, const QString& prefix = QStringLiteral("r"))
    {
        for (int i = 0; i < rows; ++i) {
            const int row = table->addRowBegin();
            table->setItemText(row, 0, prefix + QString::number(row));
            table->setItemColumnWidget(row, BUTTONS);
            table->addRowEnd(true);
        }
        QCoreApplication::processEvents();
    }

    QList<CSmallNormalButton*> seen() const
    {
        QList<CSmallNormalButton*> buttons =
            table->view()->viewport()->findChildren<CSmallNormalButton*>();
        buttons.removeIf([](const CSmallNormalButton* button) { return !button->isVisible(); });
        std::sort(buttons.begin(), buttons.end(),
                  [](const auto* left, const auto* right) { return left->y() < right->y(); });
        return buttons;
    }

    /// Whether every button stands in the row whose text it shows.
    bool areInPlace(const QString& prefix = QStringLiteral("r")) const
    {
        const QList<CSmallNormalButton*> buttons = seen();
        return !buttons.isEmpty() &&
               std::all_of(buttons.cbegin(), buttons.cend(), [&](CSmallNormalButton* button) {
                   return button->text() == prefix + QString::number(button->id()) &&
                          cellRect(button->id(), BUTTONS).contains(button->geometry());
               });
    }

    void scrollTo(int row)
    {
        table->view()->verticalScrollBar()->setValue(row * cellRect(0, 0).height());
        QCoreApplication::processEvents();
    }

    int made = 0;
};

} // namespace

class TableColumnWidgetsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFewWidgetsServeAllRows();
    void aReloadMakesNoneAnew();
    void oneThatWasAskedForStaysWithItsRow();
    void aHalfDonePressIsNotCarriedToAnotherRow();
    void aWidgetWithTheFocusDoesNotMoveOn();
    void oneHiddenByItsOwnerDoesNotMoveOn();
    void cellsCanChangeTheirKind();
    void withoutAKindACellStaysEmpty();
};

void TableColumnWidgetsTest::aFewWidgetsServeAllRows()
{
    ColumnWidgetsFixture f;
    f.fill(2000);
    const qsizetype page = f.seen().size();
    QVERIFY(page > 3);
    QVERIFY(f.areInPlace());
    for (int row = 0; row < 1900; row += 37) {
        f.scrollTo(row);
        QVERIFY(f.areInPlace());
    }
    QVERIFY(f.made <= page + 2);
    f.sortBy(0, Qt::DescendingOrder);
    QCoreApplication::processEvents();
    QVERIFY(f.areInPlace());
}

void TableColumnWidgetsTest::aReloadMakesNoneAnew()
{
    ColumnWidgetsFixture f;
    f.fill(100);
    const int made = f.made;
    for (const QString& prefix : {QStringLiteral("a"), QStringLiteral("b")}) {
        f.table->clear();
        f.fill(100, prefix);
        QVERIFY(f.areInPlace(prefix));
    }
    QCOMPARE(f.made, made);
    f.table->clear();
    QCoreApplication::processEvents();
    QVERIFY(f.seen().isEmpty());
}

void TableColumnWidgetsTest::oneThatWasAskedForStaysWithItsRow()
{
    ColumnWidgetsFixture f;
    f.fill(500);
    const QPointer<QWidget> kept = f.table->itemWidget(3, BUTTONS);
    f.scrollTo(300);
    QVERIFY(!kept->isVisible());
    QCOMPARE(static_cast<CSmallNormalButton*>(kept.data())->id(), 3);
    f.scrollTo(0);
    QVERIFY(kept->isVisible());
    QCOMPARE(f.table->itemWidget(3, BUTTONS), kept.data());
    f.table->clear();
    f.fill(10);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!kept);
    QVERIFY(f.areInPlace());
}

void TableColumnWidgetsTest::aHalfDonePressIsNotCarriedToAnotherRow()
{
    ColumnWidgetsFixture f;
    f.fill(100);
    const QPointer<CSmallNormalButton> pressed = f.seen().at(2);
    QTest::mousePress(pressed, Qt::LeftButton);
    f.table->clear();
    f.fill(100);
    // Neither the old widget nor the one that now stands in its place may take the release for a
    // click.
    if (pressed)
        QTest::mouseRelease(pressed, Qt::LeftButton);
    QTest::mouseRelease(f.seen().at(2), Qt::LeftButton);
    QVERIFY(f.eventsOf(EVENT_BUTTON_CLICKED).isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!pressed);
    QVERIFY(f.areInPlace());
}

void TableColumnWidgetsTest::aWidgetWithTheFocusDoesNotMoveOn()
{
    ColumnWidgetsFixture f;
    f.fill(100);
    const QPointer<CSmallNormalButton> focused = f.seen().at(1);
    focused->setFocus();
    QVERIFY(focused->hasFocus());
    f.table->clear();
    f.fill(100);
    QVERIFY(f.table->view()->hasFocus());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!focused);
    QVERIFY(f.areInPlace());
}

void TableColumnWidgetsTest::oneHiddenByItsOwnerDoesNotMoveOn()
{
    ColumnWidgetsFixture f;
    f.fill(100);
    const qsizetype page = f.seen().size();
    f.seen().at(2)->hide();
    f.table->clear();
    f.fill(100);
    QCOMPARE(f.seen().size(), page);
    QVERIFY(f.areInPlace());
}

void TableColumnWidgetsTest::cellsCanChangeTheirKind()
{
    ColumnWidgetsFixture f;
    f.fill(3);
    f.table->setItemCheckBox(0, BUTTONS, 7, true, true, Qt::AlignCenter);
    f.table->setItemWidget(1, BUTTONS, static_cast<QWidget*>(nullptr), Qt::AlignCenter);
    QCoreApplication::processEvents();
    QVERIFY(f.table->isItemChecked(0, BUTTONS));
    QCOMPARE(f.seen().size(), 1);
    QVERIFY(!f.table->itemWidget(1, BUTTONS));
    f.table->setItemColumnWidget(0, BUTTONS);
    f.table->setItemColumnWidget(1, BUTTONS);
    QCoreApplication::processEvents();
    QVERIFY(!f.table->hasItemCheckBox(0, BUTTONS));
    QCOMPARE(f.seen().size(), 3);
    QVERIFY(f.areInPlace());
    f.table->setItemColumnWidget(99, BUTTONS);
    QCOMPARE(f.table->rowCount(), 3);
}

void TableColumnWidgetsTest::withoutAKindACellStaysEmpty()
{
    ColumnWidgetsFixture f;
    const int row = f.table->appendRow();
    f.table->setItemColumnWidget(row, 0);
    QCoreApplication::processEvents();
    QVERIFY(!f.table->itemWidget(row, 0));
    QVERIFY(f.seen().isEmpty());
}

int main(int argc, char** argv)
{
    return runTest<TableColumnWidgetsTest>(argc, argv);
}

#include "TableColumnWidgetsTest.moc"
