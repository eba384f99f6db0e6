#pragma once

#include "benchmarks/support/TableRows.h"

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <QTableView>

namespace bench {

/// A model that already holds every finished string: the limit of what a table can cost.
class BareModel : public QAbstractTableModel
{
public:
    explicit BareModel(TableRows rows);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    const TableRows& rows() const { return m_rows; }
    /// Takes finished rows in the place of those there are, which go.
    void reload(QVector<TableRows::Row> rows);

private:
    TableRows m_rows;
};

/// Paints ticks and buttons instead of making widgets of them.
class BareDelegate : public QStyledItemDelegate
{
public:
    explicit BareDelegate(const BareModel& model);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    const BareModel& m_model;
};

/// A QTableView over such a model, set up as a careful user would.
class BareTable : public QTableView
{
public:
    explicit BareTable(TableRows rows, QWidget* parent = nullptr);

    BareModel& bareModel() { return m_model; }

private:
    BareModel m_model;
    BareDelegate m_delegate;
};

} // namespace bench
