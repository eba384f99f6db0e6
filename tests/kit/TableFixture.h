#pragma once

#include "kit/events/EventIds.h"
#include "kit/table/OddEvenRowTable.h"

#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

#include <functional>

/// A shown window with one table, which records the events that the table delivers and answers
/// them through `onEvent`.
class TableFixture : public KZ::CBaseWidget
{
public:
    struct Event
    {
        int id;
        int param1;
        int param2;
        QString text;
        bool operator==(const Event&) const = default;
    };
    static constexpr int TABLE_ID = 4194321;

    explicit TableFixture(int columns = 4)
        : KZ::CBaseWidget(nullptr), table(new KZ::COddEvenRowTable(TABLE_ID, this))
    {
        table->setColumnCount(columns);
        for (int column = 0; column < columns; ++column)
            table->setHeaderText(column, QStringLiteral("列%1").arg(column));
        setInnerStretchWidget(table, 0, 0, 0, 0);
        resize(600, 400);
    }

    void showAndWait()
    {
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
        activateWindow();
        QTRY_VERIFY(isActiveWindow());
    }

    bool handleEvent(int id, int param1, int param2, QString text, void* data) override
    {
        events.append({id, param1, param2, text});
        return onEvent && onEvent(events.last(), data);
    }

    QVector<Event> eventsOf(int id) const
    {
        QVector<Event> found;
        std::copy_if(events.cbegin(), events.cend(), std::back_inserter(found),
                     [id](const Event& event) { return event.id == id; });
        return found;
    }

    void addRow(const QStringList& texts)
    {
        const int row = table->addRowBegin();
        for (int column = 0; column < texts.size(); ++column)
            table->setItemText(row, column, texts[column]);
        table->addRowEnd(true);
    }

    /// Row identifiers from top to bottom as the view shows them.
    QVector<int> shownRows() const
    {
        const QAbstractItemModel* const model = table->view()->model();
        QVector<int> rows;
        for (int viewRow = 0; viewRow < model->rowCount(); ++viewRow)
            rows.append(
                model->index(viewRow, 0).data(KZ::COddEvenRowTable::ROW_IDENTIFIER_ROLE).toInt());
        return rows;
    }

    QModelIndex cell(int row, int column) const
    {
        const QVector<int> rows = shownRows();
        return table->view()->model()->index(int(rows.indexOf(row)), column);
    }

    QRect cellRect(int row, int column) const
    {
        return table->view()->visualRect(cell(row, column));
    }

    void click(int row, int column, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::mouseClick(table->view()->viewport(), Qt::LeftButton, modifiers,
                          cellRect(row, column).center());
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(table->view(), key, modifiers);
    }

    void sortBy(int column, Qt::SortOrder order)
    {
        table->view()->horizontalHeader()->setSortIndicator(column, order);
    }

    KZ::COddEvenRowTable* const table;
    QVector<Event> events;
    std::function<bool(const Event&, void* data)> onEvent;
};
