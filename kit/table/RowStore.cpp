#include "kit/table/RowStore.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace KZ {

namespace {

const QString& emptyText()
{
    static const QString empty;
    return empty;
}

template <class T>
const T* present(const std::vector<T>& cells, int row)
{
    return size_t(row) < cells.size() && cells[size_t(row)].present ? &cells[size_t(row)] : nullptr;
}

template <class T>
void put(std::vector<T>& cells, int row, T value)
{
    if (size_t(row) >= cells.size()) {
        if (!value.present)
            return;
        cells.resize(size_t(row) + 1);
    }
    cells[size_t(row)] = std::move(value);
}

} // namespace

CRowStore::CRowStore() : m_colorKeys(1), m_colorNames(1) {}

void CRowStore::setColumnCount(int count)
{
    count = std::max(count, 0);
    const int kept = std::min(count, columnCount());
    std::vector<QString> texts(size_t(m_rowCount) * size_t(count));
    for (int row = 0; row < m_rowCount; ++row) {
        for (int column = 0; column < kept; ++column)
            texts[size_t(row) * size_t(count) + size_t(column)] =
                std::move(m_texts[textIndex(row, column)]);
    }
    m_texts = std::move(texts);
    m_columns.resize(size_t(count));
    m_columnCount = count;
    const auto isDropped = [count](const QHash<quint64, QString>::iterator& cell) {
        return int(quint32(cell.key())) >= count;
    };
    m_toolTips.removeIf(isDropped);
    m_iconKeys.removeIf(isDropped);
}

void CRowStore::clear()
{
    m_rowCount = 0;
    m_rowKeys.clear();
    m_texts.clear();
    for (SColumn& column : m_columns) {
        column.colors.clear();
        column.ticks.clear();
        column.widgets.clear();
        column.columnWidgets.clear();
    }
    m_toolTips.clear();
    m_iconKeys.clear();
}

int CRowStore::appendRow()
{
    m_texts.resize(m_texts.size() + m_columns.size());
    return m_rowCount++;
}

const QString& CRowStore::rowKey(int row) const
{
    return row >= 0 && size_t(row) < m_rowKeys.size() ? m_rowKeys[size_t(row)] : emptyText();
}

void CRowStore::setRowKey(int row, const QString& key)
{
    if (row < 0 || row >= m_rowCount)
        return;
    if (size_t(row) >= m_rowKeys.size()) {
        if (key.isEmpty())
            return;
        m_rowKeys.resize(size_t(row) + 1);
    }
    m_rowKeys[size_t(row)] = key;
}

const QString& CRowStore::text(int row, int column) const
{
    return contains(row, column) ? m_texts[textIndex(row, column)] : emptyText();
}

bool CRowStore::setText(int row, int column, const QString& text)
{
    if (!contains(row, column))
        return false;
    QString& cell = m_texts[textIndex(row, column)];
    // Most texts are the first of their cell.
    if (cell.isEmpty() ? text.isEmpty() : cell == text)
        return false;
    cell = text;
    return true;
}

quint16 CRowStore::colorIndex(const char* key)
{
    if (!key || !*key)
        return 0;
    const auto isKey = [key](const std::string& name) {
        return std::strcmp(name.c_str(), key) == 0;
    };
    const auto found = std::find_if(m_colorNames.cbegin() + 1, m_colorNames.cend(), isKey);
    if (found != m_colorNames.cend())
        return quint16(found - m_colorNames.cbegin());
    if (m_colorKeys.size() > 0xffff)
        return 0;
    m_colorKeys.push_back(QString::fromLatin1(key));
    m_colorNames.emplace_back(key);
    return quint16(m_colorKeys.size() - 1);
}

QString CRowStore::colorKey(int row, int column) const
{
    if (!contains(row, column))
        return QString();
    const std::vector<quint16>& colors = m_columns[size_t(column)].colors;
    return size_t(row) < colors.size() ? m_colorKeys[colors[size_t(row)]] : QString();
}

void CRowStore::setColorKey(int row, int column, const char* key)
{
    if (!contains(row, column))
        return;
    const quint16 index = colorIndex(key);
    std::vector<quint16>& colors = m_columns[size_t(column)].colors;
    if (size_t(row) >= colors.size()) {
        if (index == 0)
            return;
        colors.resize(size_t(row) + 1);
    }
    colors[size_t(row)] = index;
}

QString CRowStore::toolTip(int row, int column) const
{
    return m_toolTips.value(cellKey(row, column));
}

void CRowStore::setToolTip(int row, int column, const QString& text)
{
    if (!contains(row, column))
        return;
    if (text.isEmpty() && m_toolTips.isEmpty())
        return;
    if (text.isEmpty())
        m_toolTips.remove(cellKey(row, column));
    else
        m_toolTips.insert(cellKey(row, column), text);
}

QString CRowStore::iconKey(int row, int column) const
{
    return m_iconKeys.isEmpty() ? QString() : m_iconKeys.value(cellKey(row, column));
}

void CRowStore::setIconKey(int row, int column, const QString& key)
{
    if (!contains(row, column))
        return;
    if (key.isEmpty() && m_iconKeys.isEmpty())
        return;
    if (key.isEmpty())
        m_iconKeys.remove(cellKey(row, column));
    else
        m_iconKeys.insert(cellKey(row, column), key);
}

const CRowStore::STick* CRowStore::tick(int row, int column) const
{
    return contains(row, column) ? present(m_columns[size_t(column)].ticks, row) : nullptr;
}

CRowStore::STick* CRowStore::tick(int row, int column)
{
    return const_cast<STick*>(std::as_const(*this).tick(row, column));
}

void CRowStore::setTick(int row, int column, const STick& tick)
{
    if (!contains(row, column))
        return;
    SColumn& cells = m_columns[size_t(column)];
    clearWidget(cells, row);
    put(cells.ticks, row, tick);
}

int CRowStore::firstTickColumn(int row) const
{
    for (int column = 0; column < columnCount(); ++column) {
        if (tick(row, column))
            return column;
    }
    return -1;
}

bool CRowStore::isRowTicked(int row) const
{
    return std::any_of(m_columns.cbegin(), m_columns.cend(), [row](const SColumn& column) {
        const STick* const tick = present(column.ticks, row);
        return tick && tick->checked && tick->enabled;
    });
}

const CRowStore::SCellWidget* CRowStore::cellWidget(int row, int column) const
{
    return contains(row, column) ? present(m_columns[size_t(column)].widgets, row) : nullptr;
}

void CRowStore::setCellWidget(int row, int column, SCellWidget widget)
{
    if (!contains(row, column))
        return;
    SColumn& cells = m_columns[size_t(column)];
    clearWidget(cells, row);
    put(cells.widgets, row, std::move(widget));
}

bool CRowStore::hasColumnWidget(int row, int column) const
{
    if (!contains(row, column))
        return false;
    const std::vector<quint8>& cells = m_columns[size_t(column)].columnWidgets;
    return size_t(row) < cells.size() && cells[size_t(row)] != 0;
}

void CRowStore::setColumnWidget(int row, int column)
{
    if (!contains(row, column))
        return;
    SColumn& cells = m_columns[size_t(column)];
    clearWidget(cells, row);
    if (size_t(row) >= cells.columnWidgets.size())
        cells.columnWidgets.resize(size_t(row) + 1);
    cells.columnWidgets[size_t(row)] = 1;
}

void CRowStore::clearWidget(SColumn& column, int row)
{
    if (size_t(row) < column.ticks.size())
        column.ticks[size_t(row)] = STick();
    if (size_t(row) < column.widgets.size())
        column.widgets[size_t(row)] = SCellWidget();
    if (size_t(row) < column.columnWidgets.size())
        column.columnWidgets[size_t(row)] = 0;
}

bool CRowStore::isWidgetCell(int row, int column) const
{
    return tick(row, column) || cellWidget(row, column) || hasColumnWidget(row, column);
}

bool CRowStore::columnHasWidgets(int column) const
{
    const SColumn& cells = m_columns[size_t(column)];
    return !cells.ticks.empty() || !cells.widgets.empty() || !cells.columnWidgets.empty();
}

bool CRowStore::hasTicks() const
{
    return std::any_of(m_columns.cbegin(), m_columns.cend(),
                       [](const SColumn& column) { return !column.ticks.empty(); });
}

bool CRowStore::hasWidgets() const
{
    return std::any_of(m_columns.cbegin(), m_columns.cend(), [](const SColumn& column) {
        return !column.widgets.empty() || !column.columnWidgets.empty();
    });
}

} // namespace KZ
