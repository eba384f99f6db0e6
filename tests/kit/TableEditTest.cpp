#include "tests/kit/TableFixture.h"
#include "tests/support/TestCase.h"

#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QVBoxLayout>

using namespace KZ;

class TableEditTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void startsByKeyOrDoubleClick_data();
    void startsByKeyOrDoubleClick();
    void enterFindsTheEditableCellOfTheRow();
    void otherColumnsAreNotEditable();
    void anAcceptedTextIsStored();
    void theReceiverMayRewriteTheText();
    void aRefusedTextStaysInTheEditorAndShows();
    void aRefusedTextCanBeCorrected();
    void escapeTakesTheEditBack();
    void escapeDoesNotReachTheDialog();
    void leavingTheEditorCommits();
    void anUntouchedEditorClosesSilently();
    void choosingAnotherRowKeepsARefusedText();
    void changesElsewhereLeaveTheTypedTextAlone();
    void aReloadWhileEditingIsHarmless();
    void theReceiverMayReload();
    void settingTheModelCountsAsTyping();
    void editorsHaveNames();

private:
    static void prepare(TableFixture& f)
    {
        f.showAndWait();
        for (int i = 0; i < 3; ++i)
            f.addRow({QStringLiteral("条件"), QString::number(i), QStringLiteral("100")});
        f.table->setColumnEditable(2, true);
        f.table->view()->setFocus();
    }
    /// Answers edits as a receiver who takes numbers up to 100 and writes them with two decimals.
    static void judge(TableFixture& f)
    {
        f.onEvent = [](const TableFixture::Event& event, void* data) {
            if (event.id != EVENT_CELL_EDITED)
                return false;
            auto* const edit = static_cast<CCellEdit*>(data);
            bool ok = false;
            const double value = edit->text.toDouble(&ok);
            edit->accepted = ok && value > 0 && value <= 100;
            if (edit->accepted)
                edit->text = QString::number(value, 'f', 2);
            return true;
        };
    }
    static QLineEdit* editor(const TableFixture& f)
    {
        return f.table->view()->viewport()->findChild<QLineEdit*>();
    }
    static QLineEdit* startEditing(TableFixture& f, int row)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        f.click(row, 2);
        f.key(Qt::Key_F2);
        return editor(f);
    }
};

void TableEditTest::startsByKeyOrDoubleClick_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("F2") << int(Qt::Key_F2) << QStringLiteral("100");
    QTest::newRow("Enter") << int(Qt::Key_Return) << QStringLiteral("100");
    QTest::newRow("typing") << int(Qt::Key_7) << QStringLiteral("7");
    QTest::newRow("double click") << 0 << QStringLiteral("100");
}

void TableEditTest::startsByKeyOrDoubleClick()
{
    QFETCH(int, key);
    TableFixture f;
    prepare(f);
    f.click(1, 2);
    if (key)
        f.key(Qt::Key(key));
    else
        QTest::mouseDClick(f.table->view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                           f.cellRect(1, 2).center());
    QVERIFY(editor(f));
    QVERIFY(editor(f)->hasFocus());
    QTEST(editor(f)->text(), "text");
    QCOMPARE(editor(f)->geometry(), f.cellRect(1, 2));
}

void TableEditTest::enterFindsTheEditableCellOfTheRow()
{
    TableFixture f;
    prepare(f);
    f.click(1, 0);
    f.key(Qt::Key_Return);
    QVERIFY(editor(f));
    QCOMPARE(editor(f)->geometry(), f.cellRect(1, 2));
}

void TableEditTest::otherColumnsAreNotEditable()
{
    TableFixture f;
    prepare(f);
    f.click(1, 1);
    f.key(Qt::Key_F2);
    QVERIFY(!editor(f));
    f.table->setColumnEditable(2, false);
    f.click(1, 2);
    f.key(Qt::Key_F2);
    QVERIFY(!editor(f));
    f.table->setColumnEditable(2, true);
    f.table->setInnerEnabled(false);
    f.key(Qt::Key_F2);
    QVERIFY(!editor(f));
}

void TableEditTest::anAcceptedTextIsStored()
{
    TableFixture f;
    prepare(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("50.5"));
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("100"));
    QTest::keyClick(edit, Qt::Key_Return);
    const QVector<TableFixture::Event> edits = f.eventsOf(EVENT_CELL_EDITED);
    QCOMPARE(edits.size(), 1);
    QCOMPARE(edits.first(), (TableFixture::Event{EVENT_CELL_EDITED, 1, 2, QStringLiteral("50.5")}));
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("50.5"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!edit);
    QTRY_VERIFY(f.table->view()->hasFocus());
}

void TableEditTest::theReceiverMayRewriteTheText()
{
    TableFixture f;
    prepare(f);
    judge(f);
    QLineEdit* const edit = startEditing(f, 0);
    QTest::keyClicks(edit, QStringLiteral("50.5"));
    QTest::keyClick(edit, Qt::Key_Enter);
    QCOMPARE(f.table->itemText(0, 2), QStringLiteral("50.50"));
}

void TableEditTest::aRefusedTextStaysInTheEditorAndShows()
{
    TableFixture f;
    prepare(f);
    judge(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("100.1"));
    const QImage typed = edit->grab().toImage();
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(edit);
    QVERIFY(edit->isVisible());
    QCOMPARE(edit->text(), QStringLiteral("100.1"));
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("100"));
    QVERIFY(!edit->accessibleDescription().isEmpty());
    QVERIFY(!edit->toolTip().isEmpty());
    QVERIFY(edit->grab().toImage() != typed);
}

void TableEditTest::aRefusedTextCanBeCorrected()
{
    TableFixture f;
    prepare(f);
    judge(f);
    QLineEdit* const edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("0"));
    QTest::keyClick(edit, Qt::Key_Return);
    QVERIFY(!edit->toolTip().isEmpty());
    QTest::keyClick(edit, Qt::Key_Home);
    QTest::keyClick(edit, Qt::Key_8);
    QVERIFY(edit->toolTip().isEmpty());
    QVERIFY(edit->accessibleDescription().isEmpty());
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("80.00"));
    QCOMPARE(f.eventsOf(EVENT_CELL_EDITED).size(), 2);
}

void TableEditTest::escapeTakesTheEditBack()
{
    TableFixture f;
    prepare(f);
    judge(f);
    for (const QString& typed : {QStringLiteral("50"), QStringLiteral("1000")}) {
        const QPointer<QLineEdit> edit = startEditing(f, 1);
        QTest::keyClicks(edit, typed);
        if (typed.size() > 2)
            QTest::keyClick(edit, Qt::Key_Return);
        QTest::keyClick(edit, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!edit);
        QCOMPARE(f.table->itemText(1, 2), QStringLiteral("100"));
    }
    QCOMPARE(f.eventsOf(EVENT_CELL_EDITED).size(), 1);
}

void TableEditTest::escapeDoesNotReachTheDialog()
{
    QDialog dialog;
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const table = new COddEvenRowTable(1, &dialog);
    layout->addWidget(table);
    table->setColumnCount(1);
    table->setColumnEditable(0, true);
    table->appendRow();
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    dialog.activateWindow();
    table->view()->setFocus();
    table->view()->edit(table->view()->model()->index(0, 0));
    const QPointer<QLineEdit> edit = table->view()->viewport()->findChild<QLineEdit*>();
    QVERIFY(edit);
    QTest::keyClicks(edit, QStringLiteral("x"));
    QTest::keyClick(edit, Qt::Key_Escape);
    QVERIFY(dialog.isVisible());
    QCOMPARE(table->itemText(0, 0), QString());
    QTest::keyClick(table->view(), Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
}

void TableEditTest::leavingTheEditorCommits()
{
    TableFixture f;
    auto* const other = new QLineEdit(&f);
    prepare(f);
    judge(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("30"));
    other->setFocus();
    QTRY_COMPARE(f.table->itemText(1, 2), QStringLiteral("30.00"));
    const QPointer<QLineEdit> refused = startEditing(f, 1);
    QTest::keyClicks(refused, QStringLiteral("x"));
    other->setFocus();
    QTRY_VERIFY(!refused->toolTip().isEmpty());
    QVERIFY(other->hasFocus());
    QCOMPARE(refused->text(), QStringLiteral("x"));
    // Going back and forth asks nobody again.
    refused->setFocus();
    other->setFocus();
    QCOMPARE(f.eventsOf(EVENT_CELL_EDITED).size(), 2);
}

void TableEditTest::anUntouchedEditorClosesSilently()
{
    TableFixture f;
    auto* const other = new QLineEdit(&f);
    prepare(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    other->setFocus();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!edit);
    QVERIFY(f.eventsOf(EVENT_CELL_EDITED).isEmpty());
}

void TableEditTest::choosingAnotherRowKeepsARefusedText()
{
    TableFixture f;
    prepare(f);
    judge(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("999"));
    f.click(0, 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(edit);
    QCOMPARE(edit->text(), QStringLiteral("999"));
    QVERIFY(!edit->toolTip().isEmpty());
    QCOMPARE(f.eventsOf(EVENT_CELL_EDITED).size(), 1);
}

void TableEditTest::changesElsewhereLeaveTheTypedTextAlone()
{
    TableFixture f;
    prepare(f);
    QLineEdit* const edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("12"));
    for (int row = 0; row < 3; ++row)
        f.table->setItemText(row, 2, QStringLiteral("55"));
    QCoreApplication::processEvents();
    QCOMPARE(edit->text(), QStringLiteral("12"));
    f.sortBy(1, Qt::DescendingOrder);
    QCoreApplication::processEvents();
    QCOMPARE(edit->text(), QStringLiteral("12"));
    QTest::keyClick(edit, Qt::Key_Return);
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("12"));
    QCOMPARE(f.table->itemText(0, 2), QStringLiteral("55"));
}

void TableEditTest::aReloadWhileEditingIsHarmless()
{
    TableFixture f;
    prepare(f);
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("12"));
    f.table->clear();
    f.addRow({QStringLiteral("neu"), QString(), QStringLiteral("1")});
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!edit);
    QCOMPARE(f.table->itemText(0, 2), QStringLiteral("1"));
    QVERIFY(f.eventsOf(EVENT_CELL_EDITED).isEmpty());
}

void TableEditTest::theReceiverMayReload()
{
    TableFixture f;
    prepare(f);
    f.onEvent = [&f](const TableFixture::Event& event, void*) {
        if (event.id == EVENT_CELL_EDITED) {
            f.table->clear();
            f.addRow({QString(), QString(), QStringLiteral("new")});
            f.addRow({QString(), QString(), QStringLiteral("new")});
        }
        return true;
    };
    const QPointer<QLineEdit> edit = startEditing(f, 1);
    QTest::keyClicks(edit, QStringLiteral("12"));
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::processEvents();
    // The row that was edited is gone; the new one keeps its own text.
    QCOMPARE(f.table->itemText(1, 2), QStringLiteral("new"));
}

void TableEditTest::settingTheModelCountsAsTyping()
{
    TableFixture f;
    prepare(f);
    judge(f);
    QAbstractItemModel* const model = f.table->view()->model();
    QVERIFY(model->setData(f.cell(0, 2), QStringLiteral("5"), Qt::EditRole));
    QCOMPARE(f.table->itemText(0, 2), QStringLiteral("5.00"));
    QVERIFY(!model->setData(f.cell(0, 2), QStringLiteral("500"), Qt::EditRole));
    QVERIFY(!model->setData(f.cell(0, 0), QStringLiteral("5"), Qt::EditRole));
    QCOMPARE(f.table->itemText(0, 2), QStringLiteral("5.00"));
    QCOMPARE(f.eventsOf(EVENT_CELL_EDITED).size(), 2);
    f.table->setItemCheckBox(0, 1, 9, false, true, 132);
    QVERIFY(model->setData(f.cell(0, 1), Qt::Checked, Qt::CheckStateRole));
    QVERIFY(f.table->isItemChecked(0, 1));
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
}

void TableEditTest::editorsHaveNames()
{
    TableFixture f;
    prepare(f);
    QCOMPARE(startEditing(f, 1)->accessibleName(), QStringLiteral("列2"));
}

int main(int argc, char** argv)
{
    return runTest<TableEditTest>(argc, argv);
}

#include "TableEditTest.moc"
