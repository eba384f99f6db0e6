#include "kit/resources/UiResource.h"
#include "tests/kit/TableWidgetsFixture.h"
#include "tests/support/TestCase.h"

#include <QPointer>
#include <QScrollBar>

using namespace KZ;

class TableWidgetsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void widgetsAreMadeOnlyForRowsInSight();
    void aWidgetThatWasAskedForStays();
    void widgetsMadeOutOfSightStayThere();
    void columnsMakeRoomForWidgets();
    void widgetsOutOfSightAreBounded();
    void widgetsFollowSortingScrollingAndColumns();
    void widgetsOfFilteredRowsAreHidden();
    void aFilledCellIsFilledAndAnAlignedOneKeepsItsSize();
    void aFinishedWidgetIsTakenOver();
    void aWidgetHiddenByItsOwnerStaysHidden();
    void replacingAndRemovingAWidget();
    void widgetsDeletedFromOutsideAreTolerated();
    void aFactoryMayMisbehave();
    void aButtonMayReloadTheTable();
    void widgetsAreReachedByTheKeyboard();
    void theFocusReturnsWhenItsWidgetGoes();
    void innerDisablingReachesTheWidgets();
};

void TableWidgetsTest::widgetsAreMadeOnlyForRowsInSight()
{
    TableWidgetsFixture f;
    f.showAndWait();
    int made = 0;
    f.fill(5000, &made);
    QCoreApplication::processEvents();
    QVERIFY(made > 5);
    QVERIFY(made < 30);
    QVERIFY(f.table->findChildren<CCheckBox*>().size() < 30);
    QCOMPARE(f.seen(3)->id(), 3);
}

void TableWidgetsTest::aWidgetThatWasAskedForStays()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(500);
    const QPointer<QWidget> far = f.table->itemWidget(400, 2);
    QVERIFY(far);
    QVERIFY(!far->isVisible());
    for (int i = 0; i < 20; ++i) {
        f.key(Qt::Key_PageDown);
        QCoreApplication::processEvents();
    }
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    QCOMPARE(f.table->itemWidget(400, 2), far.data());
    f.table->clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!far);
}

void TableWidgetsTest::widgetsMadeOutOfSightStayThere()
{
    TableWidgetsFixture f;
    f.fill(500);
    const QVector<QWidget*> far{f.table->itemWidget(400, 2), f.table->itemWidget(401, 1)};
    QWidget* const near = f.table->itemWidget(3, 2);
    f.showAndWait();
    QCoreApplication::processEvents();
    QVERIFY(near->isVisible());
    QVERIFY(!far[0]->isVisible() && !far[1]->isVisible());
    f.hide();
    QWidget* const later = f.table->itemWidget(402, 2);
    f.show();
    QCoreApplication::processEvents();
    QVERIFY(near->isVisible());
    QVERIFY(!far[0]->isVisible() && !far[1]->isVisible() && !later->isVisible());
    f.table->view()->scrollToBottom();
    f.table->view()->verticalScrollBar()->setValue(400 * f.cellRect(0, 0).height());
    QCoreApplication::processEvents();
    QCOMPARE(f.seen(400), far[0]);
    QCOMPARE(f.seen(402), later);
    QVERIFY(far[1]->isVisible());
}

void TableWidgetsTest::columnsMakeRoomForWidgets()
{
    TableWidgetsFixture f;
    f.showAndWait();
    const int row = f.table->appendRow();
    auto* const wide = new QWidget(f.table);
    wide->setFixedSize(211, 20);
    f.table->setItemWidget(row, 1, wide, 132);
    QCoreApplication::processEvents();
    QVERIFY(f.table->columnWidth(1) >= 211);
    const auto back = qScopeGuard([] { CUiResource::setTheme(CUiResource::Theme::Light); });
    CUiResource::setTheme(CUiResource::Theme::Dark);
    QCoreApplication::processEvents();
    QVERIFY(f.table->columnWidth(1) >= 211);
    QCOMPARE(wide->size(), QSize(211, 20));
}

void TableWidgetsTest::widgetsOutOfSightAreBounded()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(5000);
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    for (int i = 0; i < 100; ++i) {
        bar->setValue(bar->value() + bar->pageStep());
        QCoreApplication::processEvents();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(f.table->findChildren<CSmallNormalButton*>().size() < 150);
    QVERIFY(f.table->findChildren<CCheckBox*>().size() < 60);
}

void TableWidgetsTest::widgetsFollowSortingScrollingAndColumns()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(300);
    const auto allInPlace = [&f] {
        QCoreApplication::processEvents();
        const QVector<int> rows = f.shownRows();
        const QRect viewport = f.table->view()->viewport()->rect();
        int seenRows = 0;
        for (const int row : rows) {
            const QRect rect = f.cellRect(row, 2);
            if (!viewport.contains(rect.center()))
                continue;
            ++seenRows;
            const CSmallNormalButton* const button = f.seen(row);
            if (!button || button->id() != row || !rect.contains(button->geometry()))
                return false;
        }
        return seenRows > 5;
    };
    QVERIFY(allInPlace());
    f.sortBy(0, Qt::DescendingOrder);
    QVERIFY(allInPlace());
    f.table->view()->verticalScrollBar()->setValue(777);
    QVERIFY(allInPlace());
    f.table->view()->horizontalHeader()->moveSection(2, 0);
    QVERIFY(allInPlace());
    f.table->view()->horizontalHeader()->resizeSection(2, 170);
    QVERIFY(allInPlace());
    f.resize(500, 300);
    QVERIFY(allInPlace());
    f.table->view()->horizontalHeader()->resizeSection(0, 800);
    f.table->view()->horizontalScrollBar()->setValue(50);
    QVERIFY(allInPlace());
}

void TableWidgetsTest::widgetsOfFilteredRowsAreHidden()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(8);
    QCoreApplication::processEvents();
    const QPointer<QWidget> hidden = f.table->itemWidget(1, 2);
    const QPointer<QWidget> shown = f.table->itemWidget(7, 2);
    QVERIFY(hidden->isVisible());
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    QCoreApplication::processEvents();
    QVERIFY(!hidden->isVisible());
    QVERIFY(shown->isVisible());
    QCOMPARE(f.seen(7), shown.data());
}

void TableWidgetsTest::aFilledCellIsFilledAndAnAlignedOneKeepsItsSize()
{
    TableWidgetsFixture f;
    f.showAndWait();
    const int row = f.table->appendRow();
    auto* const fixed = new QWidget(f.table);
    fixed->setFixedSize(20, 10);
    auto* const resized = new QWidget(f.table);
    resized->resize(33, 11);
    f.table->setItemWidget(
        row, 0, [](QWidget* p) { return new QWidget(p); }, COddEvenRowTable::ALIGN_FILL);
    f.table->setItemWidget(row, 1, fixed, 0x84);
    f.table->setItemWidget(row, 2, resized, Qt::AlignLeft | Qt::AlignTop);
    QCOMPARE(f.table->itemWidget(row, 0)->geometry(), f.cellRect(row, 0));
    QCOMPARE(fixed->size(), QSize(20, 10));
    QCOMPARE(fixed->geometry().center().y(), f.cellRect(row, 1).center().y());
    QVERIFY(qAbs(fixed->geometry().center().x() - f.cellRect(row, 1).center().x()) <= 1);
    QCOMPARE(resized->geometry(), QRect(f.cellRect(row, 2).topLeft(), QSize(33, 11)));
}

void TableWidgetsTest::aFinishedWidgetIsTakenOver()
{
    TableWidgetsFixture f;
    f.showAndWait();
    QPointer<CSmallNormalButton> button = new CSmallNormalButton(5, f.table);
    const int row = f.table->addRowBegin();
    f.table->setItemWidget(row, 3, button, 0x84, true);
    f.table->addRowEnd(true);
    QCOMPARE(f.table->itemWidget(row, 3), button.data());
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    const QVector<TableFixture::Event> clicks = f.eventsOf(EVENT_BUTTON_CLICKED);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.first().param1, 5);
    f.table->clear();
    QVERIFY(!button || !button->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!button);
}

void TableWidgetsTest::aWidgetHiddenByItsOwnerStaysHidden()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(300);
    QWidget* const widget = f.table->itemWidget(2, 2);
    widget->setVisible(false);
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    QVERIFY(!widget->isVisible());
    widget->setVisible(true);
    QVERIFY(widget->isVisible());
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    QVERIFY(!widget->isVisible());
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    QVERIFY(widget->isVisible());
    QCOMPARE(f.seen(2), widget);
}

void TableWidgetsTest::replacingAndRemovingAWidget()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(3);
    const QPointer<QWidget> first = f.table->itemWidget(0, 2);
    auto* const second = new CSmallNormalButton(77, f.table);
    f.table->setItemWidget(0, 2, second, 0x84);
    QVERIFY(!first || !first->isVisible());
    QCOMPARE(f.table->itemWidget(0, 2), second);
    f.table->setItemWidget(0, 2, nullptr, 132);
    QCOMPARE(f.table->itemWidget(0, 2), nullptr);
    f.table->setItemWidget(1, 1, nullptr, 132);
    QVERIFY(!f.table->hasItemCheckBox(1, 1));
    QCOMPARE(f.table->itemWidget(1, 1), nullptr);
    f.table->setItemCheckBox(1, 2, 9, true, true, 132);
    QVERIFY(qobject_cast<CCheckBox*>(f.table->itemWidget(1, 2)));
    QCoreApplication::processEvents();
    QCOMPARE(f.seen(0), nullptr);
}

void TableWidgetsTest::widgetsDeletedFromOutsideAreTolerated()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(20);
    QCoreApplication::processEvents();
    delete f.table->itemWidget(0, 2);
    delete f.box(0);
    QCOMPARE(f.table->itemWidget(0, 2), nullptr);
    f.table->setItemChecked(0, 1, true);
    f.sortBy(0, Qt::DescendingOrder);
    QCoreApplication::processEvents();
    QVERIFY(f.box(0)->isChecked());
    delete f.box(19);
    f.table->clear();
    QCoreApplication::processEvents();
}

void TableWidgetsTest::aFactoryMayMisbehave()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("a")});
    f.table->setItemWidget(
        0, 1, [](QWidget*) -> QWidget* { return nullptr; }, 132);
    f.table->setItemWidget(0, 2, COddEvenRowTable::CellWidgetFactory(), 132);
    f.table->setItemWidget(
        0, 3,
        [&f](QWidget* parent) {
            f.table->clear();
            return new QWidget(parent);
        },
        132);
    QCOMPARE(f.table->itemWidget(0, 1), nullptr);
    QCOMPARE(f.table->itemWidget(0, 2), nullptr);
    QCoreApplication::processEvents();
    QCOMPARE(f.table->rowCount(), 0);
    QCOMPARE(f.shownRows().size(), 0);
}

void TableWidgetsTest::aButtonMayReloadTheTable()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(50);
    QCoreApplication::processEvents();
    f.onEvent = [&f](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_BUTTON_CLICKED) {
            f.table->clear();
            f.fill(60);
        }
        return true;
    };
    QTest::mouseClick(f.seen(4), Qt::LeftButton);
    QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).constFirst().param1, 4);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(f.shownRows().size(), 60);
    QCOMPARE(f.seen(4)->id(), 4);
}

void TableWidgetsTest::widgetsAreReachedByTheKeyboard()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(30);
    f.table->selectRow(3);
    f.table->view()->setFocus();
    QCoreApplication::processEvents();
    QTest::keyClick(f.focusWidget(), Qt::Key_Return);
    QCOMPARE(qobject_cast<CSmallNormalButton*>(f.focusWidget())->id(), 3);
    QTest::keyClick(f.focusWidget(), Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).constFirst().param1, 3);
    QTest::keyClick(f.focusWidget(), Qt::Key_Escape);
    QCOMPARE(f.focusWidget(), f.table->view());
}

void TableWidgetsTest::theFocusReturnsWhenItsWidgetGoes()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(300);
    QCoreApplication::processEvents();
    f.seen(2)->setFocus();
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    QCOMPARE(f.focusWidget(), f.table->view());
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    f.seen(2)->setFocus();
    f.table->clear();
    QCOMPARE(f.focusWidget(), f.table->view());
}

void TableWidgetsTest::innerDisablingReachesTheWidgets()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(5);
    f.table->setItemCheckEnabled(1, 1, false);
    QWidget* const button = f.table->itemWidget(0, 2);
    f.table->setInnerEnabled(false);
    QVERIFY(!button->isEnabled());
    QVERIFY(!f.box(0)->isEnabled());
    QVERIFY(f.table->isItemCheckEnabled(0, 1));
    f.table->view()->setFocus();
    f.key(Qt::Key_Space);
    QVERIFY(f.events.isEmpty());
    f.table->setInnerEnabled(true);
    QVERIFY(button->isEnabled());
    QVERIFY(f.box(0)->isEnabled());
    QVERIFY(!f.box(1)->isEnabled());
    QVERIFY(!f.table->isItemCheckEnabled(1, 1));
}

int main(int argc, char** argv)
{
    return runTest<TableWidgetsTest>(argc, argv);
}

#include "TableWidgetsTest.moc"
