#include "tests/kit/TableWidgetsFixture.h"
#include "tests/support/TestCase.h"

#include <QScrollBar>

using namespace KZ;

class TableTicksTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
};

void TableTicksTest::ticksAreReal()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.table->appendRow();
    QVERIFY(!f.table->hasItemCheckBox(0, 1));
    f.table->setItemCheckBox(0, 1, 42, true, false, 132);
    QVERIFY(f.table->hasItemCheckBox(0, 1));
    QVERIFY(f.table->isItemChecked(0, 1));
    QVERIFY(!f.table->isItemCheckEnabled(0, 1));
    QCOMPARE(f.box(0)->id(), 42);
    QVERIFY(f.box(0)->isChecked());
    QVERIFY(!f.box(0)->isEnabled());
    QVERIFY(f.box(0)->isVisible());
    QVERIFY(qAbs(f.box(0)->geometry().center().x() - f.cellRect(0, 1).center().x()) <= 1);
}

void TableTicksTest::aClickOnATickDeliversOneEvent()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(10);
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
    QTest::mouseClick(f.box(6), Qt::LeftButton);
    QVERIFY(!f.table->isItemChecked(6, 1));
    QCOMPARE(f.events.size(), 2);
    QCOMPARE(f.events.last().param2, 0);
}

void TableTicksTest::theProgramTicksSilently()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(10);
    f.table->setItemChecked(2, 1, true);
    QVERIFY(f.box(2)->isChecked());
    f.table->setItemChecked(2, 1, false);
    QVERIFY(!f.box(2)->isChecked());
    f.table->setItemCheckEnabled(2, 1, false);
    QVERIFY(!f.box(2)->isEnabled());
    f.table->setItemChecked(2, 0, true);
    QVERIFY(!f.table->isItemChecked(2, 0));
    QVERIFY(f.events.isEmpty());
}

void TableTicksTest::tickingTheRealBoxReachesTheModel()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(10);
    f.box(3)->setChecked(true);
    QVERIFY(f.table->isItemChecked(3, 1));
    QVERIFY(f.events.isEmpty());
}

void TableTicksTest::lockingTheRealBoxReachesTheModel()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(200);
    f.box(3)->setEnabled(false);
    QVERIFY(!f.table->isItemCheckEnabled(3, 1));
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    f.table->setEnabled(false);
    f.table->setEnabled(true);
    f.table->view()->scrollToTop();
    QCoreApplication::processEvents();
    QVERIFY(!f.table->isItemCheckEnabled(3, 1));
    QVERIFY(f.table->isItemCheckEnabled(4, 1));
    f.box(3)->setEnabled(true);
    QVERIFY(f.table->isItemCheckEnabled(3, 1));
}

void TableTicksTest::boxesServeOtherRowsWhenScrolled()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(200);
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

void TableTicksTest::aBoxThatWasAskedForKeepsItsRow()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(200);
    CCheckBox* const kept = f.box(2);
    f.table->view()->scrollToBottom();
    QCoreApplication::processEvents();
    QCOMPARE(kept->id(), 102);
    QVERIFY(!kept->isVisible());
    f.table->setItemChecked(2, 1, true);
    QVERIFY(kept->isChecked());
    f.table->setItemCheckBox(2, 1, 7, false, true, 132);
    QCOMPARE(f.box(2), kept);
    QCOMPARE(kept->id(), 7);
    QVERIFY(!kept->isChecked());
}

void TableTicksTest::aFinishedCheckBoxIsATick()
{
    TableWidgetsFixture f;
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

void TableTicksTest::spaceTogglesAllSelectedTicks()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(300);
    f.table->setItemChecked(1, 1, true);
    f.table->view()->setFocus();
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.key(Qt::Key_Space);
    for (int row = 0; row < 300; ++row)
        QVERIFY(f.table->isItemChecked(row, 1));
    QVector<TableFixture::Event> toggles = f.eventsOf(EVENT_CHECK_TOGGLED);
    QCOMPARE(toggles.size(), 299);
    QCOMPARE(toggles.first(), (TableFixture::Event{EVENT_CHECK_TOGGLED, 100, 1, QString()}));
    QVERIFY(f.box(5)->isChecked());
    f.events.clear();
    f.key(Qt::Key_Space);
    toggles = f.eventsOf(EVENT_CHECK_TOGGLED);
    QCOMPARE(toggles.size(), 300);
    QCOMPARE(toggles.last().param2, 0);
    QVERIFY(!f.table->isItemChecked(299, 1));
}

void TableTicksTest::lockedTicksStay()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(3);
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

void TableTicksTest::theReceiverMayReloadWhileTicking()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(20);
    f.table->view()->setFocus();
    f.key(Qt::Key_A, Qt::ControlModifier);
    f.onEvent = [&f](const TableFixture::Event&, void*) {
        f.table->clear();
        f.fill(20);
        return true;
    };
    f.key(Qt::Key_Space);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    for (int row = 0; row < 20; ++row)
        QVERIFY(!f.table->isItemChecked(row, 1));
    QCoreApplication::processEvents();
    f.events.clear();
    QTest::mouseClick(f.box(4), Qt::LeftButton);
    QCoreApplication::processEvents();
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    QVERIFY(!f.box(4)->isChecked());
}

void TableTicksTest::theReceiverMaySetTheTickAgain()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.fill(5);
    f.onEvent = [&f](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_CHECK_TOGGLED && event.param2 == 1)
            f.table->setItemCheckBox(event.param1 - 100, 1, event.param1, false, true, 132);
        return true;
    };
    QTest::mouseClick(f.box(2), Qt::LeftButton);
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
    QVERIFY(!f.table->isItemChecked(2, 1));
    QVERIFY(!f.box(2)->isChecked());
}

void TableTicksTest::boxesHaveNames()
{
    TableWidgetsFixture f;
    f.showAndWait();
    f.addRow({QStringLiteral("临江证券"), QString(), QStringLiteral("8001")});
    f.table->setItemCheckBox(0, 1, 0, false, true, 132);
    QCOMPARE(f.box(0)->accessibleName(), QStringLiteral("列1 临江证券 8001"));
}

int main(int argc, char** argv)
{
    return runTest<TableTicksTest>(argc, argv);
}

#include "TableTicksTest.moc"
