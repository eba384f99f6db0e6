#include "kit/accessible/AccessibleDateEditor.h"

#include <QAbstractSpinBox>
#include <QFontMetrics>
#include <QLineEdit>

namespace KZ {

CAccessibleDateEditor::CAccessibleDateEditor(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::SpinBox)
{
}

QAbstractSpinBox* CAccessibleDateEditor::editor() const
{
    return qobject_cast<QAbstractSpinBox*>(widget());
}

QLineEdit* CAccessibleDateEditor::lineEdit() const
{
    return widget()->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
}

QString CAccessibleDateEditor::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Value ? editor()->text() : QAccessibleWidget::text(kind);
}

QAccessible::State CAccessibleDateEditor::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !editor()->isReadOnly();
    state.readOnly = editor()->isReadOnly();
    return state;
}

void* CAccessibleDateEditor::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
}

QStringList CAccessibleDateEditor::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (editor()->isEnabled() && !editor()->isReadOnly())
        names << increaseAction() << decreaseAction();
    return names;
}

void CAccessibleDateEditor::doAction(const QString& action)
{
    if (!actionNames().contains(action))
        return;
    if (action == increaseAction())
        editor()->stepUp();
    else if (action == decreaseAction())
        editor()->stepDown();
    else
        QAccessibleWidget::doAction(action);
}

void CAccessibleDateEditor::selection(int index, int* start, int* end) const
{
    const bool isSelected = index == 0 && lineEdit()->hasSelectedText();
    *start = isSelected ? lineEdit()->selectionStart() : 0;
    *end = isSelected ? lineEdit()->selectionEnd() : 0;
}

int CAccessibleDateEditor::selectionCount() const
{
    return lineEdit()->hasSelectedText() ? 1 : 0;
}

void CAccessibleDateEditor::removeSelection(int index)
{
    if (index == 0)
        lineEdit()->deselect();
}

void CAccessibleDateEditor::setSelection(int index, int start, int end)
{
    if (index == 0)
        lineEdit()->setSelection(start, end - start);
}

int CAccessibleDateEditor::cursorPosition() const
{
    return lineEdit()->cursorPosition();
}

void CAccessibleDateEditor::setCursorPosition(int position)
{
    lineEdit()->setCursorPosition(position);
}

QString CAccessibleDateEditor::text(int start, int end) const
{
    return lineEdit()->text().mid(start, end - start);
}

int CAccessibleDateEditor::characterCount() const
{
    return int(lineEdit()->text().size());
}

QRect CAccessibleDateEditor::characterRect(int offset) const
{
    const QString text = lineEdit()->text();
    if (offset < 0 || offset >= text.size())
        return {};
    // A date scrolls nowhere, so its glyphs stand one after the other from the start.
    const QFontMetrics metrics = lineEdit()->fontMetrics();
    const QRect room = lineEdit()->rect();
    const int left = metrics.horizontalAdvance(text.left(offset));
    const int width = metrics.horizontalAdvance(text.at(offset));
    return QRect(lineEdit()->mapToGlobal(room.topLeft() + QPoint(left, 0)),
                 QSize(width, room.height()));
}

int CAccessibleDateEditor::offsetAtPoint(const QPoint& point) const
{
    const QPoint inside = lineEdit()->mapFromGlobal(point);
    return lineEdit()->rect().contains(inside) ? lineEdit()->cursorPositionAt(inside) : -1;
}

QString CAccessibleDateEditor::attributes(int, int* start, int* end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

} // namespace KZ
