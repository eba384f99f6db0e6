#include "kit/table/ColumnWidgets.h"

#include <QAbstractButton>
#include <QApplication>

#include <algorithm>
#include <utility>

namespace KZ {

namespace {

/// About three pages; more would only be kept for a window that was once larger.
constexpr qsizetype MOST_SPARE = 96;

/// Whether a press of mouse or key in the widget has begun and not ended, or it has the focus: what
/// the user meant for one row must not happen to the next.
bool isInUse(const QWidget* widget)
{
    const QWidget* const focus = QApplication::focusWidget();
    if (focus && (focus == widget || widget->isAncestorOf(focus)))
        return true;
    if (QApplication::mouseButtons() != Qt::NoButton && widget->underMouse())
        return true;
    const auto isDown = [](const QAbstractButton* button) { return button->isDown(); };
    const auto buttons = widget->findChildren<QAbstractButton*>();
    const auto* const button = qobject_cast<const QAbstractButton*>(widget);
    return (button && button->isDown()) || std::any_of(buttons.cbegin(), buttons.cend(), isDown);
}

} // namespace

void CColumnWidgets::setKind(int column, CColumnWidgetKind kind)
{
    SColumn& widgets = m_columns[column];
    widgets.kind = std::move(kind);
    for (const QPointer<QWidget>& widget : std::exchange(widgets.spare, {})) {
        if (widget)
            widget->deleteLater();
    }
}

int CColumnWidgets::alignment(int column) const
{
    const auto found = m_columns.find(column);
    return found == m_columns.end() ? 0 : found->second.kind.alignment;
}

const CColumnWidgetKind* CColumnWidgets::kind(int column) const
{
    const auto found = m_columns.find(column);
    return found == m_columns.end() ? nullptr : &found->second.kind;
}

QPointer<QWidget> CColumnWidgets::take(int column, QWidget* parent)
{
    const auto found = m_columns.find(column);
    if (found == m_columns.end())
        return nullptr;
    QPointer<QWidget> widget;
    while (!widget && !found->second.spare.isEmpty())
        widget = found->second.spare.takeLast();
    // A copy, because the owner's code may set another kind.
    const auto make = widget ? nullptr : found->second.kind.make;
    return make ? QPointer<QWidget>(make(parent)) : widget;
}

void CColumnWidgets::bind(int column, int row, QWidget* widget) const
{
    const auto found = m_columns.find(column);
    const auto bind = found == m_columns.end() ? nullptr : found->second.kind.bind;
    if (bind)
        bind(widget, row);
}

bool CColumnWidgets::giveBack(int column, QWidget* widget)
{
    const auto found = m_columns.find(column);
    if (found == m_columns.end() || found->second.spare.size() >= MOST_SPARE || isInUse(widget))
        return false;
    found->second.spare.append(widget);
    return true;
}

QList<QWidget*> CColumnWidgets::spare() const
{
    QList<QWidget*> widgets;
    for (const auto& [column, shared] : m_columns) {
        std::copy_if(shared.spare.cbegin(), shared.spare.cend(), std::back_inserter(widgets),
                     [](const QPointer<QWidget>& widget) { return !widget.isNull(); });
    }
    return widgets;
}

} // namespace KZ
