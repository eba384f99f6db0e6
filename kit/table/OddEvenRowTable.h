#pragma once

#include "kit/KitExport.h"
#include "kit/table/CellEdit.h"
#include "kit/table/ColumnWidgetKind.h"
#include "kit/widgets/BaseWidget.h"

#include <QVector>

#include <functional>
#include <memory>

class QTableView;

namespace KZ {

class CTableCore;

/// A table with alternating rows: texts, ticks and cell widgets that cost next to nothing until
/// they are seen. Rows are named by identifiers 0, 1, … in the order they were added; an identifier
/// stays valid until clear(), whatever the user sorts, filters or moves. GUI thread only.
///
/// Texts can be read back at once; the view takes over new rows in one step on the return to the
/// event loop, or earlier when somebody needs them there. A row or column that does not exist is
/// ignored by every setter and reads as empty, 0, false or null.
///
/// Events: 41 a row chosen by the user, 45 a cell edited by him (data = CCellEdit*), 59 a tick
/// toggled by him (data = its check box, or this table when no check box exists for the cell yet).
class KZKIT_EXPORT COddEvenRowTable : public CBaseWidget
{
    Q_OBJECT

public:
    /// Makes the widget of one cell when the cell is first seen or asked for. Called at most once
    /// per widget; it may be called again after a widget that nobody asked for was dropped.
    using CellWidgetFactory = std::function<QWidget*(QWidget* parent)>;

    /// Bits of setFlag().
    enum Flag : int { FLAG_ALTERNATE_ROWS = 0x1, FLAG_ROW_SELECTION = 0x10 };
    /// Bits of the constructor's menu flags: the entries of the context menu.
    enum MenuFlag : int {
        MENU_COPY = 0x1,
        MENU_SELECT_ALL = 0x2,
        MENU_FILTER = 0x4,
        MENU_RESET_COLUMNS = 0x8,
        MENU_SORT = 0x10,
    };
    /// Alignment of a cell widget that fills its cell but for the inner margins; other values are
    /// Qt::Alignment flags at which the widget stands in its own size.
    static constexpr int ALIGN_FILL = 0x3000;
    /// Role of view()'s model under which an index tells its row identifier.
    static constexpr int ROW_IDENTIFIER_ROLE = 0x0100;

    COddEvenRowTable(int id, QWidget* parent, int menuFlags = 255);
    ~COddEvenRowTable() override;

    int getID() const;
    void setFlag(int flags);
    void setColumnCount(int count);
    int columnCount() const;
    void setHeaderText(int column, const QString& text);
    QString headerText(int column) const;
    /// Puts the header text over the middle of a column whose boxes or buttons stand there.
    void setHeaderCentered(int column, bool centered = true);
    /// In device-independent pixels. A column without a width of its own fits itself to its texts
    /// and to the table until the user resizes a column.
    void setColumnWidth(int column, int px);
    int columnWidth(int column) const;
    void setColumnEditable(int column, bool editable);

    void clear();
    int rowCount() const;
    int addRowBegin();
    void addRowEnd(bool refresh);
    int appendRow();
    /// Names what a row stands for, so that a reload (clear() and new rows) leaves the user where
    /// he was: framed row, selection and what he has in sight follow the keys, silently. When the
    /// row that he was in does not come back, nothing is selected. Of rows with equal keys the
    /// first counts; a row without a key is found again by its number, and only as the framed one.
    void setRowKey(int row, const QString& key);
    QString rowKey(int row) const;
    /// Whether the user can scroll to the row: no typed filter hides it.
    bool isRowShown(int row) const;

    void setItemText(int row, int column, const QString& text, bool refresh = true);
    QString itemText(int row, int column) const;
    /// `key` names a colour of the resource registry, looked up whenever the cell is painted; null
    /// returns to the ordinary colour.
    void setItemTextColorKey(int row, int column, const char* key);
    QString itemTextColorKey(int row, int column) const;
    void setItemInt(int row, int column, int value);
    /// The cell's text as a number, its fraction dropped; 0 when it is none.
    int itemInt(int row, int column) const;
    double itemDouble(int row, int column) const;
    void setItemToolTip(int row, int column, const QString& text);
    void setItemIconKey(int row, int column, const QString& key);

    /// Takes the widget; null removes the cell's widget and tick.
    void setItemWidget(int row, int column, QWidget* widget, int alignment, bool refresh = true);
    void setItemWidget(int row, int column, CellWidgetFactory factory, int alignment);
    /// Sets what widgets the cells of a column get by setItemColumnWidget(), which hardly cost
    /// anything however many the rows are; set it before the first such cell.
    void setColumnWidgets(int column, CColumnWidgetKind kind);
    void setItemColumnWidget(int row, int column);
    /// Gives the cell a tick; a real check box with this identifier stands in for it once the cell
    /// is seen or asked for, and both always agree.
    void setItemCheckBox(int row, int column, int id, bool checked, bool enabled, int alignment);
    bool hasItemCheckBox(int row, int column) const;
    bool isItemChecked(int row, int column) const;
    bool isItemCheckEnabled(int row, int column) const;
    void setItemChecked(int row, int column, bool checked);
    void setItemCheckEnabled(int row, int column, bool enabled);
    /// The cell's widget or check box, made now if it does not exist yet. It stays valid until the
    /// row goes or the cell's widget is replaced; it is hidden while its cell is out of sight.
    QWidget* itemWidget(int row, int column);

    /// Disables the rows' content; header, scrolling and filtering stay usable.
    void setInnerEnabled(bool enabled);
    /// The row of the current selection, -1 without one.
    int selectedRow() const;
    QVector<int> selectedRows() const;
    void selectRow(int row);

    /// Whether a filter that the user typed hides at least one row.
    bool isFilterHiding() const;
    /// Empties and closes the filter bar; framed row and selection stay.
    void clearFilter();

    /// Column order, widths and sorting as a short text, and back. A text that does not describe
    /// this table is ignored wholly. It may be loaded before the columns are set.
    QString saveConfigStr() const;
    void loadConfigStr(const QString& text);

    QTableView* view() const;

    bool handleEvent(int eventId, int param1, int param2, QString text, void* data) override;
    void onUiResourceChanged() override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    std::unique_ptr<CTableCore> m_core;
};

} // namespace KZ
