#pragma once

#include "kit/table/CellTexts.h"

#include <QStyledItemDelegate>

namespace KZ {

class CCellEditor;
class CRowStore;
class CTableModel;

/// Draws the cells that show a text, straight from the store, and lets the user edit them. A cell
/// with a tick or a widget is left to its widget.
class CTableDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    CTableDelegate(const CRowStore& store, const CTableModel& model, QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    bool eventFilter(QObject* object, QEvent* event) override;

    /// Room in pixels that a cell's icon and paddings take beside its text.
    int chromeWidth(int row, int column) const;

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    void commit(CCellEditor* editor) const;
    void commitAndClose(CCellEditor* editor);
    QString cellText(int row, int column) const;

    const CRowStore& m_store;
    const CTableModel& m_model;
    mutable CCellTexts m_texts;
};

} // namespace KZ
