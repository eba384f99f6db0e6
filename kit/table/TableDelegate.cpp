#include "kit/table/TableDelegate.h"

#include "kit/resources/UiResource.h"
#include "kit/table/CellEditor.h"
#include "kit/table/DisplayText.h"
#include "kit/table/RowStore.h"
#include "kit/table/TableModel.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>
#include <QtMath>

namespace KZ {

namespace {

/// More than any cell can show; bounds the cost of measuring a huge text.
constexpr qsizetype DRAWN_LENGTH = 512;

int cellPadding()
{
    return CUiResource::getSize(QStringLiteral("gw_siz_kit_table_cell_padding"));
}

int iconSize()
{
    return CUiResource::getSize(QStringLiteral("gw_siz_kit_icon"));
}

} // namespace

CTableDelegate::CTableDelegate(const CRowStore& store, const CTableModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_store(store), m_model(model)
{
}

QString CTableDelegate::cellText(int row, int column) const
{
    return safeText(m_store.text(row, column), DRAWN_LENGTH);
}

int CTableDelegate::chromeWidth(int row, int column) const
{
    const int paddings = 2 * cellPadding();
    return m_store.iconKey(row, column).isEmpty() ? paddings
                                                  : paddings + iconSize() + cellPadding();
}

void CTableDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QPalette::ColorGroup group = !enabled ? QPalette::Disabled
                                       : option.state.testFlag(QStyle::State_Active)
                                           ? QPalette::Active
                                           : QPalette::Inactive;
    if (enabled && option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(CUiResource::getColor(QStringLiteral("clr_focus")));
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }

    const int row = m_model.rowAt(index.row());
    const int column = index.column();
    if (m_store.isWidgetCell(row, column))
        return;
    const int padding = cellPadding();
    QRect room = option.rect.adjusted(padding, 0, -padding, 0);
    const QString iconKey = m_store.iconKey(row, column);
    const auto drawIcon = [&](int left) {
        const QRect iconRect(left, room.top(), iconSize(), room.height());
        CUiResource::getIcon(iconKey).paint(painter, iconRect, Qt::AlignCenter,
                                            enabled ? QIcon::Normal : QIcon::Disabled);
    };
    const QString& stored = m_store.text(row, column);
    const int textWidth = iconKey.isEmpty() ? room.width() : room.width() - iconSize() - padding;
    if (stored.isEmpty() || textWidth <= 0) {
        if (!iconKey.isEmpty())
            drawIcon(room.left());
        return;
    }

    const QString colorKey = enabled ? m_store.colorKey(row, column) : QString();
    if (!colorKey.isEmpty())
        painter->setPen(CUiResource::getColor(colorKey));
    else if (enabled && selected)
        painter->setPen(CUiResource::getColor(QStringLiteral("clr_selection_text")));
    else
        painter->setPen(option.palette.color(group, QPalette::Text));
    const QFontMetrics& metrics = option.fontMetrics;
    const int top = room.top() + (room.height() - metrics.height()) / 2;
    const qreal drawn = m_texts.draw(painter, QPointF(room.left(), top + metrics.ascent()),
                                     safeText(stored, DRAWN_LENGTH), option.font, textWidth);
    // Behind the text, so that the texts of a column stay in line with and without an icon.
    if (!iconKey.isEmpty())
        drawIcon(room.left() + qCeil(drawn) + padding);
}

QSize CTableDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int row = m_model.rowAt(index.row());
    const int height = CUiResource::getSize(QStringLiteral("gw_siz_kit_table_row_height"));
    return QSize(option.fontMetrics.horizontalAdvance(cellText(row, index.column())) +
                     chromeWidth(row, index.column()),
                 height);
}

QWidget* CTableDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const
{
    const int row = m_model.rowAt(index.row());
    auto* const editor = new CCellEditor(index, m_store.text(row, index.column()), parent);
    editor->setFont(option.font);
    editor->setAccessibleName(m_model.headerText(index.column()));
    return editor;
}

void CTableDelegate::setEditorData(QWidget*, const QModelIndex&) const
{
    // The editor got the text at its creation; a later change of the cell must not overwrite what
    // the user is typing.
}

void CTableDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex&) const
{
    auto* const cellEditor = qobject_cast<CCellEditor*>(editor);
    if (cellEditor && cellEditor->isUndecided())
        commit(cellEditor);
}

void CTableDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                          const QModelIndex&) const
{
    editor->setGeometry(option.rect);
}

void CTableDelegate::commit(CCellEditor* editor) const
{
    const QPointer<CCellEditor> guard(editor);
    const QModelIndex index = editor->index();
    if (!index.isValid())
        return;
    auto* const model = const_cast<QAbstractItemModel*>(index.model());
    const bool accepted = model->setData(index, editor->text(), Qt::EditRole);
    if (guard)
        guard->setRefused(!accepted);
}

void CTableDelegate::commitAndClose(CCellEditor* editor)
{
    const QPointer<CCellEditor> guard(editor);
    commit(editor);
    // The receiver may have rebuilt the rows, and the view has then closed the editor itself.
    if (guard && !guard->isRefused() && guard->index().isValid())
        Q_EMIT closeEditor(guard, QAbstractItemDelegate::NoHint);
}

bool CTableDelegate::eventFilter(QObject* object, QEvent* event)
{
    auto* const editor = qobject_cast<CCellEditor*>(object);
    if (!editor)
        return QStyledItemDelegate::eventFilter(object, event);
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const bool isEscape = key == Qt::Key_Escape;
        const bool isCommit = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab ||
                              key == Qt::Key_Backtab;
        if (!isEscape && !isCommit)
            return false;
        event->accept();
        if (event->type() == QEvent::ShortcutOverride)
            return true;
        if (isEscape)
            Q_EMIT closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
        else
            commitAndClose(editor);
        return true;
    }
    if (event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason)
            return false;
        const QPointer<QObject> guard(editor);
        if (editor->isUndecided())
            commitAndClose(editor);
        else if (!editor->isRefused())
            Q_EMIT closeEditor(editor, QAbstractItemDelegate::NoHint);
        return guard.isNull();
    }
    return false;
}

bool CTableDelegate::editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&,
                                 const QModelIndex&)
{
    return false;
}

bool CTableDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                               const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const int row = m_model.rowAt(index.row());
    if (event->type() != QEvent::ToolTip || !m_store.toolTip(row, index.column()).isEmpty())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const bool isElided = sizeHint(option, index).width() > option.rect.width();
    const QString& text = m_store.text(row, index.column());
    QToolTip::showText(event->globalPos(), isElided ? toolTipText(text) : view->toolTip(), view);
    return true;
}

} // namespace KZ
