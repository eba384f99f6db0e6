#include "kit/table/TableColumns.h"

#include "kit/table/DisplayText.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableDelegate.h"
#include "kit/table/TableModel.h"
#include "kit/table/TableView.h"

#include <QHeaderView>
#include <QScopedValueRollback>

#include <algorithm>
#include <numeric>
#include <utility>

namespace KZ {

namespace {

/// About what a page shows; the rest may be elided.
constexpr int MEASURED_ROWS = 40;
/// A column that fits itself does not push its neighbours out for the sake of a long text.
constexpr int WIDEST_TEXT = 240;
/// Numbers, days and states stay whole: half of one tells nothing. Longer texts, such as names, are
/// elided before the table scrolls.
constexpr int WIDEST_WHOLE_TEXT = 110;
constexpr qsizetype MEASURED_LENGTH = 64;
/// Texts per column that are known to fit.
constexpr qsizetype MOST_MEASURED = qsizetype{4} * MEASURED_ROWS;

} // namespace

CTableColumns::CTableColumns(CTableView* view, CTableModel& model, const CRowStore& store,
                             const CTableDelegate& delegate)
    : QObject(view), m_view(view), m_model(model), m_store(store), m_delegate(delegate)
{
    header()->setMinimumSectionSize(STableLayout::MIN_WIDTH);
    header()->setMaximumSectionSize(STableLayout::MAX_WIDTH);
    connect(header(), &QHeaderView::sectionResized, this, &CTableColumns::userResized);
    connect(header(), &QHeaderView::sortIndicatorChanged, this, &CTableColumns::fit);
}

QHeaderView* CTableColumns::header() const
{
    return m_view->horizontalHeader();
}

void CTableColumns::columnsChanged()
{
    m_columns.resize(size_t(m_model.columnCount()));
    if (m_early && m_early->columnCount() == m_model.columnCount()) {
        apply(*m_early);
        m_early.reset();
        m_isEarlyInForce = true;
    }
    fit();
}

void CTableColumns::setWidth(int column, int px)
{
    if (!isColumn(column) || px <= 0)
        return;
    SColumn& settings = m_columns[size_t(column)];
    settings.programWidth = std::clamp(px, STableLayout::MIN_WIDTH, STableLayout::MAX_WIDTH);
    if (m_isEarlyInForce)
        return;
    settings.fixedWidth = settings.programWidth;
    resize(column, settings.fixedWidth);
    fit();
}

int CTableColumns::width(int column) const
{
    return isColumn(column) ? header()->sectionSize(column) : 0;
}

void CTableColumns::resize(int column, int px)
{
    const QScopedValueRollback<bool> resizing(m_isResizing, true);
    header()->resizeSection(column, px);
}

void CTableColumns::userResized()
{
    if (m_isResizing)
        return;
    for (int column = 0; column < int(m_columns.size()); ++column)
        m_columns[size_t(column)].fixedWidth = width(column);
}

int CTableColumns::leastWidth(int column) const
{
    // Only the column that the rows are sorted by needs room for the mark of sorting.
    const SColumn& settings = m_columns[size_t(column)];
    return std::max({column == m_model.sortColumn() ? header()->sectionSizeHint(column)
                                                    : headerTextWidth(column),
                     settings.widgetWidth, std::min(settings.textWidth, WIDEST_WHOLE_TEXT)});
}

int CTableColumns::headerTextWidth(int column) const
{
    const QString text = m_model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    const int margin = header()->style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, header());
    return header()->fontMetrics().horizontalAdvance(text) + 2 * margin + 1;
}

int CTableColumns::naturalWidth(int column) const
{
    const SColumn& settings = m_columns[size_t(column)];
    return std::max({header()->sectionSizeHint(column), settings.widgetWidth, settings.textWidth});
}

void CTableColumns::measureTexts()
{
    bool isChanged = std::exchange(m_isEarlyInForce, false);
    const QFontMetrics metrics(m_view->font());
    const int rows = std::min(m_model.rowCount(), MEASURED_ROWS);
    for (int column = 0; column < int(m_columns.size()); ++column) {
        SColumn& settings = m_columns[size_t(column)];
        if (settings.fixedWidth > 0)
            continue;
        for (int viewRow = 0; viewRow < rows; ++viewRow) {
            const int row = m_model.rowAt(viewRow);
            const QString text = safeText(m_store.text(row, column), MEASURED_LENGTH);
            // Most texts are too short to matter, which their length tells without measuring, or
            // were there before the last reload as well.
            const int chrome = m_delegate.chromeWidth(row, column);
            if (text.size() * metrics.height() + chrome <= settings.textWidth ||
                settings.measured.value(text, -1) >= chrome)
                continue;
            if (settings.measured.size() >= MOST_MEASURED)
                settings.measured.clear();
            settings.measured.insert(text, chrome);
            const int needed = metrics.horizontalAdvance(text) + 1 + chrome;
            if (const int width = std::min(needed, WIDEST_TEXT); width > settings.textWidth) {
                settings.textWidth = width;
                isChanged = true;
            }
        }
    }
    if (isChanged)
        fit();
}

void CTableColumns::setWidgetWidth(int column, int px)
{
    if (!isColumn(column) || m_columns[size_t(column)].widgetWidth >= px)
        return;
    m_columns[size_t(column)].widgetWidth = px;
    fit();
}

void CTableColumns::fit()
{
    std::vector<int> flexible;
    int natural = 0;
    int fixed = 0;
    for (int column = 0; column < int(m_columns.size()); ++column) {
        if (const int width = m_columns[size_t(column)].fixedWidth; width > 0) {
            fixed += width;
        } else {
            flexible.push_back(column);
            natural += naturalWidth(column);
        }
    }
    if (flexible.empty())
        return;
    const int room = m_view->viewport()->width() - fixed;
    const int least =
        std::accumulate(flexible.cbegin(), flexible.cend(), 0,
                        [this](int sum, int column) { return sum + leastWidth(column); });
    // With less room than that the table scrolls, no further than texts and widgets need.
    const bool scrolls = room < least;
    int surplus = room - natural;
    int weight = surplus < 0 ? natural - least : natural;
    for (const int column : flexible) {
        int width = naturalWidth(column);
        const int share = surplus < 0 ? width - leastWidth(column) : width;
        if (scrolls) {
            width = std::max(leastWidth(column), m_columns[size_t(column)].textWidth);
        } else if (weight > 0) {
            // What rounding leaves over goes to the columns still to come.
            const int change = int(qint64(surplus) * share / weight);
            width += change;
            surplus -= change;
            weight -= share;
        }
        resize(column, std::clamp(width, STableLayout::MIN_WIDTH, STableLayout::MAX_WIDTH));
    }
}

void CTableColumns::remeasure()
{
    for (SColumn& column : m_columns) {
        column.textWidth = 0;
        column.measured.clear();
        column.widgetWidth = 0;
    }
    measureTexts();
    fit();
}

void CTableColumns::reset()
{
    for (int column = 0; column < int(m_columns.size()); ++column) {
        SColumn& settings = m_columns[size_t(column)];
        header()->moveSection(header()->visualIndex(column), column);
        settings.fixedWidth = settings.programWidth;
        if (settings.fixedWidth > 0)
            resize(column, settings.fixedWidth);
    }
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    measureTexts();
    fit();
}

QString CTableColumns::save() const
{
    if (m_columns.empty())
        return m_early ? m_early->toText() : QString();
    STableLayout layout;
    for (int column = 0; column < int(m_columns.size()); ++column) {
        layout.order.append(header()->logicalIndex(column));
        layout.widths.append(
            std::clamp(width(column), STableLayout::MIN_WIDTH, STableLayout::MAX_WIDTH));
        if (m_columns[size_t(column)].fixedWidth == 0)
            layout.automatic.append(column);
    }
    layout.sortColumn = m_model.sortColumn();
    layout.sortDescending = layout.sortColumn >= 0 && m_model.sortOrder() == Qt::DescendingOrder;
    return layout.toText();
}

void CTableColumns::load(const QString& text)
{
    const std::optional<STableLayout> layout = STableLayout::parse(text);
    if (!layout)
        return;
    if (m_columns.empty())
        m_early = layout;
    else if (layout->columnCount() == int(m_columns.size()))
        apply(*layout);
}

void CTableColumns::apply(const STableLayout& layout)
{
    for (int column = 0; column < layout.columnCount(); ++column) {
        const int width = layout.widths[column];
        m_columns[size_t(column)].fixedWidth = layout.automatic.contains(column) ? 0 : width;
        resize(column, width);
    }
    for (int place = 0; place < int(layout.order.size()); ++place)
        header()->moveSection(header()->visualIndex(layout.order[place]), place);
    header()->setSortIndicator(layout.sortColumn,
                               layout.sortDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

} // namespace KZ
