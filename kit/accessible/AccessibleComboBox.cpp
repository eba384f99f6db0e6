#include "kit/accessible/AccessibleComboBox.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

namespace KZ {

CAccessibleComboBox::CAccessibleComboBox(QWidget* widget)
    : QAccessibleWidget(widget, QAccessible::ComboBox)
{
}

QComboBox* CAccessibleComboBox::box() const
{
    return qobject_cast<QComboBox*>(widget());
}

bool CAccessibleComboBox::isOpen() const
{
    // A list that has never been open is not made for being asked.
    const QWidget* const popup = QApplication::activePopupWidget();
    return popup && popup->parentWidget() == box();
}

QList<QWidget*> CAccessibleComboBox::children() const
{
    QList<QWidget*> widgets;
    if (box()->lineEdit())
        widgets.append(box()->lineEdit());
    if (isOpen())
        widgets.append(box()->view());
    return widgets;
}

int CAccessibleComboBox::childCount() const
{
    return int(children().size());
}

QAccessibleInterface* CAccessibleComboBox::child(int index) const
{
    return QAccessible::queryAccessibleInterface(children().value(index));
}

int CAccessibleComboBox::indexOfChild(const QAccessibleInterface* child) const
{
    return child ? int(children().indexOf(qobject_cast<QWidget*>(child->object()))) : -1;
}

QString CAccessibleComboBox::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Value)
        return box()->currentText();
    const QString text = QAccessibleWidget::text(kind);
    // The bus asks for no value of a combo box, and without an editor nothing else tells it.
    if (kind == QAccessible::Description && text.isEmpty() && !box()->isEditable())
        return box()->currentText();
    return text;
}

QAccessible::State CAccessibleComboBox::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = box()->isEditable();
    state.expandable = true;
    state.expanded = isOpen();
    state.collapsed = !isOpen();
    state.hasPopup = true;
    return state;
}

QStringList CAccessibleComboBox::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    if (box()->isEnabled())
        names.prepend(showMenuAction());
    return names;
}

void CAccessibleComboBox::doAction(const QString& action)
{
    if (action != showMenuAction())
        QAccessibleWidget::doAction(action);
    else if (isOpen())
        box()->hidePopup();
    else if (box()->isEnabled())
        box()->showPopup();
}

} // namespace KZ
