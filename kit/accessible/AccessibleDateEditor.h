#pragma once

#include <QAccessibleWidget>

class QAbstractSpinBox;
class QLineEdit;

namespace KZ {

/// A date editor as assistive tools meet it: a spin box whose value is the text of its day. Qt's
/// own tells a number, which a date does not have.
class CAccessibleDateEditor : public QAccessibleWidget, public QAccessibleTextInterface
{
public:
    explicit CAccessibleDateEditor(QWidget* widget);

    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;
    QStringList actionNames() const override;
    void doAction(const QString& action) override;

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int start, int end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int, int) override {}
    QString attributes(int offset, int* start, int* end) const override;

private:
    QAbstractSpinBox* editor() const;
    QLineEdit* lineEdit() const;
};

} // namespace KZ
