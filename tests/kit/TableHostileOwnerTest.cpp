#include "kit/widgets/SmallNormalButton.h"
#include "tests/kit/TableWidgetsFixture.h"
#include "tests/support/TestCase.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>

#include <functional>
#include <utility>

using namespace KZ;

namespace {

constexpr int ROWS = 40;
constexpr int TICKS = 1;
constexpr int OWN = 2;
constexpr int SHARED = 3;
constexpr int EDITED = 4;

/// A cell's widget that runs the owner's code in its own.
class TalkativeWidget : public CSmallNormalButton
{
public:
    TalkativeWidget(QWidget* parent, std::function<void(const QString&)> said)
        : CSmallNormalButton(0, parent), m_said(std::move(said))
    {
    }

    QSize sizeHint() const override
    {
        m_said(QStringLiteral("sizeHint"));
        return CSmallNormalButton::sizeHint();
    }

protected:
    bool event(QEvent* event) override
    {
        const QPointer<QWidget> guard(this);
        switch (event->type()) {
        case QEvent::Show:
            m_said(QStringLiteral("show"));
            break;
        case QEvent::Hide:
            m_said(QStringLiteral("hide"));
            break;
        case QEvent::Move:
            m_said(QStringLiteral("move"));
            break;
        case QEvent::ParentChange:
            m_said(QStringLiteral("parent"));
            break;
        case QEvent::EnabledChange:
            m_said(QStringLiteral("enabled"));
            break;
        case QEvent::FocusOut:
            m_said(QStringLiteral("focusOut"));
            break;
        default:
            break;
        }
        return guard ? CSmallNormalButton::event(event) : true;
    }

private:
    const std::function<void(const QString&)> m_said;
};

/// A table whose owner does something terrible, once, where the table runs his code.
class HostileFixture : public TableFixture
{
public:
    HostileFixture(const QString& where, const QString& what)
        : TableFixture(5), m_where(where), m_what(what), m_other(new QLineEdit(this)),
          m_table(table)
    {
        table->setColumnEditable(EDITED, true);
        setKind();
        onEvent = [this](const Event& event, void*) {
            if (event.id == EVENT_CHECK_TOGGLED)
                reached(QStringLiteral("toggled"));
            else if (event.id == EVENT_ROW_SELECTED)
                reached(QStringLiteral("chosen"));
            else if (event.id == EVENT_CELL_EDITED)
                reached(QStringLiteral("edited"));
            else if (event.id == EVENT_BUTTON_CLICKED)
                reached(QStringLiteral("clicked"));
            return true;
        };
        showAndWait();
    }

    void fill()
    {
        for (int i = 0; i < ROWS && m_table; ++i) {
            const int row = table->addRowBegin();
            table->setRowKey(row, QString::number(i));
            table->setItemInt(row, 0, i);
            table->setItemCheckBox(row, TICKS, i, false, true, Qt::AlignCenter);
            table->setItemWidget(
                row, OWN,
                [this](QWidget* parent) {
                    const QPointer<QWidget> made = talkative(parent);
                    reached(QStringLiteral("factory"));
                    return made.data();
                },
                Qt::AlignCenter);
            table->setItemColumnWidget(row, SHARED);
            table->setItemInt(row, EDITED, 100);
            table->addRowEnd(true);
        }
    }

    /// Lets the user and the program do everything that makes the table run code of its owner.
    void play()
    {
        const QVector<std::function<void()>> deeds{
            [this] { fill(); },
            [] { QCoreApplication::processEvents(); },
            [this] { table->itemWidget(35, OWN); },
            [this] { table->itemWidget(36, SHARED); },
            [this] { watchTick(); },
            [this] { table->setItemChecked(1, TICKS, true); },
            [this] { table->view()->verticalScrollBar()->setValue(400); },
            [] { QCoreApplication::processEvents(); },
            [this] { table->view()->verticalScrollBar()->setValue(0); },
            [] { QCoreApplication::processEvents(); },
            [this] { choose(2); },
            [this] { key(Qt::Key_Space); },
            [this] { clickOn(3, TICKS); },
            [this] { clickOn(3, OWN); },
            [this] { focusOn(4, OWN); },
            [this] { table->setItemWidget(4, OWN, nullptr, 0); },
            [this] { editCell(); },
            [this] { table->setInnerEnabled(false); },
            [this] { table->setInnerEnabled(true); },
            [this] { sortBy(0, Qt::DescendingOrder); },
            [this] { table->onUiResourceChanged(); },
            [this] { askTheAccessible(); },
            [this] { focusOn(5, SHARED); },
            [this] { table->clear(); },
            [this] { fill(); },
            [] { QCoreApplication::processEvents(); },
            [this] { table->setColumnCount(4); },
            [] { QCoreApplication::processEvents(); },
        };
        for (const std::function<void()>& deed : deeds) {
            deed();
            if (!m_table)
                return;
            if (hasStruck() && !std::exchange(m_isRepaired, true)) {
                table->setColumnCount(5);
                table->clear();
                fill();
                QCoreApplication::processEvents();
            }
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    bool hasStruck() const { return m_hasStruck; }
    bool hasTable() const { return m_table; }

private:
    void setKind()
    {
        CColumnWidgetKind kind;
        kind.make = [this](QWidget* parent) {
            const QPointer<QWidget> made = talkative(parent);
            reached(QStringLiteral("make"));
            return made.data();
        };
        kind.bind = [this](QWidget*, int) { reached(QStringLiteral("bind")); };
        kind.alignment = COddEvenRowTable::ALIGN_FILL;
        table->setColumnWidgets(SHARED, kind);
    }

    QWidget* talkative(QWidget* parent)
    {
        return new TalkativeWidget(parent, [this](const QString& where) { reached(where); });
    }

    /// A click whose press may already be the end of the table.
    void choose(int row)
    {
        const QPoint at = cellRect(row, 0).center();
        const QPointer<QWidget> viewport = table->view()->viewport();
        QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, at);
        if (viewport)
            QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, at);
    }

    void clickOn(int row, int column)
    {
        if (QWidget* const widget = table->itemWidget(row, column))
            QTest::mouseClick(widget, Qt::LeftButton);
    }

    void focusOn(int row, int column)
    {
        if (QWidget* const widget = table->itemWidget(row, column))
            widget->setFocus();
    }

    void watchTick()
    {
        auto* const box = qobject_cast<CCheckBox*>(table->itemWidget(1, TICKS));
        if (box)
            connect(box, &QCheckBox::toggled, this, [this] { reached(QStringLiteral("signal")); });
    }

    void editCell()
    {
        const QPointer<QTableView> view = table->view();
        view->setCurrentIndex(cell(6, EDITED));
        if (!view)
            return;
        key(Qt::Key_F2);
        const QPointer<QLineEdit> editor = view->viewport()->findChild<QLineEdit*>();
        if (!editor)
            return;
        editor->setText(QStringLiteral("7"));
        m_other->setFocus();
    }

    void askTheAccessible()
    {
        QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(table->view());
        const int children = face->childCount();
        for (int i = 0; i < children && m_table; ++i) {
            if (QAccessibleInterface* const child = face->child(i))
                child->text(QAccessible::Name);
        }
    }

    void reached(const QString& where)
    {
        if (m_hasStruck || where != m_where)
            return;
        m_hasStruck = true;
        if (m_what == QStringLiteral("clear")) {
            table->clear();
        } else if (m_what == QStringLiteral("reload")) {
            table->clear();
            fill();
        } else if (m_what == QStringLiteral("reload and ask")) {
            table->clear();
            fill();
            table->selectRow(3);
            table->itemWidget(1, OWN);
            table->itemWidget(1, TICKS);
            table->itemWidget(2, SHARED);
            table->view();
        } else if (m_what == QStringLiteral("delete widgets")) {
            const auto widgets =
                table->view()->viewport()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
            for (QWidget* const widget : widgets)
                delete widget;
        } else if (m_what == QStringLiteral("replace")) {
            for (int row = 0; row < table->rowCount(); ++row) {
                table->setItemCheckBox(row, SHARED, row, false, true, Qt::AlignCenter);
                table->setItemWidget(row, OWN, nullptr, 0);
                table->setItemColumnWidget(row, TICKS);
            }
        } else if (m_what == QStringLiteral("fewer columns")) {
            table->setColumnCount(2);
        } else {
            delete table;
        }
    }

    const QString m_where;
    const QString m_what;
    QLineEdit* const m_other;
    const QPointer<COddEvenRowTable> m_table;
    bool m_hasStruck = false;
    bool m_isRepaired = false;
};

} // namespace

class TableHostileOwnerTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theTableSurvivesItsOwner_data();
    void theTableSurvivesItsOwner();
    void aStaleCellAnswersNothing();
};

void TableHostileOwnerTest::theTableSurvivesItsOwner_data()
{
    QTest::addColumn<QString>("where");
    QTest::addColumn<QString>("what");
    // In its own events and in toggled() Qt itself does not bear that a widget is deleted.
    const QStringList events{QStringLiteral("sizeHint"), QStringLiteral("show"),
                             QStringLiteral("hide"),     QStringLiteral("move"),
                             QStringLiteral("parent"),   QStringLiteral("enabled"),
                             QStringLiteral("focusOut"), QStringLiteral("signal")};
    const QStringList calls{QStringLiteral("factory"), QStringLiteral("make"),
                            QStringLiteral("bind"),    QStringLiteral("toggled"),
                            QStringLiteral("chosen"),  QStringLiteral("edited"),
                            QStringLiteral("clicked")};
    const QStringList mild{QStringLiteral("clear"), QStringLiteral("reload"),
                           QStringLiteral("reload and ask"), QStringLiteral("replace"),
                           QStringLiteral("fewer columns")};
    const QStringList harsh{QStringLiteral("delete widgets"), QStringLiteral("delete table")};
    for (const QString& where : events + calls) {
        for (const QString& what : calls.contains(where) ? mild + harsh : mild)
            QTest::addRow("%s: %s", qPrintable(where), qPrintable(what)) << where << what;
    }
}

void TableHostileOwnerTest::theTableSurvivesItsOwner()
{
    QFETCH(QString, where);
    QFETCH(QString, what);
    HostileFixture f(where, what);
    f.play();
    QVERIFY2(f.hasStruck(), "the owner's code was never reached");
    QCOMPARE(f.hasTable(), what != QStringLiteral("delete table"));
    if (!f.hasTable())
        return;
    // The table is as good as new.
    f.onEvent = nullptr;
    f.events.clear();
    f.table->setColumnCount(5);
    f.table->clear();
    f.fill();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(f.shownRows().size(), ROWS);
    for (const int column : {TICKS, OWN, SHARED}) {
        QWidget* const widget = f.table->itemWidget(f.shownRows().at(1), column);
        QVERIFY(widget && widget->isVisible());
        QVERIFY(f.cellRect(f.shownRows().at(1), column).contains(widget->geometry()));
    }
    QTest::mouseClick(f.table->itemWidget(f.shownRows().at(1), TICKS), Qt::LeftButton);
    QVERIFY(f.table->isItemChecked(f.shownRows().at(1), TICKS));
    QCOMPARE(f.eventsOf(EVENT_CHECK_TOGGLED).size(), 1);
}

void TableHostileOwnerTest::aStaleCellAnswersNothing()
{
    TableFixture f;
    f.addRow({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
    f.table->setColumnEditable(2, true);
    QAbstractItemModel* const model = f.table->view()->model();
    const QModelIndex stale = model->index(0, 2);
    f.table->setColumnCount(2);
    QCOMPARE(model->flags(stale), Qt::ItemFlags(Qt::NoItemFlags));
    QVERIFY(!model->data(stale).isValid());
    QVERIFY(!model->setData(stale, QStringLiteral("x"), Qt::EditRole));
    f.table->clear();
    QCOMPARE(model->flags(stale), Qt::ItemFlags(Qt::NoItemFlags));
}

int main(int argc, char** argv)
{
    return runTest<TableHostileOwnerTest>(argc, argv);
}

#include "TableHostileOwnerTest.moc"
