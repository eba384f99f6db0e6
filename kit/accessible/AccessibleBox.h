#pragma once

#include <QAccessibleWidget>
#include <QWidgetList>

namespace KZ {

/// A window or container of the kit as assistive tools meet it: its children come in the order in
/// which they are read on the screen, and it tells when it is busy (setAccessibleBusy()). A mere
/// container counts as a pane once it has a name.
class CAccessibleBox : public QAccessibleWidget
{
public:
    CAccessibleBox(QWidget* widget, QAccessible::Role role);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

private:
    QWidgetList children() const;
};

} // namespace KZ
