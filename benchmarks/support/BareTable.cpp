#include "benchmarks/support/BareTable.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyleOptionButton>

#include <utility>

namespace bench {

BareModel::BareModel(TableRows rows) : m_rows(std::move(rows)) {}

int BareModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.rows.size());
}

int BareModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.headers.size());
}

QVariant BareModel::data(const QModelIndex& index, int role) const
{
    if (role == Qt::DisplayRole)
        return m_rows.rows.at(index.row()).texts.at(index.column());
    if (role == Qt::ForegroundRole && index.column() == m_rows.stateColumn)
        return QColor(Qt::darkRed);
    return {};
}

QVariant BareModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role == Qt::DisplayRole && orientation == Qt::Horizontal)
        return m_rows.headers.at(section);
    return {};
}

void BareModel::reload(QVector<TableRows::Row> rows)
{
    beginResetModel();
    m_rows.rows = std::move(rows);
    endResetModel();
}

BareDelegate::BareDelegate(const BareModel& model) : m_model(model) {}

void BareDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    const TableRows& rows = m_model.rows();
    const TableRows::Row& row = rows.rows.at(index.row());
    const QStyle* style = option.widget->style();
    QStyleOptionButton button;
    button.palette = option.palette;
    button.fontMetrics = option.fontMetrics;
    if (index.column() == rows.tickColumn && row.hasTick) {
        button.rect = option.rect.adjusted(option.rect.width() / 3, 0, 0, 0);
        button.state = row.ticked ? QStyle::State_On : QStyle::State_Off;
        if (row.tickEnabled)
            button.state |= QStyle::State_Enabled;
        style->drawControl(QStyle::CE_CheckBox, &button, painter, option.widget);
    } else if (index.column() == rows.buttonColumn && row.hasButton) {
        button.rect = option.rect.adjusted(4, 2, -4, -2);
        button.state = QStyle::State_Enabled | QStyle::State_Raised;
        button.text = rows.buttonText;
        style->drawControl(QStyle::CE_PushButton, &button, painter, option.widget);
    }
}

BareTable::BareTable(TableRows rows, QWidget* parent)
    : QTableView(parent), m_model(std::move(rows)), m_delegate(m_model)
{
    setModel(&m_model);
    setItemDelegate(&m_delegate);
    setFont(m_model.rows().font);
    setShowGrid(false);
    setWordWrap(false);
    setVerticalScrollMode(ScrollPerPixel);
    setAlternatingRowColors(true);
    setSelectionBehavior(SelectRows);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(m_model.rows().rowHeight);
    for (int column = 0; column < m_model.rows().columnWidths.size(); ++column)
        setColumnWidth(column, m_model.rows().columnWidths.at(column));
}

} // namespace bench
