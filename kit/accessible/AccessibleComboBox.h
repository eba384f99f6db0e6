#pragma once

#include <QAccessibleWidget>

class QComboBox;

namespace KZ {

/// A combo box as assistive tools meet it: it goes by its name also when it holds a text, which is
/// its value. Qt's own gives the text for the name. Its children are what is typed into, if it is
/// editable, and the list while that is open.
class CAccessibleComboBox : public QAccessibleWidget
{
public:
    explicit CAccessibleComboBox(QWidget* widget);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;

private:
    QComboBox* box() const;
    QList<QWidget*> children() const;
    bool isOpen() const;
};

} // namespace KZ
