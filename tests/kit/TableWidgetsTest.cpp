#include "kit/resources/UiResource.h"
#include "kit/widgets/CheckBox.h"
#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>

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
    void ticksAreReal();
    void aClickOnATickDeliversOneEvent();
    void theProgramTicksSilently();
    void tickingTheRealBoxReachesTheModel();
    void lockingTheRealBoxReachesTheModel();
    void boxesServeOtherRowsWhenScrolled();
    void aBoxThatWasAskedForKeepsItsRow();
    void aFinishedCheckBoxIsATick();
    void spaceTogglesAllSelectedTicks();
    void lockedTicksStay();
    void theReceiverMayReloadWhileTicking();
    void theReceiverMaySetTheTickAgain();
    void boxesHaveNames();

private:
    static void fill(TableFixture& f, int rows, int* made = nullptr)
    {
        for (int i = 0; i < rows; ++i) {
            const int row = f.table->addRowBegin();
            f.table->setItemText(row, 0, QString::number(i));
            f.table->setItemCheckBox(row, 1, row + 100, false, true, 132);
            f.table->setItemWidget(
                row, 2,
                [row, made](QWidget* parent) {
                    if (made)
                        ++*made;
                    return new CSmallNormalButton(row, parent);
                },
                0x84);
            f.table->addRowEnd(true);
        }
    }
    static CCheckBox* box(const TableFixture& f, int row)
    {
        return qobject_cast<CCheckBox*>(f.table->itemWidget(row, 1));
    }
    /// The button that stands over a cell, null when there is none to be seen.
    static CSmallNormalButton* seen(const TableFixture& f, int row)
    {
        QWidget* const viewport = f.table->view()->viewport();
        for (QWidget* at = viewport->childAt(f.cellRect(row, 2).center()); at;
             at = at->parentWidget()) {
            if (auto* const button = qobject_cast<CSmallNormalButton*>(at))
                return button;
        }
        return nullptr;
    }
};

void TableWidgetsTest::widgetsAreMadeOnlyForRowsInSight()
{
    TableFixture f;
    f.showAndWait();
    int made = 0;
    fill(f, 5000, &made);
    QCoreApplication::processEvents();
    QVERIFY(made > 5);
    QVERIFY(made < 30);
    QVERIFY(f.table->findChildren<CCheckBox*>().size() < 30);
    QCOMPARE(seen(f, 3)->id(), 3);
}

void TableWidgetsTest::aWidgetThatWasAskedForStays()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 500);
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
    TableFixture f;
    fill(f, 500);
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
    QCOMPARE(seen(f, 400), far[0]);
    QCOMPARE(seen(f, 402), later);
    QVERIFY(far[1]->isVisible());
}

void TableWidgetsTest::columnsMakeRoomForWidgets()
{
    TableFixture f;
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
    TableFixture f;
    f.showAndWait();
    fill(f, 5000);
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
    TableFixture f;
    f.showAndWait();
    fill(f, 300);
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
            const CSmallNormalButton* const button = seen(f, row);
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
    TableFixture f;
    f.showAndWait();
    fill(f, 8);
    QCoreApplication::processEvents();
    const QPointer<QWidget> hidden = f.table->itemWidget(1, 2);
    const QPointer<QWidget> shown = f.table->itemWidget(7, 2);
    QVERIFY(hidden->isVisible());
    f.table->view()->setFocus();
    f.key(Qt::Key_7);
    QCoreApplication::processEvents();
    QVERIFY(!hidden->isVisible());
    QVERIFY(shown->isVisible());
    QCOMPARE(seen(f, 7), shown.data());
}

void TableWidgetsTest::aFilledCellIsFilledAndAnAlignedOneKeepsItsSize()
{
    TableFixture f;
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
    TableFixture f;
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
    TableFixture f;
    f.showAndWait();
    fill(f, 300);
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
    QCOMPARE(seen(f, 2), widget);
}

void TableWidgetsTest::replacingAndRemovingAWidget()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 3);
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
    QCOMPARE(seen(f, 0), nullptr);
}

void TableWidgetsTest::widgetsDeletedFromOutsideAreTolerated()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 20);
    QCoreApplication::processEvents();
    delete f.table->itemWidget(0, 2);
    delete box(f, 0);
    QCOMPARE(f.table->itemWidget(0, 2), nullptr);
    f.table->setItemChecked(0, 1, true);
    f.sortBy(0, Qt::DescendingOrder);
    QCoreApplication::processEvents();
    QVERIFY(box(f, 0)->isChecked());
    delete box(f, 19);
    f.table->clear();
    QCoreApplication::processEvents();
}

void TableWidgetsTest::aFactoryMayMisbehave()
{
    TableFixture f;
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
    TableFixture f;
    f.showAndWait();
    fill(f, 50);
    QCoreApplication::processEvents();
    f.onEvent = [&f](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_BUTTON_CLICKED) {
            f.table->clear();
            fill(f, 60);
        }
        return true;
    };
    QTest::mouseClick(seen(f, 4), Qt::LeftButton);
    QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).first().param1, 4);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(f.shownRows().size(), 60);
    QCOMPARE(seen(f, 4)->id(), 4);
}

void TableWidgetsTest::widgetsAreReachedByTheKeyboard()
{
    TableFixture f;
    auto* const after = new QWidget(&f);
    after->setFocusPolicy(Qt::StrongFocus);
    after->setGeometry(0, 0, 5, 5);
    f.showAndWait();
    fill(f, 30);
    f.table->selectRow(3);
    f.table->view()->setFocus();
    QCoreApplication::processEvents();
    QTest::keyClick(f.focusWidget(), Qt::Key_Tab);
    QTRY_COMPARE(qobject_cast<CSmallNormalButton*>(f.focusWidget())->id(), 3);
    QTest::keyClick(f.focusWidget(), Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_BUTTON_CLICKED).first().param1, 3);
    QTest::keyClick(f.focusWidget(), Qt::Key_Tab);
    QTRY_COMPARE(f.focusWidget(), after);
    f.table->view()->setFocus();
    QTest::keyClick(f.focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(qobject_cast<CSmallNormalButton*>(f.focusWidget())->id(), 3);
    QTest::keyClick(f.focusWidget(), Qt::Key_Backtab);
    QTRY_COMPARE(f.focusWidget(), f.table->view());
}

void TableWidgetsTest::theFocusReturnsWhenItsWidgetGoes()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 300);
    QCoreApplication::processEvents();
    seen(f, 2)->setFocus();
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    QCOMPARE(f.focusWidget(), f.table->view());
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    seen(f, 2)->setFocus();
    f.table->clear();
    QCOMPARE(f.focusWidget(), f.table->view());
}

void TableWidgetsTest::innerDisablingReachesTheWidgets()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 5);
    f.table->setItemCheckEnabled(1, 1, false);
    QWidget* const button = f.table->itemWidget(0, 2);
    f.table->setInnerEnabled(false);
    QVERIFY(!button->isEnabled());
    QVERIFY(!box(f, 0)->isEnabled());
    QVERIFY(f.table->isItemCheckEnabled(0, 1));
    f.table->view()->setFocus();
    f.key(Qt::Key_Space);
    QVERIFY(f.events.isEmpty());
    f.table->setInnerEnabled(true);
    QVERIFY(button->isEnabled());
    QVERIFY(box(f, 0)->isEnabled());
    QVERIFY(!box(f, 1)->isEnabled());
    QVERIFY(!f.table->isItemCheckEnabled(1, 1));
}

void TableWidgetsTest::ticksAreReal()
{
    TableFixture f;
    f.showAndWait();
    f.table->appendRow();
    QVERIFY(!f.table->hasItemCheckBox(0, 1));
    f.table->setItemCheckBox(0, 1, 42, true, false, 132);
    QVERIFY(f.table->hasItemCheckBox(0, 1));
    QVERIFY(f.table->isItemChecked(0, 1));
    QVERIFY(!f.table->isItemCheckEnabled(0, 1));
    QCOMPARE(box(f, 0)->id(), 42);
    QVERIFY(box(f, 0)->isChecked());
    QVERIFY(!box(f, 0)->isEnabled());
    QVERIFY(box(f, 0)->isVisible());
    QVERIFY(qAbs(box(f, 0)->geometry().center().x() - f.cellRect(0, 1).center().x()) <= 1);
}

void TableWidgetsTest::aClickOnATickDeliversOneEvent()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 10);
    QCoreApplication::processEvents();
    f.onEvent = [&f](const TableFixture::Event& event, void* data) {
        // The table already answers with the new state.
        if (event.id == EVENT_CHECK_TOGGLED) {
            const bool isChecked = f.table->isItemChecked(event.param1 - 100, 1);
            if (isChecked != (event.param2 == 1) ||
                !qobject_cast<CCheckBox*>(static_cast<QWidget*>(data)))
                f.events.append({-1, 0, 0, QString()});
        }
        return true;
    };
    QTest::mouseClick(f.table->view()->viewport()->childAt(f.cellRect(6, 1).center()),
                      Qt::LeftButton);
    const QVector<TableFixture::Event> expected{{EVENT_CHECK_TOGGLED, 106, 1, QString()}};
    QCOMPARE(f.events, expected);
    QVERIFY(f.table->isItemChecked(6, 1));
    QTest::mouseClick(box(f, 6), Qt::LeftButton);
    QVERIFY(!f.table->isItemChecked(6, 1));
    QCOMPARE(f.events.size(), 2);
    QCOMPARE(f.events.last().param2, 0);
}

void TableWidgetsTest::theProgramTicksSilently()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 10);
    f.table->setItemChecked(2, 1, true);
    QVERIFY(box(f, 2)->isChecked());
    f.table->setItemChecked(2, 1, false);
    QVERIFY(!box(f, 2)->isChecked());
    f.table->setItemCheckEnabled(2, 1, false);
    QVERIFY(!box(f, 2)->isEnabled());
    f.table->setItemChecked(2, 0, true);
    QVERIFY(!f.table->isItemChecked(2, 0));
    QVERIFY(f.events.isEmpty());
}

void TableWidgetsTest::tickingTheRealBoxReachesTheModel()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 10);
    box(f, 3)->setChecked(true);
    QVERIFY(f.table->isItemChecked(3, 1));
    QVERIFY(f.events.isEmpty());
}

void TableWidgetsTest::lockingTheRealBoxReachesTheModel()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 200);
    box(f, 3)->setEnabled(false);
    QVERIFY(!f.table->isItemCheckEnabled(3, 1));
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    f.table->setEnabled(false);
    f.table->setEnabled(true);
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    QVERIFY(!f.table->isItemCheckEnabled(3, 1));
    QVERIFY(f.table->isItemCheckEnabled(4, 1));
    box(f, 3)->setEnabled(true);
    QVERIFY(f.table->isItemCheckEnabled(3, 1));
}

void TableWidgetsTest::boxesServeOtherRowsWhenScrolled()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 200);
    for (int row = 0; row < 200; row += 3)
        f.table->setItemChecked(row, 1, true);
    QScrollBar* const bar = f.table->view()->verticalScrollBar();
    for (int i = 0; i < 12; ++i) {
        QCoreApplication::processEvents();
        const QVector<int> rows = f.shownRows();
        for (const int row : rows) {
            const QPoint at = f.cellRect(row, 1).center();
            if (!f.table->view()->viewport()->rect().contains(at))
                continue;
            const auto* const shown =
                qobject_cast<CCheckBox*>(f.table->view()->viewport()->childAt(at));
            QVERIFY(shown);
            QCOMPARE(shown->id(), row + 100);
            QCOMPARE(shown->isChecked(), row % 3 == 0);
        }
        bar->setValue(bar->value() + bar->pageStep() * 2 / 3);
    }
    QVERIFY(f.events.isEmpty());
}

void TableWidgetsTest::aBoxThatWasAskedForKeepsItsRow()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 200);
    CCheckBox* const kept = box(f, 2);
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    QCOMPARE(kept->id(), 102);
    QVERIFY(!kept->isVisible());
    f.table->setItemChecked(2, 1, true);
    QVERIFY(kept->isChecked());
    f.table->setItemCheckBox(2, 1, 7, false, true, 132);
    QCOMPARE(box(f, 2), kept);
    QCOMPARE(kept->id(), 7);
    QVERIFY(!kept->isChecked());
}

void TableWidgetsTest::aFinishedCheckBoxIsATick()
{
    TableFixture f;
    f.showAndWait();
    f.table->appendRow();
    auto* const own = new CCheckBox(5, f.table);
    own->setChecked(true);
    f.table->setItemWidget(0, 1, own, 132);
    QVERIFY(f.table->hasItemCheckBox(0, 1));
    QVERIFY(f.table->isItemChecked(0, 1));
    QVERIFY(f.table->isItemCheckEnabled(0, 1));
    QCOMPARE(f.table->itemWidget(0, 1), own);
    f.table->setItemChecked(0, 1, false);
    QVERIFY(!own->isChecked());
    QTest::mouseClick(own, Qt::LeftButton);
    QVERIFY(f.table->isItemChecked(0, 1));
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
}

void TableWidgetsTest::spaceTogglesAllSelectedTicks()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 300);
    f.table->setItemChecked(1, 1, true);
    f.table->view()->setFocus();
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.key(Qt::Key_Space);
    for (int row = 0; row < 300; ++row)
        QVERIFY(f.table->isItemChecked(row, 1));
    QVector<TableFixture::Event> toggles = f.eventsOf(EVENT_CHECK_TOGGLED);
    QCOMPARE(toggles.size(), 299);
    QCOMPARE(toggles.first(), (TableFixture::Event{EVENT_CHECK_TOGGLED, 100, 1, QString()}));
    QVERIFY(box(f, 5)->isChecked());
    f.events.clear();
    f.key(Qt::Key_Space);
    toggles = f.eventsOf(EVENT_CHECK_TOGGLED);
    QCOMPARE(toggles.size(), 300);
    QCOMPARE(toggles.last().param2, 0);
    QVERIFY(!f.table->isItemChecked(299, 1));
}

void TableWidgetsTest::lockedTicksStay()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 3);
    f.table->setItemCheckBox(0, 1, 100, true, false, 132);
    f.table->setItemCheckBox(1, 1, 101, false, false, 132);
    f.table->view()->setFocus();
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.key(Qt::Key_Space);
    f.key(Qt::Key_Space);
    const QVector<TableFixture::Event> expected{{EVENT_CHECK_TOGGLED, 102, 1, QString()},
                                                {EVENT_CHECK_TOGGLED, 102, 0, QString()}};
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED), expected);
    QVERIFY(f.table->isItemChecked(0, 1));
    QVERIFY(!f.table->isItemChecked(1, 1));
}

void TableWidgetsTest::theReceiverMayReloadWhileTicking()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 20);
    f.table->view()->setFocus();
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.onEvent = [&f](const TableFixture::Event&, void*) {
        f.table->clear();
        fill(f, 20);
        return true;
    };
    f.key(Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    for (int row = 0; row < 20; ++row)
        QVERIFY(!f.table->isItemChecked(row, 1));
    QCoreApplication::processEvents();
    f.events.clear();
    QTest::mouseClick(box(f, 4), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    QVERIFY(!box(f, 4)->isChecked());
}

void TableWidgetsTest::theReceiverMaySetTheTickAgain()
{
    TableFixture f;
    f.showAndWait();
    fill(f, 5);
    f.onEvent = [&f](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_CHECK_TOGGLED && event.param2 == 1)
            f.table->setItemCheckBox(event.param1 - 100, 1, event.param1, false, true, 132);
        return true;
    };
    QTest::mouseClick(box(f, 2), Qt::LeftButton);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    QVERIFY(!f.table->isItemChecked(2, 1));
    QVERIFY(!box(f, 2)->isChecked());
}

void TableWidgetsTest::boxesHaveNames()
{
    TableFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("海通"), QString(), QStringLiteral("8001")});
    f.table->setItemCheckBox(0, 1, 0, false, true, 132);
    QCOMPARE(box(f, 0)->accessibleName(), QStringLiteral("列1 海通 8001"));
}

int main(int argc, char** argv)
{
    return runTest<TableWidgetsTest>(argc, argv);
}

#include "TableWidgetsTest.moc"
